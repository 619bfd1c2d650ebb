// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/z_dbg.h"

#include "ZSpace/core/detail/DebugReport.h"
#include "ZSpace/core/detail/ForkedLock.h"

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <pthread.h>

namespace ZSpace {

namespace {

/// The index of the first registration of `p`, -1 if there is none. The caller holds the lock.
long indexOfRegistration(const void* p) noexcept
{
    const auto* found = std::find(g_eventregistrations.begin(), g_eventregistrations.end(), p);
    return found == g_eventregistrations.end() ? -1 : found - g_eventregistrations.begin();
}

// Keep the registry usable in a child of `fork`, whatever the parent's other threads were doing. Installed at load
// time: a fork could interrupt installation on first use.
[[maybe_unused]] const int s_forkHandlers = pthread_atfork(
    [] { g_eventreg_cs.lock(); }, [] { g_eventreg_cs.unlock(); }, [] { detail::freeInChild(g_eventreg_cs); });

} // namespace

void z_dbg_add_eventreg(void* p) noexcept
{
    const std::lock_guard guard(g_eventreg_cs);
    g_eventregistrations.add(p);
}

void z_dbg_rem_eventreg(void* p)
{
    const std::lock_guard guard(g_eventreg_cs);
    const long index = indexOfRegistration(p);
    if (index < 0)
        throw -1;
    g_eventregistrations.remove(index, 1);
}

void z_dbg_check_eventreg(void* p)
{
    const std::lock_guard guard(g_eventreg_cs);
    if (indexOfRegistration(p) >= 0)
        throw -1;
}

void z_dbg_breakpoint() noexcept { }

void z_dbg_trace(const char*) noexcept { }

void z_dbg_error(const char* expression, const char* file, unsigned int line, bool abortNow)
{
    if (!abortNow)
        return detail::reportToStandardOutput(expression, file, line);
    try {
        detail::reportToStandardOutput(expression, file, line);
    } catch (...) { // NOLINT(bugprone-empty-catch): a stream that throws must not prevent the abort
    }
    std::abort();
}

} // namespace ZSpace
