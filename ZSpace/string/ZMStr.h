// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZStrToken.h"

#include <compare>
#include <concepts>
#include <memory>
#include <optional>
#include <utility>

namespace ZSpace {

/// A text that is built piece by piece: a buffer, its capacity and the length of the text in it.
///
/// The characters end with a zero at `Length()`. The capacity counts the elements that may be used, that zero
/// included; the buffer has one more to spare. A default builder has no buffer at all. Appending takes
/// amortised constant time for each character, and the steps in which the capacity grows are fixed: to the
/// capacity, half of it and the characters to be added, plus one.
///
/// All that a text can be asked, and how numbers, comparison, searching and trimming work, is as in `ZGStr`,
/// only that nothing is counted again. Texts handed in may lie in the buffer itself. Appending, inserting and
/// filling end the process when memory runs out; all else that allocates passes the failure on and leaves the
/// builder as it was. A builder belongs to one thread at a time.
template <typename T>
class ZMStr : public detail::StrQueries<ZMStr<T>, T>, public detail::StrAppender<ZMStr<T>, T> {
    using Queries = detail::StrQueries<ZMStr<T>, T>;
    using Appender = detail::StrAppender<ZMStr<T>, T>;
    using Token = ZStrToken<T>;
    friend Appender;

public:
    using Pieces = ZArray<ZMStr, ZAllocation<ZMStr>>;

    // Making and copying

    constexpr ZMStr() noexcept = default;
    /// Empty, with room for `capacity` characters. For integers only, so that 0 is never taken for a text.
    template <std::integral I>
    explicit ZMStr(I capacity)
    {
        alloc(static_cast<long>(capacity));
    }
    /// The copying forms have no more room than the text needs, and no buffer for the empty text.
    ZMStr(const T* text, long length);
    ZMStr(const T* text)
        : ZMStr(text, ZGStr<T>::length(text))
    {
    }
    ZMStr(Token text)
        : ZMStr(text, text.Length())
    {
    }
    ZMStr(const ZGStr<T>& text)
        : ZMStr(Token(text))
    {
    }
    ZMStr(const ZMStr& other)
        : ZMStr(Token(other))
    {
    }
    ZMStr(ZMStr&& other) noexcept { swap(other); }
    /// From the other width, unit by unit.
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const U* text) noexcept
    {
        *this << text;
    }
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const U* text, long length) noexcept
    {
        this->appendValueOf(text, length);
    }
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const ZStrToken<U>& text) noexcept
    {
        *this << text;
    }
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const ZGStr<U>& text) noexcept
    {
        *this << text;
    }
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const ZMStr<U>& text) noexcept
    {
        *this << text;
    }
    ~ZMStr() { ZGStr<T>::release(m_buffer); }

    /// Copies into the buffer at hand where it is large enough.
    ZMStr& assign(const T* text, long length);
    ZMStr& assign(Token text) { return assign(text, text.Length()); }
    ZMStr& operator=(const ZMStr& other);
    ZMStr& operator=(ZMStr&& other) noexcept;
    ZMStr& operator=(Token text);
    ZMStr& operator=(const T* text);
    ZMStr& operator=(const ZGStr<T>& text);
    /// A new array with the characters, the caller's to be freed with `ZGStr<T>::release`.
    T* clone() const { return ZGStr<T>::copy(m_buffer, m_length); } // NOLINT(modernize-use-nodiscard)

    // Storage

    [[nodiscard]] bool isEmpty() const noexcept { return m_length < 1; }
    [[nodiscard]] bool operator!() const noexcept { return isEmpty(); }
    [[nodiscard]] long Length() const noexcept { return m_length; }
    [[nodiscard]] long Capacity() const noexcept { return m_capacity; }
    /// The buffer as it is; null for a builder without one.
    operator const T*() const noexcept { return m_buffer; }

    /// Moves to a buffer of capacity `n` + 1 and keeps the first `n` characters.
    void alloc(long n);
    /// Makes room for `n` characters beyond the capacity and half of it.
    void allocInc(long n);
    /// With `n` of at least 1: drops the text and gives a buffer for exactly `n` characters, which the caller
    /// writes and which count as the text from now on. Otherwise gives the present buffer, which may be null.
    T* getBuffer(long n);
    void swap(ZMStr& other) noexcept;
    /// Frees the buffer.
    void clear() noexcept { ZMStr().swap(*this); }

    // Appending; `operator<<` comes from the base

    inline ZMStr& append(const T* text, long length) noexcept;
    ZMStr& append(Token text) noexcept { return append(text, text.Length()); }
    /// `count` copies of `c`.
    ZMStr& append(const T& c, long count) noexcept;
    inline ZMStr& append(const T& c) noexcept;
    ZMStr& operator+=(Token text) noexcept { return append(text); }
    ZMStr& operator+=(const T& c) noexcept { return append(c); }
    ZMStr operator+(Token text) const noexcept { return concat(text); }
    ZMStr operator+(const T& c) const noexcept { return concat(Token(&c, 1)); }
    /// A new builder: this text and the given one.
    ZMStr concat(Token text) const noexcept; // NOLINT(modernize-use-nodiscard)
    /// Replaces the text by those of the given builders run together. Without a count they end with one that
    /// has no buffer.
    ZMStr& join(const ZMStr* texts, long count) noexcept;
    ZMStr& join(const ZMStr* texts) noexcept;

    using Appender::appendHexOf, Appender::appendValueOf;
    /// Puts as many "0" ahead as are missing to `width` characters, ahead of a sign as well.
    template <detail::StrInteger I, detail::StrInteger W>
    ZMStr& appendValueOf(I number, W width, bool emptyIfZero = false) noexcept
    {
        return appendPadded(detail::Decimal(number), static_cast<long>(width), emptyIfZero);
    }

    // Padding and inserting

    /// Inserts ahead of position `at`, which counts from the end when negative. Before the last character
    /// nothing can be inserted: that position appends.
    ZMStr& insert(const T* text, long length, long at) noexcept;
    ZMStr& insert(Token text, long at) noexcept { return insert(text, text.Length(), at); }
    /// Inserts as many `c` as are missing to `newLength` characters at position `at`; -1 is the end.
    /// @return how many they were.
    long fill(T c, long newLength, long at) noexcept;
    /// At the front.
    long lFill(T c, long newLength) noexcept { return fill(c, newLength, 0); }
    /// At the end.
    long rFill(T c, long newLength) noexcept { return fill(c, newLength, -1); }

    // Comparing

    bool operator==(Token other) const noexcept { return this->isLike(other); }
    bool operator==(const T* other) const noexcept { return this->isLike(other); }
    bool operator==(const ZGStr<T>& other) const noexcept { return this->isLike(other); }
    bool operator==(const ZMStr& other) const noexcept { return this->isLike(other); }
    std::weak_ordering operator<=>(Token other) const noexcept { return this->compare(other) <=> 0; }
    std::weak_ordering operator<=>(const T* other) const noexcept { return this->compare(other) <=> 0; }
    std::weak_ordering operator<=>(const ZGStr<T>& other) const noexcept
    {
        return this->compare(other) <=> 0;
    }
    std::weak_ordering operator<=>(const ZMStr& other) const noexcept { return this->compare(other) <=> 0; }

    // Editing

    /// @return the number of characters removed.
    long remove(long start, long count = -1) noexcept;
    long trim() noexcept;
    long lTrim() noexcept;
    long rTrim() noexcept;
    ZMStr& replace(T what, T with) noexcept;
    ZMStr& reverse() noexcept;
    ZMStr& toLower() noexcept;
    ZMStr& toUpper() noexcept;
    /// Replaces the first `max` occurrences from left to right, all of them for a `max` below 1.
    ZMStr& replace(Token what, Token with, long max = -1);
    /// As `replace`.
    /// @return how many occurrences were replaced.
    long replaceEx(Token what, Token with, long max = -1);

    /// The pieces between the separators, as `ZGStr<T>::split` gives them.
    Pieces split(T separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)
    Pieces split(Token separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)

    // Access

    /// A negative index counts from the end. Throws `ZException` "Index out of range" for an index still
    /// negative then, and for one at or past the first zero.
    T& at(long index) { return ZGStr<T>::charAt(m_buffer, positionOf(index)); }
    // NOLINTNEXTLINE(modernize-use-nodiscard)
    const T& at(long index) const { return ZGStr<T>::charAt(m_buffer, positionOf(index)); }
    template <std::integral I>
    T& operator[](I index)
    {
        return at(static_cast<long>(index));
    }
    template <std::integral I>
    const T& operator[](I index) const
    {
        return at(static_cast<long>(index));
    }

private:
    /// Whether `n` more characters fit without moving.
    [[nodiscard]] bool hasRoomFor(long n) const noexcept { return n < m_capacity - m_length - 1; }
    [[nodiscard]] long grownCapacity(long n) const noexcept;
    [[nodiscard]] long positionOf(long index) const;
    inline void setLength(long length) noexcept;
    /// Puts an empty buffer of capacity `n` + 1 in place of the present one, which goes to the caller: what
    /// is to be copied may still lie in it.
    std::unique_ptr<T[]> exchangeBuffer(long n);
    /// Moves the text from `at` on by `n` characters, into an exchanged buffer where `room` is given.
    std::unique_ptr<T[]> openGap(long at, long n, std::optional<long> room);
    ZMStr& appendMoving(const T* text, long length) noexcept;
    ZMStr& appendPadded(detail::Decimal number, long width, bool emptyIfZero) noexcept;
    inline T* extendedBy(long n) noexcept;
    inline T* grownBy(long n) noexcept;
    T* grownByDigits(long n) noexcept { return grownBy(n); }
    T* grownByHexDigits(long n) noexcept;

    T* m_buffer = nullptr;
    long m_capacity = 0;
    long m_length = 0;
};

static_assert(sizeof(ZMStr<char>) == 24 && sizeof(ZMStr<wchar_t>) == 24);

template <typename T>
ZStrToken<T>::ZStrToken(const ZMStr<T>& text) noexcept
    : ZStrToken(text, text.Length())
{
}

// Declared inline in the class: what an explicit instantiation is promised for is not inlined otherwise.

template <typename T>
void ZMStr<T>::setLength(long length) noexcept
{
    m_length = length;
    m_buffer[length] = 0;
}

template <typename T>
T* ZMStr<T>::extendedBy(long n) noexcept
{
    // Read once: for all that a compiler knows, a written character may be part of a member.
    T* const end = m_buffer + m_length;
    m_length += n;
    end[n] = 0;
    return end;
}

template <typename T>
T* ZMStr<T>::grownBy(long n) noexcept
{
    if (!hasRoomFor(n)) [[unlikely]]
        alloc(grownCapacity(n));
    return extendedBy(n);
}

template <typename T>
ZMStr<T>& ZMStr<T>::append(const T* text, long length) noexcept
{
    if (!text || length < 1)
        return *this;
    if (!hasRoomFor(length)) [[unlikely]]
        return appendMoving(text, length);
    detail::copyChars(extendedBy(length), text, length);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::append(const T& c) noexcept
{
    if (!hasRoomFor(1)) [[unlikely]]
        return append(c, 1);
    const T copied = c; // may lie in the buffer
    *extendedBy(1) = copied;
    return *this;
}

extern template class detail::StrAppender<ZMStr<char>, char>;
extern template class detail::StrAppender<ZMStr<wchar_t>, wchar_t>;
extern template class ZMStr<char>;
extern template class ZMStr<wchar_t>;

} // namespace ZSpace
