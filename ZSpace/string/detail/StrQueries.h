// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrOperations.h"

#include <climits>
#include <cstddef>

namespace ZSpace::detail {

/// The read-only operations that all three string classes share.
///
/// Positions and lengths count characters. A negative position counts from the end and stops at the start.
/// Searches return -1 when nothing is found. Nothing here allocates or throws, and malformed numbers are not
/// errors: what cannot be read counts as 0.
template <typename Derived, StrChar T>
class StrQueries {
public:
    /// -1 or 1 at the first character that differs, compared as signed numbers; the difference of the lengths
    /// when one string is a prefix of the other.
    [[nodiscard]] long compare(ZStrToken<T> other) const noexcept { return detail::compare(view(), other); }
    /// As `compare`, with "A" to "Z" folded to lower case.
    [[nodiscard]] long compareIgnoreCase(ZStrToken<T> other) const noexcept
    {
        return detail::compareIgnoreCase(view(), other);
    }
    /// Whether both have the same length and the same characters. There are no wildcards.
    [[nodiscard]] bool isLike(ZStrToken<T> other) const noexcept { return detail::isLike(view(), other); }

    /// The number of characters, for algorithms and ranges.
    [[nodiscard]] std::size_t size() const noexcept { return unsignedOf(lengthOf(view())); }
    /// Whether there are no characters.
    [[nodiscard]] bool empty() const noexcept { return view().isEmpty(); }

    /// The index of the first `c` at or after `from`.
    [[nodiscard]] long indexOf(T c, long from = 0) const noexcept { return detail::indexOf(view(), c, from); }
    /// The index of the first `what` that starts at or after `from`. An empty `what` is never found.
    [[nodiscard]] long indexOf(ZStrToken<T> what, long from = 0) const noexcept
    {
        return detail::indexOf(view(), what, from);
    }
    /// The index of the last `c` at or before `from`; -1 when `from` lies before the start.
    [[nodiscard]] long lastIndexOf(T c, long from = LONG_MAX) const noexcept
    {
        return detail::lastIndexOf(view(), c, from);
    }
    /// The index of the last `what` that starts at or before `from`. An empty `what` is never found.
    [[nodiscard]] long lastIndexOf(ZStrToken<T> what, long from = LONG_MAX) const noexcept
    {
        return detail::lastIndexOf(view(), what, from);
    }
    /// The number of characters that equal `c`.
    [[nodiscard]] long count(T c) const noexcept { return detail::count(view(), c); }
    /// The number of non-overlapping occurrences from left to right; 0 for an empty `what`.
    [[nodiscard]] long count(ZStrToken<T> what) const noexcept { return detail::count(view(), what); }
    /// The index of the first character at or after `from` that is not `c`.
    [[nodiscard]] long s_verify(const T& c, long from = 0) const noexcept
    {
        return detail::verify(view(), c, from);
    }
    /// The index of the first character at or after `from` that is not in `set`; 0 for an empty set.
    [[nodiscard]] long s_verify(ZStrToken<T> set, long from = 0) const noexcept
    {
        return detail::verify(view(), set, from);
    }
    /// As above, with the set given by pointer and length.
    [[nodiscard]] long s_verify(const T* set, long setLength, long from) const noexcept
    {
        return detail::verify(view(), ZStrToken<T>(set, setLength), from);
    }

    // NOLINTBEGIN(modernize-use-nodiscard): ignoring a substring or a number loses nothing

    /// The first `n` characters, or all of them if there are fewer; a view of this string's characters.
    ZStrToken<T> left(long n) const noexcept { return detail::left(view(), n); }
    /// The last `n` characters, or all of them if there are fewer; a view of this string's characters.
    ZStrToken<T> right(long n) const noexcept { return detail::right(view(), n); }
    /// Up to `count` characters from `start` on, all of them if `count` is negative; a view of this string's
    /// characters.
    ZStrToken<T> subString(long start, long count = -1) const noexcept
    {
        return detail::subString(view(), start, count);
    }
    /// As `subString`.
    ZStrToken<T> operator()(long start, long count) const noexcept { return subString(start, count); }

    /// Reads an optional "-" and decimal digits up to the first other character. A number that is too large
    /// wraps around in the return type. The other signed forms do the same.
    signed char toInt8() const noexcept { return detail::toInteger<signed char>(view()); }
    /// See `toInt8`.
    short toInt16() const noexcept { return detail::toInteger<short>(view()); }
    /// See `toInt8`.
    int toInt32() const noexcept { return detail::toInteger<int>(view()); }
    /// See `toInt8`.
    long long toInt64() const noexcept { return detail::toInteger<long long>(view()); }
    /// Reads decimal digits up to the first other character; a leading "-" yields 0. A number that is too
    /// large wraps around in the return type. The other unsigned forms do the same.
    unsigned char toUInt8() const noexcept { return detail::toInteger<unsigned char>(view()); }
    /// See `toUInt8`.
    unsigned short toUInt16() const noexcept { return detail::toInteger<unsigned short>(view()); }
    /// See `toUInt8`.
    unsigned int toUInt32() const noexcept { return detail::toInteger<unsigned int>(view()); }
    /// See `toUInt8`.
    unsigned long long toUInt64() const noexcept { return detail::toInteger<unsigned long long>(view()); }
    /// As `toDouble`, rounded to `float`.
    float toSingle() const noexcept { return static_cast<float>(toDouble()); }
    /// Reads an optional "-", digits and, after one ".", a fraction, up to the first character that does not
    /// fit. There is no exponent.
    double toDouble() const noexcept { return readReal<T>(view(), view().Length()); }

    /// Reads exactly 2 hexadecimal digits of either case; missing ones and other characters count as 0.
    unsigned char hexToUInt8() const noexcept { return detail::hexToInteger<unsigned char>(view()); }
    /// As `hexToUInt8`, with 4 digits.
    unsigned short hexToUInt16() const noexcept { return detail::hexToInteger<unsigned short>(view()); }
    /// As `hexToUInt8`, with 8 digits.
    unsigned int hexToUInt32() const noexcept { return detail::hexToInteger<unsigned int>(view()); }
    /// As `hexToUInt8`, with 16 digits.
    unsigned long long hexToUInt64() const noexcept
    {
        return detail::hexToInteger<unsigned long long>(view());
    }
    /// Writes at most `size` bytes, one for each pair of hexadecimal digits.
    /// @return the number of bytes written.
    long hexTo(void* bytes, long size) const noexcept { return detail::hexToBytes(bytes, size, view()); }

    // NOLINTEND(modernize-use-nodiscard)

    /// Whether the first character is one of "A" to "Z" or "a" to "z".
    [[nodiscard]] bool isAlpha() const noexcept { return detail::isAlpha(view()); }
    /// Whether every character is a digit, "-" or "."; true for the empty string.
    [[nodiscard]] bool isNumeric() const noexcept { return detail::isNumeric(view()); }

protected:
    StrQueries() = default;
    ~StrQueries() = default;
    StrQueries(const StrQueries&) = default;
    StrQueries& operator=(const StrQueries&) = default;

private:
    [[nodiscard]] ZStrToken<T> view() const noexcept
    {
        return ZStrToken<T>(static_cast<const Derived&>(*this));
    }
};

} // namespace ZSpace::detail
