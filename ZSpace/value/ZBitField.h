// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"

namespace ZSpace {

/// An owned array of bits of a fixed length, and routines on bare arrays of bytes.
///
///     ZBITFIELD flags(10);
///     flags.set(3, true);
///     flags += 4;
///     line << flags.toCString();  // 0001100000
///
/// Bit i is bit i mod 8 of byte i / 8, the lowest bit being bit 0. Members that take an index throw
/// `ZXCOutOfBounds` ("Out of bounds", "ZBitField::get") for one that is negative or not below the length.
/// `operator&`, `&=`, `|=`, `~` and `invert` have no effect, and callers count on that. A field belongs to
/// one thread at a time.
///
/// The static routines check no indices. Arrays for n bits have `byteCount(n)` bytes, and no routine touches
/// more of them. Arrays that they make are the caller's, to be freed with `release`.
class ZBITFIELD {
public:
    /// `n` bits, to be cleared before use. A length below 0 counts as 0.
    explicit ZBITFIELD(int n = 0);
    /// The bytes are copied whole, the bits past the end of the last one included.
    ZBITFIELD(const unsigned char* bytes, int n);
    ZBITFIELD(const ZBITFIELD& other);
    ZBITFIELD(ZBITFIELD&& other) noexcept;
    /// Bits `start` to `start` + `count` - 1 of another field, all of which must exist.
    ZBITFIELD(const ZBITFIELD& source, int start, int count);
    ~ZBITFIELD() { release(m_bits); }

    ZBITFIELD& operator=(const ZBITFIELD& other);
    ZBITFIELD& operator=(ZBITFIELD&& other) noexcept;

    [[nodiscard]] int Length() const noexcept { return m_length; }
    /// Sets all bits to 0, those past the end included.
    void clear() noexcept { clear(m_bits, m_length); }

    // NOLINTNEXTLINE(modernize-use-nodiscard): the check alone may be what is asked for
    bool get(int i) const { return bit(m_bits, checked(i)); }
    bool operator[](int i) const { return get(i); }
    bool operator()(int i) const { return get(i); }
    void set(int i, bool value) { bit(m_bits, checked(i), value); }
    void operator()(int i, bool value) { set(i, value); }
    ZBITFIELD& operator+=(int i);
    ZBITFIELD& operator-=(int i);
    /// Writes the bits of `other` from `at` on, one by one: those ahead of one that does not fit are written.
    void set(int at, const ZBITFIELD& other);
    /// Concatenates.
    ZBITFIELD& operator+=(const ZBITFIELD& other);

    /// A copy of this field, with the bits of `other` that it has room for ORed in.
    ZBITFIELD operator|(const ZBITFIELD& other) const;
    ZBITFIELD operator&(const ZBITFIELD&) const { return *this; }
    ZBITFIELD& operator&=(const ZBITFIELD&) noexcept { return *this; }
    ZBITFIELD& operator|=(const ZBITFIELD&) noexcept { return *this; }
    ZBITFIELD& operator~() noexcept { return *this; }
    const ZBITFIELD& operator~() const noexcept { return *this; }
    void invert(int) noexcept { }
    void invert() noexcept { }

    /// Same lengths, and `equals`.
    bool operator==(const ZBITFIELD& other) const noexcept;

    /// One "0" or "1" for each bit, bit 0 first.
    [[nodiscard]] ZGStr<char> toCString() const;
    [[nodiscard]] ZGStr<wchar_t> toWString() const;
    operator ZGStr<char>() const { return toCString(); }
    operator ZGStr<wchar_t>() const { return toWString(); }

    // Bare arrays

    /// The bytes that hold n bits.
    [[nodiscard]] static constexpr int byteCount(int n) noexcept { return n > 0 ? ((n - 1) >> 3) + 1 : 0; }
    /// A new array for n bits, to be cleared before use.
    static unsigned char* create(int n);
    static void release(const unsigned char* bytes) noexcept { delete[] bytes; }
    static void clear(unsigned char* bytes, int n) noexcept;
    /// A new array of (n >> 3) + 1 bytes; the last one is 0 when n is a multiple of 8.
    static unsigned char* copy(const unsigned char* bytes, int n);

    static bool bit(const unsigned char* bytes, int i) noexcept { return bytes[i >> 3] & maskOf(i); }
    /// @return the mask used: that of the bit when it was set, its complement when it was cleared.
    static unsigned char bit(unsigned char* bytes, int i, bool value) noexcept;
    /// @return the bit's new value.
    static bool bitOr(unsigned char* bytes, int i, bool value) noexcept;
    /// Only gives the bit.
    static bool bitAnd(const unsigned char* bytes, int i, bool) noexcept { return bit(bytes, i); }
    /// Copies the first n bits of one array to another, from bit `at` on.
    static void bit(unsigned char* to, int at, const unsigned char* from, int n) noexcept;
    static void bitOr(unsigned char* to, int at, const unsigned char* from, int n) noexcept;
    /// Does nothing.
    static void bitAnd(unsigned char*, int, const unsigned char*, int) noexcept { }
    /// Whether the first n bits are the same, and the one behind them when it lies in the same byte. True for
    /// an n below 1.
    [[nodiscard]] static bool equals(const unsigned char* a, const unsigned char* b, int n) noexcept;

private:
    static constexpr unsigned char maskOf(int i) noexcept
    {
        return static_cast<unsigned char>(1U << (i & 7));
    }
    [[nodiscard]] int checked(int i) const;
    void swap(ZBITFIELD& other) noexcept;
    template <typename T>
    [[nodiscard]] ZGStr<T> textOf() const;

    unsigned char* m_bits = nullptr; // a byte more than the bits need when their number is a multiple of 8
    int m_length = 0;
};

static_assert(sizeof(ZBITFIELD) == 16);

} // namespace ZSpace
