// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZRef.h"

namespace ZSpace {

template <typename T, typename Counter>
class ZReference;

/// The base of objects that carry the count of their own handles. It starts at 0: the first handle makes
/// it 1.
///
/// Standing behind the table pointer of a class with virtual functions, it adds one word to each object.
template <typename Counter>
class TZReferenceable {
protected:
    constexpr TZReferenceable() noexcept = default;
    /// Handles count for the object they hold, so a copy starts with none, and an assigned object keeps its
    /// own.
    TZReferenceable(const TZReferenceable&) noexcept { }
    TZReferenceable& operator=(const TZReferenceable&) noexcept
    {
        return *this;
    } // NOLINT(bugprone-unhandled-self-assignment)
    ~TZReferenceable() = default;

private:
    template <typename T, typename C>
    friend class ZReference;

    Counter m_counter;
};

static_assert(sizeof(TZReferenceable<TZRefCounter<int>>) == sizeof(TZRefCounter<int>));

/// A handle on an object that carries its own count (`TZReferenceable` is one of its bases).
///
///     ZReference<ZObject> object(new Printer);
///     object->invokeByName("print", arguments);
///
/// Since the count is in the object, handles may be made from its raw pointer any number of times. The handle
/// that brings the count to 0 deletes the object through its virtual destructor. Threads and empty handles:
/// as with `ZRef`.
///
/// Only taking a raw pointer and deleting need to know the class; a class with a `ZReference` member gets by
/// with a forward declaration where those two are instantiated elsewhere, as they are for `ZObject`.
template <typename T, typename Counter = TZRefCounter<int>>
class ZReference {
public:
    constexpr ZReference() noexcept = default;
    explicit ZReference(T* object) noexcept
        : m_ptCounted(countedPartOf(object))
        , m_ptValue(object)
    {
        addCount();
    }
    ZReference(const ZReference& other) noexcept
        : m_ptCounted(other.m_ptCounted)
        , m_ptValue(other.m_ptValue)
    {
        addCount();
    }
    ZReference(ZReference&& other) noexcept
        : m_ptCounted(std::exchange(other.m_ptCounted, nullptr))
        , m_ptValue(std::exchange(other.m_ptValue, nullptr))
    {
    }
    ~ZReference() { release(); }

    /// Lets go and takes a count on `object` (null: becomes empty). Given what it already holds, it does
    /// nothing.
    ZReference& operator=(T* object) noexcept;
    ZReference& operator=(const ZReference& other) noexcept; // NOLINT(bugprone-unhandled-self-assignment)
    ZReference& operator=(ZReference&& other) noexcept;

    /// Empties the handle and counts one down. A count that is then 0 or less deletes the object.
    /// @return false if this deleted the object; true if others hold it, or if the handle was empty.
    bool release() noexcept;

    [[nodiscard]] T* operator->() const noexcept
    {
        check(detail::HandleCheck::MemberAccess);
        return m_ptValue;
    }
    [[nodiscard]] T& operator*() const noexcept
    {
        check(detail::HandleCheck::Indirection);
        return *m_ptValue;
    }

    [[nodiscard]] bool operator!() const noexcept { return !m_ptValue; }
    [[nodiscard]] explicit operator bool() const noexcept { return m_ptValue; }

    /// The object without a check; null for an empty handle.
    [[nodiscard]] T* get() const noexcept { return m_ptValue; }

    /// The number of handles on the object, 0 for an empty handle. Other threads may change it at any time.
    [[nodiscard]] int RefCount() const noexcept { return m_ptCounted ? m_ptCounted->m_counter.value() : 0; }

private:
    using Counted = TZReferenceable<Counter>;

    static Counted* countedPartOf(T* object) noexcept;
    static void destroy(T* object) noexcept;

    void addCount() const noexcept
    {
        if (m_ptCounted)
            m_ptCounted->m_counter.increment();
    }

    void swap(ZReference& other) noexcept
    {
        std::swap(m_ptCounted, other.m_ptCounted);
        std::swap(m_ptValue, other.m_ptValue);
    }

    void check(detail::HandleCheck which) const noexcept
    {
        if (!m_ptValue) [[unlikely]]
            detail::reportEmptyHandle(which);
    }

    Counted* m_ptCounted = nullptr;
    T* m_ptValue = nullptr;
};

template <typename T, typename Counter>
ZReference<T, Counter>& ZReference<T, Counter>::operator=(T* object) noexcept
{
    if (object != m_ptValue)
        ZReference(object).swap(*this);
    return *this;
}

template <typename T, typename Counter>
ZReference<T, Counter>& ZReference<T, Counter>::operator=(const ZReference& other) noexcept
{
    if (other.m_ptValue != m_ptValue)
        ZReference(other).swap(*this);
    return *this;
}

template <typename T, typename Counter>
ZReference<T, Counter>& ZReference<T, Counter>::operator=(ZReference&& other) noexcept
{
    ZReference(std::move(other)).swap(*this);
    return *this;
}

template <typename T, typename Counter>
bool ZReference<T, Counter>::release() noexcept
{
    Counted* counted = std::exchange(m_ptCounted, nullptr);
    T* object = std::exchange(m_ptValue, nullptr);
    if (!counted || counted->m_counter.decrement() > 0)
        return true;
    destroy(object);
    return false;
}

template <typename T, typename Counter>
TZReferenceable<Counter>* ZReference<T, Counter>::countedPartOf(T* object) noexcept
{
    return object;
}

template <typename T, typename Counter>
void ZReference<T, Counter>::destroy(T* object) noexcept
{
    delete object;
}

// Values hold references to objects and stand below their class; these live where it is known.
class ZObject;
extern template TZReferenceable<TZRefCounter<int>>* ZReference<ZObject>::countedPartOf(ZObject*) noexcept;
extern template void ZReference<ZObject>::destroy(ZObject*) noexcept;

static_assert(sizeof(ZReference<ZObject>) == 2 * sizeof(void*));

} // namespace ZSpace
