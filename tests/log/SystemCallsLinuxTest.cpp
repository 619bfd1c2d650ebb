// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// System calls of the report file that are interrupted, that write less than requested, or that fail.

#include "tests/log/ReportFile.h"
#include "tests/log/SystemCallFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <string>
#include <thread>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::MatchesRegex;

TEST_F(ReportFile, AnInterruptedWriteIsRepeated)
{
    const ZRef<ZLogBook> book = openBook();
    const WritePlan plan{{EINTR}, {EINTR}, {EINTR}};
    book->add(ZLogRecord() << "x");
    EXPECT_EQ(plan.taken(), 3U);
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tx\n"));
}

TEST_F(ReportFile, AShortWriteIsContinued)
{
    const ZRef<ZLogBook> book = openBook();
    const WritePlan plan{{0, 1}, {0, 10}, {EINTR}, {0, 3}};
    book->add(ZLogRecord() << "x");
    EXPECT_EQ(plan.taken(), 4U);
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tx\n"));
}

TEST_F(ReportFile, AFailedWriteLosesOnlyItsLine)
{
    for (const int error : {EAGAIN, EBADF, EDQUOT, EFBIG, EINVAL, EIO, ENOSPC, EPERM, EPIPE}) {
        fs::remove(m_path);
        const ZRef<ZLogBook> book = openBook();
        book->add(ZLogRecord() << "before");
        {
            const WritePlan plan{{error}};
            book->add(ZLogRecord() << "lost");
            EXPECT_EQ(plan.taken(), 1U);
        }
        book->add(ZLogRecord() << "after");
        EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tbefore\n" + s_prefix + "\tafter\n")) << error;
    }
}

TEST_F(ReportFile, ACutLineIsEndedBeforeTheNext)
{
    const ZRef<ZLogBook> book = openBook();
    {
        const WritePlan plan{{0, 30}, {ENOSPC}};
        book->add(ZLogRecord() << "cut");
    }
    {
        const WritePlan plan{{ENOSPC}, {ENOSPC}};
        book->add(ZLogRecord() << "lost");
        EXPECT_EQ(plan.taken(), 1U); // the line feed
    }
    {
        const WritePlan plan{{0, 1}, {ENOSPC}};
        book->add(ZLogRecord() << "lost after the line feed");
        EXPECT_EQ(plan.taken(), 2U);
    }
    book->add(ZLogRecord() << "whole");
    const std::vector<std::string> lines = linesOf(content());
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].size(), 30U);
    EXPECT_THAT(lines[1], MatchesRegex(s_prefix + "\twhole"));
}

TEST_F(ReportFile, EverySecondCanBeWrittenFirst)
{
    for (const timespec time : {timespec{0, 7'000'000}, timespec{-1, 0}, timespec{1, 999'999'999}}) {
        fs::remove(m_path);
        std::thread([&] {
            const StoppedClock clock(time);
            const ZRef<ZLogBook> book = openBook();
            book->add(ZLogRecord());
        }).join();
        EXPECT_THAT(content(), MatchesRegex(s_prefix + "\n")) << time.tv_sec;
    }
    EXPECT_THAT(content(), testing::StartsWith("1970-01-01T00:00:01.999 "));
}

} // namespace
} // namespace ZSpace::Testing
