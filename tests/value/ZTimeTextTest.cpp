// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/AllocationFaults.h"
#include "tests/value/Times.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iomanip>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

namespace ZSpace::Testing {
namespace {

static_assert(std::is_same_v<decltype(ZTime(false).toCString()), ZMStr<char>>);
static_assert(std::is_same_v<decltype(ZTime(false).toWStringEx()), ZMStr<wchar_t>>);

// Text forms

TEST(ZTimeTextTest, TextForms)
{
    EXPECT_STREQ(s_sampleTime.toCString(), "2024-03-05T07:08:09");
    EXPECT_STREQ(s_sampleTime.toCStringEx(), "2024-03-05T07:08:09.042");
    EXPECT_STREQ(s_sampleTime.toWString(), L"2024-03-05T07:08:09");
    EXPECT_STREQ(s_sampleTime.toWStringEx(), L"2024-03-05T07:08:09.042");
    const ZGStr<char> narrow = s_sampleTime;
    const ZGStr<wchar_t> wide = s_sampleTime;
    EXPECT_STREQ(narrow, "2024-03-05T07:08:09");
    EXPECT_STREQ(wide, L"2024-03-05T07:08:09");
}

TEST(ZTimeTextTest, TextFormsHaveAnInitialCapacityOf24Characters)
{
    EXPECT_EQ(s_sampleTime.toCString().Capacity(), 25);
    EXPECT_EQ(s_sampleTime.toWString().Capacity(), 25);
    EXPECT_EQ(s_sampleTime.toCStringEx().Capacity(), 25);
    EXPECT_EQ(s_sampleTime.toWStringEx().Capacity(), 25);
}

TEST(ZTimeTextTest, NumbersWiderThanTheirFieldAreNotTruncated)
{
    const TimeBytes widest{0xFF, 0xFF, 255, 254, 253, 252, 251, 250, 0xFF, 0xFF};
    EXPECT_EQ(textOf(timeOf(widest)), "65535-250-252T253:254:255.65535");
    EXPECT_LE(textOf(timeOf(widest)).size(), static_cast<std::size_t>(ZTime::s_textCapacity));
    const TimeBytes narrowest{7, 0, 1, 2, 3, 4, 5, 6, 8, 0};
    EXPECT_EQ(textOf(timeOf(narrowest)), "0008-06-04T03:02:01.007");
}

TEST(ZTimeTextTest, OneWideNumberLeavesTheOthersPadded)
{
    TimeBytes bytes{7, 0, 1, 2, 3, 4, 5, 6, 8, 0};
    for (const std::size_t field : {2U, 3U, 4U, 5U, 7U}) {
        TimeBytes changed(bytes);
        changed[field] = 100;
        std::string expected = "0008-06-04T03:02:01.007";
        const std::string digits = std::to_string(bytes[field]).insert(0, 1, '0');
        expected.replace(expected.find(digits, 4), 2, "100");
        EXPECT_EQ(textOf(timeOf(changed)), expected);
        changed[field] = 99;
        expected.replace(expected.find("100"), 3, "99");
        EXPECT_EQ(textOf(timeOf(changed)), expected);
    }
    bytes[8] = 10000 & 0xFF;
    bytes[9] = 10000 >> 8;
    EXPECT_EQ(textOf(timeOf(bytes)), "10000-06-04T03:02:01.007");
    bytes[8] = 9999 & 0xFF;
    EXPECT_EQ(textOf(timeOf(bytes)), "9999-06-04T03:02:01.007");
    bytes[1] = 1000 >> 8;
    bytes[0] = 1000 & 0xFF;
    EXPECT_EQ(textOf(timeOf(bytes)), "9999-06-04T03:02:01.1000");
}

TEST(ZTimeTextTest, EveryMillisecondHasThreeDigits)
{
    for (unsigned short milliseconds = 0; milliseconds < 1000; ++milliseconds) {
        const std::string digits = std::to_string(1000 + milliseconds).substr(1);
        ASSERT_EQ(textOf(ZTime(2024, 3, 5, 7, 8, 9, milliseconds)), "2024-03-05T07:08:09." + digits);
    }
}

TEST(ZTimeTextTest, TextFormsAllocateOnlyTheirResult)
{
    const auto countOf = [](auto make) {
        const long before = allocationsMade();
        make();
        return allocationsMade() - before;
    };
    EXPECT_EQ(countOf([] { return s_sampleTime.toCString(); }), 1);
    EXPECT_EQ(countOf([] { return s_sampleTime.toCStringEx(); }), 1);
    EXPECT_EQ(countOf([] { return s_sampleTime.toWString(); }), 1);
    EXPECT_EQ(countOf([] { return s_sampleTime.toWStringEx(); }), 1);
    EXPECT_EQ(countOf([] { return ZGStr<char>(s_sampleTime); }), 1);
    EXPECT_EQ(countOf([] { return ZGStr<wchar_t>(s_sampleTime); }), 1);
    EXPECT_EQ(countOf([] {
        char text[ZTime::s_textCapacity];
        return s_sampleTime.writeTextEx(text);
    }),
        0);
    EXPECT_EQ(countOf([] { return ZTime("2024-03-05T07:08:09"); }), 0);
    EXPECT_EQ(countOf([] { return ZTime(true); }), 0);
}

TEST(ZTimeTextTest, WritesToABufferOfTheCaller)
{
    char narrow[ZTime::s_textCapacity];
    EXPECT_EQ(std::string_view(narrow, static_cast<std::size_t>(s_sampleTime.writeText(narrow))),
        "2024-03-05T07:08:09");
    EXPECT_EQ(std::string_view(narrow, static_cast<std::size_t>(s_sampleTime.writeTextEx(narrow))),
        "2024-03-05T07:08:09.042");
    wchar_t wide[ZTime::s_textCapacity];
    EXPECT_EQ(std::wstring_view(wide, static_cast<std::size_t>(s_sampleTime.writeText(wide))),
        L"2024-03-05T07:08:09");
    EXPECT_EQ(std::wstring_view(wide, static_cast<std::size_t>(s_sampleTime.writeTextEx(wide))),
        L"2024-03-05T07:08:09.042");
}

TEST(ZTimeTextTest, FailedAllocationThrows)
{
    EXPECT_EQ(failEachAllocation([] { std::ignore = s_sampleTime.toCStringEx(); }), 1);
    EXPECT_EQ(failEachAllocation([] { std::ignore = ZGStr<wchar_t>(s_sampleTime); }), 1);
}

// Parsing

TEST(ZTimeTextTest, ParsesItsOwnTextOverTheWholeRange)
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

TEST(ZTimeTextTest, ParsingClearsTheMillisecondsAndKeepsTheWeekday)
{
    TimeBytes bytes{};
    bytes[0] = 200;
    bytes[6] = 4;
    ZTime time = timeOf(bytes);
    EXPECT_EQ(&(time = "2024-03-05T07:08:09"), &time);
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
    EXPECT_EQ(bytesOf(time)[6], 4);
}

TEST(ZTimeTextTest, EveryStringTypeCanBeAssigned)
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
    time = s_sampleTime.toCString();
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
    time.clear();
    time = s_sampleTime.toWString();
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
}

TEST(ZTimeTextTest, EveryStringTypeCanBeConvertedAndCompared)
{
    const ZTime time(s_sampleTime.toCString());
    EXPECT_EQ(textOf(time), "2024-03-05T07:08:09.000");
    EXPECT_TRUE(time == ZTime(s_sampleTime.toWString()));
    EXPECT_TRUE(time == ZTime(ZGStr<char>(s_sampleTime)));
    EXPECT_TRUE(time == ZTime(ZGStr<wchar_t>(s_sampleTime)));
    EXPECT_TRUE(time == s_sampleTime.toCString());
    EXPECT_TRUE(time == ZGStr<char>(s_sampleTime));
    EXPECT_TRUE(s_sampleTime > s_sampleTime.toCString());
    EXPECT_TRUE(s_sampleTime > ZGStr<wchar_t>(s_sampleTime));
    EXPECT_TRUE(time != ZGStr<char>("2024-03-05T07:08:10"));
    EXPECT_TRUE(time < ZGStr<char>("2024-03-05T07:08:10"));
}

TEST(ZTimeTextTest, StringsThatAreNotTimesHaveNoEffect)
{
    for (const char* text : {"", "T", "2024", "2024-03-05", "2024-03-05 07:08:09", "2024-03-05t07:08:09",
             "2024-03-05T07:08:09T", "T2024-03-05T07:08:09", "2024-03T07:08:09", "2024-03-05-06T07:08:09",
             "2024-03-05T07:08", "2024-03-05T07:08:09:10", "2024/03/05T07:08:09", "-T:", "--T:", "-T::"}) {
        ZTime time(s_sampleTime);
        time = text;
        EXPECT_EQ(bytesOf(time), bytesOf(s_sampleTime)) << text;
        time = ZGStr<wchar_t>(text);
        EXPECT_EQ(bytesOf(time), bytesOf(s_sampleTime)) << text;
        EXPECT_EQ(bytesOf(ZTime(text)), TimeBytes()) << text;
    }
    ZTime time(s_sampleTime);
    time = static_cast<const char*>(nullptr);
    time = static_cast<const wchar_t*>(nullptr);
    time = ZGStr<char>();
    time = ZGStr<wchar_t>();
    EXPECT_EQ(bytesOf(time), bytesOf(s_sampleTime));
    EXPECT_TRUE(ZTime(static_cast<const char*>(nullptr)).isCleared());
    EXPECT_TRUE(ZTime(static_cast<const wchar_t*>(nullptr)).isCleared());
}

TEST(ZTimeTextTest, FieldsAreParsedAsDecimalNumbersAndCorrected)
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

TEST(ZTimeTextTest, AnyCharacterInAnyPlaceIsParsedByTheSameRules)
{
    for (const char* usual : {"2024-03-05T07:08:09", "2020-10-20T10:20:30", "1999-12-31T23:59:59"}) {
        for (std::size_t position = 0; position < 19; ++position) {
            for (int c = 1; c < 256; ++c) {
                std::string text = usual;
                text[position] = static_cast<char>(c);
                // The longer string has the same fields but is parsed by the general code.
                ASSERT_EQ(bytesOf(ZTime(text.c_str())), bytesOf(ZTime((text + 'Z').c_str()))) << text;
            }
        }
    }
}

TEST(ZTimeTextTest, StreamsWriteTheTextForm)
{
    std::ostringstream narrow;
    narrow << s_sampleTime << '|' << std::setw(21) << std::setfill('*') << s_sampleTime;
    EXPECT_EQ(narrow.str(), "2024-03-05T07:08:09|**2024-03-05T07:08:09");
    std::wostringstream wide;
    wide << s_sampleTime;
    EXPECT_EQ(wide.str(), L"2024-03-05T07:08:09");
}

TEST(ZTimeTextTest, WideStringsAreNarrowedBeforeParsing)
{
    // Only the low 8 bits of each code unit count; those of U+0100 end the string.
    EXPECT_EQ(
        textOf(ZTime(L"\x0132\x0230\x0332\x0434-03-05\x0154\x0130\x0137:08:09")), "2024-03-05T07:08:09.000");
    EXPECT_EQ(textOf(ZTime(L"2024-03-05T07:08:0\x0100"
                           L"9:T")),
        "2024-03-05T07:08:00.000");
}

} // namespace
} // namespace ZSpace::Testing
