// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"
#include "ZSpace/stream/ZStreamAsync.h"
#include "tests/stream/AsyncTests.h"
#include "tests/support/DeathTests.h"

#include <gtest/gtest.h>

#include <atomic>
#include <climits>
#include <csignal>
#include <string>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

TEST_F(ZStreamAsyncTest, WriteReportsFromAThreadOfItsOwn)
{
    m_file.open(pathOf("file").c_str(), 4);
    const DataRef data = dataOf("abcdef");
    const auto callback = m_reports.forWrite();
    EXPECT_TRUE(m_file.writeAsync(callback.get(), data));
    const Report report = m_reports.next();
    EXPECT_EQ(report.stream, static_cast<Async*>(&m_file));
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.data, data.get());
    EXPECT_EQ(report.done, 6);
    EXPECT_NE(report.thread, std::this_thread::get_id());
    await([&] { return data.RefCount() == 1; });
    m_file.close();
    EXPECT_EQ(contentOf("file"), "abcdef");
}

TEST_F(ZStreamAsyncTest, WriteLeavesTheCallbackToItsOwner)
{
    m_file.open(pathOf("file").c_str(), 4);
    const auto callback = m_reports.forWrite();
    for (int i = 0; i < 3; ++i) {
        await([&] { return m_file.writeAsync(callback.get(), dataOf("abc")); });
        EXPECT_EQ(m_reports.next().done, 3);
    }
    m_file.close();
    EXPECT_EQ(contentOf("file"), "abcabcabc");
}

TEST_F(ZStreamAsyncTest, WriteKeepsTheDataAlive)
{
    m_file.open(pathOf("file").c_str(), 4);
    const auto callback = m_reports.forWrite();
    m_file.writeAsync(callback.get(), dataOf(std::string(100'000, 'x')));
    EXPECT_EQ(m_reports.next().done, 100'000);
}

TEST_F(ZStreamAsyncTest, WriteOfAClosedStreamReportsMinusOne)
{
    const auto callback = m_reports.forWrite();
    for (const char* text : {"abc", ""}) {
        File file;
        EXPECT_TRUE(file.writeAsync(callback.get(), dataOf(text)));
        const Report report = m_reports.next();
        EXPECT_EQ(report.status, -1);
        EXPECT_EQ(report.done, 0);
    }
}

TEST_F(ZStreamAsyncTest, FailedWriteReportsTheErrorIndicator)
{
    if (m_file.open("/dev/full", 4) != 0)
        GTEST_SKIP() << "the host has no full device";
    const auto callback = m_reports.forWrite();
    m_file.writeAsync(callback.get(), dataOf(std::string(1 << 20, 'x')));
    const Report report = m_reports.next();
    EXPECT_NE(report.status, 0);
    EXPECT_EQ(report.done, 0);
}

TEST_F(ZStreamAsyncTest, PassesOfAWrite)
{
    struct Row {
        std::string text;
        std::vector<ScriptedStream::Pass> passes;
        std::vector<std::string> writes;
        int status;
        long done;
    };
    const std::vector<Row> rows{
        {"abcdef", {{0, 6}}, {"abcdef"}, 0, 6}, // all at once
        {"abcdef", {{0, 2}, {0, 3}, {0, 1}}, {"abcdef", "cdef", "f"}, 0, 6}, // in parts
        {"abcdef", {{0, 0}, {0, 6}}, {"abcdef", "abcdef"}, 0, 6}, // writing nothing is no failure
        {"abcdef", {{0, 4}, {28, 0}}, {"abcdef", "ef"}, 28, 4}, // fails part way
        {"abcdef", {{0, 1}, {-1, 3}}, {"abcdef", "bcdef"}, -1, 1}, // what a failing pass wrote does not count
        {"abcdef", {{5, 2}}, {"abcdef"}, 5, 0}, // fails at once
        {"abc", {{0, 9}}, {"abc"}, 0, 9}, // a count above the requested one is accepted
        {"abc", {{0, -5}, {0, 3}}, {"abc", "abc"}, 0, 3}, // a negative count is 0
        {"abc", {{0, 1}, {0, LONG_MAX}}, {"abc", "bc"}, 0, LONG_MAX}, // the sum does not overflow
        {"abc", {{0, 1}, {0, 0, false}, {0, 2}}, {"abc", "bc", "bc"}, 0, 3}, // no count is 0 as well
        {"", {{0, 0}}, {""}, 0, 0}, // an empty array has one pass
        {"", {{7, 0}}, {""}, 7, 0},
    };
    for (const Row& row : rows) {
        ScriptedStream stream(row.passes);
        const DataRef data = dataOf(row.text);
        const auto callback = m_reports.forWrite();
        EXPECT_TRUE(stream.writeAsync(callback.get(), data));
        const Report report = m_reports.next();
        EXPECT_EQ(stream.m_writes, row.writes);
        EXPECT_EQ(report.status, row.status);
        EXPECT_EQ(report.done, row.done);
        EXPECT_EQ(report.data, data.get());
        EXPECT_EQ(report.stream, static_cast<Async*>(&stream));
        stream.awaitWrite();
    }
    EXPECT_EQ(m_reports.count(), rows.size());
}

TEST_F(ZStreamAsyncTest, SecondWriteIsRefusedWhileTheFirstRuns)
{
    Gate gate;
    ScriptedStream stream({{0, 3}, {0, 3}});
    stream.m_writeGate = &gate;
    const auto callback = m_reports.forWrite();
    const DataRef data = dataOf("abc");
    EXPECT_TRUE(stream.writeAsync(callback.get(), data));
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(stream.writeAsync(callback.get(), data));
    EXPECT_FALSE(stream.writeAsync(callback.get(), DataRef())); // refused before it is checked
    gate.open();
    m_reports.next();
    stream.awaitWrite();
    EXPECT_EQ(data.RefCount(), 1);
    EXPECT_TRUE(stream.writeAsync(callback.get(), data));
    m_reports.next();
    EXPECT_EQ(m_reports.count(), 2u);
}

TEST_F(ZStreamAsyncTest, SecondWriteToAFileIsRefusedWhileTheFirstRuns)
{
    const int fifo = makeFifo("fifo");
    m_file.open(pathOf("fifo").c_str(), 4);
    const auto callback = m_reports.forWrite();
    const DataRef data = dataOf(std::string(1 << 20, 'x'));
    EXPECT_TRUE(m_file.writeAsync(callback.get(), data)); // blocks
    EXPECT_FALSE(m_file.writeAsync(callback.get(), data));
    std::string buffer(1 << 16, '\0');
    for (long left = 1 << 20; left > 0;)
        left -= ::read(fifo, buffer.data(), buffer.size());
    const Report report = m_reports.next();
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.done, 1 << 20);
    ::close(fifo);
}

TEST_F(ZStreamAsyncTest, ReadAndWriteRunAtTheSameTime)
{
    Gate readGate;
    Gate writeGate;
    ScriptedStream stream({{0, 3}});
    stream.m_readGate = &readGate;
    stream.m_writeGate = &writeGate;
    const auto callback = m_reports.forWrite();
    EXPECT_TRUE(stream.readAsync(m_reports.forRead(), 2));
    EXPECT_TRUE(stream.writeAsync(callback.get(), dataOf("abc")));
    writeGate.open();
    EXPECT_EQ(m_reports.next().done, 3);
    readGate.open();
    EXPECT_EQ(m_reports.next().text, "rr");
}

TEST_F(ZStreamAsyncTest, WriteOverriddenFurtherUpIsUsed)
{
    struct Counting : File {
        using File::write;
        int write(char const* data, long count, long& written) override
        {
            ++m_calls;
            return File::write(data, count, written);
        }
        ~Counting() override { waitForWrite(); }
        std::atomic<int> m_calls{0};
    };
    struct Named : virtual Counting {
        std::string m_name = "name";
    };
    const auto callback = m_reports.forWrite();
    Named file;
    file.open(pathOf("file").c_str(), 4);
    EXPECT_TRUE(file.writeAsync(callback.get(), dataOf("abc")));
    EXPECT_EQ(m_reports.next().done, 3);
    EXPECT_EQ(file.m_calls, 1);
    file.close();
}

TEST_F(ZStreamAsyncTest, WriteOverriddenByADerivedFileIsUsed)
{
    struct Shouting : File {
        using File::write;
        int write(char const* data, long count, long& written) override
        {
            std::string loud(data, static_cast<std::size_t>(count));
            for (char& c : loud)
                c = static_cast<char>(c - 'a' + 'A');
            return File::write(loud.data(), count, written);
        }
        ~Shouting() override { waitForWrite(); }
    };
    const auto callback = m_reports.forWrite();
    Shouting file;
    file.open(pathOf("file").c_str(), 4);
    EXPECT_TRUE(file.writeAsync(callback.get(), dataOf("abc")));
    EXPECT_EQ(m_reports.next().stream, static_cast<Async*>(&file));
    file.close();
    EXPECT_EQ(contentOf("file"), "ABC");
}

} // namespace
} // namespace ZSpace::Testing
