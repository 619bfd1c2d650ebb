// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The report file: its name, its bytes and its sessions.

#include "ZSpace/core/ZException.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "tests/log/ReportFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

using testing::EndsWith;
using testing::MatchesRegex;

TEST_F(ReportFile, ARecordIsOneLine)
{
    openBook()->add(ZLogRecord() << "Connection" << 42);
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tConnection\t42\n"));
}

TEST_F(ReportFile, ARecordWithoutValuesIsTimeAndThread)
{
    openBook()->add(ZLogRecord());
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\n"));
}

TEST_F(ReportFile, TheTimeIsUtcAndTheThreadIsTheCaller)
{
    const auto seconds = [](const std::string& line) {
        tm fields{};
        strptime(line.c_str(), "%Y-%m-%dT%H:%M:%S", &fields);
        return timegm(&fields);
    };
    const time_t before = time(nullptr);
    const Outcome outcome = runInChild([&] {
        setenv("TZ", "XXX-14", 1);
        tzset();
        openBook()->add(ZLogRecord());
        std::printf("Thread[%x]:\n", Host::threadNumber());
        return 0;
    });
    EXPECT_GE(seconds(content()), before);
    EXPECT_LE(seconds(content()), time(nullptr));
    EXPECT_THAT(content(), EndsWith(" " + outcome.standardOutput));
}

TEST_F(ReportFile, ValuesAreNotEscaped)
{
    openBook()->add(ZLogRecord() << "a\tb\nc"
                                 << "" << static_cast<const char*>(nullptr) << L"w\u00E9");
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\ta\tb\nc\t\t\tw\xE9\n"));
}

TEST_F(ReportFile, ValuesArePrintedInTheirOwnForm)
{
    const ZTime time(2024, 3, 5, 7, 8, 9, 42);
    openBook()->add(ZLogRecord() << true << false << 'x' << L'y' << static_cast<signed char>(-1)
                                 << static_cast<unsigned char>(255) << 4294967295U << -9223372036854775807LL
                                 << 2.5 << time << ZGUID() << TZValueBase<ZTypeId>());
    EXPECT_THAT(content(),
        MatchesRegex(s_prefix
            + "\t1\t0\tx\ty\t-1\t255\t4294967295\t-9223372036854775807\t2\\.5\t2024-03-05T07:08:09"
              "\t\\{00000000-0000-0000-0000-000000000000\\}\t\n"));
}

TEST_F(ReportFile, ANewOrEmptyFileGetsNoSeparator)
{
    openBook();
    EXPECT_EQ(content(), "");
    openBook()->add(ZLogRecord() << "x");
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tx\n"));
}

TEST_F(ReportFile, ALaterSessionIsAppendedAfterASeparator)
{
    writeFile(m_path, "before");
    openBook()->add(ZLogRecord() << "x");
    EXPECT_THAT(content(), MatchesRegex("before\r\n\r\n" + s_prefix + "\tx\n"));
    openBook();
    EXPECT_THAT(content(), EndsWith("\tx\n\r\n\r\n"));
}

TEST_F(ReportFile, EachRecordIsInTheFileWhenAddReturns)
{
    const ZRef<ZLogBook> book = openBook();
    for (int i = 0; i < 10; ++i) {
        book->add(ZLogRecord() << i);
        EXPECT_THAT(content(), EndsWith("\t" + std::to_string(i) + "\n"));
    }
}

TEST_F(ReportFile, IsClosedWithTheBook)
{
    const int next = nextDescriptor();
    {
        const ZRef<ZLogBook> book = openBook();
        EXPECT_EQ(descriptorsOf(m_path).size(), 1U);
    }
    EXPECT_THAT(descriptorsOf(m_path), testing::IsEmpty());
    EXPECT_EQ(nextDescriptor(), next);
}

TEST_F(ReportFile, AnErrorIsReportedTwice)
{
    const ZRef<ZLogBook> book = openBook();
    book->setLastError(5, "open", "/tmp/x", 12, "denied");
    book->setLastError(0, "a", "b", -1, nullptr);
    const std::vector<std::string> lines = linesOf(content());
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_THAT(
        lines[0], EndsWith("]:\tSetLastError(5): [open] has invoked [/tmp/x] which returned: 12 - denied"));
    EXPECT_THAT(lines[1], EndsWith("]:\tSet LastError:\t4294967295\t5\topen\t/tmp/x\t12\tdenied"));
    EXPECT_THAT(lines[2], EndsWith("]:\tSetLastError(0): [a] has invoked [b] which returned: -1"));
    EXPECT_THAT(lines[3], EndsWith("]:\tSet LastError:\t4294967295\t0\ta\tb\t-1\t"));
    EXPECT_EQ(book->getLastErrors().Count(), 2);
    book->clearLastError(5, pthread_t{});
    EXPECT_THAT(content(), EndsWith("]:\tClearLastError(5)\n"));
}

TEST_F(ReportFile, BlocksAreNotWritten)
{
    const ZRef<ZLogBook> book = openBook();
    book->writeStream(1, 2, "abc", 3);
    book->writeStream(255, -1, nullptr, -5);
    EXPECT_EQ(content(), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.path()), fs::directory_iterator()), 1);
}

TEST_F(ReportFile, HasNoSessionText)
{
    ZGStr<wchar_t> out(L"x");
    EXPECT_FALSE(openBook()->getSessionTransferLog(out));
    EXPECT_TRUE(out == L"x");
    EXPECT_FALSE(openBook()->isInactive());
}

void expectOpenFailure(const std::function<void()>& open)
{
    try {
        open();
        ADD_FAILURE() << "it was opened";
    } catch (const ZException& exception) {
        EXPECT_STREQ(exception.what(), "Report file could not be opened");
        EXPECT_STREQ(exception.where(), "ZLogBookFile()");
        EXPECT_EQ(exception.why(), nullptr);
    }
}

TEST_F(ReportFile, AMissingDirectoryOrADirectoryAsFileThrows)
{
    expectOpenFailure([&] { ZLogBookFile(widened(m_folder.path() / "no" / "report.txt").c_str()); });
    expectOpenFailure([&] { ZLogBookFile(widened(m_folder.path()).c_str()); });
    expectOpenFailure([] { ZLogBookFile(L""); });
}

TEST_F(ReportFile, ADirectoryThatIsNotWritableThrows)
{
    const Outcome outcome = runInChild([&] {
        fs::permissions(m_folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
        if (geteuid() == 0 && setuid(65534) != 0)
            return 1;
        expectOpenFailure([&] { ZLogBookFile(widened(m_path).c_str()); });
        return testing::Test::HasFailure() ? 2 : 0;
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    fs::permissions(m_folder.path(), fs::perms::owner_all);
}

TEST_F(ReportFile, APathIsNarrowedUnitByUnit)
{
    const std::wstring path = widened(m_folder.path() / "r") + L"\u00C3\u20A9";
    ZLogBookFile book(path.c_str());
    EXPECT_TRUE(fs::exists(m_folder.path() / "r\xC3\xA9"));
}

TEST_F(ReportFile, TheDefaultBookIsNamedAfterTimeAndProcess)
{
    const Outcome outcome = runInChild([&] {
        setenv("HOME", m_folder.path().c_str(), 1);
        ZLogBookFile book;
        book.add(ZLogRecord() << "x");
        std::printf("%d", static_cast<int>(getpid()));
        return 0;
    });
    ASSERT_EQ(outcome.status, 0);
    const fs::directory_iterator files(m_folder.path());
    EXPECT_THAT(files->path().filename().string(),
        MatchesRegex("transfer\\.2[0-9]{3}-[0-9]{2}-[0-9]{2}T[0-9]{2}-[0-9]{2}-[0-9]{2}_p"
            + outcome.standardOutput + "\\.report\\.txt"));
    EXPECT_THAT(contentOf(files->path()), MatchesRegex(s_prefix + "\tx\n"));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.path()), fs::directory_iterator()), 1);
}

TEST_F(ReportFile, ADefaultBookThatCannotBeOpenedThrows)
{
    const Outcome outcome = runInChild([&] {
        setenv("HOME", (m_folder.path() / "no").c_str(), 1);
        expectOpenFailure([] { ZLogBookFile book; });
        return testing::Test::HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
}

TEST(ZLogBookFileEntry, StartsAtZero)
{
    const ZLogBookFileEntry entry;
    EXPECT_EQ(entry.m_time, 0U);
    EXPECT_EQ(entry.m_tag, 0);
    EXPECT_EQ(entry.m_first, 0);
    EXPECT_EQ(entry.m_second, 0);
}

TEST(ZLogBookFileEntry, IsStampedWithTheTime)
{
    const unsigned long long before = ZTime(true);
    const ZLogBookFileEntry entry(200, -1, 2);
    EXPECT_GE(entry.m_time, before);
    EXPECT_LE(entry.m_time, static_cast<unsigned long long>(ZTime(true)));
    EXPECT_EQ(entry.m_tag, 200);
    EXPECT_EQ(entry.m_first, -1);
    EXPECT_EQ(entry.m_second, 2);
    static_assert(offsetof(ZLogBookFileEntry, m_time) == 0 && offsetof(ZLogBookFileEntry, m_tag) == 8);
    static_assert(offsetof(ZLogBookFileEntry, m_first) == 12 && offsetof(ZLogBookFileEntry, m_second) == 16);
}

TEST(ZLogBookFileDeathTest, AnEmptyItemAborts)
{
    const TemporaryFolder folder;
    ZLogRecord record;
    record << 1;
    const_cast<ZLogRecord::Item&>(*record.begin()) = nullptr;
    const Outcome outcome = runInChild([&] {
        ZLogBookFile(ZGStr<wchar_t>((folder.path() / "file").c_str())).add(record);
        return 1;
    });
    EXPECT_EQ(outcome.status, SIGABRT);
    EXPECT_EQ(outcome.standardOutput, "this->m_ptValue - File: ZTypeRef - Line: 534\n");
}

} // namespace
} // namespace ZSpace::Testing
