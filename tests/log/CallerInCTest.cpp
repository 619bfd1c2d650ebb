// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The front end as a C program uses it. It is initialised, so each test logs in a child process.

#include "ZSpace/platform/Foundation.h"
#include "tests/log/Callers.h"
#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace ZSpace::Testing {
namespace {

using testing::ContainsRegex;

TEST(CallerInC, EveryPrintfFunctionLogsItsLine)
{
    const Outcome outcome = runInChild([] {
        logFromC("word", 7);
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError,
        ContainsRegex("] CNSLog word 7\n"
                      ".*] CNSDbgLog word 7, debug lines on\n"
                      ".*] CNSSysLog word 7\n"
                      ".*] CLogV word 7\n"
                      ".*] CNSLogMsg %s\n"
                      ".*] CNSLogWithStackTrace word 7\n"
                      "------- stack trace -------\n"));
}

TEST(CallerInC, AHostStringIsPassedOn)
{
    const Outcome outcome = runInChild([] {
        const NS::AutoreleasePool pool;
        logHostStringFromC(NS::String("%@ %d").native(), NS::String("word").native(), 7);
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError, ContainsRegex("] word 7\n.*] \n"));
}

} // namespace
} // namespace ZSpace::Testing
