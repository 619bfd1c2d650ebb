// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Conversions of strings without a UTF-8 form, and of bytes that are not UTF-8.

#include "ZSpace/platform/foundation/Utf8Foundation.h"

#include "ZSpace/platform/Foundation.h"
#include "tests/platform/Formatting.h"

#include <gtest/gtest.h>

#include <string>

namespace ZSpace::Testing {
namespace {

using Host::repairedUtf8;

NS::String listed(const char* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    NS::String string = NS::String::stringWithFormat(NS::String(pattern).native(), arguments);
    va_end(arguments);
    return string;
}

NS::String loneSurrogate()
{
    return listed("%C", 0xD83D);
}

TEST(Utf8Foundation, WellFormedBytesStayAsTheyAre)
{
    for (const char* text : {"", "plain", "\x01\x7F", "\xC2\x80 \xC3\xA9 \xDF\xBF",
             "\xE0\xA0\x80 \xED\x9F\xBF \xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80 \xF4\x8F\xBF\xBF"})
        EXPECT_EQ(repairedUtf8(text), text);
}

TEST(Utf8Foundation, EachDamagedCharacterIsReplaced)
{
    const struct {
        const char* text;
        const char* repaired;
    } rows[] = {
        {"a\xC3", "a\xEF\xBF\xBD"}, // cut
        {"\xE2\x82", "\xEF\xBF\xBD"},
        {"\xF0\x9F\x98", "\xEF\xBF\xBD"},
        {"\xE2\x82!", "\xEF\xBF\xBD!"},
        {"\xC3\xC3\xA9", "\xEF\xBF\xBD\xC3\xA9"},
        {"\x80"
         "a",
            "\xEF\xBF\xBD"
            "a"}, // begins no character
        {"\xFF\xFE", "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {"\xC0\x80\xC1\xBF", "\xEF\xBF\xBD\xEF\xBF\xBD"}, // overlong
        {"\xE0\x9F\xBF", "\xEF\xBF\xBD"},
        {"\xF0\x8F\xBF\xBF", "\xEF\xBF\xBD"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD"}, // a surrogate
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD"}, // beyond the last character
        {"\xF5\x80\x80\x80", "\xEF\xBF\xBD"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(repairedUtf8(row.text), row.repaired) << row.text;
}

TEST(Utf8Foundation, FoundationAcceptsAllRepairedBytes)
{
    for (int lead = 0x80; lead < 0x100; ++lead) {
        for (int second = 0x7F; second < 0x101; second += 0x10) {
            const std::string text{static_cast<char>(lead), static_cast<char>(second), '\x80', '!'};
            EXPECT_STREQ(NS::String(text).UTF8String(), repairedUtf8(text.c_str()).c_str());
        }
    }
}

/// `%C` is the one format that makes lone surrogates.
TEST(Utf8Foundation, EachLoneSurrogateIsReplaced)
{
    constexpr int lead = 0xD83D;
    constexpr int trail = 0xDE00;
    EXPECT_EQ(format("%C", lead), "\xEF\xBF\xBD");
    EXPECT_EQ(format("a%Cb", lead), "a\xEF\xBF\xBD\x62");
    EXPECT_EQ(format("a%Cb", trail), "a\xEF\xBF\xBD\x62");
    EXPECT_EQ(format("%C%C", lead, lead), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(format("%C%C%C%C", trail, lead, trail, lead), "\xEF\xBF\xBD\xF0\x9F\x98\x80\xEF\xBF\xBD");
    EXPECT_EQ(format("\xC3\xA9%C\xC3\xA9", lead), "\xC3\xA9\xEF\xBF\xBD\xC3\xA9");
}

TEST(Utf8Foundation, AMutableStringIsRepairedInItsUtf8FormOnly)
{
    NS::MutableString string("");
    string.appendString(NS::String("before "));
    const NS::String half = loneSurrogate();
    string.appendString(half);
    EXPECT_STREQ(string.UTF8String(), "before \xEF\xBF\xBD");
    string.appendString(NS::String(" after"));
    EXPECT_STREQ(string.UTF8String(), "before \xEF\xBF\xBD after");
}

} // namespace
} // namespace ZSpace::Testing
