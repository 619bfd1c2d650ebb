// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrChars.h"

#include <array>
#include <climits>
#include <cstdint>

namespace ZSpace::detail {

/// The index of the first character in which `a` and `b` differ, `n` if there is none.
template <typename T>
[[nodiscard]] long mismatch(const T* a, const T* b, long n) noexcept;

/// As `mismatch`, with "A" to "Z" folded to lower case.
template <typename T>
[[nodiscard]] long mismatchIgnoreCase(const T* a, const T* b, long n) noexcept;

/// The index of the first `c` at or after `from` among `n` characters, -1 if there is none.
template <StrChar T>
[[nodiscard]] inline long find(const T* text, long n, T c, long from) noexcept
{
    const T* hit = findChar(text + from, n - from, c);
    return hit ? hit - text : -1;
}

/// As above, for a run of `m` characters; `m` is at least 1. Usually one pass; strings that repeat themselves
/// take up to n * m comparisons.
template <typename T>
[[nodiscard]] long find(const T* text, long n, const T* what, long m, long from) noexcept;

/// The index of the last `c` at or before `from`, which is below the length; -1 if there is none.
template <typename T>
[[nodiscard]] long findLast(const T* text, T c, long from) noexcept;

/// As above, for a run of `m` characters that starts at or before `from`; `m` is at least 1.
template <typename T>
[[nodiscard]] long findLast(const T* text, const T* what, long m, long from) noexcept;

/// The number of characters that equal `c`.
template <typename T>
[[nodiscard]] long countOf(const T* text, long n, T c) noexcept;

/// The number of non-overlapping occurrences of `what` from left to right, at most `limit`; 0 for an empty
/// `what`.
template <typename T>
[[nodiscard]] long countOf(const T* text, long n, const T* what, long m, long limit = LONG_MAX) noexcept;

/// The length of the leading run of characters that are `c`.
template <typename T>
[[nodiscard]] long leadingRun(const T* text, long n, T c) noexcept;

/// The length of the leading run of characters that belong to `set`.
template <typename T>
[[nodiscard]] long leadingRun(const T* text, long n, const T* set, long setLength) noexcept;

/// Calls `piece(start, length)` for each piece between separators of `m` characters; `m` is at least 1. After
/// `limit` - 1 pieces the rest is one piece.
template <StrChar T, typename Piece>
void forEachPiece(const T* text, long n, const T* separator, long m, long limit, Piece piece)
{
    long start = 0;
    while (--limit > 0) {
        const long hit = find(text, n, separator, m, start);
        if (hit < 0)
            break;
        piece(start, hit - start);
        start = hit + m;
    }
    piece(start, n - start);
}

/// The limit that a caller's `max` denotes: a value below 1 means no limit.
[[nodiscard]] constexpr long limitOf(long max) noexcept
{
    return max < 1 ? LONG_MAX : max;
}

} // namespace ZSpace::detail
