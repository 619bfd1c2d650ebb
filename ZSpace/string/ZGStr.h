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
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace ZSpace {

/// An owned, null-terminated string that is the size of one pointer.
///
///     ZGStr<char> text("Copied ");
///     text << 3 << " of " << 5 << " files";
///
/// The pointer is null or points to characters that end with a zero, so a string cannot contain one. Null and
/// a lone terminator both mean the empty string. Neither length nor capacity is stored: each operation counts
/// the characters again, and each change of the length reallocates. Use a `ZMStr` to build a string piece by
/// piece and a `ZStrToken` where the length is needed repeatedly. Copies are deep. A string must be used by
/// one thread at a time.
///
/// Narrow strings hold bytes, wide strings 32-bit code units. There is no encoding: narrowing keeps the low
/// 8 bits of each unit, widening zero-extends each byte. Characters are ordered as signed numbers.
///
/// Negative positions count from the end. Arguments may view the string itself. Appending and converting
/// numbers to text call `std::terminate` if allocation fails; everything else that allocates throws
/// `std::bad_alloc` and leaves the string unchanged.
///
/// Most members have a static twin that takes the characters and their number first. Static routines accept
/// null for the empty string. The caller frees the arrays that they return with `release`.
///
/// Functions whose result may be ignored deliberately are not `[[nodiscard]]`. This header provides
/// `ZStrToken` as well; `ZMStr` is only declared here.
template <typename T>
class ZGStr : public detail::StrQueries<ZGStr<T>, T>, public detail::StrAppender<ZGStr<T>, T> {
    using Queries = detail::StrQueries<ZGStr<T>, T>;
    using Appender = detail::StrAppender<ZGStr<T>, T>;
    using Token = ZStrToken<T>;
    friend Appender;

public:
    /// What `split` returns.
    using Pieces = ZArray<ZGStr, ZAllocation<ZGStr>>;

    /// Carriage return and line feed.
    static constexpr T s_lineBreak[]{'\r', '\n', 0};

    // Construction, assignment, ownership

    /// A null pointer.
    constexpr ZGStr() noexcept = default;
    /// Copies the characters up to the terminator.
    ZGStr(const T* text)
        : m_text(copy(text))
    {
    }
    /// Copies exactly `length` characters, including zeros; empty if the first one is zero.
    ZGStr(const T* text, long length)
        : m_text(copy(text, length))
    {
    }
    /// As above, for the viewed characters.
    ZGStr(Token text)
        : m_text(copy(text, text.Length()))
    {
    }
    /// Copies the builder's characters.
    ZGStr(const ZMStr<T>& text)
        : ZGStr(Token(text))
    {
    }
    /// Copies deeply.
    ZGStr(const ZGStr& other)
        : m_text(copy(other.m_text))
    {
    }
    /// Leaves `other` with a null pointer.
    ZGStr(ZGStr&& other) noexcept
        : m_text(std::exchange(other.m_text, nullptr))
    {
    }
    /// Copies the characters of a standard string or view; empty if the first one is zero.
    template <detail::StdText<T> S>
    ZGStr(const S& text)
        : ZGStr(Token(text))
    {
    }
    /// Converts from the other width.
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const U* text) noexcept
    {
        *this << text;
    }
    /// Converts `length` characters from the other width; empty if the first one is zero.
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const U* text, long length) noexcept
    {
        this->appendValueOf(text, detail::copiedLength(text, length));
    }
    /// As above, for the viewed characters.
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const ZStrToken<U>& text) noexcept
        : ZGStr(static_cast<const U*>(text), text.Length())
    {
    }
    /// Converts from the other width.
    template <detail::OtherStrChar<T> U>
    explicit ZGStr(const ZGStr<U>& text) noexcept
    {
        *this << text;
    }
    /// Converts from the other width.
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
    template <detail::StdText<T> S>
    ZGStr& operator=(const S& text)
    {
        *this = Token(text);
        return *this;
    }
    /// Converts from the other width, as `operator<<` does.
    template <detail::OtherWidthText<T> S>
    ZGStr& operator=(const S& text)
    {
        *this = ZGStr(ZStrToken<typename Appender::OtherChar>(text));
        return *this;
    }
    ZGStr& operator=(const ZMStr<T>& text);
    /// Replaces the content by a copy of the viewed characters; empty if the first one is zero.
    ZGStr& assign(Token text) { return assign(text, text.Length()); }
    /// As above, by pointer and length.
    ZGStr& assign(const T* text, long length) { return adopt(copy(text, length)); }

    /// Exchanges the contents of the two strings.
    void swap(ZGStr& other) noexcept { std::swap(m_text, other.m_text); }
    /// Frees the characters and sets the pointer to null.
    void clear() noexcept { adopt(nullptr); }
    /// If `n` is at least 1, discards the content and returns a new array for `n` characters, with zeros at
    /// the start and at position `n`. Otherwise returns the current array, which may be null.
    T* getBuffer(long n);

    /// A new array with the characters up to the terminator.
    static T* copy(const T* text) { return copy(text, length(text)); }
    /// A new array with exactly `length` characters, including zeros; empty if the first one is zero.
    static T* copy(const T* text, long length);
    /// A new array for `n` characters, the terminator and a spare element, with zeros at 0 and at `n`.
    static T* create(long n);
    /// A new array with `n` copies of a character.
    static T* create(long n, T c);
    /// A new array with this string's characters.
    T* clone() const { return copy(m_text); } // NOLINT(modernize-use-nodiscard)
    /// As `copy`.
    static T* clone(const T* text) { return copy(text); }
    /// As `copy`.
    static T* clone(const T* text, long length) { return copy(text, length); }
    /// Frees an array that a static routine returned.
    static void release(T* text) noexcept { delete[] text; }

    // Appending

    /// Appends nothing if `length` is below 1.
    ZGStr& append(const T* text, long length) noexcept;
    /// Appends the viewed characters.
    ZGStr& append(Token text) noexcept { return append(text, text.Length()); }
    /// Appends one character.
    template <std::same_as<T> C>
    ZGStr& append(const C& c) noexcept
    {
        return append(&c, 1);
    }
    ZGStr& operator+=(Token text) noexcept { return append(text); }
    /// Converts from the other width, as `operator<<` does.
    template <detail::OtherWidthText<T> S>
    ZGStr& operator+=(const S& text) noexcept
    {
        return *this << ZStrToken<typename Appender::OtherChar>(text);
    }
    template <std::same_as<T> C>
    ZGStr& operator+=(const C& c) noexcept
    {
        return append(c);
    }
    ZGStr operator+(Token text) const noexcept { return concat(text); }
    template <std::same_as<T> C>
    friend ZGStr operator+(const C* first, const ZGStr& second) noexcept
    {
        return ZGStr(first) << second;
    }
    template <std::same_as<T> C>
    friend ZGStr operator+(C first, const ZGStr& second) noexcept
    {
        return ZGStr(&first, 1) << second;
    }
    template <detail::StdText<T> S>
    friend ZGStr operator+(const S& first, const ZGStr& second) noexcept
    {
        return ZGStr(first) << second;
    }
    template <detail::NotStrChar<T> I>
    friend ZGStr operator+(I, const ZGStr&) = delete;
    template <std::same_as<T> C>
    ZGStr operator+(const C& c) const noexcept
    {
        return concat(Token(&c, 1));
    }
    // Integers are not characters; `operator<<` appends them as numbers.
    template <detail::NotStrChar<T> I>
    ZGStr& append(I) = delete;
    template <detail::NotStrChar<T> I>
    ZGStr& operator+=(I) = delete;
    template <detail::NotStrChar<T> I>
    ZGStr operator+(I) const = delete;
    /// A new string: this one followed by the argument.
    ZGStr concat(Token text) const noexcept; // NOLINT(modernize-use-nodiscard)
    /// A new array: the first string followed by the second.
    static T* concat(const T* first, long firstLength, const T* second, long secondLength) noexcept;
    /// As above, for null-terminated strings.
    static T* concat(const T* first, const T* second) noexcept;

    /// Replaces the content by the concatenation of `count` null-terminated strings.
    ZGStr& join(const T* const* texts, long count) noexcept;
    /// As above; a null pointer ends the list.
    ZGStr& join(const T* const* texts) noexcept { return join(texts, countTexts(texts)); }
    /// Appends the concatenation of `count` null-terminated strings.
    ZGStr& joinFrom(const T* const* texts, long count) noexcept;
    /// As above; a null pointer ends the list.
    ZGStr& joinFrom(const T* const* texts) noexcept { return joinFrom(texts, countTexts(texts)); }
    /// A new array: a string followed by `count` others.
    static T* joinFrom(const T* text, long length, const T* const* texts, long count) noexcept;

    // Writing into a caller's array of `capacity` elements: at most `capacity` - 1 characters, always
    // null-terminated. They return the number of characters written; a capacity below 1 writes nothing.

    /// Overwrites the array.
    static long copyTo(T* to, long capacity, const T* text, long length) noexcept;
    /// As above, for a null-terminated string.
    static long copyTo(T* to, long capacity, const T* text) noexcept;
    /// Overwrites the array with the characters in reverse order.
    static long copyToRev(T* to, long capacity, const T* text, long length) noexcept;
    /// As above, for a null-terminated string.
    static long copyToRev(T* to, long capacity, const T* text) noexcept;
    /// Appends to the string in the array.
    static long concatTo(T* to, long capacity, const T* text) noexcept;
    /// Overwrites the array from position `at` on.
    static long concatTo(T* to, long capacity, long at, const T* text, long length) noexcept;
    /// Overwrites the array with the concatenation of `count` null-terminated strings.
    static long joinTo(T* to, long capacity, const T* const* texts, long count) noexcept;
    /// Fills the array with `c`.
    static long fill(T* to, long capacity, T c) noexcept;

    // Numbers to text

    /// A new string of anything that `appendValueOf` accepts. The second argument is a flag, `emptyIfZero`:
    /// a minimum width exists in `ZMStr::appendValueOf` only, so a number there means something else here.
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
    /// The lower-case hexadecimal digit for the low four bits.
    static T digitOf(unsigned char value) noexcept;

    /// A new string: lower-case digits in the full width of the type.
    template <detail::StrHexInteger I>
    static ZGStr hexOf(I number) noexcept
    {
        ZGStr text;
        text.appendHexOf(number);
        return text;
    }
    /// A new string: two digits for each of `n` bytes, in memory order.
    static ZGStr hexOf(const void* bytes, long n) noexcept;
    /// Writes the digits of a number and a terminator; the array must be large enough for both. An integer
    /// after a writable array is always the number to print, never a count of bytes: pass the bytes of a
    /// character array as `const void*`.
    /// @return the number of digits.
    template <std::same_as<T> C, detail::StrHexInteger I>
    static long hexOf(C* to, I number) noexcept
    {
        return hexDigitsTo(to, detail::bitsOf(number), detail::s_hexDigits<I>);
    }
    template <std::same_as<T> C>
    static long hexOf(C* to, bool) = delete;
    /// As above, two digits for each of `n` bytes.
    static long hexOf(T* to, const void* bytes, long n) noexcept;

    // Text to numbers

    using Queries::toInt16, Queries::toInt32, Queries::toInt64, Queries::toInt8;
    using Queries::toUInt16, Queries::toUInt32, Queries::toUInt64, Queries::toUInt8;
    static signed char toInt8(const T* text, long length) noexcept
    {
        return detail::toInteger<signed char>(Token(text, length));
    }
    static signed char toInt8(const T* text) noexcept { return toInt8(text, length(text)); }
    static short toInt16(const T* text, long length) noexcept
    {
        return detail::toInteger<short>(Token(text, length));
    }
    static short toInt16(const T* text) noexcept { return toInt16(text, length(text)); }
    static int toInt32(const T* text, long length) noexcept
    {
        return detail::toInteger<int>(Token(text, length));
    }
    static int toInt32(const T* text) noexcept { return toInt32(text, length(text)); }
    static long long toInt64(const T* text, long length) noexcept
    {
        return detail::toInteger<long long>(Token(text, length));
    }
    static long long toInt64(const T* text) noexcept { return toInt64(text, length(text)); }
    static unsigned char toUInt8(const T* text, long length) noexcept
    {
        return detail::toInteger<unsigned char>(Token(text, length));
    }
    static unsigned char toUInt8(const T* text) noexcept { return toUInt8(text, length(text)); }
    static unsigned short toUInt16(const T* text, long length) noexcept
    {
        return detail::toInteger<unsigned short>(Token(text, length));
    }
    static unsigned short toUInt16(const T* text) noexcept { return toUInt16(text, length(text)); }
    static unsigned int toUInt32(const T* text, long length) noexcept
    {
        return detail::toInteger<unsigned int>(Token(text, length));
    }
    static unsigned int toUInt32(const T* text) noexcept { return toUInt32(text, length(text)); }
    static unsigned long long toUInt64(const T* text, long length) noexcept
    {
        return detail::toInteger<unsigned long long>(Token(text, length));
    }
    static unsigned long long toUInt64(const T* text) noexcept { return toUInt64(text, length(text)); }

    using Queries::toDouble, Queries::toSingle;
    static float toSingle(const T* text, long length) noexcept { return Token(text, length).toSingle(); }
    static float toSingle(const T* text) noexcept { return Token(text).toSingle(); }
    static double toDouble(const T* text, long length) noexcept { return Token(text, length).toDouble(); }
    static double toDouble(const T* text) noexcept { return Token(text).toDouble(); }

    using Queries::hexTo, Queries::hexToUInt16, Queries::hexToUInt32, Queries::hexToUInt64,
        Queries::hexToUInt8;
    static unsigned char hexToUInt8(const T* text, long length) noexcept
    {
        return detail::hexToInteger<unsigned char>(Token(text, length));
    }
    static unsigned char hexToUInt8(const T* text) noexcept { return hexToUInt8(text, length(text, 2)); }
    static unsigned short hexToUInt16(const T* text, long length) noexcept
    {
        return detail::hexToInteger<unsigned short>(Token(text, length));
    }
    static unsigned short hexToUInt16(const T* text) noexcept { return hexToUInt16(text, length(text, 4)); }
    static unsigned int hexToUInt32(const T* text, long length) noexcept
    {
        return detail::hexToInteger<unsigned int>(Token(text, length));
    }
    static unsigned int hexToUInt32(const T* text) noexcept { return hexToUInt32(text, length(text, 8)); }
    static unsigned long long hexToUInt64(const T* text, long length) noexcept
    {
        return detail::hexToInteger<unsigned long long>(Token(text, length));
    }
    static unsigned long long hexToUInt64(const T* text) noexcept
    {
        return hexToUInt64(text, length(text, 16));
    }
    /// A negative length means up to the terminator.
    static long hexTo(void* bytes, long size, const T* text, long length) noexcept
    {
        return detail::hexToBytes(bytes, size, length < 0 ? Token(text) : Token(text, length));
    }
    /// The value of a hexadecimal digit of either case, 0 for any other character.
    static unsigned char hexToNibble(const T& digit) noexcept { return detail::readNibble(digit); }

    // Comparison

    using Queries::compare, Queries::compareIgnoreCase, Queries::isLike;
    [[nodiscard]] static long compare(const T* a, long lengthOfA, const T* b, long lengthOfB) noexcept
    {
        return detail::compare(Token(a, lengthOfA), Token(b, lengthOfB));
    }
    /// As the member of the same name, for these characters.
    [[nodiscard]] static long compareIgnoreCase(
        const T* a, long lengthOfA, const T* b, long lengthOfB) noexcept
    {
        return detail::compareIgnoreCase(Token(a, lengthOfA), Token(b, lengthOfB));
    }
    /// -1, 0 or 1; null equals the empty string.
    [[nodiscard]] static long compare(const T* a, const T* b) noexcept;
    /// As above, with "A" to "Z" folded to lower case.
    [[nodiscard]] static long compareIgnoreCase(const T* a, const T* b) noexcept;
    /// As `compare`, for at most the first `n` characters.
    [[nodiscard]] static long compareRange(const T* a, const T* b, long n) noexcept;
    /// As `compareIgnoreCase`, for at most the first `n` characters.
    [[nodiscard]] static long compareRangeIgnoreCase(const T* a, const T* b, long n) noexcept;
    [[nodiscard]] static bool isLike(const T* a, long lengthOfA, const T* b, long lengthOfB) noexcept
    {
        return detail::isLike(Token(a, lengthOfA), Token(b, lengthOfB));
    }
    [[nodiscard]] static bool isLike(const T* text, long length, Token other) noexcept
    {
        return detail::isLike(Token(text, length), other);
    }

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

    // Search

    using Queries::count, Queries::indexOf, Queries::lastIndexOf, Queries::s_verify;
    [[nodiscard]] static long indexOf(const T* text, long length, T c, long from = 0) noexcept
    {
        return detail::indexOf(Token(text, length), c, from);
    }
    [[nodiscard]] static long indexOf(const T* text, long length, Token what, long from = 0) noexcept
    {
        return detail::indexOf(Token(text, length), what, from);
    }
    [[nodiscard]] static long lastIndexOf(const T* text, long length, T c, long from = LONG_MAX) noexcept
    {
        return detail::lastIndexOf(Token(text, length), c, from);
    }
    [[nodiscard]] static long lastIndexOf(
        const T* text, long length, Token what, long from = LONG_MAX) noexcept
    {
        return detail::lastIndexOf(Token(text, length), what, from);
    }
    [[nodiscard]] static long count(const T* text, long length, T c) noexcept
    {
        return detail::count(Token(text, length), c);
    }
    [[nodiscard]] static long count(const T* text, long length, Token what) noexcept
    {
        return detail::count(Token(text, length), what);
    }
    // A template, so that the member `s_verify(set, setLength, 0)` is not ambiguous.
    template <std::same_as<T> C>
    [[nodiscard]] static long s_verify(const T* text, long length, const C& c, long from = 0) noexcept
    {
        return detail::verify(Token(text, length), c, from);
    }
    [[nodiscard]] static long s_verify(const T* text, long length, Token set, long from = 0) noexcept
    {
        return detail::verify(Token(text, length), set, from);
    }
    [[nodiscard]] static long s_verify(
        const T* text, long length, const T* set, long setLength, long from) noexcept
    {
        return detail::verify(Token(text, length), Token(set, setLength), from);
    }
    /// The length of the leading run of characters that belong to `set`.
    [[nodiscard]] static long stripIndexOf(const T* text, long length, const T* set) noexcept;

    // Substrings

    static Token left(const T* text, long length, long n) noexcept { return Token(text, length).left(n); }
    static Token right(const T* text, long length, long n) noexcept { return Token(text, length).right(n); }
    static Token subString(const T* text, long length, long start, long count) noexcept
    {
        return Token(text, length).subString(start, count);
    }
    /// Removes the characters that `subString` would return.
    /// @return the number of characters removed.
    long remove(long start, long count = -1) noexcept;
    /// As above, in place.
    static long removeSubString(T* text, long length, long start, long count) noexcept;

    // Editing in place

    /// Replaces every `what` by `with`.
    ZGStr& replace(T what, T with) noexcept;
    /// Reverses the order of the characters.
    ZGStr& reverse() noexcept;
    /// Maps "A" to "Z" to lower case.
    ZGStr& toLower() noexcept;
    /// Maps "a" to "z" to upper case.
    ZGStr& toUpper() noexcept;
    static void replace(T* text, long length, T what, T with) noexcept;
    static void reverse(T* text, long length) noexcept;
    static void toLower(T* text, long length) noexcept;
    static void toUpper(T* text, long length) noexcept;
    /// A letter "A" to "Z" as a lower-case letter; other characters as they are.
    static T toLower(T c) noexcept { return detail::lowerOf(c); }
    /// A letter "a" to "z" as an upper-case letter; other characters as they are.
    static T toUpper(T c) noexcept { return detail::upperOf(c); }
    /// Exchanges two characters.
    static void swap(T& a, T& b) noexcept { std::swap(a, b); }

    /// Removes leading and trailing blanks: characters below 33 as signed numbers, which are the space, the
    /// control characters and, in narrow strings, every byte from 0x80 on.
    /// @return the number of characters removed.
    long trim() noexcept;
    /// As `trim`, for leading blanks only.
    long lTrim() noexcept;
    /// As `trim`, for trailing blanks only.
    long rTrim() noexcept;
    static long trim(T* text, long length) noexcept;
    static long lTrim(T* text, long length) noexcept;
    static long rTrim(T* text, long length) noexcept;

    // Editing with reallocation

    /// Replaces the first `max` occurrences from left to right; all of them if `max` is below 1.
    ZGStr& replace(Token what, Token with, long max = -1);
    /// As `replace`.
    /// @return the number of occurrences replaced.
    long replaceEx(Token what, Token with, long max = -1);
    /// As `replace`, into a new array.
    static T* replace(const T* text, long length, const T* what, long whatLength, const T* with,
        long withLength, long max = -1);

    // Splitting

    /// The pieces between the separators, including empty ones. If `max` is at least 1, there are at most
    /// `max` pieces and the last one holds the rest. Linear in the length.
    Pieces split(T separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)
    /// As above; an empty separator returns no pieces.
    Pieces split(Token separator, long max = -1) const; // NOLINT(modernize-use-nodiscard)
    static Pieces split(const T* text, const T* separator, long max);
    static Pieces split(const T* text, long length, T separator, long max = -1);
    static Pieces split(const T* text, long length, Token separator, long max = -1);
    /// Splits in place: overwrites the separators with zeros and stores up to `capacity` pointers to pieces.
    /// @return the number of pieces.
    static long splitTo(T** pieces, long capacity, T* text, const T* separator) noexcept;

    // Classification

    using Queries::isAlpha, Queries::isNumeric;
    /// Whether there are no characters.
    [[nodiscard]] bool isEmpty() const noexcept { return isEmpty(m_text); }
    /// As `isEmpty`.
    [[nodiscard]] bool operator!() const noexcept { return isEmpty(); }
    [[nodiscard]] static bool isEmpty(const T* text) noexcept { return !text || !*text; }
    [[nodiscard]] static bool isAlpha(const T* text, long length) noexcept
    {
        return detail::isAlpha(Token(text, length));
    }
    [[nodiscard]] static bool isAlpha(const T* text) noexcept { return isAlpha(text, isEmpty(text) ? 0 : 1); }
    [[nodiscard]] static bool isNumeric(const T* text, long length) noexcept
    {
        return detail::isNumeric(Token(text, length));
    }
    [[nodiscard]] static bool isNumeric(const T* text) noexcept { return isNumeric(text, length(text)); }
    /// Whether `c` is one of "0" to "9".
    [[nodiscard]] static bool isDigit(T c) noexcept { return detail::isDigitChar(c); }

    // Access

    /// The number of characters before the terminator, counted on each call.
    [[nodiscard]] long length() const noexcept { return length(m_text); }
    [[nodiscard]] static long length(const T* text) noexcept { return detail::lengthOf(text); }
    /// As above, but reads at most `limit` characters; a negative limit means none.
    [[nodiscard]] static long length(const T* text, long limit) noexcept;

    /// Negative indices count from the end. Throws `ZException` "Index out of range" if there is no such
    /// character.
    T& at(long index) ZSPACE_LIFETIMEBOUND { return charAt(m_text, index); }
    // NOLINTNEXTLINE(modernize-use-nodiscard): also called for the exception alone
    const T& at(long index) const ZSPACE_LIFETIMEBOUND { return charAt(m_text, index); }
    static T& charAt(T* text, long index);
    static const T& charAt(const T* text, long index);
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
    /// The pointer as stored; null for a string that never had any characters.
    operator const T*() const noexcept ZSPACE_LIFETIMEBOUND { return m_text; }
    /// A standard view of the characters.
    operator std::basic_string_view<T>() const noexcept ZSPACE_LIFETIMEBOUND
    {
        return detail::standardView(Token(*this));
    }
    /// A copy of the characters. Explicit, so that `string = text` keeps meaning the pointer.
    /// g++ 14 prefers the pointer to explicit conversions, so its `std::string(text)` ends at a zero and throws
    /// for a null string; `std::string(std::string_view(text))` is right with every compiler.
    explicit operator std::basic_string<T>() const
    {
        return std::basic_string<T>(detail::standardView(Token(*this)));
    }
    /// The pointer as stored, which may be null.
    [[nodiscard]] const T* data() const noexcept ZSPACE_LIFETIMEBOUND { return m_text; }
    [[nodiscard]] const T* begin() const noexcept ZSPACE_LIFETIMEBOUND { return m_text; }
    [[nodiscard]] const T* end() const noexcept ZSPACE_LIFETIMEBOUND { return m_text + this->size(); }
    friend std::basic_ostream<T>& operator<<(std::basic_ostream<T>& out, const ZGStr& text)
    {
        return detail::print(out, Token(text));
    }
    template <std::same_as<wchar_t> W>
    requires std::same_as<T, char>
    friend std::basic_ostream<W>& operator<<(std::basic_ostream<W>& out, const ZGStr& text)
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

private:
    ZGStr& adopt(T* text) noexcept
    {
        release(std::exchange(m_text, text));
        return *this;
    }
    /// Allocates an empty array if the pointer is null.
    ZGStr& ensureArray()
    {
        if (!m_text)
            m_text = create(0);
        return *this;
    }
    /// Reallocates for `n` more characters, the terminator, the usual spare element and `spare` more.
    template <typename Write>
    ZGStr& extendReserving(long n, long spare, Write write) noexcept;
    template <typename Write>
    ZGStr& extend(long n, Write write) noexcept
    {
        return extendReserving(n, 0, write);
    }
    template <typename Write>
    ZGStr& extendByDigits(long n, Write write) noexcept
    {
        return extendReserving(n, 1, write);
    }
    template <typename Write>
    ZGStr& extendByHexDigits(long n, Write write) noexcept
    {
        return extendReserving(n, 1, write);
    }

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

template <typename T>
template <typename Write>
ZGStr<T>& ZGStr<T>::extendReserving(long n, long spare, Write write) noexcept
{
    const long oldLength = length();
    T* const extended = create(detail::sumOf(oldLength + spare, n));
    detail::copyChars(extended, m_text, oldLength);
    write(extended + oldLength);
    extended[oldLength + n] = 0;
    return adopt(extended);
}

extern template class detail::StrAppender<ZGStr<char>, char>;
extern template class detail::StrAppender<ZGStr<wchar_t>, wchar_t>;
extern template class ZGStr<char>;
extern template class ZGStr<wchar_t>;

} // namespace ZSpace

/// Equal to the hash of a `ZStrToken` of the same characters.
template <typename T>
struct std::hash<ZSpace::ZGStr<T>> : std::hash<ZSpace::ZStrToken<T>> {
};
