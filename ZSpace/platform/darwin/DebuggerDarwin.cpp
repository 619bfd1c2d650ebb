// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Debugger.h"

#include <cstddef>
#include <sys/sysctl.h>
#include <sys/types.h>
#include <unistd.h>

namespace ZSpace::Host {

bool isDebuggerAttached() noexcept
{
    int name[] = {CTL_KERN, KERN_PROC, KERN_PROC_PID, getpid()};
    kinfo_proc record{};
    std::size_t size = sizeof record;
    // A failing call leaves the flags zero: not debugged.
    sysctl(name, sizeof name / sizeof *name, &record, &size, nullptr, 0);
    return (record.kp_proc.p_flag & P_TRACED) != 0;
}

} // namespace ZSpace::Host
