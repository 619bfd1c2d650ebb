// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZThread.h"

#include <memory>
#include <utility>

namespace ZSpace {

bool ZThreadObject_T<pthread_t*>::isRunning() noexcept
{
    m_lock.lock();
    const bool running = m_thread != pthread_t{} && m_running && m_running->load(std::memory_order_acquire);
    m_lock.unlock();
    return running;
}

void ZThreadObject_T<pthread_t*>::join() noexcept
{
    m_lock.lock();
    const pthread_t thread = m_thread;
    const ZRef<RunningFlag> running = m_running;
    m_lock.unlock();

    const bool hasThread = thread != pthread_t{};
    if (hasThread && (pthread_equal(thread, pthread_self()) || pthread_join(thread, nullptr) != 0))
        return;

    m_lock.lock();
    if (running)
        running->store(false, std::memory_order_relaxed);
    if (hasThread)
        m_thread = pthread_t{};
    m_lock.unlock();
}

void ZThreadObject_T<pthread_t*>::close() noexcept
{
    m_lock.lock();
    if (m_thread != pthread_t{})
        pthread_detach(std::exchange(m_thread, pthread_t{}));
    m_lock.unlock();
}

pthread_t ZThreadObject_T<pthread_t*>::lastThread() noexcept
{
    m_lock.lock();
    const pthread_t thread = m_lastThread;
    m_lock.unlock();
    return thread;
}

void ZThreadObject_T<pthread_t*>::setHooks(Hook before, Hook after) noexcept
{
    m_lock.lock();
    m_beforeWork = before;
    m_afterWork = after;
    m_lock.unlock();
}

namespace {

/// What a new thread needs to know. It must not look at the worker, which may be gone by then.
struct Start {
    void (*beforeWork)() = nullptr;
    void (*afterWork)() = nullptr;
    std::unique_ptr<ZInvokable<void>> invokable;
    ZRef<std::atomic<bool>> running;
};

} // namespace

bool ZThread_T<pthread_t*>::execute(ZInvokable<void>* invokable)
{
    std::unique_ptr<ZInvokable<void>> work(invokable);
    const ZRef<RunningFlag> running(new RunningFlag(true));
    auto start = std::make_unique<Start>();
    start->invokable = std::move(work);
    start->running = running;

    m_lock.lock();
    close();
    start->beforeWork = m_beforeWork;
    start->afterWork = m_afterWork;
    pthread_t thread;
    const bool made = pthread_create(&thread, nullptr, &thread_redir_point, start.get()) == 0;
    if (made) {
        static_cast<void>(start.release());
        m_lastThread = thread;
        m_thread = thread;
        m_running = running;
    }
    m_lock.unlock();
    return made;
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
