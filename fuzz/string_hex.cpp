// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Bytes printed in hexadecimal must read back unchanged, and any string must read as the value of its digits.

#include "fuzz/FuzzText.h"

#include <algorithm>
#include <vector>

using namespace ZSpace;
using namespace ZSpaceFuzz;

namespace {

unsigned nibbleByHand(char c)
{
    const std::string digits = "0123456789abcdef";
    const std::size_t lower = digits.find(c >= 'A' && c <= 'F' ? static_cast<char>(c + 32) : c);
    return lower == std::string::npos ? 0 : static_cast<unsigned>(lower);
}

std::uint64_t readByHand(const std::string& text, std::size_t digits)
{
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < digits; ++i)
        number = number * 16 + (i < text.size() ? nibbleByHand(text[i]) : 0);
    return number;
}

template <typename T>
void readHex(const std::string& text)
{
    const Characters<T> characters(text);
    const ZStrToken<T> view = characters.view();
    require(view.hexToUInt8() == readByHand(text, 2), "hexToUInt8");
    require(view.hexToUInt16() == readByHand(text, 4), "hexToUInt16");
    require(view.hexToUInt32() == readByHand(text, 8), "hexToUInt32");
    require(view.hexToUInt64() == readByHand(text, 16), "hexToUInt64");

    for (const std::size_t size : {text.size() / 2, text.size() / 4, text.size()}) {
        std::vector<unsigned char> bytes(size);
        const long written = view.hexTo(bytes.data(), static_cast<long>(size));
        require(
            written == static_cast<long>(std::min(size, text.size() / 2)), "as many bytes as pairs and room");
        for (std::size_t i = 0; i < static_cast<std::size_t>(written); ++i)
            require(bytes[i] == readByHand(text.substr(2 * i), 2), "each byte is its pair");
    }
}

template <typename T>
void printHex(const std::uint8_t* data, std::size_t size)
{
    const auto n = static_cast<long>(size);
    const auto printed = ZGStr<T>::hexOf(data, n);
    require(printed.length() == 2 * n, "two digits for each byte");
    std::vector<unsigned char> bytes(size);
    require(printed.hexTo(bytes.data(), n) == n, "all bytes come back");
    require(std::equal(bytes.begin(), bytes.end(), data), "and are what they were");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = Input(data, size).rest();
    readHex<char>(text);
    readHex<wchar_t>(text);
    printHex<char>(data, size);
    printHex<wchar_t>(data, size);
    return 0;
}
