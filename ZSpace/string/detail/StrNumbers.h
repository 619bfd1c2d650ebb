// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrChars.h"

#include <bit>
#include <type_traits>

namespace ZSpace::detail {

/// An enumeration that converts to integers implicitly.
template <typename E>
concept UnscopedEnum = std::is_enum_v<E> && std::convertible_to<E, long long>;

/// Types that print as decimal integers: integers of every width and unscoped enumerations, but neither
/// `bool` nor characters.
template <typename I>
concept StrInteger = UnscopedEnum<I> ||(
    std::integral<I> && !OneOf<I, bool, char, wchar_t, char8_t, char16_t, char32_t>);

/// An integer as sign and magnitude.
struct Decimal {
    template <StrInteger I>
    constexpr explicit Decimal(I value) noexcept
        : magnitude(static_cast<unsigned long long>(value))
    {
        if constexpr (std::is_signed_v<decltype(+value)>)
            isNegative = value < I(0);
        if (isNegative)
            magnitude = 0 - magnitude; // correct for the smallest value too, whose negation would overflow
    }

    /// The number of characters, including the sign.
    [[nodiscard]] constexpr long length() const noexcept;

    unsigned long long magnitude;
    bool isNegative = false;
};

/// The length of the longest integer, with its sign.
constexpr long s_maxDecimalLength = 20;

/// A floating-point number is cut after this many characters.
constexpr long s_maxRealLength = 41;

/// Writes the integer part and, unless it is 0, "." and the fraction, digit by digit until the remainder is 0.
/// No exponent, no rounding, no terminator. Values beyond 64 bits saturate; NaN prints as 0.
/// @return the number of characters written, at most `s_maxRealLength`.
template <typename T>
long writeReal(T* to, double value, bool emptyIfZero) noexcept;

/// Writes `digits` lower-case hexadecimal digits, most significant first.
template <typename T>
void writeHex(T* to, unsigned long long value, long digits) noexcept;

/// Writes two hexadecimal digits for each of `n` bytes, in memory order.
template <typename T>
void writeHexBytes(T* to, const void* bytes, long n) noexcept;

/// Reads decimal digits up to the first other character. The result wraps around.
template <typename T>
[[nodiscard]] unsigned long long readDecimal(const T* text, long n) noexcept;

/// As `readDecimal`, with an optional leading "-".
template <typename T>
[[nodiscard]] unsigned long long readSignedDecimal(const T* text, long n) noexcept;

/// Reads an optional "-", digits and, after one ".", a fraction, up to the first character that does not fit.
template <typename T>
[[nodiscard]] double readReal(const T* text, long n) noexcept;

/// The value of a hexadecimal digit of either case, 0 for any other character.
template <typename T>
[[nodiscard]] unsigned char readNibble(T c) noexcept;

/// Reads exactly `digits` hexadecimal digits. Digits missing at the end count as 0.
template <typename T>
[[nodiscard]] unsigned long long readHex(const T* text, long n, long digits) noexcept;

/// Reads `count` bytes from pairs of hexadecimal digits.
template <typename T>
void readHexBytes(void* to, const T* text, long count) noexcept;

/// Types that print as hexadecimal numbers: integers, characters and unscoped enumerations, but not `bool`.
template <typename I>
concept StrHexInteger = UnscopedEnum<I> ||(std::integral<I> && !std::same_as<I, bool>);

/// The unsigned type whose bits are printed; an enumeration prints as the integer that it is promoted to.
template <StrHexInteger I>
using HexWord = std::make_unsigned_t<typename std::conditional_t<std::is_enum_v<I>,
    std::common_type<decltype(+I())>, std::type_identity<I>>::type>;

/// The two's complement bits, zero above the width of the type.
template <StrHexInteger I>
[[nodiscard]] constexpr unsigned long long bitsOf(I value) noexcept
{
    return static_cast<HexWord<I>>(value);
}

template <StrHexInteger I>
constexpr long s_hexDigits = static_cast<long>(2 * sizeof(HexWord<I>));

namespace numbers {

constexpr unsigned long long s_powersOfTen[]{1ULL, 10ULL, 100ULL, 1000ULL, 10000ULL, 100000ULL, 1000000ULL,
    10000000ULL, 100000000ULL, 1000000000ULL, 10000000000ULL, 100000000000ULL, 1000000000000ULL,
    10000000000000ULL, 100000000000000ULL, 1000000000000000ULL, 10000000000000000ULL, 100000000000000000ULL,
    1000000000000000000ULL, 10000000000000000000ULL};

} // namespace numbers

constexpr long Decimal::length() const noexcept
{
    // 1233 / 4096 approximates log10(2), so the guess is at most one too small; the table corrects it.
    const unsigned long long number = magnitude | 1; // 0 has one digit
    const int guess = static_cast<int>(std::bit_width(number)) * 1233 >> 12;
    return guess + (number >= numbers::s_powersOfTen[guess]) + isNegative;
}

} // namespace ZSpace::detail
