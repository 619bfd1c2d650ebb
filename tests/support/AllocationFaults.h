// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <new>

/// Counts allocations and makes them fail, in test programs that compile AllocationFaults.cpp: it replaces
/// the global `operator new`. Counts and faults are per thread.
namespace ZSpace::Testing {

/// The number of allocations that this thread has requested so far.
[[nodiscard]] long allocationsMade() noexcept;

/// The size in bytes of this thread's latest allocation.
[[nodiscard]] std::size_t lastAllocationSize() noexcept;

/// The number of blocks that this thread has allocated and not freed.
[[nodiscard]] long blocksAlive() noexcept;

/// Keeps the compiler from optimizing away an unused object and its allocations.
void keep(const void* object) noexcept;

/// During its lifetime, the `nth` allocation (1: the next one) throws `std::bad_alloc`.
class AllocationFault {
public:
    enum class Kind {
        Once, ///< only that allocation
        Lasting ///< and every later one
    };

    explicit AllocationFault(long nth, Kind kind = Kind::Once) noexcept;
    AllocationFault(const AllocationFault&) = delete; // one at a time
    AllocationFault& operator=(const AllocationFault&) = delete;
    ~AllocationFault();

    /// Whether an allocation has failed.
    [[nodiscard]] bool hasStruck() const noexcept;
};

/// Runs `operation` with its first allocation failing, then with its second and so on, until it succeeds.
/// Each failing run must throw `std::bad_alloc` and leak nothing.
/// @return the number of failing runs, which is the number of allocations that the operation makes.
template <typename Operation>
long failEachAllocation(Operation operation)
{
    for (long nth = 1;; ++nth) {
        const long alive = blocksAlive();
        bool threw = false;
        bool struck = false;
        {
            const AllocationFault fault(nth);
            try {
                operation();
            } catch (const std::bad_alloc&) {
                threw = true;
            }
            struck = fault.hasStruck();
        }
        if (!struck)
            return nth - 1;
        EXPECT_TRUE(threw) << "the failure of allocation " << nth << " was swallowed";
        EXPECT_EQ(blocksAlive(), alive) << "after the failure of allocation " << nth;
    }
}

} // namespace ZSpace::Testing
