// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrChars.h"

#include <climits>

namespace ZSpace::detail {

/// What can be asked of a text without changing it: the same members in all three string classes.
///
/// Each member hands the characters and their number to the static routine of its name in `ZGStr<T>`.
/// Positions and lengths count characters. A position given as negative counts from the end and stops at the
/// beginning. An index that was not found is -1. Nothing here allocates or throws, and malformed numbers are
/// no error: what cannot be read is 0.
template <typename Derived, StrChar T>
class StrQueries {
public:
    /// -1 or 1 at the first character that differs, as signed characters; the difference of the lengths when
    /// one text begins with the other.
    [[nodiscard]] long compare(ZStrToken<T> other) const noexcept;
    /// As `compare`, "A" to "Z" counting as "a" to "z".
    [[nodiscard]] long compareIgnoreCase(ZStrToken<T> other) const noexcept;
    /// The same characters and the same length.
    [[nodiscard]] bool isLike(ZStrToken<T> other) const noexcept;

    /// The first occurrence at or after `from`. An empty token is found nowhere.
    [[nodiscard]] long indexOf(T c, long from = 0) const noexcept;
    [[nodiscard]] long indexOf(ZStrToken<T> what, long from = 0) const noexcept;
    /// The last occurrence that starts at or before `from`.
    [[nodiscard]] long lastIndexOf(T c, long from = LONG_MAX) const noexcept;
    [[nodiscard]] long lastIndexOf(ZStrToken<T> what, long from = LONG_MAX) const noexcept;
    /// Occurrences from left to right that do not overlap.
    [[nodiscard]] long count(T c) const noexcept;
    [[nodiscard]] long count(ZStrToken<T> what) const noexcept;
    /// The first character at or after `from` that is not `c`.
    [[nodiscard]] long s_verify(const T& c, long from = 0) const noexcept;
    /// The first character at or after `from` that is not in `set`; 0 for an empty set.
    [[nodiscard]] long s_verify(ZStrToken<T> set, long from = 0) const noexcept;
    [[nodiscard]] long s_verify(const T* set, long setLength, long from) const noexcept;

    // NOLINTBEGIN(modernize-use-nodiscard): nothing is lost with a part or a number that nobody looks at

    /// The first or last `n` characters, or as many as there are. Like every part they are a view of this
    /// text and end with it.
    ZStrToken<T> left(long n) const noexcept;
    ZStrToken<T> right(long n) const noexcept;
    /// `count` characters from `start` on, or as many as there are; a negative count means up to the end.
    ZStrToken<T> subString(long start, long count = -1) const noexcept;
    ZStrToken<T> operator()(long start, long count) const noexcept;

    /// Decimal digits up to the first other character, after a "-" in the signed forms. Too large a number
    /// wraps around in the width asked for.
    signed char toInt8() const noexcept;
    short toInt16() const noexcept;
    int toInt32() const noexcept;
    long long toInt64() const noexcept;
    unsigned char toUInt8() const noexcept;
    unsigned short toUInt16() const noexcept;
    unsigned int toUInt32() const noexcept;
    unsigned long long toUInt64() const noexcept;
    /// An optional "-", digits and, after one ".", a fraction, up to the first character that does not fit.
    float toSingle() const noexcept;
    double toDouble() const noexcept;

    /// Exactly 2, 4, 8 or 16 hexadecimal digits of either case; other or missing ones count as 0.
    unsigned char hexToUInt8() const noexcept;
    unsigned short hexToUInt16() const noexcept;
    unsigned int hexToUInt32() const noexcept;
    unsigned long long hexToUInt64() const noexcept;
    /// Fills at most `size` bytes from pairs of hexadecimal digits.
    /// @return the number of bytes written.
    long hexTo(void* bytes, long size) const noexcept;

    // NOLINTEND(modernize-use-nodiscard)

    /// The first character is one of "A" to "Z" or "a" to "z".
    [[nodiscard]] bool isAlpha() const noexcept;
    /// Every character is a digit, "-" or "."; so it is with the empty text.
    [[nodiscard]] bool isNumeric() const noexcept;

protected:
    StrQueries() = default;
    ~StrQueries() = default;
    StrQueries(const StrQueries&) = default;
    StrQueries& operator=(const StrQueries&) = default;

private:
    [[nodiscard]] ZStrToken<T> view() const noexcept;
};

template <typename Derived, StrChar T>
inline ZStrToken<T> StrQueries<Derived, T>::view() const noexcept
{
    return ZStrToken<T>(static_cast<const Derived&>(*this));
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::compare(ZStrToken<T> other) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::compare(text, text.Length(), other, other.Length());
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::compareIgnoreCase(ZStrToken<T> other) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::compareIgnoreCase(text, text.Length(), other, other.Length());
}

template <typename Derived, StrChar T>
inline bool StrQueries<Derived, T>::isLike(ZStrToken<T> other) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::isLike(text, text.Length(), other);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::indexOf(T c, long from) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::indexOf(text, text.Length(), c, from);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::indexOf(ZStrToken<T> what, long from) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::indexOf(text, text.Length(), what, from);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::lastIndexOf(T c, long from) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::lastIndexOf(text, text.Length(), c, from);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::lastIndexOf(ZStrToken<T> what, long from) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::lastIndexOf(text, text.Length(), what, from);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::count(T c) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::count(text, text.Length(), c);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::count(ZStrToken<T> what) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::count(text, text.Length(), what);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::s_verify(const T& c, long from) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::s_verify(text, text.Length(), c, from);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::s_verify(ZStrToken<T> set, long from) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::s_verify(text, text.Length(), set, from);
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::s_verify(const T* set, long setLength, long from) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::s_verify(text, text.Length(), set, setLength, from);
}

template <typename Derived, StrChar T>
inline ZStrToken<T> StrQueries<Derived, T>::left(long n) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::left(text, text.Length(), n);
}

template <typename Derived, StrChar T>
inline ZStrToken<T> StrQueries<Derived, T>::right(long n) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::right(text, text.Length(), n);
}

template <typename Derived, StrChar T>
inline ZStrToken<T> StrQueries<Derived, T>::subString(long start, long count) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::subString(text, text.Length(), start, count);
}

template <typename Derived, StrChar T>
inline ZStrToken<T> StrQueries<Derived, T>::operator()(long start, long count) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::subString(text, text.Length(), start, count);
}

template <typename Derived, StrChar T>
inline signed char StrQueries<Derived, T>::toInt8() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toInt8(text, text.Length());
}

template <typename Derived, StrChar T>
inline short StrQueries<Derived, T>::toInt16() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toInt16(text, text.Length());
}

template <typename Derived, StrChar T>
inline int StrQueries<Derived, T>::toInt32() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toInt32(text, text.Length());
}

template <typename Derived, StrChar T>
inline long long StrQueries<Derived, T>::toInt64() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toInt64(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned char StrQueries<Derived, T>::toUInt8() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toUInt8(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned short StrQueries<Derived, T>::toUInt16() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toUInt16(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned int StrQueries<Derived, T>::toUInt32() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toUInt32(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned long long StrQueries<Derived, T>::toUInt64() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toUInt64(text, text.Length());
}

template <typename Derived, StrChar T>
inline float StrQueries<Derived, T>::toSingle() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toSingle(text, text.Length());
}

template <typename Derived, StrChar T>
inline double StrQueries<Derived, T>::toDouble() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::toDouble(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned char StrQueries<Derived, T>::hexToUInt8() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::hexToUInt8(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned short StrQueries<Derived, T>::hexToUInt16() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::hexToUInt16(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned int StrQueries<Derived, T>::hexToUInt32() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::hexToUInt32(text, text.Length());
}

template <typename Derived, StrChar T>
inline unsigned long long StrQueries<Derived, T>::hexToUInt64() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::hexToUInt64(text, text.Length());
}

template <typename Derived, StrChar T>
inline long StrQueries<Derived, T>::hexTo(void* bytes, long size) const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::hexTo(bytes, size, text, text.isEmpty() ? 0 : text.Length());
}

template <typename Derived, StrChar T>
inline bool StrQueries<Derived, T>::isAlpha() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::isAlpha(text, text.Length());
}

template <typename Derived, StrChar T>
inline bool StrQueries<Derived, T>::isNumeric() const noexcept
{
    const ZStrToken<T> text = view();
    return ZGStr<T>::isNumeric(text, text.Length());
}

} // namespace ZSpace::detail
