// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZStrToken.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"

namespace ZSpace {

template <typename T>
const T& ZStrToken<T>::at(long index) const
{
    if (index < 0 || index >= m_length)
        throw ZException("Index out of Array");
    return m_text[index];
}

template <typename T>
long ZStrToken<T>::compare(const T* other, long length) const noexcept
{
    return compare(ZStrToken(other, length));
}

template <typename T>
long ZStrToken<T>::compareIgnoreCase(const T* other, long length) const noexcept
{
    return compareIgnoreCase(ZStrToken(other, length));
}

template <typename T>
long ZStrToken<T>::indexOf(const T* what, long length, long from) const noexcept
{
    return indexOf(ZStrToken(what, length), from);
}

template <typename T>
long ZStrToken<T>::lastIndexOf(const T* what, long length, long from) const noexcept
{
    return lastIndexOf(ZStrToken(what, length), from);
}

template <typename T>
long ZStrToken<T>::count(const T* what, long length) const noexcept
{
    return count(ZStrToken(what, length));
}

template <typename T>
ZMStr<T> ZStrToken<T>::toLower() const
{
    ZMStr<T> copy(*this);
    copy.toLower();
    return copy;
}

template <typename T>
ZMStr<T> ZStrToken<T>::toUpper() const
{
    ZMStr<T> copy(*this);
    copy.toUpper();
    return copy;
}

template <typename T>
typename ZStrToken<T>::Pieces ZStrToken<T>::split(T, long) const noexcept
{
    return {};
}

template <typename T>
typename ZStrToken<T>::Pieces ZStrToken<T>::split(const ZStrToken&, long) const noexcept
{
    return {};
}

template class ZStrToken<char>;
template class ZStrToken<wchar_t>;

} // namespace ZSpace
