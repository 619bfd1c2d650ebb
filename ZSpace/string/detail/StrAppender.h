// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrNumbers.h"

namespace ZSpace::detail {

/// What can be put behind a text besides text: the same members in both classes that own their characters.
///
/// Every member ends the process when memory runs out, and gives the string itself, so that calls chain.
/// `emptyIfZero` prints 0 as nothing. Text of the other width crosses unit by unit: narrowing keeps the low
/// 8 bits, widening adds zero bits.
///
/// `Derived` has three functions that make room for `n` characters, at least one, behind its text and give
/// the place to write them to: `grownBy`, `grownByDigits` and `grownByHexDigits`. And it has `append`.
template <typename Derived, StrChar T>
class StrAppender {
    using OtherChar = std::conditional_t<std::same_as<T, char>, wchar_t, char>;

public:
    template <StrInteger I>
    Derived& appendValueOf(I number, bool emptyIfZero = false) noexcept
    {
        return appendDecimal(Decimal(number), emptyIfZero);
    }
    /// "1" or "0".
    template <std::same_as<bool> B>
    Derived& appendValueOf(B flag, bool emptyIfZero = false) noexcept
    {
        return appendDecimal(Decimal(static_cast<int>(flag)), emptyIfZero);
    }
    /// The integer part and, where there is one, "." and the fraction; no exponent, no rounding, at most 41
    /// characters. Numbers beyond 64 bits print as the nearest that fits, what is not a number prints as 0.
    Derived& appendValueOf(float number, bool emptyIfZero = false) noexcept
    {
        return appendValueOf(static_cast<double>(number), emptyIfZero);
    }
    Derived& appendValueOf(double number, bool emptyIfZero = false) noexcept;
    /// The character itself.
    Derived& appendValueOf(char c) noexcept { return appendText(&c, 1); }
    Derived& appendValueOf(wchar_t c) noexcept { return appendText(&c, 1); }
    Derived& appendValueOf(const char* text) noexcept { return appendText(text, lengthOf(text)); }
    Derived& appendValueOf(const char* text, long length) noexcept { return appendText(text, length); }
    Derived& appendValueOf(const wchar_t* text) noexcept { return appendText(text, lengthOf(text)); }
    Derived& appendValueOf(const wchar_t* text, long length) noexcept { return appendText(text, length); }
    /// The address, in 16 hexadecimal digits: raw bytes have no end that could be found.
    Derived& appendValueOf(const unsigned char* address) noexcept;

    /// Lower-case digits over the full width of the type; negative numbers print their two's complement.
    template <StrHexInteger I>
    Derived& appendHexOf(I number) noexcept
    {
        return appendHexDigits(bitsOf(number), s_hexDigits<I>);
    }
    /// `n` bytes in the order in which they lie in memory.
    Derived& appendHexOf(const void* bytes, long n) noexcept;

    template <StrInteger I>
    Derived& operator<<(I number) noexcept
    {
        return appendValueOf(number);
    }
    template <std::same_as<bool> B>
    Derived& operator<<(B flag) noexcept
    {
        return appendValueOf(flag);
    }
    Derived& operator<<(float number) noexcept { return appendValueOf(number); }
    Derived& operator<<(double number) noexcept { return appendValueOf(number); }
    Derived& operator<<(char c) noexcept { return appendValueOf(c); }
    Derived& operator<<(wchar_t c) noexcept { return appendValueOf(c); }
    Derived& operator<<(const char* text) noexcept { return appendValueOf(text); }
    Derived& operator<<(const wchar_t* text) noexcept { return appendValueOf(text); }
    Derived& operator<<(const unsigned char* address) noexcept { return appendValueOf(address); }
    Derived& operator<<(const ZGStr<T>& text) noexcept { return appendView(ZStrToken<T>(text)); }
    Derived& operator<<(const ZMStr<T>& text) noexcept { return appendView(ZStrToken<T>(text)); }
    Derived& operator<<(const ZStrToken<T>& text) noexcept { return appendView(text); }
    template <OtherStrChar<T> U>
    Derived& operator<<(const ZGStr<U>& text) noexcept
    {
        return appendView(ZStrToken<U>(text));
    }
    template <OtherStrChar<T> U>
    Derived& operator<<(const ZMStr<U>& text) noexcept
    {
        return appendView(ZStrToken<U>(text));
    }
    template <OtherStrChar<T> U>
    Derived& operator<<(const ZStrToken<U>& text) noexcept
    {
        return appendView(text);
    }

protected:
    StrAppender() = default;
    ~StrAppender() = default;
    StrAppender(const StrAppender&) = default;
    StrAppender& operator=(const StrAppender&) = default;

    Derived& appendDecimal(Decimal number, bool emptyIfZero) noexcept;
    Derived& appendHexDigits(unsigned long long bits, long digits) noexcept;
    Derived& appendConverted(const OtherChar* text, long length) noexcept;

private:
    Derived& self() noexcept { return static_cast<Derived&>(*this); }

    template <StrChar U>
    Derived& appendText(const U* text, long length) noexcept
    {
        if constexpr (std::same_as<U, T>)
            return self().append(text, length);
        else
            return appendConverted(text, length);
    }
    template <StrChar U>
    Derived& appendView(ZStrToken<U> text) noexcept
    {
        return appendText<U>(text, text.Length());
    }
};

} // namespace ZSpace::detail
