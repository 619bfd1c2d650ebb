// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Reading, writing and moving.

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/stream/FileTests.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/ReadFaults.h"

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

// Reading

TEST_F(ZIOGFileTest, ReadsTheContent)
{
    ASSERT_EQ(m_file.open(make("file", "abcdef").c_str(), 2), 0);
    char buffer[16] = {};
    long got = 77;
    EXPECT_EQ(m_file.read(buffer, 4, got), 0);
    EXPECT_EQ(got, 4);
    EXPECT_EQ(m_file.read(buffer + 4, 12, got), 0);
    EXPECT_EQ(got, 2);
    EXPECT_STREQ(buffer, "abcdef");
    EXPECT_EQ(m_file.read(buffer, 16, got), 0);
    EXPECT_EQ(got, 0);
    EXPECT_EQ(m_file.read(buffer, 16), 0);
}

TEST_F(ZIOGFileTest, ReadingZeroItemsReadsNothing)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    for (long count : {0L, -1L}) {
        char buffer[4] = "...";
        long got = 77;
        EXPECT_EQ(m_file.read(buffer, count, got), 0);
        EXPECT_EQ(got, 0);
        EXPECT_STREQ(buffer, "...");
    }
    EXPECT_FALSE(m_file.EOS());
    EXPECT_EQ(m_file.Position(), 0);
}

TEST_F(ZIOGFileTest, EndIsReportedAfterAReadHasReachedIt)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    EXPECT_FALSE(m_file.EOS());
    m_file.moveEnd();
    EXPECT_FALSE(m_file.EOS());
    char buffer[4];
    EXPECT_EQ(m_file.read(buffer, 1), 0);
    EXPECT_TRUE(m_file.EOS());
    m_file.moveBegin();
    EXPECT_FALSE(m_file.EOS());
    EXPECT_EQ(m_file.read(buffer, 3), 3);
    EXPECT_FALSE(m_file.EOS());
    EXPECT_EQ(m_file.read(buffer, 1), 0);
    EXPECT_TRUE(m_file.EOS());
}

TEST_F(ZIOGFileTest, EmptyFileIsAtItsEndAfterTheFirstRead)
{
    ASSERT_EQ(m_file.open(make("file").c_str(), 2), 0);
    EXPECT_FALSE(m_file.EOS());
    EXPECT_TRUE(m_file.BOS());
    char c;
    EXPECT_EQ(m_file.read(&c, 1), 0);
    EXPECT_TRUE(m_file.EOS());
    EXPECT_TRUE(m_file.BOS());
}

TEST_F(ZIOGFileTest, FileOpenForWritingCannotBeRead)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    char c;
    long got = 77;
    EXPECT_NE(m_file.read(&c, 1, got), 0);
    EXPECT_EQ(got, 0);
    EXPECT_EQ(m_file.read(&c, 1), -1);
}

TEST_F(ZIOGFileTest, WriteThatSucceedsReturnsZeroDespiteAnEarlierError)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    char c;
    EXPECT_EQ(m_file.read(&c, 1), -1);
    EXPECT_TRUE(m_file.hasError());
    EXPECT_EQ(m_file.write("x", 1), 1);
}

TEST_F(ZIOGFileTest, PartialReadReportsStatusAndItems)
{
    ASSERT_EQ(m_file.open(make("file", "abcdefgh").c_str(), 2), 0);
    char buffer[8];
    long got = 77;
    {
        const ReadFault fault(1);
        EXPECT_NE(m_file.read(buffer, 8, got), 0);
    }
    EXPECT_EQ(got, 4);
    m_file.moveBegin();
    const ReadFault fault(1);
    EXPECT_EQ(m_file.read(buffer, 8), -1);
}

TEST_F(ZIOGFileTest, NumberOfItemsReadHas32Bits)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    const ClaimedRead claim((1L << 31) + 5); // a real buffer of that size would be too large
    char buffer[4];
    long got = 0;
    EXPECT_EQ(m_file.read(buffer, 4, got), 0);
    EXPECT_EQ(got, -(1L << 31) + 5);
}

// Writing

TEST_F(ZIOGFileTest, WritesTheData)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    long written = 77;
    EXPECT_EQ(m_file.write("a\0b", 3, written), 0);
    EXPECT_EQ(written, 3);
    EXPECT_EQ(m_file.write("cdef", 2), 2);
    m_file.close();
    EXPECT_EQ(contentOf("file"), std::string("a\0bcd", 5));
}

TEST_F(ZIOGFileTest, NegativeCountWritesTheStringWithoutItsTerminator)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    long written = 77;
    EXPECT_EQ(m_file.write("text", -1, written), 0);
    EXPECT_EQ(written, 4);
    EXPECT_EQ(m_file.write("more", -9), 4);
    m_file.close();
    EXPECT_EQ(contentOf("file"), "textmore");
}

TEST_F(ZIOGFileTest, WritingNothingDoesNotChangeTheNumber)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    long written = 77;
    EXPECT_EQ(m_file.write(nullptr, -1, written), 0);
    EXPECT_EQ(m_file.write("", -1, written), 0);
    EXPECT_EQ(m_file.write("abc", 0, written), 0);
    EXPECT_EQ(m_file.write(nullptr, 0, written), 0);
    EXPECT_EQ(written, 77);
    EXPECT_EQ(m_file.write(nullptr, -1), 0);
    EXPECT_EQ(m_file.write("", -1), 0);
    EXPECT_EQ(m_file.Position(), 0);
}

TEST_F(ZIOGFileTest, FileOpenForReadingCannotBeWritten)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    long written = 77;
    EXPECT_NE(m_file.write("x", 1, written), 0);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(m_file.write("x", 1), -1);
    EXPECT_EQ(m_file.write("", -1), 0); // writing nothing is no error
    m_file.close();
    EXPECT_EQ(contentOf("file"), "abc");
}

TEST_F(ZIOGFileTest, FlushWritesTheBuffer)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    EXPECT_EQ(m_file.flush(), 0);
    m_file.write("text", -1);
    EXPECT_EQ(contentOf("file"), "");
    EXPECT_EQ(m_file.flush(), 0);
    EXPECT_EQ(contentOf("file"), "text");
}

TEST_F(ZIOGFileTest, FullDiskIsReportedWhenTheBufferIsWritten)
{
    if (m_file.open("/dev/full", 4) != 0)
        GTEST_SKIP() << "the host has no full device";
    long written = 77;
    EXPECT_EQ(m_file.write("abc", -1, written), 0);
    EXPECT_EQ(written, 3);
    EXPECT_NE(m_file.flush(), 0);

    ASSERT_EQ(m_file.open("/dev/full", 4), 0);
    const std::string much(1 << 20, 'x');
    EXPECT_NE(m_file.write(much.data(), 1 << 20, written), 0);
    EXPECT_EQ(written, 0);
    ASSERT_EQ(m_file.open("/dev/full", 4), 0);
    EXPECT_EQ(m_file.write(much.data(), 1 << 20), -1);
}

TEST_F(ZIOGFileTest, PartialWriteIsSuccess)
{
    const auto outcome = runInChild([&] {
        constexpr long s_limit = 100'000;
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{s_limit, s_limit};
        setrlimit(RLIMIT_FSIZE, &limit);
        File file;
        const std::string much(s_limit * 2, 'x');
        long written = 0;
        if (file.open(pathOf("file").c_str(), 4) != 0 || !file.writeThrough())
            return 1;
        if (file.write(much.data(), s_limit * 2, written) != 0)
            return 2;
        if (written <= 0 || written > s_limit)
            return 3;
        if (file.write(much.data(), s_limit * 2, written) == 0 || written != 0)
            return 4;
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(ZIOGFileTest, AppendModeReadsAnywhereAndWritesAtTheEnd)
{
    ASSERT_EQ(m_file.open(make("file", "old").c_str(), 8), 0);
    EXPECT_EQ(m_file.Position(), 0);
    EXPECT_TRUE(m_file.BOS());
    EXPECT_EQ(readAll(m_file), "old");
    m_file.moveBegin();
    EXPECT_EQ(m_file.write("new", -1), 3);
    EXPECT_EQ(m_file.Position(), 6);
    m_file.close();
    EXPECT_EQ(contentOf("file"), "oldnew");
}

TEST_F(ZIOGFileTest, ReadWriteModeChangesInPlace)
{
    ASSERT_EQ(m_file.open(make("file", "abcdef").c_str(), 6), 0);
    m_file.moveTo(2);
    EXPECT_EQ(m_file.write("XY", -1), 2);
    m_file.moveTo(1);
    EXPECT_EQ(readAll(m_file), "bXYef");
}

// Position and size

TEST_F(ZIOGFileTest, Moves)
{
    ASSERT_EQ(m_file.open(make("file", "0123456789").c_str(), 2), 0);
    EXPECT_EQ(m_file.Position(), 0);
    EXPECT_TRUE(m_file.BOS());
    EXPECT_EQ(m_file.moveTo(7), 0);
    EXPECT_EQ(m_file.Position(), 7);
    EXPECT_FALSE(m_file.BOS());
    EXPECT_EQ(m_file.move(-3), 0);
    EXPECT_EQ(m_file.Position(), 4);
    EXPECT_EQ(m_file.move(2), 0);
    EXPECT_EQ(m_file.Position(), 6);
    EXPECT_EQ(m_file.moveEnd(), 0);
    EXPECT_EQ(m_file.Position(), 10);
    EXPECT_EQ(m_file.moveTo(25), 0); // a position past the end is valid
    EXPECT_EQ(m_file.Position(), 25);
    EXPECT_EQ(m_file.moveBegin(), 0);
    EXPECT_TRUE(m_file.BOS());
}

TEST_F(ZIOGFileTest, MovingBeforeTheBeginningFailsAndKeepsThePosition)
{
    ASSERT_EQ(m_file.open(make("file", "0123456789").c_str(), 2), 0);
    m_file.moveTo(3);
    EXPECT_EQ(m_file.moveTo(-1), -1);
    EXPECT_EQ(m_file.move(-4), -1);
    EXPECT_EQ(m_file.Position(), 3);
}

TEST_F(ZIOGFileTest, SizeKeepsThePosition)
{
    ASSERT_EQ(m_file.open(make("file", "0123456789").c_str(), 6), 0);
    for (long long position : {0LL, 3LL, 10LL, 12LL}) {
        m_file.moveTo(position);
        EXPECT_EQ(m_file.Size(), 10);
        EXPECT_EQ(m_file.Position(), position);
    }
    m_file.moveEnd();
    m_file.write("ab", -1);
    EXPECT_EQ(m_file.Size(), 12); // what is buffered counts
    EXPECT_EQ(m_file.Position(), 12);
}

TEST_F(ZIOGFileTest, FilesMayBeLargerThan4GiB)
{
    constexpr long long s_far = (5LL << 30) + 3;
    ASSERT_EQ(m_file.open(make("file", "begin").c_str(), 6), 0);
    EXPECT_EQ(m_file.moveTo(s_far), 0);
    EXPECT_EQ(m_file.write("end", -1), 3);
    EXPECT_EQ(m_file.Position(), s_far + 3);
    EXPECT_EQ(m_file.Size(), s_far + 3);
    EXPECT_EQ(m_file.moveBegin(), 0);
    EXPECT_EQ(m_file.move(s_far), 0);
    EXPECT_EQ(readAll(m_file), "end");
    EXPECT_EQ(m_file.move(-s_far), 0);
    EXPECT_EQ(m_file.Position(), 3);
}

// Fifos and pipes

TEST_F(ZIOGFileTest, FifoTransfersDataAndHasNoPosition)
{
    ASSERT_EQ(mkfifo(pathOf("fifo").c_str(), 0600), 0);
    File writer;
    std::thread opener([&] { writer.open(pathOf("fifo").c_str(), 4); });
    ASSERT_EQ(m_file.open(pathOf("fifo").c_str(), 2), 0);
    opener.join();
    EXPECT_EQ(writer.State(), 4);
    EXPECT_EQ(m_file.Position(), -1);
    EXPECT_EQ(m_file.Size(), -1);
    EXPECT_FALSE(m_file.BOS());
    EXPECT_EQ(m_file.moveBegin(), -1);
    EXPECT_EQ(m_file.moveEnd(), -1);
    EXPECT_EQ(m_file.moveTo(1), -1);
    EXPECT_EQ(m_file.move(1), -1);

    EXPECT_EQ(writer.write("through", -1), 7);
    EXPECT_EQ(writer.flush(), 0);
    writer.close();
    EXPECT_EQ(readAll(m_file), "through");
    EXPECT_TRUE(m_file.EOS());
}

TEST_F(ZIOGFileTest, PipeWithoutReaderIsAnError)
{
    const auto outcome = runInChild([&] {
        signal(SIGPIPE, SIG_IGN);
        int ends[2];
        if (pipe(ends) != 0)
            return 1;
        File file;
        if (file.open(("/dev/fd/" + std::to_string(ends[1])).c_str(), 4) != 0)
            return 2;
        if (file.write("x", 1) != 1 || file.flush() != 0)
            return 3;
        ::close(ends[0]);
        if (file.write("x", 1) != 1 || file.flush() == 0)
            return 4;
        return file.writeThrough() && file.write("x", 1) == -1 ? 0 : 5;
    });
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
} // namespace ZSpace::Testing
