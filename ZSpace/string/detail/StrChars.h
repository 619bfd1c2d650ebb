// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/detail/LifetimeBound.h"

#include <climits>
#include <concepts>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <string>
#include <string_view>
#include <type_traits>

namespace ZSpace {

template <typename T>
class ZGStr;
template <typename T>
class ZMStr;
template <typename T>
class ZStrToken;

/// Implementation of the string classes; not for users of the library.
///
/// A run of characters is a pointer and a signed length. Unless stated otherwise the pointer is not null and
/// the length is not negative. Nothing here allocates or throws.
namespace detail {

/// One of the listed types exactly.
template <typename T, typename... Types>
concept OneOf = (std::same_as<T, Types> || ...);

/// A character of either width. Function templates that are defined in a source file take a plain `typename` instead:
/// newer compilers make the constraint a part of the name that they link, and older ones do not.
template <typename T>
concept StrChar = OneOf<T, char, wchar_t>;

/// The character of the other width.
template <typename U, typename T>
concept OtherStrChar = StrChar<U> && !std::same_as<U, T>;

/// Exactly the standard library's strings and views of `T`.
template <typename S, typename T>
concept StdText = OneOf<S, std::basic_string_view<T>, std::basic_string<T>>;

/// Strings of the width other than that of `T`, in every form that `operator<<` converts.
template <typename S, typename T>
concept OtherWidthText = StrChar<T> && std::convertible_to < const S&,
        ZStrToken < std::conditional_t < std::same_as<T, char>, wchar_t,
char >>> &&!std::convertible_to<const S&, ZStrToken<T>>;

static_assert(sizeof(wchar_t) == 4, "wide strings hold 32-bit code units");

[[nodiscard]] constexpr std::size_t unsignedOf(long n) noexcept
{
    return static_cast<std::size_t>(n);
}

/// Types that can index a string: integers, unscoped enumerations and whatever else converts to an integer.
template <typename I>
concept StrIndex = std::convertible_to<I, long long> && !std::is_floating_point_v<I>;

/// An index or a count as `long`; an unsigned value beyond its range saturates.
template <StrIndex I>
[[nodiscard]] constexpr long saturated(I value) noexcept
{
    const auto number = +value;
    if constexpr (std::is_unsigned_v<decltype(+value)>)
        return number > static_cast<unsigned long>(LONG_MAX) ? LONG_MAX : static_cast<long>(number);
    else
        return static_cast<long>(number);
}

/// Types that must not silently count as characters: other characters, and whatever can index a string.
template <typename I, typename T>
concept NotStrChar = StrIndex<I> && !std::same_as<I, T>;

// Arithmetic on lengths that callers pass. It saturates, so that an absurd length makes the allocation fail
// instead of overflowing the addition.

[[nodiscard]] constexpr long sumOf(long a, long b) noexcept
{
    long sum = 0;
    return __builtin_add_overflow(a, b, &sum) ? (a < 0 ? LONG_MIN : LONG_MAX) : sum;
}

[[nodiscard]] constexpr long differenceOf(long a, long b) noexcept
{
    long difference = 0;
    return __builtin_sub_overflow(a, b, &difference) ? (a < b ? LONG_MIN : LONG_MAX) : difference;
}

[[nodiscard]] constexpr long productOf(long a, long b) noexcept
{
    long product = 0;
    return __builtin_mul_overflow(a, b, &product) ? ((a < 0) == (b < 0) ? LONG_MAX : LONG_MIN) : product;
}

/// Characters are ordered as signed numbers, whether or not the host's `char` and `wchar_t` are signed.
template <StrChar T>
[[nodiscard]] constexpr auto signedOf(T c) noexcept
{
    return static_cast<std::make_signed_t<T>>(c);
}

template <StrChar T>
[[nodiscard]] constexpr auto unsignedOf(T c) noexcept
{
    return static_cast<std::make_unsigned_t<T>>(c);
}

/// The number of characters before the terminator; 0 for null.
template <StrChar T>
[[nodiscard]] inline long lengthOf(const T* text) noexcept
{
    if (!text)
        return 0;
    if constexpr (sizeof(T) == 1)
        return static_cast<long>(std::strlen(text));
    else
        return static_cast<long>(std::wcslen(text));
}

/// As `lengthOf`, but reads at most `limit` characters.
template <StrChar T>
[[nodiscard]] inline long lengthWithin(const T* text, long limit) noexcept
{
    if (!text || limit < 1)
        return 0;
    if constexpr (sizeof(T) == 1)
        return static_cast<long>(::strnlen(text, unsignedOf(limit)));
    else
        return static_cast<long>(::wcsnlen(text, unsignedOf(limit)));
}

/// How many characters a copy of a string with an explicit length has: none if the first one is zero.
template <StrChar T>
[[nodiscard]] constexpr long copiedLength(const T* text, long length) noexcept
{
    return length < 1 || !text || *text == 0 ? 0 : length; // does not read the text if the length is below 1
}

/// `n` may be 0 with null pointers.
template <StrChar T>
inline void copyChars(T* to, const T* from, long n) noexcept
{
    if (n > 0)
        std::memcpy(to, from, unsignedOf(n) * sizeof(T));
}

/// As `copyChars`, but the runs may overlap.
template <StrChar T>
inline void moveChars(T* to, const T* from, long n) noexcept
{
    if (n > 0)
        std::memmove(to, from, unsignedOf(n) * sizeof(T));
}

/// Converts between the widths code unit by code unit: narrowing keeps the low 8 bits, widening zero-extends.
template <StrChar To, StrChar From>
inline void convertChars(To* to, const From* from, long n) noexcept
{
    if constexpr (std::same_as<To, From>) {
        moveChars(to, from, n);
    } else {
        for (long i = 0; i < n; ++i)
            to[i] = static_cast<To>(unsignedOf(from[i]));
    }
}

template <StrChar T>
inline void fillChars(T* to, T c, long n) noexcept
{
    if (n < 1)
        return;
    if constexpr (sizeof(T) == 1)
        std::memset(to, c, unsignedOf(n));
    else
        std::wmemset(to, c, unsignedOf(n));
}

/// `n` may be 0 with null pointers.
template <StrChar T>
[[nodiscard]] inline bool equalChars(const T* a, const T* b, long n) noexcept
{
    return n < 1 || std::memcmp(a, b, unsignedOf(n) * sizeof(T)) == 0;
}

/// A pointer to the first `c` among `n` characters, or null.
template <StrChar T>
[[nodiscard]] inline const T* findChar(const T* text, long n, T c) noexcept
{
    if (n < 1)
        return nullptr;
    if constexpr (sizeof(T) == 1)
        return static_cast<const T*>(std::memchr(text, c, unsignedOf(n)));
    else
        return std::wmemchr(text, c, unsignedOf(n));
}

template <StrChar T>
[[nodiscard]] constexpr bool isWithin(T c, char first, char last) noexcept
{
    // A single comparison: below `first` the difference wraps around.
    using Unsigned = std::make_unsigned_t<T>;
    return static_cast<Unsigned>(unsignedOf(c) - static_cast<Unsigned>(first))
        <= static_cast<Unsigned>(last - first);
}

template <StrChar T>
[[nodiscard]] constexpr T lowerOf(T c) noexcept
{
    return isWithin(c, 'A', 'Z') ? static_cast<T>(c + ('a' - 'A')) : c;
}

template <StrChar T>
[[nodiscard]] constexpr T upperOf(T c) noexcept
{
    return isWithin(c, 'a', 'z') ? static_cast<T>(c - ('a' - 'A')) : c;
}

template <StrChar T>
[[nodiscard]] constexpr bool isDigitChar(T c) noexcept
{
    return isWithin(c, '0', '9');
}

} // namespace detail
} // namespace ZSpace
