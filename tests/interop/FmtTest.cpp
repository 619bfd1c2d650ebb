// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/interop/Fmt.h"

#include "ZSpace/interop/StdFormat.h"

#include <gtest/gtest.h>

#include <fmt/xchar.h>
#include <string>

using namespace ZSpace;

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

#ifdef __cpp_lib_format
TEST(StdFormat, FormatsTheThreeClassesAsStrings)
{
    const ZGStr<char> string("abcdef");
    EXPECT_EQ(std::format("{}|{:>8}|{}", string.left(3), string, ZMStr<char>("b")), "abc|  abcdef|b");
    EXPECT_EQ(std::format(L"{}", ZGStr<wchar_t>(L"wide").left(2)), L"wi");
}
#endif

} // namespace
