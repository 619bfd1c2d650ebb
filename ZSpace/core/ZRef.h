// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <utility>

namespace ZSpace {

/// The number of handles on one object: a machine word that changes atomically and is read as a `Value`.
template <typename Value>
class TZRefCounter {
public:
    constexpr TZRefCounter() noexcept = default;
    explicit constexpr TZRefCounter(Value count) noexcept
        : m_word(static_cast<std::uint64_t>(count))
    {
    }
    TZRefCounter(const TZRefCounter&) = delete; // a count belongs to one object
    TZRefCounter& operator=(const TZRefCounter&) = delete;
    ~TZRefCounter() = default;

    /// Both give the count after the change, as part of it: of several threads that count down, one alone
    /// sees 0.
    Value increment() noexcept { return static_cast<Value>(m_word.fetch_add(1) + 1); }
    Value decrement() noexcept { return static_cast<Value>(m_word.fetch_sub(1) - 1); }

    [[nodiscard]] Value value() const noexcept { return static_cast<Value>(m_word.load()); }

private:
    std::atomic<std::uint64_t> m_word{0};
};

static_assert(sizeof(TZRefCounter<int>) == 8 && alignof(TZRefCounter<int>) == 8);

namespace detail {

/// The checks of the two dereferencing operators, as the report numbers them.
enum class HandleCheck : unsigned int { MemberAccess = 534, Indirection = 543 };

/// Reports the use of an empty handle and ends the process.
[[noreturn]] void reportEmptyHandle(HandleCheck check) noexcept;

} // namespace detail

/// A handle on an object that it shares with other handles; the last one to let go deletes the object.
///
///     ZRef<ZLogBook> book(new ZLogBookDummy);
///     book->add(record);
///
/// The object needs no base class: the count is a cell of its own. A raw pointer is handed to one handle
/// only, since two handles made from it would count apart; further handles are copies. Making a handle takes
/// the object over even where it fails for want of memory (the object is then deleted).
///
/// Handles on one object may be copied and dropped on different threads; one and the same handle may not.
/// Dereferencing an empty handle ends the process with a report. An object that throws from its destructor
/// ends the process too.
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

    /// Lets go and takes `object` over (null: becomes empty). Given what it already holds, it does nothing.
    ZRef& operator=(T* object);

    /// Lets go and shares what `other` holds. Does nothing where both hold the same object.
    ///
    /// The old object goes last, so `other` may be a part of it (`node = node->next`).
    ZRef& operator=(const ZRef& other) noexcept; // NOLINT(bugprone-unhandled-self-assignment)
    ZRef& operator=(ZRef&& other) noexcept;

    /// Gives up this handle's share without clearing the handle: assignment and destruction are made of it,
    /// and both are past caring. To empty a handle, assign null.
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

    /// The object without a check; null for an empty handle.
    [[nodiscard]] T* get() const noexcept { return m_ptValue; }

    /// The number of handles on the object, 0 for an empty handle. Other threads may change it at any time.
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
    static_assert(sizeof(T) > 0, "the last handle deletes the object, so its class must be known");
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
