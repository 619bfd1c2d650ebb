// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <iterator>
#include <limits>
#include <string_view>

namespace ZSpace::detail {

/// The decimal digits of a number, without allocating. (The oldest supported macOS lacks `std::to_chars`.)
class DecimalDigits {
public:
    explicit DecimalDigits(unsigned int number) noexcept
    {
        do {
            *--m_begin = static_cast<char>('0' + number % 10);
            number /= 10;
        } while (number != 0);
    }
    DecimalDigits(const DecimalDigits&) = delete;
    DecimalDigits& operator=(const DecimalDigits&) = delete;

    /// Valid as long as this object.
    [[nodiscard]] std::string_view view() const noexcept
    {
        return {m_begin, static_cast<std::size_t>(std::end(m_digits) - m_begin)};
    }

private:
    char m_digits[std::numeric_limits<unsigned int>::digits10 + 1];
    char* m_begin = std::end(m_digits);
};

} // namespace ZSpace::detail
