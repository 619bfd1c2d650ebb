// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>
#include <cstdlib>
#include <functional>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ZSpace::Testing {

/// The system calls that `work` makes, counted by a tracer.
inline long systemCallsOf(const std::function<void()>& work)
{
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        raise(SIGSTOP);
        syscall(SYS_getppid); // marks the beginning
        work();
        syscall(SYS_getppid);
        std::_Exit(0);
    }
    long stops = 0;
    int status = 0;
    waitpid(child, &status, 0);
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
    while (ptrace(PTRACE_SYSCALL, child, nullptr, nullptr) == 0 && waitpid(child, &status, 0) == child
        && !WIFEXITED(status)) {
        stops += WSTOPSIG(status) == (SIGTRAP | 0x80);
    }
    // Each call stops twice, at its entry and at its return, except for the exit, which does not return.
    return stops / 2 - 2;
}

} // namespace ZSpace::Testing
