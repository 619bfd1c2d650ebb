// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZStrToken.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"

namespace ZSpace {

namespace {

/// A builder with the viewed characters; unlike the constructor, keeps a zero at the start.
template <typename T>
ZMStr<T> builderOf(ZStrToken<T> text)
{
    ZMStr<T> copy(text, 0);
    if (!text.isEmpty())
        detail::copyChars<T>(copy.getBuffer(text.Length()), text, text.Length());
    return copy;
}

} // namespace

template <typename T>
const T& ZStrToken<T>::at(long index) const
{
    if (index < 0 || index >= m_length)
        throw ZException("Index out of Array");
    return m_text[index];
}

template <typename T>
ZMStr<T> ZStrToken<T>::toLower() const
{
    ZMStr<T> copy = builderOf(*this);
    copy.toLower();
    return copy;
}

template <typename T>
ZMStr<T> ZStrToken<T>::toUpper() const
{
    ZMStr<T> copy = builderOf(*this);
    copy.toUpper();
    return copy;
}

template class ZStrToken<char>;
template class ZStrToken<wchar_t>;

} // namespace ZSpace
