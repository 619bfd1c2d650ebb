// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/string/detail/StrChars.h"

namespace ZSpace::detail {

/// Replaces occurrences of one string by another. Counts them first, so that the result is allocated once.
template <StrChar T>
class Replacement {
public:
    Replacement(ZStrToken<T> text, ZStrToken<T> what, ZStrToken<T> with, long max) noexcept;

    /// The number of occurrences to replace.
    [[nodiscard]] long hits() const noexcept { return m_hits; }
    /// The length of the result.
    [[nodiscard]] long length() const noexcept;
    /// Writes the result without a terminator.
    void writeTo(T* to) const noexcept;

private:
    ZStrToken<T> m_text;
    ZStrToken<T> m_what;
    ZStrToken<T> m_with;
    long m_hits;
};

} // namespace ZSpace::detail
