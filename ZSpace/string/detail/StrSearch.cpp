// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/detail/StrSearch.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <numeric>

namespace ZSpace::detail {

namespace {

constexpr long s_block = 32;

/// A bitmap of the characters below 256, which include every narrow one; others are looked up in the set
/// itself.
template <StrChar T>
class CharSet {
public:
    CharSet(const T* set, long length) noexcept
        : m_set(set)
        , m_length(length)
    {
        for (long i = 0; i < length; ++i) {
            const auto c = unsignedOf(set[i]);
            if (c < 256)
                m_low[c / 64] |= std::uint64_t(1) << (c % 64);
        }
    }

    [[nodiscard]] bool contains(T character) const noexcept
    {
        const auto c = unsignedOf(character);
        if (c < 256)
            return m_low[c / 64] >> (c % 64) & 1;
        return findChar(m_set, m_length, character) != nullptr;
    }

private:
    std::array<std::uint64_t, 4> m_low{};
    const T* m_set;
    long m_length;
};

template <StrChar T>
std::uint64_t wordAt(const T* text) noexcept
{
    std::uint64_t word = 0;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// Which characters of a block pass a test: one byte for each, 1 or 0, tested a word at a time. Without branches, so that
/// compilers use vector instructions.
class BlockHits {
public:
    template <typename Test>
    BlockHits(long from, Test test) noexcept
    {
        std::array<unsigned char, s_block> hits{};
        for (long k = 0; k < s_block; ++k)
            hits[static_cast<std::size_t>(k)] = static_cast<unsigned char>(test(from + k));
        m_words = std::bit_cast<Words>(hits);
    }

    [[nodiscard]] bool any() const noexcept
    {
        return ((m_words[0] | m_words[1]) | (m_words[2] | m_words[3])) != 0;
    }
    /// Precondition: `any()`.
    [[nodiscard]] long first() const noexcept
    {
        const auto* word = std::find_if(m_words.begin(), m_words.end(), isSet);
        return (word - m_words.begin()) * s_wordSize
            + (s_isLittleEndian ? std::countr_zero(*word) : std::countl_zero(*word)) / 8;
    }
    /// Precondition: `any()`.
    [[nodiscard]] long last() const noexcept
    {
        const auto word = std::find_if(m_words.rbegin(), m_words.rend(), isSet);
        return (m_words.rend() - word) * s_wordSize - 1
            - (s_isLittleEndian ? std::countl_zero(*word) : std::countr_zero(*word)) / 8;
    }

private:
    static constexpr long s_wordSize = sizeof(std::uint64_t);
    using Words = std::array<std::uint64_t, s_block / s_wordSize>;
    static constexpr bool s_isLittleEndian = std::endian::native == std::endian::little;

    static bool isSet(std::uint64_t word) noexcept { return word != 0; }

    Words m_words;
};

/// The first index in [from, end) that passes the test, `end` if none does.
template <typename Test>
long firstWhere(long from, long end, Test test) noexcept
{
    for (; from + s_block <= end; from += s_block) {
        if (const BlockHits hits(from, test); hits.any())
            return from + hits.first();
    }
    while (from < end && !test(from))
        ++from;
    return from;
}

/// The last index in [0, from] that passes the test, -1 if none does.
template <typename Test>
long lastWhere(long from, Test test) noexcept
{
    for (; from + 1 >= s_block; from -= s_block) {
        const long begin = from + 1 - s_block;
        if (const BlockHits hits(begin, test); hits.any())
            return begin + hits.last();
    }
    while (from >= 0 && !test(from))
        --from;
    return std::max(from, -1L); // a negative position stays one
}

} // namespace

template <typename T>
long mismatch(const T* a, const T* b, long n) noexcept
{
    // The C library skips long equal runs; a word at a time then finds the difference.
    constexpr long run = 256;
    constexpr long word = sizeof(std::uint64_t) / sizeof(T);
    long i = 0;
    while (i + run <= n && equalChars(a + i, b + i, run))
        i += run;
    while (i + word <= n && wordAt(a + i) == wordAt(b + i))
        i += word;
    while (i < n && a[i] == b[i])
        ++i;
    return i;
}

template <typename T>
long mismatchIgnoreCase(const T* a, const T* b, long n) noexcept
{
    return firstWhere(0, n, [=](long i) { return lowerOf(a[i]) != lowerOf(b[i]); });
}

template <typename T>
long find(const T* text, long n, const T* what, long m, long from) noexcept
{
    if (m == 1)
        return find(text, n, *what, from);
    // The first and the last character must match before the rest is compared.
    const T first = what[0];
    const long toLast = m - 1;
    const T last = what[toLast];
    const long end = n - m + 1;
    const auto matchesAtEnds = [=](long i) { return (text[i] == first) & (text[i + toLast] == last); };
    for (long i = from; (i = firstWhere(i, end, matchesAtEnds)) < end; ++i) {
        if (equalChars(text + i, what, m))
            return i;
    }
    return -1;
}

template <typename T>
long findLast(const T* text, T c, long from) noexcept
{
    return lastWhere(from, [=](long i) { return text[i] == c; });
}

template <typename T>
long findLast(const T* text, const T* what, long m, long from) noexcept
{
    const T first = what[0];
    const long toLast = m - 1;
    const T last = what[toLast];
    const auto matchesAtEnds = [=](long i) { return (text[i] == first) & (text[i + toLast] == last); };
    for (long i = from; (i = lastWhere(i, matchesAtEnds)) >= 0; --i) {
        if (equalChars(text + i, what, m))
            return i;
    }
    return -1;
}

template <typename T>
long countOf(const T* text, long n, T c) noexcept
{
    // Each byte counts the hits at one place of up to 255 blocks, so that nothing overflows.
    constexpr long rounds = 255;
    long hits = 0;
    long i = 0;
    while (i + s_block <= n) {
        std::array<unsigned char, s_block> sums{};
        const long end = i + std::min((n - i) / s_block, rounds) * s_block;
        for (; i < end; i += s_block) {
            const T* next = text + i;
            for (unsigned char& sum : sums)
                sum = static_cast<unsigned char>(sum + (*next++ == c));
        }
        hits = std::accumulate(sums.begin(), sums.end(), hits);
    }
    for (; i < n; ++i)
        hits += text[i] == c;
    return hits;
}

template <typename T>
long countOf(const T* text, long n, const T* what, long m, long limit) noexcept
{
    if (m < 1)
        return 0;
    if (m == 1)
        return std::min(countOf(text, n, *what), limit);
    long hits = 0;
    for (long at = 0; hits < limit && (at = find(text, n, what, m, at)) >= 0; at += m)
        ++hits;
    return hits;
}

template <typename T>
long leadingRun(const T* text, long n, T c) noexcept
{
    return firstWhere(0, n, [=](long i) { return text[i] != c; });
}

template <typename T>
long leadingRun(const T* text, long n, const T* set, long setLength) noexcept
{
    const CharSet<T> members(set, setLength);
    long i = 0;
    while (i < n && members.contains(text[i]))
        ++i;
    return i;
}

template long mismatch(const char*, const char*, long) noexcept;
template long mismatch(const wchar_t*, const wchar_t*, long) noexcept;
template long mismatchIgnoreCase(const char*, const char*, long) noexcept;
template long mismatchIgnoreCase(const wchar_t*, const wchar_t*, long) noexcept;
template long find(const char*, long, const char*, long, long) noexcept;
template long find(const wchar_t*, long, const wchar_t*, long, long) noexcept;
template long findLast(const char*, char, long) noexcept;
template long findLast(const wchar_t*, wchar_t, long) noexcept;
template long findLast(const char*, const char*, long, long) noexcept;
template long findLast(const wchar_t*, const wchar_t*, long, long) noexcept;
template long countOf(const char*, long, char) noexcept;
template long countOf(const wchar_t*, long, wchar_t) noexcept;
template long countOf(const char*, long, const char*, long, long) noexcept;
template long countOf(const wchar_t*, long, const wchar_t*, long, long) noexcept;
template long leadingRun(const char*, long, char) noexcept;
template long leadingRun(const wchar_t*, long, wchar_t) noexcept;
template long leadingRun(const char*, long, const char*, long) noexcept;
template long leadingRun(const wchar_t*, long, const wchar_t*, long) noexcept;

} // namespace ZSpace::detail
