// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZThreadLock.h"

#include <pthread.h>

/// Keeps the locks of the log usable in a child that is forked while other threads log: all locks are held during
/// `fork`, so that no change is copied half-done, and are free in the child.
///
/// A thread that is stuck in a write, for example to a pipe without a reader, keeps its book's lock. It delays `fork`
/// by a tenth of a second.
namespace ZSpace::detail {

using BookMutex = ZThreadLock_T<pthread_mutex_t>;

/// Adds the lock of a book until `leaveForkSafety`. Best effort: does nothing if allocation fails.
void enterForkSafety(BookMutex& mutex) noexcept;
void leaveForkSafety(BookMutex& mutex) noexcept;

} // namespace ZSpace::detail
