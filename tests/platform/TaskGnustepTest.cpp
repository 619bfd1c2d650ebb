// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Failed starts of GNUstep's tasks.

#include "tests/platform/Launching.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

TEST(TaskGnustep, AMissingPathThrows)
{
    EXPECT_EQ(launchFailure(NS::String()), "NSTask - no launch path set");
}

TEST(TaskGnustep, AFileWithoutExecutePermissionIsNotAValidPath)
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    writeFile(file, "#!/bin/sh\n");
    EXPECT_EQ(launchFailure(file.string()), "NSTask - launch path (" + file.string() + ") not valid");
}

/// A start succeeds once there is a process, even if that process then cannot execute the program.
TEST(TaskGnustep, AFailedExecIsNotNoticed)
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    EXPECT_EQ(launchFailure(folder.path().string()), "it started");
    writeFile(file, "#!/no/such/interpreter\n");
    fs::permissions(file, fs::perms::all);
    EXPECT_EQ(launchFailure(file.string()), "it started");
    writeFile(file, "echo ran > " + (folder.path() / "ran").string());
    EXPECT_EQ(launchFailure(file.string()), "it started");
    EXPECT_FALSE(fs::exists(folder.path() / "ran")); // no shell ran it
}

TEST(TaskGnustep, AChildWhoseExecFailsRunsNoExitHandlers)
{
    const TemporaryFolder folder;
    static const fs::path s_handled = folder.path() / "handled";
    const Outcome outcome = runInChild([&] {
        std::atexit([] { writeFile(s_handled, "once"); });
        EXPECT_EQ(launchFailure(folder.path().string()), "it started");
        const bool isHandled = fs::exists(s_handled);
        fs::remove(s_handled);
        return isHandled ? 1 : 0;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
}

/// A child that another thread forks during a start ends with the status that it asks for.
TEST(TaskGnustep, StartsDoNotAffectTheChildrenOfOtherThreads)
{
    const TemporaryFolder folder;
    const Outcome outcome = runInChild([&] {
        std::atomic<bool> isDone = false;
        std::thread starter([&] {
            const NS::AutoreleasePool pool;
            while (!isDone)
                launchFailure(folder.path().string());
        });
        int wrong = 0;
        constexpr int children = 60;
        for (int i = 0; i < children; ++i) {
            const pid_t child = fork();
            if (child == 0)
                std::exit(7);
            int status = 0;
            waitpid(child, &status, 0);
            wrong += !WIFEXITED(status) || WEXITSTATUS(status) != 7;
        }
        isDone = true;
        starter.join();
        return wrong;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
} // namespace ZSpace::Testing
