// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// Low-level operations on heap blocks of `T`, used by arrays and lists.
///
/// A block comes from array `new`; an empty block is a null pointer. Trivially copyable elements are copied
/// as bytes, all others by assignment. Counts are in elements, never in bytes. Exceptions from allocating or
/// copying propagate and leak nothing.
template <typename T>
class ZMemory {
public:
    /// Allocates a block of `n` value-initialized elements; null if `n` is 0 or less.
    [[nodiscard]] static T* allocate(long n);

    /// Destroys the elements from last to first and frees the block. Null is ignored. Calls `std::terminate`
    /// if an element's destructor throws.
    static void deallocate(T* block) noexcept;

    /// Copies `n` elements in increasing order. Does nothing if `target` is `source`.
    static void copyTo(T* target, const T* source, long n);

    /// Allocates a block of `capacity` elements and copies the first `count` elements (at most `capacity`)
    /// of `source` into it; none if `source` is null. The rest is value-initialized.
    [[nodiscard]] static T* copyOf(const T* source, long count, long capacity);

    /// Copies a block of `oldCount` elements into a new one of `newCount`, truncating if necessary, and frees
    /// the old one. Returns `block` itself if the counts are equal. Strong guarantee.
    [[nodiscard]] static T* relocate(T* block, long oldCount, long newCount);

private:
    static constexpr bool s_isPlain =
        std::is_trivially_copyable_v<T> && std::is_trivially_copy_assignable_v<T>;
};

/// Owns one block. Derived classes store its element count.
template <typename T>
class ZAllocBase {
public:
    ZAllocBase(const ZAllocBase&) = delete; // a block has one owner
    ZAllocBase& operator=(const ZAllocBase&) = delete;

    /// Frees the block. Calls `std::terminate` if an element's destructor throws.
    void release() noexcept;

protected:
    constexpr ZAllocBase() noexcept = default;
    explicit ZAllocBase(T* block) noexcept
        : m_block(block)
    {
    }
    ~ZAllocBase() { release(); }

    /// The block, owned.
    T* m_block = nullptr;
};

/// A block without spare capacity: it holds exactly `Count()` elements.
template <typename T>
class ZAllocation : public ZAllocBase<T> {
public:
    constexpr ZAllocation() noexcept = default;
    ZAllocation(const ZAllocation& other);
    ZAllocation(ZAllocation&& other) noexcept;
    ~ZAllocation() = default;
    ZAllocation& operator=(const ZAllocation& other);
    ZAllocation& operator=(ZAllocation&& other) noexcept;

    /// The number of elements.
    [[nodiscard]] long Count() const noexcept { return m_count; }

    /// Reallocates to exactly `n` elements; added ones are value-initialized. To append many elements in
    /// linear time, resize once and then assign them.
    void resize(long n);

    /// Frees the block; the count is then 0.
    void release() noexcept;

protected:
    /// Copies elements.
    ZAllocation(const T* source, long count);

    /// Reallocates to one more element, a copy of `value`. `value` may be an element of this block.
    T& append(const T& value);

    /// Exchanges two blocks.
    void swap(ZAllocation& other) noexcept;

    /// The number of elements.
    long m_count = 0;
};

/// A block with spare capacity after the elements in use, for elements that are appended one by one.
template <typename T>
class ZAllocationBuf : public ZAllocBase<T> {
public:
    constexpr ZAllocationBuf() noexcept = default;
    ZAllocationBuf(const ZAllocationBuf& other);
    ZAllocationBuf(ZAllocationBuf&& other) noexcept;
    ~ZAllocationBuf() = default;
    ZAllocationBuf& operator=(const ZAllocationBuf& other);
    ZAllocationBuf& operator=(ZAllocationBuf&& other) noexcept;

    /// The number of elements.
    [[nodiscard]] long Count() const noexcept { return m_count; }
    /// The number of elements that fit without reallocation.
    [[nodiscard]] long Capacity() const noexcept { return m_capacity; }

    /// Sets the count to `n` (0 if negative). If that exceeds the capacity, the capacity grows by `n`: appending one by one
    /// leads to capacities of 1, 3, 7, 15 and so on. The block never shrinks.
    void resize(long n);

    /// Frees the block; count and capacity are then 0.
    void release() noexcept;

protected:
    /// Copies elements.
    ZAllocationBuf(const T* source, long count);

    /// Grows the capacity for `n` elements as `resize` does, without changing the count.
    void reserve(long n);

    /// Appends a copy of `value`, which may be an element of this block.
    T& append(const T& value);

    /// Exchanges two blocks.
    void swap(ZAllocationBuf& other) noexcept;

    /// The number of elements.
    long m_count = 0;
    /// The number of elements that fit.
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
T* ZMemory<T>::copyOf(const T* source, long count, long capacity)
{
    if (capacity <= 0)
        return nullptr;
    count = source ? std::clamp(count, 0L, capacity) : 0;
    if constexpr (s_isPlain) {
        // Default-initialized, so that each element is written only once.
        T* block = new T[static_cast<std::size_t>(capacity)];
        copyTo(block, source, count);
        std::fill(block + count, block + capacity, T());
        return block;
    } else {
        std::unique_ptr<T[]> block(allocate(capacity));
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
    // Frees the old block last because `value` may be in it.
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
    if (n > std::numeric_limits<long>::max() - m_capacity)
        throw std::bad_array_new_length();
    this->m_block = ZMemory<T>::relocate(this->m_block, m_count, m_capacity + n);
    m_capacity += n;
}

template <typename T>
void ZAllocationBuf<T>::resize(long n)
{
    reserve(n);
    m_count = std::max(n, 0L);
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
    if (m_count < m_capacity) [[likely]] {
        this->m_block[m_count] = value;
        return this->m_block[m_count++];
    }
    T copied = value; // `value` may be in the block that growing frees
    reserve(m_count + 1);
    this->m_block[m_count] = std::move(copied);
    return this->m_block[m_count++];
}

template <typename T>
void ZAllocationBuf<T>::swap(ZAllocationBuf& other) noexcept
{
    std::swap(this->m_block, other.m_block);
    std::swap(m_count, other.m_count);
    std::swap(m_capacity, other.m_capacity);
}

} // namespace ZSpace
