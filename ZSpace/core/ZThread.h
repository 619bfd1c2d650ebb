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

/// The thread that a worker has started last: whether it runs, waiting for it, letting it go.
///
/// All operations may be called from any thread, but nobody may start or let go a thread while somebody waits
/// for it, and only one may wait. The lock is held for a moment only, never while waiting.
template <>
class ZThreadObject_T<pthread_t*> {
public:
    /// Called on the new thread, before its work and after it.
    using Hook = void (*)();

    ZThreadObject_T(const ZThreadObject_T&) = delete; // one owner of a thread
    ZThreadObject_T& operator=(const ZThreadObject_T&) = delete;

    /// Whether there is a thread whose work has not ended.
    ///
    /// Once this is false because the work has ended, the caller sees all that the work has written.
    [[nodiscard]] bool isRunning() noexcept;

    /// Waits for the thread to end and forgets it. Returns at once where there is none, and on the thread
    /// itself.
    void join() noexcept;

    /// Forgets the thread, which goes on by itself and no longer needs this object.
    void close() noexcept;

    /// The thread started last, forgotten or not; null before the first start. For reports: it may have
    /// ended, and its handle may have passed to another thread.
    [[nodiscard]] pthread_t lastThread() noexcept;

    /// Sets what the next thread calls around its work; null calls nothing.
    void setHooks(Hook before, Hook after) noexcept;

protected:
    ZThreadObject_T() noexcept = default;
    /// Lets the thread go.
    ~ZThreadObject_T() { close(); }

    /// Set from the start of a thread to the end of its work. The thread has a share of its own: it may
    /// outlive the object.
    using RunningFlag = std::atomic<bool>;

    ZThreadLock_T<pthread_mutex_t> m_lock; // guards all below
    pthread_t m_lastThread{}; // stays when the thread is forgotten
    pthread_t m_thread{}; // null when there is none
    Hook m_beforeWork = nullptr;
    Hook m_afterWork = nullptr;
    ZRef<RunningFlag> m_running; // that of the last start
};

template <typename Thread>
class ZThread_T;

/// A worker: does one thing at a time on a thread of its own.
///
///     ZThread_T<pthread_t*> worker;
///     worker.execute(new ZExecutor2V<int, bool>(...));
///     worker.join();
///
/// Destruction does not wait: it lets the thread go. What the work refers to must then live until the work
/// has ended.
template <>
class ZThread_T<pthread_t*> : public ZThreadObject_T<pthread_t*> {
public:
    /// Lets the previous thread go and invokes `invokable` on a new one, which destroys it afterwards.
    ///
    /// Takes `invokable` over in any case. An exception that escapes from it ends the process.
    /// @return whether a thread was made; if not, `invokable` is destroyed.
    /// @throws std::bad_alloc before anything is changed.
    bool execute(ZInvokable<void>* invokable);

private:
    static void* thread_redir_point(void* argument);
};

} // namespace ZSpace
