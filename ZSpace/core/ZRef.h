// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace ZSpace {

/// An atomic reference count: one 64-bit word, read as a `Value`.
template <typename Value>
class TZRefCounter {
public:
    constexpr TZRefCounter() noexcept = default;
    explicit constexpr TZRefCounter(Value count) noexcept
        : m_word(static_cast<std::uint64_t>(count))
    {
    }
    TZRefCounter(const TZRefCounter&) = delete; // counts the handles of one object
    TZRefCounter& operator=(const TZRefCounter&) = delete;
    ~TZRefCounter() = default;

    /// Both return the new count atomically: of several threads that decrement, exactly one sees 0.
    Value increment() noexcept { return static_cast<Value>(m_word.fetch_add(1) + 1); }
    /// Subtracts 1 and returns the new count.
    Value decrement() noexcept { return static_cast<Value>(m_word.fetch_sub(1) - 1); }

    /// The count.
    [[nodiscard]] Value value() const noexcept { return static_cast<Value>(m_word.load()); }

private:
    std::atomic<std::uint64_t> m_word{0};
};

static_assert(sizeof(TZRefCounter<int>) == 8 && alignof(TZRefCounter<int>) == 8);

namespace detail {

/// The check that failed, as the line number of the report.
enum class HandleCheck : unsigned int { MemberAccess = 534, Indirection = 543 };

/// Aborts after a report through `z_dbg_error`.
[[noreturn]] void reportEmptyHandle(HandleCheck check) noexcept;

} // namespace detail

/// A shared-ownership handle: the last handle to release the object deletes it.
///
///     ZRef<ZLogBook> book(new ZLogBookDummy);
///     book->add(record);
///
/// The object needs no base class: the count has a heap cell of its own. Construct only one handle from a raw
/// pointer and copy that handle, because handles constructed separately have separate counts. A constructor
/// that throws `std::bad_alloc` deletes the object.
///
/// Handles that share an object may be used on different threads; a single handle is not thread-safe.
/// Dereferencing an empty handle aborts after a report. Calls `std::terminate` if the object's destructor
/// throws.
template <typename T, typename Counter = TZRefCounter<int>>
class ZRef {
public:
    constexpr ZRef() noexcept = default;
    explicit ZRef(T* object)
        : m_ptCounter(object ? makeCounter(object) : nullptr)
        , m_ptValue(object)
    {
    }
    ZRef(const ZRef& other) noexcept
        : m_ptCounter(other.m_ptCounter)
        , m_ptValue(other.m_ptValue)
    {
        if (m_ptCounter)
            m_ptCounter->increment();
    }
    ZRef(ZRef&& other) noexcept
        : m_ptCounter(std::exchange(other.m_ptCounter, nullptr))
        , m_ptValue(std::exchange(other.m_ptValue, nullptr))
    {
    }
    ~ZRef() { release(); }

    /// Releases the current object and adopts `object` (null empties the handle). Does nothing if the handle
    /// already holds `object`.
    ZRef& operator=(T* object);

    /// Releases the current object and shares that of `other`. Does nothing if both hold the same object.
    ///
    /// The old object is released last, so `other` may be a member of it (`node = node->next`).
    ZRef& operator=(const ZRef& other) noexcept; // NOLINT(bugprone-unhandled-self-assignment)
    ZRef& operator=(ZRef&& other) noexcept;

    /// Decrements the count, and deletes the object at 0, WITHOUT clearing the handle. To empty a handle,
    /// assign null.
    void release() noexcept;

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
    [[nodiscard]] int RefCount() const noexcept { return m_ptCounter ? m_ptCounter->value() : 0; }

private:
    static Counter* makeCounter(T* object);

    void swap(ZRef& other) noexcept
    {
        std::swap(m_ptCounter, other.m_ptCounter);
        std::swap(m_ptValue, other.m_ptValue);
    }

    void check(detail::HandleCheck which) const noexcept
    {
        if (!m_ptValue) [[unlikely]]
            detail::reportEmptyHandle(which);
    }

    Counter* m_ptCounter = nullptr;
    T* m_ptValue = nullptr;
};

static_assert(sizeof(ZRef<int>) == 2 * sizeof(void*));

template <typename T, typename Counter>
ZRef<T, Counter>& ZRef<T, Counter>::operator=(T* object)
{
    if (object != m_ptValue)
        ZRef(object).swap(*this);
    return *this;
}

template <typename T, typename Counter>
ZRef<T, Counter>& ZRef<T, Counter>::operator=(const ZRef& other) noexcept
{
    if (other.m_ptValue != m_ptValue)
        ZRef(other).swap(*this);
    return *this;
}

template <typename T, typename Counter>
ZRef<T, Counter>& ZRef<T, Counter>::operator=(ZRef&& other) noexcept
{
    ZRef(std::move(other)).swap(*this);
    return *this;
}

template <typename T, typename Counter>
void ZRef<T, Counter>::release() noexcept
{
    // NOLINTNEXTLINE(bugprone-sizeof-expression)
    static_assert(sizeof(T) > 0, "the last handle deletes the object, so its class must be complete");
    if (!m_ptCounter || m_ptCounter->decrement() != 0)
        return;
    delete m_ptCounter;
    delete m_ptValue;
}

template <typename T, typename Counter>
Counter* ZRef<T, Counter>::makeCounter(T* object)
{
    std::unique_ptr<T> owned(object);
    auto* counter = new Counter(1);
    static_cast<void>(owned.release());
    return counter;
}

} // namespace ZSpace
