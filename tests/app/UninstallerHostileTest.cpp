// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The program as root, started by someone who chooses its environment, its name and what its directories
// contain.

#include "tests/app/UninstallerFixture.h"

#include <cstdio>
#include <cstdlib>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

class UninstallerHostile : public Uninstaller {
protected:
    /// Longer than any run that does not block.
    static constexpr unsigned int s_patience = 30;

    /// Runs the program with `name` as argument 0.
    Outcome runAs(const std::string& name)
    {
        return m_root.run([&] {
            alarm(s_patience);
            execl(ZSPACE_UNINSTALLER, name.c_str(), nullptr);
            return 126;
        });
    }
};

TEST_F(UninstallerHostile, AFifoAsTimeZoneDoesNotBlockTheConsoleLine)
{
    installProbe();
    fs::remove_all(inRoot("/var/log"));
    ASSERT_EQ(mkfifo(inRoot("/tmp/fifo").c_str(), 0666), 0);
    for (const char* zone : {":/tmp/fifo", "/tmp/fifo", "../../../tmp/fifo"}) {
        const Outcome outcome = run([=] {
            alarm(s_patience);
            setenv("TZ", zone, 1);
        });
        EXPECT_TRUE(outcome.hasExited) << zone;
        EXPECT_EQ(outcome.status, 0) << zone;
        EXPECT_THAT(outcome.standardError, EndsWith("] " + s_startLine + "\n")) << zone;
    }
    EXPECT_FALSE(report().empty());
}

TEST_F(UninstallerHostile, FifosAsHomeAndLogDirectoryDoNotBlock)
{
    installProbe();
    fs::remove_all(inRoot("/var/log"));
    fs::create_directories(inRoot("/var/log"));
    ASSERT_EQ(mkfifo(inRoot("/var/log/com.coraldesk.remote").c_str(), 0666), 0);
    const Outcome outcome = run([] {
        alarm(s_patience);
        setenv("HOME", "/var/log/com.coraldesk.remote", 1);
        setenv("TMPDIR", "/var/log/com.coraldesk.remote", 1);
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_FALSE(report().empty());
}

TEST_F(UninstallerHostile, ItsNameForgesNoConsoleLines)
{
    fs::remove_all(inRoot("/var/log"));
    const Outcome outcome = runAs("x\n2026-01-01 00:00:00.000 sshd[1:1] forged\x1B[2J");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError, Not(HasSubstr("\n2026-01-01 00:00:00.000 sshd")));
    EXPECT_THAT(outcome.standardError, Not(HasSubstr("\x1B")));
    EXPECT_THAT(outcome.standardError, HasSubstr(" x\\x0A2026-01-01 00:00:00.000 sshd[1:1] forged\\x1B[2J["));
}

TEST_F(UninstallerHostile, ItsNameForgesNothingInCallStacks)
{
    const Outcome outcome = runAs("x\nforged\x1B[2J");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(logged(outcome), HasSubstr("stack:\n("));
    EXPECT_THAT(logged(outcome), Not(HasSubstr("\nforged")));
    EXPECT_THAT(logged(outcome), Not(HasSubstr("\x1B")));
}

TEST_F(UninstallerHostile, ALongOrMissingNameIsHarmless)
{
    fs::remove_all(inRoot("/var/log"));
    const Outcome longName = runAs(std::string(100'000, 'x'));
    EXPECT_EQ(longName.status, 0);
    EXPECT_THAT(longName.standardError, HasSubstr(" " + std::string(61, 'x') + "...["));
    EXPECT_THAT(longName.standardError, Not(HasSubstr(std::string(65, 'x'))));
    EXPECT_EQ(runAs("").status, 0);
}

TEST_F(UninstallerHostile, StartsExactlyOneInstallerAndLeavesNoZombie)
{
    installFile("#!/bin/sh\necho \"$$ $*\" >> '" + s_service + "/calls'\n", 0755);
    const Outcome outcome = m_root.run([] {
        const pid_t launcher = fork();
        if (launcher == 0) {
            execl(ZSPACE_UNINSTALLER, ZSPACE_UNINSTALLER, nullptr);
            std::_Exit(126);
        }
        int status = 0;
        waitpid(launcher, &status, 0);
        return status == 0 && waitpid(-1, &status, WNOHANG) < 0 ? 0 : 1; // no other child of ours
    });
    EXPECT_EQ(outcome.status, 0);
    const auto calls = [&] { return countOf(contentOf(inRoot(s_service + "/calls")), "\n"); };
    EXPECT_TRUE(waitUntil([&] { return calls() == 1; }));
    usleep(100'000); // a second one would have started by now
    EXPECT_EQ(calls(), 1);
}

#ifdef ZSPACE_AS_SHIPPED
TEST_F(UninstallerHostile, TheShippedProgramTouchesFewPages)
{
    installProbe();
    const Outcome outcome = m_root.run([] {
        char program[] = ZSPACE_UNINSTALLER;
        char* arguments[] = {program, nullptr};
        pid_t launcher = 0; // spawned, since a forked child would touch pages of this process as well
        if (posix_spawn(&launcher, program, nullptr, nullptr, arguments, environ) != 0)
            return 126;
        int status = 0;
        rusage usage{};
        wait4(launcher, &status, 0, &usage);
        std::printf("%ld\n", usage.ru_minflt);
        return status;
    });
    EXPECT_EQ(outcome.status, 0);
    // A C program that appends one line and starts a child needs 30 to 32. Linkers and kernels differ by a few.
    EXPECT_LE(std::stol(outcome.standardOutput), 56) << "page faults";
}
#endif

} // namespace
} // namespace ZSpace::Testing
