// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZGUID.h"

#include <algorithm>
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

template <typename T>
void ZGUID::parse(ZStrToken<T> text) noexcept
{
    ZStrToken<T> rest = upToTerminator(withoutBraces(text));
    if (rest.count(T('-')) != 4)
        return clear();
    data1 = nextGroup(rest).hexToUInt32();
    data2 = nextGroup(rest).hexToUInt16();
    data3 = nextGroup(rest).hexToUInt16();
    nextGroup(rest).hexTo(data4, 2);
    nextGroup(rest).hexTo(data4 + 2, 6);
}

template <detail::StrChar T>
void ZGUID::writeText(T* to) const noexcept
{
    to[0] = '{';
    detail::writeHex(to + 1, data1, 8);
    to[9] = '-';
    detail::writeHex(to + 10, data2, 4);
    to[14] = '-';
    detail::writeHex(to + 15, data3, 4);
    to[19] = '-';
    detail::writeHexBytes(to + 20, data4, 2);
    to[24] = '-';
    detail::writeHexBytes(to + 25, data4 + 2, 6);
    to[37] = '}';
}

template void ZGUID::writeText(char*) const noexcept;
template void ZGUID::writeText(wchar_t*) const noexcept;

ZGStr<char> ZGUID::toCString() const
{
    char text[s_textLength];
    writeText(text);
    return ZGStr<char>(text, s_textLength);
}

ZGStr<wchar_t> ZGUID::toWString() const
{
    wchar_t text[s_textLength];
    writeText(text);
    return ZGStr<wchar_t>(text, s_textLength);
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
