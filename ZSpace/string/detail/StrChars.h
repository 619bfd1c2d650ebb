// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <concepts>
#include <cstddef>
#include <cstring>
#include <cwchar>
#include <type_traits>

namespace ZSpace {

template <typename T>
class ZGStr;
template <typename T>
class ZMStr;
template <typename T>
class ZStrToken;

/// What the string classes are made of; not for callers of the framework.
///
/// Runs of characters are a pointer and a signed length. Unless said otherwise the pointer is not null and
/// the length not negative. Nothing here allocates or throws.
namespace detail {

template <typename T>
concept StrChar = std::same_as<T, char> || std::same_as<T, wchar_t>;

/// The character of the other width.
template <typename U, typename T>
concept OtherStrChar = StrChar<U> && !std::same_as<U, T>;

static_assert(sizeof(wchar_t) == 4, "wide text is held in 32-bit units");

[[nodiscard]] constexpr std::size_t unsignedOf(long n) noexcept
{
    return static_cast<std::size_t>(n);
}

/// The order of characters is that of signed numbers, whatever the host's `char` and `wchar_t` are.
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

/// Characters before the terminator; 0 for null.
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

/// As `lengthOf`, looking at no more than `limit` characters.
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

/// Null may stand for a run of no characters.
template <StrChar T>
inline void copyChars(T* to, const T* from, long n) noexcept
{
    if (n > 0)
        std::memcpy(to, from, unsignedOf(n) * sizeof(T));
}

/// As `copyChars`, for runs that may overlap.
template <StrChar T>
inline void moveChars(T* to, const T* from, long n) noexcept
{
    if (n > 0)
        std::memmove(to, from, unsignedOf(n) * sizeof(T));
}

/// Text crosses between the widths unit by unit: narrowing keeps the low 8 bits, widening adds zero bits.
template <StrChar To, StrChar From>
inline void convertChars(To* to, const From* from, long n) noexcept
{
    if constexpr (std::same_as<To, From>) {
        copyChars(to, from, n);
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

/// Null may stand for a run of no characters.
template <StrChar T>
[[nodiscard]] inline bool equalChars(const T* a, const T* b, long n) noexcept
{
    return n < 1 || std::memcmp(a, b, unsignedOf(n) * sizeof(T)) == 0;
}

/// The first `c` among `n` characters, or null.
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
    // One comparison: below `first` the difference wraps around.
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
