// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZGUID.h"

#include "ZSpace/string/detail/StrDigits.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace ZSpace {

namespace {

constexpr long s_builderCapacity = 40;
/// The minimum length of a string that supplies the last six bytes.
constexpr long s_rawTextLength = 5;
constexpr std::size_t s_size = sizeof(ZGUID);

const unsigned char* bytesOf(const ZGUID& guid) noexcept
{
    return reinterpret_cast<const unsigned char*>(&guid);
}

/// Removes an opening brace and, with it, the last character, whatever that is.
template <typename T>
ZStrToken<T> withoutBraces(ZStrToken<T> text) noexcept
{
    return *text == '{' ? text.subString(1, std::max(text.Length() - 2, 0L)) : text;
}

/// Embedded zeros end the token as they would end a string.
template <typename T>
ZStrToken<T> upToTerminator(ZStrToken<T> text) noexcept
{
    return text.left(detail::lengthWithin<T>(text, text.Length()));
}

/// The two digits of each byte.
constexpr std::array<detail::DigitPair, 256> s_hexPairs = [] {
    constexpr char digits[] = "0123456789abcdef";
    std::array<detail::DigitPair, 256> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = {digits[i / 16], digits[i % 16]};
    return pairs;
}();

/// Writes the two digits of the low byte of a number.
template <typename T>
void writeByte(T* to, unsigned number) noexcept
{
    detail::writePair(to, s_hexPairs[number & 0xFF]);
}

constexpr unsigned s_noDigit = 0x100;

/// The value of each hexadecimal digit; `s_noDigit` for all other characters.
constexpr std::array<unsigned short, 256> s_hexDigits = [] {
    std::array<unsigned short, 256> values{};
    values.fill(s_noDigit);
    for (unsigned short i = 0; i < 10; ++i)
        values['0' + i] = i;
    for (unsigned short i = 10; i < 16; ++i)
        values['a' + i - 10] = values['A' + i - 10] = i;
    return values;
}();

/// Reads digits and records whether all characters were digits.
template <typename T>
class HexReader {
public:
    explicit HexReader(const T* text) noexcept
        : m_text(text)
    {
    }

    /// The byte whose two digits start at `index`.
    unsigned char byteAt(int index) noexcept
    {
        const unsigned number = digitAt(index) << 4 | digitAt(index + 1);
        m_seen |= number;
        return static_cast<unsigned char>(number);
    }

    [[nodiscard]] bool sawOnlyDigits() const noexcept { return m_seen < s_noDigit; }

private:
    [[nodiscard]] unsigned digitAt(int index) const noexcept
    {
        // NOLINTNEXTLINE(bugprone-signed-char-misuse): T is never a signed char
        const auto code = static_cast<std::make_unsigned_t<T>>(m_text[index]);
        return code < s_hexDigits.size() ? s_hexDigits[code] : s_noDigit;
    }

    const T* m_text;
    unsigned m_seen = 0;
};

/// Returns the next group and removes it from `rest`, with its separator.
template <typename T>
ZStrToken<T> nextGroup(ZStrToken<T>& rest) noexcept
{
    const long cut = rest.indexOf(T('-'));
    if (cut < 0)
        return rest;
    const ZStrToken<T> group = rest.left(cut);
    rest = rest.subString(cut + 1);
    return group;
}

} // namespace

ZGUID::ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned char b0,
    unsigned char b1, unsigned char b2, unsigned char b3, unsigned char b4, unsigned char b5,
    unsigned char b6, unsigned char b7) noexcept
    : data1(first)
    , data2(second)
    , data3(third)
    , data4{b0, b1, b2, b3, b4, b5, b6, b7}
{
}

ZGUID::ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned short fourth,
    unsigned char b2, unsigned char b3, unsigned char b4, unsigned char b5, unsigned char b6,
    unsigned char b7) noexcept
    : ZGUID(first, second, third, static_cast<unsigned char>(fourth & 0xFF),
        static_cast<unsigned char>(fourth >> 8), b2, b3, b4, b5, b6, b7)
{
}

ZGUID::ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned short fourth,
    const char* text) noexcept
    : ZGUID(first, second, third, fourth, 0, 0, 0, 0, 0, 0)
{
    if (detail::lengthWithin(text, s_rawTextLength) == s_rawTextLength)
        std::memcpy(data4 + 2, text, 6);
}

ZGUID::ZGUID(ZStrToken<char> text) noexcept
{
    parse(text);
}

ZGUID::ZGUID(ZStrToken<wchar_t> text) noexcept
{
    parse(text);
}

ZGUID& ZGUID::operator=(ZStrToken<char> text) noexcept
{
    parse(text);
    return *this;
}

ZGUID& ZGUID::operator=(ZStrToken<wchar_t> text) noexcept
{
    parse(text);
    return *this;
}

ZGUID& ZGUID::operator=(const ZGUID* other) noexcept
{
    if (other)
        *this = *other;
    return *this;
}

bool ZGUID::isCleared() const noexcept
{
    unsigned int sum = data1 + data2 + data3 + data4[0] + data4[1] * 256U;
    for (int i = 2; i < 8; ++i)
        sum += data4[i];
    return sum == 0;
}

void ZGUID::generate() noexcept
{
    if (!randInitialized.exchange(true, std::memory_order_relaxed))
        std::srand(static_cast<unsigned int>(std::time(nullptr)));
    unsigned char bytes[s_size];
    for (unsigned char& byte : bytes)
        byte = static_cast<unsigned char>(std::rand() & 0xFF);
    *this = std::bit_cast<ZGUID>(bytes);
}

bool ZGUID::operator==(const ZGUID& other) const noexcept
{
    return std::memcmp(this, &other, s_size) == 0;
}

std::strong_ordering ZGUID::operator<=>(const ZGUID& other) const noexcept
{
    const unsigned char* a = bytesOf(*this);
    const unsigned char* b = bytesOf(other);
    for (std::size_t i = 0; i < s_size; ++i) {
        if (a[i] != b[i])
            return static_cast<signed char>(a[i]) <=> static_cast<signed char>(b[i]);
    }
    return std::strong_ordering::equal;
}

/// Reads the form that `writeText` writes, with or without its braces, in either case.
/// @return false if `text` has another form; the GUID is then unchanged.
template <typename T>
bool ZGUID::parseUsualForm(ZStrToken<T> text) noexcept
{
    const bool hasBraces = text.Length() == s_textLength && *text == '{';
    if (!hasBraces && text.Length() != s_textLength - 2)
        return false;
    const T* start = text;
    if (hasBraces)
        ++start;
    if (start[8] != '-' || start[13] != '-' || start[18] != '-' || start[23] != '-')
        return false;
    HexReader<T> reader(start);
    ZGUID read;
    for (const int i : {0, 2, 4, 6})
        read.data1 = read.data1 << 8 | reader.byteAt(i);
    read.data2 = static_cast<unsigned short>(reader.byteAt(9) << 8 | reader.byteAt(11));
    read.data3 = static_cast<unsigned short>(reader.byteAt(14) << 8 | reader.byteAt(16));
    read.data4[0] = reader.byteAt(19);
    read.data4[1] = reader.byteAt(21);
    for (int i = 2; i < 8; ++i)
        read.data4[i] = reader.byteAt(20 + 2 * i);
    if (!reader.sawOnlyDigits())
        return false;
    *this = read;
    return true;
}

template <typename T>
void ZGUID::parse(ZStrToken<T> text) noexcept
{
    if (parseUsualForm(text))
        return;
    ZStrToken<T> rest = upToTerminator(withoutBraces(text));
    if (rest.count(T('-')) != 4)
        return clear();
    data1 = nextGroup(rest).hexToUInt32();
    data2 = nextGroup(rest).hexToUInt16();
    data3 = nextGroup(rest).hexToUInt16();
    nextGroup(rest).hexTo(data4, 2);
    nextGroup(rest).hexTo(data4 + 2, 6);
}

template <typename T>
void ZGUID::writeText(T* to) const noexcept
{
    to[0] = '{';
    writeByte(to + 1, data1 >> 24);
    writeByte(to + 3, data1 >> 16);
    writeByte(to + 5, data1 >> 8);
    writeByte(to + 7, data1);
    to[9] = '-';
    writeByte(to + 10, data2 >> 8);
    writeByte(to + 12, data2);
    to[14] = '-';
    writeByte(to + 15, data3 >> 8);
    writeByte(to + 17, data3);
    to[19] = '-';
    writeByte(to + 20, data4[0]);
    writeByte(to + 22, data4[1]);
    to[24] = '-';
    for (int i = 2; i < 8; ++i)
        writeByte(to + 21 + 2 * i, data4[i]);
    to[37] = '}';
}

template void ZGUID::writeText(char*) const noexcept;
template void ZGUID::writeText(wchar_t*) const noexcept;

ZGStr<char> ZGUID::toCString() const
{
    ZGStr<char> built;
    writeText(built.getBuffer(s_textLength));
    return built;
}

ZGStr<wchar_t> ZGUID::toWString() const
{
    ZGStr<wchar_t> built;
    writeText(built.getBuffer(s_textLength));
    return built;
}

ZMStr<wchar_t> ZGUID::toString() const
{
    wchar_t text[s_textLength];
    writeText(text);
    ZMStr<wchar_t> built(s_builderCapacity);
    built.append(text, s_textLength);
    return built;
}

} // namespace ZSpace
