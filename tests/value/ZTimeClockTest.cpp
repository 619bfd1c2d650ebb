// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/value/Times.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <ctime>
#include <sys/time.h>
#include <thread>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

static_assert(std::is_same_v<decltype(GetSystemTimeMillis()), unsigned long long>);
static_assert(std::is_same_v<decltype(GetTickCount()), unsigned int>);

timeval clockTime()
{
    timeval now{};
    gettimeofday(&now, nullptr);
    return now;
}

/// Sleeps until the last tenth of a second, when a fraction of a second in a wrong unit is furthest off.
void waitForALateMillisecond()
{
    do
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    while (clockTime().tv_usec < 900'000);
}

TEST(ZTimeClockTest, NowIsTheClockInUtc)
{
    const auto millis = [](const timeval& t) { return t.tv_sec * 1000LL + t.tv_usec / 1000; };
    for (int i = 0; i < 10; ++i) {
        waitForALateMillisecond();
        const timeval before = clockTime();
        const ZTime now(true);
        const timeval after = clockTime();
        const long long seen = utcSecondsOf(now) * 1000 + now.MilliSeconds();
        ASSERT_GE(seen, millis(before));
        ASSERT_LE(seen, millis(after));
    }
}

TEST(ZTimeClockTest, NowSetsTheWeekday)
{
    for (const int before : {0, 9}) {
        TimeBytes bytes{};
        bytes[6] = static_cast<unsigned char>(before);
        ZTime now = timeOf(bytes);
        now.setNow();
        const std::time_t seconds = utcSecondsOf(now);
        std::tm record{};
        gmtime_r(&seconds, &record);
        EXPECT_EQ(bytesOf(now)[6], record.tm_wday);
    }
}

TEST(ZTimeClockTest, ThreadsReadTheClockConcurrently)
{
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            ZTime last(true);
            for (int i = 0; i < 2000; ++i) {
                const ZTime now(true);
                ASSERT_LE(now - last, 1);
                ASSERT_FALSE(now < last);
                last = now;
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST(SystemTimeTest, CountsMillisecondsSince1970)
{
    timeval before{};
    timeval after{};
    gettimeofday(&before, nullptr);
    const unsigned long long millis = ::GetSystemTimeMillis();
    gettimeofday(&after, nullptr);
    const auto inDoubles = [](const timeval& t) {
        return static_cast<unsigned long long>(
            static_cast<double>(t.tv_sec) * 1000.0 + static_cast<double>(t.tv_usec) / 1000.0);
    };
    EXPECT_GE(millis, inDoubles(before));
    EXPECT_LE(millis, inDoubles(after));
}

TEST(SystemTimeTest, TicksAreHundredthsOfTheLowMilliseconds)
{
    const auto ticksOf = [](unsigned long long millis) { return static_cast<unsigned int>(millis) / 10; };
    for (int i = 0; i < 100; ++i) {
        const unsigned int before = ticksOf(GetSystemTimeMillis());
        const unsigned int ticks = ::GetTickCount();
        const unsigned int after = ticksOf(GetSystemTimeMillis());
        ASSERT_LT(ticks, 429496730u);
        if (before <= after) { // the count did not wrap in between
            ASSERT_GE(ticks, before);
            ASSERT_LE(ticks, after);
        }
    }
}

TEST(FillTmTest, SetsTheFieldsAndClearsAllOthers)
{
    std::tm record;
    std::memset(&record, 0x5A, sizeof record);
    fill_tm(record, 9, 8, 7, 5, 3, 2024);
    EXPECT_EQ(record.tm_sec, 9);
    EXPECT_EQ(record.tm_min, 8);
    EXPECT_EQ(record.tm_hour, 7);
    EXPECT_EQ(record.tm_mday, 5);
    EXPECT_EQ(record.tm_mon, 2);
    EXPECT_EQ(record.tm_year, 124);
    EXPECT_EQ(record.tm_wday, 0);
    EXPECT_EQ(record.tm_yday, 0);
    EXPECT_EQ(record.tm_isdst, 0);
    EXPECT_EQ(record.tm_gmtoff, 0);
    EXPECT_EQ(record.tm_zone, nullptr);
    fill_tm(record, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(record.tm_mon, -1);
    EXPECT_EQ(record.tm_year, -1900);
}

} // namespace
} // namespace ZSpace::Testing
