// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

namespace ZSpace {

/// Elements that the list makes one by one, owns and holds by pointer.
///
///     ZList<ZRef<ZLogBook>> books;
///     books.add(book);
///     for (const ZRef<ZLogBook>& each : books)
///         each->add(record);
///
/// Growing moves pointers only, so an element stays at its address until it is removed. Indices are not
/// checked, that of `il_removeAt` excepted. Not for sharing between threads without a lock.
///
/// `add` ends the process where memory is wanting or an element cannot be copied, and so does an element that
/// throws from its destructor. Copying a list passes such failures on and leaves nothing behind; assignment
/// passes the want of memory on, is empty then, and ends the process where an element cannot be copied.
template <typename T>
class ZList : private ZArray<T*, ZAllocationBuf<T*>> {
    using Slots = ZArray<T*, ZAllocationBuf<T*>>;

    /// Walks the slots and gives the elements.
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

    /// Removes all elements and adds a copy of each one of `other`.
    ZList& operator=(const ZList& other);
    ZList& operator=(ZList&& other) noexcept;

    /// The number of elements.
    using Slots::Count;
    /// The number of elements there is room for: 1, 3, 7, 15 and so on while elements are added one by one.
    using Slots::Capacity;

    [[nodiscard]] T& operator[](long index) noexcept { return *Slots::operator[](index); }
    [[nodiscard]] const T& operator[](long index) const noexcept { return *Slots::operator[](index); }

    [[nodiscard]] iterator begin() noexcept { return iterator(Slots::begin()); }
    [[nodiscard]] iterator end() noexcept { return iterator(Slots::end()); }
    [[nodiscard]] const_iterator begin() const noexcept { return const_iterator(Slots::begin()); }
    [[nodiscard]] const_iterator end() const noexcept { return const_iterator(Slots::end()); }

    /// Adds a copy of `value`, which may be an element of this list, and gives the stored element.
    T* add(const T& value) noexcept;

    /// Destroys and frees the element at `i` and closes the gap. The capacity stays.
    /// @return false, with nothing changed, if there is no such element.
    bool il_removeAt(const long& i) noexcept;

    /// Destroys and frees the elements from the last to the first, and frees the slots.
    /// @return whether there was at least one element.
    bool il_removeAll() noexcept;

protected:
    /// Adds `item` itself, which the list then owns.
    T* il_append(T* item) noexcept { return Slots::add(item); }

    /// Puts `item` in the place of the element at `index`, which is freed.
    void il_replaceAt(long index, T* item) noexcept;

    /// Makes the room for one more element, as adding it would; but passes the want of memory on.
    void il_makeRoom();

    /// Makes the room that adding `count` elements one by one to an empty list would make.
    void il_reserve(long count);

private:
    static T copied(const T& value) noexcept { return T(value); }
};

/// A list that can be searched; its elements compare with `==`.
template <typename T>
class ZListing : public ZList<T> {
public:
    /// The index of the first element from `start` on that equals `item`, -1 if there is none.
    ///
    /// A negative `start` counts from the end (-1 is the last element); before the first means the first.
    [[nodiscard]] long il_find(const T& item, long start = 0) const;
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
    il_removeAll();
    ZList copies;
    copies.il_reserve(other.Count());
    for (const T& value : other)
        copies.il_append(new T(copied(value)));
    *this = std::move(copies);
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
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): ends the process, as promised
    return il_append(new T(value));
}

template <typename T>
bool ZList<T>::il_removeAt(const long& i) noexcept
{
    const long index = i; // `i` may be a part of the element that goes
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
        // Out of the list first: a destructor that looks at the list finds only elements that live.
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
void ZList<T>::il_makeRoom()
{
    Slots::reserve(Count() + 1);
}

template <typename T>
void ZList<T>::il_reserve(long count)
{
    long capacity = 0;
    while (capacity < count)
        capacity += capacity + 1;
    Slots::reserve(capacity);
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
