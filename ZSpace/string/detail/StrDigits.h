// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrNumbers.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZSpace::detail {

using DigitPair = std::array<char, 2>;

inline constexpr std::array<DigitPair, 100> s_decimalPairs = [] {
    std::array<DigitPair, 100> pairs{};
    for (unsigned i = 0; i < pairs.size(); ++i)
        pairs[i] = {static_cast<char>('0' + i / 10), static_cast<char>('0' + i % 10)};
    return pairs;
}();

template <StrChar T>
inline void writePair(T* to, const DigitPair& pair) noexcept
{
    if constexpr (sizeof(T) == sizeof(char)) {
        std::memcpy(to, pair.data(), pair.size()); // one store
    } else {
        to[0] = static_cast<T>(pair[0]);
        to[1] = static_cast<T>(pair[1]);
    }
}

template <StrChar T>
[[nodiscard]] constexpr T digitChar(unsigned digit) noexcept
{
    return static_cast<T>('0' + digit);
}

/// Writes `count` digits, an even number, with leading zeros.
template <std::ptrdiff_t count, StrChar T>
inline void writeDigits(T* to, std::uint32_t number) noexcept
{
    if constexpr (count > 2) {
        constexpr std::ptrdiff_t low = count / 4 * 2;
        constexpr auto divisor = static_cast<std::uint32_t>(numbers::s_powersOfTen[low]);
        writeDigits<count - low>(to, number / divisor);
        writeDigits<low>(to + count - low, number % divisor);
    } else {
        writePair(to, s_decimalPairs[number]);
    }
}

/// Writes the digits of a number without leading zeros and without a terminator.
/// @return their end.
template <StrChar T>
inline T* writeDecimal32(T* to, std::uint32_t number) noexcept
{
    // The pairs of digits after the first one or two digits.
    const std::size_t pairs =
        (number >= 100U) + (number >= 10'000U) + (number >= 1'000'000U) + (number >= 100'000'000U);
    // A fixed-point number with 57 bits after the point, whose integer part is the next pair: multiplying by 100 is faster
    // than dividing. The factors are rounded up by less than 1; for all 2^32 numbers, the last pair is off by less than 1.
    constexpr int shift = 57;
    static constexpr std::uint64_t s_factors[] = {
        1ULL << shift, 1'441'151'880'758'559, 14'411'518'807'586, 144'115'188'076, 1'441'151'881};
    std::uint64_t left = number * s_factors[pairs];
    const auto first = static_cast<std::uint32_t>(left >> shift);
    if (first < 10) {
        *to++ = digitChar<T>(first);
    } else {
        writePair(to, s_decimalPairs[first]);
        to += 2;
    }
    for (T* const end = to + 2 * pairs; to != end; to += 2) {
        left = (left & ((1ULL << shift) - 1)) * 100;
        writePair(to, s_decimalPairs[left >> shift]);
    }
    return to;
}

/// Writes a number without a terminator.
/// @return its end.
template <StrChar T>
inline T* writeDecimal(T* to, Decimal number) noexcept
{
    if (number.isNegative)
        *to++ = '-';
    const unsigned long long magnitude = number.magnitude;
    if (magnitude <= UINT32_MAX)
        return writeDecimal32(to, static_cast<std::uint32_t>(magnitude));
    // The first digits, and blocks of eight: few divisions of 64 bits, which hardly depend on each other.
    constexpr unsigned long long block = 100'000'000;
    const unsigned long long high = magnitude / block;
    if (high > UINT32_MAX) {
        to = writeDecimal32(to, static_cast<std::uint32_t>(high / block));
        writeDigits<8>(to, static_cast<std::uint32_t>(high % block));
        to += 8;
    } else {
        to = writeDecimal32(to, static_cast<std::uint32_t>(high));
    }
    writeDigits<8>(to, static_cast<std::uint32_t>(magnitude % block));
    return to + 8;
}

} // namespace ZSpace::detail
