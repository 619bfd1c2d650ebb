// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "bench/counts/SteppedProcess.h"

#include <csignal>
#include <cstdlib>
#include <sys/ptrace.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ZSpace::Testing {

namespace {

bool isAtSystemCall(pid_t child)
{
    user_regs_struct registers{};
    if (ptrace(PTRACE_GETREGS, child, nullptr, &registers) != 0)
        return false;
    const long code = ptrace(PTRACE_PEEKTEXT, child, registers.rip, nullptr);
    return (code & 0xFFFF) == 0x050F; // the instruction `syscall`
}

/// Waits for the child. @return whether it has stopped, not ended.
bool waitForStop(pid_t child, int& status)
{
    return waitpid(child, &status, 0) == child && WIFSTOPPED(status);
}

/// Steps through a stopped child until it raises SIGSTOP or ends.
Steps stepThrough(pid_t child)
{
    ptrace(PTRACE_SETOPTIONS, child, nullptr, PTRACE_O_EXITKILL);
    Steps steps;
    int status = 0;
    do {
        ++steps.instructions;
        steps.systemCalls += isAtSystemCall(child);
    } while (ptrace(PTRACE_SINGLESTEP, child, nullptr, nullptr) == 0 && waitForStop(child, status)
        && WSTOPSIG(status) != SIGSTOP);
    return steps;
}

Steps stepsBetweenStops(const std::function<void()>& prepare, const std::function<void()>& work)
{
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        prepare();
        raise(SIGSTOP);
        work();
        raise(SIGSTOP);
        std::_Exit(0);
    }
    int status = 0;
    if (!waitForStop(child, status))
        return {};
    const Steps steps = stepThrough(child);
    kill(child, SIGKILL);
    waitpid(child, &status, 0);
    return steps;
}

} // namespace

Steps stepsOf(const std::function<void()>& prepare, const std::function<void()>& work)
{
    static const Steps s_measurement = stepsBetweenStops([] {}, [] {});
    const Steps all = stepsBetweenStops(prepare, work);
    return {all.instructions - s_measurement.instructions, all.systemCalls - s_measurement.systemCalls};
}

Steps stepsOfProgram(const char* path)
{
    const pid_t child = fork();
    if (child == 0) {
        ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
        execl(path, path, nullptr);
        std::_Exit(127);
    }
    int status = 0;
    return waitForStop(child, status) ? stepThrough(child) : Steps{};
}

} // namespace ZSpace::Testing
