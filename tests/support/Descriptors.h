// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {

/// The number of the next descriptor to be opened; unchanged by code that leaks no descriptors.
[[nodiscard]] inline int nextDescriptor()
{
    const int next = fcntl(STDIN_FILENO, F_DUPFD, 0);
    if (next >= 0)
        close(next);
    return next;
}

/// Whether child programs inherit the descriptor. False if it is not open.
[[nodiscard]] inline bool isInherited(int descriptor)
{
    const int flags = fcntl(descriptor, F_GETFD);
    return flags >= 0 && !(flags & FD_CLOEXEC);
}

/// The open descriptors of the file or socket at `path`, found without the proc file system.
[[nodiscard]] inline std::vector<int> descriptorsOf(const std::string& path)
{
    std::vector<int> found;
    struct stat sought { };
    if (stat(path.c_str(), &sought) != 0)
        return found;
    constexpr int highest = 1024;
    for (int descriptor = 0; descriptor < highest; ++descriptor) {
        struct stat current { };
        if (fstat(descriptor, &current) == 0 && current.st_dev == sought.st_dev
            && current.st_ino == sought.st_ino)
            found.push_back(descriptor);
    }
    return found;
}

[[nodiscard]] inline bool isOpen(int descriptor)
{
    return fcntl(descriptor, F_GETFD) >= 0;
}

/// During its lifetime, no descriptor of `limit` or above can be opened.
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
