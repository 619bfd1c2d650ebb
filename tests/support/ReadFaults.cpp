// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/ReadFaults.h"

#include <cstddef>
#include <cstdio>
#include <dlfcn.h>

namespace {

thread_local long s_readsLeft = -1; // before the fault; negative: there is none
thread_local bool s_hasStruck = false;
thread_local long s_claimed = -1; // negative: nothing is claimed

template <typename Function>
Function* libraryFunction(const char* name)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

// A program's own functions go before those of the C library.

extern "C" std::size_t fread(void* buffer, std::size_t size, std::size_t count, FILE* file)
{
    static auto* const libraryRead =
        libraryFunction<std::size_t(void*, std::size_t, std::size_t, FILE*)>("fread");
    if (s_claimed >= 0)
        return static_cast<std::size_t>(s_claimed);
    if (s_readsLeft == 0)
        s_hasStruck = true;
    else if (s_readsLeft > 0)
        --s_readsLeft;
    return libraryRead(buffer, size, s_hasStruck ? count / 2 : count, file);
}

extern "C" int ferror(FILE* file)
{
    static auto* const libraryError = libraryFunction<int(FILE*)>("ferror");
    return s_hasStruck ? 1 : libraryError(file);
}

namespace ZSpace::Testing {

ReadFault::ReadFault(long nth) noexcept
{
    s_readsLeft = nth - 1;
}

ReadFault::~ReadFault()
{
    s_readsLeft = -1;
    s_hasStruck = false;
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
