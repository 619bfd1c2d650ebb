// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The test build of the program, on every host and without privileges: a build of the same `main` that takes its two
// directories from the environment.

#include "tests/app/PrivatePaths.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Host.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class UninstallerAnywhere : public testing::Test {
protected:
    [[nodiscard]] fs::path installer() const
    {
        return m_folder.path()
            / "com.coraldesk.remote/bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller";
    }
    [[nodiscard]] fs::path called() const { return m_folder.path() / "called"; }

    /// Installs a script that writes its arguments to `called()`.
    void install() const
    {
        const std::string file = "'" + called().string();
        fs::create_directories(installer().parent_path());
        writeFile(installer(),
            "#!/bin/sh\necho noise; echo noise >&2\nprintf '%s\\n' \"$0\" \"$@\" > " + file + ".new'; mv "
                + file + ".new' " + file + "'\n");
        fs::permissions(installer(), fs::perms::all);
    }

    [[nodiscard]] Outcome run() const
    {
        return runInChild([&] {
            setenv(ZSPACE_PRIVATE_LIBRARY, m_folder.path().c_str(), 1);
            setenv(ZSPACE_PRIVATE_LOGS, (m_folder.path() / "logs").c_str(), 1);
            execl(ZSPACE_UNINSTALLER_ANYWHERE, ZSPACE_UNINSTALLER_ANYWHERE, nullptr);
            return 126;
        });
    }

    [[nodiscard]] std::string report() const
    {
        std::string content;
        for (const auto& entry : fs::directory_iterator(m_folder.path() / "logs"))
            content += contentOf(entry.path());
        return content;
    }

    [[nodiscard]] std::string startLine() const
    {
        return "Running uninstall script: " + installer().string() + ", args: " + host().printedArguments;
    }

private:
    TemporaryFolder m_folder;
};

TEST_F(UninstallerAnywhere, StartsTheInstallerAndLogsIt)
{
    install();
    const Outcome outcome = run();
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
    ASSERT_TRUE(waitUntil([&] { return fs::exists(called()); }));
    EXPECT_EQ(contentOf(called()), installer().string() + "\n-uninstall\nYES\n");
    EXPECT_THAT(report(), EndsWith("]:\t" + startLine() + "\n"));
    EXPECT_EQ(outcome.standardOutput, "");
    EXPECT_THAT(outcome.standardError, Not(HasSubstr("noise")));
}

TEST_F(UninstallerAnywhere, LogsTheStartThatFailedAndEndsWithStatusZero)
{
    const Outcome outcome = run();
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(), HasSubstr(startLine() + "\n"));
    EXPECT_THAT(report(),
        HasSubstr("CdkRemotedUninstaller: Failed to launch uninstaller task:" + installer().string()
            + ", exception:NSInvalidArgumentException reason:"));
}

TEST_F(UninstallerAnywhere, TheShippedProgramHasNoSuchSeam)
{
    EXPECT_THAT(contentOf(ZSPACE_UNINSTALLER_ANYWHERE), HasSubstr(ZSPACE_PRIVATE_LIBRARY));
    EXPECT_THAT(contentOf(ZSPACE_UNINSTALLER), Not(HasSubstr(ZSPACE_PRIVATE_LIBRARY)));
    EXPECT_THAT(contentOf(ZSPACE_UNINSTALLER), Not(HasSubstr(ZSPACE_PRIVATE_LOGS)));
}

} // namespace
} // namespace ZSpace::Testing
