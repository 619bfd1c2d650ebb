// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// How a hosted book that is slow, or that fails, affects the others.

#include "ZSpace/log/ZLogBookHoster.h"

#include "ZSpace/log/ZLogBookJson.h"
#include "tests/log/RecordingBook.h"
#include "tests/log/ReportFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <thread>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

class Hoster : public ZLogBookHoster {
public:
    using ZLogBookHoster::ZLogBookHoster;
    bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
};

/// Blocks in its first record until it is released.
class StuckBook : public RecordingBook {
public:
    void add(const ZLogRecord& record) override
    {
        if (!m_isStarted.exchange(true)) {
            m_started.set_value();
            m_continued.get_future().wait();
        }
        RecordingBook::add(record);
    }
    void waitUntilStuck() { m_started.get_future().wait(); }
    void continueWork() { m_continued.set_value(); }

private:
    std::atomic<bool> m_isStarted{false};
    std::promise<void> m_started;
    std::promise<void> m_continued;
};

TEST(ZLogBookHosterTest, BooksBeforeASlowOneGetTheRecordAtOnce)
{
    auto* const fast = new RecordingBook;
    auto* const stuck = new StuckBook;
    Hoster hoster(fast, stuck);
    std::thread logging([&] { hoster.add(ZLogRecord() << "x"); });
    stuck->waitUntilStuck();
    EXPECT_THAT(fast->records(), ElementsAre("x|"));
    EXPECT_THAT(stuck->records(), ElementsAre());
    stuck->continueWork();
    logging.join();
    EXPECT_THAT(stuck->records(), ElementsAre("x|"));
}

TEST(ZLogBookHosterTest, ASlowBookDelaysNoOtherThread)
{
    auto* const stuck = new StuckBook;
    auto* const fast = new RecordingBook;
    Hoster hoster(stuck, fast);
    std::thread logging([&] { hoster.add(ZLogRecord() << "first"); });
    stuck->waitUntilStuck();
    hoster.add(ZLogRecord() << "second"); // would never return if a lock were held
    hoster.setLastError(1, "a", "b", 2, nullptr);
    EXPECT_TRUE(hoster.hasLastError(1, pthread_t{}));
    EXPECT_EQ(fast->records().size(), 3U);
    EXPECT_EQ(fast->records()[0], "second|");
    stuck->continueWork();
    logging.join();
    EXPECT_EQ(fast->records().back(), "first|");
}

using FailingFile = ReportFile;

TEST_F(FailingFile, AFullDiskStopsNoOtherBook)
{
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "needs /dev/full";
    auto* const recording = new RecordingBook;
    Hoster hoster(new ZLogBookFile(L"/dev/full"), new ZLogBookJson(L"/dev/full"),
        new ZLogBookFile(widened(m_path).c_str()), recording);
    for (int i = 0; i < 3; ++i)
        EXPECT_NO_THROW(hoster.add(ZLogRecord() << i));
    EXPECT_THAT(recording->records(), ElementsAre("0|", "1|", "2|"));
    EXPECT_EQ(linesOf(content()).size(), 3U);
}

} // namespace
} // namespace ZSpace::Testing
