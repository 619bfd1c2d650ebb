// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/string/detail/StrQueries.h"

#include <compare>
#include <concepts>
#include <functional>
#include <string>
#include <string_view>

namespace ZSpace {

/// A non-owning view of a run of characters: a pointer and a length, passed by value.
///
///     ZStrToken<char> text("key=value");
///     ZStrToken<char> key = text.left(text.indexOf('='));
///
/// The view does not keep the characters alive: using it after their owner has changed or destroyed them is
/// undefined behavior. Which threads may read them depends on the owner. The view need not end with a
/// terminator, so the pointer alone must not be treated as a null-terminated string. A null pointer and a
/// length below 1 both mean the empty view.
///
/// This header suffices for everything but `toLower` and `toUpper`, whose results need ZMStr.h, and the
/// conversions from `ZGStr` and `ZMStr`, which are defined with those classes.
template <typename T>
class ZStrToken : public detail::StrQueries<ZStrToken<T>, T> {
    using Queries = detail::StrQueries<ZStrToken<T>, T>;

public:
    /// What `split` returns.
    using Pieces = ZArray<ZStrToken, ZAllocation<ZStrToken>>;

    /// A null pointer and length 0.
    constexpr ZStrToken() noexcept = default;
    /// The characters up to the terminator; null makes an empty view.
    ZStrToken(const T* text) noexcept
        : ZStrToken(text, detail::lengthOf(text))
    {
    }
    /// `length` characters; they may contain zeros.
    constexpr ZStrToken(const T* text, long length) noexcept
        : m_text(text)
        , m_length(length)
    {
    }
    /// The string's characters, which are counted once.
    inline ZStrToken(const ZGStr<T>& text ZSPACE_LIFETIMEBOUND) noexcept;
    /// The builder's characters, in its stored length.
    inline ZStrToken(const ZMStr<T>& text ZSPACE_LIFETIMEBOUND) noexcept;
    /// The same characters.
    template <std::same_as<std::basic_string_view<T>> S>
    constexpr ZStrToken(S text) noexcept
        : ZStrToken(text.data(), static_cast<long>(text.size()))
    {
    }
    /// The string's characters.
    template <std::same_as<std::basic_string<T>> S>
    ZStrToken(const S& text ZSPACE_LIFETIMEBOUND) noexcept
        : ZStrToken(text.data(), static_cast<long>(text.size()))
    {
    }

    /// Makes this a view of the same characters; nothing is copied.
    ZStrToken& assign(ZStrToken other) noexcept { return *this = other; }
    /// As above, by pointer and length.
    ZStrToken& assign(const T* text, long length) noexcept { return *this = ZStrToken(text, length); }

    /// The length as given, which may be negative.
    [[nodiscard]] constexpr long Length() const noexcept { return m_length; }
    /// Whether the length is below 1.
    [[nodiscard]] constexpr bool isEmpty() const noexcept { return m_length < 1; }
    /// As `isEmpty`.
    [[nodiscard]] constexpr bool operator!() const noexcept { return isEmpty(); }
    /// The pointer as given. A terminator need not follow the last character.
    constexpr operator const T*() const noexcept { return m_text; }
    /// The same characters as a standard view.
    constexpr operator std::basic_string_view<T>() const noexcept { return detail::standardView(*this); }
    /// A copy of the viewed characters. Implicit, so that `string = token` is ambiguous and does not compile: it would
    /// convert to the pointer alone. Write `string = std::string(token)`.
    operator std::basic_string<T>() const { return std::basic_string<T>(detail::standardView(*this)); }
    /// The pointer as given.
    [[nodiscard]] constexpr const T* data() const noexcept { return m_text; }
    [[nodiscard]] constexpr const T* begin() const noexcept { return m_text; }
    [[nodiscard]] constexpr const T* end() const noexcept { return m_text + detail::lengthOf(*this); }
    friend std::basic_ostream<T>& operator<<(std::basic_ostream<T>& out, ZStrToken text)
    {
        return detail::print(out, text);
    }
    template <std::same_as<wchar_t> W>
    requires std::same_as<T, char>
    friend std::basic_ostream<W>& operator<<(std::basic_ostream<W>& out, const ZStrToken& text)
    {
        return detail::print(out, text);
    }
    /// The first character, or 0 if the view is empty.
    constexpr T operator*() const noexcept { return isEmpty() ? T() : *m_text; }
    /// Throws `ZException` "Index out of Array" if the index is negative or not below the length.
    const T& at(long index) const; // NOLINT(modernize-use-nodiscard)
    /// As `at`.
    template <detail::StrIndex I>
    const T& operator[](I index) const
    {
        return at(detail::saturated(index));
    }
    template <std::floating_point F>
    const T& operator[](F) const = delete;

    // The same with the other string given by pointer and length. A search by pointer and length takes the start as
    // well: `indexOf(pointer, 2)` searches for the whole string from position 2 on.

    using Queries::compare, Queries::compareIgnoreCase;
    /// As `compare(ZStrToken)`.
    [[nodiscard]] long compare(const T* other, long length) const noexcept
    {
        return compare(ZStrToken(other, length));
    }
    /// As `compareIgnoreCase(ZStrToken)`.
    [[nodiscard]] long compareIgnoreCase(const T* other, long length) const noexcept
    {
        return compareIgnoreCase(ZStrToken(other, length));
    }

    using Queries::count, Queries::indexOf, Queries::lastIndexOf, Queries::s_verify;
    /// As `indexOf(ZStrToken, long)`.
    [[nodiscard]] long indexOf(const T* what, long length, long from) const noexcept
    {
        return indexOf(ZStrToken(what, length), from);
    }
    /// As `lastIndexOf(ZStrToken, long)`.
    [[nodiscard]] long lastIndexOf(const T* what, long length, long from) const noexcept
    {
        return lastIndexOf(ZStrToken(what, length), from);
    }
    /// As `count(ZStrToken)`.
    [[nodiscard]] long count(const T* what, long length) const noexcept
    {
        return count(ZStrToken(what, length));
    }

    /// A copy with "A" to "Z" in lower case. The viewed characters do not change.
    ZMStr<T> toLower() const; // NOLINT(modernize-use-nodiscard)
    /// A copy with "a" to "z" in upper case. The viewed characters do not change.
    ZMStr<T> toUpper() const; // NOLINT(modernize-use-nodiscard)

    /// Always returns an empty array: a view owns no strings. Split a `ZGStr` or a `ZMStr` instead.
    Pieces split(T, long = -1) const noexcept { return {}; } // NOLINT(modernize-use-nodiscard)
    /// Always returns an empty array.
    Pieces split(const ZStrToken&, long = -1) const noexcept { return {}; } // NOLINT(modernize-use-nodiscard)

    // Views with the same pointer are equal, whatever their lengths. Others are equal if they have the same
    // length and the same characters. The order is that of `compare`.

    bool operator==(ZStrToken other) const noexcept { return m_text == other.m_text || this->isLike(other); }
    bool operator==(const T* other) const noexcept { return m_text == other || this->isLike(other); }
    template <detail::StdText<T> S>
    bool operator==(const S& other) const noexcept
    {
        return *this == ZStrToken(other);
    }
    template <detail::StdText<T> S>
    std::weak_ordering operator<=>(const S& other) const noexcept
    {
        return this->compare(other) <=> 0;
    }
    friend bool operator==(ZStrToken a, const ZGStr<T>& b) noexcept { return a == ZStrToken(b); }
    friend bool operator==(ZStrToken a, const ZMStr<T>& b) noexcept { return a == ZStrToken(b); }
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

/// Hashes the characters, as do all three string classes and those of the standard library.
template <typename T>
struct std::hash<ZSpace::ZStrToken<T>> {
    std::size_t operator()(std::basic_string_view<T> text) const noexcept
    {
        return std::hash<std::basic_string_view<T>>()(text);
    }
};
