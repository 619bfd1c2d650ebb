// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrNumbers.h"

#include <algorithm>
#include <climits>
#include <concepts>
#include <iosfwd>

/// The queries of the string classes, as functions of views: members and static routines forward to these.
/// The classes document what they return. A negative length counts as 0 except where lengths are compared.
namespace ZSpace::detail {

template <typename T>
[[nodiscard]] long compare(ZStrToken<T> a, ZStrToken<T> b) noexcept;
template <typename T>
[[nodiscard]] long compareIgnoreCase(ZStrToken<T> a, ZStrToken<T> b) noexcept;
template <typename T>
[[nodiscard]] bool isLike(ZStrToken<T> a, ZStrToken<T> b) noexcept;

template <typename T>
[[nodiscard]] long indexOf(ZStrToken<T> text, T c, long from) noexcept;
template <typename T>
[[nodiscard]] long indexOf(ZStrToken<T> text, ZStrToken<T> what, long from) noexcept;
template <typename T>
[[nodiscard]] long lastIndexOf(ZStrToken<T> text, T c, long from) noexcept;
template <typename T>
[[nodiscard]] long lastIndexOf(ZStrToken<T> text, ZStrToken<T> what, long from) noexcept;
template <typename T>
[[nodiscard]] long count(ZStrToken<T> text, T c) noexcept;
template <typename T>
[[nodiscard]] long count(ZStrToken<T> text, ZStrToken<T> what) noexcept;
template <typename T>
[[nodiscard]] long verify(ZStrToken<T> text, T c, long from) noexcept;
template <typename T>
[[nodiscard]] long verify(ZStrToken<T> text, ZStrToken<T> set, long from) noexcept;

/// Formatted output: honors width, fill and adjustment of the stream.
template <typename T>
std::basic_ostream<T>& print(std::basic_ostream<T>& out, ZStrToken<T> text);
/// Prints narrow characters to a wide stream, zero-extended.
std::wostream& print(std::wostream& out, ZStrToken<char> text);

/// The length of a view as operations use it.
template <StrChar T>
[[nodiscard]] constexpr long lengthOf(ZStrToken<T> text) noexcept
{
    return std::max(text.Length(), 0L);
}

/// The index that a caller's position denotes: a negative one counts from the end and stops at the start, one
/// past the end stops at the end.
[[nodiscard]] constexpr long clampedPosition(long at, long length) noexcept
{
    return at < 0 ? std::max(at + length, 0L) : std::min(at, length);
}

/// How many characters a caller's `count` covers from a clamped position on; a negative count means all.
[[nodiscard]] constexpr long clampedCount(long count, long at, long length) noexcept
{
    return count < 0 ? length - at : std::min(count, length - at);
}

template <StrChar T>
[[nodiscard]] constexpr ZStrToken<T> left(ZStrToken<T> text, long n) noexcept
{
    return {text, std::clamp(n, 0L, lengthOf(text))};
}

template <StrChar T>
[[nodiscard]] constexpr ZStrToken<T> right(ZStrToken<T> text, long n) noexcept
{
    const long whole = lengthOf(text);
    const long taken = std::clamp(n, 0L, whole);
    return {text + (whole - taken), taken};
}

template <StrChar T>
[[nodiscard]] constexpr ZStrToken<T> subString(ZStrToken<T> text, long start, long count) noexcept
{
    const long whole = lengthOf(text);
    const long first = clampedPosition(start, whole);
    return {text + first, clampedCount(count, first, whole)};
}

template <StrChar T>
[[nodiscard]] constexpr std::basic_string_view<T> standardView(ZStrToken<T> text) noexcept
{
    return {static_cast<const T*>(text), unsignedOf(lengthOf(text))};
}

template <std::integral I, StrChar T>
[[nodiscard]] I toInteger(ZStrToken<T> text) noexcept
{
    if constexpr (std::is_signed_v<I>)
        return static_cast<I>(readSignedDecimal<T>(text, text.Length()));
    else
        return static_cast<I>(readDecimal<T>(text, text.Length()));
}

template <std::unsigned_integral I, StrChar T>
[[nodiscard]] I hexToInteger(ZStrToken<T> text) noexcept
{
    return static_cast<I>(readHex<T>(text, text.Length(), s_hexDigits<I>));
}

template <StrChar T>
long hexToBytes(void* bytes, long size, ZStrToken<T> text) noexcept
{
    const long n = std::clamp(text.Length() / 2, 0L, std::max(size, 0L));
    readHexBytes<T>(bytes, text, n);
    return n;
}

template <StrChar T>
[[nodiscard]] constexpr bool isAlpha(ZStrToken<T> text) noexcept
{
    return !text.isEmpty() && isWithin(lowerOf(*text), 'a', 'z');
}

template <StrChar T>
[[nodiscard]] bool isNumeric(ZStrToken<T> text) noexcept
{
    const T* const first = text;
    return std::all_of(
        first, first + lengthOf(text), [](T c) { return isDigitChar(c) || c == '-' || c == '.'; });
}

} // namespace ZSpace::detail
