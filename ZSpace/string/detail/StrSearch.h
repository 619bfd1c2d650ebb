// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/detail/StrChars.h"

#include <array>
#include <climits>
#include <cstdint>

namespace ZSpace::detail {

/// The first place where `a` and `b` differ, `n` where they do not.
template <StrChar T>
[[nodiscard]] long mismatch(const T* a, const T* b, long n) noexcept;

/// As `mismatch`, "A" to "Z" counting as "a" to "z".
template <StrChar T>
[[nodiscard]] long mismatchIgnoreCase(const T* a, const T* b, long n) noexcept;

/// Where the first of `n` characters that is `c` stands, looking from `from` on; -1 when there is none.
template <StrChar T>
[[nodiscard]] inline long find(const T* text, long n, T c, long from) noexcept
{
    const T* hit = findChar(text + from, n - from, c);
    return hit ? hit - text : -1;
}

/// As above for a run of `m` characters, `m` of at least 1.
/// Takes up to n * m comparisons in texts that repeat themselves, one pass everywhere else.
template <StrChar T>
[[nodiscard]] long find(const T* text, long n, const T* what, long m, long from) noexcept;

/// The last `c` that stands at or before `from`, which is below the length; -1 when there is none.
template <StrChar T>
[[nodiscard]] long findLast(const T* text, T c, long from) noexcept;

/// As above for a run of `m` characters, `m` of at least 1, of which the first stands at or before `from`.
template <StrChar T>
[[nodiscard]] long findLast(const T* text, const T* what, long m, long from) noexcept;

/// How often `c` occurs.
template <StrChar T>
[[nodiscard]] long countOf(const T* text, long n, T c) noexcept;

/// How often `what` occurs, left to right and not overlapping, at most `limit` times. An empty `what` does
/// not occur.
template <StrChar T>
[[nodiscard]] long countOf(const T* text, long n, const T* what, long m, long limit = LONG_MAX) noexcept;

/// The length of the leading run of characters that are `c`.
template <StrChar T>
[[nodiscard]] long leadingRun(const T* text, long n, T c) noexcept;

/// The length of the leading run of characters that belong to `set`.
template <StrChar T>
[[nodiscard]] long leadingRun(const T* text, long n, const T* set, long setLength) noexcept;

/// Where a position given by a caller lies in a text: a negative one counts from the end and stops at the
/// beginning, one past the end stops at the end.
[[nodiscard]] constexpr long clampedPosition(long at, long length) noexcept
{
    if (at < 0)
        return at + length > 0 ? at + length : 0;
    return at < length ? at : length;
}

/// How many characters a request for `count` from a clamped position on covers; a negative count means all.
[[nodiscard]] constexpr long clampedCount(long count, long at, long length) noexcept
{
    return count < 0 || count > length - at ? length - at : count;
}

/// Calls `piece(start, length)` for each of the pieces that a separator of `m` characters, `m` of at least 1,
/// cuts a text into; after `limit` - 1 pieces the rest is one piece.
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

/// A limit on pieces or replacements as callers give it: below 1 there is none.
[[nodiscard]] constexpr long limitOf(long max) noexcept
{
    return max < 1 ? LONG_MAX : max;
}

} // namespace ZSpace::detail
