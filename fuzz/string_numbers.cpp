// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Reads strings as each kind of number. Narrow and wide must agree with each other and with a digit-by-digit
// reference, and a printed number must read back as the same number.

#include "fuzz/FuzzText.h"

#include <cmath>
#include <cstring>

using namespace ZSpace;
using namespace ZSpaceFuzz;

namespace {

std::uint64_t readByHand(const std::string& text, bool isSigned)
{
    const bool isNegative = isSigned && !text.empty() && text[0] == '-';
    std::uint64_t number = 0;
    for (std::size_t i = isNegative ? 1 : 0; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
        number = number * 10 + static_cast<std::uint64_t>(text[i] - '0');
    return isNegative ? 0 - number : number;
}

template <typename T>
void readNumbers(const std::string& text)
{
    const Characters<T> characters(text);
    const ZStrToken<T> view = characters.view();
    const std::uint64_t expected = readByHand(text, true);
    require(view.toInt8() == static_cast<signed char>(expected), "toInt8");
    require(view.toInt16() == static_cast<short>(expected), "toInt16");
    require(view.toInt32() == static_cast<int>(expected), "toInt32");
    require(view.toInt64() == static_cast<long long>(expected), "toInt64");
    const std::uint64_t unsignedExpected = readByHand(text, false);
    require(view.toUInt8() == static_cast<unsigned char>(unsignedExpected), "toUInt8");
    require(view.toUInt16() == static_cast<unsigned short>(unsignedExpected), "toUInt16");
    require(view.toUInt32() == static_cast<unsigned int>(unsignedExpected), "toUInt32");
    require(view.toUInt64() == unsignedExpected, "toUInt64");

    const double real = view.toDouble();
    require(!std::isnan(real), "a real number is a number");
    require(view.toSingle() == static_cast<float>(real), "toSingle");
}

template <typename T>
void printNumbers(std::uint64_t bits)
{
    require(ZGStr<T>::valueOf(static_cast<unsigned long long>(bits)).toUInt64() == bits,
        "unsigned there and back");
    const auto number = static_cast<long long>(bits);
    ZMStr<T> padded;
    padded.appendValueOf(number, 25);
    require(padded.Length() == 25, "padded to its width");
    require(ZGStr<T>::valueOf(number).toInt64() == number, "signed there and back");

    double real = 0;
    std::memcpy(&real, &bits, sizeof real);
    const auto printed = ZGStr<T>::valueOf(real);
    require(printed.length() >= 1 && printed.length() <= 41, "a real number fits");
    require(printed.isNumeric(), "a real number is made of digits");
    require(printed.count(T('.')) <= 1 && printed.lastIndexOf(T('-')) <= 0, "a real number is well formed");
    require(printed.at(-1) != T('.'), "a real number ends with a digit");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text = Input(data, size).rest();
    readNumbers<char>(text);
    readNumbers<wchar_t>(text);

    Input input(data, size);
    std::uint64_t bits = 0;
    for (unsigned shift = 0; shift < 64; shift += 8)
        bits |= std::uint64_t{input.byte()} << shift;
    printNumbers<char>(bits);
    printNumbers<wchar_t>(bits);
    return 0;
}
