// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What only the formatter of hosts without Foundation promises.

#include "tests/platform/Formatting.h"

#include <cerrno>

namespace ZSpace::Testing {
namespace {

TEST(FormatPortable, APercentSignThatStartsNoConversionIsPrinted)
{
    EXPECT_EQ(format("50% y"), "50% y");
    EXPECT_EQ(format("a%5"), "a%5");
}

TEST(FormatPortable, LongDoublesAndCapitalF)
{
    EXPECT_AS_PRINTF("%Lf %.1Lf", 2.5L, 3.25L);
    EXPECT_AS_PRINTF("%F", 1e300);
}

TEST(FormatPortable, PositionsOfWidthsAndPrecisions)
{
    EXPECT_EQ(format("[%1$*2$d] [%1$.*3$d]", 7, 4, 3), "[   7] [007]");
}

TEST(FormatPortable, WidthsAndPrecisionsOfObjects)
{
    const NS::String text("text");
    EXPECT_EQ(
        format("[%6@] [%-6@] [%.2@]", text.native(), text.native(), text.native()), "[  text] [text  ] [te]");
}

TEST(FormatPortable, PrintsNumbersOfAnyLength)
{
    EXPECT_AS_PRINTF("%300d|", 5);
    EXPECT_EQ(format("%.400f", 0.0).size(), 402U);
}

TEST(FormatPortable, WideStringsPrintAsUtf8InAnyLocale)
{
    EXPECT_EQ(format("%ls|%lc", L"\u00E9\u20AC\U0001F600", L'\u00E9'),
        "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80|\xC3\xA9");
    EXPECT_EQ(format("%.1ls|%4ls|", L"\u00E9x", L"ab"), "\xC3\xA9|  ab|");
    EXPECT_EQ(format("%S|%C|%.1S", u"\u00E9\U0001F600", u'\u20AC', u"ab"),
        "\xC3\xA9\xF0\x9F\x98\x80|\xE2\x82\xAC|a");
    EXPECT_EQ(format("%ls %S", static_cast<void*>(nullptr), static_cast<void*>(nullptr)), "(null) (null)");
}

TEST(FormatPortable, PrintsTheErrnoOfTheCaller)
{
    errno = ENOENT;
    EXPECT_EQ(format("%m"), "No such file or directory");
}

TEST(FormatPortable, StoresNoCount)
{
    int target = 5;
    EXPECT_EQ(format("abc%nd %s", &target, "x"), "abcd x");
    EXPECT_EQ(target, 5);
}

TEST(FormatPortable, AnEnormousWidthIsCut)
{
    EXPECT_EQ(format("%99999999999d", 1).size(), 1'000'000U);
    EXPECT_EQ(format("%999999999s", "x").size(), 1'000'000U);
}

TEST(FormatPortable, AnArgumentPositionOutOfReachPrintsNothing)
{
    EXPECT_EQ(format("a%99999$db"), "ab");
}

} // namespace
} // namespace ZSpace::Testing
