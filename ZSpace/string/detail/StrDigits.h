// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrNumbers.h"

#include <array>
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

/// Writes a number without a terminator; `length` is `number.length()`. Produces the digits last first, two
/// per division.
template <StrChar T>
inline void writeDecimal(T* to, long length, Decimal number) noexcept
{
    if (number.isNegative)
        *to = '-';
    T* end = to + length;
    unsigned long long left = number.magnitude;
    for (; left >= 100; left /= 100)
        writePair(end -= 2, s_decimalPairs[left % 100]);
    if (left >= 10)
        writePair(end - 2, s_decimalPairs[left]);
    else
        end[-1] = digitChar<T>(static_cast<unsigned>(left));
}

} // namespace ZSpace::detail
