// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZThreadLock.h"

#include <pthread.h>

/// Keeps the locks of the log usable in a child that is forked while other threads log: `fork` holds them all, so
/// that nothing is copied in the middle of a change, and the child gets free ones.
///
/// A thread that is stuck in a write, for example to a pipe that nobody reads, keeps its book's lock. It delays
/// `fork` by a tenth of a second.
namespace ZSpace::detail {

using BookMutex = ZThreadLock_T<pthread_mutex_t>;

/// Includes the lock of a book until `leaveForkSafety`. Best effort: not included if allocation fails.
void enterForkSafety(BookMutex& mutex) noexcept;
void leaveForkSafety(BookMutex& mutex) noexcept;

} // namespace ZSpace::detail
