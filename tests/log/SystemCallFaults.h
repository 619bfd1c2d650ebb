// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <ctime>
#include <initializer_list>

/// Replaces `write` and `clock_gettime` of the C library in test programs that compile SystemCallFaultsLinux.cpp.
/// Faults are per thread.
namespace ZSpace::Testing {

/// What one call of `write` does.
struct WriteStep {
    int error = 0; ///< fails with this error
    std::size_t limit = static_cast<std::size_t>(-1); ///< writes at most this many bytes
};

/// During its lifetime, the calls of `write` follow the steps, one each; later calls are normal.
class WritePlan {
public:
    WritePlan(std::initializer_list<WriteStep> steps);
    WritePlan(const WritePlan&) = delete; // one at a time
    WritePlan& operator=(const WritePlan&) = delete;
    ~WritePlan();

    /// The number of steps that have been taken.
    [[nodiscard]] std::size_t taken() const noexcept;
};

/// During its lifetime, the clock returns `time`.
class StoppedClock {
public:
    explicit StoppedClock(const timespec& time) noexcept;
    StoppedClock(const StoppedClock&) = delete; // one at a time
    StoppedClock& operator=(const StoppedClock&) = delete;
    ~StoppedClock();
};

} // namespace ZSpace::Testing
