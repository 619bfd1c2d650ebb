// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>
#include <chrono>
#include <thread>

namespace ZSpace::Testing {

/// Whether `operation`, run on another thread, waits for `lock`. Returns when it has ended.
template <typename Lock, typename Operation>
[[nodiscard]] bool waitsFor(Lock& lock, Operation operation)
{
    std::atomic<bool> started{false};
    std::atomic<bool> done{false};
    lock.lock();
    std::thread other([&] {
        started = true;
        operation();
        done = true;
    });
    while (!started)
        std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    const bool waits = !done;
    lock.unlock();
    other.join();
    return waits;
}

} // namespace ZSpace::Testing
