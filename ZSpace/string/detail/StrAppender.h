// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrNumbers.h"

namespace ZSpace::detail {

/// The conversions to text that the two owning string classes share.
///
/// Every member returns the string, so that calls chain, and calls `std::terminate` if allocation fails.
/// With `emptyIfZero`, 0 appends nothing. Strings of the other width are converted code unit by code unit:
/// narrowing keeps the low 8 bits, widening zero-extends.
///
/// `Derived` provides `append` and three functions that extend the string by `n` (at least 1) characters and have
/// `write(to)` write them: `extend`, `extendByDigits` and `extendByHexDigits`. `write` may read from the string itself,
/// so the old array outlives the call.
template <typename Derived, StrChar T>
class StrAppender {
public:
    /// The characters of the other width.
    using OtherChar = std::conditional_t<std::same_as<T, char>, wchar_t, char>;

    /// Appends a decimal integer.
    template <StrInteger I>
    Derived& appendValueOf(I number, bool emptyIfZero = false) noexcept
    {
        return appendDecimal(Decimal(number), emptyIfZero);
    }
    /// Appends "1" or "0".
    template <std::same_as<bool> B>
    Derived& appendValueOf(B flag, bool emptyIfZero = false) noexcept
    {
        return appendDecimal(Decimal(static_cast<int>(flag)), emptyIfZero);
    }
    /// As for `double`.
    Derived& appendValueOf(float number, bool emptyIfZero = false) noexcept
    {
        return appendValueOf(static_cast<double>(number), emptyIfZero);
    }
    /// Appends the integer part and, unless it is 0, "." and the fraction: no exponent, no rounding, at most
    /// 41 characters. Values beyond 64 bits saturate and NaN prints as 0.
    Derived& appendValueOf(double number, bool emptyIfZero = false) noexcept;
    /// As for `double`, to which the number is rounded.
    Derived& appendValueOf(long double number, bool emptyIfZero = false) noexcept
    {
        return appendValueOf(static_cast<double>(number), emptyIfZero);
    }
    /// Appends the character itself.
    Derived& appendValueOf(char c) noexcept { return appendText(&c, 1); }
    /// Appends the character itself.
    Derived& appendValueOf(wchar_t c) noexcept { return appendText(&c, 1); }
    /// Appends a null-terminated string; null appends nothing.
    Derived& appendValueOf(const char* text) noexcept { return appendText(text, lengthOf(text)); }
    /// Appends `length` characters.
    Derived& appendValueOf(const char* text, long length) noexcept { return appendText(text, length); }
    /// Appends a null-terminated string; null appends nothing.
    Derived& appendValueOf(const wchar_t* text) noexcept { return appendText(text, lengthOf(text)); }
    /// Appends `length` characters.
    Derived& appendValueOf(const wchar_t* text, long length) noexcept { return appendText(text, length); }
    /// Appends the address in 16 hexadecimal digits: bytes have no terminator at which to stop.
    Derived& appendValueOf(const unsigned char* address) noexcept;

    /// Appends lower-case hexadecimal digits in the full width of the type; negative numbers as their two's
    /// complement.
    template <StrHexInteger I>
    Derived& appendHexOf(I number) noexcept
    {
        return appendHexDigits(bitsOf(number), s_hexDigits<I>);
    }
    /// Appends two hexadecimal digits for each of `n` bytes, in memory order.
    Derived& appendHexOf(const void* bytes, long n) noexcept;
    Derived& appendHexOf(bool) = delete;

    // As `appendValueOf` without `emptyIfZero`

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
    Derived& operator<<(long double number) noexcept { return appendValueOf(number); }
    Derived& operator<<(char c) noexcept { return appendValueOf(c); }
    Derived& operator<<(wchar_t c) noexcept { return appendValueOf(c); }
    Derived& operator<<(const char* text) noexcept { return appendValueOf(text); }
    Derived& operator<<(const wchar_t* text) noexcept { return appendValueOf(text); }
    Derived& operator<<(const unsigned char* address) noexcept { return appendValueOf(address); }
    Derived& operator<<(const ZGStr<T>& text) noexcept { return appendView(ZStrToken<T>(text)); }
    Derived& operator<<(const ZMStr<T>& text) noexcept { return appendView(ZStrToken<T>(text)); }
    Derived& operator<<(const ZStrToken<T>& text) noexcept { return appendView(text); }
    template <typename S>
    requires(StdText<S, char> || StdText<S, wchar_t>) Derived& operator<<(const S& text) noexcept
    {
        return appendView(ZStrToken<typename S::value_type>(text));
    }
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

    /// Appends decimal digits.
    Derived& appendDecimal(Decimal number, bool emptyIfZero) noexcept;
    /// Appends hexadecimal digits.
    Derived& appendHexDigits(unsigned long long bits, long digits) noexcept;
    /// Appends characters of the other width.
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
