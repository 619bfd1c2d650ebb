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

/// Writes a number without a terminator; `length` is `number.length()`. Produces the digits last first: eight per 64-bit
/// division, so that few of those depend on each other, then two per division.
template <StrChar T>
inline void writeDecimal(T* to, long length, Decimal number) noexcept
{
    if (number.isNegative)
        *to = '-';
    T* end = to + length;
    unsigned long long left = number.magnitude;
    for (; left > UINT32_MAX; left /= 100'000'000)
        writeDigits<8>(end -= 8, static_cast<std::uint32_t>(left % 100'000'000));
    auto low = static_cast<std::uint32_t>(left); // 32-bit divisions are faster
    for (; low >= 100; low /= 100)
        writePair(end -= 2, s_decimalPairs[low % 100]);
    if (low >= 10)
        writePair(end - 2, s_decimalPairs[low]);
    else
        end[-1] = digitChar<T>(low);
}

} // namespace ZSpace::detail
