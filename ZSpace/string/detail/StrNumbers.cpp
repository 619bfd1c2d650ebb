// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/detail/StrNumbers.h"

#include "ZSpace/string/detail/StrDigits.h"

#include <array>
#include <climits>
#include <cmath>

namespace ZSpace::detail {

namespace {

constexpr std::array<DigitPair, 256> s_hexPairs = [] {
    constexpr char digits[] = "0123456789abcdef";
    std::array<DigitPair, 256> pairs{};
    for (unsigned i = 0; i < pairs.size(); ++i)
        pairs[i] = {digits[i / 16], digits[i % 16]};
    return pairs;
}();

/// No branch, no table and no type wider than the character, so that compilers vectorize loops over it.
template <StrChar T>
constexpr std::make_unsigned_t<T> nibbleOf(T c) noexcept
{
    using Unit = std::make_unsigned_t<T>;
    const auto digit = static_cast<Unit>(unsignedOf(c) - '0');
    const auto letter = static_cast<Unit>((unsignedOf(c) | 0x20) - 'a');
    return static_cast<Unit>((digit < 10 ? digit : 0) + (letter < 6 ? letter + 10 : 0));
}

template <StrChar T>
bool startsWithMinus(const T* text, long n) noexcept
{
    return n > 0 && *text == '-';
}

} // namespace

template <StrChar T>
long writeReal(T* to, double value, bool emptyIfZero) noexcept
{
    constexpr double limit = 9223372036854775808.0; // the smallest value above the 64-bit range
    long long whole = 0;
    double fraction = 0;
    if (value >= limit) {
        whole = LLONG_MAX;
    } else if (value < -limit) {
        whole = LLONG_MIN;
    } else if (!std::isnan(value)) {
        whole = static_cast<long long>(value);
        fraction = std::fabs(value - static_cast<double>(whole));
    }
    if (emptyIfZero && whole == 0 && fraction == 0)
        return 0;

    Decimal number(whole);
    number.isNegative = whole < 0 || (fraction != 0 && value < 0); // the integer part of -0.5 has no sign
    long n = number.length();
    writeDecimal(to, n, number);
    if (fraction != 0)
        to[n++] = '.';
    while (fraction != 0 && n < s_maxRealLength) {
        // The call keeps compilers from fusing the product into the subtraction, which would change digits.
        double digit = 0;
        fraction = std::modf(fraction * 10, &digit);
        to[n++] = digitChar<T>(static_cast<unsigned>(digit));
    }
    return n;
}

template <StrChar T>
void writeHex(T* to, unsigned long long value, long digits) noexcept
{
    for (; digits > 0; digits -= 2, value >>= 8)
        writePair(to + digits - 2, s_hexPairs[value & 0xFF]);
}

template <StrChar T>
void writeHexBytes(T* to, const void* bytes, long n) noexcept
{
    // Backward, so that bytes in front of `to` are read before digits overwrite them.
    const auto* from = static_cast<const unsigned char*>(bytes);
    for (long i = n; i-- > 0;)
        writePair(to + 2 * i, s_hexPairs[from[i]]);
}

template <StrChar T>
unsigned long long readDecimal(const T* text, long n) noexcept
{
    unsigned long long number = 0;
    for (long i = 0; i < n && isDigitChar(text[i]); ++i)
        number = number * 10 + static_cast<unsigned>(text[i] - '0');
    return number;
}

template <StrChar T>
unsigned long long readSignedDecimal(const T* text, long n) noexcept
{
    return startsWithMinus(text, n) ? 0 - readDecimal(text + 1, n - 1) : readDecimal(text, n);
}

template <StrChar T>
double readReal(const T* text, long n) noexcept
{
    const bool isNegative = startsWithMinus(text, n);
    long i = isNegative;
    double value = 0;
    for (; i < n && isDigitChar(text[i]); ++i)
        value = value * 10 + (text[i] - '0');
    if (i < n && text[i] == '.') {
        double power = 10;
        for (++i; i < n && isDigitChar(text[i]); ++i, power *= 10)
            value += (text[i] - '0') / power;
    }
    return isNegative ? -value : value;
}

template <StrChar T>
unsigned char readNibble(T c) noexcept
{
    return static_cast<unsigned char>(nibbleOf(c));
}

template <StrChar T>
unsigned long long readHex(const T* text, long n, long digits) noexcept
{
    unsigned long long value = 0;
    for (long i = 0; i < digits; ++i)
        value = value << 4 | (i < n ? nibbleOf(text[i]) : 0U);
    return value;
}

template <StrChar T>
void readHexBytes(void* to, const T* text, long count) noexcept
{
    auto* bytes = static_cast<unsigned char*>(to);
    for (long i = 0; i < count; ++i)
        bytes[i] = static_cast<unsigned char>(nibbleOf(text[2 * i]) << 4 | nibbleOf(text[2 * i + 1]));
}

template long writeReal(char*, double, bool) noexcept;
template long writeReal(wchar_t*, double, bool) noexcept;
template void writeHex(char*, unsigned long long, long) noexcept;
template void writeHex(wchar_t*, unsigned long long, long) noexcept;
template void writeHexBytes(char*, const void*, long) noexcept;
template void writeHexBytes(wchar_t*, const void*, long) noexcept;
template unsigned long long readDecimal(const char*, long) noexcept;
template unsigned long long readDecimal(const wchar_t*, long) noexcept;
template unsigned long long readSignedDecimal(const char*, long) noexcept;
template unsigned long long readSignedDecimal(const wchar_t*, long) noexcept;
template double readReal(const char*, long) noexcept;
template double readReal(const wchar_t*, long) noexcept;
template unsigned char readNibble(char) noexcept;
template unsigned char readNibble(wchar_t) noexcept;
template unsigned long long readHex(const char*, long, long) noexcept;
template unsigned long long readHex(const wchar_t*, long, long) noexcept;
template void readHexBytes(void*, const char*, long) noexcept;
template void readHexBytes(void*, const wchar_t*, long) noexcept;

} // namespace ZSpace::detail
