// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <array>
#include <atomic>
#include <cstddef>

namespace ZSpace::detail {

/// Guards the references of loggables to their books, so that books can be exchanged while other threads log.
///
/// The lock is split into stripes. A thread that takes a reference to the book locks one stripe, usually its own, so
/// threads that log do not contend; a thread that exchanges a book locks all. No critical section calls foreign code,
/// waits or takes another lock.
class BookLock {
public:
    static BookLock& instance() noexcept { return s_instance; }

    BookLock(const BookLock&) = delete; // one for the process
    BookLock& operator=(const BookLock&) = delete;

    /// For `std::lock_guard`: all stripes, to exchange a book.
    void lock() noexcept;
    void unlock() noexcept;

    /// One stripe, to take a reference.
    class alignas(64) Stripe {
    public:
        void lock() noexcept
        {
            if (m_isLocked.exchange(true, std::memory_order_acquire)) [[unlikely]]
                wait();
        }
        void unlock() noexcept { m_isLocked.store(false, std::memory_order_release); }

    private:
        /// Locks a stripe that another thread holds.
        void wait() noexcept;

        std::atomic<bool> m_isLocked{false};
    };
    /// The calling thread's stripe.
    Stripe& stripe() noexcept { return s_ofThread ? *s_ofThread : assignStripe(); }

private:
    static constexpr std::size_t s_stripeCount = 16;
    static constinit BookLock s_instance;
    static thread_local constinit Stripe* s_ofThread; // null until the calling thread locks one

    BookLock() noexcept = default;

    Stripe& assignStripe() noexcept;

    std::array<Stripe, s_stripeCount> m_stripes;
};

} // namespace ZSpace::detail
