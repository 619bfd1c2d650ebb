// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/FileStream.h"

#include <fcntl.h>
#include <string_view>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

/// The flags of open(2) for a mode of fopen(3).
int flagsFor(std::string_view mode)
{
    const bool isUpdate = mode.find('+') != mode.npos;
    if (mode.starts_with('r'))
        return isUpdate ? O_RDWR : O_RDONLY;
    const int create = O_CREAT | (mode.starts_with('a') ? O_APPEND : O_TRUNC);
    return create | (isUpdate ? O_RDWR : O_WRONLY);
}

} // namespace

// Uses open(2), because fopen(3) of older versions has no letter for O_CLOEXEC, and setting the flag afterwards would
// be too late if another thread starts a child in between. It also makes append streams start at position 0, as on
// other hosts; those of fopen(3) start at the end.
std::FILE* openFileStream(const char* path, const char* mode) noexcept
{
    constexpr mode_t permissions = 0666;
    const int descriptor = open(path, flagsFor(mode) | O_CLOEXEC, permissions);
    if (descriptor < 0)
        return nullptr;
    std::FILE* const stream = fdopen(descriptor, mode);
    if (!stream)
        close(descriptor);
    return stream;
}

} // namespace ZSpace::Host
