// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/detail/StrDigits.h"
#include "ZSpace/string/detail/StrReplace.h"
#include "ZSpace/string/detail/StrSearch.h"
#include "ZSpace/string/detail/StrSplit.h"

#include <algorithm>
#include <cstdint>
#include <functional>

namespace ZSpace {

template <typename T>
ZMStr<T>::ZMStr(const T* text, long length)
    : m_capacity(1)
{
    convert(text, detail::copiedLength(text, length));
}

template <typename T>
ZMStr<T>& ZMStr<T>::assign(const T* text, long length)
{
    return assignExactly(text, detail::copiedLength(text, length));
}

template <typename T>
ZMStr<T>& ZMStr<T>::assignExactly(const T* text, long n)
{
    if (n < 1) {
        if (m_buffer)
            setLength(0);
    } else if (n < m_capacity - 1) {
        detail::moveChars(m_buffer, text, n);
        setLength(n);
    } else {
        const auto old = exchangeBuffer(grownCapacity(n)); // `text` may lie in it
        detail::copyChars(m_buffer, text, n);
        setLength(n);
    }
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::operator=(const ZMStr& other)
{
    if (this != &other)
        assignExactly(other.m_buffer, other.m_length);
    return *this;
}

template <typename T>
T* ZMStr<T>::clone() const
{
    T* const made = ZGStr<T>::create(m_length);
    detail::copyChars(made, m_buffer, m_length);
    return made;
}

template <typename T>
ZMStr<T>& ZMStr<T>::operator=(Token text)
{
    assign(text);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::operator=(const T* text)
{
    assign(text);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::operator=(const ZGStr<T>& text)
{
    assign(text);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::operator=(ZMStr&& other) noexcept
{
    ZMStr(std::move(other)).swap(*this);
    return *this;
}

template <typename T>
std::unique_ptr<T[]> ZMStr<T>::exchangeBuffer(long n)
{
    std::unique_ptr<T[]> old(std::exchange(m_buffer, ZGStr<T>::create(n)));
    m_capacity = std::max(n, 0L) + 1;
    return old;
}

template <typename T>
long ZMStr<T>::grownCapacity(long n) const noexcept
{
    return detail::sumOf(m_capacity + m_capacity / 2, n);
}

template <typename T>
void ZMStr<T>::alloc(long n)
{
    const long kept = std::clamp(n, 0L, m_length);
    const auto old = exchangeBuffer(n);
    detail::copyChars(m_buffer, old.get(), kept);
    setLength(kept);
}

template <typename T>
void ZMStr<T>::allocInc(long n)
{
    alloc(grownCapacity(std::max(n, 0L)));
}

template <typename T>
T* ZMStr<T>::getBuffer(long n)
{
    if (n > 0) {
        exchangeBuffer(n);
        m_length = n;
    }
    return m_buffer;
}

template <typename T>
void ZMStr<T>::swap(ZMStr& other) noexcept
{
    std::swap(m_buffer, other.m_buffer);
    std::swap(m_capacity, other.m_capacity);
    std::swap(m_length, other.m_length);
}

template <typename T>
ZMStr<T>& ZMStr<T>::appendCopies(T c, long count) noexcept
{
    if (count < 1)
        return *this;
    return extendGrowing(count, count, [=](T* to) { detail::fillChars(to, c, count); });
}

template <typename T>
ZMStr<T> ZMStr<T>::concat(Token text) const noexcept
{
    ZMStr sum;
    sum.exchangeBuffer(detail::sumOf(m_length + 1, std::max(text.Length(), 0L)));
    sum.append(*this).append(text);
    return sum;
}

template <typename T>
ZMStr<T>& ZMStr<T>::join(const ZMStr* texts, long count) noexcept
{
    long total = 0;
    for (long i = 0; i < count; ++i)
        total = detail::sumOf(total, texts[i].m_length);
    ZMStr joined; // this builder may be one of the texts
    joined.exchangeBuffer(detail::sumOf(total, 1));
    for (long i = 0; i < count; ++i)
        joined.append(texts[i]);
    swap(joined);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::join(const ZMStr* texts) noexcept
{
    long count = 0;
    while (texts && texts[count].m_buffer)
        ++count;
    return join(texts, count);
}

template <typename T>
ZMStr<T>& ZMStr<T>::appendPadded(detail::Decimal number, long width, bool emptyIfZero) noexcept
{
    if (!number.isNegative && fits(width)) { // as in dates and times
        const auto magnitude = static_cast<std::uint32_t>(number.magnitude);
        if (width == 2 && number.magnitude < 100) {
            writeAtEnd(2, [=](T* to) { detail::writeDigits<2>(to, magnitude); });
            return *this;
        }
        if (width == 4 && number.magnitude < 10'000) {
            writeAtEnd(4, [=](T* to) { detail::writeDigits<4>(to, magnitude); });
            return *this;
        }
    }
    const long digits = emptyIfZero && number.magnitude == 0 ? 0 : number.length();
    appendCopies(T('0'), detail::differenceOf(width, digits));
    return this->appendDecimal(number, emptyIfZero);
}

template <typename T>
std::unique_ptr<T[]> ZMStr<T>::openGap(long at, long n, std::optional<long> newCapacity)
{
    std::unique_ptr<T[]> old;
    if (newCapacity) {
        old = exchangeBuffer(*newCapacity);
        detail::copyChars(m_buffer, old.get(), at);
        detail::copyChars(m_buffer + at + n, old.get() + at, m_length - at);
    } else {
        detail::moveChars(m_buffer + at + n, m_buffer + at, m_length - at);
    }
    setLength(m_length + n);
    return old;
}

template <typename T>
ZMStr<T>& ZMStr<T>::insert(const T* text, long length, long at) noexcept
{
    const long position = detail::clampedPosition(at, m_length);
    if (position == m_length - 1)
        return append(text, length);
    if (!text || length < 1)
        return *this;

    if (!m_buffer || length > m_capacity - m_length) {
        const auto old = openGap(position, length, grownCapacity(length)); // `text` may lie in it
        detail::copyChars(m_buffer + position, text, length);
        return *this;
    }

    const std::less<const T*> isAhead;
    const bool isOwnText = !isAhead(text, m_buffer) && isAhead(text, m_buffer + m_length);
    openGap(position, length, std::nullopt);
    T* gap = m_buffer + position;
    if (isOwnText) {
        // The characters after the position have moved by `length`.
        const long unmoved = std::clamp(static_cast<long>(gap - text), 0L, length);
        detail::copyChars(gap, text, unmoved);
        detail::copyChars(gap + unmoved, text + unmoved + length, length - unmoved);
    } else {
        detail::copyChars(gap, text, length);
    }
    return *this;
}

template <typename T>
long ZMStr<T>::fill(T c, long newLength, long at) noexcept
{
    if (newLength <= m_length)
        return 0;
    const long n = newLength - m_length;
    // Counts from one past the end, so that -1 is the end; positions before the start are the start.
    const long position = at < 0 ? std::max(at + m_length + 1, 0L) : std::min(at, m_length);
    std::optional<long> newCapacity;
    if (m_capacity <= newLength)
        newCapacity = detail::sumOf(grownCapacity(n), 1);
    openGap(position, n, newCapacity);
    detail::fillChars(m_buffer + position, c, n);
    return n;
}

template <typename T>
long ZMStr<T>::remove(long start, long count) noexcept
{
    const long removed = ZGStr<T>::removeSubString(m_buffer, m_length, start, count);
    m_length -= removed;
    return removed;
}

template <typename T>
long ZMStr<T>::trim() noexcept
{
    const long removed = ZGStr<T>::trim(m_buffer, m_length);
    m_length -= removed;
    return removed;
}

template <typename T>
long ZMStr<T>::lTrim() noexcept
{
    const long removed = ZGStr<T>::lTrim(m_buffer, m_length);
    m_length -= removed;
    return removed;
}

template <typename T>
long ZMStr<T>::rTrim() noexcept
{
    const long removed = ZGStr<T>::rTrim(m_buffer, m_length);
    m_length -= removed;
    return removed;
}

template <typename T>
ZMStr<T>& ZMStr<T>::replace(T what, T with) noexcept
{
    ZGStr<T>::replace(m_buffer, m_length, what, with);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::reverse() noexcept
{
    ZGStr<T>::reverse(m_buffer, m_length);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::toLower() noexcept
{
    ZGStr<T>::toLower(m_buffer, m_length);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::toUpper() noexcept
{
    ZGStr<T>::toUpper(m_buffer, m_length);
    return *this;
}

template <typename T>
ZMStr<T>& ZMStr<T>::replace(Token what, Token with, long max)
{
    replaceEx(what, with, max);
    return *this;
}

template <typename T>
long ZMStr<T>::replaceEx(Token what, Token with, long max)
{
    const detail::Replacement<T> plan(*this, what, with, max);
    if (plan.hits() > 0) {
        const auto old = exchangeBuffer(plan.length()); // the arguments may lie in it
        plan.writeTo(m_buffer);
        setLength(plan.length());
    }
    return plan.hits();
}

template <typename T>
typename ZMStr<T>::Pieces ZMStr<T>::split(T separator, long max) const
{
    return split(Token(&separator, 1), max);
}

template <typename T>
typename ZMStr<T>::Pieces ZMStr<T>::split(Token separator, long max) const
{
    return detail::splitText<ZMStr>(Token(*this), separator, max);
}

template <typename T>
long ZMStr<T>::positionOf(long index) const
{
    if (index >= 0)
        return index;
    if (index + m_length < 0)
        throw ZException(1, "Index out of range");
    return index + m_length;
}

template class ZMStr<char>;
template class ZMStr<wchar_t>;

} // namespace ZSpace
