// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Failed starts on hosts without Foundation.

#include "tests/platform/Launching.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>

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

} // namespace
} // namespace ZSpace::Testing
