// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/posix/FileCopyPosix.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

// Larger blocks are not measurably faster; this one still fits on the stack of every thread.
constexpr std::size_t s_blockSize = 64UL * 1024;

int writeAll(int file, const char* bytes, std::size_t size) noexcept
{
    while (size > 0) {
        const ssize_t written = write(file, bytes, size);
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        if (written == 0)
            return EIO; // retrying could loop forever
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return 0;
}

} // namespace

int copyByReadingAndWriting(int from, int to) noexcept
{
    std::array<char, s_blockSize> block; // uninitialized: only what `read` has filled is used
    for (;;) {
        const ssize_t size = read(from, block.data(), block.size());
        if (size == 0)
            return 0;
        if (size < 0) {
            if (errno == EINTR)
                continue;
            return errno;
        }
        if (const int error = writeAll(to, block.data(), static_cast<std::size_t>(size)))
            return error;
    }
}

} // namespace ZSpace::Host
