// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The built program, run with real children in a private root.

#include "tests/app/UninstallerFixture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

TEST_F(Uninstaller, StartsTheInstallerWithItsPathAndTwoArguments)
{
    installProbe();
    const Outcome outcome = run();
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(),
        HasSubstr("argument 0: " + s_installer + "\nargument 1: -uninstall\nargument 2: YES\nSigBlk"));
}

const std::string s_linePrefix =
    "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} Thread\\[[0-9a-f]+\\]:";

TEST_F(Uninstaller, LogsOneLineBeforeTheStartAndNothingAfterwards)
{
    installProbe();
    const Outcome outcome = run();
    ASSERT_FALSE(report().empty());
    ASSERT_EQ(reportFiles().size(), 1U);
    const std::string text = contentOf(reportFiles()[0]);
    EXPECT_THAT(text, MatchesRegex(s_linePrefix + "\t[^\n]*\n"));
    EXPECT_THAT(text, EndsWith("]:\t" + s_startLine + "\n"));
    EXPECT_THAT(outcome.standardError, MatchesRegex(s_linePrefix + " [^\n]*\n")); // debug lines are on
    EXPECT_THAT(outcome.standardError, EndsWith("]: " + s_startLine + "\t\n"));
    EXPECT_EQ(outcome.standardOutput, "");
}

TEST_F(Uninstaller, WritesOneReportFilePerRun)
{
    installProbe();
    constexpr std::size_t runs = 5;
    for (std::size_t i = 0; i < runs; ++i) {
        EXPECT_EQ(run([] { umask(077); }).status, 0);
        std::this_thread::sleep_for(std::chrono::milliseconds(2)); // names have millisecond resolution
    }
    ASSERT_EQ(reportFiles().size(), runs);
    for (const fs::path& file : reportFiles()) {
        EXPECT_THAT(file.filename().string(),
            MatchesRegex(
                "CdkRSUninstaller_[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}-[0-9]{2}-[0-9]{2}\\.[0-9]{3}\\.txt"));
        EXPECT_EQ(countOf(contentOf(file), s_startLine + "\n"), 1);
    }
    EXPECT_FALSE(fs::exists(inRoot("/home/CdLogs")));
}

TEST_F(Uninstaller, RunsWithoutALogDirectory)
{
    installProbe();
    fs::remove_all(inRoot("/var/log"));
    const Outcome outcome = run();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError, EndsWith("] " + s_startLine + "\n")); // in the format of the console
    EXPECT_FALSE(report().empty());
}

TEST_F(Uninstaller, RunsIfTheLogDirectoryIsAFile)
{
    installProbe();
    writeFile(inRoot("/var/log/com.coraldesk.remote"), "");
    const Outcome outcome = run();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError, EndsWith("] " + s_startLine + "\n"));
    EXPECT_FALSE(report().empty());
}

TEST_F(Uninstaller, TheReportFileNeverGetsAStandardDescriptor)
{
    installProbe();
    const Outcome outcome = run([] {
        for (int descriptor = 0; descriptor < 3; ++descriptor)
            close(descriptor);
    });
    EXPECT_EQ(outcome.status, 0);
    ASSERT_EQ(reportFiles().size(), 1U);
    EXPECT_THAT(contentOf(reportFiles()[0]), MatchesRegex(s_linePrefix + "\t[^\n]*\n")); // and no echo
}

TEST_F(Uninstaller, ReturnsWhileTheInstallerIsStillRunning)
{
    installProbe();
    writeFile(inRoot(s_service + "/linger"), "");
    const Outcome outcome = run();
    EXPECT_EQ(outcome.status, 0);
    ASSERT_FALSE(report().empty());
    EXPECT_FALSE(hasEnded());
    fs::remove(inRoot(s_service + "/linger"));
    EXPECT_TRUE(waitUntil([&] { return hasEnded(); }));
}

TEST_F(Uninstaller, OutputOfTheInstallerIsDiscarded)
{
    installProbe();
    const Outcome outcome = run();
    ASSERT_TRUE(waitUntil([&] { return hasEnded(); }));
    EXPECT_THAT(outcome.standardOutput + outcome.standardError, Not(HasSubstr("noise")));
    EXPECT_THAT(report(), HasSubstr("descriptor 1: /dev/null\ndescriptor 2: /dev/null\nargument"));
}

TEST_F(Uninstaller, CommandLineArgumentsChangeNothing)
{
    installProbe();
    const Outcome outcome = run([] {}, {}, {"-h", "--version", "a b", ""});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError, HasSubstr(s_startLine));
    EXPECT_THAT(report(), HasSubstr("argument 1: -uninstall\nargument 2: YES\nSigBlk"));
}

TEST_F(Uninstaller, AMissingInstallerIsLoggedAndTheStatusIsZero)
{
    const Outcome outcome = run();
    expectFailedStart(outcome, reasonForMissing(s_installer) + " userinfo:(null)\nstack:\n(");
    EXPECT_LT(outcome.standardError.find(s_startLine), outcome.standardError.find(s_failureStart));
}

TEST_F(Uninstaller, TheInstallerGetsNoDescriptorBeyondTheThreeStandardOnes)
{
    installProbe();
    const Outcome outcome = run([] {
        for (const int descriptor : {3, 7, 42})
            dup2(STDOUT_FILENO, descriptor);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(),
        ContainsRegex("^descriptor 0: .*\ndescriptor 1: /dev/null\ndescriptor 2: /dev/null\nargument"));
}

TEST_F(Uninstaller, TheInstallerInheritsStandardInput)
{
    installProbe();
    writeFile(inRoot("/tmp/input"), "");
    run([] { dup2(open("/tmp/input", O_RDONLY), STDIN_FILENO); });
    EXPECT_THAT(report(), ContainsRegex("^descriptor 0: .*/tmp/input\n"));
}

TEST_F(Uninstaller, TheInstallerInheritsEnvironmentAndWorkingDirectory)
{
    installProbe();
    const Outcome outcome = run([] {
        setenv("ZSPACE_TEST_VARIABLE", "as inherited", 1);
        if (chdir("/usr/bin") != 0)
            std::_Exit(99);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(), HasSubstr("\nfolder: /usr/bin\n"));
    EXPECT_THAT(report(), HasSubstr("\nvariable: as inherited\n"));
}

TEST_F(Uninstaller, TheInstallerGetsTheDefaultDispositionsThatTheLauncherHad)
{
    installProbe();
    run([] {
        for (int number = 1; number < 32; ++number)
            signal(number, SIG_DFL);
    });
    EXPECT_EQ(maskIn(report(), "SigIgn"), maskOf({}));
}

TEST_F(Uninstaller, TheInstallerGetsTheSignalMaskOfTheLauncher)
{
    installProbe();
    const Outcome outcome = run([] {
        sigset_t mask;
        sigemptyset(&mask);
        sigaddset(&mask, SIGUSR1);
        sigaddset(&mask, SIGTERM);
        sigprocmask(SIG_SETMASK, &mask, nullptr);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(maskIn(report(), "SigBlk"), maskOf({SIGUSR1, SIGTERM}));
}

TEST_F(Uninstaller, AClosedStandardInputIsTheNullDeviceForTheInstaller)
{
    installProbe();
    EXPECT_EQ(runWithDescriptorClosed(STDIN_FILENO).status, 0);
    EXPECT_THAT(
        report(), StartsWith("descriptor 0: /dev/null\ndescriptor 1: /dev/null\ndescriptor 2: /dev/null\n"));
}

TEST_F(Uninstaller, ClosedStandardStreamsChangeNothing)
{
    for (const int descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        const Outcome outcome = runWithDescriptorClosed(descriptor);
        EXPECT_TRUE(outcome.hasExited);
        EXPECT_EQ(outcome.status, 0) << descriptor;
    }
    installProbe();
    const Outcome outcome = run([] {
        for (int descriptor = 0; descriptor < 3; ++descriptor)
            close(descriptor);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(), HasSubstr("argument 2: YES\n"));
}

TEST_F(Uninstaller, TheStatusIsZeroWithClosedStandardStreamsAndNoNullDevice)
{
    const Outcome outcome = run(
        [] {
            for (int descriptor = 0; descriptor < 3; ++descriptor)
                close(descriptor);
        },
        {.nullDevice = true});
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(Uninstaller, AFullStandardErrorChangesNothing)
{
    installProbe();
    const Outcome outcome = run([] { dup2(open("/dev/full", O_WRONLY), STDERR_FILENO); });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(), HasSubstr("argument 2: YES\n"));
}

TEST_F(Uninstaller, AClosedPipeAsStandardErrorChangesNothing)
{
    installProbe();
    const Outcome outcome = run([] {
        signal(SIGPIPE, SIG_DFL);
        int ends[2];
        if (pipe(ends) != 0)
            std::_Exit(99);
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        close(ends[1]);
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(), HasSubstr("argument 2: YES\n"));
}

TEST_F(Uninstaller, AFileSizeLimitIsNotFatal)
{
#ifdef ZSPACE_SANITIZED
    GTEST_SKIP() << "the sanitizer's own start writes files";
#endif
    const Outcome outcome = run([] {
        signal(SIGXFSZ, SIG_DFL);
        const rlimit none{0, 0};
        setrlimit(RLIMIT_FSIZE, &none);
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.standardError, "");
}

TEST_F(Uninstaller, SignalsIgnoredByItsParentChangeNothing)
{
    installProbe();
    const Outcome outcome = run([] {
        for (int number = 1; number < 32; ++number)
            signal(number, SIG_IGN);
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(report(), HasSubstr("argument 2: YES\n"));
}

TEST_F(Uninstaller, ConcurrentLaunchersEachStartAnInstaller)
{
    installFile("#!/bin/sh\necho \"$$ $*\" >> '" + s_service + "/calls'\n", 0755);
    constexpr int count = 8;
    const Outcome outcome = m_root.run([] {
        pid_t children[count];
        for (pid_t& child : children) {
            child = fork();
            if (child == 0) {
                execl(ZSPACE_UNINSTALLER, ZSPACE_UNINSTALLER, nullptr);
                std::_Exit(126);
            }
        }
        int failures = 0;
        for (const pid_t child : children) {
            int status = 0;
            waitpid(child, &status, 0);
            failures += status != 0;
        }
        return failures;
    });
    EXPECT_EQ(outcome.status, 0);
    const auto calls = [&] { return countOf(contentOf(inRoot(s_service + "/calls")), " -uninstall YES\n"); };
    EXPECT_TRUE(waitUntil([&] { return calls() == count; })) << calls();
}

} // namespace
} // namespace ZSpace::Testing
