// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/ThreadNumber.h"

#include <pthread.h>

namespace ZSpace::Host {

unsigned int threadNumber() noexcept
{
    return pthread_mach_thread_np(pthread_self()); // reads user-space memory: no system call
}

} // namespace ZSpace::Host
