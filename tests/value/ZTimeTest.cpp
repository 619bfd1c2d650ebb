// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZTime.h"

#include "tests/value/Times.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

static_assert(sizeof(ZTime) == 10 && alignof(ZTime) == 2);
static_assert(std::is_trivially_copyable_v<ZTime>);
static_assert(std::is_same_v<decltype(ZTime(false) - ZTime(false)), long long>);
static_assert(std::is_same_v<decltype(ZTime(false) - 1u), ZTime>);

constexpr unsigned long long s_samplePacked =
    2024ULL << 36 | 3ULL << 32 | 5ULL << 27 | 7ULL << 22 | 8ULL << 16 | 9ULL << 10 | 42ULL;

// Layout and construction

TEST(ZTimeTest, FieldsAreStoredInTenBytesFromMillisecondsToYear)
{
    EXPECT_THAT(bytesOf(ZTime(2024, 3, 5, 7, 8, 9, 777)),
        ElementsAre(777 & 0xFF, 777 >> 8, 9, 8, 7, 5, 0, 3, 2024 & 0xFF, 2024 >> 8));
}

TEST(ZTimeTest, ClearedTimeHasAllFieldsZero)
{
    EXPECT_EQ(bytesOf(ZTime(false)), TimeBytes());
    EXPECT_EQ(bytesOf(ZTime()), TimeBytes());
    ZTime time(true);
    EXPECT_FALSE(time.isCleared());
    time.clear();
    EXPECT_EQ(bytesOf(time), TimeBytes());
    EXPECT_TRUE(time.isCleared());
    EXPECT_EQ(textOf(time), "0000-00-00T00:00:00.000");
}

TEST(ZTimeTest, WeekdayIsIgnoredByIsCleared)
{
    for (std::size_t i = 0; i < TimeBytes().size(); ++i) {
        TimeBytes bytes{};
        bytes[i] = 1;
        EXPECT_EQ(timeOf(bytes).isCleared(), i == 6) << "byte " << i;
    }
}

TEST(ZTimeTest, TimeWithTwoEqualFieldsIsNotCleared)
{
    constexpr std::size_t lowBytes[]{0, 2, 3, 4, 5, 7, 8}; // of each field but the weekday
    for (const std::size_t first : lowBytes) {
        for (const std::size_t second : lowBytes) {
            TimeBytes bytes{};
            bytes[first] = bytes[second] = 1;
            EXPECT_FALSE(timeOf(bytes).isCleared()) << "bytes " << first << " and " << second;
        }
    }
}

TEST(ZTimeTest, GettersReturnTheFields)
{
    EXPECT_EQ(s_sampleTime.Year(), 2024);
    EXPECT_EQ(s_sampleTime.Month(), 3);
    EXPECT_EQ(s_sampleTime.Day(), 5);
    EXPECT_EQ(s_sampleTime.Hour(), 7);
    EXPECT_EQ(s_sampleTime.Minute(), 8);
    EXPECT_EQ(s_sampleTime.Second(), 9);
    EXPECT_EQ(s_sampleTime.MilliSeconds(), 42);
}

TEST(ZTimeTest, CopiesAllFields)
{
    const ZTime now(true);
    const ZTime copy(now);
    ZTime assigned(false);
    EXPECT_EQ(&(assigned = now), &assigned);
    EXPECT_EQ(bytesOf(copy), bytesOf(now));
    EXPECT_EQ(bytesOf(assigned), bytesOf(now));
}

// Validation

struct Correction {
    const char* description;
    ZTime stored;
    const char* text;
};

TEST(ZTimeTest, FieldsOutOfRangeAreCorrected)
{
    const Correction table[]{
        {"all at once", ZTime(2024, 13, 0, 24, 60, 60, 1500), "2024-01-01T00:00:00.999"},
        {"year 0", ZTime(0, 1, 1, 0, 0, 0, 0), "1970-01-01T00:00:00.000"},
        {"year 1599", ZTime(1599, 1, 1, 0, 0, 0, 0), "1970-01-01T00:00:00.000"},
        {"year 1600", ZTime(1600, 1, 1, 0, 0, 0, 0), "1600-01-01T00:00:00.000"},
        {"year 3000", ZTime(3000, 1, 1, 0, 0, 0, 0), "3000-01-01T00:00:00.000"},
        {"year 3001", ZTime(3001, 1, 1, 0, 0, 0, 0), "1970-01-01T00:00:00.000"},
        {"year 65535", ZTime(65535, 1, 1, 0, 0, 0, 0), "1970-01-01T00:00:00.000"},
        {"month 0", ZTime(2000, 0, 1, 0, 0, 0, 0), "2000-01-01T00:00:00.000"},
        {"month 12", ZTime(2000, 12, 1, 0, 0, 0, 0), "2000-12-01T00:00:00.000"},
        {"month 255", ZTime(2000, 255, 1, 0, 0, 0, 0), "2000-01-01T00:00:00.000"},
        {"day 31", ZTime(2000, 1, 31, 0, 0, 0, 0), "2000-01-31T00:00:00.000"},
        {"day 32", ZTime(2000, 1, 32, 0, 0, 0, 0), "2000-01-01T00:00:00.000"},
        {"31 February", ZTime(2023, 2, 31, 0, 0, 0, 0), "2023-02-31T00:00:00.000"},
        {"hour 23", ZTime(2000, 1, 1, 23, 0, 0, 0), "2000-01-01T23:00:00.000"},
        {"hour 255", ZTime(2000, 1, 1, 255, 0, 0, 0), "2000-01-01T00:00:00.000"},
        {"minute 59", ZTime(2000, 1, 1, 0, 59, 0, 0), "2000-01-01T00:59:00.000"},
        {"second 59", ZTime(2000, 1, 1, 0, 0, 59, 0), "2000-01-01T00:00:59.000"},
        {"999 milliseconds", ZTime(2000, 1, 1, 0, 0, 0, 999), "2000-01-01T00:00:00.999"},
        {"1000 milliseconds", ZTime(2000, 1, 1, 0, 0, 0, 1000), "2000-01-01T00:00:00.999"},
    };
    for (const Correction& row : table)
        EXPECT_EQ(textOf(row.stored), row.text) << row.description;
}

TEST(ZTimeTest, SetDateAndSetTimeKeepTheOtherFields)
{
    ZTime time(s_sampleTime);
    time.setDate(3001, 13, 32);
    EXPECT_EQ(textOf(time), "1970-01-01T07:08:09.042");
    time.setDate(2001, 2, 3);
    time.setTime(24, 60, 60, 1000);
    EXPECT_EQ(textOf(time), "2001-02-03T00:00:00.999");
    time.setTime(4, 5, 6, 7);
    EXPECT_EQ(textOf(time), "2001-02-03T04:05:06.007");
    time.set(1999, 12, 31, 23, 59, 58, 1001);
    EXPECT_EQ(textOf(time), "1999-12-31T23:59:58.999");
}

TEST(ZTimeTest, SettersStoreAndReturnTheCorrectedNumber)
{
    ZTime time(false);
    EXPECT_EQ(time.Year(2000), 2000);
    EXPECT_EQ(time.Month(12), 12);
    EXPECT_EQ(time.Day(31), 31);
    EXPECT_EQ(time.Hour(23), 23);
    EXPECT_EQ(time.Minute(59), 59);
    EXPECT_EQ(time.Second(58), 58);
    EXPECT_EQ(time.MilliSeconds(999), 999);
    EXPECT_EQ(textOf(time), "2000-12-31T23:59:58.999");
    EXPECT_EQ(time.Year(1599), 1970);
    EXPECT_EQ(time.Month(13), 1);
    EXPECT_EQ(time.Day(0), 1);
    EXPECT_EQ(time.Hour(24), 0);
    EXPECT_EQ(time.Minute(60), 0);
    EXPECT_EQ(time.Second(60), 0);
    EXPECT_EQ(time.MilliSeconds(1000), 0);
    EXPECT_EQ(textOf(time), "1970-01-01T00:00:00.000");
    time = s_sampleTime;
    EXPECT_EQ(time.MilliSeconds(1500), 0);
    EXPECT_EQ(time.MilliSeconds(), 0);
}

// The packed form

TEST(ZTimeTest, PacksFieldsIntoTheirPlaces)
{
    EXPECT_EQ(static_cast<unsigned long long>(s_sampleTime), s_samplePacked);
    const std::uint64_t asWord = s_sampleTime;
    EXPECT_EQ(asWord, s_samplePacked);
    EXPECT_EQ(static_cast<unsigned long long>(ZTime(false)), 0u);
    TimeBytes withWeekday = bytesOf(s_sampleTime);
    withWeekday[6] = 6;
    EXPECT_EQ(static_cast<unsigned long long>(timeOf(withWeekday)), s_samplePacked);
}

TEST(ZTimeTest, UnpackingRestoresThePackedTime)
{
    RandomTimes times;
    for (int i = 0; i < 20000; ++i) {
        const ZTime time = times.next();
        const unsigned long long packed = time;
        ASSERT_EQ(bytesOf(ZTime(packed)), bytesOf(time));
    }
}

TEST(ZTimeTest, UnpackingCorrectsEachField)
{
    EXPECT_EQ(textOf(ZTime(0ULL)), "1970-01-01T00:00:00.000");
    EXPECT_EQ(textOf(ZTime(~0ULL)), "1970-01-31T00:00:00.999");
    EXPECT_EQ(textOf(ZTime(s_samplePacked & ~(31ULL << 27))), "2024-03-01T07:08:09.042");
    EXPECT_EQ(textOf(ZTime(s_samplePacked | 15ULL << 32)), "2024-01-05T07:08:09.042");
    EXPECT_EQ(textOf(ZTime(s_samplePacked | 31ULL << 22)), "2024-03-05T00:08:09.042");
    EXPECT_EQ(textOf(ZTime(s_samplePacked | 63ULL << 16)), "2024-03-05T07:00:09.042");
    EXPECT_EQ(textOf(ZTime(s_samplePacked | 63ULL << 10)), "2024-03-05T07:08:00.042");
    EXPECT_EQ(textOf(ZTime(s_samplePacked | 1023ULL)), "2024-03-05T07:08:09.999");
    EXPECT_EQ(textOf(ZTime(s_samplePacked | 0xFFFFULL << 48)), "2024-03-05T07:08:09.042");
}

TEST(ZTimeTest, AssigningAPackedFormKeepsTheWeekday)
{
    TimeBytes bytes{};
    bytes[6] = 5;
    ZTime time = timeOf(bytes);
    EXPECT_EQ(&(time = s_samplePacked), &time);
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.042");
    EXPECT_EQ(bytesOf(time)[6], 5);
    time = std::uint64_t{s_samplePacked} + 1;
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.043");
    EXPECT_EQ(ZTime(std::uint64_t{s_samplePacked}), s_sampleTime);
}

// Seconds since 1970

TEST(ZTimeTest, SecondsSince1970)
{
    EXPECT_EQ(textOf(ZTime(0u)), "1970-01-01T00:00:00.000");
    EXPECT_EQ(textOf(ZTime(951782399u)), "2000-02-28T23:59:59.000");
    EXPECT_EQ(textOf(ZTime(951782400u)), "2000-02-29T00:00:00.000");
    EXPECT_EQ(textOf(ZTime(UINT_MAX)), "2106-02-07T06:28:15.000");
    EXPECT_EQ(static_cast<unsigned int>(ZTime(1970, 1, 1, 0, 1, 0, 0)), 60u);
    EXPECT_EQ(static_cast<unsigned int>(ZTime(1970, 1, 1, 0, 1, 0, 999)), 60u);
    EXPECT_EQ(static_cast<unsigned int>(ZTime(2106, 2, 7, 6, 28, 15, 0)), UINT_MAX);
}

TEST(ZTimeTest, SecondsOutsideTheirRangeWrapAround)
{
    EXPECT_EQ(static_cast<unsigned int>(ZTime(1969, 12, 31, 23, 59, 59, 0)), UINT_MAX);
    EXPECT_EQ(static_cast<unsigned int>(ZTime(2106, 2, 7, 6, 28, 16, 0)), 0u);
}

TEST(ZTimeTest, AssigningSecondsClearsTheMillisecondsAndKeepsTheWeekday)
{
    TimeBytes bytes{};
    bytes[0] = 9;
    bytes[6] = 3;
    ZTime time = timeOf(bytes);
    EXPECT_EQ(&(time = 86399u), &time);
    EXPECT_EQ(textOf(time), "1970-01-01T23:59:59.000");
    EXPECT_EQ(bytesOf(time)[6], 3);
    EXPECT_EQ(bytesOf(ZTime(86399u))[6], 0);
}

TEST(ZTimeTest, SecondsAgreeWithTheCLibraryBothWays)
{
    for (unsigned long long step = 0; step <= UINT_MAX; step += 86400 * 3 + 12345) {
        const auto seconds = static_cast<unsigned int>(step);
        const ZTime time(seconds);
        ASSERT_EQ(utcSecondsOf(time), seconds);
        ASSERT_EQ(static_cast<unsigned int>(time), seconds);
        const auto then = static_cast<std::time_t>(seconds);
        std::tm record{};
        gmtime_r(&then, &record);
        ASSERT_EQ(time,
            ZTime(static_cast<unsigned short>(record.tm_year + 1900),
                static_cast<unsigned char>(record.tm_mon + 1), static_cast<unsigned char>(record.tm_mday),
                static_cast<unsigned char>(record.tm_hour), static_cast<unsigned char>(record.tm_min),
                static_cast<unsigned char>(record.tm_sec), 0));
    }
}

// std::chrono

using Milliseconds = std::chrono::sys_time<std::chrono::milliseconds>;

TEST(ZTimeTest, ConvertsFromAndToTheSystemClock)
{
    const Milliseconds moment(std::chrono::milliseconds(1709622489042));
    EXPECT_EQ(textOf(ZTime(moment)), "2024-03-05T07:08:09.042");
    EXPECT_EQ(static_cast<Milliseconds>(s_sampleTime).time_since_epoch(), moment.time_since_epoch());
    RandomTimes times;
    for (int i = 0; i < 5000; ++i) {
        ZTime time = times.next();
        time.Day(static_cast<unsigned char>(1 + time.Day() % 28)); // a day that exists
        ASSERT_EQ(bytesOf(ZTime(static_cast<Milliseconds>(time))), bytesOf(time));
    }
}

TEST(ZTimeTest, SystemTimesOfOtherPrecisionAreRoundedDown)
{
    using namespace std::chrono;
    EXPECT_EQ(textOf(ZTime(sys_days(year(2000) / 2 / 29))), "2000-02-29T00:00:00.000");
    EXPECT_EQ(textOf(ZTime(sys_seconds(seconds(-1)))), "1969-12-31T23:59:59.000");
    EXPECT_EQ(textOf(ZTime(sys_time<microseconds>(microseconds(-1)))), "1969-12-31T23:59:59.999");
    EXPECT_EQ(textOf(ZTime(sys_time<nanoseconds>(nanoseconds(1'999'999)))), "1970-01-01T00:00:00.001");
    const ZTime before(true);
    const ZTime now(system_clock::now());
    EXPECT_FALSE(now < before);
}

TEST(ZTimeTest, SystemTimesOutsideTheRangeOfYearsYieldTheClearedTime)
{
    using namespace std::chrono;
    EXPECT_TRUE(ZTime(Milliseconds::max()).isCleared());
    EXPECT_TRUE(ZTime(Milliseconds::min()).isCleared());
    EXPECT_TRUE(ZTime(Milliseconds(sys_days(year(3001) / 1 / 1))).isCleared());
    EXPECT_TRUE(ZTime(sys_days(year(1600) / 1 / 1) - milliseconds(1)).isCleared());
    EXPECT_EQ(textOf(ZTime(sys_days(year(3001) / 1 / 1) - milliseconds(1))), "3000-12-31T23:59:59.999");
    EXPECT_EQ(textOf(ZTime(sys_days(year(1600) / 1 / 1))), "1600-01-01T00:00:00.000");
}

// Differences and order

TEST(ZTimeTest, DifferenceIgnoresMilliseconds)
{
    const ZTime day(2024, 2, 28, 1, 2, 3, 999);
    const ZTime next(2024, 2, 29, 1, 2, 3, 0);
    EXPECT_EQ(next - day, 86400);
    EXPECT_EQ(day - next, -86400);
    EXPECT_EQ(day - day, 0);
    EXPECT_EQ(ZTime(3000, 12, 31, 23, 59, 59, 0) - ZTime(1600, 1, 1, 0, 0, 0, 0), 44211311999LL);
}

TEST(ZTimeTest, DifferenceAgreesWithTheCLibrary)
{
    RandomTimes times;
    for (int i = 0; i < 5000; ++i) {
        const ZTime a = times.next();
        const ZTime b = times.next();
        ASSERT_EQ(a - b, utcSecondsOf(a) - utcSecondsOf(b));
    }
}

TEST(ZTimeTest, DifferenceReadsTheClearedTimeAsTheCLibraryDoes)
{
    const ZTime cleared(false);
    EXPECT_EQ(s_sampleTime - cleared, utcSecondsOf(s_sampleTime) - utcSecondsOf(cleared));
}

TEST(ZTimeTest, OrdersLikeThePackedForm)
{
    RandomTimes times;
    for (int i = 0; i < 5000; ++i) {
        const ZTime a = times.next();
        const ZTime b = times.next();
        const auto fields = [](const ZTime& t) {
            return std::array<int, 7>{
                t.Year(), t.Month(), t.Day(), t.Hour(), t.Minute(), t.Second(), t.MilliSeconds()};
        };
        ASSERT_EQ(a < b, fields(a) < fields(b));
        ASSERT_EQ(a > b, fields(a) > fields(b));
        ASSERT_EQ(a == b, fields(a) == fields(b));
        const unsigned long long packed = b;
        ASSERT_EQ(a < packed, a < b);
        ASSERT_EQ(a > packed, a > b);
        ASSERT_EQ(a == packed, a == b);
        ASSERT_EQ(a != packed, a != b);
    }
}

TEST(ZTimeTest, EqualityIgnoresTheWeekday)
{
    TimeBytes bytes = bytesOf(s_sampleTime);
    bytes[6] = 2;
    EXPECT_TRUE(timeOf(bytes) == s_sampleTime);
    EXPECT_FALSE(timeOf(bytes) != s_sampleTime);
}

TEST(ZTimeTest, ComparesWithNumbersAndStrings)
{
    const ZTime time(2024, 3, 5, 7, 8, 9, 0);
    const unsigned int seconds = time;
    EXPECT_TRUE(time == seconds);
    EXPECT_TRUE(time != seconds + 1);
    EXPECT_TRUE(time < seconds + 1);
    EXPECT_TRUE(time > seconds - 1);
    EXPECT_TRUE(s_sampleTime == seconds); // without milliseconds
    const std::uint64_t packed = time;
    EXPECT_TRUE(time == packed);
    EXPECT_TRUE(time < packed + 1);
    EXPECT_TRUE(time > packed - 1);
    EXPECT_TRUE(time == "2024-03-05T07:08:09");
    EXPECT_TRUE(time != "2024-03-05T07:08:10");
    EXPECT_TRUE(time < "2024-03-05T07:08:10");
    EXPECT_TRUE(time > "2024-03-05T07:08:08");
    EXPECT_TRUE(time == L"2024-03-05T07:08:09");
    EXPECT_TRUE(time != L"2024-03-05T07:08:10");
    EXPECT_TRUE(time < L"2024-03-05T07:08:10");
    EXPECT_TRUE(time > L"2024-03-05T07:08:08");
    EXPECT_TRUE(s_sampleTime > "2024-03-05T07:08:09");
}

TEST(ZTimeTest, StringThatIsNotATimeComparesAsTheClearedTime)
{
    for (const char* text : {"", "now", "2024-03-05 07:08:09"}) {
        EXPECT_TRUE(ZTime(false) == text) << text;
        EXPECT_TRUE(s_sampleTime > text) << text;
    }
    EXPECT_TRUE(ZTime(false) == static_cast<const char*>(nullptr));
    EXPECT_TRUE(ZTime(false) == static_cast<const wchar_t*>(nullptr));
}

} // namespace
} // namespace ZSpace::Testing
