// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/string/detail/StrAppender.h"
#include "ZSpace/string/detail/StrNumbers.h"
#include "ZSpace/string/detail/StrQueries.h"

#include <climits>
#include <compare>
#include <concepts>
#include <utility>

namespace ZSpace {

/// An owned text held as one pointer, and the static routines on bare characters that all string classes use.
///
/// The pointer is null or leads to characters that end with a zero, so a text cannot hold one. Null and a
/// lone terminator are both the empty text. Neither length nor capacity is stored: each use counts again, and
/// each change of length moves to a new array. Whoever builds text piece by piece takes a `ZMStr`, whoever
/// needs the length again and again a `ZStrToken`. Copies are deep. A string belongs to one thread at a time.
///
/// Narrow text is single bytes, wide text 32-bit units. Nothing is encoded: crossing to narrow keeps the low
/// 8 bits of each unit, crossing to wide adds zero bits. Characters are ordered as signed numbers.
///
/// Positions that are negative count from the end. Tokens given to a member may view the string itself.
/// Appending, and turning numbers into text, ends the process when memory runs out; all else that allocates
/// passes the failure on and leaves the string as it was.
///
/// Most members have a static twin that takes the characters and their number first. Static routines take
/// null for the empty text. Arrays that they make are the caller's, to be freed with `release`.
///
/// Results that a call may be made without, to see whether it fails, are not marked as needed.
template <typename T>
class ZGStr : public detail::StrQueries<ZGStr<T>, T>, public detail::StrAppender<ZGStr<T>, T> {
    using Queries = detail::StrQueries<ZGStr<T>, T>;
    using Appender = detail::StrAppender<ZGStr<T>, T>;
    using Token = ZStrToken<T>;
    friend Appender;

public:
    using Pieces = ZArray<ZGStr, ZAllocation<ZGStr>>;

    /// Carriage return and line feed.
    static constexpr T s_lineBreak[]{'\r', '\n', 0};

    // Making, copying, giving away

    constexpr ZGStr() noexcept = default;
    ZGStr(const T* text)
        : m_text(copy(text))
    {
    }
    /// Exactly `length` characters, zeros among them included; the empty text when the first one is zero.
    ZGStr(const T* text, long length)
        : m_text(copy(text, length))
    {
    }
    ZGStr(Token text)
        : m_text(copy(text, text.Length()))
    {
    }
    ZGStr(const ZMStr<T>& text)
        : ZGStr(Token(text))
    {
    }
    ZGStr(const ZGStr& other)
        : m_text(copy(other.m_text))
    {
    }
    ZGStr(ZGStr&& other) noexcept
        : m_text(std::exchange(other.m_text, nullptr))
    {
    }
    /// From the other width, unit by unit.
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const U* text) noexcept
    {
        *this << text;
    }
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const U* text, long length) noexcept
    {
        this->appendValueOf(text, length);
    }
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const ZStrToken<U>& text) noexcept
    {
        *this << text;
    }
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const ZGStr<U>& text) noexcept
    {
        *this << text;
    }
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const ZMStr<U>& text) noexcept
    {
        *this << text;
    }
    ~ZGStr() { release(m_text); }

    ZGStr& operator=(const ZGStr& other);
    ZGStr& operator=(ZGStr&& other) noexcept;
    ZGStr& operator=(Token text);
    ZGStr& operator=(const T* text);
    ZGStr& operator=(const ZMStr<T>& text);
    ZGStr& assign(Token text) { return assign(text, text.Length()); }
    ZGStr& assign(const T* text, long length) { return adopt(copy(text, length)); }

    void swap(ZGStr& other) noexcept { std::swap(m_text, other.m_text); }
    /// Frees the characters; the pointer is then null.
    void clear() noexcept { adopt(nullptr); }
    /// With `n` of at least 1: drops the text and gives an array with room for `n` characters that holds a
    /// zero at its start and at position `n`. Otherwise gives the present array, which may be null.
    T* getBuffer(long n);

    /// A new array with the characters of the text.
    static T* copy(const T* text) { return copy(text, length(text)); }
    static T* copy(const T* text, long length);
    /// A new array with room for `n` characters, the terminator and one more, and a zero at 0 and at `n`.
    static T* create(long n);
    /// A new array with `n` times the same character.
    static T* create(long n, T c);
    T* clone() const { return copy(m_text); } // NOLINT(modernize-use-nodiscard)
    static T* clone(const T* text) { return copy(text); }
    static T* clone(const T* text, long length) { return copy(text, length); }
    static void release(T* text) noexcept { delete[] text; }

    // Appending

    /// A count below 1 appends nothing.
    ZGStr& append(const T* text, long length) noexcept;
    ZGStr& append(Token text) noexcept { return append(text, text.Length()); }
    ZGStr& append(const T& c) noexcept { return append(&c, 1); }
    ZGStr& operator+=(Token text) noexcept { return append(text); }
    ZGStr& operator+=(const T& c) noexcept { return append(c); }
    ZGStr operator+(Token text) const noexcept { return concat(text); }
    ZGStr operator+(const T& c) const noexcept { return concat(Token(&c, 1)); }
    /// A new string: this text and the given one.
    ZGStr concat(Token text) const noexcept; // NOLINT(modernize-use-nodiscard)
    static T* concat(const T* first, long firstLength, const T* second, long secondLength) noexcept;
    static T* concat(const T* first, const T* second) noexcept;

    /// Replaces the text by the given ones run together. Without a count they end with a null pointer.
    ZGStr& join(const T* const* texts, long count) noexcept;
    ZGStr& join(const T* const* texts) noexcept { return join(texts, countTexts(texts)); }
    /// Appends the given texts run together.
    ZGStr& joinFrom(const T* const* texts, long count) noexcept;
    ZGStr& joinFrom(const T* const* texts) noexcept { return joinFrom(texts, countTexts(texts)); }
    /// A new array: a text and the given ones run together.
    static T* joinFrom(const T* text, long length, const T* const* texts, long count) noexcept;

    // Writing into a caller's array of `capacity` elements: at most `capacity` - 1 characters, and always a
    // terminator. The result is the number of characters written; a capacity below 1 writes nothing.

    static long copyTo(T* to, long capacity, const T* text, long length) noexcept;
    static long copyTo(T* to, long capacity, const T* text) noexcept;
    /// The characters in reverse order.
    static long copyToRev(T* to, long capacity, const T* text, long length) noexcept;
    static long copyToRev(T* to, long capacity, const T* text) noexcept;
    /// Behind the text that is there already, or from position `at` on.
    static long concatTo(T* to, long capacity, const T* text) noexcept;
    static long concatTo(T* to, long capacity, long at, const T* text, long length) noexcept;
    static long joinTo(T* to, long capacity, const T* const* texts, long count) noexcept;
    static long fill(T* to, long capacity, T c) noexcept;

    // Numbers to text; `appendValueOf`, `appendHexOf` and `operator<<` come from the base

    /// A new string of whatever `appendValueOf` takes.
    template <typename... Args>
    static ZGStr valueOf(Args... args) noexcept requires requires(ZGStr text)
    {
        text.appendValueOf(args...);
    }
    {
        ZGStr text;
        text.appendValueOf(args...);
        return std::move(text.ensureArray());
    }
    /// The hexadecimal digit of the low four bits.
    static T digitOf(unsigned char value) noexcept;

    /// A new string: lower-case digits over the full width of the type.
    template <detail::StrHexInteger I>
    static ZGStr hexOf(I number) noexcept
    {
        ZGStr text;
        text.appendHexOf(number);
        return text;
    }
    /// A new string: `n` bytes in the order in which they lie in memory.
    static ZGStr hexOf(const void* bytes, long n) noexcept;
    /// Writes the digits and a terminator, for which there must be room.
    /// @return the number of digits.
    template <detail::StrHexWord U>
    static long hexOf(T* to, U number) noexcept
    {
        return hexDigitsTo(to, number, detail::s_hexDigits<U>);
    }
    static long hexOf(T* to, const void* bytes, long n) noexcept;

    // Text to numbers

    using Queries::toInt16, Queries::toInt32, Queries::toInt64, Queries::toInt8;
    using Queries::toUInt16, Queries::toUInt32, Queries::toUInt64, Queries::toUInt8;
    static signed char toInt8(const T* text, long length) noexcept;
    static short toInt16(const T* text, long length) noexcept;
    static int toInt32(const T* text, long length) noexcept;
    static long long toInt64(const T* text, long length) noexcept;
    static unsigned char toUInt8(const T* text, long length) noexcept;
    static unsigned short toUInt16(const T* text, long length) noexcept;
    static unsigned int toUInt32(const T* text, long length) noexcept;
    static unsigned long long toUInt64(const T* text, long length) noexcept;
    static signed char toInt8(const T* text) noexcept { return toInt8(text, length(text)); }
    static short toInt16(const T* text) noexcept { return toInt16(text, length(text)); }
    static int toInt32(const T* text) noexcept { return toInt32(text, length(text)); }
    static long long toInt64(const T* text) noexcept { return toInt64(text, length(text)); }
    static unsigned char toUInt8(const T* text) noexcept { return toUInt8(text, length(text)); }
    static unsigned short toUInt16(const T* text) noexcept { return toUInt16(text, length(text)); }
    static unsigned int toUInt32(const T* text) noexcept { return toUInt32(text, length(text)); }
    static unsigned long long toUInt64(const T* text) noexcept { return toUInt64(text, length(text)); }

    using Queries::toDouble, Queries::toSingle;
    static float toSingle(const T* text, long length) noexcept;
    static double toDouble(const T* text, long length) noexcept;
    static float toSingle(const T* text) noexcept { return toSingle(text, length(text)); }
    static double toDouble(const T* text) noexcept { return toDouble(text, length(text)); }

    using Queries::hexTo, Queries::hexToUInt16, Queries::hexToUInt32, Queries::hexToUInt64,
        Queries::hexToUInt8;
    static unsigned char hexToUInt8(const T* text, long length) noexcept;
    static unsigned short hexToUInt16(const T* text, long length) noexcept;
    static unsigned int hexToUInt32(const T* text, long length) noexcept;
    static unsigned long long hexToUInt64(const T* text, long length) noexcept;
    static unsigned char hexToUInt8(const T* text) noexcept;
    static unsigned short hexToUInt16(const T* text) noexcept;
    static unsigned int hexToUInt32(const T* text) noexcept;
    static unsigned long long hexToUInt64(const T* text) noexcept;
    /// A negative length means up to the terminator.
    static long hexTo(void* bytes, long size, const T* text, long length) noexcept;
    static unsigned char hexToNibble(const T& digit) noexcept;

    // Comparing

    using Queries::compare, Queries::compareIgnoreCase, Queries::isLike;
    [[nodiscard]] static long compare(const T* a, long lengthOfA, const T* b, long lengthOfB) noexcept;
    [[nodiscard]] static long compareIgnoreCase(
        const T* a, long lengthOfA, const T* b, long lengthOfB) noexcept;
    /// -1, 0 or 1; null is the empty text.
    [[nodiscard]] static long compare(const T* a, const T* b) noexcept;
    [[nodiscard]] static long compareIgnoreCase(const T* a, const T* b) noexcept;
    /// The same for the first `n` characters at most.
    [[nodiscard]] static long compareRange(const T* a, const T* b, long n) noexcept;
    [[nodiscard]] static long compareRangeIgnoreCase(const T* a, const T* b, long n) noexcept;
    [[nodiscard]] static bool isLike(const T* a, long lengthOfA, const T* b, long lengthOfB) noexcept;
    [[nodiscard]] static bool isLike(const T* text, long length, Token other) noexcept;

    bool operator==(Token other) const noexcept { return this->isLike(other); }
    bool operator==(const T* other) const noexcept { return isSame(m_text, other); }
    bool operator==(const ZGStr& other) const noexcept { return isSame(m_text, other.m_text); }
    bool operator==(const ZMStr<T>& other) const noexcept { return this->isLike(other); }
    std::weak_ordering operator<=>(Token other) const noexcept { return this->compare(other) <=> 0; }
    std::weak_ordering operator<=>(const T* other) const noexcept { return this->compare(other) <=> 0; }
    std::weak_ordering operator<=>(const ZGStr& other) const noexcept { return this->compare(other) <=> 0; }
    std::weak_ordering operator<=>(const ZMStr<T>& other) const noexcept
    {
        return this->compare(other) <=> 0;
    }

    // Searching

    using Queries::count, Queries::indexOf, Queries::lastIndexOf, Queries::s_verify;
    [[nodiscard]] static long indexOf(const T* text, long length, T c, long from = 0) noexcept;
    [[nodiscard]] static long indexOf(const T* text, long length, Token what, long from = 0) noexcept;
    [[nodiscard]] static long lastIndexOf(const T* text, long length, T c, long from = LONG_MAX) noexcept;
    [[nodiscard]] static long lastIndexOf(
        const T* text, long length, Token what, long from = LONG_MAX) noexcept;
    [[nodiscard]] static long count(const T* text, long length, T c) noexcept;
    [[nodiscard]] static long count(const T* text, long length, Token what) noexcept;
    [[nodiscard]] static long s_verify(const T* text, long length, const T& c, long from) noexcept;
    [[nodiscard]] static long s_verify(const T* text, long length, Token set, long from) noexcept;
    [[nodiscard]] static long s_verify(
        const T* text, long length, const T* set, long setLength, long from) noexcept;
    /// The length of the leading run of characters that belong to `set`.
    [[nodiscard]] static long stripIndexOf(const T* text, long length, const T* set) noexcept;

    // Parts

    using Queries::left, Queries::right, Queries::subString;
    static Token left(const T* text, long length, long n) noexcept;
    static Token right(const T* text, long length, long n) noexcept;
    static Token subString(const T* text, long length, long start, long count) noexcept;
    /// Takes the part that `subString` would give out of the text.
    /// @return the number of characters removed.
    long remove(long start, long count = -1) noexcept;
    static long removeSubString(T* text, long length, long start, long count) noexcept;

    // Editing in place

    ZGStr& replace(T what, T with) noexcept;
    ZGStr& reverse() noexcept;
    ZGStr& toLower() noexcept;
    ZGStr& toUpper() noexcept;
    static void replace(T* text, long length, T what, T with) noexcept;
    static void reverse(T* text, long length) noexcept;
    static void toLower(T* text, long length) noexcept;
    static void toUpper(T* text, long length) noexcept;
    static T toLower(T c) noexcept { return detail::lowerOf(c); }
    static T toUpper(T c) noexcept { return detail::upperOf(c); }
    static void swap(T& a, T& b) noexcept { std::swap(a, b); }

    /// Characters that are below 33 as signed numbers are blank: the space, controls, and in narrow text
    /// every byte from 0x80 on.
    /// @return the number of characters removed.
    long trim() noexcept;
    long lTrim() noexcept;
    long rTrim() noexcept;
    static long trim(T* text, long length) noexcept;
    static long lTrim(T* text, long length) noexcept;
    static long rTrim(T* text, long length) noexcept;

    // Replacing text

    /// The first `max` occurrences from left to right, all of them for a `max` below 1.
    ZGStr& replace(Token what, Token with, long max = -1);
    /// As `replace`.
    /// @return how many occurrences were replaced.
    long replaceEx(Token what, Token with, long max = -1);
    static T* replace(const T* text, long length, const T* what, long whatLength, const T* with,
        long withLength, long max = -1);

    // Splitting

    /// The pieces between the separators, empty ones included; an empty separator gives none. With a `max` of
    /// at least 1 the last of at most `max` pieces is the rest. Takes one pass to count and one to copy.
    Pieces split(T separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)
    Pieces split(Token separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)
    static Pieces split(const T* text, const T* separator, long max);
    static Pieces split(const T* text, long length, T separator, long max = -1);
    static Pieces split(const T* text, long length, Token separator, long max = -1);
    /// The same in place: writes zeros over the separators and stores at most `capacity` pointers to pieces.
    /// @return the number of pieces.
    static long splitTo(T** pieces, long capacity, T* text, const T* separator) noexcept;

    // Classifying

    using Queries::isAlpha, Queries::isNumeric;
    [[nodiscard]] bool isEmpty() const noexcept { return isEmpty(m_text); }
    [[nodiscard]] bool operator!() const noexcept { return isEmpty(); }
    [[nodiscard]] static bool isEmpty(const T* text) noexcept { return !text || !*text; }
    [[nodiscard]] static bool isAlpha(const T* text, long length) noexcept;
    [[nodiscard]] static bool isAlpha(const T* text) noexcept { return isAlpha(text, isEmpty(text) ? 0 : 1); }
    [[nodiscard]] static bool isNumeric(const T* text, long length) noexcept;
    [[nodiscard]] static bool isNumeric(const T* text) noexcept { return isNumeric(text, length(text)); }
    [[nodiscard]] static bool isDigit(T c) noexcept { return detail::isDigitChar(c); }

    // Access

    [[nodiscard]] long length() const noexcept { return length(m_text); }
    [[nodiscard]] static long length(const T* text) noexcept { return detail::lengthOf(text); }
    /// As above, looking at no more than `limit` characters.
    [[nodiscard]] static long length(const T* text, long limit) noexcept;

    /// A negative index counts from the end. Throws `ZException` "Index out of range" for an index still
    /// negative then, and for one not below the length.
    T& at(long index) { return charAt(m_text, index); }
    const T& at(long index) const { return charAt(m_text, index); } // NOLINT(modernize-use-nodiscard)
    static T& charAt(T* text, long index);
    static const T& charAt(const T* text, long index);
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
    /// Null for a string that never got any characters.
    operator const T*() const noexcept { return m_text; }

private:
    ZGStr& adopt(T* text) noexcept;
    /// Makes the pointer one that is not null.
    ZGStr& ensureArray();
    T* grownTo(long oldLength, long added, long spare) noexcept;
    T* grownBy(long n) noexcept { return grownTo(length(), n, 0); }
    T* grownByDigits(long n) noexcept { return grownTo(length(), n, 1); }
    T* grownByHexDigits(long n) noexcept { return grownByDigits(n); }

    static long countTexts(const T* const* texts) noexcept;
    static bool isSame(const T* a, const T* b) noexcept;
    static long hexDigitsTo(T* to, unsigned long long bits, long digits) noexcept;

    T* m_text = nullptr;
};

static_assert(sizeof(ZGStr<char>) == sizeof(void*) && sizeof(ZGStr<wchar_t>) == sizeof(void*));

template <typename T>
ZStrToken<T>::ZStrToken(const ZGStr<T>& text) noexcept
    : ZStrToken(static_cast<const T*>(text))
{
}

extern template class detail::StrAppender<ZGStr<char>, char>;
extern template class detail::StrAppender<ZGStr<wchar_t>, wchar_t>;
extern template class ZGStr<char>;
extern template class ZGStr<wchar_t>;

} // namespace ZSpace
