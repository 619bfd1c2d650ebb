// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace ZSpace::Testing {

/// The number that the next opened file gets: unchanged by whatever closes all that it opens.
[[nodiscard]] inline int nextDescriptor()
{
    const int next = fcntl(STDIN_FILENO, F_DUPFD, 0);
    if (next >= 0)
        close(next);
    return next;
}

/// Whether programs that the process starts get the descriptor. False if it is not open, too.
[[nodiscard]] inline bool isInherited(int descriptor)
{
    const int flags = fcntl(descriptor, F_GETFD);
    return flags >= 0 && !(flags & FD_CLOEXEC);
}

[[nodiscard]] inline bool isOpen(int descriptor)
{
    return fcntl(descriptor, F_GETFD) >= 0;
}

/// While it lives, no file can be opened that would need a descriptor of `limit` or above.
class DescriptorLimit {
public:
    explicit DescriptorLimit(int limit)
    {
        getrlimit(RLIMIT_NOFILE, &m_usual);
        const rlimit lowered{static_cast<rlim_t>(limit), m_usual.rlim_max};
        setrlimit(RLIMIT_NOFILE, &lowered);
    }
    DescriptorLimit(const DescriptorLimit&) = delete; // one at a time
    DescriptorLimit& operator=(const DescriptorLimit&) = delete;
    ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &m_usual); }

private:
    rlimit m_usual{};
};

} // namespace ZSpace::Testing
