// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZThread.h"

#include <memory>
#include <mutex>
#include <utility>

namespace ZSpace {

bool ZThreadObject_T<pthread_t*>::isRunning() noexcept
{
    const std::lock_guard guard(m_lock);
    return m_thread != pthread_t{} && m_running && m_running->load(std::memory_order_acquire);
}

void ZThreadObject_T<pthread_t*>::join() noexcept
{
    pthread_t thread;
    ZRef<RunningFlag> running;
    {
        const std::lock_guard guard(m_lock);
        thread = m_thread;
        running = m_running;
    }

    const bool hasThread = thread != pthread_t{};
    if (hasThread && (pthread_equal(thread, pthread_self()) || pthread_join(thread, nullptr) != 0))
        return;

    const std::lock_guard guard(m_lock);
    if (running)
        running->store(false, std::memory_order_relaxed);
    if (hasThread)
        m_thread = pthread_t{};
}

void ZThreadObject_T<pthread_t*>::close() noexcept
{
    const std::lock_guard guard(m_lock);
    if (m_thread != pthread_t{})
        pthread_detach(std::exchange(m_thread, pthread_t{}));
}

pthread_t ZThreadObject_T<pthread_t*>::lastThread() noexcept
{
    const std::lock_guard guard(m_lock);
    return m_lastThread;
}

void ZThreadObject_T<pthread_t*>::setHooks(Hook before, Hook after) noexcept
{
    const std::lock_guard guard(m_lock);
    m_beforeWork = before;
    m_afterWork = after;
}

namespace {

/// Everything that a new thread needs. It must not access the worker, which may be destroyed by then.
struct Start {
    void (*beforeWork)() = nullptr;
    void (*afterWork)() = nullptr;
    std::unique_ptr<ZInvokable<void>> invokable;
    ZRef<std::atomic<bool>> running;
};

} // namespace

bool ZThread_T<pthread_t*>::execute(ZInvokable<void>* invokable)
{
    if (!invokable)
        return false;
    std::unique_ptr<ZInvokable<void>> work(invokable);
    const ZRef<RunningFlag> running(new RunningFlag(true));
    auto start = std::make_unique<Start>();
    start->invokable = std::move(work);
    start->running = running;

    const std::lock_guard guard(m_lock);
    close();
    start->beforeWork = m_beforeWork;
    start->afterWork = m_afterWork;
    pthread_t thread;
    if (pthread_create(&thread, nullptr, &thread_redir_point, start.get()) != 0)
        return false;
    static_cast<void>(start.release()); // the thread owns it
    m_lastThread = thread;
    m_thread = thread;
    m_running = running;
    return true;
}

void* ZThread_T<pthread_t*>::thread_redir_point(void* argument)
{
    const std::unique_ptr<Start> start(static_cast<Start*>(argument));
    if (start->beforeWork)
        start->beforeWork();
    start->invokable->invoke();
    start->running->store(false, std::memory_order_release);
    if (start->afterWork)
        start->afterWork();
    return nullptr;
}

} // namespace ZSpace
