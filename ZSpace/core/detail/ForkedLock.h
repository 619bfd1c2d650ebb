// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZThreadLock.h"

#include <memory>

namespace ZSpace::detail {

/// Frees a lock that `fork` held in the parent, in the child. Unlocking is not enough: the C library refuses to unlock
/// a recursive lock that a thread of the parent owns. It is done for the sake of tools that track locks.
inline void freeInChild(ZThreadLock_T<pthread_mutex_t>& lock) noexcept
{
    lock.unlock();
    std::construct_at(&lock);
}

} // namespace ZSpace::detail
