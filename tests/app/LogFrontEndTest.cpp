// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The log front end, where lines end up and how they are cut. Its switches cannot be turned back, so every
// test that sets one does so in a child process.

#include "app/LogFrontEnd.h"

#include "platform/Foundation.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/PrivateRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <sys/ptrace.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

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
    EXPECT_EQ(textOf(consoleOf([&] { CNSLog("%s", message.c_str()); })), message.substr(0, 4095) + "\n");
}

TEST(LogFrontEnd, TheStackTraceVariantTakes8191Bytes)
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
    EXPECT_THAT(trace, StartsWith("here" + s_header + "0   "));
    EXPECT_THAT(trace, EndsWith("\n" + s_footer));
    EXPECT_THAT(trace, ContainsRegex("\n1   "));
    EXPECT_THAT(trace, HasSubstr("CNSLogWithStackTrace + "));
}

TEST(LogFrontEnd, AppendingAStackTraceKeepsTheTextBeforeIt)
{
    const NS::MutableString target("before");
    OCAppendStackTrace(target.native());
    EXPECT_THAT(target.UTF8String(), StartsWith("before" + s_header + "0   "));
    EXPECT_THAT(target.UTF8String(), EndsWith("\n" + s_footer));
}

TEST(LogFrontEnd, FramesStandInTheOrderInnermostFirst)
{
    const NS::MutableString target("");
    OCAppendStackTrace(target.native());
    const std::string_view trace = target.UTF8String();
    const auto inner = trace.find("OCAppendStackTrace");
    const auto outer = trace.find("\n" + std::string("1   "));
    ASSERT_NE(inner, std::string_view::npos);
    EXPECT_LT(inner, outer);
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

TEST(LogFrontEnd, AFormatThatCannotBeFilledIsShownAsItIs)
{
    EXPECT_EQ(textOf(consoleOf([] { CNSLog("name %ls", L"\u00E9"); })), "name %ls\n");
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

/// Runs `work` in a child that is traced from its start on, as under a debugger.
Outcome runTraced(const std::function<int()>& work)
{
    return runInChild([&] {
        const pid_t traced = fork();
        if (traced == 0) {
            ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
            raise(SIGSTOP);
            const int status = work();
            std::_Exit(status);
        }
        int status = 0;
        while (waitpid(traced, &status, 0) == traced && WIFSTOPPED(status))
            ptrace(PTRACE_CONT, traced, nullptr, nullptr);
        return WIFEXITED(status) ? WEXITSTATUS(status) : 99;
    });
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

/// A tree whose system log socket the test reads.
class SystemLog : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateRoot::isPossible())
            GTEST_SKIP() << "this user may not make mount namespaces here";
        m_socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string path = (m_root.path() / "dev/log").string();
        ASSERT_LT(path.size(), sizeof address.sun_path);
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        ASSERT_EQ(bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    void TearDown() override { close(m_socket); }

    /// The messages sent so far, each with a line feed behind it.
    std::string messages() const
    {
        std::string all;
        std::vector<char> buffer(65536);
        for (ssize_t n = 0; (n = recv(m_socket, buffer.data(), buffer.size(), 0)) > 0;)
            all += std::string(buffer.data(), static_cast<std::size_t>(n)) + "\n";
        return all;
    }

    /// Priority of a message of the user facility.
    static std::string priority(int level) { return "<" + std::to_string(8 + level) + ">"; }

    PrivateRoot m_root;
    int m_socket = -1;
};

TEST_F(SystemLog, IsOpenedBySwitch1AndTakesLinesAtNoticeLevelUnderTheTag)
{
    const Outcome outcome = m_root.run([] {
        CNSInitLog(0, 1, "MyTag", nullptr);
        CNSLog("one %d", 1);
        OCNSLog(text("two").native());
        CNSLogMsg("100 %s");
        return 0;
    });
    const std::string sent = messages();
    EXPECT_THAT(sent, ContainsRegex(priority(5) + ".* MyTag: one 1\n"));
    EXPECT_THAT(sent, ContainsRegex(priority(5) + ".* MyTag: two\n"));
    EXPECT_THAT(sent, ContainsRegex(priority(5) + ".* MyTag: 100 %s\n"));
    EXPECT_EQ(outcome.standardError, "");
}

TEST_F(SystemLog, StaysClosedWithAnyOtherSwitch)
{
    for (const int sysLogSwitch : {0, 2, -1, 257}) {
        const Outcome outcome = m_root.run([=] {
            CNSInitLog(0, sysLogSwitch, "MyTag", nullptr);
            CNSLog("line");
            return 0;
        });
        EXPECT_EQ(messages(), "");
        EXPECT_THAT(outcome.standardError, EndsWith("] line\n"));
    }
}

TEST_F(SystemLog, TakesEachLevelAndTheNearestOneOfOthers)
{
    for (int level = -2; level <= 9; ++level) {
        m_root.run([=] {
            CNSInitLog(0, 1, "MyTag", nullptr);
            CNSSysLog(level, "level %d", level);
            return 0;
        });
        EXPECT_THAT(messages(),
            ContainsRegex(
                priority(std::clamp(level, 0, 7)) + ".* MyTag: level " + std::to_string(level) + "\n"));
    }
}

TEST_F(SystemLog, ANullTagIsEmpty)
{
    m_root.run([] {
        CNSInitLog(0, 1, nullptr, nullptr);
        CNSLog("line");
        return 0;
    });
    EXPECT_THAT(messages(), ContainsRegex(priority(5) + ".* : line\n"));
}

TEST_F(SystemLog, KeepsACopyOfTheTag)
{
    m_root.run([] {
        std::string tag = "MyTag";
        CNSInitLog(0, 1, tag.c_str(), nullptr);
        tag.assign("other");
        CNSLog("line");
        return 0;
    });
    EXPECT_THAT(messages(), HasSubstr(" MyTag: line\n"));
}

TEST_F(SystemLog, CopiesToStandardErrorUnderADebuggerOnly)
{
    const auto work = [] {
        CNSInitLog(0, 1, "MyTag", nullptr);
        CNSLog("line");
        return 0;
    };
    EXPECT_EQ(m_root.run(work).standardError, "");
    const Outcome traced = m_root.run([&] {
        const Outcome inner = runTraced(work);
        std::fputs(inner.standardError.c_str(), stderr);
        return inner.status;
    });
    EXPECT_EQ(traced.standardError, "MyTag: line\n");
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

} // namespace
} // namespace ZSpace::Testing
