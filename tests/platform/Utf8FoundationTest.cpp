// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The repair of text that is no UTF-8.

#include "ZSpace/platform/foundation/Utf8Foundation.h"

#include "ZSpace/platform/Foundation.h"

#include <gtest/gtest.h>

#include <string>

namespace ZSpace::Testing {
namespace {

using Host::repairedUtf8;

TEST(Utf8Foundation, WellFormedTextStaysAsItIs)
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
        {"\xC0\x80\xC1\xBF", "\xEF\xBF\xBD\xEF\xBF\xBD"}, // longer than need be
        {"\xE0\x9F\xBF", "\xEF\xBF\xBD"},
        {"\xF0\x8F\xBF\xBF", "\xEF\xBF\xBD"},
        {"\xED\xA0\x80", "\xEF\xBF\xBD"}, // half of a surrogate pair
        {"\xF4\x90\x80\x80", "\xEF\xBF\xBD"}, // beyond the last character
        {"\xF5\x80\x80\x80", "\xEF\xBF\xBD"},
    };
    for (const auto& row : rows)
        EXPECT_EQ(repairedUtf8(row.text), row.repaired) << row.text;
}

TEST(Utf8Foundation, FoundationTakesEveryRepairedText)
{
    for (int lead = 0x80; lead < 0x100; ++lead) {
        for (int second = 0x7F; second < 0x101; second += 0x10) {
            const std::string text{static_cast<char>(lead), static_cast<char>(second), '\x80', '!'};
            EXPECT_STREQ(NS::String(text).UTF8String(), repairedUtf8(text.c_str()).c_str());
        }
    }
}

} // namespace
} // namespace ZSpace::Testing
