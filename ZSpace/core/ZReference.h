// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZRef.h"

namespace ZSpace {

template <typename T, typename Counter>
class ZReference;

/// The base of objects with an intrusive reference count. The count starts at 0; the first handle makes it 1.
///
/// In a class with virtual functions the count follows the vtable pointer and adds one word to each object.
template <typename Counter>
class TZReferenceable {
protected:
    constexpr TZReferenceable() noexcept = default;
    /// The count belongs to the object: a copy starts at 0, and assignment keeps the target's count.
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

/// A shared-ownership handle for objects with an intrusive count (`TZReferenceable` is one of their bases).
///
///     ZReference<ZObject> object(new Printer);
///     object->invokeByName("print", arguments);
///
/// Any number of handles may be constructed from a raw pointer, because the count is in the object. The
/// handle that brings the count to 0 deletes the object through its virtual destructor. Thread safety and
/// empty handles are as for `ZRef`.
///
/// Only construction from a raw pointer and deletion need the complete class; elsewhere a forward declaration
/// is enough if both are instantiated explicitly, as they are for `ZObject`.
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
    /// Converts from a handle on a derived class; both share the object.
    template <detail::ConvertibleHandle<T> From>
    ZReference(const ZReference<From, Counter>& other) noexcept // NOLINT(google-explicit-constructor)
        : ZReference(other, other.m_ptValue)
    {
    }
    ZReference(ZReference&& other) noexcept
        : m_ptCounted(std::exchange(other.m_ptCounted, nullptr))
        , m_ptValue(std::exchange(other.m_ptValue, nullptr))
    {
    }
    ~ZReference() { release(); }

    /// Releases the current object and shares `object` (null empties the handle). Does nothing if the handle
    /// already holds `object`.
    ZReference& operator=(T* object) noexcept;
    ZReference& operator=(const ZReference& other) noexcept; // NOLINT(bugprone-unhandled-self-assignment)
    ZReference& operator=(ZReference&& other) noexcept;

    /// Empties the handle and decrements the count. Deletes the object if the count is then 0 or less.
    /// @return false if the object was deleted; true if other handles share it, or if the handle was empty.
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

    /// The object, unchecked; null for an empty handle.
    [[nodiscard]] T* get() const noexcept { return m_ptValue; }

    /// The number of handles that share the object, 0 for an empty handle. Other threads may change it at any
    /// time.
    [[nodiscard]] int RefCount() const noexcept { return m_ptCounted ? m_ptCounted->m_counter.value() : 0; }

private:
    template <typename U, typename C>
    friend class ZReference;
    template <typename U, typename From, typename C>
    friend ZReference<U, C> staticRefCast(const ZReference<From, C>& handle) noexcept;
    template <typename U, typename From, typename C>
    friend ZReference<U, C> dynamicRefCast(const ZReference<From, C>& handle) noexcept;

    using Counted = TZReferenceable<Counter>;

    /// Shares the object of `owner`; empty if `object` is null.
    template <typename Owner>
    ZReference(const ZReference<Owner, Counter>& owner, T* object) noexcept
        : m_ptCounted(object ? owner.m_ptCounted : nullptr)
        , m_ptValue(object)
    {
        addCount();
    }

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

/// Creates an object and a handle on it.
template <typename T, typename... Arguments>
[[nodiscard]] ZReference<T> makeReference(Arguments&&... arguments)
{
    return ZReference<T>(new T(std::forward<Arguments>(arguments)...));
}

/// A handle on the same object, cast by `static_cast`.
template <typename T, typename From, typename Counter>
[[nodiscard]] ZReference<T, Counter> staticRefCast(const ZReference<From, Counter>& handle) noexcept
{
    return ZReference<T, Counter>(handle, static_cast<T*>(handle.get()));
}

/// A handle on the same object, cast by `dynamic_cast`; empty if the object is not a `T`.
template <typename T, typename From, typename Counter>
[[nodiscard]] ZReference<T, Counter> dynamicRefCast(const ZReference<From, Counter>& handle) noexcept
{
    return ZReference<T, Counter>(handle, dynamic_cast<T*>(handle.get()));
}

/// Whether both handles hold the same object.
template <typename T, typename U, typename Counter>
requires std::equality_comparable_with<T*, U*>
[[nodiscard]] bool operator==(const ZReference<T, Counter>& a, const ZReference<U, Counter>& b) noexcept
{
    return a.get() == b.get();
}

/// Whether the handle is empty.
template <typename T, typename Counter>
[[nodiscard]] bool operator==(const ZReference<T, Counter>& handle, std::nullptr_t) noexcept
{
    return !handle;
}

template <typename T, typename U, typename Counter>
requires std::three_way_comparable_with<T*, U*>
[[nodiscard]] std::strong_ordering operator<=>(
    const ZReference<T, Counter>& a, const ZReference<U, Counter>& b) noexcept
{
    return std::compare_three_way()(a.get(), b.get());
}

// Values hold references to `ZObject`, a class of a higher layer. That layer defines these two functions.
class ZObject;
extern template TZReferenceable<TZRefCounter<int>>* ZReference<ZObject>::countedPartOf(ZObject*) noexcept;
extern template void ZReference<ZObject>::destroy(ZObject*) noexcept;

static_assert(sizeof(ZReference<ZObject>) == 2 * sizeof(void*));

} // namespace ZSpace

/// Handles on one object have equal hashes.
template <typename T, typename Counter>
struct std::hash<ZSpace::ZReference<T, Counter>> {
    /// The hash of the address of the object.
    [[nodiscard]] std::size_t operator()(const ZSpace::ZReference<T, Counter>& handle) const noexcept
    {
        return std::hash<T*>()(handle.get());
    }
};
