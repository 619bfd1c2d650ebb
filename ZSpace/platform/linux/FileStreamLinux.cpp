// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/FileStream.h"

#include <array>

namespace ZSpace::Host {

std::FILE* openFileStream(const char* path, const char* mode) noexcept
{
    std::array<char, 8> withFlag{};
    std::snprintf(withFlag.data(), withFlag.size(), "%se", mode); // "e" is O_CLOEXEC
    return std::fopen(path, withFlag.data());
}

} // namespace ZSpace::Host
