// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/FileCopy.h"
#include "ZSpace/platform/posix/FileCopyPosix.h"

#include <cerrno>
#include <cstddef>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

// The kernel's own limit per call is just below twice this.
constexpr std::size_t s_maxBytesPerCall = std::size_t{1} << 30;

/// Lets the kernel copy until it refuses or reports the end of the file.
void copyInKernel(int from, int to) noexcept
{
    for (;;) {
        const ssize_t copied = copy_file_range(from, nullptr, to, nullptr, s_maxBytesPerCall, 0);
        if (copied == 0 || (copied < 0 && errno != EINTR))
            return;
    }
}

} // namespace

int copyContents(int from, int to) noexcept
{
    copyInKernel(from, to);
    // The kernel refuses some pairs of files and reports files of /proc as empty. The plain copy continues at
    // the positions where the kernel stopped; a genuine error occurs again there.
    return copyByReadingAndWriting(from, to);
}

} // namespace ZSpace::Host
