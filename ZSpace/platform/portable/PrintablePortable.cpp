// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/portable/PrintablePortable.h"

#include <cstddef>

namespace ZSpace::Host {

namespace {

constexpr std::size_t s_maxLength = 64;

bool isPrintable(unsigned char byte)
{
    return byte >= 0x20 && byte < 0x7F;
}

std::string escaped(unsigned char byte)
{
    constexpr const char* digits = "0123456789ABCDEF";
    if (byte == '\\')
        return "\\\\";
    if (isPrintable(byte))
        return std::string(1, static_cast<char>(byte));
    return {'\\', 'x', digits[byte >> 4], digits[byte & 0xF]};
}

} // namespace

std::string printableName(const char* name)
{
    const std::string ellipsis = "...";
    std::string result;
    std::size_t whole = 0; // the longest length after which the ellipsis fits
    for (; *name; ++name) {
        result += escaped(static_cast<unsigned char>(*name));
        if (result.size() <= s_maxLength - ellipsis.size())
            whole = result.size();
        if (result.size() > s_maxLength)
            return result.substr(0, whole) + ellipsis;
    }
    return result;
}

} // namespace ZSpace::Host
