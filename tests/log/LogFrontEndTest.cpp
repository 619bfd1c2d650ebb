// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The log front end: where lines go and how they are cut. Its switches cannot be reset, so each test that sets
// one runs in a child process.

#include "ZSpace/log/LogFrontEnd.h"

#include "ZSpace/log/detail/BoundedText.h"
#include "ZSpace/platform/Foundation.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Host.h"
#include "tests/support/Kernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <vector>

// The arguments of a `%n` are consumed as strings of no characters, which no C library reads. The sanitizers would.
extern "C" const char* __asan_default_options()
{
    return "check_printf=0";
}
extern "C" const char* __tsan_default_options()
{
    return "check_printf=0";
}

namespace ZSpace::Testing {
namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

const std::string s_header = "\n------- stack trace -------\n";
const std::string s_footer = "---------------------------\n";

/// What `work` wrote to the console.
std::string consoleOf(const std::function<void()>& work)
{
    const Outcome outcome = runInChild([&] {
        work();
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    return outcome.standardError;
}

/// The line without its date, program and thread.
std::string textOf(const std::string& consoleLine)
{
    const std::size_t end = consoleLine.find("] ");
    return end == std::string::npos ? consoleLine : consoleLine.substr(end + 2);
}

NS::String text(const char* utf8)
{
    return {utf8};
}

TEST(LogFrontEnd, LinesGoToTheConsoleBeforeAnyInitialisation)
{
    EXPECT_EQ(textOf(consoleOf([] { CNSLog("%s has %d", "a", 5); })), "a has 5\n");
    EXPECT_EQ(textOf(consoleOf([] { CNSLogMsg("100 %d"); })), "100 %d\n");
    EXPECT_EQ(textOf(consoleOf([] { OCNSLog(text("%@ is %.1f").native(), text("x").native(), 2.5); })),
        "x is 2.5\n");
    EXPECT_EQ(textOf(consoleOf([] { CNSSysLog(3, "level %d", 3); })), "level 3\n");
}

TEST(LogFrontEnd, TheTextIsNeverUsedAsAFormat)
{
    EXPECT_EQ(textOf(consoleOf([] { CNSLog("%s", "%s%n%d"); })), "%s%n%d\n");
    EXPECT_EQ(textOf(consoleOf([] { OCNSLog(text("%%s").native()); })), "%s\n");
}

TEST(LogFrontEnd, ATextBeyondTheBufferIsCutToItsFirst4095Bytes)
{
    const std::string message(5000, 'x');
    EXPECT_EQ(textOf(consoleOf([&] { CNSLog("%s", message.c_str()); })), message.substr(0, 4095) + "\n");
    EXPECT_EQ(
        textOf(consoleOf([&] { CNSSysLog(5, "%s", message.c_str()); })), message.substr(0, 4095) + "\n");
    const std::string fits(4095, 'y');
    EXPECT_EQ(textOf(consoleOf([&] { CNSLog("%s", fits.c_str()); })), fits + "\n");
}

TEST(LogFrontEnd, TheCutMayFallInsideACharacter)
{
    std::string message(4094, 'x');
    message += "\xC3\xA9";
    EXPECT_EQ(textOf(consoleOf([&] { CNSLog("%s", message.c_str()); })),
        message.substr(0, 4094) + host().cutCharacter + "\n");
}

TEST(LogFrontEnd, TheStackTraceVariantCutsAt8191Bytes)
{
    const std::string message(5000, 'x');
    const std::string whole = textOf(consoleOf([&] { CNSLogWithStackTrace("%s", message.c_str()); }));
    EXPECT_THAT(whole, StartsWith(message + s_header));
    const std::string longer(9000, 'y');
    const std::string cut = textOf(consoleOf([&] { CNSLogWithStackTrace("%s", longer.c_str()); }));
    EXPECT_THAT(cut, StartsWith(longer.substr(0, 8191) + s_header));
}

TEST(LogFrontEnd, FoundationFormatsHaveNoLengthLimit)
{
    const std::string message(20'000, 'x');
    EXPECT_EQ(textOf(consoleOf([&] { OCNSLog(text("%s").native(), message.c_str()); })), message + "\n");
    EXPECT_THAT(textOf(consoleOf([&] { OCNSLogWithStackTrace(text("%s").native(), message.c_str()); })),
        StartsWith(message + s_header));
}

TEST(LogFrontEnd, AStackTraceHasAHeaderALinePerFrameAndAFooter)
{
    const std::string trace = textOf(consoleOf([] { CNSLogWithStackTrace("here"); }));
    EXPECT_THAT(trace, ContainsRegex("^here" + s_header + host().innermostFrame));
    EXPECT_THAT(trace, EndsWith("\n" + s_footer));
    EXPECT_GT(std::count(trace.begin(), trace.end(), '\n'), 5);
}

TEST(LogFrontEnd, AppendingAStackTraceKeepsTheTextBeforeIt)
{
    const NS::MutableString target("before");
    OCAppendStackTrace(target.native());
    EXPECT_THAT(target.UTF8String(), ContainsRegex("^before" + s_header + host().innermostFrame));
    EXPECT_THAT(target.UTF8String(), EndsWith("\n" + s_footer));
}

TEST(LogFrontEnd, NullArgumentsCountAsEmpty)
{
    const char* const nothing = nullptr;
    EXPECT_EQ(textOf(consoleOf([=] { CNSLog(nothing); })), "\n");
    EXPECT_EQ(textOf(consoleOf([=] { CNSSysLog(5, nothing); })), "\n");
    EXPECT_EQ(textOf(consoleOf([] { OCNSLog(nullptr); })), "\n");
    EXPECT_THAT(textOf(consoleOf([=] { CNSLogWithStackTrace(nothing); })), StartsWith(s_header));
    EXPECT_THAT(textOf(consoleOf([] { OCNSLogWithStackTrace(nullptr); })), StartsWith(s_header));
    OCAppendStackTrace(nullptr);
    EXPECT_EQ(consoleOf([] { CNSInitLog(0, 0, nullptr, nullptr); }), "");
}

TEST(LogFrontEnd, ANullMessageIsIgnored)
{
    EXPECT_EQ(consoleOf([] { CNSLogMsg(nullptr); }), "");
    EXPECT_EQ(textOf(consoleOf([] { CNSLogMsg(""); })), "\n");
}

TEST(LogFrontEnd, AFormatThatFailsLogsWhatWasFormattedUntilThen)
{
    EXPECT_EQ(textOf(consoleOf([] { CNSLog("name %ls end", L"\xD800"); })), "name \n");
}

TEST(LogFrontEnd, AFailedFormatMayBeLongerThanTheBuffer)
{
    const std::string message(5000, 'x');
    EXPECT_EQ(textOf(consoleOf([&] { CNSLog("%s %ls", message.c_str(), L"\xD800"); })),
        message.substr(0, 4095) + "\n");
}

/// Formats that the compiler must not check.
const char* unchecked(const char* format)
{
    return format;
}

TEST(LogFrontEnd, NoFormatStoresToMemory)
{
    struct Row {
        const char* format;
        const char* expected;
    };
    const Row rows[]{
        {"%s%n|%d", "ab|7\n"},
        {"%s%hhn|%d", "ab|7\n"},
        {"%s%-08.3lln|%d", "ab|7\n"},
        {"%s% n|%d", "ab|7\n"},
        {"%1$s%2$n|%3$d", "ab|7\n"},
        {"%3$d%2$zn%%n|%1$s", "7%n|ab\n"},
    };
    const auto isSafe = [](const std::function<void(const char*, int*)>& log, const Row& row) {
        const Outcome outcome = runInChild([&] {
            int number = 42;
            log(unchecked(row.format), &number);
            return number == 42 ? 0 : 1;
        });
        EXPECT_EQ(outcome.status, 0) << row.format;
        EXPECT_THAT(textOf(outcome.standardError), StartsWith(std::string(row.expected).substr(0, 3)));
        return textOf(outcome.standardError);
    };
    for (const Row& row : rows) {
        EXPECT_EQ(isSafe([](const char* format, int* n) { CNSLog(format, "ab", n, 7); }, row), row.expected);
        EXPECT_EQ(
            isSafe([](const char* format, int* n) { CNSSysLog(5, format, "ab", n, 7); }, row), row.expected);
        EXPECT_EQ(isSafe([](const char* format, int* n) { OCNSLog(text(format).native(), "ab", n, 7); }, row),
            row.expected);
        isSafe([](const char* format, int* n) { CNSLogWithStackTrace(format, "ab", n, 7); }, row);
        isSafe([](const char* format, int* n) { OCNSLogWithStackTrace(text(format).native(), "ab", n, 7); },
            row);
    }
}

TEST(LogFrontEnd, AStarOfAStoreTakesItsArgument)
{
    const std::string console = consoleOf([] {
        int number = 42;
        CNSLog(unchecked("a%*n|%d"), 5, &number, number);
    });
    EXPECT_EQ(textOf(console), "a|42\n");
}

TEST(LogFrontEnd, DebugLinesAreOffAtStart)
{
    EXPECT_FALSE(CNSDbgLogEnabled());
    EXPECT_EQ(consoleOf([] {
        CNSDbgLog("a");
        OCNSDbgLog(text("b").native());
    }),
        "");
}

TEST(LogFrontEnd, Flag2TurnsDebugLinesOnForGood)
{
    const std::string console = consoleOf([] {
        CNSInitLog(0x002, 0, "tag", nullptr);
        EXPECT_TRUE(CNSDbgLogEnabled());
        CNSInitLog(0, 0, "tag", nullptr);
        EXPECT_TRUE(CNSDbgLogEnabled());
        CNSDbgLog("first %d", 1);
        OCNSDbgLog(text("second %@").native(), text("x").native());
    });
    EXPECT_THAT(console, HasSubstr("] first 1\n"));
    EXPECT_THAT(console, HasSubstr("] second x\n"));
}

TEST(LogFrontEnd, OtherFlagsTurnNothingOn)
{
    const Outcome outcome = runInChild([] {
        CNSInitLog(~(0x102), 0, "tag", nullptr);
        return CNSDbgLogEnabled() ? 1 : 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST(LogFrontEnd, ADebuggerTurnsDebugLinesOnWithoutTheFlag)
{
    const Outcome outcome = runTraced([] {
        CNSInitLog(0, 0, "tag", nullptr);
        CNSDbgLog("traced");
        return CNSDbgLogEnabled() ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.standardError, EndsWith("] traced\n"));
}

TEST(LogFrontEnd, LinesOfManyThreadsStayWhole)
{
    constexpr int threadCount = 4;
    constexpr int lineCount = 200;
    const std::string console = consoleOf([] {
        std::vector<std::thread> threads;
        for (int t = 0; t < threadCount; ++t) {
            threads.emplace_back([t] {
                for (int i = 0; i < lineCount; ++i)
                    CNSLog("thread %d line %d end", t, i);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    });
    for (int t = 0; t < threadCount; ++t) {
        for (int i = 0; i < lineCount; ++i) {
            const std::string line =
                "] thread " + std::to_string(t) + " line " + std::to_string(i) + " end\n";
            ASSERT_THAT(console, HasSubstr(line));
        }
    }
}

TEST(BoundedText, AStringIsTerminatedWhateverItsBufferHeld)
{
    using Text = detail::BoundedText<16>;
    const auto check = [](const char* format, ...) {
        alignas(Text) unsigned char storage[sizeof(Text)];
        std::memset(storage, 'z', sizeof storage);
        std::va_list arguments;
        va_start(arguments, format);
        const Text* const text = new (storage) Text(format, arguments);
        va_end(arguments);
        EXPECT_STREQ(text->get(), "aaaaaaaaaaaaaaa");
        std::destroy_at(text);
    };
    check("%s", std::string(16, 'a').c_str());
    check("%s", std::string(100, 'a').c_str());
    check("a%s", std::string(100, 'a').c_str());
}

} // namespace
} // namespace ZSpace::Testing
