// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The program's own definition of the fatal report, which replaces the library's in this test program as in
// the program itself.

#include "ZSpace/core/detail/DebugReport.h"

#include "ZSpace/core/z_dbg.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCallFaults.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

using detail::reportToStandardOutput;

TEST(DebugReport, IsOneLine)
{
    const Outcome outcome = runInChild([] {
        reportToStandardOutput("p", "f", 12);
        z_dbg_error("", "a b", 4'294'967'295U, false);
        return 0;
    });
    EXPECT_EQ(outcome.standardOutput, "p - File: f - Line: 12\n - File: a b - Line: 4294967295\n");
}

TEST(DebugReport, NothingFollowsANullString)
{
    const Outcome outcome = runInChild([] {
        reportToStandardOutput(nullptr, "f", 1);
        reportToStandardOutput("p", nullptr, 2);
        return 0;
    });
    EXPECT_EQ(outcome.standardOutput, "p - File: ");
}

TEST(DebugReport, APlainFailureOfStandardOutputIsIgnored)
{
    const Outcome outcome = runInChild([] {
        close(STDOUT_FILENO);
        reportToStandardOutput("p", "f", 12);
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST(DebugReport, NothingFollowsAPieceThatCouldNotBeWritten)
{
    const Outcome outcome = runInChild([] {
        const SystemCallFault fault(SystemCall::Write, EIO, SystemCallFault::Kind::Once, 2);
        reportToStandardOutput("p", "f", 12);
        return fault.count() == 1 ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.standardOutput, "p");
}

TEST(DebugReport, InterruptedAndShortWritesAreContinued)
{
    const Outcome outcome = runInChild([] {
        const SystemCallFault fault(SystemCall::Write, EINTR);
        const ShortTransfers transfers(1);
        reportToStandardOutput("p", "file", 12);
        return 0;
    });
    EXPECT_EQ(outcome.standardOutput, "p - File: file - Line: 12\n");
}

TEST(DebugReport, AWriteThatTakesNothingEndsTheReport)
{
    const Outcome outcome = runInChild([] {
        alarm(20);
        const ShortTransfers transfers(0);
        errno = EINTR; // of an earlier call
        reportToStandardOutput("p", "f", 12);
        return 0;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.standardOutput, "");
}

TEST(DebugReport, ComesBeforeTheAbort)
{
    const Outcome outcome = runInChild([]() -> int {
        z_dbg_error("p", "f", 12, true);
        return 0;
    });
    EXPECT_FALSE(outcome.hasExited);
    EXPECT_EQ(outcome.status, SIGABRT);
    EXPECT_EQ(outcome.standardOutput, "p - File: f - Line: 12\n");
}

} // namespace
} // namespace ZSpace::Testing
