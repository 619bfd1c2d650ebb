// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "string/detail/StrSearch.h"

#include <algorithm>
#include <bit>
#include <iterator>

namespace ZSpace::detail {

namespace {

/// One bit per character below 256, which is every narrow one. What lies above is looked up in the set
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

/// Characters that fit into one machine word.
template <StrChar T>
constexpr long s_perWord = static_cast<long>(sizeof(std::uint64_t) / sizeof(T));

template <StrChar T>
std::uint64_t wordAt(const T* text) noexcept
{
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    return word;
}

/// The number of characters ahead of the first that has a bit set.
template <StrChar T>
long firstSet(std::uint64_t word) noexcept
{
    const int zeroBits =
        std::endian::native == std::endian::little ? std::countr_zero(word) : std::countl_zero(word);
    return zeroBits / static_cast<int>(8 * sizeof(T));
}

} // namespace

template <StrChar T>
long mismatch(const T* a, const T* b, long n) noexcept
{
    long i = 0;
    for (; i + s_perWord<T> <= n; i += s_perWord<T>) {
        const std::uint64_t difference = wordAt(a + i) ^ wordAt(b + i);
        if (difference)
            return i + firstSet<T>(difference);
    }
    while (i < n && a[i] == b[i])
        ++i;
    return i;
}

template <StrChar T>
long mismatchIgnoreCase(const T* a, const T* b, long n) noexcept
{
    long i = 0;
    while (i < n && lowerOf(a[i]) == lowerOf(b[i]))
        ++i;
    return i;
}

template <StrChar T>
long find(const T* text, long n, const T* what, long m, long from) noexcept
{
    if (m == 1)
        return find(text, n, *what, from);

    // A place must fit at both ends before the middle is looked at. Whole blocks of places are tested without
    // a branch, which compilers turn into vector instructions.
    constexpr long block = 32;
    const T first = what[0];
    const T last = what[m - 1];
    const T* const firsts = text;
    const T* const lasts = text + (m - 1);
    const long places = n - m + 1;

    long i = from;
    while (i + block <= places) {
        unsigned char hits = 0;
        for (long k = 0; k < block; ++k)
            hits = static_cast<unsigned char>(hits | ((firsts[i + k] == first) & (lasts[i + k] == last)));
        if (hits) {
            for (long k = 0; k < block; ++k) {
                if (firsts[i + k] == first && lasts[i + k] == last && equalChars(text + i + k, what, m))
                    return i + k;
            }
        }
        i += block;
    }
    for (; i < places; ++i) {
        if (firsts[i] == first && lasts[i] == last && equalChars(text + i, what, m))
            return i;
    }
    return -1;
}

template <StrChar T>
long findLast(const T* text, T c, long from) noexcept
{
    while (from >= 0 && text[from] != c)
        --from;
    return from;
}

template <StrChar T>
long findLast(const T* text, const T* what, long m, long from) noexcept
{
    for (from = findLast(text, *what, from); from >= 0; from = findLast(text, *what, from - 1)) {
        if (equalChars(text + from, what, m))
            break;
    }
    return from;
}

template <StrChar T>
long countOf(const T* text, long n, T c) noexcept
{
    return n < 1 ? 0 : static_cast<long>(std::count(text, text + n, c));
}

template <StrChar T>
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

template <StrChar T>
long leadingRun(const T* text, long n, T c) noexcept
{
    long i = 0;
    while (i < n && text[i] == c)
        ++i;
    return i;
}

template <StrChar T>
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
