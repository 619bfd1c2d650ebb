// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Formats with objects: every conversion beside what the C library makes of it.

#include "platform/Foundation.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <string>

namespace ZSpace::Testing {
namespace {

std::string format(const char* pattern, ...)
{
    std::va_list arguments;
    va_start(arguments, pattern);
    const NS::String result = NS::String::stringWithFormat(NS::String(pattern).native(), arguments);
    va_end(arguments);
    return result.UTF8String();
}

/// Both must agree wherever the C library knows the format.
#define EXPECT_AS_PRINTF(...)                                                                                \
    do {                                                                                                     \
        char expected[512];                                                                                  \
        std::snprintf(expected, sizeof expected, __VA_ARGS__);                                               \
        EXPECT_EQ(format(__VA_ARGS__), expected);                                                            \
    } while (false)

TEST(Format, PlainTextAndPercentSigns)
{
    EXPECT_EQ(format(""), "");
    EXPECT_EQ(format("plain"), "plain");
    EXPECT_AS_PRINTF("100 %% and %%");
    EXPECT_EQ(format("%"), "%");
    EXPECT_EQ(format("50% y"), "50% y"); // no conversion: stands for itself
    EXPECT_EQ(format("a%5"), "a%5");
}

TEST(Format, Integers)
{
    EXPECT_AS_PRINTF("%d %i %u %x %X %o", -1, 42, 7U, 0xABU, 0xABU, 8U);
    EXPECT_EQ(format("%hhd %hd", 300, 70000), "44 4464"); // the value modulo its type
    EXPECT_AS_PRINTF("%ld %lld", -5L, -6LL);
    EXPECT_AS_PRINTF("%jd %zu %td", std::intmax_t{-9}, std::size_t{10}, std::ptrdiff_t{-11});
    EXPECT_AS_PRINTF("%lu %llu %llx", 5UL, 6ULL, 0xFFFFFFFFFFFFFFFFULL);
    EXPECT_AS_PRINTF("[%5d] [%-5d] [%05d] [%+d] [% d] [%#x] [%.3d] [%8.3d]", 42, 42, 42, 42, 42, 42U, 42, 42);
}

TEST(Format, FloatingPoint)
{
    EXPECT_AS_PRINTF("%f %e %g %a %05.2f", 1.5, 1.5, 1.5, 1.5, 3.14159);
    EXPECT_AS_PRINTF("%Lf %.1Lf", 2.5L, 3.25L);
    EXPECT_AS_PRINTF("%F %E %G", 1e300, 1e300, 1e300);
}

TEST(Format, ANumberLongerThanAnyStackBuffer)
{
    EXPECT_AS_PRINTF("%300d|", 5);
    EXPECT_EQ(format("%.400f", 0.0).size(), 402U);
}

TEST(Format, TextsAndCharacters)
{
    EXPECT_AS_PRINTF("%s|%10s|%-10s|%.2s|%c|%3c|%-3c|", "abc", "abc", "abc", "abc", 'x', 'y', 'z');
    EXPECT_EQ(format("%s", static_cast<const char*>(nullptr)), "(null)");
    const char unterminated[] = {'a', 'b', 'c'};
    EXPECT_EQ(format("%.3s", unterminated), "abc");
}

TEST(Format, WideTextsComeOutAsUtf8InAnyLocale)
{
    EXPECT_EQ(format("%ls|%lc", L"\u00E9\u20AC\U0001F600", L'\u00E9'),
        "\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80|\xC3\xA9");
    EXPECT_EQ(format("%.1ls|%4ls|", L"\u00E9x", L"ab"), "\xC3\xA9|  ab|");
    EXPECT_EQ(format("%S|%C|%.1S", u"\u00E9\U0001F600", u'\u20AC', u"ab"),
        "\xC3\xA9\xF0\x9F\x98\x80|\xE2\x82\xAC|a");
    EXPECT_EQ(format("%ls %S", static_cast<void*>(nullptr), static_cast<void*>(nullptr)), "(null) (null)");
}

TEST(Format, Pointers)
{
    int object = 0;
    EXPECT_AS_PRINTF("%p", static_cast<void*>(&object));
}

TEST(Format, WidthsAndPrecisionsByArgument)
{
    EXPECT_AS_PRINTF("[%*d] [%-*d] [%.*f] [%*.*f]", 6, 42, 6, 42, 2, 1.0, 8, 3, 2.5);
    EXPECT_AS_PRINTF("[%*d] [%.*s] [%.*d]", -6, 42, 2, "abc", -1, 7);
}

TEST(Format, Positions)
{
    EXPECT_EQ(format("%2$s %1$d", 5, "x"), "x 5");
    EXPECT_EQ(format("%1$s %1$s", "x"), "x x");
    EXPECT_EQ(format("%3$s %2$f %1$lld", 9LL, 0.5, "end"), "end 0.500000 9");
    EXPECT_EQ(format("[%1$*2$d] [%1$.*3$d]", 7, 4, 3), "[   7] [007]");
}

TEST(Format, Objects)
{
    const NS::String text("text");
    const NS::Array list = NS::Array::arrayWithObjects({"-uninstall", "YES"});
    EXPECT_EQ(format("%@ and %@", text.native(), list.native()), "text and (\"-uninstall\", YES)");
    EXPECT_EQ(format("%2$@ %1$@", text.native(), list.native()), "(\"-uninstall\", YES) text");
    EXPECT_EQ(format("%d %@ %s", 1, text.native(), "x"), "1 text x");
    EXPECT_EQ(
        format("[%6@] [%-6@] [%.2@]", text.native(), text.native(), text.native()), "[  text] [text  ] [te]");
    EXPECT_EQ(format("%@", static_cast<NSString*>(nullptr)), "(null)");
    EXPECT_EQ(format("%@", NS::MutableString("changing").native()), "changing");
}

TEST(Format, TheErrorNumberIsTheCallers)
{
    errno = ENOENT;
    EXPECT_EQ(format("%m"), "No such file or directory");
}

TEST(Format, StoringACountWritesNothing)
{
    int target = 5;
    EXPECT_EQ(format("abc%nd %s", &target, "x"), "abcd x");
    EXPECT_EQ(target, 5);
}

TEST(Format, AnEnormousWidthIsCut)
{
    EXPECT_EQ(format("%99999999999d", 1).size(), 1'000'000U);
    EXPECT_EQ(format("%999999999s", "x").size(), 1'000'000U);
}

TEST(Format, AnArgumentPositionOutOfReachPrintsNothing)
{
    EXPECT_EQ(format("a%99999$db"), "ab");
}

} // namespace
} // namespace ZSpace::Testing
