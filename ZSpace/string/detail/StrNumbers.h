// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrChars.h"

#include <bit>
#include <type_traits>

namespace ZSpace::detail {

/// Types that print as whole numbers: every width and sign, and enumerations that convert by themselves.
/// Truth values and characters are none of them.
template <typename I>
concept StrInteger =
    (std::integral<
         I> && !std::same_as<I, bool> && !std::same_as<I, char> && !std::same_as<I, wchar_t> && !std::same_as<I, char8_t> && !std::same_as<I, char16_t> && !std::same_as<I, char32_t>)
    || (std::is_enum_v<I> && std::convertible_to<I, long long>);

/// A whole number, split into what is printed.
struct Decimal {
    template <StrInteger I>
    constexpr explicit Decimal(I value) noexcept
        : magnitude(static_cast<unsigned long long>(value))
    {
        if constexpr (std::is_signed_v<decltype(+value)>)
            isNegative = value < I(0);
        if (isNegative)
            magnitude = 0 - magnitude; // also right for the smallest number, which has no positive twin
    }

    /// The number of characters, the sign included.
    [[nodiscard]] constexpr long length() const noexcept;

    unsigned long long magnitude;
    bool isNegative = false;
};

/// The characters of the longest number with sign, and some to spare.
constexpr long s_decimalRoom = 23;
/// A real number is cut off behind so many characters.
constexpr long s_realRoom = 41;

/// Writes a real number: the integer part, and a fraction where there is one, digit by digit until nothing is
/// left of it. No exponent and no rounding. Numbers too large for 64 bits are held at the largest that fits;
/// what is not a number prints as 0.
/// @return the number of characters written, at most `s_realRoom`, with no terminator.
template <StrChar T>
long writeReal(T* to, double value, bool emptyIfZero) noexcept;

/// Writes `digits` hexadecimal digits in lower case, the most significant first.
template <StrChar T>
void writeHex(T* to, unsigned long long value, long digits) noexcept;

/// Writes two hexadecimal digits for each of `n` bytes, in the order in which they lie in memory.
template <StrChar T>
void writeHexBytes(T* to, const void* bytes, long n) noexcept;

/// Reads decimal digits up to the first other character. The result wraps around.
template <StrChar T>
[[nodiscard]] unsigned long long readDecimal(const T* text, long n) noexcept;

/// As `readDecimal`, with an optional "-" ahead.
template <StrChar T>
[[nodiscard]] unsigned long long readSignedDecimal(const T* text, long n) noexcept;

/// Reads an optional "-", digits and, after one ".", a fraction, up to the first character that does not fit.
template <StrChar T>
[[nodiscard]] double readReal(const T* text, long n) noexcept;

/// The value of a hexadecimal digit of either case; 0 for any other character.
template <StrChar T>
[[nodiscard]] unsigned char readNibble(T c) noexcept;

/// Reads exactly `digits` hexadecimal digits. Those that a shorter text lacks count as 0 at their place.
template <StrChar T>
[[nodiscard]] unsigned long long readHex(const T* text, long n, long digits) noexcept;

/// Reads `count` bytes from pairs of hexadecimal digits.
template <StrChar T>
void readHexBytes(void* to, const T* text, long count) noexcept;

/// Types that print as hexadecimal numbers; a character prints as the number it is.
template <typename I>
concept StrHexInteger = std::integral<I> && !std::same_as<I, bool>;

/// The types that print as hexadecimal into a caller's array. Only these, so that a count beside an array of
/// characters is never taken for the number to be printed.
template <typename U>
concept StrHexWord = std::same_as<U, unsigned char> || std::same_as<U, unsigned short> || std::same_as<U,
    unsigned int> || std::same_as<U, unsigned long long>;

/// Two's complement bits, with nothing above the width of the type.
template <StrHexInteger I>
[[nodiscard]] constexpr unsigned long long bitsOf(I value) noexcept
{
    return static_cast<std::make_unsigned_t<I>>(value);
}

template <StrHexInteger I>
constexpr long s_hexDigits = static_cast<long>(2 * sizeof(I));

namespace numbers {

constexpr unsigned long long s_powersOfTen[]{1ULL, 10ULL, 100ULL, 1000ULL, 10000ULL, 100000ULL, 1000000ULL,
    10000000ULL, 100000000ULL, 1000000000ULL, 10000000000ULL, 100000000000ULL, 1000000000000ULL,
    10000000000000ULL, 100000000000000ULL, 1000000000000000ULL, 10000000000000000ULL, 100000000000000000ULL,
    1000000000000000000ULL, 10000000000000000000ULL};

} // namespace numbers

constexpr long Decimal::length() const noexcept
{
    // 1233 / 4096 is log10(2) closely enough to be off by at most one, which the table settles.
    const unsigned long long number = magnitude | 1; // 0 has a digit as well
    const int guess = static_cast<int>(std::bit_width(number)) * 1233 >> 12;
    return guess + (number >= numbers::s_powersOfTen[guess]) + isNegative;
}

} // namespace ZSpace::detail
