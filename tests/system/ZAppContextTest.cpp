// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/ZAppContext.h"

#include "ZSpace/platform/Process.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Kernel.h"
#include "tests/support/PrivateRoot.h"
#include "tests/support/Probes.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <thread>
#include <type_traits>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

static_assert(std::has_virtual_destructor_v<ZAppContext>);
static_assert(std::is_copy_constructible_v<ZAppContext> && std::is_copy_assignable_v<ZAppContext>);

/// The first arguments of the command line `program a b c`.
class CommandLine {
public:
    explicit CommandLine(int arguments)
        : m_count(arguments + 1)
    {
    }
    [[nodiscard]] int count() const { return m_count; }
    [[nodiscard]] char** values() { return m_values; }

private:
    char m_program[8] = "program";
    char m_a[2] = "a";
    char m_b[2] = "b";
    char m_c[3] = "\xE9"
                  "c";
    char* m_values[5]{m_program, m_a, m_b, m_c, nullptr};
    int m_count;
};

pid_t processIdOf(const ZAppContext& context)
{
    return static_cast<pid_t>(wordAt(&context, 3) & 0xFFFFFFFF);
}

std::string narrow(const ZMStr<wchar_t>& text)
{
    const ZGStr<char> narrowed(text);
    return narrowed.isEmpty() ? "" : std::string(narrowed);
}

TEST(ZAppContextTest, FieldsAreInOrder)
{
    CommandLine line(3);
    const ZAppContext context(line.count(), line.values());
    static_assert(sizeof(ZAppContext) == 10 * sizeof(void*));
    EXPECT_EQ(wordAt(&context, 1) & 0xFFFFFFFF, 0u); // the exit value
    const pthread_t self = pthread_self(); // a number here, a pointer there
    EXPECT_EQ(wordAt(&context, 2), wordAt(&self, 0));
    EXPECT_EQ(processIdOf(context), getpid());
    EXPECT_EQ(wordAt(&context, 5), 3u); // the number of arguments
    EXPECT_EQ(wordAt(&context, 9), static_cast<std::uintptr_t>(context.Path().Length()));
}

TEST(ZAppContextTest, KnowsTheProcess)
{
    const ZAppContext context;
    EXPECT_EQ(static_cast<int>(context), 0);
    EXPECT_EQ(narrow(context.Path()), programFile());
    EXPECT_EQ(context.ArgCount(), 0);
    EXPECT_TRUE(context.isMainThread());
}

/// Runs a copy of `removed_program` under `name` and returns what it prints.
std::string pathPrintedBy(const std::string& name, const char* argument)
{
    const TemporaryFolder directory;
    const std::string program = (std::filesystem::canonical(directory.path()) / name).string();
    std::filesystem::copy_file(ZSPACE_REMOVED_PROGRAM, program);
    std::filesystem::copy_file(ZSPACE_REMOVED_PROGRAM, program + " (deleted)"); // another file
    const Outcome outcome = runInChild([&] {
        execl(program.c_str(), program.c_str(), argument, nullptr);
        return 99;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(std::filesystem::exists(program), argument != nullptr);
    // Without its directory, which differs in each run.
    const std::string prefix = program.substr(0, program.rfind('/') + 1);
    EXPECT_TRUE(outcome.standardOutput.starts_with(prefix)) << outcome.standardOutput;
    return outcome.standardOutput.substr(std::min(prefix.size(), outcome.standardOutput.size()));
}

TEST(ZAppContextTest, PathOfARemovedProgramIsTheOneItWasStartedFrom)
{
    EXPECT_EQ(pathPrintedBy("program", "keep"), "program");
    if (std::filesystem::exists(
            "/proc/self/exe")) { // elsewhere the system forgets the path of a removed file
        EXPECT_EQ(pathPrintedBy("program", nullptr), "program");
    }
}

TEST(ZAppContextTest, PathMayEndLikeThatOfARemovedProgram)
{
    EXPECT_EQ(pathPrintedBy("program (deleted)", "keep"), "program (deleted)");
    if (std::filesystem::exists("/proc/self/exe")) {
        EXPECT_EQ(pathPrintedBy("program (deleted)", nullptr), "program (deleted)");
    }
}

TEST(ZAppContextTest, PathIsEmptyWhereItCannotBeFoundOut)
{
    if (!std::filesystem::exists("/proc/self/exe") || !PrivateRoot::isPossible())
        GTEST_SKIP() << "there is no /proc here, or this user may not take it away";
    const Outcome outcome = PrivateRoot().run(
        [] { return Host::executablePath().empty() && ZAppContext().Path().isEmpty() ? 0 : 1; },
        {.proc = true});
    EXPECT_EQ(outcome.status, 0);
}

TEST(ZAppContextTest, MainThreadIsTheOneThatConstructedIt)
{
    const ZAppContext here;
    bool isMainThreadThere = true;
    bool isItsOwn = false;
    bool isItsOwnHere = true;
    std::thread([&] {
        isMainThreadThere = here.isMainThread();
        const ZAppContext there;
        isItsOwn = there.isMainThread();
        std::thread([&] { isItsOwnHere = there.isMainThread(); }).join();
    }).join();
    EXPECT_FALSE(isMainThreadThere);
    EXPECT_TRUE(isItsOwn);
    EXPECT_FALSE(isItsOwnHere);
}

TEST(ZAppContextTest, LoadingAgainAppendsThePathAndRecordsTheThread)
{
    ZAppContext context;
    std::thread([&] { context.loadProcessData(); }).join();
    EXPECT_FALSE(context.isMainThread());
    EXPECT_EQ(narrow(context.Path()), programFile() + programFile());
}

TEST(ZAppContextDeathTest, ProcessIdCanBeUpdatedInAChild)
{
    ZAppContext context;
    const pid_t parent = getpid();
    EXPECT_EXIT(
        {
            const bool wasParents = processIdOf(context) == parent;
            context.loadThreadData();
            std::_Exit(wasParents && processIdOf(context) == getpid() ? 7 : 1);
        },
        testing::ExitedWithCode(7), "");
}

// Arguments

TEST(ZAppContextTest, KeepsTheArgumentsAfterTheProgramsName)
{
    CommandLine none(0);
    EXPECT_EQ(ZAppContext(none.count(), none.values()).ArgCount(), 0);
    EXPECT_EQ(ZAppContext(0, none.values()).ArgCount(), 0);
    EXPECT_EQ(ZAppContext(-1, none.values()).ArgCount(), 0);
    CommandLine line(3);
    const ZAppContext context(line.count(), line.values());
    EXPECT_EQ(context.ArgCount(), 3);
    EXPECT_STREQ(context.Arg(0), L"a");
    EXPECT_STREQ(context.Arg(1), L"b");
    EXPECT_STREQ(context.Arg(2), L"\u00E9c"); // byte by byte
}

TEST(ZAppContextTest, ArgumentIndicesCountFromEitherEndAndAreClamped)
{
    CommandLine line(3);
    const ZAppContext context(line.count(), line.values());
    const std::pair<long, const wchar_t*> table[]{{0, L"a"}, {1, L"b"}, {2, L"\u00E9c"}, {3, L"\u00E9c"},
        {7, L"\u00E9c"}, {99, L"\u00E9c"}, {LONG_MAX, L"\u00E9c"}, {-1, L"\u00E9c"}, {-2, L"b"}, {-3, L"a"},
        {-4, L"a"}, {LONG_MIN, L"a"}};
    for (const auto& [index, text] : table) {
        EXPECT_STREQ(context.Arg(index), text) << index;
        EXPECT_STREQ(context.ArgW(index), text) << index;
    }
    static_assert(std::is_same_v<decltype(context.Arg(0)), ZMStr<wchar_t>>);
    static_assert(std::is_same_v<decltype(context.ArgW(0)), ZGStr<wchar_t>>);
}

TEST(ZAppContextTest, WithoutArgumentsEachIsEmpty)
{
    const ZAppContext context;
    EXPECT_TRUE(context.Arg(0).isEmpty());
    EXPECT_TRUE(context.ArgW(-1).isEmpty());
}

TEST(ZAppContextTest, TakesWideArgumentsAndAppendsMore)
{
    wchar_t program[] = L"program";
    wchar_t wide[] = L"\u20AC";
    wchar_t* values[]{program, wide, nullptr};
    CommandLine line(2);
    ZAppContext context(line.count(), line.values());
    context.initArguments(2, values);
    EXPECT_EQ(context.ArgCount(), 3);
    EXPECT_STREQ(context.Arg(-1), L"\u20AC");
    context.initArguments(1, values);
    context.initArguments(line.count(), line.values());
    EXPECT_EQ(context.ArgCount(), 5);
    EXPECT_STREQ(context.Arg(3), L"a");
}

TEST(ZAppContextTest, CopiesEverything)
{
    CommandLine line(3);
    const ZAppContext context(line.count(), line.values());
    const ZAppContext copy(context);
    ZAppContext assigned;
    std::thread([&] { assigned.loadProcessData(); }).join();
    EXPECT_EQ(&(assigned = context), &assigned);
    for (const ZAppContext* each : {&copy, static_cast<const ZAppContext*>(&assigned)}) {
        EXPECT_EQ(static_cast<int>(*each), 0);
        EXPECT_TRUE(each->isMainThread());
        EXPECT_EQ(processIdOf(*each), getpid());
        EXPECT_EQ(each->ArgCount(), 3);
        EXPECT_STREQ(each->Arg(2), L"\u00E9c");
        EXPECT_EQ(each->Path(), context.Path());
    }
}

// The environment

TEST(ZAppContextTest, ReadsTheEnvironment)
{
    setenv("ZSPACE_TEST", "value \xE9", 1);
    ZMStr<wchar_t> name(L"ZSPACE_TEST");
    EXPECT_STREQ(ZAppContext::getEnv("ZSPACE_TEST"), L"value \u00E9");
    EXPECT_STREQ(ZAppContext::getEnv(L"ZSPACE_TEST"), L"value \u00E9");
    EXPECT_STREQ(ZAppContext::getEnv(name), L"value \u00E9");
    EXPECT_STREQ(ZAppContext::getEnv(ZGStr<wchar_t>(L"ZSPACE_TEST")), L"value \u00E9");
    setenv("ZSPACE_TEST", "", 1);
    EXPECT_TRUE(ZAppContext::getEnv("ZSPACE_TEST").isEmpty());
    unsetenv("ZSPACE_TEST");
    EXPECT_TRUE(ZAppContext::getEnv("ZSPACE_TEST").isEmpty());
    EXPECT_TRUE(ZAppContext::getEnv(L"ZSPACE_TEST").isEmpty());
    EXPECT_TRUE(ZAppContext::getEnv(name).isEmpty());
}

TEST(ZAppContextTest, InvalidNamesReturnAnEmptyString)
{
    ZMStr<wchar_t> empty;
    EXPECT_TRUE(ZAppContext::getEnv(static_cast<const char*>(nullptr)).isEmpty());
    EXPECT_TRUE(ZAppContext::getEnv(static_cast<const wchar_t*>(nullptr)).isEmpty());
    EXPECT_TRUE(ZAppContext::getEnv("").isEmpty());
    EXPECT_TRUE(ZAppContext::getEnv(L"").isEmpty());
    EXPECT_TRUE(ZAppContext::getEnv(empty).isEmpty());
}

} // namespace
} // namespace ZSpace::Testing
