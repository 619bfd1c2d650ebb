// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// scripts/private-root.sh mounts nothing in the caller's namespace, whatever the caller's environment
// contains.

#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateRoot.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

TEST(PrivateRootScript, MountsOnlyInANamespaceOfItsOwn)
{
    if (!PrivateRoot::isPossible())
        GTEST_SKIP() << "this user may not make mount namespaces here";
    const TemporaryFolder folder;
    const std::string root = folder.path().string();
    const Outcome outcome = runInChild([&] {
        setenv("ZSPACE_IN_NAMESPACE", "yes", 1);
        execl("/bin/sh", "sh", ZSPACE_SOURCE_DIR "/scripts/private-root.sh", root.c_str(), "/bin/sh", "-c",
            "readlink /proc/self/ns/mnt; echo $HOME", nullptr);
        return 126;
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardError;
    const std::string here = std::filesystem::read_symlink("/proc/self/ns/mnt").string();
    EXPECT_NE(outcome.standardOutput.substr(0, here.size()), here);
    EXPECT_EQ(outcome.standardOutput.substr(outcome.standardOutput.find('\n')), "\n/home\n");
    EXPECT_EQ(contentOf("/proc/self/mounts").find(root), std::string::npos);
}

TEST(PrivateRootScript, SaysHowItIsCalled)
{
    const Outcome outcome = runInChild([] {
        execl("/bin/sh", "sh", ZSPACE_SOURCE_DIR "/scripts/private-root.sh", nullptr);
        return 126;
    });
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.standardError.find("usage: "), std::string::npos);
}

} // namespace
} // namespace ZSpace::Testing
