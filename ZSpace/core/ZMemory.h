// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// Operations on plain blocks of `T`, the ground that arrays and lists stand on.
///
/// A block comes from array `new`, so its first element is its address and an empty block is null. Elements
/// that may be copied byte by byte are; all others are copied by assignment. Counts are elements, never
/// bytes. What cannot be had or copied is reported by the exception at hand, and nothing is then left behind.
template <typename T>
class ZMemory {
public:
    /// A block of `n` default (all-zero) elements, null for an `n` of 0 or less.
    [[nodiscard]] static T* allocate(long n);

    /// Destroys the elements from the last to the first and frees the block. Null is ignored. An element that
    /// throws while it is destroyed ends the process.
    static void deallocate(T* block) noexcept;

    /// Copies `n` elements from the first on, leaving out those that would be copied onto themselves.
    static void copyTo(T* target, const T* source, long n);

    /// A new block of `room` elements, the first `count` of them (at most `room`) copies of those at
    /// `source`.
    [[nodiscard]] static T* copyOf(const T* source, long count, long room);

    /// Moves the contents of a block of `oldCount` elements into one of `newCount`, cutting off what does not
    /// fit, and frees the old one. Equal counts give `block` back as it is. After an exception `block` is as
    /// it was.
    [[nodiscard]] static T* relocate(T* block, long oldCount, long newCount);

private:
    static constexpr bool s_isPlain =
        std::is_trivially_copyable_v<T> && std::is_trivially_copy_assignable_v<T>;
};

/// The owner of one block. What is in the block, only the classes on top of it know.
template <typename T>
class ZAllocBase {
public:
    ZAllocBase(const ZAllocBase&) = delete; // two owners of one block
    ZAllocBase& operator=(const ZAllocBase&) = delete;

    /// Gives the block back. An element that throws while it is destroyed ends the process.
    void release() noexcept;

protected:
    constexpr ZAllocBase() noexcept = default;
    explicit ZAllocBase(T* block) noexcept
        : m_block(block)
    {
    }
    ~ZAllocBase() { release(); }

    T* m_block = nullptr;
};

/// A block without spare room: it holds exactly as many elements as are counted.
template <typename T>
class ZAllocation : public ZAllocBase<T> {
public:
    constexpr ZAllocation() noexcept = default;
    ZAllocation(const ZAllocation& other);
    ZAllocation(ZAllocation&& other) noexcept;
    ~ZAllocation() = default;
    ZAllocation& operator=(const ZAllocation& other);
    ZAllocation& operator=(ZAllocation&& other) noexcept;

    [[nodiscard]] long Count() const noexcept { return m_count; }

    /// Moves to a block of exactly `n` elements, new ones being default. Making room once and filling it is
    /// how many elements are added in linear time.
    void resize(long n);

    /// Gives the block back and counts 0.
    void release() noexcept;

protected:
    ZAllocation(const T* source, long count);

    /// Moves to a block with one more element, a copy of `value`. `value` may be one of the elements.
    T& append(const T& value);

    void swap(ZAllocation& other) noexcept;

    long m_count = 0;
};

/// A block with spare room behind the elements in use, for elements that are added one by one.
template <typename T>
class ZAllocationBuf : public ZAllocBase<T> {
public:
    constexpr ZAllocationBuf() noexcept = default;
    ZAllocationBuf(const ZAllocationBuf& other);
    ZAllocationBuf(ZAllocationBuf&& other) noexcept;
    ~ZAllocationBuf() = default;
    ZAllocationBuf& operator=(const ZAllocationBuf& other);
    ZAllocationBuf& operator=(ZAllocationBuf&& other) noexcept;

    [[nodiscard]] long Count() const noexcept { return m_count; }
    [[nodiscard]] long Capacity() const noexcept { return m_capacity; }

    /// Counts `n` elements as used. Where they do not fit, the capacity grows by `n`: adding one by one gives
    /// 1, 3, 7, 15 and so on. The block never shrinks.
    void resize(long n);

    /// Gives the block back; count and capacity are then 0.
    void release() noexcept;

protected:
    ZAllocationBuf(const T* source, long count);

    /// Makes room for `n` elements, growing as `resize` does; the count stays.
    void reserve(long n);

    /// Adds a copy of `value`, which may be one of the elements.
    T& append(const T& value);

    void swap(ZAllocationBuf& other) noexcept;

    long m_count = 0;
    long m_capacity = 0;
};

static_assert(sizeof(ZAllocation<void*>) == 2 * sizeof(void*));
static_assert(sizeof(ZAllocationBuf<void*>) == 3 * sizeof(void*));

template <typename T>
T* ZMemory<T>::allocate(long n)
{
    return n > 0 ? new T[static_cast<std::size_t>(n)]() : nullptr;
}

template <typename T>
void ZMemory<T>::deallocate(T* block) noexcept
{
    delete[] block;
}

template <typename T>
void ZMemory<T>::copyTo(T* target, const T* source, long n)
{
    if (n <= 0 || !source || target == source)
        return;
    if constexpr (s_isPlain) {
        const std::size_t bytes =
            static_cast<std::size_t>(n) * sizeof(T); // NOLINT(bugprone-sizeof-expression)
        std::memmove(target, source, bytes);
    } else {
        for (long i = 0; i < n; ++i)
            target[i] = source[i];
    }
}

template <typename T>
T* ZMemory<T>::copyOf(const T* source, long count, long room)
{
    if (room <= 0)
        return nullptr;
    if constexpr (s_isPlain) {
        // Not cleared first: each element is written exactly once.
        T* block = new T[static_cast<std::size_t>(room)];
        copyTo(block, source, count);
        std::fill(block + std::max(count, 0L), block + room, T());
        return block;
    } else {
        std::unique_ptr<T[]> block(allocate(room));
        copyTo(block.get(), source, count);
        return block.release();
    }
}

template <typename T>
T* ZMemory<T>::relocate(T* block, long oldCount, long newCount)
{
    if (oldCount == newCount)
        return block;
    T* moved = copyOf(block, std::min(oldCount, newCount), newCount);
    deallocate(block);
    return moved;
}

template <typename T>
void ZAllocBase<T>::release() noexcept
{
    if (m_block)
        ZMemory<T>::deallocate(std::exchange(m_block, nullptr));
}

template <typename T>
ZAllocation<T>::ZAllocation(const T* source, long count)
    : ZAllocBase<T>(ZMemory<T>::copyOf(source, count, count))
    , m_count(std::max(count, 0L))
{
}

template <typename T>
ZAllocation<T>::ZAllocation(const ZAllocation& other)
    : ZAllocation(other.m_block, other.m_count)
{
}

template <typename T>
ZAllocation<T>::ZAllocation(ZAllocation&& other) noexcept
{
    swap(other);
}

template <typename T>
ZAllocation<T>& ZAllocation<T>::operator=(const ZAllocation& other)
{
    if (this != &other)
        ZAllocation(other).swap(*this);
    return *this;
}

template <typename T>
ZAllocation<T>& ZAllocation<T>::operator=(ZAllocation&& other) noexcept
{
    ZAllocation(std::move(other)).swap(*this);
    return *this;
}

template <typename T>
void ZAllocation<T>::resize(long n)
{
    this->m_block = ZMemory<T>::relocate(this->m_block, m_count, n);
    m_count = std::max(n, 0L);
}

template <typename T>
void ZAllocation<T>::release() noexcept
{
    ZAllocBase<T>::release();
    m_count = 0;
}

template <typename T>
T& ZAllocation<T>::append(const T& value)
{
    // The old block goes last: `value` may be in it.
    ZAllocation grown;
    grown.m_block = ZMemory<T>::copyOf(this->m_block, m_count, m_count + 1);
    grown.m_count = m_count + 1;
    grown.m_block[m_count] = value;
    swap(grown);
    return this->m_block[m_count - 1];
}

template <typename T>
void ZAllocation<T>::swap(ZAllocation& other) noexcept
{
    std::swap(this->m_block, other.m_block);
    std::swap(m_count, other.m_count);
}

template <typename T>
ZAllocationBuf<T>::ZAllocationBuf(const T* source, long count)
    : ZAllocBase<T>(ZMemory<T>::copyOf(source, count, count))
    , m_count(std::max(count, 0L))
    , m_capacity(m_count)
{
}

template <typename T>
ZAllocationBuf<T>::ZAllocationBuf(const ZAllocationBuf& other)
    : ZAllocationBuf(other.m_block, other.m_count)
{
}

template <typename T>
ZAllocationBuf<T>::ZAllocationBuf(ZAllocationBuf&& other) noexcept
{
    swap(other);
}

template <typename T>
ZAllocationBuf<T>& ZAllocationBuf<T>::operator=(const ZAllocationBuf& other)
{
    if (this != &other)
        ZAllocationBuf(other).swap(*this);
    return *this;
}

template <typename T>
ZAllocationBuf<T>& ZAllocationBuf<T>::operator=(ZAllocationBuf&& other) noexcept
{
    ZAllocationBuf(std::move(other)).swap(*this);
    return *this;
}

template <typename T>
void ZAllocationBuf<T>::reserve(long n)
{
    if (m_capacity >= n)
        return;
    this->m_block = ZMemory<T>::relocate(this->m_block, m_count, m_capacity + n);
    m_capacity += n;
}

template <typename T>
void ZAllocationBuf<T>::resize(long n)
{
    reserve(n);
    m_count = n;
}

template <typename T>
void ZAllocationBuf<T>::release() noexcept
{
    ZAllocBase<T>::release();
    m_count = 0;
    m_capacity = 0;
}

template <typename T>
T& ZAllocationBuf<T>::append(const T& value)
{
    T copied = value; // may be in the block that growing frees
    resize(m_count + 1);
    T& last = this->m_block[m_count - 1];
    last = std::move(copied);
    return last;
}

template <typename T>
void ZAllocationBuf<T>::swap(ZAllocationBuf& other) noexcept
{
    std::swap(this->m_block, other.m_block);
    std::swap(m_count, other.m_count);
    std::swap(m_capacity, other.m_capacity);
}

} // namespace ZSpace
