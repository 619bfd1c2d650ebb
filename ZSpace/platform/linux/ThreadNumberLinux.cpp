// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/ThreadNumber.h"

#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace ZSpace::Host {

namespace {

thread_local unsigned int t_number = 0;

/// The thread that called `fork` goes on in the child under another number.
void forgetNumber()
{
    t_number = 0;
}

unsigned int askForNumber() noexcept
{
    [[maybe_unused]] static const int watching = pthread_atfork(nullptr, nullptr, forgetNumber);
    return t_number = static_cast<unsigned int>(syscall(SYS_gettid));
}

} // namespace

unsigned int threadNumber() noexcept
{
    return t_number != 0 ? t_number : askForNumber();
}

} // namespace ZSpace::Host
