// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Strings without a UTF-8 form in the report file.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/platform/Foundation.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

TEST(LoneSurrogate, ALineWithOneIsLoggedWithTheReplacementCharacter)
{
    const TemporaryFolder folder;
    const fs::path logs = folder.path() / "logs";
    constexpr int lead = 0xD83D;
    const Outcome outcome = runInChild([&] {
        const NS::AutoreleasePool pool;
        CNSInitLog(CNSLogFlagFile, 0, "Tag", logs.c_str());
        OCNSLog(NS::String("half: %C.").native(), lead);
        OCNSLogWithStackTrace(NS::String("traced half: %C.").native(), lead);
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    std::string report;
    for (const auto& entry : fs::directory_iterator(logs))
        report += contentOf(entry.path());
    EXPECT_THAT(report, HasSubstr("half: \xEF\xBF\xBD."));
    EXPECT_THAT(report, HasSubstr("traced half: \xEF\xBF\xBD.\n------- stack trace -------\n"));
}

} // namespace
} // namespace ZSpace::Testing
