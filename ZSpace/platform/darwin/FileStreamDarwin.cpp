// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/FileStream.h"

#include <fcntl.h>

namespace ZSpace::Host {

std::FILE* openFileStream(const char* path, const char* mode) noexcept
{
    std::FILE* const stream = std::fopen(path, mode); // older versions ignore "e", the letter for O_CLOEXEC
    if (!stream)
        return nullptr;
    fcntl(fileno(stream), F_SETFD, FD_CLOEXEC);
    if (*mode == 'a')
        std::rewind(stream); // append modes start at the end here
    return stream;
}

} // namespace ZSpace::Host
