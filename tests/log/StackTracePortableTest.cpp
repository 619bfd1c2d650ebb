// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Stack traces on hosts without Foundation, whose lines contain names.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/platform/Foundation.h"
#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace ZSpace::Testing {
namespace {

TEST(StackTracePortable, NamesTheCalledFunction)
{
    const std::string trace = runInChild([] {
        CNSLogWithStackTrace("here");
        return 0;
    }).standardError;
    EXPECT_THAT(trace, testing::HasSubstr("CNSLogWithStackTrace + "));
}

TEST(StackTracePortable, TheInnermostFrameComesFirst)
{
    const NS::MutableString target("");
    OCAppendStackTrace(target.native());
    const std::string_view trace = target.UTF8String();
    const auto inner = trace.find("OCAppendStackTrace");
    const auto outer = trace.find("\n1   ");
    ASSERT_NE(inner, std::string_view::npos);
    EXPECT_LT(inner, outer);
}

} // namespace
} // namespace ZSpace::Testing
