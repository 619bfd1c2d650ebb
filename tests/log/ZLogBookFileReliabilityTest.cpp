// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The report file under load: many threads and processes, full disks, signals and kills.

#include "tests/log/ReportFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/Kernel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <random>
#include <regex>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::EndsWith;
using testing::MatchesRegex;

TEST_F(ReportFile, LinesOfManyThreadsAreWholeAndInOrder)
{
    constexpr int threadCount = 4;
    constexpr int lineCount = 250;
    const ZRef<ZLogBook> book = openBook();
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&book, t] {
            for (int i = 0; i < lineCount; ++i)
                book->add(ZLogRecord() << "thread" << t << i << "end");
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::regex pattern(s_prefix + "\tthread\t([0-9]+)\t([0-9]+)\tend");
    std::vector<int> next(threadCount, 0);
    for (const std::string& line : linesOf(content())) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, pattern)) << line;
        EXPECT_EQ(std::stoi(match[2]), next[static_cast<std::size_t>(std::stoi(match[1]))]++);
    }
    EXPECT_THAT(next, testing::Each(lineCount));
}

TEST_F(ReportFile, LinesOfManyProcessesAreWhole)
{
    constexpr int processCount = 3;
    constexpr int lineCount = 200;
    const std::string filler(300, '.');
    const Outcome outcome = runInChild([&] {
        for (int p = 0; p < processCount; ++p) {
            if (fork() == 0) {
                const ZRef<ZLogBook> book = openBook();
                for (int i = 0; i < lineCount; ++i)
                    book->add(ZLogRecord() << filler.c_str() << "end");
                std::_Exit(0);
            }
        }
        while (wait(nullptr) > 0) { }
        return 0;
    });
    ASSERT_EQ(outcome.status, 0);
    const std::regex pattern("\r|(" + s_prefix + "\t\\.{300}\tend)");
    long records = 0;
    for (const std::string& line : linesOf(content())) {
        EXPECT_TRUE(std::regex_match(line, pattern)) << line;
        records += line != "\r";
    }
    EXPECT_EQ(records, processCount * lineCount);
}

/// The file is one end of a socket pair that keeps message boundaries, so each write arrives as one message.
TEST_F(ReportFile, ARecordOfAnyLengthIsOneWrite)
{
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_DGRAM, 0, ends), 0);
    for (const int end : ends) {
        const int size = 1 << 20;
        setsockopt(end, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    }
    const ZRef<ZLogBook> book = openBook();
    const std::vector<int> descriptors = descriptorsOf(m_path);
    ASSERT_EQ(descriptors.size(), 1U);
    dup2(ends[0], descriptors[0]);
    std::vector<char> buffer(1 << 18);
    for (const std::size_t length : {0U, 60U, 4095U, 4096U, 9000U, 65536U, 100'000U}) {
        const std::string text(length, 'x');
        book->add(ZLogRecord() << text.c_str());
        const ssize_t received = recv(ends[1], buffer.data(), buffer.size(), MSG_DONTWAIT);
        ASSERT_GT(received, 0);
        EXPECT_THAT(
            std::string(buffer.data(), static_cast<std::size_t>(received)), EndsWith("]:\t" + text + "\n"));
        EXPECT_LT(recv(ends[1], buffer.data(), buffer.size(), MSG_DONTWAIT), 0);
    }
    close(ends[0]);
    close(ends[1]);
}

TEST_F(ReportFile, AFullDiskLosesLinesAndCutsAtMostOne)
{
    const Outcome outcome = runInChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const ZRef<ZLogBook> book = openBook();
        const auto limit = [](rlim_t bytes) {
            const rlimit limits{bytes, RLIM_INFINITY};
            setrlimit(RLIMIT_FSIZE, &limits);
        };
        for (const rlim_t size : {rlim_t{1000}, rlim_t{2000}, rlim_t{3000}}) {
            limit(size); // in the middle of a line
            for (int i = 0; i < 100; ++i)
                book->add(ZLogRecord() << "number" << i << "end");
        }
        limit(RLIM_INFINITY);
        book->add(ZLogRecord() << "last" << 0 << "end");
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    const std::regex whole(s_prefix + "\t(number|last)\t[0-9]+\tend");
    int torn = 0;
    for (const std::string& line : linesOf(content()))
        torn += !std::regex_match(line, whole);
    EXPECT_LE(torn, 3); // one for each limit
    EXPECT_THAT(content(), EndsWith("\tlast\t0\tend\n"));
}

TEST_F(ReportFile, AFullDeviceOnlyLosesLines)
{
    if (access("/dev/full", W_OK) != 0)
        GTEST_SKIP() << "the host has no full device";
    ZLogBookFile book(L"/dev/full");
    for (int i = 0; i < 100; ++i)
        book.add(ZLogRecord() << i);
}

TEST_F(ReportFile, AFileThatIsRemovedOrRenamedIsStillWritten)
{
    const ZRef<ZLogBook> book = openBook();
    fs::rename(m_path, m_folder.path() / "moved");
    book->add(ZLogRecord() << "x");
    EXPECT_THAT(contentOf(m_folder.path() / "moved"), MatchesRegex(s_prefix + "\tx\n"));
    fs::remove(m_folder.path() / "moved");
    book->add(ZLogRecord() << "y");
    EXPECT_FALSE(fs::exists(m_path));
}

TEST_F(ReportFile, AFileThatIsMadeReadOnlyIsStillWritten)
{
    const ZRef<ZLogBook> book = openBook();
    chmod(m_path.c_str(), 0444);
    book->add(ZLogRecord() << "x");
    EXPECT_THAT(content(), EndsWith("\tx\n"));
}

TEST_F(ReportFile, IsNotInheritedByPrograms)
{
    const ZRef<ZLogBook> book = openBook();
    const std::vector<int> descriptors = descriptorsOf(m_path);
    ASSERT_EQ(descriptors.size(), 1U);
    EXPECT_FALSE(isInherited(descriptors[0]));
}

TEST_F(ReportFile, AForkedChildLogsItsOwnNumber)
{
    const ZRef<ZLogBook> book = openBook();
    book->add(ZLogRecord());
    const Outcome outcome = runInChild([&] {
        book->add(ZLogRecord());
        std::printf("Thread[%x]:\n", kernelThreadNumber());
        return 0;
    });
    EXPECT_THAT(content(), EndsWith(" " + outcome.standardOutput));
}

/// Kills a process at random moments while it logs. Each line whose call has returned must be complete.
TEST_F(ReportFile, AKilledProcessLosesNoLineWhoseCallHadReturned)
{
    auto* const acknowledged = static_cast<volatile int*>(
        mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(acknowledged, MAP_FAILED);
    std::mt19937 random(20260304); // NOLINT: the same moments, as far as a clock allows, on every run
    const std::regex whole(s_prefix + "\tnumber\t([0-9]+)\tend");
    for (int run = 0; run < 500; ++run) {
        fs::remove(m_path);
        *acknowledged = 0;
        const pid_t child = fork();
        if (child == 0) {
            const ZRef<ZLogBook> book = openBook();
            for (int i = 1;; ++i) {
                book->add(ZLogRecord() << "number" << i << "end");
                *acknowledged = i;
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        int next = 1;
        const std::vector<std::string> lines = linesOf(content());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            std::smatch match;
            if (std::regex_match(lines[i], match, whole))
                ASSERT_EQ(std::stoi(match[1]), next++);
            else
                ASSERT_EQ(i, lines.size() - 1) << lines[i];
        }
        ASSERT_GT(next, *acknowledged) << "in run " << run;
    }
    munmap(const_cast<int*>(acknowledged), sizeof(int));
}

} // namespace
} // namespace ZSpace::Testing
