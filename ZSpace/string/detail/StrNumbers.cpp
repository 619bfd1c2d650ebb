// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/detail/StrNumbers.h"

#include "ZSpace/string/detail/StrDigits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace ZSpace::detail {

namespace {

constexpr std::array<DigitPair, 256> s_hexPairs = [] {
    constexpr char digits[] = "0123456789abcdef";
    std::array<DigitPair, 256> pairs{};
    for (unsigned i = 0; i < pairs.size(); ++i)
        pairs[i] = {digits[i / 16], digits[i % 16]};
    return pairs;
}();

/// No branch, no table and no type wider than the character, so that compilers vectorize loops over this.
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

/// The remainder of a fraction between its decimal digits: `mantissa` * 2^-`scale`, below 1.
///
/// The digits are those of double arithmetic: each step multiplies by ten, rounds to 53 bits and subtracts
/// the integer part. With integers this is faster, and the same on hosts with fused multiply-add.
class Fraction {
public:
    explicit Fraction(double value) noexcept
    {
        constexpr int mantissaBits = 52;
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const auto exponent = static_cast<int>(bits >> mantissaBits);
        // Subnormal numbers are read as normal ones: their digits come long after those that are written.
        constexpr std::uint64_t leadingOne = std::uint64_t(1) << mantissaBits;
        m_mantissa = leadingOne | (bits & (leadingOne - 1));
        m_scale = 1023 + mantissaBits - exponent;
        const int zeros = std::countr_zero(m_mantissa);
        m_mantissa >>= zeros;
        m_scale -= zeros;
    }

    [[nodiscard]] bool isZero() const noexcept { return m_mantissa == 0; }
    /// Whether no further step rounds: five times a multiple of 2^-50 below 1 has at most 53 bits.
    [[nodiscard]] bool isExact() const noexcept { return m_scale <= 50; }

    /// The next digit.
    unsigned takeDigit() noexcept
    {
        m_mantissa *= 10;
        if (const int excess = static_cast<int>(std::bit_width(m_mantissa)) - 53; excess > 0) {
            const std::uint64_t lost = m_mantissa & ((std::uint64_t(1) << excess) - 1);
            const std::uint64_t half = std::uint64_t(1) << (excess - 1);
            m_mantissa >>= excess;
            m_mantissa += lost > half || (lost == half && (m_mantissa & 1));
            m_scale -= excess;
        }
        return m_scale < 64 ? takeInteger(m_mantissa) : 0;
    }

    /// Writes all further digits of an exact fraction, and up to seven zeros after the last one, but stops
    /// after at least `limit` digits.
    /// @return the number of digits written, at most `limit` + 7.
    long writeExact(char* to, long limit) noexcept
    {
        long n = 0;
        // Multiplying by 5^6 and taking 6 from the scale is multiplying by 10^6, and fits into 64 bits.
        for (; m_scale > 37 && m_mantissa != 0 && n < limit; n += 6) {
            m_scale -= 6;
            writeDigits<6>(to + n, takeInteger(m_mantissa * 15'625));
        }
        for (; m_mantissa != 0 && n < limit; n += 8)
            writeDigits<8>(to + n, takeInteger(m_mantissa * 100'000'000));
        return n;
    }

private:
    /// Returns the integer part of `product` * 2^-scale and keeps the fraction.
    std::uint32_t takeInteger(std::uint64_t product) noexcept
    {
        m_mantissa = product & ((std::uint64_t(1) << m_scale) - 1);
        return static_cast<std::uint32_t>(product >> m_scale);
    }

    std::uint64_t m_mantissa;
    int m_scale;
};

/// Writes the digits of a fraction. The array holds `limit` + 7.
/// @return the number of digits to use, at most `limit`.
long writeFraction(char* to, Fraction fraction, long limit) noexcept
{
    long n = 0;
    while (!fraction.isExact() && !fraction.isZero() && n < limit)
        to[n++] = digitChar<char>(fraction.takeDigit());
    n += fraction.writeExact(to + n, limit - n);
    while (fraction.isZero() && n > 0 && to[n - 1] == '0')
        --n;
    return std::min(n, limit);
}

/// The quotients `digit` / 10^`place` of the first places after the point, as division computes them.
constexpr long s_quotientPlaces = 22; // powers of ten that are exact
constexpr auto s_quotients = [] {
    std::array<std::array<double, 10>, s_quotientPlaces> quotients{};
    double power = 10;
    for (auto& place : quotients) {
        for (int digit = 0; digit < 10; ++digit)
            place[static_cast<std::size_t>(digit)] = digit / power;
        power *= 10;
    }
    return quotients;
}();

/// The value of eight decimal digits; `s_noDigits` if one of the characters is not a digit.
constexpr std::uint32_t s_noDigits = UINT32_MAX;
inline std::uint32_t readEightDigits(const char* text) noexcept
{
    std::uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    // "0" to "9" are 0x30 to 0x39, and only they stay below 0x40 when 6 is added.
    constexpr std::uint64_t high = 0xF0F0F0F0F0F0F0F0;
    constexpr std::uint64_t zeros = 0x3030303030303030;
    if ((word & high) != zeros || ((word + 0x0606060606060606) & high) != zeros)
        return s_noDigits;
    // Joins neighbors: bytes to pairs, pairs to fours, fours to eight. The first character is the low byte.
    word &= 0x0F0F0F0F0F0F0F0F;
    word = (word * 10 + (word >> 8)) & 0x00FF00FF00FF00FF;
    word = (word * 100 + (word >> 16)) & 0x0000FFFF0000FFFF;
    return static_cast<std::uint32_t>(word * 10'000 + (word >> 32));
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
    number.isNegative = value < 0; // the integer part of -0.5 has no sign
    long n = number.length();
    writeDecimal(to, n, number);
    if (fraction == 0)
        return n;
    to[n++] = '.';
    char digits[s_maxRealLength + 7];
    const long count = writeFraction(digits, Fraction(fraction), s_maxRealLength - n);
    convertChars(to + n, digits, count);
    return n + count;
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
    // Backward, so that bytes before `to` are read before digits overwrite them.
    const auto* from = static_cast<const unsigned char*>(bytes);
    for (long i = n; i-- > 0;)
        writePair(to + 2 * i, s_hexPairs[from[i]]);
}

template <StrChar T>
unsigned long long readDecimal(const T* text, long n) noexcept
{
    unsigned long long number = 0;
    long i = 0;
    if constexpr (sizeof(T) == 1 && std::endian::native == std::endian::little) {
        for (; i + 8 <= n; i += 8) {
            const std::uint32_t digits = readEightDigits(text + i);
            if (digits == s_noDigits)
                break;
            number = number * 100'000'000 + digits;
        }
    }
    for (; i < n && isDigitChar(text[i]); ++i)
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
    constexpr unsigned long long exactLimit = 1ULL << 53; // below it, integers and doubles agree
    unsigned long long whole = 0;
    for (; i < n && isDigitChar(text[i]) && whole < exactLimit / 10 - 1; ++i)
        whole = whole * 10 + static_cast<unsigned>(text[i] - '0');
    auto value = static_cast<double>(whole);
    for (; i < n && isDigitChar(text[i]); ++i)
        value = value * 10 + (text[i] - '0');
    if (i < n && text[i] == '.') {
        const long first = ++i;
        for (; i < n && isDigitChar(text[i]) && i - first < s_quotientPlaces; ++i)
            value +=
                s_quotients[static_cast<std::size_t>(i - first)][static_cast<std::size_t>(text[i] - '0')];
        if (i - first == s_quotientPlaces) {
            double power = 1e22;
            for (; i < n && isDigitChar(text[i]); ++i)
                value += (text[i] - '0') / (power *= 10);
        }
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
