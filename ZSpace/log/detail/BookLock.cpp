// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/BookLock.h"

#include <chrono>
#include <thread>

namespace ZSpace::detail {

namespace {

constinit std::atomic<std::size_t> s_threadCount{0};

} // namespace

constinit BookLock BookLock::s_instance;
thread_local constinit BookLock::Stripe* BookLock::s_ofThread = nullptr;

void BookLock::lock() noexcept
{
    for (Stripe& stripe : m_stripes)
        stripe.lock();
}

void BookLock::unlock() noexcept
{
    for (Stripe& stripe : m_stripes)
        stripe.unlock();
}

BookLock::Stripe& BookLock::assignStripe() noexcept
{
    s_ofThread = &m_stripes[s_threadCount.fetch_add(1, std::memory_order_relaxed) % s_stripeCount];
    return *s_ofThread;
}

/// The owner needs only a few instructions, unless it has been preempted. Sleeping lets it continue whatever its
/// priority.
void BookLock::Stripe::wait() noexcept
{
    constexpr int attempts = 100;
    for (int attempt = 0; m_isLocked.exchange(true, std::memory_order_acquire); ++attempt) {
        if (attempt >= attempts)
            std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
}

} // namespace ZSpace::detail
