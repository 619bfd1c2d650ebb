// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/ChildProcess.h"

#include "tests/support/TemporaryFolder.h"

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fcntl.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

#ifdef ZSPACE_COVERAGE
extern "C" void __gcov_dump();
#endif

namespace ZSpace::Testing {

namespace {

void redirect(int descriptor, const std::filesystem::path& file)
{
    const int opened = open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (opened < 0 || dup2(opened, descriptor) < 0)
        std::_Exit(125);
    close(opened);
}

[[noreturn]] void work(const std::function<int()>& function)
{
    int status = 124;
    try {
        status = function();
    } catch (const std::exception& exception) {
        std::fprintf(stderr, "the child's work threw: %s\n", exception.what());
    }
    std::fflush(nullptr);
#ifdef ZSPACE_COVERAGE
    __gcov_dump(); // without `exit`, the counts are not written by themselves
#endif
    std::_Exit(status);
}

} // namespace

Outcome runInChild(const std::function<int()>& function)
{
    const TemporaryFolder folder;
    const auto output = folder.path() / "out";
    const auto error = folder.path() / "err";
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        redirect(STDOUT_FILENO, output);
        redirect(STDERR_FILENO, error);
        work(function);
    }
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) { }
    Outcome outcome;
    outcome.hasExited = WIFEXITED(status);
    outcome.status = outcome.hasExited ? WEXITSTATUS(status) : WTERMSIG(status);
    outcome.standardOutput = contentOf(output);
    outcome.standardError = contentOf(error);
    return outcome;
}

bool waitUntil(const std::function<bool()>& condition, double seconds)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

} // namespace ZSpace::Testing
