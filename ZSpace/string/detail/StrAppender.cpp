// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/detail/StrAppender.h"

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/detail/StrDigits.h"

#include <concepts>
#include <cstdint>

namespace ZSpace::detail {

template <typename Derived, StrChar T>
Derived& StrAppender<Derived, T>::appendDecimal(Decimal number, bool emptyIfZero) noexcept
{
    if (number.magnitude == 0 && emptyIfZero)
        return self();
    const auto write = [=](T* to) { return writeDecimal(to, number); };
    if constexpr (std::same_as<Derived, ZMStr<T>>) {
        if (self().writeIfFits(s_maxDecimalLength, write))
            return self();
    }
    return self().extendByDigits(number.length(), write);
}

template <typename Derived, StrChar T>
Derived& StrAppender<Derived, T>::appendValueOf(double number, bool emptyIfZero) noexcept
{
    T text[s_maxRealLength];
    const long n = writeReal(text, number, emptyIfZero);
    return n > 0 ? self().extendByDigits(n, [&](T* to) { copyChars(to, text, n); }) : self();
}

template <typename Derived, StrChar T>
Derived& StrAppender<Derived, T>::appendValueOf(const unsigned char* address) noexcept
{
    return appendHexDigits(reinterpret_cast<std::uintptr_t>(address), 16);
}

template <typename Derived, StrChar T>
Derived& StrAppender<Derived, T>::appendHexDigits(unsigned long long bits, long digits) noexcept
{
    return self().extendByHexDigits(digits, [=](T* to) { writeHex(to, bits, digits); });
}

template <typename Derived, StrChar T>
Derived& StrAppender<Derived, T>::appendHexOf(const void* bytes, long n) noexcept
{
    if (!bytes || n < 1)
        return self();
    return self().extend(productOf(2, n), [=](T* to) { writeHexBytes(to, bytes, n); });
}

template <typename Derived, StrChar T>
Derived& StrAppender<Derived, T>::appendConverted(const OtherChar* text, long length) noexcept
{
    if (!text || length < 1)
        return self();
    return self().extend(length, [=](T* to) { convertChars(to, text, length); });
}

template class StrAppender<ZGStr<char>, char>;
template class StrAppender<ZGStr<wchar_t>, wchar_t>;
template class StrAppender<ZMStr<char>, char>;
template class StrAppender<ZMStr<wchar_t>, wchar_t>;

} // namespace ZSpace::detail
