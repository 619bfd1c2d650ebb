// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/z_dbg.h"
#include "tests/support/LockTests.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <mutex>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

/// Uses the debug registry in a child of `fork`, which is killed if it takes too long.
/// @return whether the child exited normally.
bool childCanUseTheRegistry()
{
    const pid_t child = fork();
    if (child == 0) {
        alarm(20);
        int a = 0;
        z_dbg_add_eventreg(&a);
        z_dbg_rem_eventreg(&a);
        z_dbg_check_eventreg(&a);
        _exit(0);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void useTheRegistryOnce()
{
    int a = 0;
    z_dbg_add_eventreg(&a);
    z_dbg_rem_eventreg(&a);
}

TEST(ForkTest, WaitsForAnotherThreadThatHoldsTheRegistryLock)
{
    useTheRegistryOnce();
    std::atomic<bool> holds{false};
    std::atomic<bool> childEnded{false};
    std::thread holder([&] {
        {
            const std::lock_guard guard(g_eventreg_cs);
            holds = true;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        while (!childEnded) // one that ended before `fork` would be an unjoined thread of the child
            std::this_thread::yield();
    });
    while (!holds)
        std::this_thread::yield();
    EXPECT_TRUE(childCanUseTheRegistry());
    childEnded = true;
    holder.join();
    useTheRegistryOnce();
}

TEST(ForkTest, ForkWaitsUntilTheRegistryIsFree)
{
    EXPECT_TRUE(waitsFor(g_eventreg_cs, [] {
        const pid_t child = fork();
        if (child == 0)
            _exit(0);
        waitpid(child, nullptr, 0);
    }));
}

TEST(ForkTest, ChildCanUseTheRegistryIfItsParentThreadHeldTheLock)
{
    useTheRegistryOnce();
    {
        const std::lock_guard guard(g_eventreg_cs);
        EXPECT_TRUE(childCanUseTheRegistry());
    }
    std::thread(useTheRegistryOnce).join(); // the parent's lock is free again
}

TEST(ForkTest, ChildrenOfABusyParentCanUseTheRegistry)
{
    std::atomic<bool> stop{false};
    std::vector<std::thread> threads;
    for (int t = 0; t < 2; ++t) {
        threads.emplace_back([&] {
            while (!stop)
                useTheRegistryOnce();
        });
    }
    for (int i = 0; i < 20; ++i)
        EXPECT_TRUE(childCanUseTheRegistry());
    stop = true;
    for (std::thread& thread : threads)
        thread.join();
}

} // namespace
} // namespace ZSpace::Testing
