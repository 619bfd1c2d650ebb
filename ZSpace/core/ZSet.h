// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/detail/LifetimeBound.h"

namespace ZSpace {

/// A list without equal elements. Adding and finding use linear search.
///
/// Adding calls `std::terminate` if allocation fails; copies behave like those of `ZList`.
template <typename T>
class ZSet : public ZListing<T> {
public:
    /// Adopts `item`: replaces and deletes an equal element if there is one, appends otherwise.
    /// @return `item`.
    T* il_add(T* item) noexcept;

    /// As `il_add`, for a copy of `value`. Returns the stored element.
    T* add(const T& value) noexcept ZSPACE_LIFETIMEBOUND;
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
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): terminates, as documented
    return il_add(new T(value));
}

} // namespace ZSpace
