// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/detail/StrReplace.h"

#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/string/detail/StrSearch.h"

namespace ZSpace::detail {

namespace {

template <StrChar T>
ZStrToken<T> withoutNegativeLength(ZStrToken<T> text) noexcept
{
    return text.isEmpty() ? ZStrToken<T>(text, 0) : text;
}

} // namespace

template <StrChar T>
Replacement<T>::Replacement(ZStrToken<T> text, ZStrToken<T> what, ZStrToken<T> with, long max) noexcept
    : m_text(withoutNegativeLength(text))
    , m_what(withoutNegativeLength(what))
    , m_with(withoutNegativeLength(with))
    , m_hits(countOf<T>(m_text, m_text.Length(), m_what, m_what.Length(), limitOf(max)))
{
}

template <StrChar T>
long Replacement<T>::length() const noexcept
{
    return sumOf(m_text.Length(), productOf(m_hits, m_with.Length() - m_what.Length()));
}

template <StrChar T>
void Replacement<T>::writeTo(T* to) const noexcept
{
    long done = 0;
    for (long i = 0; i < m_hits; ++i) {
        const long hit = find<T>(m_text, m_text.Length(), m_what, m_what.Length(), done);
        copyChars<T>(to, m_text + done, hit - done);
        to += hit - done;
        copyChars<T>(to, m_with, m_with.Length());
        to += m_with.Length();
        done = hit + m_what.Length();
    }
    copyChars<T>(to, m_text + done, m_text.Length() - done);
}

template class Replacement<char>;
template class Replacement<wchar_t>;

} // namespace ZSpace::detail
