// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Rules for every source file: its first lines, its includes and its name.

#include "tests/layers/Sources.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <map>
#include <regex>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

TEST(SourceRules, IncludesStartAtTheRootAndExist)
{
    for (const Source& source : sourcesOf(s_everything)) {
        for (const std::string& include : quotedIncludes(source)) {
            EXPECT_TRUE(fs::exists(fs::path(projectRoot()) / include))
                << source.name << " includes " << include << ", which is no path from the project's root";
        }
    }
}

TEST(SourceRules, EveryFileBeginsWithItsLicense)
{
    for (const Source& source : sourcesOf(s_everything)) {
        EXPECT_TRUE(source.text.starts_with("// SPDX-FileCopyrightText: 2026 The ZSpace authors\n"
                                            "// SPDX-License-Identifier: MIT\n"))
            << source.name;
    }
}

TEST(SourceRules, EveryHeaderIsGuardedOnce)
{
    for (const Source& source : sourcesOf(s_everything)) {
        const bool isGuarded = source.text.find("\n#pragma once\n") != std::string::npos;
        EXPECT_EQ(isGuarded, source.name.ends_with(".h")) << source.name;
    }
}

TEST(SourceRules, NoTwoFileNamesDifferInCaseOnly)
{
    std::map<std::string, std::string> seen;
    for (const Source& source : sourcesOf(s_everything)) {
        std::string folded = source.name;
        std::transform(
            folded.begin(), folded.end(), folded.begin(), [](unsigned char c) { return std::tolower(c); });
        const auto [entry, isNew] = seen.emplace(folded, source.name);
        EXPECT_TRUE(isNew) << entry->second << " and " << source.name;
    }
}

TEST(SourceRules, EveryTestFileIsNamedInTheListOfItsDirectory)
{
    for (const Source& source : sourcesOf({"tests"})) {
        const fs::path file(source.name);
        const bool isSupport =
            source.name.starts_with("tests/support/"); // compiled into the suites that need it
        if (isSupport || !file.stem().string().ends_with("Test"))
            continue;
        const fs::path list = fs::path(projectRoot()) / file.parent_path() / "CMakeLists.txt";
        EXPECT_NE(contentOf(list).find(file.filename().string()), std::string::npos)
            << source.name << " is never built";
    }
}

// ctest prints a test on one line together with its number, its result and its time.
TEST(SourceRules, TestNamesFitOnALine)
{
    static const std::regex pattern("(?:^|\n)(TYPED_)?TEST(?:_F|_P)?\\((\\w+), *(\\w+)\\)");
    constexpr std::size_t typeName = 16; // "/ZStrTokenNarrow"
    for (const Source& source : sourcesOf({"tests"})) {
        for (std::sregex_iterator it(source.code.begin(), source.code.end(), pattern), end; it != end; ++it) {
            const std::string name = (*it)[2].str() + "." + (*it)[3].str();
            EXPECT_LE(name.size() + ((*it)[1].matched ? typeName : 0), 90U) << source.name << ": " << name;
        }
    }
}

} // namespace
} // namespace ZSpace::Testing
