// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/ZStrToken.h"

#include <array>
#include <atomic>
#include <bit>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string_view>
#include <type_traits>

namespace ZSpace {

/// A 16-byte globally unique identifier with a fixed text form.
///
///     ZGUID id;
///     id.generate();
///     line << id.toCString();  // {5c1b0e2f-93aa-4d17-08f6-6a2d4f7be901}
///
/// Equality, order, generation and the last two groups of the text form use the bytes in memory order. Sorted
/// sets depend on it.
///
/// Trivially copyable. Only the functions that return a string allocate.
class ZGUID {
public:
    /// The number of characters of the text form.
    static constexpr long s_textLength = 38;

    /// All bytes zero.
    constexpr ZGUID() noexcept = default;
    /// From its fields and bytes.
    ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned char b0, unsigned char b1,
        unsigned char b2, unsigned char b3, unsigned char b4, unsigned char b5, unsigned char b6,
        unsigned char b7)
    noexcept;
    /// `fourth` is stored low byte first, so its bytes are swapped in the text form.
    ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned short fourth,
        unsigned char b2, unsigned char b3, unsigned char b4, unsigned char b5, unsigned char b6,
        unsigned char b7)
    noexcept;
    /// Copies the first six characters of `text`, which may include the terminator as the sixth, to the last
    /// six bytes unchanged. They are zero if `text` is null or shorter than five characters.
    ZGUID(unsigned int first, unsigned short second, unsigned short third, unsigned short fourth,
        const char* text)
    noexcept;
    /// Parses the text form, with or without braces, in upper or lower case. Text that does not have five
    /// groups yields all zeros. A character that is not a hexadecimal digit counts as 0. Bytes that the last
    /// two groups do not supply keep their values.
    ZGUID(ZStrToken<char> text) noexcept;
    /// Parses the text form; other strings leave it cleared.
    ZGUID(ZStrToken<wchar_t> text) noexcept;
    ZGUID& operator=(ZStrToken<char> text) noexcept;
    ZGUID& operator=(ZStrToken<wchar_t> text) noexcept;
    /// Null is ignored.
    ZGUID& operator=(const ZGUID* other) noexcept;

    /// Sets all bits to zero.
    void clear() noexcept { *this = ZGUID(); }
    /// Whether the groups and bytes add up to zero in 32 bits, with the first two bytes of `data4` as one
    /// number. That also holds for a few values that are not all zeros.
    [[nodiscard]] bool isCleared() const noexcept;
    [[nodiscard]] bool operator!() const noexcept { return isCleared(); }

    /// Fills the bytes with `rand()`, which the first call in the process seeds with the time in seconds. Not
    /// for secrets: processes started in the same second generate the same sequence.
    void generate() noexcept;

    bool operator==(const ZGUID& other) const noexcept;
    /// False for null.
    bool operator==(const ZGUID* other) const noexcept { return other && *this == *other; }
    /// Lexicographic order of the bytes in memory, compared as signed numbers.
    std::strong_ordering operator<=>(const ZGUID& other) const noexcept;

    /// `{00112233-4455-6677-8899-aabbccddeeff}`, always that length and in lower case.
    [[nodiscard]] ZGStr<char> toCString() const;
    /// The text form.
    [[nodiscard]] ZGStr<wchar_t> toWString() const;
    /// The text form.
    [[nodiscard]] ZMStr<wchar_t> toString() const;
    operator ZGStr<char>() const { return toCString(); }
    operator ZGStr<wchar_t>() const { return toWString(); }
    operator ZMStr<wchar_t>() const { return toString(); }

    /// Writes `s_textLength` characters, `char` or `wchar_t`, without a terminator.
    template <typename T>
    void writeText(T* to) const noexcept;

    /// The first field.
    unsigned int data1 = 0;
    /// The second field.
    unsigned short data2 = 0;
    /// The third field.
    unsigned short data3 = 0;
    /// The last eight bytes.
    unsigned char data4[8]{};

private:
    template <typename T>
    bool parseUsualForm(ZStrToken<T> text) noexcept;
    template <typename T>
    void parse(ZStrToken<T> text) noexcept;
};

static_assert(sizeof(ZGUID) == 16 && alignof(ZGUID) == 4);
static_assert(offsetof(ZGUID, data1) == 0 && offsetof(ZGUID, data2) == 4);
static_assert(offsetof(ZGUID, data3) == 6 && offsetof(ZGUID, data4) == 8);
static_assert(std::is_trivially_copyable_v<ZGUID> && std::is_standard_layout_v<ZGUID>);
static_assert(
    std::endian::native == std::endian::little, "the order and the text form depend on the byte order");

/// Whether `rand()` has been seeded. Threads whose first calls of `generate` coincide may both seed it.
inline constinit std::atomic<bool> randInitialized{false};

/// Writes the text form; width and fill of the stream apply.
template <detail::StrChar T, typename Traits>
std::basic_ostream<T, Traits>& operator<<(std::basic_ostream<T, Traits>& stream, const ZGUID& guid)
{
    T text[ZGUID::s_textLength];
    guid.writeText(text);
    return stream << std::basic_string_view<T, Traits>(text, ZGUID::s_textLength);
}

extern template void ZGUID::writeText(char*) const noexcept;
extern template void ZGUID::writeText(wchar_t*) const noexcept;

} // namespace ZSpace

namespace std {

/// Equal GUIDs have equal hashes, the same in every process of a host.
template <>
struct hash<ZSpace::ZGUID> {
    /// Mixes all bytes.
    std::size_t operator()(const ZSpace::ZGUID& guid) const noexcept
    {
        const auto halves = std::bit_cast<std::array<std::uint64_t, 2>>(guid);
        std::uint64_t mixed = halves[0] ^ std::rotl(halves[1] * 0x9E37'79B9'7F4A'7C15, 32);
        mixed = (mixed ^ mixed >> 32) * 0xD6E8'FEB8'6659'FD93;
        return static_cast<std::size_t>(mixed ^ mixed >> 32);
    }
};

} // namespace std
