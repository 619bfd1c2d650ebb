// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Lines of ZLogBookJson as other programs' parsers read them.

#include "ZSpace/log/ZLogBookJson.h"
#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/value/TZBinary.h"
#include "tests/log/ReportFile.h"
#include "tests/support/ChildProcess.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <fcntl.h>
#include <limits>
#include <random>
#include <string>
#include <unistd.h>

#if __has_include(<nlohmann/json.hpp>)
#include <nlohmann/json.hpp>
#endif

namespace ZSpace::Testing {
namespace {

constexpr int s_notFound = 127;

class JsonParsersTest : public ReportFile {
protected:
    JsonParsersTest()
    {
        ZLogBookJson book(widened(m_path).c_str());
        addEveryKind(book);
        addEveryByte(book);
        addRandomBytes(book);
    }

    /// Runs a program without a shell. It reads the lines from its standard input.
    [[nodiscard]] Outcome run(const char* program, const char* argument, const char* script) const
    {
        return runInChild([&] {
            const int lines = open(m_path.c_str(), O_RDONLY | O_CLOEXEC);
            dup2(lines, STDIN_FILENO);
            execlp(program, program, argument, script, static_cast<char*>(nullptr));
            return s_notFound;
        });
    }

    static constexpr int s_randomCount = 500;
    static constexpr std::size_t s_lineCount = 3 + 255 + s_randomCount;

private:
    static void addEveryKind(ZLogBook& book)
    {
        unsigned char bytes[]{'M', 'a', 'n', 0xFF};
        TZValueBase<ZTypeId> named(std::in_place, 5);
        named.Name(ZGStr<char>("a\"b"));
        book.add(ZLogRecord() << ZLogLevel::Warning << true << static_cast<signed char>(-1)
                              << static_cast<unsigned short>(65535) << -3 << 2.5 << -0.25F << 'c' << L'\u00E9'
                              << "text" << ZGStr<wchar_t>(L"w\u20AC") << ZTime(2024, 3, 5, 7, 8, 9, 42)
                              << ZGUID()
                              << TZValueBase<ZTypeId>(std::in_place, TZBinary<unsigned char>(bytes, 4, false))
                              << TZValueBase<ZTypeId>() << static_cast<const char*>(nullptr) << named);
        book.add(ZLogRecord() << std::numeric_limits<long long>::min()
                              << std::numeric_limits<unsigned long long>::max()
                              << std::numeric_limits<double>::max() << std::numeric_limits<double>::min()
                              << std::numeric_limits<float>::quiet_NaN());
        book.add(ZLogRecord());
    }

    static void addEveryByte(ZLogBook& book)
    {
        for (int byte = 1; byte < 256; ++byte) {
            const char text[]{'<', static_cast<char>(byte), '>', 0};
            book.add(ZLogRecord() << text << static_cast<char>(byte));
        }
    }

    static void addRandomBytes(ZLogBook& book)
    {
        std::mt19937 random(1);
        for (int i = 0; i < s_randomCount; ++i) {
            std::string text(random() % 60, ' ');
            std::wstring wide(random() % 20, L' ');
            for (char& c : text)
                c = static_cast<char>(1 + random() % 255);
            for (wchar_t& c : wide)
                c = static_cast<wchar_t>(1 + random() % 0x120000);
            book.add(ZLogRecord() << text.c_str() << wide.c_str());
        }
    }
};

TEST_F(JsonParsersTest, JqReadsTheValuesThatWereWritten)
{
    const Outcome outcome = run("jq", "-c", R"(select(.level == "WARNING") | .values)");
    if (outcome.status == s_notFound)
        GTEST_SKIP() << "jq is not installed";
    EXPECT_EQ(outcome.status, 0) << outcome.standardError;
    EXPECT_EQ(outcome.standardOutput,
        "[true,-1,65535,-3,2.5,-0.25,\"c\",\"\u00E9\",\"text\",\"w\u20AC\",\"2024-03-05T07:08:09\","
        "\"{00000000-0000-0000-0000-000000000000}\",\"TWFu/w==\",null,null,{\"a\\\"b\":5}]\n");
}

TEST_F(JsonParsersTest, JqReadsEveryLine)
{
    const Outcome outcome =
        run("jq", "-c", R"([(.time | length), (.thread | type), (.values | type)] | join(" "))");
    if (outcome.status == s_notFound)
        GTEST_SKIP() << "jq is not installed";
    EXPECT_EQ(outcome.status, 0) << outcome.standardError;
    const std::vector<std::string> lines = linesOf(outcome.standardOutput);
    EXPECT_EQ(lines.size(), s_lineCount);
    for (const std::string& line : lines)
        EXPECT_EQ(line, "\"24 string array\"");
}

// Python's parser reads integers of any size. It is set to reject NaN, duplicate keys and bytes that are not UTF-8.
TEST_F(JsonParsersTest, PythonReadsEveryLineStrictly)
{
    const Outcome outcome = run("python3", "-c", R"(
import datetime, json, sys
def refuse(name):
    raise ValueError(name)
def unique(pairs):
    assert len(dict(pairs)) == len(pairs)
    return dict(pairs)
records = []
for line in sys.stdin.buffer.read().decode("utf-8", "strict").split("\n")[:-1]:
    records.append(json.loads(line, parse_constant=refuse, object_pairs_hook=unique))
    datetime.datetime.strptime(records[-1]["time"], "%Y-%m-%dT%H:%M:%S.%fZ")
    int(records[-1]["thread"], 16)
print(len(records))
print(records[1]["values"])
for byte in range(1, 128):
    assert records[2 + byte]["values"] == ["<" + chr(byte) + ">", chr(byte)], byte
for byte in range(128, 256):
    assert records[2 + byte]["values"] == ["<\ufffd>", "\ufffd"], byte
)");
    if (outcome.status == s_notFound)
        GTEST_SKIP() << "python3 is not installed";
    EXPECT_EQ(outcome.status, 0) << outcome.standardError;
    EXPECT_EQ(outcome.standardOutput,
        std::to_string(s_lineCount)
            + "\n[-9223372036854775808, 18446744073709551615, 1.7976931348623157e+308, "
              "2.2250738585072014e-308, None]\n");
}

TEST_F(JsonParsersTest, AParserOfThisLanguageReadsEveryLine)
{
#if __has_include(<nlohmann/json.hpp>)
    using nlohmann::json;
    std::vector<json> lines;
    for (const std::string& line : linesOf(content()))
        lines.push_back(json::parse(line)); // throws if there is anything that it does not accept
    ASSERT_EQ(lines.size(), s_lineCount);
    for (const json& line : lines) {
        EXPECT_TRUE(
            line.at("time").is_string() && line.at("thread").is_string() && line.at("values").is_array());
    }
    const json& kinds = lines[0].at("values");
    EXPECT_EQ(lines[0].at("level"), "WARNING");
    EXPECT_TRUE(
        kinds.at(0).is_boolean() && kinds.at(1).is_number_integer() && kinds.at(2).is_number_unsigned());
    EXPECT_TRUE(kinds.at(4).is_number_float() && kinds.at(7).is_string() && kinds.at(13).is_null());
    EXPECT_EQ(kinds.at(9), "w\u20AC");
    EXPECT_EQ(kinds.at(15), json({{"a\"b", 5}}));
    const json& limits = lines[1].at("values");
    EXPECT_EQ(limits.at(0), std::numeric_limits<long long>::min());
    EXPECT_EQ(limits.at(1), std::numeric_limits<unsigned long long>::max());
    EXPECT_EQ(limits.at(2), std::numeric_limits<double>::max());
    EXPECT_EQ(limits.at(3), std::numeric_limits<double>::min());
#else
    GTEST_SKIP() << "nlohmann-json is not installed";
#endif
}

} // namespace
} // namespace ZSpace::Testing
