// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <pthread.h>

namespace ZSpace {

template <typename Mutex>
class ZThreadLock_T;

/// A recursive mutex, usually a member of the object that it guards.
///
///     const std::lock_guard guard(m_lock);
///     ++m_count;
///
/// The owning thread may lock it again and must unlock it as many times. No thread may hold it when it is
/// destroyed.
template <>
class ZThreadLock_T<pthread_mutex_t> {
public:
    ZThreadLock_T() noexcept
    {
        pthread_mutexattr_t attributes;
        pthread_mutexattr_init(&attributes);
        pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
        pthread_mutex_init(&m_mutex, &attributes);
        pthread_mutexattr_destroy(&attributes);
    }
    ZThreadLock_T(const ZThreadLock_T&) = delete; // threads wait at the mutex's address
    ZThreadLock_T& operator=(const ZThreadLock_T&) = delete;
    ~ZThreadLock_T() { pthread_mutex_destroy(&m_mutex); }

    void lock() noexcept { pthread_mutex_lock(&m_mutex); }
    /// @return whether the calling thread now holds the lock (once more).
    [[nodiscard]] bool try_lock() noexcept { return pthread_mutex_trylock(&m_mutex) == 0; }
    void unlock() noexcept { pthread_mutex_unlock(&m_mutex); }

private:
    pthread_mutex_t m_mutex;
};

static_assert(sizeof(ZThreadLock_T<pthread_mutex_t>) == sizeof(pthread_mutex_t));

template <typename Mutex>
class ZThreadPseudoLock_T;

/// Has the interface of the lock but does nothing: for objects whose callers do the locking.
template <>
class ZThreadPseudoLock_T<pthread_mutex_t> {
public:
    void lock() noexcept { }
    void unlock() noexcept { }
};

/// Locks in `beginTransaction()` and unlocks in `endTransaction()`. With the pseudo lock, which streams use,
/// both do nothing and the object is empty.
template <typename Lock>
class TZThreadSafeTransaction {
public:
    void beginTransaction() noexcept { m_lock.lock(); }
    void endTransaction() noexcept { m_lock.unlock(); }

private:
    [[no_unique_address]] Lock m_lock;
};

} // namespace ZSpace
