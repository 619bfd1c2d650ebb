// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/Kernel.h"

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ZSpace::Testing {

unsigned int kernelThreadNumber()
{
    return static_cast<unsigned int>(syscall(SYS_gettid));
}

std::string programFile()
{
    return std::filesystem::read_symlink("/proc/self/exe").string();
}

Outcome runTraced(const std::function<int()>& work)
{
    return runInChild([&] {
        const pid_t traced = fork();
        if (traced == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            raise(SIGSTOP);
            const int status = work();
            std::_Exit(status);
        }
        int status = 0;
        while (waitpid(traced, &status, 0) == traced && WIFSTOPPED(status))
            ptrace(PTRACE_CONT, traced, nullptr, nullptr);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 99;
    });
}

} // namespace ZSpace::Testing
