// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The program, linked to a host that provides nothing: the layers above use a host only through the contract
// headers of `ZSpace/platform/`, and status 0 needs none of its services.

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

TEST(UnsupportedHost, ProvidesEveryServiceThatTheLayersAboveUse)
{
    const std::string map = contentOf(ZSPACE_UNINSTALLER_WITHOUT_HOST ".map");
    const std::regex ofAnotherHost(
        "libzspace\\.a\\((\\w+(Posix|Linux|Portable|Foundation)\\.(cpp|mm)\\.o)\\)");
    std::smatch member;
    EXPECT_NE(map.find("libzspace.a(LogFrontEnd.cpp.o)"), std::string::npos);
    EXPECT_FALSE(std::regex_search(map, member, ofAnotherHost)) << member[1] << " was needed";
}

TEST(UnsupportedHost, TheProgramEndsWithStatusZeroThere)
{
    const TemporaryFolder folder;
    const Outcome outcome = runInChild([&] {
        if (chdir(folder.path().c_str()) != 0)
            return 99;
        execl(ZSPACE_UNINSTALLER_WITHOUT_HOST, ZSPACE_UNINSTALLER_WITHOUT_HOST, nullptr);
        return 126;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.standardOutput + outcome.standardError, "");
}

} // namespace
} // namespace ZSpace::Testing
