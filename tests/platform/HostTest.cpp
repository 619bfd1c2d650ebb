// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Thread numbers, the program's path, debugger detection and the protection of the standard streams.

#include "ZSpace/platform/Debugger.h"
#include "ZSpace/platform/Process.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/Kernel.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

TEST(ThreadNumber, IsTheKernelsNumber)
{
    EXPECT_EQ(Host::threadNumber(), kernelThreadNumber());
    EXPECT_EQ(Host::threadNumber(), Host::threadNumber());
    std::thread([] { EXPECT_EQ(Host::threadNumber(), kernelThreadNumber()); }).join();
}

TEST(ThreadNumber, IsCorrectAfterFork)
{
    (void)Host::threadNumber();
    EXPECT_EQ(runInChild([] { return Host::threadNumber() == kernelThreadNumber() ? 0 : 1; }).status, 0);
    // Also where another thread than the first one forks, and in the child of a child.
    std::thread([] {
        (void)Host::threadNumber();
        EXPECT_EQ(runInChild([] {
            (void)Host::threadNumber();
            return runInChild([] { return Host::threadNumber() == kernelThreadNumber() ? 0 : 1; }).status;
        }).status,
            0);
    }).join();
}

TEST(ThreadNumber, IsCorrectInEveryChildWhileOtherThreadsAskForTheFirstTime)
{
    std::atomic<bool> isOver = false;
    std::thread asking([&] {
        while (!isOver)
            std::thread([] { (void)Host::threadNumber(); }).join();
    });
    for (int i = 0; i < 50; ++i) {
        const Outcome outcome = runInChild([] {
            alarm(20);
            return Host::threadNumber() == kernelThreadNumber() ? 0 : 1;
        });
        EXPECT_TRUE(outcome.hasExited);
        EXPECT_EQ(outcome.status, 0);
    }
    isOver = true;
    asking.join();
}

TEST(Process, FindsItsProgramFile)
{
    EXPECT_EQ(std::filesystem::path(Host::executablePath()).filename(), "platform_tests");
    EXPECT_TRUE(std::filesystem::equivalent(Host::executablePath(), programFile()));
}

TEST(Debugger, IsNotAttachedHere)
{
    EXPECT_EQ(runInChild([] { return Host::isDebuggerAttached() ? 1 : 0; }).status, 0);
}

TEST(Debugger, IsDetectedByTheTracedProcess)
{
    EXPECT_EQ(runTraced([] { return Host::isDebuggerAttached() ? 1 : 0; }).status, 1);
}

TEST(Debugger, IsDetectedWithoutStandardInput)
{
    EXPECT_EQ(runTraced([] {
        close(STDIN_FILENO);
        return Host::isDebuggerAttached() ? 1 : 0;
    }).status,
        1);
}

TEST(Debugger, IsNotAttachedWhereThatCannotBeFoundOut)
{
    EXPECT_EQ(runInChild([] {
        const DescriptorLimit none(0);
        return Host::isDebuggerAttached() ? 1 : 0;
    }).status,
        0);
}

bool isNullDevice(int descriptor)
{
    struct stat given { };
    struct stat null { };
    return fstat(descriptor, &given) == 0 && stat("/dev/null", &null) == 0 && given.st_rdev == null.st_rdev
        && S_ISCHR(given.st_mode);
}

TEST(StandardStreams, ClosedOnesBecomeTheNullDevice)
{
    for (int closed = 1; closed < 8; ++closed) {
        const Outcome outcome = runInChild([closed] {
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                if (closed & (1 << descriptor))
                    close(descriptor);
            }
            Host::shieldStandardStreams();
            for (int descriptor = 0; descriptor < 3; ++descriptor) {
                const bool wasClosed = closed & (1 << descriptor);
                if (wasClosed && !isNullDevice(descriptor))
                    return 1;
            }
            const int next = open("/dev/zero", O_RDONLY);
            return next > 2 ? 0 : 2;
        });
        EXPECT_EQ(outcome.status, 0) << closed;
    }
}

TEST(StandardStreams, OpenOnesStayUnchanged)
{
    const TemporaryFolder folder;
    const auto file = folder.path() / "output";
    const Outcome outcome = runInChild([&] {
        dup2(open(file.c_str(), O_WRONLY | O_CREAT, 0666), STDOUT_FILENO);
        Host::shieldStandardStreams();
        return write(STDOUT_FILENO, "kept", 4) == 4 ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(contentOf(file), "kept");
}

TEST(StandardStreams, OutputSignalsThatAreIgnoredStayIgnored)
{
    const Outcome outcome = runInChild([] {
        for (const int number : {SIGPIPE, SIGXFSZ})
            signal(number, SIG_IGN);
        Host::shieldStandardStreams();
        for (const int number : {SIGPIPE, SIGXFSZ}) {
            if (signal(number, SIG_DFL) != SIG_IGN)
                return 1;
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST(StandardStreams, OutputSignalsAreNotFatal)
{
    const Outcome outcome = runInChild([] {
        signal(SIGPIPE, SIG_DFL);
        signal(SIGXFSZ, SIG_DFL);
        Host::shieldStandardStreams();
        raise(SIGPIPE);
        raise(SIGXFSZ);
        return 0;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
} // namespace ZSpace::Testing
