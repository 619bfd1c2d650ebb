// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/BookLock.h"

#include <chrono>
#include <thread>

namespace ZSpace::detail {

namespace {

constinit BookLock s_instance;

constinit std::atomic<std::size_t> s_threadCount{0};

struct ThreadStripe {
    std::size_t index = 0;
    bool isAssigned = false;
};
thread_local constinit ThreadStripe t_stripe;

} // namespace

BookLock& BookLock::instance() noexcept
{
    return s_instance;
}

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

BookLock::Stripe& BookLock::stripe() noexcept
{
    ThreadStripe& own = t_stripe;
    if (!own.isAssigned)
        own = {s_threadCount.fetch_add(1, std::memory_order_relaxed) % s_stripeCount, true};
    return m_stripes[own.index];
}

/// The owner needs only a few instructions, unless it has been preempted. Sleeping lets it continue whatever its
/// priority.
void BookLock::Stripe::lock() noexcept
{
    constexpr int attempts = 100;
    for (int attempt = 0; m_isLocked.exchange(true, std::memory_order_acquire); ++attempt) {
        if (attempt >= attempts)
            std::this_thread::sleep_for(std::chrono::microseconds(20));
    }
}

} // namespace ZSpace::detail
