// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The log front end with a report file: its name and place, what is written to it, and what happens if it
// cannot be opened.

#include "tests/log/FileLogging.h"

#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/platform/Foundation.h"
#include "ZSpace/system/ZSysInfoPaths.h"
#include "tests/support/Host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <sys/stat.h>
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

TEST_F(FileLogging, TheFileIsNamedAfterTheTagAndTheTime)
{
    runLogging([] {});
    ASSERT_EQ(files().size(), 1U);
    EXPECT_THAT(files()[0].filename().string(),
        MatchesRegex("Tag_[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}-[0-9]{2}-[0-9]{2}\\.[0-9]{3}\\.txt"));
}

TEST_F(FileLogging, EveryFunctionWritesToTheFile)
{
    const Outcome outcome = runLogging([] {
        CNSLog("a %d", 1);
        OCNSLog(NS::String("b %@").native(), NS::String("x").native());
        CNSLogMsg("100 %s");
        CNSDbgLog("not this");
        OCNSDbgLog(NS::String("nor this").native());
    });
    EXPECT_THAT(
        report(), MatchesRegex(s_prefix + "\ta 1\n" + s_prefix + "\tb x\n" + s_prefix + "\t100 %s\n"));
    EXPECT_EQ(outcome.standardError, "");
}

TEST_F(FileLogging, DebugLinesAreEchoedToStandardError)
{
    const Outcome outcome = runLogging(
        [] {
            CNSLog("a");
            CNSDbgLog("b");
        },
        s_file | s_debug);
    EXPECT_THAT(report(), MatchesRegex(s_prefix + "\ta\n" + s_prefix + "\tb\n"));
    EXPECT_THAT(outcome.standardError, MatchesRegex(s_prefix + " a\t\n" + s_prefix + " b\t\n"));
}

TEST_F(FileLogging, ATextIsCutAt4095BytesExceptWithAStackTrace)
{
    const std::string text(5000, 'x');
    runLogging([&] { CNSLog("%s", text.c_str()); });
    EXPECT_THAT(report(), EndsWith("]:\t" + text.substr(0, 4095) + "\n"));
    fs::remove(files()[0]);
    runLogging([&] { CNSLogWithStackTrace("%s", text.c_str()); });
    EXPECT_THAT(report(), HasSubstr("]:\t" + text + "\n------- stack trace -------\n"));
    EXPECT_THAT(report(), ContainsRegex("stack trace -------\n" + host().innermostFrame));
}

TEST_F(FileLogging, BytesThatAreNotUtf8AreWrittenUnchanged)
{
    const std::string text = "caf\xE9 \xC3";
    runLogging([&] {
        CNSLog("%s", text.c_str());
        CNSLog("<%s>", text.c_str());
        CNSLogMsg(text.c_str());
    });
    EXPECT_THAT(report(),
        MatchesRegex(
            s_prefix + "\t" + text + "\n" + s_prefix + "\t<" + text + ">\n" + s_prefix + "\t" + text + "\n"));
    fs::remove(files()[0]);
    runLogging([&] { CNSLogWithStackTrace("%s", text.c_str()); });
    EXPECT_THAT(report(), HasSubstr("]:\t" + text + "\n------- stack trace -------\n"));
}

TEST_F(FileLogging, TheSystemLogFunctionDoesNotReachTheFile)
{
    const Outcome outcome = runLogging([] { CNSSysLog(3, "to the system"); });
    EXPECT_EQ(report(), "");
    EXPECT_THAT(outcome.standardError, EndsWith("] to the system\n"));
}

TEST_F(FileLogging, SwitchedOffLinesGoToTheConsole)
{
    const Outcome outcome = runLogging([] {
        CNSLog("first");
        CNSDisableFileLogging();
        CNSLog("second");
        CNSDisableFileLogging();
    });
    EXPECT_THAT(report(), EndsWith("\tfirst\n"));
    EXPECT_THAT(outcome.standardError, EndsWith("] second\n"));
}

/// Grants access to the book of `theLog`.
struct OpenTransferLog : ZTransferLog {
    static ZRef<ZLogBook> book() { return theLog->*&OpenTransferLog::m_logBook; }
};

TEST_F(FileLogging, SwitchingOffClosesTheFileUnlessItsBookIsHeld)
{
    const Outcome outcome = runLogging([&] {
        EXPECT_EQ(openReports(), 1U);
        CNSDisableFileLogging();
        EXPECT_EQ(openReports(), 0U);

        CNSInitLog(s_file, 0, "Held", nullptr);
        ZRef<ZLogBook> book = OpenTransferLog::book();
        CNSDisableFileLogging();
        EXPECT_EQ(openReports(), 1U);
        book->add(ZLogRecord() << "still open");
        book = nullptr;
        EXPECT_EQ(openReports(), 0U);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    for (const fs::path& file : files()) {
        const bool isHeld = file.filename().string().starts_with("Held_");
        EXPECT_THAT(contentOf(file), isHeld ? EndsWith("\tstill open\n") : EndsWith(""));
    }
}

TEST_F(FileLogging, SwitchingOffWithoutSwitchingOnDoesNothing)
{
    const Outcome outcome = run([] {
        CNSDisableFileLogging();
        CNSLog("line");
    });
    EXPECT_THAT(outcome.standardError, EndsWith("] line\n"));
    EXPECT_TRUE(files().empty());
}

TEST_F(FileLogging, ASecondInitializationOpensAnotherFile)
{
    runLogging([&] {
        CNSLog("first");
        std::this_thread::sleep_for(std::chrono::milliseconds(3)); // names differ in milliseconds
        CNSInitLog(s_file, 0, "Other", nullptr);
        CNSLog("second");
    });
    ASSERT_EQ(files().size(), 2U);
    for (const fs::path& file : files()) {
        const bool isFirst = file.filename().string().starts_with("Tag_");
        EXPECT_THAT(contentOf(file), MatchesRegex(s_prefix + (isFirst ? "\tfirst\n" : "\tsecond\n")));
    }
}

TEST_F(FileLogging, WithoutTheFlagThereIsNoFile)
{
    const Outcome outcome = runLogging(
        [] {
            EXPECT_FALSE(ZTransferLog::isOn());
            CNSLog("line");
        },
        ~s_file & ~s_debug);
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    EXPECT_TRUE(files().empty());
    EXPECT_THAT(outcome.standardError, EndsWith("] line\n"));
    EXPECT_TRUE(fs::is_directory(m_logs)); // the directory is created all the same
}

TEST_F(FileLogging, ADirectoryNameOfOneCharacterOrNoneIsIgnored)
{
    for (const char* folder : {"/", "", static_cast<const char*>(nullptr)}) {
        run([=] {
            CNSInitLog(s_file, 0, "Tag", folder);
            CNSLog("line");
        });
        const fs::path usual = m_folder.path() / "CdLogs";
        ASSERT_EQ(filesIn(usual).size(), 1U);
        EXPECT_THAT(contentOf(filesIn(usual)[0]), EndsWith("\tline\n"));
        fs::remove_all(usual);
    }
}

TEST_F(FileLogging, ADirectoryNameOfTwoCharactersIsUsed)
{
    const Outcome outcome = run([this] {
        if (chdir(m_folder.path().c_str()) != 0)
            return;
        CNSInitLog(s_file, 0, "Tag", "ab");
        CNSLog("line");
    });
    EXPECT_EQ(filesIn(m_folder.path() / "ab").size(), 1U);
}

TEST_F(FileLogging, ANullTagIsEmpty)
{
    run([this] { CNSInitLog(s_file, 0, nullptr, m_logs.c_str()); });
    ASSERT_EQ(files().size(), 1U);
    EXPECT_THAT(files()[0].filename().string(), StartsWith("_2"));
}

TEST_F(FileLogging, AFileThatCannotBeOpenedIsIgnored)
{
    const Outcome outcome = run([this] {
        CNSInitLog(s_file, 0, "Tag", (m_folder.path() / "no" / "such").c_str());
        EXPECT_FALSE(ZTransferLog::isOn());
        CNSLog("line");
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    EXPECT_THAT(outcome.standardError, MatchesRegex("[^\n]*\\] line\n"));
}

TEST_F(FileLogging, AFileThatCannotBeOpenedLeavesThePreviousOneAttached)
{
    const Outcome outcome = runLogging([this] {
        CNSInitLog(s_file, 0, "Tag", (m_folder.path() / "no" / "such").c_str());
        CNSLog("line");
    });
    EXPECT_THAT(report(), EndsWith("\tline\n"));
}

TEST_F(FileLogging, ANewDirectoryIsOpenToEveryUserWhateverTheMask)
{
    run([this] {
        umask(077);
        CNSInitLog(s_file, 0, "Tag", m_logs.c_str());
    });
    struct stat status { };
    ASSERT_EQ(stat(m_logs.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0777U);
}

TEST_F(FileLogging, OnlyTheReportStaysOpenWhateverItsDescriptor)
{
    const Outcome outcome = run([this] {
        close(STDIN_FILENO);
        CNSInitLog(s_file, 0, "Tag", m_logs.c_str());
        CNSLog("line");
        EXPECT_TRUE(descriptorsOf(m_logs.string()).empty()); // the directory is closed
        EXPECT_EQ(openReports(), 1U);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    EXPECT_THAT(report(), EndsWith("\tline\n"));
}

TEST_F(FileLogging, LinesOfManyThreadsStayWhole)
{
    runLogging([] {
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t) {
            threads.emplace_back([t] {
                for (int i = 0; i < 200; ++i)
                    CNSLog("thread %d line %d end", t, i);
            });
        }
        for (std::thread& thread : threads)
            thread.join();
    });
    EXPECT_THAT(report(), MatchesRegex("(" + s_prefix + "\tthread [0-3] line [0-9]+ end\n)+"));
    for (int t = 0; t < 4; ++t)
        EXPECT_THAT(report(), HasSubstr("\tthread " + std::to_string(t) + " line 199 end\n"));
}

} // namespace
} // namespace ZSpace::Testing
