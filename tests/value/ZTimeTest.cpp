// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZTime.h"

#include "tests/support/AllocationFaults.h"
#include "tests/value/Times.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <sys/time.h>
#include <thread>
#include <type_traits>
#include <vector>

namespace ZSpace {
namespace {

using testing::ElementsAre;
using ZSpace::Testing::allocationsMade;
using ZSpace::Testing::RandomTimes;
using ZSpace::Testing::utcSecondsOf;

static_assert(sizeof(ZTime) == 10 && alignof(ZTime) == 2);
static_assert(std::is_trivially_copyable_v<ZTime>);
static_assert(std::is_same_v<decltype(ZTime(false) - ZTime(false)), long long>);
static_assert(std::is_same_v<decltype(ZTime(false) - 1u), ZTime>);
static_assert(std::is_same_v<decltype(ZTime(false).toCString()), ZMStr<char>>);
static_assert(std::is_same_v<decltype(ZTime(false).toWStringEx()), ZMStr<wchar_t>>);
static_assert(std::is_same_v<decltype(GetSystemTimeMillis()), unsigned long long>);
static_assert(std::is_same_v<decltype(GetTickCount()), unsigned int>);

using Bytes = std::array<unsigned char, 10>;

Bytes bytesOf(const ZTime& time)
{
    Bytes bytes;
    std::memcpy(bytes.data(), &time, bytes.size());
    return bytes;
}

ZTime timeOf(const Bytes& bytes)
{
    ZTime time(false);
    std::memcpy(&time, bytes.data(), bytes.size());
    return time;
}

std::string textOf(const ZTime& time)
{
    return static_cast<const char*>(time.toCStringEx());
}

const ZTime s_sample(2024, 3, 5, 7, 8, 9, 42);
constexpr unsigned long long s_samplePacked =
    2024ULL << 36 | 3ULL << 32 | 5ULL << 27 | 7ULL << 22 | 8ULL << 16 | 9ULL << 10 | 42ULL;

// Layout and construction

TEST(ZTimeTest, FieldsLieInTenBytesFromMillisecondsToYear)
{
    EXPECT_THAT(bytesOf(ZTime(2024, 3, 5, 7, 8, 9, 777)),
        ElementsAre(777 & 0xFF, 777 >> 8, 9, 8, 7, 5, 0, 3, 2024 & 0xFF, 2024 >> 8));
}

TEST(ZTimeTest, ClearedTimeHasAllFieldsZero)
{
    EXPECT_EQ(bytesOf(ZTime(false)), Bytes());
    EXPECT_EQ(bytesOf(ZTime()), Bytes());
    ZTime time(true);
    EXPECT_FALSE(time.isCleared());
    time.clear();
    EXPECT_EQ(bytesOf(time), Bytes());
    EXPECT_TRUE(time.isCleared());
    EXPECT_EQ(textOf(time), "0000-00-00T00:00:00.000");
}

TEST(ZTimeTest, WeekdayDoesNotCountForTheClearedTest)
{
    for (std::size_t i = 0; i < Bytes().size(); ++i) {
        Bytes bytes{};
        bytes[i] = 1;
        EXPECT_EQ(timeOf(bytes).isCleared(), i == 6) << "byte " << i;
    }
}

TEST(ZTimeTest, GettersGiveTheFields)
{
    EXPECT_EQ(s_sample.Year(), 2024);
    EXPECT_EQ(s_sample.Month(), 3);
    EXPECT_EQ(s_sample.Day(), 5);
    EXPECT_EQ(s_sample.Hour(), 7);
    EXPECT_EQ(s_sample.Minute(), 8);
    EXPECT_EQ(s_sample.Second(), 9);
    EXPECT_EQ(s_sample.MilliSeconds(), 42);
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

TEST(ZTimeTest, SetDateAndSetTimeLeaveTheOtherFieldsAlone)
{
    ZTime time(s_sample);
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

TEST(ZTimeTest, SettersStoreAndGiveTheCorrectedNumber)
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
    time = s_sample;
    EXPECT_EQ(time.MilliSeconds(1500), 0);
    EXPECT_EQ(time.MilliSeconds(), 0);
}

// The packed form

TEST(ZTimeTest, PacksFieldsIntoTheirPlaces)
{
    EXPECT_EQ(static_cast<unsigned long long>(s_sample), s_samplePacked);
    const std::uint64_t asWord = s_sample;
    EXPECT_EQ(asWord, s_samplePacked);
    EXPECT_EQ(static_cast<unsigned long long>(ZTime(false)), 0u);
    Bytes withWeekday = bytesOf(s_sample);
    withWeekday[6] = 6;
    EXPECT_EQ(static_cast<unsigned long long>(timeOf(withWeekday)), s_samplePacked);
}

TEST(ZTimeTest, PackingAndUnpackingGiveTheSameTime)
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

TEST(ZTimeTest, AssigningAPackedFormLeavesTheWeekdayAlone)
{
    Bytes bytes{};
    bytes[6] = 5;
    ZTime time = timeOf(bytes);
    EXPECT_EQ(&(time = s_samplePacked), &time);
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.042");
    EXPECT_EQ(bytesOf(time)[6], 5);
    time = std::uint64_t{s_samplePacked} + 1;
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.043");
    EXPECT_EQ(ZTime(std::uint64_t{s_samplePacked}), s_sample);
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

TEST(ZTimeTest, AssigningSecondsClearsTheMillisecondsAndLeavesTheWeekdayAlone)
{
    Bytes bytes{};
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

// Differences and order

TEST(ZTimeTest, DifferenceIsWholeSecondsWhateverTheMilliseconds)
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
    EXPECT_EQ(s_sample - cleared, utcSecondsOf(s_sample) - utcSecondsOf(cleared));
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

TEST(ZTimeTest, WeekdayTakesNoPartInEquality)
{
    Bytes bytes = bytesOf(s_sample);
    bytes[6] = 2;
    EXPECT_TRUE(timeOf(bytes) == s_sample);
    EXPECT_FALSE(timeOf(bytes) != s_sample);
}

TEST(ZTimeTest, ComparesWithNumbersAndTexts)
{
    const ZTime time(2024, 3, 5, 7, 8, 9, 0);
    const unsigned int seconds = time;
    EXPECT_TRUE(time == seconds);
    EXPECT_TRUE(time != seconds + 1);
    EXPECT_TRUE(time < seconds + 1);
    EXPECT_TRUE(time > seconds - 1);
    EXPECT_TRUE(s_sample == seconds); // milliseconds do not count among seconds
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
    EXPECT_TRUE(s_sample > "2024-03-05T07:08:09");
}

TEST(ZTimeTest, TextThatIsNoTimeComparesAsTheClearedTime)
{
    for (const char* text : {"", "now", "2024-03-05 07:08:09"}) {
        EXPECT_TRUE(ZTime(false) == text) << text;
        EXPECT_TRUE(s_sample > text) << text;
    }
    EXPECT_TRUE(ZTime(false) == static_cast<const char*>(nullptr));
    EXPECT_TRUE(ZTime(false) == static_cast<const wchar_t*>(nullptr));
}

// Text

TEST(ZTimeTest, TextForms)
{
    EXPECT_STREQ(s_sample.toCString(), "2024-03-05T07:08:09");
    EXPECT_STREQ(s_sample.toCStringEx(), "2024-03-05T07:08:09.042");
    EXPECT_STREQ(s_sample.toWString(), L"2024-03-05T07:08:09");
    EXPECT_STREQ(s_sample.toWStringEx(), L"2024-03-05T07:08:09.042");
    const ZGStr<char> narrow = s_sample;
    const ZGStr<wchar_t> wide = s_sample;
    EXPECT_STREQ(narrow, "2024-03-05T07:08:09");
    EXPECT_STREQ(wide, L"2024-03-05T07:08:09");
}

TEST(ZTimeTest, TextFormsHaveRoomForTwentyFourCharactersAtFirst)
{
    EXPECT_EQ(s_sample.toCString().Capacity(), 25);
    EXPECT_EQ(s_sample.toWString().Capacity(), 25);
    EXPECT_EQ(s_sample.toCStringEx().Capacity(), 25);
    EXPECT_EQ(s_sample.toWStringEx().Capacity(), 25);
}

TEST(ZTimeTest, NumbersWiderThanTheirPlaceArePrintedWhole)
{
    const Bytes widest{0xFF, 0xFF, 255, 254, 253, 252, 251, 250, 0xFF, 0xFF};
    EXPECT_EQ(textOf(timeOf(widest)), "65535-250-252T253:254:255.65535");
    EXPECT_LE(textOf(timeOf(widest)).size(), static_cast<std::size_t>(ZTime::s_textRoom));
    const Bytes narrowest{7, 0, 1, 2, 3, 4, 5, 6, 8, 0};
    EXPECT_EQ(textOf(timeOf(narrowest)), "0008-06-04T03:02:01.007");
}

TEST(ZTimeTest, TextTakesNoAllocationBeyondItsResult)
{
    const auto countOf = [](auto make) {
        const long before = allocationsMade();
        make();
        return allocationsMade() - before;
    };
    EXPECT_EQ(countOf([] { return s_sample.toCString(); }), 1);
    EXPECT_EQ(countOf([] { return s_sample.toCStringEx(); }), 1);
    EXPECT_EQ(countOf([] { return s_sample.toWString(); }), 1);
    EXPECT_EQ(countOf([] { return s_sample.toWStringEx(); }), 1);
    EXPECT_EQ(countOf([] { return ZGStr<char>(s_sample); }), 1);
    EXPECT_EQ(countOf([] { return ZGStr<wchar_t>(s_sample); }), 1);
    EXPECT_EQ(countOf([] {
        char text[ZTime::s_textRoom];
        return s_sample.writeTextEx(text);
    }),
        0);
    EXPECT_EQ(countOf([] { return ZTime("2024-03-05T07:08:09"); }), 0);
    EXPECT_EQ(countOf([] { return ZTime(true); }), 0);
}

TEST(ZTimeTest, WritesTextIntoAnArrayOfTheCaller)
{
    char narrow[ZTime::s_textRoom];
    EXPECT_EQ(std::string_view(narrow, static_cast<std::size_t>(s_sample.writeText(narrow))),
        "2024-03-05T07:08:09");
    EXPECT_EQ(std::string_view(narrow, static_cast<std::size_t>(s_sample.writeTextEx(narrow))),
        "2024-03-05T07:08:09.042");
    wchar_t wide[ZTime::s_textRoom];
    EXPECT_EQ(
        std::wstring_view(wide, static_cast<std::size_t>(s_sample.writeText(wide))), L"2024-03-05T07:08:09");
    EXPECT_EQ(std::wstring_view(wide, static_cast<std::size_t>(s_sample.writeTextEx(wide))),
        L"2024-03-05T07:08:09.042");
}

TEST(ZTimeTest, FailedAllocationOfATextPassesOn)
{
    EXPECT_EQ(ZSpace::Testing::failEachAllocation([] { std::ignore = s_sample.toCStringEx(); }), 1);
    EXPECT_EQ(ZSpace::Testing::failEachAllocation([] { std::ignore = ZGStr<wchar_t>(s_sample); }), 1);
}

// Parsing

TEST(ZTimeTest, ParsesItsOwnTextOverTheWholeRange)
{
    RandomTimes times;
    for (int i = 0; i < 5000; ++i) {
        ZTime time = times.next();
        time.MilliSeconds(0);
        ASSERT_EQ(bytesOf(ZTime(static_cast<const char*>(time.toCString()))), bytesOf(time));
        ASSERT_EQ(bytesOf(ZTime(static_cast<const wchar_t*>(time.toWString()))), bytesOf(time));
        ASSERT_EQ(bytesOf(ZTime(static_cast<const char*>(time.toCStringEx()))), bytesOf(time));
    }
}

TEST(ZTimeTest, ParsingSetsMillisecondsToZeroAndLeavesTheWeekdayAlone)
{
    Bytes bytes{};
    bytes[0] = 200;
    bytes[6] = 4;
    ZTime time = timeOf(bytes);
    EXPECT_EQ(&(time = "2024-03-05T07:08:09"), &time);
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
    EXPECT_EQ(bytesOf(time)[6], 4);
}

TEST(ZTimeTest, EveryKindOfTextCanBeAssigned)
{
    ZTime time(false);
    time = L"2001-02-03T04:05:06";
    EXPECT_EQ(textOf(time), "2001-02-03T04:05:06.000");
    time = ZGStr<char>("2002-02-03T04:05:06");
    EXPECT_EQ(textOf(time), "2002-02-03T04:05:06.000");
    time = ZGStr<wchar_t>(L"2003-02-03T04:05:06");
    EXPECT_EQ(textOf(time), "2003-02-03T04:05:06.000");
    ZGStr<char> changeable("2004-02-03T04:05:06");
    EXPECT_EQ(&(time = changeable), &time);
    EXPECT_EQ(textOf(time), "2004-02-03T04:05:06.000");
    time = s_sample.toCString();
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
    time.clear();
    time = s_sample.toWString();
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
}

TEST(ZTimeTest, EveryKindOfTextCanBeTakenAndComparedWith)
{
    const ZTime time(s_sample.toCString());
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
    EXPECT_TRUE(time == ZTime(s_sample.toWString()));
    EXPECT_TRUE(time == ZTime(ZGStr<char>(s_sample)));
    EXPECT_TRUE(time == ZTime(ZGStr<wchar_t>(s_sample)));
    EXPECT_TRUE(time == s_sample.toCString());
    EXPECT_TRUE(time == ZGStr<char>(s_sample));
    EXPECT_TRUE(s_sample > s_sample.toCString());
    EXPECT_TRUE(s_sample > ZGStr<wchar_t>(s_sample));
    EXPECT_TRUE(time != ZGStr<char>("2024-03-05T07:08:10"));
    EXPECT_TRUE(time < ZGStr<char>("2024-03-05T07:08:10"));
}

TEST(ZTimeTest, TextsThatAreNoTimesChangeNothing)
{
    for (const char* text : {"", "T", "2024", "2024-03-05", "2024-03-05 07:08:09", "2024-03-05t07:08:09",
             "2024-03-05T07:08:09T", "T2024-03-05T07:08:09", "2024-03T07:08:09", "2024-03-05-06T07:08:09",
             "2024-03-05T07:08", "2024-03-05T07:08:09:10", "2024/03/05T07:08:09", "-T:", "--T:", "-T::"}) {
        ZTime time(s_sample);
        time = text;
        EXPECT_EQ(bytesOf(time), bytesOf(s_sample)) << text;
        time = ZGStr<wchar_t>(text);
        EXPECT_EQ(bytesOf(time), bytesOf(s_sample)) << text;
        EXPECT_EQ(bytesOf(ZTime(text)), Bytes()) << text;
    }
    ZTime time(s_sample);
    time = static_cast<const char*>(nullptr);
    time = static_cast<const wchar_t*>(nullptr);
    time = ZGStr<char>();
    time = ZGStr<wchar_t>();
    EXPECT_EQ(bytesOf(time), bytesOf(s_sample));
    EXPECT_TRUE(ZTime(static_cast<const char*>(nullptr)).isCleared());
    EXPECT_TRUE(ZTime(static_cast<const wchar_t*>(nullptr)).isCleared());
}

TEST(ZTimeTest, PiecesAreReadLikeDecimalNumbersAndThenCorrected)
{
    const std::pair<const char*, const char*> table[]{
        {"--T::", "1970-01-01T00:00:00.000"},
        {"2024-3-5T7:8:9", "2024-03-05T07:08:09.000"},
        {"2024-03-05T07:08:09.042", "2024-03-05T07:08:09.000"},
        {"2024-03-05T07:08:09Z", "2024-03-05T07:08:09.000"},
        {" 2024-03-05T07:08:09", "1970-03-05T07:08:09.000"},
        {"3001-13-32T24:60:60", "1970-01-01T00:00:00.000"},
        {"67560-03-05T07:08:09", "2024-03-05T07:08:09.000"}, // 67560 is 2024 in 16 bits
        {"2024-259-261T263:264:265", "2024-03-05T07:08:09.000"}, // 8 bits each
        {"2024-0x3-05T07:08:09", "2024-01-05T07:08:09.000"},
        {"abcd-ef-ghTij:kl:mn", "1970-01-01T00:00:00.000"},
        {"1600-12-31T23:59:59", "1600-12-31T23:59:59.000"},
    };
    for (const auto& [text, stored] : table) {
        EXPECT_EQ(textOf(ZTime(text)), stored) << text;
        EXPECT_EQ(textOf(ZTime(static_cast<const wchar_t*>(ZGStr<wchar_t>(text)))), stored) << text;
    }
}

TEST(ZTimeTest, WideTextIsNarrowedBeforeItIsParsed)
{
    // The low 8 bits of each unit are the separators and digits; of a unit like U+0100 they end the text.
    EXPECT_EQ(
        textOf(ZTime(L"\x0132\x0230\x0332\x0434-03-05\x0154\x0130\x0137:08:09")), "2024-03-05T07:08:09.000");
    EXPECT_EQ(textOf(ZTime(L"2024-03-05T07:08:0\x0100"
                           L"9:T")),
        "2024-03-05T07:08:00.000");
}

// The clock

TEST(ZTimeTest, NowIsTheClockInUtc)
{
    timeval before{};
    timeval after{};
    gettimeofday(&before, nullptr);
    const ZTime now(true);
    gettimeofday(&after, nullptr);
    const auto millis = [](const timeval& t) { return t.tv_sec * 1000LL + t.tv_usec / 1000; };
    const long long seen = utcSecondsOf(now) * 1000 + now.MilliSeconds();
    EXPECT_GE(seen, millis(before));
    EXPECT_LE(seen, millis(after));
}

TEST(ZTimeTest, NowSetsTheWeekday)
{
    const ZTime now(true);
    const std::time_t seconds = utcSecondsOf(now);
    std::tm record{};
    gmtime_r(&seconds, &record);
    EXPECT_EQ(bytesOf(now)[6], record.tm_wday);
}

TEST(ZTimeTest, ThreadsTakeTheTimeSideBySide)
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
        if (before <= after) { // the count has not wrapped meanwhile
            ASSERT_GE(ticks, before);
            ASSERT_LE(ticks, after);
        }
    }
}

TEST(FillTmTest, SetsTheFieldsAndClearsTheRest)
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
} // namespace ZSpace
