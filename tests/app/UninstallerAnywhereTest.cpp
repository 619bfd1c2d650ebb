// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The test build of the program, on every host and without privileges: a build of the same `main` that takes both
// directories from the environment.

#include "tests/app/AnywhereFixture.h"

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class UninstallerAnywhere : public AnywhereFixture {
protected:
    [[nodiscard]] fs::path called() const { return m_folder.path() / "called"; }

    /// Installs a script that writes its arguments to `called()`.
    void install() const
    {
        const std::string file = "'" + called().string();
        AnywhereFixture::install("echo noise; echo noise >&2\nprintf '%s\\n' \"$0\" \"$@\" > " + file
            + ".new'; mv " + file + ".new' " + file + "'\n");
    }
    [[nodiscard]] Outcome run() const { return AnywhereFixture::run(ZSPACE_UNINSTALLER_ANYWHERE); }
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

TEST_F(UninstallerAnywhere, TheShippedProgramReadsNoneOfTheseVariables)
{
    EXPECT_THAT(contentOf(ZSPACE_UNINSTALLER_ANYWHERE), HasSubstr(ZSPACE_PRIVATE_LIBRARY));
    EXPECT_THAT(contentOf(ZSPACE_UNINSTALLER), Not(HasSubstr(ZSPACE_PRIVATE_LIBRARY)));
    EXPECT_THAT(contentOf(ZSPACE_UNINSTALLER), Not(HasSubstr(ZSPACE_PRIVATE_LOGS)));
}

} // namespace
} // namespace ZSpace::Testing
