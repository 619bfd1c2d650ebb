// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/interop/Fmt.h"

#include "ZSpace/interop/StdFormat.h" // both bridges may be used in one source

#include <gtest/gtest.h>

#include <fmt/xchar.h>
#include <string>

namespace ZSpace::Testing {
namespace {

TEST(Fmt, FormatsTheThreeClassesAsStrings)
{
    const ZGStr<char> string("abcdef");
    const ZMStr<char> builder("builder");
    EXPECT_EQ(fmt::format("{}|{}|{}", string.left(3), string, builder), "abc|abcdef|builder");
    EXPECT_EQ(fmt::format("{:>5}|{:.2}|{:*^9}", string.left(3), string, builder), "  abc|ab|*builder*");
    EXPECT_EQ(fmt::format("{}{}{}", ZGStr<char>(), ZMStr<char>(), ZStrToken<char>("x", -1)), "");
    EXPECT_EQ(fmt::format("{}", ZMStr<char>("a\0b", 3)), std::string("a\0b", 3));
}

TEST(Fmt, FormatsWideStringsInWideText)
{
    const ZGStr<wchar_t> string(L"wide");
    EXPECT_EQ(fmt::format(L"{}|{:>6}|{}", string.left(2), string, ZMStr<wchar_t>(L"b")), L"wi|  wide|b");
}

TEST(Fmt, FormatsTimesAndGuids)
{
    const ZTime time(2024, 3, 5, 7, 8, 9, 42);
    const ZGUID guid(0x00112233, 0x4455, 0x6677, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF);
    EXPECT_EQ(fmt::format("{}", time), "2024-03-05T07:08:09");
    EXPECT_EQ(fmt::format("{:>21}|{:*<20}", time, time), "  2024-03-05T07:08:09|2024-03-05T07:08:09*");
    EXPECT_EQ(fmt::format("{}", guid), "{00112233-4455-6677-8899-aabbccddeeff}");
    EXPECT_EQ(fmt::format("{:.9}", guid), "{00112233");
    EXPECT_EQ(
        fmt::format(L"{} {}", time, guid), L"2024-03-05T07:08:09 {00112233-4455-6677-8899-aabbccddeeff}");
}

} // namespace
} // namespace ZSpace::Testing
