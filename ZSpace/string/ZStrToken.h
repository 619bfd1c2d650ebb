// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/string/detail/StrQueries.h"

#include <compare>
#include <concepts>

namespace ZSpace {

/// A view of a run of characters: a pointer and a length, passed by value.
///
/// The characters belong to whoever made them; the view is good for as long as they stay where they are, and
/// their owner decides which threads may read them. They need no terminator at the end of the view. A view
/// made from a null pointer is empty, and a length below 1 means empty as well.
template <typename T>
class ZStrToken : public detail::StrQueries<ZStrToken<T>, T> {
    using Queries = detail::StrQueries<ZStrToken<T>, T>;

public:
    using Pieces = ZArray<ZStrToken, ZAllocation<ZStrToken>>;

    constexpr ZStrToken() noexcept = default;
    /// The characters up to the terminator.
    ZStrToken(const T* text) noexcept
        : ZStrToken(text, detail::lengthOf(text))
    {
    }
    constexpr ZStrToken(const T* text, long length) noexcept
        : m_text(text)
        , m_length(length)
    {
    }
    inline ZStrToken(const ZGStr<T>& text) noexcept;
    inline ZStrToken(const ZMStr<T>& text) noexcept;

    ZStrToken& assign(ZStrToken other) noexcept { return *this = other; }
    ZStrToken& assign(const T* text, long length) noexcept { return *this = ZStrToken(text, length); }

    [[nodiscard]] constexpr long Length() const noexcept { return m_length; }
    [[nodiscard]] constexpr bool isEmpty() const noexcept { return m_length < 1; }
    [[nodiscard]] constexpr bool operator!() const noexcept { return isEmpty(); }
    /// Where the first character stands; no terminator need follow the last one.
    constexpr operator const T*() const noexcept { return m_text; }
    /// The first character, 0 when there is none.
    constexpr T operator*() const noexcept { return isEmpty() ? T() : *m_text; }
    /// Throws `ZException` "Index out of Array" for a negative index and for one not below the length.
    const T& at(long index) const; // NOLINT(modernize-use-nodiscard)
    template <std::integral I>
    const T& operator[](I index) const
    {
        return at(static_cast<long>(index));
    }

    using Queries::compare, Queries::compareIgnoreCase;
    [[nodiscard]] long compare(const T* other, long length) const noexcept;
    [[nodiscard]] long compareIgnoreCase(const T* other, long length) const noexcept;

    using Queries::count, Queries::indexOf, Queries::lastIndexOf;
    [[nodiscard]] long indexOf(const T* what, long length, long from) const noexcept;
    [[nodiscard]] long lastIndexOf(const T* what, long length, long from) const noexcept;
    [[nodiscard]] long count(const T* what, long length) const noexcept;

    /// A copy with "A" to "Z" in lower case; this view and its characters stay as they are.
    ZMStr<T> toLower() const; // NOLINT(modernize-use-nodiscard)
    /// A copy with "a" to "z" in upper case.
    ZMStr<T> toUpper() const; // NOLINT(modernize-use-nodiscard)

    /// No pieces, whatever the text: a view owns nothing it could hand out. Split a `ZGStr` or a `ZMStr`.
    Pieces split(T separator, long max = -1) const noexcept; // NOLINT(modernize-use-nodiscard)
    Pieces split(const ZStrToken& separator, long max = -1) const noexcept; // NOLINT(modernize-use-nodiscard)

    /// Views of the same place are equal without a look at their lengths; others when length and characters
    /// are. The order is that of `compare`.
    bool operator==(ZStrToken other) const noexcept { return m_text == other.m_text || this->isLike(other); }
    bool operator==(const T* other) const noexcept { return m_text == other || this->isLike(other); }
    bool operator==(const ZGStr<T>& other) const noexcept { return *this == ZStrToken(other); }
    bool operator==(const ZMStr<T>& other) const noexcept { return *this == ZStrToken(other); }
    std::weak_ordering operator<=>(ZStrToken other) const noexcept { return this->compare(other) <=> 0; }
    std::weak_ordering operator<=>(const T* other) const noexcept { return this->compare(other) <=> 0; }
    std::weak_ordering operator<=>(const ZGStr<T>& other) const noexcept
    {
        return this->compare(other) <=> 0;
    }
    std::weak_ordering operator<=>(const ZMStr<T>& other) const noexcept
    {
        return this->compare(other) <=> 0;
    }

private:
    const T* m_text = nullptr;
    long m_length = 0;
};

static_assert(sizeof(ZStrToken<char>) == 16 && sizeof(ZStrToken<wchar_t>) == 16);
static_assert(
    std::is_trivially_copyable_v<ZStrToken<char>> && std::is_trivially_copyable_v<ZStrToken<wchar_t>>);

extern template class ZStrToken<char>;
extern template class ZStrToken<wchar_t>;

} // namespace ZSpace
