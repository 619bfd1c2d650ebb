// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// File logging that is switched on and off, and processes that fork, while other threads log.

#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/log/ZTransferLog.h"
#include "tests/log/FileLogging.h"
#include "tests/log/RecordingBook.h"
#include "tests/support/Host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <map>
#include <regex>
#include <sstream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

/// Threads that log numbered lines during its lifetime.
class Loggers {
public:
    explicit Loggers(int threadCount)
    {
        for (int t = 0; t < threadCount; ++t) {
            m_threads.emplace_back([this, t] {
                for (int i = 0; !m_isOver; ++i) {
                    CNSLog("thread %d line %d end", t, i);
                    ++m_count;
                }
            });
        }
    }
    Loggers(const Loggers&) = delete;
    Loggers& operator=(const Loggers&) = delete;
    ~Loggers() { stop(); }

    /// Waits for the last lines.
    /// @return the number of all lines.
    long stop()
    {
        m_isOver = true;
        for (std::thread& thread : m_threads) {
            if (thread.joinable())
                thread.join();
        }
        return m_count;
    }
    void waitForLines(long count) const
    {
        for (const long end = m_count + count; m_count < end;)
            std::this_thread::yield();
    }

private:
    std::atomic<bool> m_isOver{false};
    std::atomic<long> m_count{0};
    std::vector<std::thread> m_threads;
};

TEST_F(FileLogging, MayBeSwitchedWhileOtherThreadsLog)
{
    long count = 0;
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const Outcome outcome = run([&] {
        alarm(50);
        Loggers loggers(3);
        for (int i = 0; i < 200; ++i) {
            CNSInitLog(s_file, 0, ("T" + std::to_string(i)).c_str(), m_logs.c_str());
            loggers.waitForLines(5);
            if (i % 2)
                CNSDisableFileLogging();
            loggers.waitForLines(5);
        }
        CNSDisableFileLogging();
        const long lines = loggers.stop();
        EXPECT_EQ(openReports(), 0);
        ASSERT_EQ(write(ends[1], &lines, sizeof lines), static_cast<ssize_t>(sizeof lines));
    });
    close(ends[1]);
    ASSERT_EQ(read(ends[0], &count, sizeof count), static_cast<ssize_t>(sizeof count));
    close(ends[0]);
    EXPECT_TRUE(outcome.hasExited) << "signal " << outcome.status;
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput << outcome.standardError;

    // Each line is complete, and in exactly one place.
    const std::regex inFile(s_prefix + "\t(thread [0-9] line [0-9]+ end)");
    const std::regex onConsole("[^\\]]*\\] (thread [0-9] line [0-9]+ end)");
    std::map<std::string, int> seen;
    const auto readLines = [&seen](const std::string& text, const std::regex& pattern) {
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            std::smatch match;
            ASSERT_TRUE(std::regex_match(line, match, pattern)) << line;
            ++seen[match[1]];
        }
    };
    readLines(outcome.standardError, onConsole);
    for (const fs::path& file : files())
        readLines(contentOf(file), inFile);
    EXPECT_EQ(static_cast<long>(seen.size()), count);
    for (const auto& [line, times] : seen)
        EXPECT_EQ(times, 1) << line;
}

TEST_F(FileLogging, ABookMaySwitchItselfOffWhileItAddsARecord)
{
    struct Single : RecordingBook {
        explicit Single(bool& isAlive)
            : m_isAlive(isAlive)
        {
            m_isAlive = true;
        }
        ~Single() override { m_isAlive = false; }
        void add(const ZLogRecord& record) override
        {
            CNSDisableFileLogging();
            EXPECT_EQ(theLog, nullptr);
            EXPECT_TRUE(m_isAlive); // its line keeps it
            RecordingBook::add(record);
            CNSLog("inner");
        }
        bool& m_isAlive;
    };
    const Outcome outcome = run([] {
        bool isAlive = false;
        ZTransferLog::useLogBook(ZRef<ZLogBook>(new Single(isAlive)));
        CNSLog("outer");
        EXPECT_FALSE(isAlive);
        CNSLog("after");
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    EXPECT_THAT(outcome.standardError, testing::ContainsRegex("\\] inner\n.*\\] after\n"));
}

TEST_F(FileLogging, ALineReachesTheBookThatWasAttachedWhenItBegan)
{
    struct Replacing : RecordingBook {
        bool isInactive() override
        {
            ZTransferLog::useLogBook(m_other); // after isInactive() and before the record
            return false;
        }
        ZRef<ZLogBook> m_other;
    };
    auto* const second = new RecordingBook;
    auto* const first = new Replacing;
    const ZRef<ZLogBook> held(first);
    first->m_other = ZRef<ZLogBook>(second);
    ZTransferLog::useLogBook(held);
    CNSLog("line");
    CNSLog("next");
    EXPECT_THAT(first->records(), testing::ElementsAre("line|"));
    EXPECT_THAT(second->records(), testing::ElementsAre("next|"));
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
}

TEST_F(FileLogging, TheTransferLogIsOffBeforeItsHookRunsAndItsBookIsDestroyed)
{
    static bool s_wasOff = false;
    struct Watching : RecordingBook {
        ~Watching() override { s_wasOff = theLog == nullptr; }
    };
    struct Hooked : ZTransferLog {
        void onLogBookDetached() override { m_wasOff = theLog == nullptr; }
        bool m_wasOff = false;
    } log;
    theLog = &log;
    ZTransferLog::useLogBook(ZRef<ZLogBook>(new Watching));
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
    EXPECT_TRUE(log.m_wasOff);
    EXPECT_TRUE(s_wasOff);
}

/// Forks while other threads log; each child logs a line, adds an error to the trail, and exits.
void expectUsableChildren(const std::function<void()>& work)
{
    Loggers loggers(3);
    for (int i = 0; i < 50; ++i) {
        loggers.waitForLines(3);
        const pid_t child = fork();
        if (child == 0) {
            alarm(10); // a signal ends a child that hangs
            work();
            std::_Exit(0);
        }
        int status = -1;
        waitpid(child, &status, 0);
        ASSERT_TRUE(WIFEXITED(status)) << "child " << i << " ended by signal " << WTERMSIG(status);
    }
}

TEST_F(FileLogging, AForkedChildLogsWhileOtherThreadsOfTheParentLog)
{
    const Outcome outcome = runLogging([] {
        expectUsableChildren([] {
            CNSLog("child");
            theLog->setLastError(1, "caller", "callee", 2, nullptr);
            CNSDisableFileLogging();
            CNSLog("child on the console");
        });
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    const std::string text = report();
    const std::regex whole("(" + s_prefix + "\t(child|thread [0-9] line [0-9]+ end|Set ?LastError.*))");
    std::istringstream stream(text);
    int children = 0;
    for (std::string line; std::getline(stream, line);) {
        EXPECT_TRUE(std::regex_match(line, whole)) << line;
        children += line.ends_with("\tchild");
    }
    EXPECT_EQ(children, 50);
}

TEST_F(FileLogging, AForkedChildLogsToTheConsoleWhileOtherThreadsOfTheParentLog)
{
    if (!host().forkedChildrenHaveConsole)
        GTEST_SKIP() << "the console of Foundation has a lock of its own, which another thread may hold";
    const Outcome outcome = run([] { expectUsableChildren([] { CNSLog("child"); }); });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
}

TEST_F(FileLogging, AForkedChildMaySwitchFileLoggingOn)
{
    const Outcome outcome = runLogging([this] {
        expectUsableChildren([this] {
            CNSInitLog(s_file, 0, ("Child" + std::to_string(getpid())).c_str(), m_logs.c_str());
            CNSLog("own file");
        });
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    int own = 0;
    for (const fs::path& file : files())
        own += file.filename().string().starts_with("Child") && contentOf(file).ends_with("\town file\n");
    EXPECT_EQ(own, 50);
}

/// A thread that writes to a full pipe keeps its book's lock.
TEST_F(FileLogging, AStuckWriteDelaysForkOnlyBriefly)
{
    const Outcome outcome = run([] {
        alarm(30);
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        auto* const book = new ZLogBookFile(ZLogBookFile::OpenFile{ends[1]});
        ZTransferLog::useLogBook(ZRef<ZLogBook>(book));
        std::atomic<long> lines{0};
        std::thread([&lines] {
            for (;; ++lines)
                CNSLog("%01000d", 0);
        }).detach();
        for (long before = -1; before != lines;) {
            before = lines;
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
        }
        const auto start = std::chrono::steady_clock::now();
        const pid_t child = fork();
        if (child == 0) {
            CNSDisableFileLogging();
            CNSLog("child");
            std::_Exit(7);
        }
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 7);
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    EXPECT_THAT(outcome.standardError, testing::EndsWith("] child\n"));
}

} // namespace
} // namespace ZSpace::Testing
