// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZMemory.h"
#include "ZSpace/core/detail/LifetimeBound.h"

#include <algorithm>

namespace ZSpace {

/// A contiguous array.
///
///     ZArray<char> bytes(3);
///     bytes[0] = 'a';
///
/// With `ZAllocation` (the default) the block has no spare capacity, so each `add` copies all elements: use
/// it for arrays that stay short, or construct the array with its final size and assign the elements. With
/// `ZAllocationBuf` the block has spare capacity and `add` takes constant time on average.
///
/// Indices are not checked. `add`, `remove` and `resize` invalidate references to elements. Not thread-safe.
/// Constructing, copying and resizing propagate exceptions and have the strong guarantee; `add` and `remove`
/// call `std::terminate` instead.
template <typename T, typename Alloc = ZAllocation<T>>
class ZArray : public Alloc {
public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    constexpr ZArray() noexcept = default;

    /// `count` value-initialized elements; none if `count` is 0 or less.
    explicit ZArray(long count) { Alloc::resize(count); }

    /// Copies of the `count` elements at `source`; value-initialized elements if `source` is null.
    ZArray(const T* source, long count)
        : Alloc(source, count)
    {
    }

    /// Appends a copy of `value` (which may be an element of this array) and returns the stored element.
    T& add(const T& value) noexcept ZSPACE_LIFETIMEBOUND { return Alloc::append(value); }

    /// Removes `n` elements (none if negative) starting at `index` and moves the following ones down. The range
    /// must lie inside the array.
    /// @return the new count.
    long remove(long index, long n) noexcept;

    [[nodiscard]] T& operator[](long index) noexcept ZSPACE_LIFETIMEBOUND { return this->m_block[index]; }
    [[nodiscard]] const T& operator[](long index) const noexcept ZSPACE_LIFETIMEBOUND
    {
        return this->m_block[index];
    }

    [[nodiscard]] T* begin() noexcept ZSPACE_LIFETIMEBOUND { return this->m_block; }
    [[nodiscard]] T* end() noexcept ZSPACE_LIFETIMEBOUND { return this->m_block + this->m_count; }
    [[nodiscard]] const T* begin() const noexcept ZSPACE_LIFETIMEBOUND { return this->m_block; }
    [[nodiscard]] const T* end() const noexcept ZSPACE_LIFETIMEBOUND { return this->m_block + this->m_count; }
};

template <typename T, typename Alloc>
long ZArray<T, Alloc>::remove(long index, long n) noexcept
{
    n = std::max(n, 0L);
    const long remaining = this->m_count - n;
    if (remaining > index)
        ZMemory<T>::copyTo(this->m_block + index, this->m_block + index + n, remaining - index);
    Alloc::resize(remaining);
    return this->m_count;
}

} // namespace ZSpace
