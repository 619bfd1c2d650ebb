// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What the linked program and library contain: mitigations, and nothing that slows the start down. Reads them
// with binutils' readelf.

#include "ZSpace/Version.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

std::string readelf(const char* option, const char* file)
{
    return runInChild([=] {
        execlp("readelf", "readelf", "--wide", option, file, nullptr);
        return 126;
    }).standardOutput;
}

TEST(Binary, TheProgramIsPositionIndependent)
{
    EXPECT_THAT(readelf("--file-header", ZSPACE_UNINSTALLER), ContainsRegex("Type: +DYN"));
    EXPECT_THAT(readelf("--dynamic", ZSPACE_UNINSTALLER), ContainsRegex("FLAGS_1.*PIE"));
}

TEST(Binary, NoMemoryIsWritableAndExecutable)
{
    const std::string segments = readelf("--segments", ZSPACE_UNINSTALLER);
    EXPECT_THAT(segments, ContainsRegex("GNU_STACK .* RW "));
    EXPECT_THAT(segments, Not(HasSubstr("RWE")));
}

TEST(Binary, RelocatedDataIsReadOnlyBeforeMain)
{
    EXPECT_THAT(readelf("--segments", ZSPACE_UNINSTALLER), HasSubstr("GNU_RELRO"));
    EXPECT_THAT(readelf("--dynamic", ZSPACE_UNINSTALLER), HasSubstr("NOW"));
}

TEST(Binary, StacksAndLibraryCallsAreChecked)
{
    for (const char* file : {ZSPACE_UNINSTALLER, ZSPACE_LIBRARY}) {
        const std::string symbols = readelf("--symbols", file);
        EXPECT_THAT(symbols, HasSubstr("__stack_chk_fail")) << file;
        EXPECT_THAT(symbols, ContainsRegex("__[a-z]+_chk")) << file;
    }
}

TEST(Binary, EverySourceIsCompiledWithTheMitigations)
{
    const std::string commands = contentOf(ZSPACE_BINARY_DIR "/compile_commands.json");
    std::size_t count = 0;
    for (std::size_t at = commands.find("\"command\":"); at != std::string::npos;
         at = commands.find("\"command\":", at + 1)) {
        const std::string command = commands.substr(at, commands.find('\n', at) - at);
        if (command.find("CMakeFiles/zspace.dir/") == std::string::npos
            && command.find("CMakeFiles/CdkRSUninstaller.dir/") == std::string::npos)
            continue;
        ++count;
        for (const char* option : {"-fstack-protector-strong", "-fstack-clash-protection", "-fcf-protection"})
            EXPECT_THAT(command, HasSubstr(option));
    }
    EXPECT_GT(count, 50U);
}

TEST(Binary, TheProgramStatesItsNameAndVersion)
{
    EXPECT_THAT(readelf("--notes", ZSPACE_UNINSTALLER),
        HasSubstr(R"({"name":"CdkRSUninstaller","version":")" ZSPACE_VERSION_STRING R"("})"));
}

TEST(Binary, TheProgramContainsNoStandardStreams)
{
    const std::string symbols = readelf("--symbols", ZSPACE_UNINSTALLER);
    EXPECT_THAT(symbols, HasSubstr(" main\n"));
    EXPECT_THAT(symbols, Not(HasSubstr(" _ZSt4cout\n")));
    EXPECT_THAT(symbols, Not(HasSubstr("_ZNSt8ios_base4InitC1Ev")));
}

TEST(Binary, TheProgramHasFewRelocations)
{
    const std::string relocations = readelf("--relocs", ZSPACE_UNINSTALLER);
    const auto lines = std::count(relocations.begin(), relocations.end(), '\n');
    EXPECT_GT(lines, 5);
    EXPECT_LT(lines, 3000);
}

} // namespace
} // namespace ZSpace::Testing
