// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/FileCopy.h"
#include "ZSpace/platform/posix/FileCopyPosix.h"

#include <cerrno>
#include <cstddef>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

// The kernel takes no more than this in one call anyway.
constexpr std::size_t s_mostAtOnce = std::size_t{1} << 30;

/// Lets the kernel copy, without a detour through this process, until it refuses or reports the end.
void copyInKernel(int from, int to) noexcept
{
    for (;;) {
        const ssize_t copied = copy_file_range(from, nullptr, to, nullptr, s_mostAtOnce, 0);
        if (copied == 0 || (copied < 0 && errno != EINTR))
            return;
    }
}

} // namespace

int copyContents(int from, int to) noexcept
{
    copyInKernel(from, to);
    // Both positions are where the kernel stopped. It refuses pairs of files that it cannot copy between, and calls
    // some files empty that are not (those of /proc): the plain copy goes on from there, and meets a real error again.
    return copyByReadingAndWriting(from, to);
}

} // namespace ZSpace::Host
