// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/string/detail/StrChars.h"

namespace ZSpace::detail {

/// Replacing one text by another: counts first, so that the room for the result is known before it is
/// written.
template <StrChar T>
class Replacement {
public:
    Replacement(ZStrToken<T> text, ZStrToken<T> what, ZStrToken<T> with, long max) noexcept;

    /// How many occurrences are to be replaced.
    [[nodiscard]] long hits() const noexcept { return m_hits; }
    /// The number of characters of the result.
    [[nodiscard]] long length() const noexcept;
    /// Writes the result, with no terminator.
    void writeTo(T* to) const noexcept;

private:
    ZStrToken<T> m_text;
    ZStrToken<T> m_what;
    ZStrToken<T> m_with;
    long m_hits;
};

} // namespace ZSpace::detail
