// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/AllocationFaults.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace ZSpace::Testing {

namespace {

struct Ledger {
    long made = 0;
    long freed = 0;
    long failed = 0;
    std::size_t lastSize = 0;
    long untilFault = 0; ///< 0: no fault is set
    bool lasting = false;
    bool struck = false;
};

constinit thread_local Ledger t_ledger;

/// Counts an allocation. Returns whether it must fail.
bool strikes() noexcept
{
    Ledger& ledger = t_ledger;
    ++ledger.made;
    if (ledger.untilFault == 0 || --ledger.untilFault > 0)
        return false;
    ledger.untilFault = ledger.lasting ? 1 : 0;
    ledger.struck = true;
    ++ledger.failed;
    return true;
}

void* allocate(std::size_t size) noexcept
{
    t_ledger.lastSize = size;
    if (strikes() || size > PTRDIFF_MAX) // sanitizers abort if `malloc` is asked for this much
        return nullptr;
    return std::malloc(std::max<std::size_t>(size, 1));
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept
{
    t_ledger.lastSize = size;
    void* block = nullptr;
    const std::size_t bytes = std::max(static_cast<std::size_t>(alignment), sizeof(void*));
    return strikes() || posix_memalign(&block, bytes, std::max<std::size_t>(size, 1)) ? nullptr : block;
}

void* orThrow(void* block)
{
    if (!block)
        throw std::bad_alloc();
    return block;
}

void release(void* block) noexcept
{
    if (!block)
        return;
    ++t_ledger.freed;
    std::free(block);
}

} // namespace

long allocationsMade() noexcept
{
    return t_ledger.made;
}

std::size_t lastAllocationSize() noexcept
{
    return t_ledger.lastSize;
}

long blocksAlive() noexcept
{
    return t_ledger.made - t_ledger.failed - t_ledger.freed;
}

void keep(const void*) noexcept { }

AllocationFault::AllocationFault(long nth, Kind kind) noexcept
{
    t_ledger.untilFault = nth;
    t_ledger.lasting = kind == Kind::Lasting;
    t_ledger.struck = false;
}

AllocationFault::~AllocationFault()
{
    t_ledger.untilFault = 0;
}

bool AllocationFault::hasStruck() const noexcept
{
    return t_ledger.struck;
}

} // namespace ZSpace::Testing

using namespace ZSpace::Testing;

void* operator new(std::size_t size)
{
    return orThrow(allocate(size));
}
void* operator new[](std::size_t size)
{
    return orThrow(allocate(size));
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return orThrow(allocate(size, alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return allocate(size);
}
void operator delete(void* block) noexcept
{
    release(block);
}
void operator delete[](void* block) noexcept
{
    release(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    release(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    release(block);
}
void operator delete(void* block, std::align_val_t) noexcept
{
    release(block);
}
void operator delete[](void* block, std::align_val_t) noexcept
{
    release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept
{
    release(block);
}
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept
{
    release(block);
}
void operator delete(void* block, const std::nothrow_t&) noexcept
{
    release(block);
}
void operator delete[](void* block, const std::nothrow_t&) noexcept
{
    release(block);
}
