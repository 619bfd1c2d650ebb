// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZMemory.h"

namespace ZSpace {

/// Elements side by side in one block.
///
///     ZArray<char> bytes(3);
///     bytes[0] = 'a';
///
/// With `ZAllocation` (the usual choice) the block holds exactly the elements, so each `add` moves all of
/// them: right for arrays that stay short. Whoever has many elements counts them first, makes the array of
/// that size and fills it. With `ZAllocationBuf` the block has spare room and `add` is cheap on average;
/// lists use that for their element pointers.
///
/// Indices are not checked. Adding, removing and resizing invalidate references to elements. Not for sharing
/// between threads without a lock. Making, copying and resizing pass a failure on and change nothing then;
/// `add` and `remove` end the process instead.
template <typename T, typename Alloc = ZAllocation<T>>
class ZArray : public Alloc {
public:
    using value_type = T;
    using iterator = T*;
    using const_iterator = const T*;

    constexpr ZArray() noexcept = default;

    /// `count` default elements; none for a count of 0 or less.
    explicit ZArray(long count) { Alloc::resize(count); }

    /// Copies of the `count` elements at `source`.
    ZArray(const T* source, long count)
        : Alloc(source, count)
    {
    }

    /// Adds a copy of `value` (which may be an element of this array) and gives the stored element.
    T& add(const T& value) noexcept { return Alloc::append(value); }

    /// Takes out `n` elements from `index` on, moving those behind them down.
    /// @return the new count. The caller sees to it that the run lies inside the array.
    long remove(long index, long n) noexcept;

    [[nodiscard]] T& operator[](long index) noexcept { return this->m_block[index]; }
    [[nodiscard]] const T& operator[](long index) const noexcept { return this->m_block[index]; }

    [[nodiscard]] T* begin() noexcept { return this->m_block; }
    [[nodiscard]] T* end() noexcept { return this->m_block + this->m_count; }
    [[nodiscard]] const T* begin() const noexcept { return this->m_block; }
    [[nodiscard]] const T* end() const noexcept { return this->m_block + this->m_count; }
};

template <typename T, typename Alloc>
long ZArray<T, Alloc>::remove(long index, long n) noexcept
{
    const long remaining = this->m_count - n;
    if (remaining > index)
        ZMemory<T>::copyTo(this->m_block + index, this->m_block + index + n, remaining - index);
    Alloc::resize(remaining);
    return remaining;
}

} // namespace ZSpace
