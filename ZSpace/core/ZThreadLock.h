// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <pthread.h>

namespace ZSpace {

template <typename Mutex>
class ZThreadLock_T;

/// A recursive lock, a value inside the object that it guards.
///
///     m_lock.lock();
///     ++m_count;
///     m_lock.unlock();
///
/// The thread that holds it may lock it again; it is free when unlocked as many times. Every path unlocks by
/// hand, the one that an exception takes included. Nobody may hold it when it is destroyed.
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
    ZThreadLock_T(const ZThreadLock_T&) = delete; // a mutex cannot be moved: threads wait at its address
    ZThreadLock_T& operator=(const ZThreadLock_T&) = delete;
    ~ZThreadLock_T() { pthread_mutex_destroy(&m_mutex); }

    void lock() noexcept { pthread_mutex_lock(&m_mutex); }
    void unlock() noexcept { pthread_mutex_unlock(&m_mutex); }

private:
    pthread_mutex_t m_mutex;
};

static_assert(sizeof(ZThreadLock_T<pthread_mutex_t>) == sizeof(pthread_mutex_t));

template <typename Mutex>
class ZThreadPseudoLock_T;

/// Looks like the lock and does nothing, for objects that their user guards.
template <>
class ZThreadPseudoLock_T<pthread_mutex_t> {
public:
    void lock() noexcept { }
    void unlock() noexcept { }
};

/// Marks a span of operations that belong together and holds a `Lock` meanwhile. With the pseudo lock, which
/// is what streams use, both operations do nothing and the object takes no room of its own.
template <typename Lock>
class TZThreadSafeTransaction {
public:
    void beginTransaction() noexcept { m_lock.lock(); }
    void endTransaction() noexcept { m_lock.unlock(); }

private:
    [[no_unique_address]] Lock m_lock;
};

} // namespace ZSpace
