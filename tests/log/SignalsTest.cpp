// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The log raises no signals in its process, changes no disposition and leaves pending signals alone.

#include "ZSpace/log/LogFrontEnd.h"
#include "tests/log/ReportFile.h"
#include "tests/support/ChildProcess.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

void limitFileSize(rlim_t bytes)
{
    rlimit limit{};
    getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = std::min(bytes, limit.rlim_max);
    setrlimit(RLIMIT_FSIZE, &limit);
}

bool isBlocked(int signal)
{
    sigset_t mask;
    pthread_sigmask(SIG_BLOCK, nullptr, &mask);
    return sigismember(&mask, signal) == 1;
}

bool isPending(int signal)
{
    sigset_t signals;
    sigpending(&signals);
    return sigismember(&signals, signal) == 1;
}

void block(int signal)
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void expectUntouched()
{
    for (const int signal : {SIGPIPE, SIGXFSZ}) {
        EXPECT_FALSE(isBlocked(signal));
        EXPECT_FALSE(isPending(signal));
        struct sigaction action { };
        sigaction(signal, nullptr, &action);
        EXPECT_EQ(action.sa_handler, SIG_DFL);
    }
}

class Signals : public ReportFile {
protected:
    static void expectSurvival(const std::function<void()>& work)
    {
        const Outcome outcome = runInChild([&] {
            std::signal(SIGPIPE, SIG_DFL);
            std::signal(SIGXFSZ, SIG_DFL);
            work();
            limitFileSize(RLIM_INFINITY); // coverage profiles are written when the process ends
            return testing::Test::HasFailure() ? 1 : 0;
        });
        EXPECT_TRUE(outcome.hasExited) << "signal " << outcome.status;
        EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    }
};

TEST_F(Signals, AFileSizeLimitOnlyLosesLines)
{
    expectSurvival([this] {
        limitFileSize(1000);
        const ZRef<ZLogBook> book = openBook();
        for (int i = 0; i < 100; ++i)
            book->add(ZLogRecord() << i);
        expectUntouched();
    });
    EXPECT_EQ(content().size(), 1000U);
}

TEST_F(Signals, APipeWithoutReaderOnlyLosesLines)
{
    expectSurvival([this] {
        ASSERT_EQ(mkfifo(m_path.c_str(), 0600), 0);
        const ZRef<ZLogBook> book = openBook();
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        const ZRef<ZLogBook> onPipe(new ZLogBookFile(ZLogBookFile::OpenFile{ends[1]}));
        close(ends[0]);
        for (int i = 0; i < 100; ++i) {
            book->add(ZLogRecord() << i); // its own reader, by its mode
            onPipe->add(ZLogRecord() << i);
        }
        expectUntouched();
    });
}

TEST_F(Signals, AClosedStandardErrorDoesNotStopTheEcho)
{
    expectSurvival([this] {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        dup2(ends[1], STDERR_FILENO);
        close(ends[1]);
        close(ends[0]);
        CNSInitLog(CNSLogFlagDebug | CNSLogFlagFile, 0, "Tag", m_folder.path().c_str());
        for (int i = 0; i < 10; ++i)
            CNSDbgLog("line %d", i);
        expectUntouched();
    });
}

TEST_F(Signals, PendingSignalsOfTheProcessStayPending)
{
    expectSurvival([this] {
        block(SIGXFSZ);
        raise(SIGXFSZ);
        limitFileSize(500);
        const ZRef<ZLogBook> book = openBook();
        for (int i = 0; i < 100; ++i)
            book->add(ZLogRecord() << i);
        EXPECT_TRUE(isBlocked(SIGXFSZ));
        EXPECT_TRUE(isPending(SIGXFSZ));
        std::signal(SIGXFSZ, SIG_IGN);
    });
}

std::atomic<int> s_answers{0};

/// The one function that may be called from a signal handler: a timer interrupts a thread that logs.
TEST_F(Signals, AHandlerMayReadTheDebugSwitch)
{
    expectSurvival([this] {
        CNSInitLog(CNSLogFlagFile, 0, "Tag", m_folder.path().c_str());
        struct sigaction action { };
        action.sa_handler = [](int) { s_answers += !CNSDbgLogEnabled(); };
        sigaction(SIGALRM, &action, nullptr); // without SA_RESTART: system calls fail with EINTR
        const itimerval every{{0, 200}, {0, 200}};
        setitimer(ITIMER_REAL, &every, nullptr);
        for (int i = 0; i < 20'000 || s_answers < 10; ++i)
            CNSLog("line %d", i);
        const itimerval never{};
        setitimer(ITIMER_REAL, &never, nullptr);
        EXPECT_GE(s_answers, 10);
    });
}

} // namespace
} // namespace ZSpace::Testing
