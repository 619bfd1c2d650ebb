// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/string/detail/StrSearch.h"

namespace ZSpace::detail {

/// Replaces the content of an empty string; a builder keeps zeros even at the start.
template <StrChar T>
void assignExactly(ZGStr<T>& to, const T* text, long n)
{
    to.assign(text, n);
}

template <StrChar T>
void assignExactly(ZMStr<T>& to, const T* text, long n)
{
    if (n < 1)
        to = ZMStr<T>(text, 0); // capacity 1, like every copy of an empty string
    else
        moveChars(to.getBuffer(n), text, n);
}

/// Splits a string into owned pieces. Counts them first, so that the array is allocated once.
template <typename Str, StrChar T>
[[nodiscard]] ZArray<Str, ZAllocation<Str>> splitText(ZStrToken<T> text, ZStrToken<T> separator, long max)
{
    if (separator.isEmpty())
        return {};
    const long limit = limitOf(max);
    const long n = text.isEmpty() ? 0 : text.Length();
    ZArray<Str, ZAllocation<Str>> pieces(countOf<T>(text, n, separator, separator.Length(), limit - 1) + 1);
    Str* next = pieces.begin();
    forEachPiece<T>(text, n, separator, separator.Length(), limit,
        [&](long start, long length) { assignExactly<T>(*next++, text + start, length); });
    return pieces;
}

} // namespace ZSpace::detail
