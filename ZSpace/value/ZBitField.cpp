// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZBitField.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <new>
#include <tuple>
#include <utility>

namespace ZSpace {

namespace {

std::size_t asSize(int n) noexcept
{
    return static_cast<std::size_t>(n);
}

} // namespace

ZBITFIELD::ZBITFIELD(int n)
    : ZBITFIELD(nullptr, n)
{
}

ZBITFIELD::ZBITFIELD(const unsigned char* bytes, int n)
    : m_bits(copy(bytes, n))
    , m_length(std::max(n, 0))
{
}

ZBITFIELD::ZBITFIELD(const ZBITFIELD& other)
    : ZBITFIELD(other.m_bits, other.m_length)
{
}

ZBITFIELD::ZBITFIELD(ZBITFIELD&& other) noexcept
{
    swap(other);
}

ZBITFIELD::ZBITFIELD(const ZBITFIELD& source, int start, int count)
    : ZBITFIELD(source.checkedCount(start, count))
{
    for (int j = 0; j < m_length; ++j)
        bit(m_bits, j, bit(source.m_bits, start + j));
}

ZBITFIELD& ZBITFIELD::operator=(const ZBITFIELD& other)
{
    if (this != &other)
        ZBITFIELD(other).swap(*this);
    return *this;
}

ZBITFIELD& ZBITFIELD::operator=(ZBITFIELD&& other) noexcept
{
    ZBITFIELD(std::move(other)).swap(*this);
    return *this;
}

ZBITFIELD& ZBITFIELD::operator+=(long long i)
{
    set(i, true);
    return *this;
}

ZBITFIELD& ZBITFIELD::operator-=(long long i)
{
    set(i, false);
    return *this;
}

void ZBITFIELD::set(long long at, const ZBITFIELD& other)
{
    if (&other == this)
        return set(at, ZBITFIELD(other)); // on itself, it would read bits that it has written
    for (int j = 0; j < other.m_length; ++j)
        set(at + j, other.get(j));
}

ZBITFIELD& ZBITFIELD::operator+=(const ZBITFIELD& other)
{
    if (other.m_length > INT_MAX - m_length)
        throw std::bad_array_new_length();
    ZBITFIELD sum(m_length + other.m_length);
    bit(sum.m_bits, 0, m_bits, m_length);
    bit(sum.m_bits, m_length, other.m_bits, other.m_length);
    swap(sum);
    return *this;
}

ZBITFIELD ZBITFIELD::operator|(const ZBITFIELD& other) const
{
    ZBITFIELD both(*this);
    bitOr(both.m_bits, 0, other.m_bits, std::min(m_length, other.m_length));
    return both;
}

bool ZBITFIELD::operator==(const ZBITFIELD& other) const noexcept
{
    return m_length == other.m_length && equals(m_bits, other.m_bits, m_length);
}

template <typename T>
ZGStr<T> ZBITFIELD::toText() const
{
    ZMStr<T> text;
    T* to = text.getBuffer(m_length);
    for (int i = 0; i < m_length; ++i)
        to[i] = bit(m_bits, i) ? '1' : '0';
    return text;
}

ZGStr<char> ZBITFIELD::toCString() const
{
    return toText<char>();
}

ZGStr<wchar_t> ZBITFIELD::toWString() const
{
    return toText<wchar_t>();
}

int ZBITFIELD::checked(long long i) const
{
    if (i < 0 || i >= m_length)
        throw ZXCOutOfBounds("ZBitField::get", nullptr);
    return static_cast<int>(i);
}

/// Checks the bits of a slice before anything is allocated for them.
int ZBITFIELD::checkedCount(int start, int count) const
{
    if (count > 0) {
        std::ignore = checked(start);
        std::ignore = checked(start + (count - 1LL));
    }
    return count;
}

void ZBITFIELD::swap(ZBITFIELD& other) noexcept
{
    std::swap(m_bits, other.m_bits);
    std::swap(m_length, other.m_length);
}

// Plain byte arrays

unsigned char* ZBITFIELD::create(int n)
{
    return new unsigned char[asSize(byteCount(n))]();
}

void ZBITFIELD::clear(unsigned char* bytes, int n) noexcept
{
    if (n > 0)
        std::memset(bytes, 0, asSize(byteCount(n)));
}

unsigned char* ZBITFIELD::copy(const unsigned char* bytes, int n)
{
    auto* copied = new unsigned char[asSize(std::max(n, 0) >> 3) + 1]();
    if (bytes && n > 0)
        std::memcpy(copied, bytes, asSize(byteCount(n)));
    return copied;
}

unsigned char ZBITFIELD::bit(unsigned char* bytes, int i, bool value) noexcept
{
    if (value) {
        bytes[i >> 3] |= maskOf(i);
        return maskOf(i);
    }
    const auto mask = static_cast<unsigned char>(~maskOf(i));
    bytes[i >> 3] &= mask;
    return mask;
}

bool ZBITFIELD::bitOr(unsigned char* bytes, int i, bool value) noexcept
{
    if (value)
        bit(bytes, i, true);
    return bit(bytes, i);
}

namespace {

/// Calls `copyBit(j)` for each j below `n`, in an order in which each bit is read before it is overwritten.
template <typename CopyBit>
void copyInOrder(unsigned char* to, int at, const unsigned char* from, int n, CopyBit copyBit)
{
    if (std::less<const unsigned char*>()(to + (at >> 3), from)) {
        for (int j = 0; j < n; ++j)
            copyBit(j);
    } else {
        for (int j = n; j > 0; --j)
            copyBit(j - 1);
    }
}

} // namespace

void ZBITFIELD::bit(unsigned char* to, int at, const unsigned char* from, int n) noexcept
{
    copyInOrder(to, at, from, n, [=](int j) { bit(to, at + j, bit(from, j)); });
}

void ZBITFIELD::bitOr(unsigned char* to, int at, const unsigned char* from, int n) noexcept
{
    copyInOrder(to, at, from, n, [=](int j) { bitOr(to, at + j, bit(from, j)); });
}

bool ZBITFIELD::equals(const unsigned char* a, const unsigned char* b, int n) noexcept
{
    if (n < 1)
        return true;
    const std::size_t whole = asSize(n >> 3);
    if (whole > 0 && std::memcmp(a, b, whole) != 0)
        return false;
    const int rest = n & 7;
    // The mask covers one bit past the end, because comparisons of stored fields have always included it.
    const unsigned mask = (1U << (rest + 1)) - 1;
    return rest == 0 || ((a[whole] ^ b[whole]) & mask) == 0;
}

} // namespace ZSpace
