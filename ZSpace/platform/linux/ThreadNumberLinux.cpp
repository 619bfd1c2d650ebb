// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/ThreadNumber.h"

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

constinit thread_local unsigned int t_number = 0; // not cached: the kernel's numbers begin at 1
constinit bool g_mayCache = false;

/// In the child of `fork` the calling thread has another number.
void forgetNumber()
{
    t_number = 0;
}

/// Runs before other initializers of the program, so before there can be other threads: registration on first
/// use could be interrupted by another thread's fork.
[[gnu::constructor(101)]] void watchForks()
{
    g_mayCache = pthread_atfork(nullptr, nullptr, forgetNumber) == 0;
}

} // namespace

unsigned int threadNumber() noexcept
{
    if (t_number != 0)
        return t_number;
    const auto number = static_cast<unsigned int>(syscall(SYS_gettid));
    if (g_mayCache)
        t_number = number;
    return number;
}

} // namespace ZSpace::Host
