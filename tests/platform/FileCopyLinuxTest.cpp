// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Files whose contents the kernel generates have size 0.

#include "ZSpace/platform/FileCopy.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

TEST(FileCopyLinux, CopiesFilesOfProc)
{
    const TemporaryFolder folder;
    const std::string target = (folder.path() / "to").string();
    const int from = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    if (from < 0)
        GTEST_SKIP() << "there is no /proc here";
    const int to = open(target.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    EXPECT_EQ(Host::copyContents(from, to), 0);
    EXPECT_THAT(contentOf(target), testing::HasSubstr("\nPid:\t" + std::to_string(getpid()) + "\n"));
    close(from);
    close(to);
}

TEST(FileCopyLinux, AFullDeviceIsReported)
{
    const int from = open("/proc/self/status", O_RDONLY | O_CLOEXEC);
    const int full = open("/dev/full", O_WRONLY | O_CLOEXEC);
    if (from < 0 || full < 0)
        GTEST_SKIP() << "there is no /proc or no /dev/full here";
    EXPECT_EQ(Host::copyContents(from, full), ENOSPC);
    close(from);
    close(full);
}

} // namespace
} // namespace ZSpace::Testing
