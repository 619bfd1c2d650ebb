// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/foundation/Utf8Foundation.h"

#include <cstddef>

namespace ZSpace::Host {

namespace {

constexpr const char* s_replacement = "\xEF\xBF\xBD"; // U+FFFD

unsigned char byteAt(const char* bytes, std::size_t index)
{
    return static_cast<unsigned char>(bytes[index]);
}

bool isContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

/// The length of a character that begins with `lead`; 0 if none does.
std::size_t lengthFor(unsigned char lead)
{
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead < 0xE0)
        return 2;
    if (lead >= 0xE0 && lead < 0xF0)
        return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

/// False if `second` makes an overlong form, a surrogate or a code point beyond U+10FFFF.
bool mayFollow(unsigned char lead, unsigned char second)
{
    switch (lead) {
    case 0xE0:
        return second >= 0xA0;
    case 0xED:
        return second < 0xA0;
    case 0xF0:
        return second >= 0x90;
    case 0xF4:
        return second < 0x90;
    default:
        return true;
    }
}

/// The length of the well-formed character at the start of `bytes`; 0 if there is none. Stops at the terminator.
std::size_t wholeCharacter(const char* bytes)
{
    const unsigned char lead = byteAt(bytes, 0);
    const std::size_t length = lengthFor(lead);
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(byteAt(bytes, i)))
            return 0;
    }
    return length < 2 || mayFollow(lead, byteAt(bytes, 1)) ? length : 0;
}

} // namespace

std::string repairedUtf8(const char* bytes)
{
    std::string result;
    while (*bytes) {
        if (const std::size_t length = wholeCharacter(bytes)) {
            result.append(bytes, length);
            bytes += length;
            continue;
        }
        result += s_replacement;
        ++bytes;
        while (isContinuation(byteAt(bytes, 0)))
            ++bytes;
    }
    return result;
}

} // namespace ZSpace::Host
