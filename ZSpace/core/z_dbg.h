// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/ZThreadLock.h"

namespace ZSpace {

/// The addresses registered for events, once per registration, and the lock that guards them.
///
/// As inline variables they are constructed before, and destroyed after, the static objects of every source
/// file that includes this header.
inline constinit ZArray<void*, ZAllocationBuf<void*>> g_eventregistrations;
/// Guards the registry.
inline ZThreadLock_T<pthread_mutex_t> g_eventreg_cs;

/// Adds a registration of `p`. Thread-safe, as are the next two functions; usable in a child of `fork` too.
void z_dbg_add_eventreg(void* p) noexcept;

/// Removes the first registration of `p`.
/// @throws int -1 if there is none.
void z_dbg_rem_eventreg(void* p);

/// Checks that no registration of `p` is left. Call it before destroying an object.
/// @throws int -1 if there is one.
void z_dbg_check_eventreg(void* p);

/// Does nothing; set a breakpoint here.
void z_dbg_breakpoint() noexcept;

/// Does nothing; `text` can be inspected in a debugger.
void z_dbg_trace(const char* text) noexcept;

/// Reports a failed check as one line on standard output: `expression - File: file - Line: 12`.
///
/// Aborts afterwards if `abortNow` is set. A null `expression` or `file` sets `badbit` on `std::cout`, as
/// writing a null string to a stream does, and so truncates the line.
void z_dbg_error(const char* expression, const char* file, unsigned int line, bool abortNow);

} // namespace ZSpace
