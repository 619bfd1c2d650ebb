// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The log front end with a report file: where it is, what reaches it, and what happens when it cannot be had.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/platform/Foundation.h"
#include "ZSpace/system/ZSysInfoPaths.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Host.h"
#include "tests/support/TemporaryFolder.h"

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

namespace fs = std::filesystem;
using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;

const std::string s_prefix =
    "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} Thread\\[[0-9a-f]+\\]:";
constexpr int s_file = 0x100;
constexpr int s_debug = 0x002;

class FileLogging : public testing::Test {
protected:
    /// Logs in a child whose home and log folder are the test's.
    Outcome run(const std::function<void()>& work) const
    {
        return runInChild([&] {
            setenv("HOME", m_folder.path().c_str(), 1);
            work();
            return testing::Test::HasFailure() ? 1 : 0;
        });
    }
    /// The same with file logging on.
    Outcome runLogging(const std::function<void()>& work, int flags = s_file) const
    {
        return run([&] {
            CNSInitLog(flags, 0, "Tag", m_logs.c_str());
            work();
        });
    }
    [[nodiscard]] std::vector<fs::path> files() const { return filesIn(m_logs); }
    static std::vector<fs::path> filesIn(const fs::path& folder)
    {
        std::vector<fs::path> found;
        if (fs::exists(folder)) {
            for (const auto& entry : fs::directory_iterator(folder))
                found.push_back(entry.path());
        }
        return found;
    }
    [[nodiscard]] std::string report() const
    {
        EXPECT_EQ(files().size(), 1U);
        return files().empty() ? "" : contentOf(files()[0]);
    }

    TemporaryFolder m_folder;
    fs::path m_logs = m_folder.path() / "logs";
};

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

TEST_F(FileLogging, ATextIsCutAt4095BytesAndGoesWholeWithAStackTrace)
{
    const std::string text(5000, 'x');
    runLogging([&] { CNSLog("%s", text.c_str()); });
    EXPECT_THAT(report(), EndsWith("]:\t" + text.substr(0, 4095) + "\n"));
    fs::remove(files()[0]);
    runLogging([&] { CNSLogWithStackTrace("%s", text.c_str()); });
    EXPECT_THAT(report(), HasSubstr("]:\t" + text + "\n------- stack trace -------\n"));
    EXPECT_THAT(report(), ContainsRegex("stack trace -------\n" + host().innermostFrame));
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

TEST_F(FileLogging, SwitchingOffClosesTheFileUnlessItIsHeld)
{
    const auto openReports = [this] {
        int count = 0;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
            std::error_code error;
            count += fs::read_symlink(entry.path(), error).string().starts_with(m_logs.string());
        }
        return count;
    };
    const Outcome outcome = runLogging([&] {
        EXPECT_EQ(openReports(), 1);
        CNSDisableFileLogging();
        EXPECT_EQ(openReports(), 0);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
}

TEST_F(FileLogging, SwitchingOffWhatWasNeverOnDoesNothing)
{
    const Outcome outcome = run([] {
        CNSDisableFileLogging();
        CNSLog("line");
    });
    EXPECT_THAT(outcome.standardError, EndsWith("] line\n"));
    EXPECT_TRUE(files().empty());
}

TEST_F(FileLogging, ASecondInitialisationOpensAFurtherFile)
{
    runLogging([&] {
        CNSLog("first");
        std::this_thread::sleep_for(std::chrono::milliseconds(3)); // names tell milliseconds
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
    const Outcome outcome = runLogging([] { CNSLog("line"); }, ~s_file & ~s_debug);
    EXPECT_TRUE(files().empty());
    EXPECT_FALSE(ZTransferLog::isOn());
    EXPECT_THAT(outcome.standardError, EndsWith("] line\n"));
    EXPECT_TRUE(fs::is_directory(m_logs)); // the folder is set all the same
}

TEST_F(FileLogging, AFolderNameOfOneCharacterOrNoneIsIgnored)
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

TEST_F(FileLogging, AFolderNameOfTwoCharactersIsTaken)
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

TEST_F(FileLogging, AFileThatCannotBeOpenedIsPassedOverInSilence)
{
    const Outcome outcome = run([this] {
        CNSInitLog(s_file, 0, "Tag", (m_folder.path() / "no" / "such").c_str());
        EXPECT_FALSE(ZTransferLog::isOn());
        CNSLog("line");
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    EXPECT_THAT(outcome.standardError, MatchesRegex("[^\n]*\\] line\n"));
}

TEST_F(FileLogging, AFileThatCannotBeOpenedLeavesTheOneBeforeInPlace)
{
    const Outcome outcome = runLogging([this] {
        CNSInitLog(s_file, 0, "Tag", (m_folder.path() / "no" / "such").c_str());
        CNSLog("line");
    });
    EXPECT_THAT(report(), EndsWith("\tline\n"));
}

TEST_F(FileLogging, AMadeFolderIsOpenToEveryUserWhateverTheMask)
{
    run([this] {
        umask(077);
        CNSInitLog(s_file, 0, "Tag", m_logs.c_str());
    });
    struct stat status { };
    ASSERT_EQ(stat(m_logs.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0777U);
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
