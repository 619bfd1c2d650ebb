// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The program on GNUstep, whose task behaves differently.

#include "tests/app/UninstallerFixture.h"

#include <csignal>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

class UninstallerGnustep : public Uninstaller {
protected:
    /// GNUstep reports success once there is a process, even if that process then cannot execute the program.
    void expectUnnoticedFailure(const Outcome& outcome) const
    {
        EXPECT_TRUE(outcome.hasExited);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(logged(outcome), HasSubstr(s_startLine));
        EXPECT_THAT(logged(outcome), Not(HasSubstr(s_failureStart)));
        EXPECT_FALSE(fs::exists(inRoot(s_service + "/report")));
    }
};

TEST_F(UninstallerGnustep, SearchesTheApplicationSupportDirectoryOfGnustep)
{
    EXPECT_THAT(logged(run([] { unsetenv("GNUSTEP_CONFIG_FILE"); })),
        HasSubstr("Running uninstall script: /usr/lib/GNUstep/ApplicationSupport/com.coraldesk.remote/bin/"));
}

TEST_F(UninstallerGnustep, TheFailureLineContainsModulesAndAddresses)
{
    EXPECT_THAT(logged(run()), ContainsRegex("stack:\n\\(\"[^ ]*\\([^)]*\\) \\[0x[0-9a-f]+\\]\".*\"\\)\n"));
}

TEST_F(UninstallerGnustep, AFileWithoutExecutePermissionIsAFailedStart)
{
    installFile("#!/bin/sh\n", 0644);
    expectFailedStart(run(), "NSTask - launch path (" + s_installer + ") not valid");
}

TEST_F(UninstallerGnustep, ADirectoryIsStartedAndItsFailureGoesUnnoticed)
{
    fs::create_directories(inRoot(s_installer));
    expectUnnoticedFailure(run());
}

TEST_F(UninstallerGnustep, AMissingInterpreterGoesUnnoticed)
{
    installFile("#!/no/such/interpreter\n", 0755);
    expectUnnoticedFailure(run());
}

TEST_F(UninstallerGnustep, AFileOfNoExecutableFormatGoesUnnoticedAndNoShellRunsIt)
{
    installFile("echo ran > '" + s_service + "/report'\n", 0755);
    expectUnnoticedFailure(run());
}

TEST_F(UninstallerGnustep, TheInstallerInheritsAHighDescriptor)
{
    installProbe();
    run([] { dup2(STDOUT_FILENO, 500); });
    EXPECT_THAT(report(), HasSubstr("descriptor 500"));
}

TEST_F(UninstallerGnustep, TheInstallerLeadsASessionOfItsOwn)
{
    installProbe();
    run();
    EXPECT_THAT(report(), Not(HasSubstr("\ngroup: " + std::to_string(getpgrp()) + "\n")));
}

TEST_F(UninstallerGnustep, TheInstallerGetsDefaultDispositionsInAnyCase)
{
    installProbe();
    run([] {
        for (const int number : {SIGHUP, SIGPIPE, SIGCHLD})
            signal(number, SIG_IGN);
    });
    EXPECT_EQ(maskIn(report(), "SigIgn"), maskOf({}));
}

} // namespace
} // namespace ZSpace::Testing
