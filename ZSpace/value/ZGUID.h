// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"

#include <atomic>
#include <bit>
#include <compare>
#include <cstddef>
#include <type_traits>

namespace ZSpace {

/// A 16-byte identifier with a fixed text form.
///
///     ZGUID id;
///     id.generate();
///     line << id.toCString();  // {5c1b0e2f-93aa-4d17-08f6-6a2d4f7be901}
///
/// Its bytes count as one block in the order in which they lie in memory: equality, order, generation and the
/// last two groups of the text go by that order. Sorted sets depend on it.
///
/// A plain value. Only the text forms that return a string allocate.
class ZGUID {
public:
    /// The number of characters of the text form.
    static constexpr long s_textLength = 38;

    /// All bytes zero.
    constexpr ZGUID() noexcept = default;
    ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned char b0, unsigned char b1,
        unsigned char b2, unsigned char b3, unsigned char b4, unsigned char b5, unsigned char b6,
        unsigned char b7)
    noexcept;
    /// The fourth number is stored low byte first, and so prints with its bytes exchanged.
    ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned short fourth,
        unsigned char b2, unsigned char b3, unsigned char b4, unsigned char b5, unsigned char b6,
        unsigned char b7)
    noexcept;
    /// The last six bytes are the first six characters of `text` themselves, a terminator in the sixth place
    /// included. They stay zero for null and for a text of less than five characters.
    ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned short fourth,
        const char* text)
    noexcept;
    /// The text form, with or without braces and in either case. A text of other than five groups gives all
    /// zeros; what is no hexadecimal digit counts as 0, and bytes that the last two groups lack stay as they
    /// are.
    ZGUID(ZStrToken<char> text) noexcept;
    ZGUID(ZStrToken<wchar_t> text) noexcept;
    ZGUID& operator=(ZStrToken<char> text) noexcept;
    ZGUID& operator=(ZStrToken<wchar_t> text) noexcept;
    /// Null changes nothing.
    ZGUID& operator=(const ZGUID* other) noexcept;

    void clear() noexcept { *this = ZGUID(); }
    /// Whether the groups and bytes add up to zero in 32 bits, the first two bytes of `data4` taken as one
    /// number. Few others than the cleared one do.
    [[nodiscard]] bool isCleared() const noexcept;
    [[nodiscard]] bool operator!() const noexcept { return isCleared(); }

    /// Fills the bytes from the C library's generator, which the first call in the process seeds with the
    /// time in seconds. Not for secrets: processes of the same second share the sequence.
    void generate() noexcept;

    bool operator==(const ZGUID& other) const noexcept;
    /// Null equals none.
    bool operator==(const ZGUID* other) const noexcept { return other && *this == *other; }
    /// Byte by byte from the first on, bytes read as signed numbers.
    std::strong_ordering operator<=>(const ZGUID& other) const noexcept;

    /// `{00112233-4455-6677-8899-aabbccddeeff}`, always of that length and in lower case.
    [[nodiscard]] ZGStr<char> toCString() const;
    [[nodiscard]] ZGStr<wchar_t> toWString() const;
    [[nodiscard]] ZMStr<wchar_t> toString() const;
    operator ZGStr<char>() const { return toCString(); }
    operator ZGStr<wchar_t>() const { return toWString(); }
    operator ZMStr<wchar_t>() const { return toString(); }

    /// Writes the `s_textLength` characters of the text form without a terminator.
    template <detail::StrChar T>
    void writeText(T* to) const noexcept;

    unsigned int data1 = 0;
    unsigned short data2 = 0;
    unsigned short data3 = 0;
    unsigned char data4[8]{};

private:
    template <typename T>
    void parse(ZStrToken<T> text) noexcept;
};

static_assert(sizeof(ZGUID) == 16 && alignof(ZGUID) == 4);
static_assert(offsetof(ZGUID, data1) == 0 && offsetof(ZGUID, data2) == 4);
static_assert(offsetof(ZGUID, data3) == 6 && offsetof(ZGUID, data4) == 8);
static_assert(std::is_trivially_copyable_v<ZGUID> && std::is_standard_layout_v<ZGUID>);
static_assert(std::endian::native == std::endian::little, "the order of identifiers goes by their bytes");

/// Whether the C library's generator has been seeded. Threads that generate at once for the first time may
/// both seed it.
inline constinit std::atomic<bool> randInitialized{false};

extern template void ZGUID::writeText(char*) const noexcept;
extern template void ZGUID::writeText(wchar_t*) const noexcept;

} // namespace ZSpace
