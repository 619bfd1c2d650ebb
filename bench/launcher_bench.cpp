// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// One run of the program from its start to its end, with an installer, next to a baseline in C that does the same. Both
// run in a private root directory, so this needs root.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <spawn.h>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

const std::string s_installer =
    "Library/Application Support/com.coraldesk.remote/bin/CdkRemotedInstaller.app/"
    "Contents/MacOS/CdkRemotedInstaller";

/// A directory tree with the programs, their installer and a null device.
class Root {
public:
    Root()
        : m_path(fs::temp_directory_path() / ("zspace-bench-" + std::to_string(getpid())))
    {
        fs::create_directories(m_path / "dev");
        fs::create_directories(m_path / "var/log");
        fs::create_directories((m_path / s_installer).parent_path());
        fs::copy_file(ZSPACE_UNINSTALLER, m_path / "program");
        fs::copy_file(ZSPACE_LAUNCHER_BASELINE, m_path / "baseline");
        fs::copy_file(ZSPACE_LAUNCHER_INSTALLER, m_path / s_installer);
        mknod((m_path / "dev/null").c_str(), S_IFCHR | 0666, makedev(1, 3));
    }
    Root(const Root&) = delete; // owns the tree
    Root& operator=(const Root&) = delete;
    ~Root() { fs::remove_all(m_path); }

    /// Makes this tree the process's root directory.
    [[nodiscard]] bool enter() const { return chroot(m_path.c_str()) == 0 && chdir("/") == 0; }

private:
    fs::path m_path;
};

void run(benchmark::State& state, const char* program)
{
    char* const arguments[] = {const_cast<char*>(program), nullptr};
    char* const environment[] = {nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    for (auto _ : state) {
        pid_t child = 0;
        int status = -1;
        if (posix_spawn(&child, program, &actions, nullptr, arguments, environment) != 0
            || waitpid(child, &status, 0) != child || status != 0)
            state.SkipWithError("the program cannot be run");
        state.PauseTiming();
        while (wait(nullptr) > 0) { } // the installer
        state.ResumeTiming();
    }
    posix_spawn_file_actions_destroy(&actions);
}

void launcher(benchmark::State& state)
{
    run(state, "/program");
}
BENCHMARK(launcher)->UseRealTime()->Unit(benchmark::kMicrosecond);

void launcher_baseline(benchmark::State& state)
{
    run(state, "/baseline");
}
BENCHMARK(launcher_baseline)->UseRealTime()->Unit(benchmark::kMicrosecond);

/// Runs the benchmarks in a child with a root directory of its own, since the parent has to remove that directory.
int runIn(const Root& root)
{
    const pid_t child = fork();
    if (child == 0) {
        // Read now, because there is no /proc in the private root.
        benchmark::CPUInfo::Get();
        benchmark::SystemInfo::Get();
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        if (!root.enter()) {
            std::perror("chroot");
            std::_Exit(1);
        }
        benchmark::RunSpecifiedBenchmarks();
        std::fflush(nullptr);
        std::_Exit(0);
    }
    int status = 1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

} // namespace

int main(int count, char** arguments)
{
    benchmark::Initialize(&count, arguments);
    const Root root;
    return runIn(root);
}
