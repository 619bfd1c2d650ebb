// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZInvokable.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZThreadLock.h"

#include <atomic>
#include <pthread.h>

namespace ZSpace {

template <typename Thread>
class ZThreadObject_T;

/// The thread that a worker started last.
///
/// All operations may be called from any thread, except that only one thread may join at a time, and none may
/// start or detach the thread meanwhile. The lock is never held while joining.
template <>
class ZThreadObject_T<pthread_t*> {
public:
    /// Called on the new thread, before and after its work.
    using Hook = void (*)();

    ZThreadObject_T(const ZThreadObject_T&) = delete; // a thread has one owner
    ZThreadObject_T& operator=(const ZThreadObject_T&) = delete;

    /// Whether there is a thread whose work has not ended.
    ///
    /// Synchronizes with the end of the work: once this returns false, the work's writes are visible.
    [[nodiscard]] bool isRunning() noexcept;

    /// Joins the thread and clears the handle. Returns immediately if there is no thread, or if called on the
    /// thread itself.
    void join() noexcept;

    /// Detaches the thread, which then no longer needs this object.
    void close() noexcept;

    /// The thread started last, even if joined or detached; null before the first start. For diagnostics
    /// only: the thread may have ended, and its handle may belong to another thread by now.
    [[nodiscard]] pthread_t lastThread() noexcept;

    /// Sets what the next thread calls before and after its work; null for nothing.
    void setHooks(Hook before, Hook after) noexcept;

protected:
    ZThreadObject_T() noexcept = default;
    /// Detaches the thread.
    ~ZThreadObject_T() { close(); }

    /// True from the start of a thread to the end of its work. Shared with the thread, which may outlive this
    /// object.
    using RunningFlag = std::atomic<bool>;

    ZThreadLock_T<pthread_mutex_t> m_lock; // guards everything below
    pthread_t m_lastThread{}; // kept when the thread is joined or detached
    pthread_t m_thread{}; // null if there is none
    /// Called on a new thread before its work.
    Hook m_beforeWork = nullptr;
    /// Called on a new thread after its work.
    Hook m_afterWork = nullptr;
    ZRef<RunningFlag> m_running; // the flag of the last start
};

template <typename Thread>
class ZThread_T;

/// A worker that runs one task at a time on a thread of its own.
///
///     ZThread_T<pthread_t*> worker;
///     worker.execute(new ZExecutor2V<int, bool>(...));
///     worker.join();
///
/// Destruction detaches the thread instead of joining it, so objects that the work refers to must outlive the
/// work.
template <>
class ZThread_T<pthread_t*> : public ZThreadObject_T<pthread_t*> {
public:
    /// Detaches the previous thread and invokes `invokable` on a new one, which deletes it afterwards.
    ///
    /// Always adopts `invokable`; does nothing if it is null. Calls `std::terminate` if an exception escapes from it.
    /// @return whether a thread was created; if not, `invokable` is deleted.
    /// @throws std::bad_alloc with `invokable` deleted and nothing else changed.
    bool execute(ZInvokable<void>* invokable);

private:
    static void* thread_redir_point(void* argument);
};

} // namespace ZSpace
