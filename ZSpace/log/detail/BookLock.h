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
    static BookLock& instance() noexcept;

    BookLock() noexcept = default;
    BookLock(const BookLock&) = delete; // one for the process
    BookLock& operator=(const BookLock&) = delete;

    /// For `std::lock_guard`: all stripes, to exchange a book.
    void lock() noexcept;
    void unlock() noexcept;

    /// One stripe, to take a reference.
    class alignas(64) Stripe {
    public:
        void lock() noexcept;
        void unlock() noexcept { m_isLocked.store(false, std::memory_order_release); }

    private:
        std::atomic<bool> m_isLocked{false};
    };
    /// The calling thread's stripe.
    Stripe& stripe() noexcept;

private:
    static constexpr std::size_t s_stripeCount = 16;

    std::array<Stripe, s_stripeCount> m_stripes;
};

} // namespace ZSpace::detail
