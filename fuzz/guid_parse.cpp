// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Parses arbitrary input, an unterminated token, as a GUID. The result must equal that of a straightforward
// reference parser, survive printing and parsing, and be the same for wide input.

#include "ZSpace/value/ZGUID.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace ZSpace;

void check(bool holds)
{
    if (!holds)
        std::abort();
}

unsigned valueOf(char c)
{
    const std::string digits = "0123456789abcdef";
    const auto position = digits.find(static_cast<char>(c >= 'A' && c <= 'F' ? c - 'A' + 'a' : c));
    return position == std::string::npos ? 0 : static_cast<unsigned>(position);
}

unsigned numberOf(std::string text, std::size_t digits)
{
    text.resize(digits, '0');
    unsigned number = 0;
    for (const char c : text)
        number = number * 16 + valueOf(c);
    return number;
}

void readBytes(const std::string& text, unsigned char* to, std::size_t count)
{
    for (std::size_t i = 0; i < std::min(text.size() / 2, count); ++i)
        to[i] = static_cast<unsigned char>(valueOf(text[2 * i]) * 16 + valueOf(text[2 * i + 1]));
}

ZGUID referenceOf(std::string text, ZGUID guid)
{
    if (!text.empty() && text[0] == '{')
        text = text.size() < 2 ? "" : text.substr(1, text.size() - 2);
    text = text.substr(0, std::min(text.find('\0'), text.size()));
    std::vector<std::string> groups(1);
    for (const char c : text) {
        if (c == '-')
            groups.emplace_back();
        else
            groups.back() += c;
    }
    if (groups.size() != 5)
        return {};
    guid.data1 = numberOf(groups[0], 8);
    guid.data2 = static_cast<unsigned short>(numberOf(groups[1], 4));
    guid.data3 = static_cast<unsigned short>(numberOf(groups[2], 4));
    readBytes(groups[3], guid.data4, 2);
    readBytes(groups[4], guid.data4 + 2, 6);
    return guid;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // A copy of exactly this size, so that a sanitizer reports any access past the end.
    const std::vector<char> exact(data, data + size);
    const std::string text(exact.begin(), exact.end());

    const ZGUID before(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11);
    ZGUID guid(before);
    guid = ZStrToken<char>(exact.data(), static_cast<long>(size));
    check(guid == referenceOf(text, before));
    check(ZGUID(ZStrToken<char>(exact.data(), static_cast<long>(size))) == referenceOf(text, ZGUID()));

    std::vector<wchar_t> widened;
    for (const char c : exact)
        widened.push_back(static_cast<unsigned char>(c));
    ZGUID wide(before);
    wide = ZStrToken<wchar_t>(widened.data(), static_cast<long>(size));
    check(wide == guid);

    check(guid.toCString().length() == ZGUID::s_textLength);
    check(ZGUID(guid.toCString()) == guid);
    check(ZGUID(guid.toWString()) == guid);
    return 0;
}
