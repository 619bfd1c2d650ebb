// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Call stacks: names, offsets and order.

#include "ZSpace/platform/Foundation.h"
#include "ZSpace/platform/linux/ElfSymbolsLinux.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace ZSpace::Testing {

/// In a namespace, so that its name is found only if it was demangled.
[[gnu::noinline]] NS::Array innerFrame()
{
    NS::Array symbols = NS::Thread::callStackSymbols();
    asm volatile("" ::: "memory"); // keeps the call from becoming a jump
    return symbols;
}

namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;

[[gnu::noinline]] NS::Array hiddenFrame()
{
    NS::Array symbols = innerFrame();
    asm volatile("" ::: "memory");
    return symbols;
}

TEST(CallStack, BeginsWithTheCallerAndGoesOutwards)
{
    const NS::Array symbols = hiddenFrame();
    ASSERT_GE(symbols.count(), 3U);
    EXPECT_THAT(symbols.objectAtIndex(0).UTF8String(), HasSubstr(" ZSpace::Testing::innerFrame() + "));
    EXPECT_THAT(symbols.objectAtIndex(1).UTF8String(),
        HasSubstr(" ZSpace::Testing::(anonymous namespace)::hiddenFrame() + "));
    EXPECT_THAT(symbols.objectAtIndex(2).UTF8String(),
        HasSubstr("CallStack_BeginsWithTheCallerAndGoesOutwards_Test"));
}

TEST(CallStack, ALineHasNumberModuleAddressNameAndOffset)
{
    const NS::Array symbols = innerFrame();
    EXPECT_THAT(symbols.firstObject().UTF8String(),
        MatchesRegex("0   platform_tests +0x[0-9a-f]{16} ZSpace::Testing::innerFrame\\(\\) \\+ [0-9]+"));
    EXPECT_THAT(symbols.objectAtIndex(1).UTF8String(),
        MatchesRegex("1   platform_tests +0x[0-9a-f]{16} .* \\+ [0-9]+"));
}

[[gnu::noinline]] NS::Array recurse(int depth)
{
    NS::Array symbols = depth > 0 ? recurse(depth - 1) : NS::Thread::callStackSymbols();
    asm volatile("" ::: "memory");
    return symbols;
}

TEST(CallStack, ADeepStackIsTruncatedAtItsOuterEnd)
{
    const NS::Array symbols = recurse(300);
    EXPECT_GT(symbols.count(), 100U);
    EXPECT_LE(symbols.count(), 128U);
    EXPECT_THAT(symbols.firstObject().UTF8String(), HasSubstr("recurse(int)"));
}

TEST(ElfSymbols, AnAddressOutsideAllFunctionsHasNoName)
{
    const Host::ElfSymbols symbols("/proc/self/exe");
    EXPECT_EQ(symbols.functionAt(0).name, nullptr);
    EXPECT_EQ(symbols.functionAt(~std::uintptr_t{0}).name, nullptr);
}

TEST(ElfSymbols, BrokenFilesHaveNoSymbols)
{
    const TemporaryFolder folder;
    const std::string program = contentOf("/proc/self/exe");
    const auto file = (folder.path() / "broken").string();
    EXPECT_EQ(Host::ElfSymbols(file.c_str()).functionAt(1).name, nullptr); // missing
    EXPECT_EQ(Host::ElfSymbols(folder.path().c_str()).functionAt(1).name, nullptr); // a folder
    for (const std::size_t length : {std::size_t{0}, std::size_t{3}, std::size_t{63}, std::size_t{64},
             std::size_t{100}, program.size() / 2, program.size() - 1}) {
        writeFile(file, program.substr(0, length));
        EXPECT_EQ(Host::ElfSymbols(file.c_str()).functionAt(1).name, nullptr) << length;
    }
    std::string wrong = program;
    wrong[4] = 1; // another word size
    writeFile(file, wrong);
    EXPECT_EQ(Host::ElfSymbols(file.c_str()).functionAt(1).name, nullptr);
    std::string wild = program;
    for (std::size_t i = 40; i < 48; ++i)
        wild[i] = '\xFF'; // the offset of the section table
    writeFile(file, wild);
    EXPECT_EQ(Host::ElfSymbols(file.c_str()).functionAt(1).name, nullptr);
}

} // namespace
} // namespace ZSpace::Testing
