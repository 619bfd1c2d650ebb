// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"

namespace ZSpace {

/// An owned array of bits with a fixed length, and static routines for plain byte arrays.
///
///     ZBITFIELD flags(10);
///     flags.set(3, true);
///     flags += 4;
///     line << flags.toCString();  // 0001100000
///
/// Bit i is bit i mod 8 of byte i / 8, least significant bit first. Members that take an index throw
/// `ZXCOutOfBounds` ("Out of bounds", "ZBitField::get") if it is negative or not below the length.
/// `operator&`, `&=`, `|=`, `~` and `invert` have no effect, and callers rely on that. A field may be used by
/// one thread at a time.
///
/// The static routines do not check indices. An array for n bits has `byteCount(n)` bytes, and no routine
/// accesses more. The caller frees the arrays that they return with `release`.
class ZBITFIELD {
public:
    /// `n` bits; call `clear()` before use. A negative length counts as 0.
    explicit ZBITFIELD(int n = 0);
    /// Copies whole bytes, including the bits past the end in the last one.
    ZBITFIELD(const unsigned char* bytes, int n);
    ZBITFIELD(const ZBITFIELD& other);
    ZBITFIELD(ZBITFIELD&& other) noexcept;
    /// Copies bits `start` to `start` + `count` - 1 of another field. Throws if one of them does not exist.
    ZBITFIELD(const ZBITFIELD& source, int start, int count);
    ~ZBITFIELD() { release(m_bits); }

    ZBITFIELD& operator=(const ZBITFIELD& other);
    ZBITFIELD& operator=(ZBITFIELD&& other) noexcept;

    /// The number of bits.
    [[nodiscard]] int Length() const noexcept { return m_length; }
    /// Sets all bits to 0, including those past the end.
    void clear() noexcept { clear(m_bits, m_length); }

    // Indices are `long long`, so that an integer of any type is checked and none is narrowed.

    /// The bit at `i`; throws `ZXCOutOfBounds` if there is none.
    // NOLINTNEXTLINE(modernize-use-nodiscard): callers may want the range check alone
    bool get(long long i) const { return bit(m_bits, checked(i)); }
    bool operator[](long long i) const { return get(i); }
    /// As `get`.
    bool operator()(long long i) const { return get(i); }
    /// Sets the bit at `i`; throws `ZXCOutOfBounds` if there is none.
    void set(long long i, bool value) { bit(m_bits, checked(i), value); }
    /// As `set`.
    void operator()(long long i, bool value) { set(i, value); }
    ZBITFIELD& operator+=(long long i);
    ZBITFIELD& operator-=(long long i);
    /// Copies the bits of `other` to `at` and following, one by one. Throws at the first bit that does not
    /// fit; those before it are then written.
    void set(long long at, const ZBITFIELD& other);
    /// Concatenates.
    ZBITFIELD& operator+=(const ZBITFIELD& other);

    /// Returns a copy of this field ORed with as many bits of `other` as it has itself.
    ZBITFIELD operator|(const ZBITFIELD& other) const;
    /// Does nothing.
    ZBITFIELD operator&(const ZBITFIELD&) const { return *this; }
    /// Does nothing.
    ZBITFIELD& operator&=(const ZBITFIELD&) noexcept { return *this; }
    /// Does nothing.
    ZBITFIELD& operator|=(const ZBITFIELD&) noexcept { return *this; }
    /// Does nothing.
    ZBITFIELD& operator~() noexcept { return *this; }
    /// Does nothing.
    const ZBITFIELD& operator~() const noexcept { return *this; }
    /// Does nothing.
    void invert(int) noexcept { }
    /// Does nothing.
    void invert() noexcept { }

    /// Compares the lengths and, with `equals`, the bits.
    bool operator==(const ZBITFIELD& other) const noexcept;

    /// Returns one "0" or "1" for each bit, bit 0 first.
    [[nodiscard]] ZGStr<char> toCString() const;
    /// The text form.
    [[nodiscard]] ZGStr<wchar_t> toWString() const;
    operator ZGStr<char>() const { return toCString(); }
    operator ZGStr<wchar_t>() const { return toWString(); }

    // Plain byte arrays

    /// The number of bytes that hold `n` bits.
    [[nodiscard]] static constexpr int byteCount(int n) noexcept { return n > 0 ? ((n - 1) >> 3) + 1 : 0; }
    /// Allocates an array for `n` bits; call `clear` before use.
    static unsigned char* create(int n);
    /// Frees bytes that a static routine returned.
    static void release(const unsigned char* bytes) noexcept { delete[] bytes; }
    /// Sets `n` bits to 0.
    static void clear(unsigned char* bytes, int n) noexcept;
    /// Allocates a copy of (n >> 3) + 1 bytes; the last one is 0 if `n` is a multiple of 8.
    static unsigned char* copy(const unsigned char* bytes, int n);

    /// The bit at `i`, unchecked.
    static bool bit(const unsigned char* bytes, int i) noexcept { return bytes[i >> 3] & maskOf(i); }
    /// @return the mask of the bit if it was set, the complement of that mask if it was cleared.
    static unsigned char bit(unsigned char* bytes, int i, bool value) noexcept;
    /// @return the new value of the bit.
    static bool bitOr(unsigned char* bytes, int i, bool value) noexcept;
    /// Returns the bit and changes nothing.
    static bool bitAnd(const unsigned char* bytes, int i, bool) noexcept { return bit(bytes, i); }
    /// Copies the first `n` bits of `from` to bits `at` and following of `to`. The bits may overlap.
    static void bit(unsigned char* to, int at, const unsigned char* from, int n) noexcept;
    /// ORs the first `n` bits of `from` into bits `at` and following of `to`.
    static void bitOr(unsigned char* to, int at, const unsigned char* from, int n) noexcept;
    /// Does nothing.
    static void bitAnd(unsigned char*, int, const unsigned char*, int) noexcept { }
    /// Compares the first `n` bits, and the bit after them if it is in the same byte. True if `n` is below 1.
    [[nodiscard]] static bool equals(const unsigned char* a, const unsigned char* b, int n) noexcept;

private:
    static constexpr unsigned char maskOf(int i) noexcept
    {
        return static_cast<unsigned char>(1U << (i & 7));
    }
    [[nodiscard]] int checked(long long i) const;
    [[nodiscard]] int checkedCount(int start, int count) const;
    void swap(ZBITFIELD& other) noexcept;
    template <typename T>
    [[nodiscard]] ZGStr<T> toText() const;

    unsigned char* m_bits =
        nullptr; // (m_length >> 3) + 1 bytes: one to spare if the length is a multiple of 8
    int m_length = 0;
};

static_assert(sizeof(ZBITFIELD) == 16);

} // namespace ZSpace
