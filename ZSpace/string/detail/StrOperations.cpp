// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/detail/StrOperations.h"

#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/string/detail/StrSearch.h"

#include <ostream>

namespace ZSpace::detail {

template <typename T>
long compare(ZStrToken<T> a, ZStrToken<T> b) noexcept
{
    const long n = std::min(a.Length(), b.Length());
    const long i = mismatch<T>(a, b, n);
    if (i < n)
        return signedOf(static_cast<const T*>(a)[i]) < signedOf(static_cast<const T*>(b)[i]) ? -1 : 1;
    return differenceOf(a.Length(), b.Length());
}

template <typename T>
long compareIgnoreCase(ZStrToken<T> a, ZStrToken<T> b) noexcept
{
    const long n = std::min(a.Length(), b.Length());
    const long i = mismatchIgnoreCase<T>(a, b, n);
    if (i < n) {
        const T ofA = lowerOf(static_cast<const T*>(a)[i]);
        const T ofB = lowerOf(static_cast<const T*>(b)[i]);
        return signedOf(ofA) < signedOf(ofB) ? -1 : 1;
    }
    return differenceOf(a.Length(), b.Length());
}

template <typename T>
bool isLike(ZStrToken<T> a, ZStrToken<T> b) noexcept
{
    const long n = lengthOf(a);
    return n == lengthOf(b) && equalChars<T>(a, b, n);
}

template <typename T>
long indexOf(ZStrToken<T> text, T c, long from) noexcept
{
    const long length = lengthOf(text);
    const long start = clampedPosition(from, length);
    return start < length ? find<T>(text, length, c, start) : -1;
}

template <typename T>
long indexOf(ZStrToken<T> text, ZStrToken<T> what, long from) noexcept
{
    const long length = lengthOf(text);
    const long start = clampedPosition(from, length);
    return what.isEmpty() ? -1 : find<T>(text, length, what, what.Length(), start);
}

template <typename T>
long lastIndexOf(ZStrToken<T> text, T c, long from) noexcept
{
    const long length = lengthOf(text);
    return findLast<T>(text, c, std::min(from < 0 ? from + length : from, length - 1));
}

template <typename T>
long lastIndexOf(ZStrToken<T> text, ZStrToken<T> what, long from) noexcept
{
    if (what.isEmpty())
        return -1;
    const long length = lengthOf(text);
    const long start = std::min(from < 0 ? from + length : from, length - what.Length());
    return findLast<T>(text, what, what.Length(), start);
}

template <typename T>
long count(ZStrToken<T> text, T c) noexcept
{
    return countOf<T>(text, text.Length(), c);
}

template <typename T>
long count(ZStrToken<T> text, ZStrToken<T> what) noexcept
{
    return countOf<T>(text, lengthOf(text), what, what.Length());
}

template <typename T>
long verify(ZStrToken<T> text, T c, long from) noexcept
{
    const long length = lengthOf(text);
    const long start = clampedPosition(from, length);
    if (start >= length)
        return -1;
    const long other = start + leadingRun<T>(text + start, length - start, c);
    return other < length ? other : -1;
}

template <typename T>
long verify(ZStrToken<T> text, ZStrToken<T> set, long from) noexcept
{
    const long length = lengthOf(text);
    const long start = clampedPosition(from, length);
    if (start >= length)
        return -1;
    if (set.isEmpty())
        return 0;
    const long other = start + leadingRun<T>(text + start, length - start, set, set.Length());
    return other < length ? other : -1;
}

template <typename T>
std::basic_ostream<T>& print(std::basic_ostream<T>& out, ZStrToken<T> text)
{
    return out << standardView(text);
}

std::wostream& print(std::wostream& out, ZStrToken<char> text)
{
    std::wstring wide(unsignedOf(lengthOf(text)), L'\0');
    convertChars<wchar_t, char>(wide.data(), text, lengthOf(text));
    return out << wide;
}

template std::ostream& print(std::ostream&, ZStrToken<char>);
template std::wostream& print(std::wostream&, ZStrToken<wchar_t>);
template long compare(ZStrToken<char>, ZStrToken<char>) noexcept;
template long compare(ZStrToken<wchar_t>, ZStrToken<wchar_t>) noexcept;
template long compareIgnoreCase(ZStrToken<char>, ZStrToken<char>) noexcept;
template long compareIgnoreCase(ZStrToken<wchar_t>, ZStrToken<wchar_t>) noexcept;
template bool isLike(ZStrToken<char>, ZStrToken<char>) noexcept;
template bool isLike(ZStrToken<wchar_t>, ZStrToken<wchar_t>) noexcept;
template long indexOf(ZStrToken<char>, char, long) noexcept;
template long indexOf(ZStrToken<wchar_t>, wchar_t, long) noexcept;
template long indexOf(ZStrToken<char>, ZStrToken<char>, long) noexcept;
template long indexOf(ZStrToken<wchar_t>, ZStrToken<wchar_t>, long) noexcept;
template long lastIndexOf(ZStrToken<char>, char, long) noexcept;
template long lastIndexOf(ZStrToken<wchar_t>, wchar_t, long) noexcept;
template long lastIndexOf(ZStrToken<char>, ZStrToken<char>, long) noexcept;
template long lastIndexOf(ZStrToken<wchar_t>, ZStrToken<wchar_t>, long) noexcept;
template long count(ZStrToken<char>, char) noexcept;
template long count(ZStrToken<wchar_t>, wchar_t) noexcept;
template long count(ZStrToken<char>, ZStrToken<char>) noexcept;
template long count(ZStrToken<wchar_t>, ZStrToken<wchar_t>) noexcept;
template long verify(ZStrToken<char>, char, long) noexcept;
template long verify(ZStrToken<wchar_t>, wchar_t, long) noexcept;
template long verify(ZStrToken<char>, ZStrToken<char>, long) noexcept;
template long verify(ZStrToken<wchar_t>, ZStrToken<wchar_t>, long) noexcept;

} // namespace ZSpace::detail
