// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Operations that depend on the local time zone, and operations that must not.

#include "tests/value/MktimeFault.h"
#include "tests/value/Times.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace ZSpace::Testing {
namespace {

class ZTimeZoneTest : public testing::TestWithParam<const char*> {
    const TimeZone m_zone{GetParam()};
};

// Mostly POSIX rules, which work without a time zone database.
INSTANTIATE_TEST_SUITE_P(Zones, ZTimeZoneTest,
    testing::Values("UTC0", "EST5EDT,M3.2.0,M11.1.0", "CET-1CEST,M3.5.0,M10.5.0/3", "IST-5:30", "NPT-5:45",
        "LINT-14", "AoE12", "AEST-10AEDT,M10.1.0,M4.1.0/3", "Europe/London", "America/St_Johns"));

TEST_P(ZTimeZoneTest, DifferenceReadsBothOperandsAsUtc)
{
    RandomTimes times;
    for (int i = 0; i < 500; ++i) {
        const ZTime a = times.next();
        const ZTime b = times.next();
        ASSERT_EQ(a - b, utcSecondsOf(a) - utcSecondsOf(b));
    }
    EXPECT_EQ(ZTime(2024, 7, 2, 3, 4, 5, 0) - ZTime(2024, 7, 1, 3, 4, 5, 999), 86400);
    EXPECT_EQ(ZTime(2024, 7, 1, 0, 0, 0, 0) - ZTime(2024, 1, 1, 0, 0, 0, 0), 182 * 86400);
}

TEST_P(ZTimeZoneTest, SecondsSince1970AreInUtcBothWays)
{
    for (unsigned int seconds : {0u, 60u, 15638400u, 951782400u, 1719792000u, 4294967295u}) {
        EXPECT_EQ(static_cast<unsigned int>(ZTime(seconds)), seconds);
        EXPECT_EQ(utcSecondsOf(ZTime(seconds)), seconds);
    }
    EXPECT_EQ(static_cast<unsigned int>(ZTime(1970, 1, 1, 0, 1, 0, 0)), 60u);
}

TEST_P(ZTimeZoneTest, NowIsInUtc)
{
    const std::time_t before = std::time(nullptr);
    const ZTime now(true);
    EXPECT_GE(utcSecondsOf(now), before);
    EXPECT_LE(utcSecondsOf(now), before + 5);
}

TEST_P(ZTimeZoneTest, ShiftingReadsLocalTimeAndWritesUtc)
{
    RandomTimes times(1900); // some C libraries refuse earlier years
    for (int i = 0; i < 200; ++i) {
        const ZTime time = times.next();
        std::tm local = recordOf(time);
        const long long read = std::mktime(&local);
        ZTime shifted(time);
        EXPECT_EQ(&(shifted += 90061u), &shifted);
        ASSERT_EQ(utcSecondsOf(shifted), read + 90061);
        ASSERT_EQ(shifted.MilliSeconds(), time.MilliSeconds());
        EXPECT_EQ(time + 90061u, shifted);

        shifted = time;
        EXPECT_EQ(&(shifted -= 90061u), &shifted);
        ASSERT_EQ(utcSecondsOf(shifted), read - 90061);
        EXPECT_EQ(time - 90061u, shifted);
        EXPECT_EQ(time - 90061, shifted);
    }
}

TEST_P(ZTimeZoneTest, ShiftingYearsThatTheCLibraryRefusesHasTheSameResult)
{
    RandomTimes times;
    for (int i = 0; i < 500; ++i) {
        ZTime time = times.next();
        time.Year(static_cast<unsigned short>(1600 + i * 300 / 500));
        const ZTime shifted = time + 90061u;
        const MktimeFault fault;
        ASSERT_STREQ((time + 90061u).toCStringEx(), shifted.toCStringEx()) << textOf(time);
    }
    EXPECT_TRUE(MktimeFault::hasStruck());
}

TEST(ZTimeShiftTest, OneSecondBefore1970IsNotMistakenForAnError)
{
    const TimeZone zone("UTC0");
    const MktimeFault fault;
    EXPECT_EQ(ZTime(1969, 12, 31, 23, 59, 59, 0) + 1, ZTime(1970, 1, 1, 0, 0, 0, 0));
}

TEST(ZTimeShiftTest, YearsBefore1900UseTheOffsetOfTheirTime)
{
    const TimeZone zone("EST5EDT,M3.2.0,M11.1.0");
    EXPECT_EQ(ZTime(1700, 1, 15, 12, 0, 0, 0) + 60, ZTime(1700, 1, 15, 17, 1, 0, 0));
    EXPECT_EQ(ZTime(1700, 7, 15, 12, 0, 0, 0) + 60, ZTime(1700, 7, 15, 17, 1, 0, 0)); // no daylight saving
    const MktimeFault fault;
    EXPECT_EQ(ZTime(1700, 1, 15, 12, 0, 0, 0) + 60, ZTime(1700, 1, 15, 17, 1, 0, 0));
    EXPECT_EQ(ZTime(1700, 7, 15, 12, 0, 0, 0) + 60, ZTime(1700, 7, 15, 17, 1, 0, 0));
}

TEST(ZTimeShiftTest, FindsTheStandardOffsetOfAnyDaylightSaving)
{
    const char* const halfYear = "LHST-10:30LHDT-11,M10.1.0,M4.1.0"; // half an hour of daylight saving
    const char* const allButFiveDays = "XST-10:30XDT-11,J10,J5"; // of January
    struct {
        const char* zone;
        ZTime local;
        ZTime utc;
    } const table[]{
        {halfYear, ZTime(2023, 12, 1, 12, 0, 0, 0), ZTime(2023, 12, 1, 1, 30, 0, 0)},
        {allButFiveDays, ZTime(2024, 1, 2, 12, 0, 0, 0), ZTime(2024, 1, 2, 1, 30, 0, 0)}, // 360 days before
        {allButFiveDays, ZTime(2023, 1, 12, 12, 0, 0, 0), ZTime(2023, 1, 12, 1, 30, 0, 0)}, // 360 days after
        {allButFiveDays, ZTime(2024, 2, 1, 12, 0, 0, 0), ZTime(2024, 2, 1, 2, 0, 0, 0)}, // too far: one hour
    };
    for (const auto& [rule, local, utc] : table) {
        const TimeZone zone(rule);
        const MktimeFault fault(2100);
        EXPECT_EQ(local + 0, utc) << rule;
    }
}

TEST(ZTimeShiftTest, OnTheDayOfAChangeUsesTheOffsetAfterIt)
{
    const TimeZone zone("America/New_York"); // from 4:56:02 to 5 hours behind, at 12:03:58 of its old time
    const ZTime local(1883, 11, 18, 12, 10, 0, 0);
    if (ZTime(1883, 11, 18, 10, 0, 0, 0) + 0 != ZTime(1883, 11, 18, 14, 56, 2, 0))
        GTEST_SKIP() << "the time zone database is missing or does not go back to 1883";
    EXPECT_EQ(local + 0, ZTime(1883, 11, 18, 17, 10, 0, 0));
    const MktimeFault fault;
    EXPECT_EQ(local + 0, ZTime(1883, 11, 18, 17, 10, 0, 0));
}

TEST(ZTimeShiftTest, TakesEnumerations)
{
    enum Span { Minute = 60 };
    const TimeZone zone("UTC0");
    const ZTime time(2024, 1, 15, 12, 0, 0, 0);
    EXPECT_EQ(time + Minute, ZTime(2024, 1, 15, 12, 1, 0, 0));
    EXPECT_EQ(time - Minute, ZTime(2024, 1, 15, 11, 59, 0, 0));
}

TEST(ZTimeShiftTest, AlsoMovesByTheZoneOffset)
{
    const ZTime time(2024, 1, 15, 12, 0, 0, 7);
    const TimeZone zone("EST5");
    EXPECT_EQ(time + 60u, ZTime(2024, 1, 15, 17, 1, 0, 7));
    EXPECT_EQ(time - 60u, ZTime(2024, 1, 15, 16, 59, 0, 7));
    EXPECT_EQ(time + 0u, ZTime(2024, 1, 15, 17, 0, 0, 7));
}

TEST(ZTimeShiftTest, ReadsLocalTimeWithoutDaylightSaving)
{
    const TimeZone zone("CET-1CEST,M3.5.0,M10.5.0/3");
    EXPECT_EQ(ZTime(2024, 7, 1, 12, 0, 0, 0) + 0u, ZTime(2024, 7, 1, 11, 0, 0, 0));
    EXPECT_EQ(ZTime(2024, 1, 1, 12, 0, 0, 0) + 0u, ZTime(2024, 1, 1, 11, 0, 0, 0));
}

TEST(ZTimeShiftTest, ResultMayLeaveTheRangeOfYears)
{
    const TimeZone zone("UTC0");
    EXPECT_STREQ((ZTime(3000, 12, 31, 23, 59, 59, 0) + 1).toCString(), "3001-01-01T00:00:00");
    EXPECT_STREQ((ZTime(1600, 1, 1, 0, 0, 0, 0) - 1).toCString(), "1599-12-31T23:59:59");
    EXPECT_STREQ((ZTime(1970, 1, 1, 0, 0, 0, 0) + 4294967295u).toCString(), "2106-02-07T06:28:15");
    // Years before 0 wrap around.
    EXPECT_STREQ((ZTime(false) - 1).toCString(), "65535-11-29T23:59:59");
    EXPECT_EQ((ZTime(false) - 1) - ZTime(false), -1);
}

TEST(ZTimeShiftTest, KeepsTheWeekday)
{
    const TimeZone zone("UTC0");
    const ZTime now(true);
    const ZTime shifted = now + 86400;
    unsigned char before[sizeof(ZTime)];
    unsigned char after[sizeof(ZTime)];
    std::memcpy(before, &now, sizeof before);
    std::memcpy(after, &shifted, sizeof after);
    EXPECT_EQ(after[6], before[6]);
    EXPECT_EQ(shifted - now, 86400);
}

TEST(ZTimeShiftTest, SecondsAreTakenModulo32Bits)
{
    const TimeZone zone("UTC0");
    const ZTime time(2024, 1, 15, 12, 0, 0, 0);
    EXPECT_EQ(time + 4294967296LL, time);
    EXPECT_EQ(time + (4294967296ULL + 60), time + 60);
    EXPECT_EQ(time + -1, time + 4294967295u);
}

} // namespace
} // namespace ZSpace::Testing
