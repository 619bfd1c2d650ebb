// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Tasks: what a child inherits, and what is thrown if it cannot be started.

#include "ZSpace/platform/Foundation.h"
#include "tests/platform/Launching.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Host.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

TEST(Task, ReturnsItsPathAndArguments)
{
    NS::Task task;
    EXPECT_FALSE(task.launchPath());
    EXPECT_FALSE(task.arguments());
    task.setLaunchPath("/bin/true");
    task.setArguments(NS::Array::arrayWithObjects({"a", "b"}));
    EXPECT_STREQ(task.launchPath().UTF8String(), "/bin/true");
    EXPECT_EQ(task.arguments().count(), 2U);
}

TEST(Task, AMissingFileThrows)
{
    EXPECT_THAT(launchFailure("/no/such/file"), HasSubstr(reasonForMissing("/no/such/file")));
}

TEST(Task, WithoutArgumentsTheChildGetsOnlyItsPath)
{
    const TemporaryFolder folder;
    const fs::path script = folder.path() / "script";
    const fs::path report = folder.path() / "report";
    writeFile(script,
        "#!/bin/sh\necho \"$# $0\" > '" + report.string() + ".new'; mv '" + report.string() + ".new' '"
            + report.string() + "'\n");
    fs::permissions(script, fs::perms::all);
    NS::Task task;
    task.setLaunchPath(script.string());
    task.launch();
    ASSERT_TRUE(waitUntil([&] { return fs::exists(report); }));
    EXPECT_EQ(contentOf(report), "0 " + script.string() + "\n");
}

TEST(Task, ArgumentsArriveUnchanged)
{
    const TemporaryFolder folder;
    const fs::path script = folder.path() / "script with blanks";
    const fs::path report = folder.path() / "report";
    writeFile(script,
        "#!/bin/sh\nprintf '%s|' \"$@\" > '" + report.string() + ".new'; mv '" + report.string() + ".new' '"
            + report.string() + "'\n");
    fs::permissions(script, fs::perms::all);
    NS::Task task;
    task.setLaunchPath(script.string());
    task.setArguments(NS::Array::arrayWithObjects({"", "a b", "$HOME", "`id`", "\"", "\xC3\xA9"}));
    task.launch();
    ASSERT_TRUE(waitUntil([&] { return fs::exists(report); }));
    EXPECT_EQ(contentOf(report), "|a b|$HOME|`id`|\"|\xC3\xA9|");
}

TEST(Task, OutputIsInheritedUnlessItIsRedirected)
{
    const TemporaryFolder folder;
    const fs::path script = folder.path() / "script";
    const fs::path done = folder.path() / "done";
    writeFile(script, "#!/bin/sh\necho to output\necho to error >&2\n: > '" + done.string() + "'\n");
    fs::permissions(script, fs::perms::all);
    for (const bool isErrorNull : {false, true}) {
        const Outcome outcome = runInChild([&] {
            NS::Task task;
            task.setLaunchPath(script.string());
            if (isErrorNull)
                task.setStandardError(NS::FileHandle::fileHandleWithNullDevice());
            task.launch();
            return waitUntil([&] { return fs::exists(done); }) ? 0 : 1;
        });
        EXPECT_EQ(outcome.status, 0);
        EXPECT_EQ(outcome.standardOutput, "to output\n");
        EXPECT_EQ(outcome.standardError, isErrorNull ? "" : "to error\n");
        fs::remove(done);
    }
}

} // namespace
} // namespace ZSpace::Testing
