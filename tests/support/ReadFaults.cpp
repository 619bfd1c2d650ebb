// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/ReadFaults.h"

#include <cstddef>
#include <cstdio>
#include <dlfcn.h>

namespace {

thread_local long s_readsLeft = -1; // until the fault; negative: no fault
thread_local bool s_hasFailed = false;
thread_local long s_claimed = -1; // negative: no claim

template <typename Function>
Function* libraryFunction(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

// A program's own definitions take precedence over those of the C library.

extern "C" std::size_t fread(void* buffer, std::size_t size, std::size_t count, FILE* file)
{
    static auto* const libraryRead =
        libraryFunction<std::size_t(void*, std::size_t, std::size_t, FILE*)>("fread");
    if (s_claimed >= 0)
        return static_cast<std::size_t>(s_claimed);
    if (s_readsLeft == 0)
        s_hasFailed = true;
    else if (s_readsLeft > 0)
        --s_readsLeft;
    return libraryRead(buffer, size, s_hasFailed ? count / 2 : count, file);
}

extern "C" int ferror(FILE* file)
{
    static auto* const libraryError = libraryFunction<int(FILE*)>("ferror");
    return s_hasFailed ? 1 : libraryError(file);
}

namespace ZSpace::Testing {

ReadFault::ReadFault(long nth) noexcept
{
    s_readsLeft = nth - 1;
}

ReadFault::~ReadFault()
{
    s_readsLeft = -1;
    s_hasFailed = false;
}

ClaimedRead::ClaimedRead(long count) noexcept
{
    s_claimed = count;
}

ClaimedRead::~ClaimedRead()
{
    s_claimed = -1;
}

} // namespace ZSpace::Testing
