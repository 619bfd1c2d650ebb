// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <type_traits>
#include <utility>

namespace ZSpace {

namespace detail {

/// Selects a count that shares its heap block with the object.
struct SharedBlock { };

} // namespace detail

/// An atomic reference count: one 64-bit word, read as a `Value`.
template <typename Value>
class TZRefCounter {
public:
    constexpr TZRefCounter() noexcept = default;
    explicit constexpr TZRefCounter(Value count) noexcept
        : m_word(static_cast<std::uint64_t>(count))
    {
    }
    /// A count of 1 that shares its block with the object, as marked in the upper half of the word, which is
    /// never read as part of the count.
    explicit constexpr TZRefCounter(detail::SharedBlock) noexcept
        : m_word(s_sharedBlockMark << 32 | 1)
    {
    }
    TZRefCounter(const TZRefCounter&) = delete; // counts the handles of one object
    TZRefCounter& operator=(const TZRefCounter&) = delete;
    ~TZRefCounter() = default;

    /// Adds 1 and returns the new count.
    Value increment() noexcept { return static_cast<Value>(m_word.fetch_add(1) + 1); }
    /// Subtracts 1 and returns the new count. Of several threads that decrement, exactly one sees 0.
    Value decrement() noexcept { return static_cast<Value>(m_word.fetch_sub(1) - 1); }

    /// The count.
    [[nodiscard]] Value value() const noexcept { return static_cast<Value>(m_word.load()); }

    /// Whether the count shares its block with the object.
    [[nodiscard]] bool sharesBlock() const noexcept { return m_word.load() >> 32 == s_sharedBlockMark; }

private:
    static constexpr std::uint64_t s_sharedBlockMark = 0x5A526566;

    std::atomic<std::uint64_t> m_word{0};
};

static_assert(sizeof(TZRefCounter<int>) == 8 && alignof(TZRefCounter<int>) == 8);

namespace detail {

/// A failed check; its value is the line number that is reported.
enum class HandleCheck : unsigned int { MemberAccess = 534, Indirection = 543 };

/// Aborts after a report through `z_dbg_error`.
[[noreturn]] void reportEmptyHandle(HandleCheck check) noexcept;

/// Whether `delete` of a `To*` may end the lifetime of a `From`.
template <typename From, typename To>
inline constexpr bool s_mayDeleteAs =
    std::is_same_v<std::remove_cv_t<From>, std::remove_cv_t<To>> || std::has_virtual_destructor_v<To>;

/// Whether a handle on a `From` converts to one on a `To`, which must be able to delete the object.
template <typename From, typename To>
concept ConvertibleHandle =
    !std::is_same_v<From, To> && std::is_convertible_v<From*, To*> && s_mayDeleteAs<From, To>;

/// An object and its count in one block. The count comes first, so that its address is that of the block.
template <typename T, typename Counter>
struct CountedBlock {
    template <typename... Arguments>
    explicit CountedBlock(Arguments&&... arguments)
        : counter(SharedBlock())
        , object(std::forward<Arguments>(arguments)...)
    {
    }

    Counter counter;
    T object;
};

/// Whether an object may share a block with its count: not if its class has its own `operator new` or is
/// over-aligned.
template <typename T>
concept SharesBlock = alignof(T) <= __STDCPP_DEFAULT_NEW_ALIGNMENT__ && !requires
{
    T::operator new(sizeof(T));
}
&&!requires(void* block)
{
    T::operator delete(block);
};

} // namespace detail

/// A shared-ownership handle: the last handle to release the object deletes it.
///
///     ZRef<ZLogBook> book(new ZLogBookDummy);
///     book->add(record);
///
/// The object needs no base class: the count has a heap block of its own. Construct only one handle from a
/// raw pointer and copy that handle, because handles constructed separately have separate counts. A
/// constructor that throws `std::bad_alloc` deletes the object.
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
        : m_ptCounter(shared(other.m_ptCounter))
        , m_ptValue(other.m_ptValue)
    {
    }
    /// Converts from a handle on a derived class; both share the object.
    template <detail::ConvertibleHandle<T> From>
    ZRef(const ZRef<From, Counter>& other) noexcept // NOLINT(google-explicit-constructor): like pointers
        : ZRef(other, other.m_ptValue)
    {
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

    /// DANGEROUS: decrements the count, and deletes the object at 0, WITHOUT clearing the handle. The handle then
    /// dangles, and its destructor decrements the count AGAIN, so the object is deleted too early or twice.
    ///
    /// To empty a handle, assign null: `handle = nullptr`. Call this only for a handle that is neither used nor
    /// destroyed afterwards. (`ZReference::release()` is different: it empties the handle.)
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
    template <typename U, typename C>
    friend class ZRef;
    template <typename U, typename... Arguments>
    friend ZRef<U> makeRef(Arguments&&... arguments);
    template <typename U, typename From, typename C>
    friend ZRef<U, C> staticRefCast(const ZRef<From, C>& handle) noexcept;
    template <typename U, typename From, typename C>
    friend ZRef<U, C> dynamicRefCast(const ZRef<From, C>& handle) noexcept;

    /// Shares the count of `owner`; empty if `object` is null.
    template <typename Owner>
    ZRef(const ZRef<Owner, Counter>& owner, T* object) noexcept
        : m_ptCounter(object ? shared(owner.m_ptCounter) : nullptr)
        , m_ptValue(object)
    {
    }

    /// Counts one more handle.
    static Counter* shared(Counter* counter) noexcept
    {
        if (counter)
            counter->increment();
        return counter;
    }

    static Counter* makeCounter(T* object);

    /// Frees the count and then the object. Out of line and static, so that handles stay small and in registers.
    [[gnu::noinline]] static void destroy(Counter* counter, T* object) noexcept;

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
    if (m_ptCounter && m_ptCounter->decrement() == 0)
        destroy(m_ptCounter, m_ptValue);
}

template <typename T, typename Counter>
void ZRef<T, Counter>::destroy(Counter* counter, T* object) noexcept
{
    if constexpr (requires { counter->sharesBlock(); }) {
        if (counter->sharesBlock()) {
            std::destroy_at(object);
            ::operator delete(counter);
            return;
        }
    }
    delete counter;
    delete object;
}

template <typename T, typename Counter>
Counter* ZRef<T, Counter>::makeCounter(T* object)
{
    std::unique_ptr<T> owned(object);
    auto* counter = new Counter(1);
    static_cast<void>(owned.release());
    return counter;
}

/// Creates an object and a handle on it, with one allocation where possible.
///
///     const auto book = makeRef<ZLogBookFile>(path);
template <typename T, typename... Arguments>
[[nodiscard]] ZRef<T> makeRef(Arguments&&... arguments)
{
    if constexpr (detail::SharesBlock<T>) {
        auto* block = new detail::CountedBlock<T, TZRefCounter<int>>(std::forward<Arguments>(arguments)...);
        ZRef<T> handle;
        handle.m_ptCounter = &block->counter;
        handle.m_ptValue = &block->object;
        return handle;
    } else {
        return ZRef<T>(new T(std::forward<Arguments>(arguments)...));
    }
}

/// A handle on the same object, cast by `static_cast`.
template <typename T, typename From, typename Counter>
[[nodiscard]] ZRef<T, Counter> staticRefCast(const ZRef<From, Counter>& handle) noexcept
{
    return ZRef<T, Counter>(handle, static_cast<T*>(handle.get()));
}

/// A handle on the same object, cast by `dynamic_cast`; empty if the object is not a `T`.
template <typename T, typename From, typename Counter>
[[nodiscard]] ZRef<T, Counter> dynamicRefCast(const ZRef<From, Counter>& handle) noexcept
{
    return ZRef<T, Counter>(handle, dynamic_cast<T*>(handle.get()));
}

/// Whether both handles hold the same object.
template <typename T, typename U, typename Counter>
requires std::equality_comparable_with<T*, U*>
[[nodiscard]] bool operator==(const ZRef<T, Counter>& a, const ZRef<U, Counter>& b) noexcept
{
    return a.get() == b.get();
}

/// Whether the handle is empty.
template <typename T, typename Counter>
[[nodiscard]] bool operator==(const ZRef<T, Counter>& handle, std::nullptr_t) noexcept
{
    return !handle;
}

template <typename T, typename U, typename Counter>
requires std::three_way_comparable_with<T*, U*>
[[nodiscard]] std::strong_ordering operator<=>(const ZRef<T, Counter>& a, const ZRef<U, Counter>& b) noexcept
{
    return std::compare_three_way()(a.get(), b.get());
}

} // namespace ZSpace

/// Handles on one object have equal hashes.
template <typename T, typename Counter>
struct std::hash<ZSpace::ZRef<T, Counter>> {
    /// The hash of the address of the object.
    [[nodiscard]] std::size_t operator()(const ZSpace::ZRef<T, Counter>& handle) const noexcept
    {
        return std::hash<T*>()(handle.get());
    }
};
