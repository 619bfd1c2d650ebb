// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The test build of the program in which an allocation fails: the one whose number is in the environment, counted from
// `main` on; if a "+" follows the number, all later ones fail, too. Prints how many have failed.

#include "tests/app/PrivatePaths.h"

#include <cstdio>
#include <cstdlib>

#ifdef ZSPACE_SANITIZED

// The sanitizers have an allocator of their own, so only `operator new` fails, and leaks are detected.
#include "tests/support/AllocationFaults.h"

namespace {

class Fault {
public:
    Fault(long nth, bool isLasting)
        : m_fault(nth,
            isLasting ? ZSpace::Testing::AllocationFault::Kind::Lasting
                      : ZSpace::Testing::AllocationFault::Kind::Once)
    {
    }
    [[nodiscard]] int count() const { return m_fault.hasStruck() ? 1 : 0; }

private:
    ZSpace::Testing::AllocationFault m_fault;
};

} // namespace

#else

#include <cerrno>
#include <cstddef>

// The C library's allocator under the names by which replacements reach it.
extern "C" {
void* __libc_malloc(std::size_t);
void* __libc_calloc(std::size_t, std::size_t);
void* __libc_realloc(void*, std::size_t);
}

namespace {

constinit long s_untilFault = 0; // 0: no fault
constinit bool s_isLasting = false;
constinit int s_count = 0;

/// Whether this allocation fails; `errno` is set then.
bool fails() noexcept
{
    if (s_untilFault == 0 || --s_untilFault > 0)
        return false;
    s_untilFault = s_isLasting ? 1 : 0;
    ++s_count;
    errno = ENOMEM;
    return true;
}

class Fault {
public:
    Fault(long nth, bool isLasting)
    {
        s_isLasting = isLasting;
        s_untilFault = nth;
    }
    Fault(const Fault&) = delete; // one for the process
    Fault& operator=(const Fault&) = delete;
    ~Fault() { s_untilFault = 0; }
    [[nodiscard]] int count() const { return s_count; }
};

} // namespace

// A program's own definitions take precedence, for its libraries as well.
extern "C" {

void* malloc(std::size_t size)
{
    return fails() ? nullptr : __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size)
{
    return fails() ? nullptr : __libc_calloc(count, size);
}

void* realloc(void* block, std::size_t size)
{
    return fails() ? nullptr : __libc_realloc(block, size);
}

} // extern "C"

#endif

int launcherMain(); // the program's `main`

int main()
{
    const char* const number = std::getenv(ZSPACE_FAILING_ALLOCATION);
    char* end = nullptr;
    const long nth = number ? std::strtol(number, &end, 10) : 0;
    int status = 0;
    int count = 0;
    {
        const Fault fault(nth, end && *end == '+');
        status = launcherMain();
        count = fault.count();
    }
    std::printf("%d\n", count);
    return status;
}
