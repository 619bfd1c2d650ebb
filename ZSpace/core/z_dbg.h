// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/ZThreadLock.h"

namespace ZSpace {

/// The addresses registered for events, each as often as it was added, guarded by the lock beside it.
///
/// Being inline variables, both are there before the static objects of every file that includes this header,
/// and go after them.
inline constinit ZArray<void*, ZAllocationBuf<void*>> g_eventregistrations;
inline ZThreadLock_T<pthread_mutex_t> g_eventreg_cs;

/// Notes a registration of `p`. May be called from any thread, as may the next two.
void z_dbg_add_eventreg(void* p) noexcept;

/// Strikes out one registration of `p`.
/// @throws int -1 if there is none.
void z_dbg_rem_eventreg(void* p);

/// For objects that are about to go: checks that no registration of `p` is left.
/// @throws int -1 if there is one.
void z_dbg_check_eventreg(void* p);

/// Does nothing: a place for a breakpoint.
void z_dbg_breakpoint() noexcept;

/// Does nothing with `text`: a place to watch.
void z_dbg_trace(const char* text) noexcept;

/// Reports a failed check on standard output, as one line: `expression - File: file - Line: 12`.
///
/// With `abortNow` the process ends in `abort()`. A null text ends the line there and leaves `std::cout` in
/// its failed state, as every null text does that is written to a stream.
void z_dbg_error(const char* expression, const char* file, unsigned int line, bool abortNow);

} // namespace ZSpace
