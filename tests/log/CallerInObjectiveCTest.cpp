// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The front end as an Objective-C program uses it. It is initialised, so the test logs in a child process.

#include "ZSpace/platform/Foundation.h"
#include "tests/log/Callers.h"
#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ZSpace::Testing {
namespace {

using testing::ContainsRegex;

TEST(CallerInObjectiveC, EveryFoundationFunctionLogsItsLine)
{
    const Outcome outcome = runInChild([] {
        const NS::AutoreleasePool pool;
        logFromObjectiveC("word", 7);
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError,
        ContainsRegex("] CNSLog word 7\n"
                      ".*] OCNSLog word 7\n"
                      ".*] OCNSDbgLog word 7\n"
                      ".*] OCLogV word 7\n"
                      ".*] OCNSLogWithStackTrace word 7\n"
                      "------- stack trace -------\n"));
}

} // namespace
} // namespace ZSpace::Testing
