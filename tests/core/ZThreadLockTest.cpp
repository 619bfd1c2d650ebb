// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZThreadLock.h"

#include "tests/support/LockTests.h"

#include <gtest/gtest.h>

#include <thread>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

using Lock = ZThreadLock_T<pthread_mutex_t>;
using PseudoLock = ZThreadPseudoLock_T<pthread_mutex_t>;

static_assert(sizeof(Lock) == sizeof(pthread_mutex_t));
static_assert(!std::is_copy_constructible_v<Lock> && !std::is_copy_assignable_v<Lock>);
static_assert(std::is_empty_v<TZThreadSafeTransaction<PseudoLock>>);

/// Whether another thread would block on the lock.
bool isTaken(Lock& lock)
{
    bool taken = false;
    std::thread([&] {
        auto* mutex = reinterpret_cast<pthread_mutex_t*>(&lock); // its only field
        taken = pthread_mutex_trylock(mutex) != 0;
        if (!taken)
            pthread_mutex_unlock(mutex);
    }).join();
    return taken;
}

TEST(ZThreadLockTest, SameThreadLocksTwiceAndUnlocksTwice)
{
    Lock lock;
    EXPECT_FALSE(isTaken(lock));
    lock.lock();
    lock.lock();
    lock.unlock();
    EXPECT_TRUE(isTaken(lock));
    lock.unlock();
    EXPECT_FALSE(isTaken(lock));
}

TEST(ZThreadLockTest, TryingTakesTheLockUnlessAnotherThreadHoldsIt)
{
    Lock lock;
    EXPECT_TRUE(lock.try_lock());
    EXPECT_TRUE(lock.try_lock());
    std::thread([&] { EXPECT_FALSE(lock.try_lock()); }).join();
    lock.unlock();
    EXPECT_TRUE(isTaken(lock));
    lock.unlock();
    EXPECT_FALSE(isTaken(lock));
}

TEST(ZThreadLockTest, ExcludesOtherThreads)
{
    constexpr int s_rounds = 5'000;
    Lock lock;
    int count = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < s_rounds; ++i) {
                lock.lock();
                lock.lock();
                ++count;
                lock.unlock();
                lock.unlock();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(count, 4 * s_rounds);
}

TEST(ZThreadPseudoLockTest, NeverBlocks)
{
    PseudoLock lock;
    lock.lock();
    std::thread([&] {
        lock.lock();
        lock.unlock();
    }).join();
    lock.unlock();
}

TEST(TZThreadSafeTransactionTest, DoesNothingWithThePseudoLock)
{
    TZThreadSafeTransaction<PseudoLock> transaction;
    transaction.beginTransaction();
    std::thread([&] {
        transaction.beginTransaction();
        transaction.endTransaction();
    }).join();
    transaction.endTransaction();
    transaction.endTransaction();
}

TEST(TZThreadSafeTransactionTest, HoldsARealLockInBetween)
{
    struct TransactionAsLock : TZThreadSafeTransaction<Lock> {
        void lock() { beginTransaction(); }
        void unlock() { endTransaction(); }
    };
    TransactionAsLock transaction;
    EXPECT_TRUE(waitsFor(transaction, [&] {
        transaction.beginTransaction();
        transaction.endTransaction();
    }));
}

} // namespace
} // namespace ZSpace::Testing
