// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Formats with objects: what every host has in common, compared with the C library.

#include "tests/platform/Formatting.h"
#include "tests/support/Host.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>

namespace ZSpace::Testing {
namespace {

TEST(Format, PlainTextAndPercentSigns)
{
    EXPECT_EQ(format(""), "");
    EXPECT_EQ(format("plain"), "plain");
    EXPECT_AS_PRINTF("100 %% and %%");
    EXPECT_EQ(format("%"), "%");
}

TEST(Format, Integers)
{
    EXPECT_AS_PRINTF("%d %i %u %x %X %o", -1, 42, 7U, 0xABU, 0xABU, 8U);
    EXPECT_EQ(format("%hhd %hd", 300, 70000), "44 4464"); // the value modulo its type
    EXPECT_AS_PRINTF("%ld %lld", -5L, -6LL);
    EXPECT_AS_PRINTF("%jd %zu %td", std::intmax_t{-9}, std::size_t{10}, std::ptrdiff_t{-11});
    EXPECT_AS_PRINTF("%lu %llu %llx", 5UL, 6ULL, 0xFFFFFFFFFFFFFFFFULL);
    EXPECT_AS_PRINTF("%ld %lld %jd", LONG_MIN, LLONG_MIN, INTMAX_MIN);
    EXPECT_AS_PRINTF("%zu %td", SIZE_MAX, PTRDIFF_MIN);
    EXPECT_AS_PRINTF("[%5d] [%-5d] [%05d] [%+d] [% d] [%#x] [%.3d] [%8.3d]", 42, 42, 42, 42, 42, 42U, 42, 42);
}

TEST(Format, FloatingPoint)
{
    EXPECT_AS_PRINTF("%f %e %g %a %05.2f", 1.5, 1.5, 1.5, 1.5, 3.14159);
    EXPECT_AS_PRINTF("%E %G", 1e300, 1e300);
}

TEST(Format, StringsAndCharacters)
{
    EXPECT_AS_PRINTF("%s|%10s|%-10s|%.2s|%c|%3c|%-3c|", "abc", "abc", "abc", "abc", 'x', 'y', 'z');
    EXPECT_EQ(format("%s", static_cast<const char*>(nullptr)), "(null)");
    const char unterminated[] = {'a', 'b', 'c'};
    EXPECT_EQ(format("%.3s", unterminated), "abc");
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
}

TEST(Format, Objects)
{
    const NS::String text("text");
    const NS::Array list = NS::Array::arrayWithObjects({"-uninstall", "YES"});
    EXPECT_EQ(format("%@ and %@", text.native(), list.native()), "text and " + host().printedArguments);
    EXPECT_EQ(format("%2$@ %1$@", text.native(), list.native()), host().printedArguments + " text");
    EXPECT_EQ(format("%d %@ %s", 1, text.native(), "x"), "1 text x");
    EXPECT_EQ(format("%@", static_cast<NSString*>(nullptr)), "(null)");
    EXPECT_EQ(format("%@", NS::MutableString("changing").native()), "changing");
}

} // namespace
} // namespace ZSpace::Testing
