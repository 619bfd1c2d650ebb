// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Failed starts on hosts without Foundation.

#include "tests/platform/Launching.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdio>
#include <filesystem>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(TaskPortable, AnEmptyOrMissingPathThrows)
{
    EXPECT_EQ(launchFailure(NS::String()), "Couldn't launch a task: no launch path was set");
    EXPECT_EQ(launchFailure(""), "Couldn't launch \"\": the launch path is empty");
}

TEST(TaskPortable, AMissingFileThrows)
{
    EXPECT_EQ(launchFailure("/no/such/file"),
        "Couldn't launch \"/no/such/file\": No such file or directory (error 2)");
}

TEST(TaskPortable, TheReasonNamesTheCause)
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    EXPECT_THAT(
        launchFailure(folder.path().string()), HasSubstr("Permission denied (error 13): this is a folder"));
    writeFile(file, "#!/bin/sh\n");
    EXPECT_THAT(launchFailure(file.string()),
        HasSubstr("Permission denied (error 13): the file may not be executed"));
    writeFile(file, "#!/no/such/interpreter\n");
    fs::permissions(file, fs::perms::all);
    EXPECT_THAT(launchFailure(file.string()), HasSubstr("the interpreter that it asks for does not"));
    writeFile(file, "plain text");
    EXPECT_THAT(launchFailure(file.string()), testing::EndsWith("Exec format error (error 8)"));
    writeFile(file, "");
    EXPECT_THAT(launchFailure(file.string()), testing::EndsWith("Exec format error (error 8)"));
    EXPECT_THAT(launchFailure((file / "below").string()), HasSubstr("Not a directory (error 20)"));
}

TEST(TaskPortable, OnlyAFileThatMayNotBeExecutedIsSaidToBeOne)
{
    const TemporaryFolder folder;
    const fs::path file = folder.path() / "file";
    const fs::path interpreter = folder.path() / "interpreter";
    writeFile(interpreter, "");
    writeFile(file, "#!" + interpreter.string() + "\n");
    fs::permissions(file, fs::perms::all);
    EXPECT_THAT(launchFailure(file.string()), testing::EndsWith("Permission denied (error 13)"));
}

TEST(TaskPortable, AFailedStartWithoutStandardInputLeavesNoDescriptor)
{
    const Outcome outcome = runInChild([] {
        close(STDIN_FILENO);
        NS::Task task;
        task.setLaunchPath("/no/such/file");
        task.setStandardOutput(NS::FileHandle::fileHandleWithNullDevice());
        try {
            task.launch();
        } catch (const NS::Exception& exception) {
            std::fputs(exception.reason().UTF8String(), stdout);
        }
        return isOpen(STDIN_FILENO) ? 1 : 0;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardOutput, testing::EndsWith("No such file or directory (error 2)"));
}

TEST(TaskPortable, TheChildHasTheStandardDescriptorsAlone)
{
    if (!fs::exists("/proc/self/fd"))
        GTEST_SKIP() << "there is no /proc here";
    const TemporaryFolder folder;
    const fs::path script = folder.path() / "script";
    const fs::path report = folder.path() / "report";
    // The shell reads the script through a descriptor from 10 on.
    writeFile(script,
        "#!/bin/sh\nfor n in 0 1 2 3 4 5 6 7; do test -e /proc/self/fd/$n && all=\"$all $n\"; done\n"
        "echo $all $(readlink /proc/$$/fd/1 /proc/$$/fd/2) > '"
            + report.string() + ".new'; mv '" + report.string() + ".new' '" + report.string() + "'\n");
    fs::permissions(script, fs::perms::all);
    for (const bool isSameHandle : {false, true}) {
        const Outcome outcome = runInChild([&] {
            for (int descriptor = 3; descriptor < 8; ++descriptor)
                dup2(STDERR_FILENO, descriptor);
            const NS::FileHandle null = NS::FileHandle::fileHandleWithNullDevice();
            NS::Task task;
            task.setLaunchPath(script.string());
            task.setStandardOutput(null);
            task.setStandardError(isSameHandle ? null : NS::FileHandle::fileHandleWithNullDevice());
            task.launch();
            return waitUntil([&] { return fs::exists(report); }) ? 0 : 1;
        });
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(contentOf(report), "0 1 2 /dev/null /dev/null\n");
        fs::remove(report);
    }
}

} // namespace
} // namespace ZSpace::Testing
