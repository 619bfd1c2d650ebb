// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/log/SystemCallFaults.h"

#include <cerrno>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace {

thread_local std::vector<ZSpace::Testing::WriteStep> t_steps;
thread_local std::size_t t_taken = 0;
thread_local bool t_hasPlan = false;
thread_local timespec t_time{};
thread_local bool t_isStopped = false;

} // namespace

extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t count)
{
    if (t_hasPlan && t_taken < t_steps.size()) {
        const ZSpace::Testing::WriteStep step = t_steps[t_taken++];
        if (step.error != 0) {
            errno = step.error;
            return -1;
        }
        count = step.limit < count ? step.limit : count;
    }
    return syscall(SYS_write, descriptor, bytes, count);
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept
{
    if (t_isStopped && clock == CLOCK_REALTIME) {
        *time = t_time;
        return 0;
    }
    // Calls the C library's own function, because a system call for each reading of the clock would count as
    // one of the log.
    static const auto s_original =
        reinterpret_cast<decltype(&clock_gettime)>(dlsym(RTLD_NEXT, "clock_gettime"));
    return s_original(clock, time);
}

namespace ZSpace::Testing {

WritePlan::WritePlan(std::initializer_list<WriteStep> steps)
{
    t_steps = steps;
    t_taken = 0;
    t_hasPlan = true;
}

WritePlan::~WritePlan()
{
    t_hasPlan = false;
}

std::size_t WritePlan::taken() const noexcept
{
    return t_taken;
}

StoppedClock::StoppedClock(const timespec& time) noexcept
{
    t_time = time;
    t_isStopped = true;
}

StoppedClock::~StoppedClock()
{
    t_isStopped = false;
}

} // namespace ZSpace::Testing
