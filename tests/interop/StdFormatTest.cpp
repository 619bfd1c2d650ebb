// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/interop/StdFormat.h"

#include <gtest/gtest.h>

#include <string>

// Where the library has `<format>`, these tests must not be skipped.
#if defined(_GLIBCXX_RELEASE) && _GLIBCXX_RELEASE >= 13 && !defined(__cpp_lib_format)
#error "libstdc++ 13 and later have std::format, but the bridge to it is empty"
#endif

namespace ZSpace::Testing {
namespace {

#ifdef __cpp_lib_format
TEST(StdFormat, FormatsTheThreeClassesAsStrings)
{
    const ZGStr<char> string("abcdef");
    const ZMStr<char> builder("builder");
    EXPECT_EQ(std::format("{}|{}|{}", string.left(3), string, builder), "abc|abcdef|builder");
    EXPECT_EQ(std::format("{:>5}|{:.2}|{:*^9}", string.left(3), string, builder), "  abc|ab|*builder*");
    EXPECT_EQ(std::format("{}{}{}", ZGStr<char>(), ZMStr<char>(), ZStrToken<char>("x", -1)), "");
    EXPECT_EQ(std::format("{}", ZMStr<char>("a\0b", 3)), std::string("a\0b", 3));
}

TEST(StdFormat, FormatsWideStringsInWideText)
{
    const ZGStr<wchar_t> string(L"wide");
    EXPECT_EQ(std::format(L"{}|{:>6}|{}", string.left(2), string, ZMStr<wchar_t>(L"b")), L"wi|  wide|b");
}

TEST(StdFormat, TakesTheWidthAndThePrecisionFromArguments)
{
    const ZGStr<char> string("abcdef");
    EXPECT_EQ(std::format("{:>{}.{}}|", string, 5, 2), "   ab|");
}

TEST(StdFormat, FormatsTimesAndGuids)
{
    const ZTime time(2024, 3, 5, 7, 8, 9, 42);
    const ZGUID guid(0x00112233, 0x4455, 0x6677, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF);
    EXPECT_EQ(std::format("{}", time), "2024-03-05T07:08:09");
    EXPECT_EQ(std::format("{:>21}|{:*<20}", time, time), "  2024-03-05T07:08:09|2024-03-05T07:08:09*");
    EXPECT_EQ(std::format("{}", guid), "{00112233-4455-6677-8899-aabbccddeeff}");
    EXPECT_EQ(std::format("{:.9}", guid), "{00112233");
    EXPECT_EQ(
        std::format(L"{} {}", time, guid), L"2024-03-05T07:08:09 {00112233-4455-6677-8899-aabbccddeeff}");
}

TEST(StdFormat, RefusesWhatIsNoSpecificationOfStrings)
{
    const ZGStr<char> string("abcdef");
    EXPECT_THROW((void)std::vformat("{:d}", std::make_format_args(string)), std::format_error);
}
#else
TEST(StdFormat, IsTestedWhereTheLibraryHasIt)
{
    GTEST_SKIP() << "the standard library has no std::format";
}
#endif

} // namespace
} // namespace ZSpace::Testing
