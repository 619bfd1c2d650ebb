// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/Kernel.h"

#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <mach-o/dyld.h>
#include <mach/mach.h>
#include <sys/ptrace.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ZSpace::Testing {

unsigned int kernelThreadNumber()
{
    const mach_port_t port = mach_thread_self();
    mach_port_deallocate(mach_task_self(), port); // only the number is needed
    return port;
}

std::string programFile()
{
    std::array<char, 4096> path{};
    auto size = static_cast<std::uint32_t>(path.size());
    _NSGetExecutablePath(path.data(), &size);
    return std::filesystem::canonical(path.data()).string();
}

Outcome runTraced(const std::function<int()>& work)
{
    return runInChild([&] {
        const pid_t traced = fork();
        if (traced == 0) {
            ptrace(PT_TRACE_ME, 0, nullptr, 0);
            raise(SIGSTOP);
            const int status = work();
            std::_Exit(status);
        }
        int status = 0;
        while (waitpid(traced, &status, 0) == traced && WIFSTOPPED(status))
            ptrace(PT_CONTINUE, traced, reinterpret_cast<caddr_t>(1), 0); // 1: where it stopped
        return WIFEXITED(status) ? WEXITSTATUS(status) : 99;
    });
}

} // namespace ZSpace::Testing
