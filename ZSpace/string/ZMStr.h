// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZStrToken.h"

#include <compare>
#include <concepts>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace ZSpace {

/// A string builder: a buffer, its capacity and the length of the string in it.
///
///     ZMStr<char> line;
///     line << "copied " << 3 << " of " << 5;
///     line.lFill(' ', 20);
///
/// The string is null-terminated at `Length()`. The capacity counts the usable elements including the
/// terminator; the buffer has one spare element beyond it. A default builder has no buffer. Appending takes
/// amortized constant time per character. The growth steps are fixed: a new capacity is one and a half times
/// the old one, plus the characters to append, plus one.
///
/// Queries, number conversion and trimming work as in `ZGStr`, but use the stored length. Arguments may lie in the
/// buffer itself. Appending, inserting and filling call `std::terminate` if allocation fails; everything else that
/// allocates throws `std::bad_alloc` and leaves the builder unchanged. A builder must be used by one thread at a time.
template <typename T>
class ZMStr : public detail::StrQueries<ZMStr<T>, T>, public detail::StrAppender<ZMStr<T>, T> {
    using Queries = detail::StrQueries<ZMStr<T>, T>;
    using Appender = detail::StrAppender<ZMStr<T>, T>;
    using Token = ZStrToken<T>;
    friend Appender;

public:
    /// What `split` returns.
    using Pieces = ZArray<ZMStr, ZAllocation<ZMStr>>;

    // Construction and assignment

    /// No buffer, capacity and length 0.
    constexpr ZMStr() noexcept = default;
    /// Empty, with a buffer for `capacity` characters. A template, so that 0 is not taken for a null pointer.
    template <detail::StrIndex I>
    explicit ZMStr(I capacity)
    {
        alloc(detail::saturated(capacity));
    }
    /// Copies `length` characters, including zeros; empty if the first one is zero. Copies have no spare
    /// capacity, and copies of the empty string have no buffer and capacity 1.
    ZMStr(const T* text, long length);
    /// Copies the characters up to the terminator.
    ZMStr(const T* text)
        : ZMStr(text, detail::lengthOf(text))
    {
    }
    /// Copies the viewed characters.
    ZMStr(Token text)
        : ZMStr(text, text.Length())
    {
    }
    /// Copies the string's characters.
    ZMStr(const ZGStr<T>& text)
        : ZMStr(Token(text))
    {
    }
    /// Copies all characters, including zeros, without spare capacity.
    ZMStr(const ZMStr& other)
        : m_capacity(1)
    {
        convert(other.m_buffer, other.m_length);
    }
    /// Leaves `other` like a default builder.
    ZMStr(ZMStr&& other) noexcept { swap(other); }
    /// Copies the characters of a standard string or view; empty if the first one is zero.
    template <detail::StdText<T> S>
    ZMStr(const S& text)
        : ZMStr(Token(text))
    {
    }
    /// Converts from the other width.
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const U* text) noexcept
        : ZMStr(text, detail::lengthOf(text))
    {
    }
    /// Converts `length` characters from the other width; empty if the first one is zero.
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const U* text, long length) noexcept
        : m_capacity(1)
    {
        convert(text, detail::copiedLength(text, length));
    }
    /// As above, for the viewed characters.
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const ZStrToken<U>& text) noexcept
        : ZMStr(static_cast<const U*>(text), text.Length())
    {
    }
    /// Converts from the other width.
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const ZGStr<U>& text) noexcept
        : ZMStr(ZStrToken<U>(text))
    {
    }
    /// Converts all characters, including zeros, from the other width.
    template <detail::OtherStrChar<T> U>
    explicit ZMStr(const ZMStr<U>& text) noexcept
        : m_capacity(1)
    {
        convert(static_cast<const U*>(text), text.Length());
    }
    ~ZMStr() { ZGStr<T>::release(m_buffer); }

    /// Copies into the existing buffer, which grows when needed; empty if the first character is zero.
    ZMStr& assign(const T* text, long length);
    /// As above, for the viewed characters.
    ZMStr& assign(Token text) { return assign(text, text.Length()); }
    ZMStr& operator=(const ZMStr& other);
    ZMStr& operator=(ZMStr&& other) noexcept;
    ZMStr& operator=(Token text);
    ZMStr& operator=(const T* text);
    template <detail::StdText<T> S>
    ZMStr& operator=(const S& text)
    {
        *this = Token(text);
        return *this;
    }
    /// Converts from the other width, as `operator<<` does.
    template <detail::OtherWidthText<T> S>
    ZMStr& operator=(const S& text)
    {
        *this = ZMStr(ZStrToken<typename Appender::OtherChar>(text));
        return *this;
    }
    ZMStr& operator=(const ZGStr<T>& text);
    /// A new array with all characters, including zeros, which the caller frees with `ZGStr<T>::release`.
    T* clone() const; // NOLINT(modernize-use-nodiscard)

    // Storage

    /// Whether the length is 0.
    [[nodiscard]] bool isEmpty() const noexcept { return m_length < 1; }
    /// As `isEmpty`.
    [[nodiscard]] bool operator!() const noexcept { return isEmpty(); }
    /// The number of characters before the terminator.
    [[nodiscard]] long Length() const noexcept { return m_length; }
    /// The number of usable elements, including the terminator.
    [[nodiscard]] long Capacity() const noexcept { return m_capacity; }
    /// The buffer as stored, which may be null.
    operator const T*() const noexcept ZSPACE_LIFETIMEBOUND { return m_buffer; }
    /// A standard view of the characters.
    operator std::basic_string_view<T>() const noexcept ZSPACE_LIFETIMEBOUND
    {
        return detail::standardView(Token(*this));
    }
    /// A copy of the characters. Explicit, so that `string = text` keeps meaning the pointer.
    /// g++ 14 prefers the pointer to explicit conversions, so its `std::string(text)` ends at a zero and throws
    /// for a null one, as `ZMStr()` is; `std::string(std::string_view(text))` is right with every compiler.
    explicit operator std::basic_string<T>() const
    {
        return std::basic_string<T>(detail::standardView(Token(*this)));
    }
    /// The buffer as stored, which may be null.
    [[nodiscard]] const T* data() const noexcept ZSPACE_LIFETIMEBOUND { return m_buffer; }
    [[nodiscard]] const T* begin() const noexcept ZSPACE_LIFETIMEBOUND { return m_buffer; }
    [[nodiscard]] const T* end() const noexcept ZSPACE_LIFETIMEBOUND { return m_buffer + this->size(); }
    friend std::basic_ostream<T>& operator<<(std::basic_ostream<T>& out, const ZMStr& text)
    {
        return detail::print(out, Token(text));
    }
    template <std::same_as<wchar_t> W>
    requires std::same_as<T, char>
    friend std::basic_ostream<W>& operator<<(std::basic_ostream<W>& out, const ZMStr& text)
    {
        return detail::print(out, ZStrToken<char>(text));
    }

    // Substrings, which view this string's characters

    /// The first `n` characters, or all of them if there are fewer.
    [[nodiscard]] Token left(long n) const noexcept ZSPACE_LIFETIMEBOUND { return Queries::left(n); }
    /// The last `n` characters, or all of them if there are fewer.
    [[nodiscard]] Token right(long n) const noexcept ZSPACE_LIFETIMEBOUND { return Queries::right(n); }
    /// Up to `count` characters from `start` on, all of them if `count` is negative.
    [[nodiscard]] Token subString(long start, long count = -1) const noexcept ZSPACE_LIFETIMEBOUND
    {
        return Queries::subString(start, count);
    }
    /// As `subString`.
    Token operator()(long start, long count) const noexcept ZSPACE_LIFETIMEBOUND
    {
        return Queries::subString(start, count);
    }

    /// Reallocates to capacity `n` + 1 and keeps the first `n` characters.
    void alloc(long n);
    /// Reallocates for `n` characters more than one and a half times the capacity.
    void allocInc(long n);
    /// If `n` is at least 1, discards the content and returns a new buffer that holds a string of exactly `n`
    /// characters, for the caller to write. Otherwise returns the current buffer, which may be null.
    T* getBuffer(long n);
    /// Exchanges the contents of the two builders.
    void swap(ZMStr& other) noexcept;
    /// Frees the buffer; capacity and length are then 0.
    void clear() noexcept { ZMStr().swap(*this); }

    // Appending

    /// Appends nothing if `length` is below 1.
    inline ZMStr& append(const T* text, long length) noexcept;
    /// Appends the viewed characters.
    ZMStr& append(Token text) noexcept { return append(text, text.Length()); }
    /// Appends `count` copies of `c`.
    template <std::same_as<T> C>
    ZMStr& append(const C& c, long count) noexcept
    {
        return appendCopies(c, count);
    }
    /// Appends one character.
    template <std::same_as<T> C>
    ZMStr& append(const C& c) noexcept
    {
        return extendGrowing(1, 1, [copied = c](T* to) { *to = copied; }); // `c` may lie in the buffer
    }
    ZMStr& operator+=(Token text) noexcept { return append(text); }
    /// Converts from the other width, as `operator<<` does.
    template <detail::OtherWidthText<T> S>
    ZMStr& operator+=(const S& text) noexcept
    {
        return *this << ZStrToken<typename Appender::OtherChar>(text);
    }
    template <std::same_as<T> C>
    ZMStr& operator+=(const C& c) noexcept
    {
        return append(c);
    }
    ZMStr operator+(Token text) const noexcept { return concat(text); }
    template <std::same_as<T> C>
    friend ZMStr operator+(const C* first, const ZMStr& second) noexcept
    {
        return ZMStr(first) << second;
    }
    template <std::same_as<T> C>
    friend ZMStr operator+(C first, const ZMStr& second) noexcept
    {
        return ZMStr(&first, 1) << second;
    }
    template <detail::StdText<T> S>
    friend ZMStr operator+(const S& first, const ZMStr& second) noexcept
    {
        return ZMStr(first) << second;
    }
    template <detail::NotStrChar<T> I>
    friend ZMStr operator+(I, const ZMStr&) = delete;
    template <std::same_as<T> C>
    ZMStr operator+(const C& c) const noexcept
    {
        return concat(Token(&c, 1));
    }
    // Integers are not characters; `operator<<` appends them as numbers.
    template <detail::NotStrChar<T> I>
    ZMStr& append(I) = delete;
    template <detail::NotStrChar<T> I>
    ZMStr& append(I, long) = delete;
    template <detail::NotStrChar<T> I>
    ZMStr& operator+=(I) = delete;
    template <detail::NotStrChar<T> I>
    ZMStr operator+(I) const = delete;
    /// A new builder: this string followed by the argument.
    ZMStr concat(Token text) const noexcept; // NOLINT(modernize-use-nodiscard)
    /// Replaces the content by the concatenation of `count` builders.
    ZMStr& join(const ZMStr* texts, long count) noexcept;
    /// As above; a builder without a buffer ends the list.
    ZMStr& join(const ZMStr* texts) noexcept;

    using Appender::appendHexOf, Appender::appendValueOf;
    /// If the second argument is a number, it is a width (in `ZGStr` it would be the flag `emptyIfZero`): appends a
    /// decimal integer, padded with "0" on the left to `width` characters. The padding precedes the sign: -5 with width
    /// 3 appends "0-5".
    template <detail::StrInteger I, detail::StrInteger W>
    ZMStr& appendValueOf(I number, W width, bool emptyIfZero = false) noexcept
    {
        return appendPadded(detail::Decimal(number), static_cast<long>(width), emptyIfZero);
    }

    // Padding and insertion

    /// Inserts before position `at`; a negative position counts from the end. Deliberate exception: inserting
    /// at the position of the last character appends.
    ZMStr& insert(const T* text, long length, long at) noexcept;
    /// As above, for the viewed characters.
    ZMStr& insert(Token text, long at) noexcept { return insert(text, text.Length(), at); }
    /// Extends the string to `newLength` by inserting copies of `c` before position `at`; -1 is the end.
    /// @return the number of characters inserted, 0 if the string is long enough already.
    long fill(T c, long newLength, long at) noexcept;
    /// As `fill`, at the start.
    long lFill(T c, long newLength) noexcept { return fill(c, newLength, 0); }
    /// As `fill`, at the end.
    long rFill(T c, long newLength) noexcept { return fill(c, newLength, -1); }

    // Comparison

    bool operator==(Token other) const noexcept { return this->isLike(other); }
    template <detail::StdText<T> S>
    bool operator==(const S& other) const noexcept
    {
        return this->isLike(other);
    }
    template <detail::StdText<T> S>
    std::weak_ordering operator<=>(const S& other) const noexcept
    {
        return this->compare(other) <=> 0;
    }
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

    /// Removes the characters that `subString` would return.
    /// @return the number of characters removed.
    long remove(long start, long count = -1) noexcept;
    /// Removes leading and trailing blanks; see `ZGStr::trim`.
    /// @return the number of characters removed.
    long trim() noexcept;
    /// As `trim`, for leading blanks only.
    long lTrim() noexcept;
    /// As `trim`, for trailing blanks only.
    long rTrim() noexcept;
    /// Replaces every `what` by `with`.
    ZMStr& replace(T what, T with) noexcept;
    /// Reverses the order of the characters.
    ZMStr& reverse() noexcept;
    /// Maps "A" to "Z" to lower case.
    ZMStr& toLower() noexcept;
    /// Maps "a" to "z" to upper case.
    ZMStr& toUpper() noexcept;
    /// Replaces the first `max` occurrences from left to right; all of them if `max` is below 1.
    ZMStr& replace(Token what, Token with, long max = -1);
    /// As `replace`.
    /// @return the number of occurrences replaced.
    long replaceEx(Token what, Token with, long max = -1);

    /// The pieces between the separators; see `ZGStr::split`.
    Pieces split(T separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)
    /// As above; an empty separator returns no pieces.
    Pieces split(Token separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)

    // Access

    /// Negative indices count from the end. Throws `ZException` "Index out of range" for an index that is
    /// then still negative, or not before the first zero.
    T& at(long index) ZSPACE_LIFETIMEBOUND { return ZGStr<T>::charAt(m_buffer, positionOf(index)); }
    /// As above.
    // NOLINTNEXTLINE(modernize-use-nodiscard)
    const T& at(long index) const ZSPACE_LIFETIMEBOUND
    {
        return ZGStr<T>::charAt(m_buffer, positionOf(index));
    }
    /// As `at`.
    template <detail::StrIndex I>
    T& operator[](I index) ZSPACE_LIFETIMEBOUND
    {
        return at(detail::saturated(index));
    }
    /// As `at`.
    template <detail::StrIndex I>
    const T& operator[](I index) const ZSPACE_LIFETIMEBOUND
    {
        return at(detail::saturated(index));
    }
    template <std::floating_point F>
    const T& operator[](F) const = delete;

private:
    /// Whether `n` more characters can be appended without reallocating.
    [[nodiscard]] bool fits(long n) const noexcept { return n < m_capacity - m_length - 1; }
    [[nodiscard]] long grownCapacity(long n) const noexcept;
    [[nodiscard]] long positionOf(long index) const;
    inline void setLength(long length) noexcept;
    /// Installs an empty buffer of capacity `n` + 1 and returns the old one, in which the characters to be
    /// copied may lie.
    std::unique_ptr<T[]> exchangeBuffer(long n);
    /// Moves the characters from `at` on by `n`; reallocates first if a new capacity is given.
    /// @return the old buffer in that case.
    std::unique_ptr<T[]> openGap(long at, long n, std::optional<long> newCapacity);
    ZMStr& appendCopies(T c, long count) noexcept;
    ZMStr& appendPadded(detail::Decimal number, long width, bool emptyIfZero) noexcept;
    ZMStr& assignExactly(const T* text, long n);
    /// Makes a builder without a buffer a copy of `n` characters of either width.
    template <detail::StrChar U>
    void convert(const U* text, long n)
    {
        if (n > 0)
            detail::convertChars(getBuffer(n), text, n);
    }
    /// Appends `n` characters that `write` writes. Precondition: they fit.
    template <typename Write>
    inline void writeAtEnd(long n, Write write) noexcept;
    /// Appends `n` characters that `write` writes, perhaps by reading from the string itself.
    template <typename Write>
    inline ZMStr& extend(long n, Write write) noexcept;
    /// As `extend`, after growing. Out of line, so that appending without growing has no array to free.
    template <typename Write>
    [[gnu::noinline]] ZMStr& growAndWrite(long n, Write write) noexcept;
    /// As `extend`, but `write` does not read from the string. Grows by `growth` characters if `n` more do not fit.
    template <typename Write>
    inline ZMStr& extendGrowing(long n, long growth, Write write) noexcept;
    /// Appends what `write` writes, at most `n` characters whose end it returns, unless `n` characters do not fit.
    template <typename Write>
    bool writeIfFits(long n, Write write) noexcept
    {
        if (!fits(n)) [[unlikely]]
            return false;
        setLength(write(m_buffer + m_length) - m_buffer);
        return true;
    }
    template <typename Write>
    ZMStr& extendByDigits(long n, Write write) noexcept
    {
        return extendGrowing(n, n, write);
    }
    template <typename Write>
    ZMStr& extendByHexDigits(long n, Write write) noexcept
    {
        return extendGrowing(n, 17, write);
    }

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

// Declared inline in the class: otherwise the explicit instantiation would keep compilers from inlining these.

template <typename T>
void ZMStr<T>::setLength(long length) noexcept
{
    m_length = length;
    m_buffer[length] = 0;
}

template <typename T>
template <typename Write>
void ZMStr<T>::writeAtEnd(long n, Write write) noexcept
{
    // Read once: compilers must assume that writing a character may change a member.
    T* const end = m_buffer + m_length;
    m_length += n;
    write(end);
    end[n] = 0;
}

template <typename T>
template <typename Write>
ZMStr<T>& ZMStr<T>::extend(long n, Write write) noexcept
{
    if (!fits(n)) [[unlikely]]
        return growAndWrite(n, write);
    writeAtEnd(n, write);
    return *this;
}

template <typename T>
template <typename Write>
ZMStr<T>& ZMStr<T>::growAndWrite(long n, Write write) noexcept
{
    const std::unique_ptr<T[]> old = exchangeBuffer(grownCapacity(n));
    detail::copyChars(m_buffer, old.get(), m_length);
    writeAtEnd(n, write);
    return *this;
}

template <typename T>
template <typename Write>
ZMStr<T>& ZMStr<T>::extendGrowing(long n, long growth, Write write) noexcept
{
    if (!fits(n)) [[unlikely]]
        allocInc(growth);
    writeAtEnd(n, write);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::append(const T* text, long length) noexcept
{
    if (!text || length < 1)
        return *this;
    return extend(length, [=](T* to) { detail::moveChars(to, text, length); }); // may include the terminator
}

extern template class detail::StrAppender<ZMStr<char>, char>;
extern template class detail::StrAppender<ZMStr<wchar_t>, wchar_t>;
extern template class ZMStr<char>;
extern template class ZMStr<wchar_t>;

} // namespace ZSpace

/// Equal to the hash of a `ZStrToken` of the same characters.
template <typename T>
struct std::hash<ZSpace::ZMStr<T>> : std::hash<ZSpace::ZStrToken<T>> {
};
