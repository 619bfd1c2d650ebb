// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Writes that become one system call each.

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/stream/FileTests.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

/// The number of write calls of this thread so far, or -1 if the system does not count them.
long writeCalls()
{
    std::ifstream counts("/proc/thread-self/io");
    std::string name;
    long number = 0;
    while (counts >> name >> number) {
        if (name == "syscw:")
            return number;
    }
    return -1;
}

TEST_F(ZIOGFileTest, WriteThroughMakesOneSystemCallPerWrite)
{
    if (writeCalls() < 0)
        GTEST_SKIP() << "the system does not count calls";
    for (int mode : {4, 6, 8}) {
        for (long length : {1L, 60L, 4'095L, 4'096L, 4'097L, 9'000L, 100'000L, 3'000'000L}) {
            ASSERT_EQ(m_file.open(make("file").c_str(), mode), 0);
            ASSERT_TRUE(m_file.writeThrough());
            const std::string line(static_cast<std::size_t>(length), 'x');
            // Not counted the first time: sanitizers also write when they meet a class for the first time.
            EXPECT_EQ(m_file.write(line.data(), length), length);
            EXPECT_EQ(m_file.flush(), 0);
            for (int i = 2; i <= 4; ++i) {
                const long before = writeCalls();
                EXPECT_EQ(m_file.write(line.data(), length), length);
                EXPECT_EQ(writeCalls(), before + 1) << mode << ", " << length;
                EXPECT_EQ(static_cast<long>(std::filesystem::file_size(pathOf("file"))), i * length);
                EXPECT_EQ(m_file.flush(), 0);
                EXPECT_EQ(writeCalls(), before + 1) << mode << ", " << length;
            }
        }
    }
}

TEST_F(ZIOGFileTest, WriteThroughChangesNothingElse)
{
    ASSERT_EQ(m_file.open(make("file", "old").c_str(), 8), 0);
    ASSERT_TRUE(m_file.writeThrough());
    EXPECT_EQ(m_file.Size(), 3);
    EXPECT_EQ(m_file.moveEnd(), 0);
    EXPECT_EQ(m_file.write("\r\n", -1), 2);
    EXPECT_EQ(m_file.Position(), 5);
    m_file.moveBegin();
    EXPECT_EQ(readAll(m_file), "old\r\n");
    EXPECT_TRUE(m_file.EOS());
    EXPECT_EQ(m_file.State(), 6);

    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0); // the next file is buffered again
    m_file.write("x", 1);
    EXPECT_EQ(contentOf("file"), "");
}

TEST_F(ZIOGFileTest, FullDiskIsReportedByTheWriteItselfAfterWriteThrough)
{
    if (m_file.open("/dev/full", 4) != 0)
        GTEST_SKIP() << "the host has no full device";
    ASSERT_TRUE(m_file.writeThrough());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(m_file.write("lost", -1), -1);
}

TEST_F(ZIOGFileTest, WriteAtOnceMakesOneSystemCall)
{
    if (writeCalls() < 0)
        GTEST_SKIP() << "the system does not count calls";
    ASSERT_EQ(m_file.open(make("file", "old").c_str(), 8), 0);
    ASSERT_TRUE(m_file.writeThrough());
    const std::string line(100'000, 'x');
    for (long i = 1; i <= 3; ++i) {
        const long before = writeCalls();
        EXPECT_EQ(m_file.writeAtOnce(line.data(), 100'000), 100'000);
        EXPECT_EQ(writeCalls(), before + 1);
        EXPECT_EQ(static_cast<long>(std::filesystem::file_size(pathOf("file"))), 3 + i * 100'000);
    }
    EXPECT_EQ(m_file.writeAtOnce(line.data(), 0), 0);
    EXPECT_FALSE(m_file.hasError());
}

TEST_F(ZIOGFileTest, WriteAtOnceTakesASingleItem)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    ASSERT_TRUE(m_file.writeThrough());
    EXPECT_EQ(m_file.writeAtOnce("x", 1), 1);
    EXPECT_EQ(contentOf("file"), "x");
}

TEST_F(ZIOGFileTest, WriteAtOnceThatFailsSetsTheErrorIndicator)
{
    const auto outcome = runInChild([&] {
        constexpr long s_limit = 1'000;
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{s_limit, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &limit);
        File file;
        const std::string text(s_limit * 2, 'x');
        if (file.open(pathOf("file").c_str(), 8) != 0 || !file.writeThrough())
            return 1;
        if (file.writeAtOnce(text.data(), s_limit * 2) != s_limit || !file.hasError())
            return 2;
        file.clearError();
        if (file.hasError() || file.writeAtOnce(text.data(), s_limit) != 0 || !file.hasError())
            return 3;
        file.clearError();
        const rlimit noLimit{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &noLimit);
        return file.writeAtOnce(text.data(), s_limit) == s_limit && !file.hasError() ? 0 : 4;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(contentOf("file").size(), 2'000U);
}

TEST_F(ZIOGFileTest, LinesOfTwoProcessesNeverMix)
{
    constexpr int s_lines = 300;
    const auto append = [&](char letter) {
        File file;
        if (file.open(pathOf("file").c_str(), 8) != 0 || !file.writeThrough())
            return 1;
        for (int i = 0; i < s_lines; ++i) {
            const std::string line = std::string(static_cast<std::size_t>(5'000 + i), letter) + "\n";
            if (file.write(line.data(), static_cast<long>(line.size())) != static_cast<long>(line.size()))
                return 2;
        }
        return file.close();
    };
    const auto outcome = runInChild([&] {
        const pid_t other = fork();
        if (other == 0)
            _exit(append('a'));
        int status = append('b');
        int otherStatus = -1;
        waitpid(other, &otherStatus, 0);
        return status + otherStatus;
    });
    EXPECT_EQ(outcome.status, 0);

    std::istringstream lines(contentOf("file"));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        ASSERT_EQ(line.find_first_not_of(line[0]), std::string::npos);
    EXPECT_EQ(count, 2 * s_lines);
}

} // namespace
} // namespace ZSpace::Testing
