// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Call stacks: names, offsets and order.

#include "ZSpace/platform/CallStack.h"
#include "ZSpace/platform/Foundation.h"
#include "ZSpace/platform/linux/ElfSymbolsLinux.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <elf.h>
#include <link.h>
#include <string>
#include <utility>
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

using testing::Contains;
using testing::ContainsRegex;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;

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

TEST(CallStack, TheOffsetIsThatOfTheReturnAddressInItsFunction)
{
    const std::string line = innerFrame().firstObject().UTF8String();
    const std::size_t hexadecimal = line.find("0x");
    const std::size_t plus = line.rfind(" + ");
    ASSERT_TRUE(hexadecimal != std::string::npos && plus != std::string::npos) << line;
    const std::uintptr_t address = std::stoull(line.substr(hexadecimal), nullptr, 16);
    EXPECT_EQ(address - reinterpret_cast<std::uintptr_t>(&innerFrame), std::stoull(line.substr(plus + 3)));
}

TEST(CallStack, FramesOfLibrariesHaveTheNameOfTheirLibrary)
{
    const std::vector<std::string> lines = Host::callStackLines(nullptr);
    EXPECT_THAT(lines, Contains(ContainsRegex("^[0-9]+ +[^ ]*libc[^ ]* +0x")));
}

TEST(CallStack, IsWholeIfTheCallerIsNotInIt)
{
    const int elsewhere = 0;
    const std::vector<std::string> lines = Host::callStackLines(&elsewhere);
    ASSERT_GE(lines.size(), 3U);
    char address[32];
    std::snprintf(address, sizeof address, " 0x%016zx ",
        static_cast<std::size_t>(reinterpret_cast<std::uintptr_t>(&elsewhere)));
    for (const std::string& line : lines) {
        EXPECT_THAT(line, Not(HasSubstr(" 0x0000000000000000 "))); // frames, nothing else
        EXPECT_THAT(line, Not(HasSubstr(address)));
    }
    EXPECT_THAT(lines, Contains(HasSubstr("CallStack_IsWholeIfTheCallerIsNotInIt_Test")));
}

TEST(CallStack, AFrameWithoutANameHasItsOffsetInTheFile)
{
    for (const std::string& line : Host::callStackLines(nullptr)) {
        const std::size_t hexadecimal = line.find("0x");
        ASSERT_NE(hexadecimal, std::string::npos) << line;
        EXPECT_LT(std::stoull(line.substr(line.rfind(" + ") + 3)),
            std::stoull(line.substr(hexadecimal), nullptr, 16) / 2)
            << line;
    }
}

TEST(CallStack, EndsWithTheOutermostFrame)
{
    for (const std::string& line : Host::callStackLines(__builtin_return_address(0)))
        EXPECT_THAT(line, Not(HasSubstr(" 0x0000000000000000 ")));
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

/// A file with the functions "first" (0x1000 to 0x100F) and "second" (0x1020 to 0x102F). It ends with the last
/// character of the last name.
struct SmallProgram {
    static constexpr std::size_t s_namesLength = 13;

    ElfW(Ehdr) header{};
    ElfW(Shdr) sections[4]{}; // the last one is not counted in the header
    ElfW(Sym) symbols[2]{};
    char names[s_namesLength + 1] = "\0first\0second";

    SmallProgram()
    {
        std::memcpy(header.e_ident, ELFMAG, SELFMAG);
        header.e_ident[EI_CLASS] = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;
        header.e_shentsize = sizeof sections[0];
        header.e_shoff = offsetof(SmallProgram, sections);
        header.e_shnum = 3;
        sections[1].sh_type = SHT_SYMTAB;
        sections[1].sh_link = 2;
        sections[1].sh_offset = offsetof(SmallProgram, symbols);
        sections[1].sh_size = sizeof symbols;
        sections[2].sh_offset = offsetof(SmallProgram, names);
        sections[3] = sections[2];
        symbols[0].st_name = 1;
        symbols[0].st_value = 0x1000;
        symbols[1].st_name = 7;
        symbols[1].st_value = 0x1020;
        for (auto& symbol : symbols) {
            symbol.st_info = STT_FUNC;
            symbol.st_shndx = 1;
            symbol.st_size = 0x10;
        }
    }

    /// What `address` is in, as "first+3"; empty if it is in no function with a name. `end` follows the file.
    [[nodiscard]] std::string at(std::uintptr_t address, const std::string& end = "") const
    {
        const TemporaryFolder folder;
        const std::string file = (folder.path() / "program").string();
        const std::string bytes(
            reinterpret_cast<const char*>(this), offsetof(SmallProgram, names) + s_namesLength);
        writeFile(file, bytes + end);
        const Host::ElfSymbols symbolsOfFile(file.c_str());
        const Host::ElfSymbols::Function function = symbolsOfFile.functionAt(address);
        return function.name ? function.name + ("+" + std::to_string(function.offset)) : "";
    }
};

TEST(ElfSymbols, AFunctionExtendsFromItsFirstByteToItsLast)
{
    const SmallProgram program;
    EXPECT_EQ(program.at(0xFFF), "");
    EXPECT_EQ(program.at(0x1000), "first+0");
    EXPECT_EQ(program.at(0x100F), "first+15");
    EXPECT_EQ(program.at(0x1010), "");
}

TEST(ElfSymbols, ANameMustEndInTheFile)
{
    const SmallProgram program;
    EXPECT_EQ(program.at(0x1020), "");
    EXPECT_EQ(program.at(0x1020, std::string(1, '\0')), "second+0");
}

TEST(ElfSymbols, ASectionNumberBeyondTheTableIsRefused)
{
    SmallProgram program;
    program.sections[1].sh_link = 3;
    EXPECT_EQ(program.at(0x1000), "");
    program.header.e_shnum = 4;
    EXPECT_EQ(program.at(0x1000), "first+0");
}

TEST(ElfSymbols, ATableLargerThanItsFileEndsWithTheFile)
{
    SmallProgram program;
    program.sections[1].sh_size = ~decltype(program.sections[1].sh_size){0};
    EXPECT_EQ(program.at(0x1008), "first+8");
    EXPECT_EQ(program.at(0x3000), "");
}

TEST(ElfSymbols, ATableHasAsManySymbolsAsItsSizeSays)
{
    SmallProgram program;
    program.sections[1].sh_size = sizeof program.symbols[0];
    EXPECT_EQ(program.at(0x1000, std::string(1, '\0')), "first+0");
    EXPECT_EQ(program.at(0x1020, std::string(1, '\0')), "");
}

TEST(ElfSymbols, OnlyFunctionsThatTheFileDefinesCount)
{
    SmallProgram program;
    program.symbols[0].st_info = STT_OBJECT;
    EXPECT_EQ(program.at(0x1000), "");
    program.symbols[0].st_info = STT_FUNC;
    program.symbols[0].st_shndx = SHN_UNDEF;
    EXPECT_EQ(program.at(0x1000), "");
}

TEST(ElfSymbols, ANameOutsideTheFileIsNone)
{
    SmallProgram program;
    program.symbols[0].st_name = 0x7FFFFFFF;
    EXPECT_EQ(program.at(0x1000), "");
}

TEST(ElfSymbols, TheFullTableIsPreferredWhereverItStands)
{
    SmallProgram program;
    program.sections[0] = program.sections[1];
    program.sections[0].sh_type = SHT_DYNSYM;
    program.sections[0].sh_size = 0;
    EXPECT_EQ(program.at(0x1000), "first+0");
    std::swap(program.sections[0], program.sections[1]);
    EXPECT_EQ(program.at(0x1000), "first+0");
    program.sections[0].sh_type = SHT_DYNSYM; // the only one of them with a symbol
    EXPECT_EQ(program.at(0x1000), "first+0");
}

TEST(ElfSymbols, AFileOfAnotherFormatHasNone)
{
    SmallProgram program;
    program.header.e_ident[1] = 'e';
    EXPECT_EQ(program.at(0x1000), "");
    program = SmallProgram();
    program.header.e_ident[EI_CLASS] = ELFCLASSNONE;
    EXPECT_EQ(program.at(0x1000), "");
    program = SmallProgram();
    ++program.header.e_shentsize;
    EXPECT_EQ(program.at(0x1000), "");
}

} // namespace
} // namespace ZSpace::Testing
