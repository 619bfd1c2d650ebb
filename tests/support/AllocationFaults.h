// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <gtest/gtest.h>

#include <new>

/// Allocations that are counted and made to fail, for test programs that have AllocationFaults.cpp among
/// their sources: it replaces the global `operator new`. Counts and faults are those of the calling thread.
namespace ZSpace::Testing {

/// The allocations that this thread has asked for so far.
[[nodiscard]] long allocationsMade() noexcept;

/// The blocks that this thread has had, less those that it has freed.
[[nodiscard]] long blocksAlive() noexcept;

/// Looks at an object, for all that a compiler knows: it may not leave out the allocations of something
/// unused.
void keep(const void* object) noexcept;

/// While it lives, the `nth` allocation from then on (1: the next one) throws `std::bad_alloc`.
class AllocationFault {
public:
    enum class Kind {
        Once, ///< only that one
        Lasting ///< and all that follow
    };

    explicit AllocationFault(long nth, Kind kind = Kind::Once) noexcept;
    AllocationFault(const AllocationFault&) = delete; // one at a time
    AllocationFault& operator=(const AllocationFault&) = delete;
    ~AllocationFault();

    /// Whether an allocation has failed.
    [[nodiscard]] bool hasStruck() const noexcept;
};

/// Runs `operation` with its first allocation failing, then with its second and so on, until it gets through.
/// Each run that is struck must throw `std::bad_alloc` and leave no block behind.
/// @return the number of struck runs, so the number of allocations that the operation makes.
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
