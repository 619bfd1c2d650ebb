// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Records as JSON objects: each kind of value, escapes, and bytes that are not UTF-8.

#include "ZSpace/log/ZLogBookJson.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/value/TZBinary.h"
#include "tests/log/ReportFile.h"
#include "tests/support/AllocationFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <thread>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::MatchesRegex;

class ZLogBookJsonTest : public ReportFile {
protected:
    /// The array of values of a record.
    std::string valuesOf(const ZLogRecord& record) const
    {
        fs::remove(m_path);
        ZLogBookJson(widened(m_path).c_str()).add(record);
        const std::string line = content();
        const std::size_t begin = line.find("\"values\":[") + 10;
        EXPECT_TRUE(line.ends_with("]}\n")) << line;
        return line.substr(begin, line.size() - begin - 3);
    }
};

TEST_F(ZLogBookJsonTest, ARecordIsAnObjectOnALine)
{
    ZLogBookJson book(widened(m_path).c_str());
    book.add(ZLogRecord() << ZLogLevel::Warning << "disk almost full" << 97);
    book.add(ZLogRecord());
    book.add(ZLogRecord() << ZLogLevel::Debug);
    const std::string start = "\\{\"time\":\"" + s_time + "Z\",\"thread\":\"[0-9a-f]+\"";
    EXPECT_THAT(content(),
        MatchesRegex(start + ",\"level\":\"WARNING\",\"values\":\\[\"disk almost full\",97\\]\\}\n" + start
            + ",\"values\":\\[\\]\\}\n" + start + ",\"level\":\"DEBUG\",\"values\":\\[\\]\\}\n"));
}

TEST_F(ZLogBookJsonTest, HasNoSessionLog)
{
    ZGStr<wchar_t> out(L"kept");
    EXPECT_FALSE(ZLogBookJson(widened(m_path).c_str()).getSessionTransferLog(out));
    EXPECT_TRUE(out == L"kept");
}

TEST_F(ZLogBookJsonTest, NumbersAndBooleansAreTyped)
{
    EXPECT_EQ(valuesOf(ZLogRecord() << true << false << static_cast<signed char>(-1)
                                    << static_cast<unsigned char>(255) << static_cast<short>(-2)
                                    << static_cast<unsigned short>(65535) << -3 << 4294967295U
                                    << std::numeric_limits<long long>::min()
                                    << std::numeric_limits<unsigned long long>::max()),
        "true,false,-1,255,-2,65535,-3,4294967295,-9223372036854775808,18446744073709551615");
    EXPECT_EQ(valuesOf(ZLogRecord() << 2.5 << -0.25F << 1e300 << 1.0), "2.5,-0.25,1.0000000000000001e+300,1");
    EXPECT_EQ(valuesOf(ZLogRecord() << std::numeric_limits<double>::infinity()
                                    << std::numeric_limits<float>::quiet_NaN()),
        "null,null");
}

TEST_F(ZLogBookJsonTest, TextsAreEscapedStrings)
{
    EXPECT_EQ(valuesOf(ZLogRecord() << "a\"b\\c/"
                                    << "\t\n\x01\x7F" << 'x' << L'\u00E9' << ZGStr<char>("s")
                                    << ZGStr<wchar_t>(L"w\u20AC") << ZGStr<char>() << ""),
        "\"a\\\"b\\\\c/\",\"\\u0009\\u000a\\u0001\\u007f\",\"x\",\"\xC3\xA9\",\"s\",\"w\xE2\x82\xAC\",\"\",\"\"");
    EXPECT_EQ(
        valuesOf(ZLogRecord() << static_cast<const char*>(nullptr) << static_cast<const wchar_t*>(nullptr)),
        "null,null");
}

TEST_F(ZLogBookJsonTest, ValidUtf8IsKeptAndTheRestReplaced)
{
    const std::string bad = "\xEF\xBF\xBD"; // U+FFFD
    EXPECT_EQ(valuesOf(ZLogRecord() << "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80"),
        "\"\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\"");
    EXPECT_EQ(valuesOf(ZLogRecord() << "caf\xE9"
                                    << "\xC3"
                                    << "\xE2\x82"
                                    << "\x80x"),
        "\"caf" + bad + "\",\"" + bad + "\",\"" + bad + bad + "\",\"" + bad + "x\"");
    EXPECT_EQ(valuesOf(ZLogRecord() << "\xC0\xAF"
                                    << "\xED\xA0\x80"
                                    << "\xF4\x90\x80\x80"),
        "\"" + bad + bad + "\",\"" + bad + bad + bad + "\",\"" + bad + bad + bad + bad + "\"");
    const wchar_t wide[]{
        static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0x1F600), 0};
    EXPECT_EQ(
        valuesOf(ZLogRecord() << static_cast<const wchar_t*>(wide)), "\"" + bad + bad + "\xF0\x9F\x98\x80\"");
}

TEST_F(ZLogBookJsonTest, OtherKindsAreStringsOrNull)
{
    unsigned char bytes[]{'M', 'a', 'n', 0xFF, 'x'};
    const auto binary = [&](long long length) {
        return TZValueBase<ZTypeId>(std::in_place, TZBinary<unsigned char>(bytes, length, false));
    };
    EXPECT_EQ(valuesOf(ZLogRecord() << ZTime(2024, 3, 5, 7, 8, 9, 42) << ZGUID() << binary(0) << binary(1)
                                    << binary(2) << binary(3) << binary(5) << TZValueBase<ZTypeId>()),
        "\"2024-03-05T07:08:09\",\"{00000000-0000-0000-0000-000000000000}\",\"\",\"TQ==\",\"TWE=\",\"TWFu\",\"TWFu/3g=\","
        "null");
    TZValueBase<ZTypeId> named(std::in_place, 5);
    named.Name(ZGStr<char>("a\"b"));
    EXPECT_EQ(valuesOf(ZLogRecord() << named), "{\"a\\\"b\":5}");
}

TEST_F(ZLogBookJsonTest, ThrowsIfItCannotBeOpenedOrAllocated)
{
    EXPECT_THROW(ZLogBookJson(widened(m_folder.path()).c_str()), ZException);
    ZLogBookJson book(widened(m_path).c_str());
    const std::string text(5000, '\n');
    ZLogRecord record;
    record << text.c_str();
    EXPECT_GT(failEachAllocation([&] { book.add(record); }), 0);
    EXPECT_EQ(linesOf(content()).size(), 1U);
}

TEST_F(ZLogBookJsonTest, LinesOfManyThreadsAreWhole)
{
    ZLogBookJson book(widened(m_path).c_str());
    std::vector<std::thread> threads;
    for (int t = 0; t < 3; ++t) {
        threads.emplace_back([&book] {
            for (int i = 0; i < 200; ++i)
                book.add(ZLogRecord() << "line" << 5);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::vector<std::string> lines = linesOf(content());
    EXPECT_EQ(lines.size(), 600U);
    for (const std::string& line : lines)
        EXPECT_TRUE(line.starts_with("{\"time\":\"") && line.ends_with("\"values\":[\"line\",5]}")) << line;
}

} // namespace
} // namespace ZSpace::Testing
