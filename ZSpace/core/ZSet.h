// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"

namespace ZSpace {

/// A list of which no two elements are equal. Adding and finding look at the elements one by one.
///
/// Where memory is wanting, adding ends the process; copying follows `ZList`.
template <typename T>
class ZSet : public ZListing<T> {
public:
    /// Adds `item` and owns it from then on. An equal element is freed, and `item` takes its place.
    T* il_add(T* item) noexcept;

    /// Adds a copy of `value` in the same way.
    T* add(const T& value) noexcept;
};

template <typename T>
T* ZSet<T>::il_add(T* item) noexcept
{
    const long index = this->il_find(*item);
    if (index < 0)
        this->il_append(item);
    else
        this->il_replaceAt(index, item);
    return item;
}

template <typename T>
T* ZSet<T>::add(const T& value) noexcept
{
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): ends the process, as promised
    return il_add(new T(value));
}

} // namespace ZSpace
