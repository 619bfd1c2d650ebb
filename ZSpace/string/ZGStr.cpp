// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZGStr.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/detail/StrReplace.h"
#include "ZSpace/string/detail/StrSearch.h"
#include "ZSpace/string/detail/StrSplit.h"

#include <algorithm>

namespace ZSpace {

using namespace detail;

namespace {

/// The number of characters, at most `n`, that fit from position `at` on with a terminator.
constexpr long fittingCount(long capacity, long at, long n) noexcept
{
    return std::clamp(n, 0L, std::max(capacity - 1 - at, 0L));
}

template <typename T>
bool isBlank(T c) noexcept
{
    return signedOf(c) < 33;
}

constexpr long signOf(long n) noexcept
{
    return (n > 0) - (n < 0);
}

} // namespace

// Construction, assignment, ownership

template <typename T>
T* ZGStr<T>::create(long n)
{
    const long length = std::max(n, 0L);
    T* text = new T[unsignedOf(length) + 2];
    text[0] = 0;
    text[length] = 0;
    return text;
}

template <typename T>
T* ZGStr<T>::create(long n, T c)
{
    T* text = create(n);
    fillChars(text, c, n);
    return text;
}

template <typename T>
T* ZGStr<T>::copy(const T* text, long length)
{
    const long n = copiedLength(text, length);
    T* made = create(n);
    copyChars(made, text, n);
    return made;
}

template <typename T>
ZGStr<T>& ZGStr<T>::operator=(const ZGStr& other)
{
    if (this != &other)
        adopt(copy(other.m_text));
    return *this;
}

template <typename T>
ZGStr<T>& ZGStr<T>::operator=(Token text)
{
    assign(text);
    return *this;
}

template <typename T>
ZGStr<T>& ZGStr<T>::operator=(const T* text)
{
    adopt(copy(text));
    return *this;
}

template <typename T>
ZGStr<T>& ZGStr<T>::operator=(const ZMStr<T>& text)
{
    assign(text);
    return *this;
}

template <typename T>
ZGStr<T>& ZGStr<T>::operator=(ZGStr&& other) noexcept
{
    ZGStr(std::move(other)).swap(*this);
    return *this;
}

template <typename T>
T* ZGStr<T>::getBuffer(long n)
{
    if (n > 0)
        adopt(create(n));
    return m_text;
}

// Appending

template <typename T>
ZGStr<T>& ZGStr<T>::append(const T* text, long length) noexcept
{
    return length > 0 && text ? adopt(concat(m_text, this->length(), text, length)) : *this;
}

template <typename T>
T* ZGStr<T>::concat(const T* first, long firstLength, const T* second, long secondLength) noexcept
{
    const long head = first ? std::max(firstLength, 0L) : 0;
    const long tail = second ? std::max(secondLength, 0L) : 0;
    T* sum = create(sumOf(head, tail));
    copyChars(sum, first, head);
    copyChars(sum + head, second, tail);
    return sum;
}

template <typename T>
T* ZGStr<T>::concat(const T* first, const T* second) noexcept
{
    return concat(first, length(first), second, length(second));
}

template <typename T>
ZGStr<T> ZGStr<T>::concat(Token text) const noexcept
{
    ZGStr sum;
    sum.adopt(concat(m_text, length(), text, text.Length()));
    return sum;
}

template <typename T>
long ZGStr<T>::countTexts(const T* const* texts) noexcept
{
    long count = 0;
    while (texts && texts[count])
        ++count;
    return count;
}

template <typename T>
T* ZGStr<T>::joinFrom(const T* text, long length, const T* const* texts, long count) noexcept
{
    const long head = text ? std::max(length, 0L) : 0;
    long total = head;
    for (long i = 0; i < count; ++i)
        total = sumOf(total, lengthOf(texts[i]));
    T* joined = create(total);
    copyChars(joined, text, head);
    joinTo(joined + head, total - head + 1, texts, count);
    return joined;
}

template <typename T>
ZGStr<T>& ZGStr<T>::join(const T* const* texts, long count) noexcept
{
    return adopt(joinFrom(nullptr, 0, texts, count));
}

template <typename T>
ZGStr<T>& ZGStr<T>::joinFrom(const T* const* texts, long count) noexcept
{
    return adopt(joinFrom(m_text, length(), texts, count));
}

// Writing into a caller's array

template <typename T>
long ZGStr<T>::copyTo(T* to, long capacity, const T* text, long length) noexcept
{
    return concatTo(to, capacity, 0, text, length);
}

template <typename T>
long ZGStr<T>::copyTo(T* to, long capacity, const T* text) noexcept
{
    return copyTo(to, capacity, text, length(text));
}

template <typename T>
long ZGStr<T>::copyToRev(T* to, long capacity, const T* text, long length) noexcept
{
    if (capacity < 1)
        return 0;
    const long n = text ? fittingCount(capacity, 0, length) : 0;
    for (long i = 0; i < n; ++i)
        to[i] = text[length - 1 - i];
    to[n] = 0;
    return n;
}

template <typename T>
long ZGStr<T>::copyToRev(T* to, long capacity, const T* text) noexcept
{
    return copyToRev(to, capacity, text, length(text));
}

template <typename T>
long ZGStr<T>::concatTo(T* to, long capacity, const T* text) noexcept
{
    return concatTo(to, capacity, lengthWithin(to, capacity), text, length(text));
}

template <typename T>
long ZGStr<T>::concatTo(T* to, long capacity, long at, const T* text, long length) noexcept
{
    if (capacity < 1)
        return 0;
    const long start = std::clamp(at, 0L, capacity - 1);
    const long n = text ? fittingCount(capacity, start, length) : 0;
    moveChars(to + start, text, n);
    to[start + n] = 0;
    return n;
}

template <typename T>
long ZGStr<T>::joinTo(T* to, long capacity, const T* const* texts, long count) noexcept
{
    long n = copyTo(to, capacity, nullptr, 0);
    for (long i = 0; i < count; ++i)
        n += concatTo(to, capacity, n, texts[i], length(texts[i]));
    return n;
}

template <typename T>
long ZGStr<T>::fill(T* to, long capacity, T c) noexcept
{
    if (capacity < 1)
        return 0;
    fillChars(to, c, capacity - 1);
    to[capacity - 1] = 0;
    return capacity - 1;
}

// Numbers to text

template <typename T>
T ZGStr<T>::digitOf(unsigned char value) noexcept
{
    return static_cast<T>("0123456789abcdef"[value & 0x0F]);
}

template <typename T>
ZGStr<T> ZGStr<T>::hexOf(const void* bytes, long n) noexcept
{
    ZGStr text;
    text.appendHexOf(bytes, n);
    return std::move(text.ensureArray());
}

template <typename T>
long ZGStr<T>::hexOf(T* to, const void* bytes, long n) noexcept
{
    const long digits = bytes && n > 0 ? 2 * n : 0;
    writeHexBytes(to, bytes, digits / 2);
    to[digits] = 0;
    return digits;
}

template <typename T>
long ZGStr<T>::hexDigitsTo(T* to, unsigned long long bits, long digits) noexcept
{
    writeHex(to, bits, digits);
    to[digits] = 0;
    return digits;
}

// Comparison

template <typename T>
long ZGStr<T>::compare(const T* a, const T* b) noexcept
{
    return signOf(compare(a, length(a), b, length(b)));
}

template <typename T>
long ZGStr<T>::compareIgnoreCase(const T* a, const T* b) noexcept
{
    return signOf(compareIgnoreCase(a, length(a), b, length(b)));
}

template <typename T>
long ZGStr<T>::compareRange(const T* a, const T* b, long n) noexcept
{
    return signOf(compare(a, length(a, n), b, length(b, n)));
}

template <typename T>
long ZGStr<T>::compareRangeIgnoreCase(const T* a, const T* b, long n) noexcept
{
    return signOf(compareIgnoreCase(a, length(a, n), b, length(b, n)));
}

/// Compares without counting the characters first.
template <typename T>
bool ZGStr<T>::isSame(const T* a, const T* b) noexcept
{
    if (!a || !b)
        return isEmpty(a) && isEmpty(b);
    if constexpr (sizeof(T) == 1)
        return std::strcmp(a, b) == 0;
    else
        return std::wcscmp(a, b) == 0;
}

// Search

template <typename T>
long ZGStr<T>::stripIndexOf(const T* text, long length, const T* set) noexcept
{
    return leadingRun(text, length, set, ZGStr::length(set));
}

// Substrings

template <typename T>
long ZGStr<T>::remove(long start, long count) noexcept
{
    return removeSubString(m_text, length(), start, count);
}

template <typename T>
long ZGStr<T>::removeSubString(T* text, long length, long start, long count) noexcept
{
    if (length < 1)
        return 0;
    const long first = clampedPosition(start, length);
    const long removed = clampedCount(count, first, length);
    if (removed < 1)
        return 0; // `text` may be a slice, so nothing is written past its end
    const long rest = length - first - removed;
    moveChars(text + first, text + first + removed, rest);
    text[first + rest] = 0;
    return removed;
}

// Editing in place

template <typename T>
ZGStr<T>& ZGStr<T>::replace(T what, T with) noexcept
{
    replace(m_text, length(), what, with);
    return *this;
}

template <typename T>
ZGStr<T>& ZGStr<T>::reverse() noexcept
{
    reverse(m_text, length());
    return *this;
}

template <typename T>
ZGStr<T>& ZGStr<T>::toLower() noexcept
{
    toLower(m_text, length());
    return *this;
}

template <typename T>
ZGStr<T>& ZGStr<T>::toUpper() noexcept
{
    toUpper(m_text, length());
    return *this;
}

template <typename T>
void ZGStr<T>::replace(T* text, long length, T what, T with) noexcept
{
    for (long i = 0; i < length; ++i)
        text[i] = text[i] == what ? with : text[i];
}

template <typename T>
void ZGStr<T>::reverse(T* text, long length) noexcept
{
    if (length > 1)
        std::reverse(text, text + length);
}

template <typename T>
void ZGStr<T>::toLower(T* text, long length) noexcept
{
    for (long i = 0; i < length; ++i)
        text[i] = lowerOf(text[i]);
}

template <typename T>
void ZGStr<T>::toUpper(T* text, long length) noexcept
{
    for (long i = 0; i < length; ++i)
        text[i] = upperOf(text[i]);
}

template <typename T>
long ZGStr<T>::trim() noexcept
{
    return trim(m_text, length());
}

template <typename T>
long ZGStr<T>::lTrim() noexcept
{
    return lTrim(m_text, length());
}

template <typename T>
long ZGStr<T>::rTrim() noexcept
{
    return rTrim(m_text, length());
}

template <typename T>
long ZGStr<T>::trim(T* text, long length) noexcept
{
    const long atEnd = rTrim(text, length);
    return atEnd + lTrim(text, length - atEnd);
}

template <typename T>
long ZGStr<T>::lTrim(T* text, long length) noexcept
{
    long blanks = 0;
    while (blanks < length && isBlank(text[blanks]))
        ++blanks;
    return blanks > 0 ? removeSubString(text, length, 0, blanks) : 0;
}

template <typename T>
long ZGStr<T>::rTrim(T* text, long length) noexcept
{
    long kept = length;
    while (kept > 0 && isBlank(text[kept - 1]))
        --kept;
    if (kept < length)
        text[kept] = 0;
    return length - kept;
}

// Editing with reallocation

template <typename T>
ZGStr<T>& ZGStr<T>::replace(Token what, Token with, long max)
{
    replaceEx(what, with, max);
    return *this;
}

template <typename T>
long ZGStr<T>::replaceEx(Token what, Token with, long max)
{
    const Replacement<T> plan(*this, what, with, max);
    if (plan.hits() > 0) {
        T* text = create(plan.length());
        plan.writeTo(text);
        text[plan.length()] = 0;
        adopt(text);
    }
    return plan.hits();
}

template <typename T>
T* ZGStr<T>::replace(
    const T* text, long length, const T* what, long whatLength, const T* with, long withLength, long max)
{
    const Replacement<T> plan(Token(text, length), Token(what, whatLength), Token(with, withLength), max);
    T* made = create(plan.length());
    plan.writeTo(made);
    return made;
}

// Splitting

template <typename T>
typename ZGStr<T>::Pieces ZGStr<T>::split(T separator, long max) const
{
    return splitText<ZGStr>(Token(*this), Token(&separator, 1), max);
}

template <typename T>
typename ZGStr<T>::Pieces ZGStr<T>::split(Token separator, long max) const
{
    return splitText<ZGStr>(Token(*this), separator, max);
}

template <typename T>
typename ZGStr<T>::Pieces ZGStr<T>::split(const T* text, const T* separator, long max)
{
    return splitText<ZGStr>(Token(text), Token(separator), max);
}

template <typename T>
typename ZGStr<T>::Pieces ZGStr<T>::split(const T* text, long length, T separator, long max)
{
    return splitText<ZGStr>(Token(text, length), Token(&separator, 1), max);
}

template <typename T>
typename ZGStr<T>::Pieces ZGStr<T>::split(const T* text, long length, Token separator, long max)
{
    return splitText<ZGStr>(Token(text, length), separator, max);
}

template <typename T>
long ZGStr<T>::splitTo(T** pieces, long capacity, T* text, const T* separator) noexcept
{
    if (!text || capacity < 1 || isEmpty(separator))
        return 0;
    const long m = length(separator);
    long count = 0;
    forEachPiece<T>(text, length(text), separator, m, capacity, [&](long start, long) {
        if (start > 0)
            fillChars(text + start - m, T(0), m);
        pieces[count++] = text + start;
    });
    return count;
}

// Access

template <typename T>
long ZGStr<T>::length(const T* text, long limit) noexcept
{
    return limit < 0 ? lengthOf(text) : lengthWithin(text, limit);
}

template <typename T>
const T& ZGStr<T>::charAt(const T* text, long index)
{
    const long position = index < 0 ? index + length(text) : index;
    // Counts no further than the position, which is valid if no terminator comes before it.
    if (position < 0 || isEmpty(text) || lengthWithin(text, position) < position || !text[position])
        throw ZException("Index out of range");
    return text[position];
}

template <typename T>
T& ZGStr<T>::charAt(T* text, long index)
{
    return const_cast<T&>(charAt(const_cast<const T*>(text), index));
}

template class ZGStr<char>;
template class ZGStr<wchar_t>;

} // namespace ZSpace
