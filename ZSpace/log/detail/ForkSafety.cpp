// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/ForkSafety.h"

#include "ZSpace/core/detail/ForkedLock.h"
#include "ZSpace/log/detail/BookLock.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <pthread.h>
#include <span>
#include <thread>

namespace ZSpace::detail {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds s_timeout(100);

/// The locks of all books that exist.
class LiveLocks {
public:
    /// Never destroyed: books may outlive static objects.
    static LiveLocks& instance()
    {
        static auto& s_instance = *new LiveLocks;
        return s_instance;
    }

    void add(BookMutex& mutex) noexcept
    {
        const std::lock_guard guard(m_mutex);
        if (m_count == m_capacity && !grow())
            return;
        m_locks[m_count++] = {&mutex, false};
    }
    void remove(const BookMutex& mutex) noexcept
    {
        const std::lock_guard guard(m_mutex);
        Entry* const end = m_locks + m_count;
        Entry* const found =
            std::find_if(m_locks, end, [&](const Entry& entry) { return entry.mutex == &mutex; });
        if (found != end)
            *found = m_locks[--m_count];
    }

    void beforeFork() noexcept
    {
        m_mutex.lock();
        const Clock::time_point end = Clock::now() + s_timeout;
        for (Entry& entry : entries())
            entry.isHeld = tryLockUntil(*entry.mutex, end);
        BookLock::instance().lock();
    }
    void afterForkInParent() noexcept
    {
        BookLock::instance().unlock();
        for (const Entry& entry : entries()) {
            if (entry.isHeld)
                entry.mutex->unlock();
        }
        m_mutex.unlock();
    }
    void afterForkInChild() noexcept
    {
        BookLock::instance().unlock();
        for (const Entry& entry : entries()) {
            if (entry.isHeld)
                freeInChild(*entry.mutex);
            else
                std::construct_at(entry.mutex); // its owner does not exist in the child
        }
        m_mutex.unlock();
    }

private:
    struct Entry {
        BookMutex* mutex;
        bool isHeld; // by `fork`
    };

    LiveLocks()
    {
        pthread_atfork([] { instance().beforeFork(); }, [] { instance().afterForkInParent(); },
            [] { instance().afterForkInChild(); });
    }

    static bool tryLockUntil(BookMutex& mutex, Clock::time_point end) noexcept
    {
        while (!mutex.try_lock()) {
            if (Clock::now() > end)
                return false;
            std::this_thread::yield();
        }
        return true;
    }

    [[nodiscard]] std::span<Entry> entries() noexcept { return {m_locks, m_count}; }

    /// Does not throw, so that a book can be created even if this allocation fails.
    bool grow() noexcept
    {
        const std::size_t capacity = 2 * m_capacity + 16;
        void* const larger = std::realloc(m_locks, capacity * sizeof(Entry));
        if (!larger)
            return false;
        m_locks = static_cast<Entry*>(larger);
        m_capacity = capacity;
        return true;
    }

    std::mutex m_mutex; // guards all members
    Entry* m_locks = nullptr;
    std::size_t m_count = 0;
    std::size_t m_capacity = 0;
};

/// Registers the handlers before the first line is logged, which may need no book.
[[maybe_unused]] const LiveLocks& s_registered = LiveLocks::instance();

} // namespace

void enterForkSafety(BookMutex& mutex) noexcept
{
    LiveLocks::instance().add(mutex);
}

void leaveForkSafety(BookMutex& mutex) noexcept
{
    LiveLocks::instance().remove(mutex);
}

} // namespace ZSpace::detail
