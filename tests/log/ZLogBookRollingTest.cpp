// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Files that roll by size, by day and on request, and the old files that are kept.

#include "ZSpace/log/ZLogBookRolling.h"

#include "ZSpace/core/ZException.h"
#include "tests/log/ReportFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <regex>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::EndsWith;
using testing::MatchesRegex;

class ZLogBookRollingTest : public ReportFile {
protected:
    [[nodiscard]] ZRef<ZLogBookRolling> roll(const ZLogBookRolling::Limits& limits) const
    {
        return ZRef<ZLogBookRolling>(new ZLogBookRolling(widened(m_path).c_str(), limits));
    }
    [[nodiscard]] fs::path old(int number) const { return m_path.string() + "." + std::to_string(number); }
    static void age(const fs::path& file, std::chrono::hours hours)
    {
        fs::last_write_time(file, fs::file_time_type::clock::now() - hours);
    }
};

TEST_F(ZLogBookRollingTest, WithoutLimitsThereIsOneFile)
{
    const auto book = roll({});
    for (int i = 0; i < 100; ++i)
        book->add(ZLogRecord() << "line" << i);
    EXPECT_EQ(linesOf(content()).size(), 100U);
    EXPECT_THAT(linesOf(content())[99], MatchesRegex(s_prefix + "\tline\t99"));
    EXPECT_FALSE(fs::exists(old(1)));
}

TEST_F(ZLogBookRollingTest, AFullFileBecomesTheNewestOldOne)
{
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 500;
    limits.oldFileCount = 3;
    const auto book = roll(limits);
    for (int i = 0; i < 100; ++i)
        book->add(ZLogRecord() << "line" << i);
    EXPECT_FALSE(fs::exists(old(4)));
    int next = 99;
    for (const fs::path& file : {m_path, old(1), old(2), old(3)}) {
        EXPECT_LE(fs::file_size(file), 500U);
        const std::vector<std::string> lines = linesOf(contentOf(file));
        for (auto line = lines.rbegin(); line != lines.rend(); ++line)
            EXPECT_THAT(*line, EndsWith("\tline\t" + std::to_string(next--)));
    }
}

TEST_F(ZLogBookRollingTest, ALongLineIsNotSplit)
{
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 100;
    const auto book = roll(limits);
    const std::string text(300, 'x');
    book->add(ZLogRecord() << "short");
    book->add(ZLogRecord() << text.c_str());
    book->add(ZLogRecord() << "short");
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tshort\n"));
    EXPECT_THAT(contentOf(old(1)), MatchesRegex(s_prefix + "\t" + text + "\n"));
    EXPECT_THAT(contentOf(old(2)), MatchesRegex(s_prefix + "\tshort\n"));
}

TEST_F(ZLogBookRollingTest, ALaterRunContinuesTheFile)
{
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 150;
    for (int i = 0; i < 3; ++i)
        roll(limits)->add(ZLogRecord() << "twenty characters..." << i);
    EXPECT_EQ(linesOf(contentOf(old(1))).size(), 2U);
    EXPECT_EQ(linesOf(content()).size(), 1U);
}

TEST_F(ZLogBookRollingTest, ANewDayStartsANewFile)
{
    ZLogBookRolling::Limits limits;
    limits.isDaily = true;
    roll(limits)->add(ZLogRecord() << "yesterday");
    age(m_path, std::chrono::hours(24));
    const auto book = roll(limits);
    book->add(ZLogRecord() << "today");
    book->add(ZLogRecord() << "today");
    EXPECT_THAT(contentOf(old(1)), EndsWith("\tyesterday\n"));
    EXPECT_EQ(linesOf(content()).size(), 2U);
}

TEST_F(ZLogBookRollingTest, TheSameDayContinuesTheFile)
{
    ZLogBookRolling::Limits limits;
    limits.isDaily = true;
    const auto today = [] { return std::time(nullptr) / 86'400; };
    const auto day = today();
    roll(limits)->add(ZLogRecord() << "earlier run");
    const auto book = roll(limits);
    book->add(ZLogRecord() << "line");
    book->add(ZLogRecord() << "line");
    if (today() != day)
        GTEST_SKIP() << "midnight came in between";
    EXPECT_EQ(linesOf(content()).size(), 3U);
    EXPECT_FALSE(fs::exists(old(1)));
}

TEST_F(ZLogBookRollingTest, OldFilesAreRemovedByAge)
{
    ZLogBookRolling::Limits limits;
    limits.oldFileAge = std::chrono::hours(48);
    for (int number = 1; number <= 4; ++number) {
        writeFile(old(number), "old\n");
        age(old(number), std::chrono::hours(20 * number));
    }
    const auto book = roll(limits);
    EXPECT_TRUE(fs::exists(old(1)) && fs::exists(old(2)));
    EXPECT_FALSE(fs::exists(old(3)) || fs::exists(old(4)));
}

TEST_F(ZLogBookRollingTest, OldFilesAreRemovedByAgeWhenAnotherOneIsAdded)
{
    ZLogBookRolling::Limits limits;
    limits.oldFileAge = std::chrono::hours(1);
    const auto book = roll(limits);
    book->add(ZLogRecord() << "first");
    book->roll();
    age(old(1), std::chrono::hours(2));
    book->add(ZLogRecord() << "second");
    book->roll();
    EXPECT_THAT(contentOf(old(1)), EndsWith("\tsecond\n"));
    EXPECT_FALSE(fs::exists(old(2)));
}

TEST_F(ZLogBookRollingTest, AFileOfOneByteIsNotEmpty)
{
    writeFile(m_path, "\n");
    roll({})->roll();
    EXPECT_EQ(contentOf(old(1)), "\n");
    EXPECT_EQ(content(), "");
}

TEST_F(ZLogBookRollingTest, HasNoSessionLog)
{
    ZGStr<wchar_t> out(L"kept");
    EXPECT_FALSE(roll({})->getSessionTransferLog(out));
    EXPECT_TRUE(out == L"kept");
}

TEST_F(ZLogBookRollingTest, RollsAndReopensOnRequest)
{
    const auto book = roll({});
    book->roll(); // empty: stays
    EXPECT_FALSE(fs::exists(old(1)));
    book->add(ZLogRecord() << "first");
    book->roll();
    book->add(ZLogRecord() << "second");
    EXPECT_THAT(contentOf(old(1)), EndsWith("\tfirst\n"));
    fs::rename(m_path, m_folder.path() / "moved"); // as another program's rotation does
    book->add(ZLogRecord() << "third");
    book->reopen();
    book->add(ZLogRecord() << "fourth");
    EXPECT_THAT(contentOf(m_folder.path() / "moved"), EndsWith("\tthird\n"));
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tfourth\n"));
}

TEST_F(ZLogBookRollingTest, AFileThatIsReopenedIsMeasuredAgain)
{
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 200;
    const auto book = roll(limits);
    book->add(ZLogRecord() << std::string(100, 'x').c_str());
    fs::rename(m_path, m_folder.path() / "moved");
    book->reopen();
    book->add(ZLogRecord() << std::string(100, 'y').c_str());
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\ty{100}\n"));
    EXPECT_FALSE(fs::exists(old(1)));
}

TEST_F(ZLogBookRollingTest, TheSmallestLimitsAreOneByteAndOneOldFile)
{
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 1;
    limits.oldFileCount = 1;
    const auto book = roll(limits);
    for (int i = 0; i < 3; ++i)
        book->add(ZLogRecord() << i);
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\t2\n"));
    EXPECT_THAT(contentOf(old(1)), MatchesRegex(s_prefix + "\t1\n"));
    EXPECT_FALSE(fs::exists(old(2)));
}

TEST_F(ZLogBookRollingTest, KeepsNoOldFileIfTheLimitIsZero)
{
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 100;
    limits.oldFileCount = 0;
    const auto book = roll(limits);
    for (int i = 0; i < 10; ++i)
        book->add(ZLogRecord() << i);
    EXPECT_LE(content().size(), 100U);
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.path()), fs::directory_iterator()), 1);
}

TEST_F(ZLogBookRollingTest, AProcessMayHaveFilesOfItsOwn)
{
    ZLogBookRolling::Limits limits;
    limits.isPerProcess = true;
    roll(limits)->add(ZLogRecord() << "own");
    EXPECT_THAT(contentOf(m_path.string() + "." + std::to_string(getpid())), EndsWith("\town\n"));
    EXPECT_FALSE(fs::exists(m_path));
}

TEST_F(ZLogBookRollingTest, ThrowsIfItCannotBeOpened)
{
    EXPECT_THROW(ZLogBookRolling(widened(m_folder.path()).c_str(), {}), ZException);
}

TEST_F(ZLogBookRollingTest, NoLineOfManyThreadsIsLostOrTorn)
{
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 5000;
    limits.oldFileCount = 1000;
    const auto book = roll(limits);
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&book, t] {
            for (int i = 0; i < 300; ++i)
                book->add(ZLogRecord() << "thread" << t << i);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::regex whole(s_prefix + "\tthread\t[0-2]\t[0-9]+");
    int count = 0;
    for (const auto& entry : fs::directory_iterator(m_folder.path())) {
        for (const std::string& line : linesOf(contentOf(entry.path()))) {
            EXPECT_TRUE(std::regex_match(line, whole)) << line;
            ++count;
        }
    }
    EXPECT_EQ(count, 900);
}

} // namespace
} // namespace ZSpace::Testing
