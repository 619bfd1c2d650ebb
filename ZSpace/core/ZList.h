// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/detail/LifetimeBound.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <cstddef>
#include <iterator>
#include <memory>
#include <utility>

namespace ZSpace {

/// A list that owns its elements, each in a heap block of its own.
///
///     ZList<ZRef<ZLogBook>> books;
///     books.add(book);
///     for (const ZRef<ZLogBook>& each : books)
///         each->add(record);
///
/// Growing moves only pointers, so an element stays at its address until it is removed. Indices are not
/// checked, except by `il_removeAt`. Not thread-safe.
///
/// `add` calls `std::terminate` if allocating or copying fails, and removal does if a destructor throws. The
/// copy constructor propagates exceptions and leaks nothing. Assignment leaves the list empty and throws
/// `std::bad_alloc` if allocation fails, and calls `std::terminate` if copying an element throws.
template <typename T>
class ZList : private ZArray<T*, ZAllocationBuf<T*>> {
    using Slots = ZArray<T*, ZAllocationBuf<T*>>;

    /// Dereferences to the elements rather than to the slots.
    template <typename Element>
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = Element*;
        using reference = Element&;

        Iterator() noexcept = default;
        explicit Iterator(T* const* slot) noexcept
            : m_slot(slot)
        {
        }

        reference operator*() const noexcept { return **m_slot; }
        pointer operator->() const noexcept { return *m_slot; }
        Iterator& operator++() noexcept
        {
            ++m_slot;
            return *this;
        }
        Iterator operator++(int) noexcept { return Iterator(m_slot++); }
        friend bool operator==(Iterator a, Iterator b) noexcept { return a.m_slot == b.m_slot; }

    private:
        T* const* m_slot = nullptr;
    };

public:
    using value_type = T;
    using iterator = Iterator<T>;
    using const_iterator = Iterator<const T>;

    constexpr ZList() noexcept = default;
    ZList(const ZList& other);
    ZList(ZList&& other) noexcept = default;
    ~ZList() { il_removeAll(); }

    /// Replaces all elements by copies of those of `other`, which may belong to an element of this list.
    ZList& operator=(const ZList& other);
    ZList& operator=(ZList&& other) noexcept;

    /// The number of elements.
    using Slots::Count;
    /// The number of slots: 1, 3, 7, 15 and so on while elements are appended one by one.
    using Slots::Capacity;

    [[nodiscard]] T& operator[](long index) noexcept ZSPACE_LIFETIMEBOUND
    {
        return *Slots::operator[](index);
    }
    [[nodiscard]] const T& operator[](long index) const noexcept ZSPACE_LIFETIMEBOUND
    {
        return *Slots::operator[](index);
    }

    [[nodiscard]] iterator begin() noexcept ZSPACE_LIFETIMEBOUND { return iterator(Slots::begin()); }
    [[nodiscard]] iterator end() noexcept ZSPACE_LIFETIMEBOUND { return iterator(Slots::end()); }
    [[nodiscard]] const_iterator begin() const noexcept ZSPACE_LIFETIMEBOUND
    {
        return const_iterator(Slots::begin());
    }
    [[nodiscard]] const_iterator end() const noexcept ZSPACE_LIFETIMEBOUND
    {
        return const_iterator(Slots::end());
    }

    /// Appends a copy of `value`, which may be an element of this list, and returns the stored element.
    T* add(const T& value) noexcept ZSPACE_LIFETIMEBOUND;

    /// As `add`, but throws `std::bad_alloc` and leaves the list unchanged if allocation fails.
    T* append(T value) ZSPACE_LIFETIMEBOUND;
    /// Appends `element` itself. Throws `std::bad_alloc`, and deletes the element, if allocation fails.
    T* adopt(std::unique_ptr<T> element) ZSPACE_LIFETIMEBOUND;
    /// Removes the last element without deleting it. The capacity stays. Precondition: the list is not empty.
    [[nodiscard]] std::unique_ptr<T> takeLast() noexcept;
    void swap(ZList& other) noexcept { Slots::swap(other); }

    /// Removes and deletes the element at `i`. The capacity stays.
    /// @return false, with nothing changed, if `i` is out of range.
    bool il_removeAt(const long& i) noexcept;

    /// Deletes the elements from last to first and frees the slots.
    /// @return whether there was at least one element.
    bool il_removeAll() noexcept;

protected:
    /// Appends `item` itself; the list adopts it.
    T* il_append(T* item) noexcept { return Slots::add(item); }

    /// Replaces the element at `index` by `item` and deletes the old one; the list adopts `item`.
    void il_replaceAt(long index, T* item) noexcept;

    /// Allocates the capacity that appending `count` elements one by one to an empty list would reach.
    void il_reserve(long count);

private:
    static T copied(const T& value) noexcept { return T(value); }
};

/// A list that can be searched with `==`.
template <typename T>
class ZListing : public ZList<T> {
public:
    /// The index of the first element at or after `start` that equals `item`, -1 if there is none.
    ///
    /// A negative `start` counts from the end (-1 is the last element) and is clamped to the first element.
    [[nodiscard]] long il_find(const T& item, long start = 0) const;

    /// An unsigned `start` never counts from the end.
    template <std::unsigned_integral Start>
    [[nodiscard]] long il_find(const T& item, Start start) const
    {
        const bool isInside = start < static_cast<unsigned long>(this->Count());
        return isInside ? il_find(item, static_cast<long>(start)) : -1;
    }
};

static_assert(sizeof(ZList<int>) == 3 * sizeof(void*));

template <typename T>
ZList<T>::ZList(const ZList& other)
    : ZList()
{
    il_reserve(other.Count());
    for (const T& value : other)
        il_append(new T(value));
}

template <typename T>
ZList<T>& ZList<T>::operator=(const ZList& other)
{
    if (this == &other)
        return *this;
    ZList copies;
    try {
        copies.il_reserve(other.Count());
        for (const T& value : other)
            copies.il_append(new T(copied(value)));
    } catch (...) {
        il_removeAll();
        throw;
    }
    il_removeAll(); // only now, because `other` may belong to one of the elements
    Slots::swap(copies);
    return *this;
}

template <typename T>
ZList<T>& ZList<T>::operator=(ZList&& other) noexcept
{
    ZList taken(std::move(other));
    Slots::swap(taken);
    return *this;
}

template <typename T>
T* ZList<T>::add(const T& value) noexcept
{
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): terminates, as documented
    return il_append(new T(value));
}

template <typename T>
bool ZList<T>::il_removeAt(const long& i) noexcept
{
    const long index = i; // `i` may refer into the element that is deleted
    if (index < 0 || index >= Count())
        return false;
    T* item = Slots::operator[](index);
    Slots::remove(index, 1);
    delete item;
    return true;
}

template <typename T>
bool ZList<T>::il_removeAll() noexcept
{
    const bool hadElements = Count() > 0;
    while (Count() > 0) {
        // Removed before it is deleted, so that its destructor finds only live elements in the list.
        T* last = Slots::operator[](Count() - 1);
        Slots::resize(Count() - 1);
        delete last;
    }
    Slots::release();
    return hadElements;
}

template <typename T>
void ZList<T>::il_replaceAt(long index, T* item) noexcept
{
    T* old = std::exchange(Slots::operator[](index), item);
    if (old != item)
        delete old;
}

template <typename T>
T* ZList<T>::append(T value)
{
    return adopt(std::make_unique<T>(std::move(value)));
}

template <typename T>
T* ZList<T>::adopt(std::unique_ptr<T> element)
{
    Slots::reserve(Count() + 1);
    return il_append(element.release());
}

template <typename T>
std::unique_ptr<T> ZList<T>::takeLast() noexcept
{
    std::unique_ptr<T> last(Slots::operator[](Count() - 1));
    Slots::resize(Count() - 1);
    return last;
}

template <typename T>
void ZList<T>::il_reserve(long count)
{
    Slots::reserve(static_cast<long>(std::bit_ceil(static_cast<unsigned long>(count) + 1) - 1));
}

template <typename T>
long ZListing<T>::il_find(const T& item, long start) const
{
    const long count = this->Count();
    if (start < 0)
        start = std::max(start + count, 0L);
    for (long i = start; i < count; ++i) {
        if ((*this)[i] == item)
            return i;
    }
    return -1;
}

} // namespace ZSpace
