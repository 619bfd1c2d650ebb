// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZThreadLock.h"

#include <memory>

namespace ZSpace::detail {

/// Frees a lock in a child of `fork` whose parent held it for the fork. Unlocking is not enough: a recursive lock
/// belongs to a thread of the parent, so the C library refuses. It is called for the tools that keep account of locks.
inline void freeInChild(ZThreadLock_T<pthread_mutex_t>& lock) noexcept
{
    lock.unlock();
    std::construct_at(&lock);
}

} // namespace ZSpace::detail
