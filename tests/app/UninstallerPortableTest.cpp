// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The program on hosts without Foundation: failed starts, what the installer inherits, and how little of the
// host is needed.

#include "tests/app/UninstallerFixture.h"

#include <csignal>
#include <sys/resource.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

using UninstallerPortable = Uninstaller;

TEST_F(UninstallerPortable, TheFailureLineContainsTheCallStackAsAnArray)
{
    const Outcome outcome = run();
    EXPECT_THAT(logged(outcome), ContainsRegex("stack:\n\\(\"0 .*0x[0-9a-f]+ .*main \\+ [0-9]+.*\"\\)\n"));
}

TEST_F(UninstallerPortable, AFileWithoutExecutePermissionIsAFailedStart)
{
    installFile("#!/bin/sh\n", 0644);
    expectFailedStart(run(), "Permission denied (error 13): the file may not be executed");
}

TEST_F(UninstallerPortable, ADirectoryIsAFailedStart)
{
    fs::create_directories(inRoot(s_installer));
    expectFailedStart(run(), "Permission denied (error 13): this is a folder");
}

TEST_F(UninstallerPortable, AMissingInterpreterIsAFailedStart)
{
    installFile("#!/no/such/interpreter\n", 0755);
    expectFailedStart(run(), "No such file or directory (error 2): the file exists, but the interpreter");
}

TEST_F(UninstallerPortable, AFileOfNoExecutableFormatIsAFailedStartAndNoShellRunsIt)
{
    installFile("echo ran > '" + s_service + "/report'\n", 0755);
    expectFailedStart(run(), "Exec format error (error 8)");
    EXPECT_FALSE(fs::exists(inRoot(s_service + "/report")));
}

TEST_F(UninstallerPortable, AMissingNullDeviceIsAFailedStart)
{
    installProbe();
    expectFailedStart(run([] {}, {.nullDevice = true}), "its output could not be sent to /dev/null");
    EXPECT_FALSE(fs::exists(inRoot(s_service + "/report")));
}

TEST_F(UninstallerPortable, ADescriptorLimitDoesNotChangeTheStatus)
{
#ifdef ZSPACE_SANITIZED
    GTEST_SKIP() << "the sanitizer's own start needs descriptors";
#endif
    installProbe();
    for (const rlim_t limit : {0UL, 1UL, 2UL, 3UL, 4UL}) {
        const Outcome outcome = run([=] {
            const rlimit limits{limit, limit};
            setrlimit(RLIMIT_NOFILE, &limits);
        });
        EXPECT_TRUE(outcome.hasExited) << limit;
        EXPECT_EQ(outcome.status, 0) << limit;
        EXPECT_THAT(outcome.standardError, HasSubstr(s_startLine)) << limit;
    }
}

TEST_F(UninstallerPortable, NeedsNoProcFileSystem)
{
#ifdef ZSPACE_SANITIZED
    GTEST_SKIP() << "the sanitizer's own start needs /proc";
#endif
    const Outcome failed = run([] {}, {.proc = true});
    expectFailedStart(failed, "No such file or directory");
    EXPECT_THAT(logged(failed), ContainsRegex("stack:\n\\(\"0 .*\"\\)\n"));
    installProbe();
    EXPECT_EQ(run([] {}, {.proc = true}).status, 0);
    EXPECT_THAT(report(), HasSubstr("argument 1: -uninstall\nargument 2: YES\n"));
}

TEST_F(UninstallerPortable, TheInstallerInheritsNoHighDescriptor)
{
    installProbe();
    run([] { dup2(STDOUT_FILENO, 500); });
    EXPECT_THAT(report(), Not(HasSubstr("descriptor 500")));
}

TEST_F(UninstallerPortable, TheInstallerStaysInTheProcessGroup)
{
    installProbe();
    run();
    EXPECT_THAT(report(), HasSubstr("\ngroup: " + std::to_string(getpgrp()) + "\n"));
}

TEST_F(UninstallerPortable, TheInstallerStaysInTheSession)
{
    installProbe();
    run();
    EXPECT_THAT(report(), HasSubstr("\nsession: " + std::to_string(getsid(0)) + "\n"));
}

TEST_F(UninstallerPortable, TheInstallerKeepsIgnoringSignals)
{
    installProbe();
    const Outcome outcome = run([] {
        for (int number = 1; number < 32; ++number)
            signal(number, SIG_DFL);
        for (const int number : {SIGHUP, SIGPIPE, SIGCHLD})
            signal(number, SIG_IGN);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(maskIn(report(), "SigIgn"), maskOf({SIGHUP, SIGPIPE, SIGCHLD}));
}

} // namespace
} // namespace ZSpace::Testing
