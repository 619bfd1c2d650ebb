// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/detail/StrNumbers.h"

#include "ZSpace/string/detail/StrDigits.h"

#include <algorithm>
#include <array>
#include <bit>
#include <climits>
#include <cmath>
#include <concepts>
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
constexpr auto s_quotients = [] {
    std::array<std::array<double, 10>, 22> quotients{}; // the places whose powers of ten are exact
    double power = 10;
    for (auto& place : quotients) {
        for (int digit = 0; digit < 10; ++digit)
            place[static_cast<std::size_t>(digit)] = digit / power;
        power *= 10;
    }
    return quotients;
}();

/// Whether digits are read a word at a time.
template <StrChar T>
constexpr bool s_readsRuns = sizeof(T) == 1 && std::endian::native == std::endian::little;

template <std::unsigned_integral Word>
Word wordAt(const char* text) noexcept
{
    Word word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// The first up to eight of `n` characters as the bytes of a word, the first one lowest; missing ones are 0. Reads no
/// others: short runs are put together from reads that overlap.
inline std::uint64_t leadingBytes(const char* text, long n) noexcept
{
    if (n >= 8)
        return wordAt<std::uint64_t>(text);
    if (n >= 4) {
        const std::uint64_t last = wordAt<std::uint32_t>(text + n - 4);
        return last << 8 * (n - 4) | wordAt<std::uint32_t>(text);
    }
    if (n < 1)
        return 0;
    const auto byteAt = [text](long i) { return std::uint64_t(unsignedOf(text[i])) << 8 * i; };
    return byteAt(0) | byteAt(n / 2) | byteAt(n - 1);
}

/// The digits at the start of a string, up to eight, all read at once.
class DigitRun {
public:
    static constexpr long s_maxCount = 8;

    DigitRun(const char* text, long n) noexcept
    {
        const std::uint64_t digits = leadingBytes(text, n) ^ 0x3030'3030'3030'3030;
        // Adding 128 - 10 sets the top bit of each byte that is 10 or more, and carries nothing into the next byte.
        const std::uint64_t sums = (digits & 0x7F7F'7F7F'7F7F'7F7F) + 0x7676'7676'7676'7676;
        const std::uint64_t others = (sums | digits) & 0x8080'8080'8080'8080;
        m_count = std::countr_zero(others) / 8;
        m_digits = digits & (((others & (0 - others)) >> 7) - 1); // the bytes below the first other character
    }

    [[nodiscard]] long count() const noexcept { return m_count; }
    [[nodiscard]] bool isFull() const noexcept { return m_count == s_maxCount; }
    /// The digit at `i`; 0 after the last one.
    [[nodiscard]] std::size_t digitAt(long i) const noexcept { return m_digits >> 8 * i & 0xFF; }
    /// The value of all digits.
    [[nodiscard]] std::uint32_t value() const noexcept
    {
        // Shifts the digits so that zeros precede them; without digits there is nothing to shift.
        std::uint64_t word = m_digits << (8 * (s_maxCount - m_count) & 63);
        // Joins neighbors: bytes to pairs, pairs to fours, fours to eight.
        word = (word * 10 + (word >> 8)) & 0x00FF'00FF'00FF'00FF;
        word = (word * 100 + (word >> 16)) & 0x0000'FFFF'0000'FFFF;
        return static_cast<std::uint32_t>(word * 10'000 + (word >> 32));
    }

private:
    std::uint64_t m_digits;
    long m_count;
};

/// Reads the digits before the point and moves `text` past them.
template <StrChar T>
double readWhole(const T*& text, const T* end) noexcept
{
    constexpr unsigned long long exactLimit = 1ULL << 53; // below it, integers and doubles agree
    unsigned long long whole = 0;
    if constexpr (s_readsRuns<T>) {
        const DigitRun run(text, end - text);
        whole = run.value();
        text += run.count();
        if (!run.isFull())
            return static_cast<double>(whole);
    }
    for (; text != end && isDigitChar(*text) && whole < exactLimit / 10 - 1; ++text)
        whole = whole * 10 + static_cast<unsigned>(*text - '0');
    auto value = static_cast<double>(whole);
    for (; text != end && isDigitChar(*text); ++text)
        value = value * 10 + (*text - '0');
    return value;
}

/// Adds the digits after the point, one by one, in double arithmetic.
template <StrChar T>
double withFraction(double value, const T* text, const T* end) noexcept
{
    const auto digits = static_cast<std::size_t>(end - text);
    std::size_t i = 0;
    if constexpr (s_readsRuns<T>) {
        const DigitRun run(text, end - text);
        for (; i < DigitRun::s_maxCount; ++i) // always all, as adding 0 is faster than a branch
            value += s_quotients[i][run.digitAt(static_cast<long>(i))];
        if (!run.isFull())
            return value;
    }
    for (; i < digits && isDigitChar(text[i]) && i < s_quotients.size(); ++i)
        value += s_quotients[i][static_cast<std::size_t>(text[i] - '0')];
    if (i == s_quotients.size()) {
        double power = 1e22;
        for (; i < digits && isDigitChar(text[i]); ++i)
            value += (text[i] - '0') / (power *= 10);
    }
    return value;
}

/// The digits at the start, as a number that wraps around.
template <StrChar T>
inline unsigned long long leadingNumber(const T* text, const T* end) noexcept
{
    unsigned long long number = 0;
    if constexpr (s_readsRuns<T>) {
        constexpr long worthwhile = 10; // one by one, a few digits are read faster
        for (; end - text >= worthwhile; text += DigitRun::s_maxCount) {
            const DigitRun run(text, end - text);
            if (!run.isFull())
                break;
            number = number * 100'000'000 + run.value();
        }
    }
    for (; text != end && isDigitChar(*text); ++text)
        number = number * 10 + static_cast<unsigned>(*text - '0');
    return number;
}

} // namespace

template <typename T>
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
    long n = writeDecimal(to, number) - to;
    if (fraction == 0)
        return n;
    to[n++] = '.';
    char digits[s_maxRealLength + 7];
    const long count = writeFraction(digits, Fraction(fraction), s_maxRealLength - n);
    convertChars(to + n, digits, count);
    return n + count;
}

template <typename T>
void writeHex(T* to, unsigned long long value, long digits) noexcept
{
    for (; digits > 0; digits -= 2, value >>= 8)
        writePair(to + digits - 2, s_hexPairs[value & 0xFF]);
}

template <typename T>
void writeHexBytes(T* to, const void* bytes, long n) noexcept
{
    // Backward, so that bytes before `to` are read before digits overwrite them.
    const auto* from = static_cast<const unsigned char*>(bytes);
    for (long i = n; i-- > 0;)
        writePair(to + 2 * i, s_hexPairs[from[i]]);
}

template <typename T>
unsigned long long readDecimal(const T* text, long n) noexcept
{
    return leadingNumber(text, text + std::max(n, 0L));
}

template <typename T>
unsigned long long readSignedDecimal(const T* text, long n) noexcept
{
    if (n < 1)
        return 0;
    // Without a branch, as signs come in no order.
    const bool isNegative = *text == '-';
    const unsigned long long magnitude = leadingNumber(text + isNegative, text + n);
    const unsigned long long mask = 0ULL - isNegative;
    return (magnitude ^ mask) - mask;
}

template <typename T>
double readReal(const T* text, long n) noexcept
{
    const T* const end = text + std::max(n, 0L);
    const bool isNegative = startsWithMinus(text, n);
    if (isNegative)
        ++text;
    double value = readWhole(text, end);
    if (text != end && *text == '.')
        value = withFraction(value, text + 1, end);
    return isNegative ? -value : value;
}

template <typename T>
unsigned char readNibble(T c) noexcept
{
    return static_cast<unsigned char>(nibbleOf(c));
}

template <typename T>
unsigned long long readHex(const T* text, long n, long digits) noexcept
{
    unsigned long long value = 0;
    for (long i = 0; i < digits; ++i)
        value = value << 4 | (i < n ? nibbleOf(text[i]) : 0U);
    return value;
}

template <typename T>
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
