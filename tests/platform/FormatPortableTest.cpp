// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What only the formatter for hosts without Foundation guarantees.

#include "tests/platform/Formatting.h"
#include "tests/support/ChildProcess.h"

#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ios>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

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
    EXPECT_AS_PRINTF("%127d|%128d|%129d|", 5, 5, 5);
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

TEST(FormatPortable, CodePointsPrintInTheShortestFormAndOthersAsTheReplacementCharacter)
{
    const struct {
        int character;
        const char* utf8;
    } rows[] = {{0x7F, "\x7F"}, {0x80, "\xC2\x80"}, {0x7FF, "\xDF\xBF"}, {0x800, "\xE0\xA0\x80"},
        {0xD7FF, "\xED\x9F\xBF"}, {0xD800, "\xEF\xBF\xBD"}, {0xDFFF, "\xEF\xBF\xBD"},
        {0xE000, "\xEE\x80\x80"}, {0xFFFF, "\xEF\xBF\xBF"}, {0x10000, "\xF0\x90\x80\x80"},
        {0x10FFFF, "\xF4\x8F\xBF\xBF"}, {0x110000, "\xEF\xBF\xBD"}, {-1, "\xEF\xBF\xBD"}};
    for (const auto& row : rows)
        EXPECT_EQ(format("%lc", row.character), row.utf8) << std::hex << row.character;
}

TEST(FormatPortable, OnlyAHighSurrogateBeforeALowOneIsAPair)
{
    const std::string replacement = "\xEF\xBF\xBD";
    const struct {
        std::u16string string;
        std::string utf8;
    } rows[] = {{{0xD800, 0xDC00}, "\xF0\x90\x80\x80"}, {{0xDBFF, 0xDFFF}, "\xF4\x8F\xBF\xBF"},
        {{0xD800, 0xDBFF}, replacement + replacement}, {{0xD800, 0xE000}, replacement + "\xEE\x80\x80"},
        {{0xD7FF, 0xDC00}, "\xED\x9F\xBF" + replacement}, {{u'a', 0xDC00}, "a" + replacement},
        {{0xDC00, 0xD800}, replacement + replacement}, {{0xD800}, replacement}};
    for (const auto& row : rows)
        EXPECT_EQ(format("%S", row.string.c_str()), row.utf8);
    EXPECT_EQ(format("%.1S|%.2S|%.3S", u"\U0001F600x", u"\U0001F600x", u"\U0001F600x"),
        replacement + "|\xF0\x9F\x98\x80|\xF0\x9F\x98\x80x");
    EXPECT_EQ(format("%.3S", u"ab\U0001F600"), "ab" + replacement);
}

TEST(FormatPortable, NumbersOfEveryLengthKeepTheirRange)
{
    EXPECT_EQ(format("%qd %Ld", LLONG_MIN, LLONG_MAX), "-9223372036854775808 9223372036854775807");
    EXPECT_EQ(format("%2$d %1$qu", ULLONG_MAX, INT_MIN), "-2147483648 18446744073709551615");
    EXPECT_AS_PRINTF("%.3Le %LG %La %.2LE", 2.5L, 1e300L, 1.5L, 0.25L);
    EXPECT_AS_PRINTF("%lx %llo %jx", ULONG_MAX, ULLONG_MAX, UINTMAX_MAX);
}

TEST(FormatPortable, APrecisionOfZeroLeavesNothingOfAString)
{
    EXPECT_EQ(format("[%.0@] [%.0s] [%.0ls] [%.0S]", NS::String("text").native(), "text", L"text", u"text"),
        "[] [] [] []");
    EXPECT_AS_PRINTF("[%.0d] [%.0d] [%.0u] [%3.0d]", 0, 7, 0U, 0); // a number, all the same
}

TEST(FormatPortable, AStringIsReadNoFurtherThanItsPrecision)
{
    const long pageSize = sysconf(_SC_PAGESIZE);
    const auto size = static_cast<std::size_t>(pageSize);
    void* const pages = mmap(nullptr, 2 * size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    ASSERT_NE(pages, MAP_FAILED);
    char* const end = static_cast<char*>(pages) + size;
    ASSERT_EQ(mprotect(end, size, PROT_NONE), 0);
    std::memcpy(end - 3, "abc", 3);
    EXPECT_EQ(format("%.3s|%.2s|%.0s", end - 3, end - 3, end), "abc|ab|");
    munmap(pages, 2 * size);
}

TEST(FormatPortable, ThePrecisionOfACharacterIsIgnored)
{
    EXPECT_EQ(format("%.0c|%.1lc|%.1C", 'x', L'\u20AC', u'\u20AC'), "x|\xE2\x82\xAC|\xE2\x82\xAC");
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
    EXPECT_EQ(format("abc%1$nd %2$s", &target, "x"), "abcd x");
    EXPECT_EQ(format("abc%hhnd%lln", &target, &target), "abcd");
    EXPECT_EQ(target, 5);
}

TEST(FormatPortable, EnormousWidthsAreLimitedWhereverTheyComeFrom)
{
    constexpr std::size_t most = 1'000'000;
    EXPECT_EQ(format("%999999d", 1).size(), most - 1);
    EXPECT_EQ(format("%*d", 999'999, 1).size(), most - 1);
    for (const char* width : {"1000000", "1000001", "9999999", "10000000", "2147483647", "99999999999"}) {
        const std::string percent = std::string("%") + width;
        EXPECT_EQ(format((percent + "d").c_str(), 1).size(), most) << width;
        EXPECT_EQ(format((percent + "s").c_str(), "x").size(), most) << width;
        EXPECT_EQ(format(("%-" + std::string(width) + "c").c_str(), 'x').size(), most) << width;
    }
    for (const int width : {1'000'000, 9'999'999, 1'500'000'000, INT_MAX, -1'500'000'000, INT_MIN}) {
        EXPECT_EQ(format("%*d", width, 1).size(), most) << width;
        EXPECT_EQ(format("%*s", width, "x").size(), most) << width;
        EXPECT_EQ(format("%*@", width, static_cast<NSString*>(nullptr)).size(), most) << width;
        EXPECT_EQ(format("%*s", width, "x").front(), width < 0 ? 'x' : ' ') << width;
    }
}

TEST(FormatPortable, EnormousPrecisionsAreLimitedWhereTheyLengthenTheOutput)
{
    constexpr std::size_t most = 1'000'000;
    for (const int precision : {1'000'000, 9'999'999, 1'500'000'000, INT_MAX}) {
        EXPECT_EQ(format("%.*d", precision, 1).size(), most) << precision;
        EXPECT_EQ(format(("%." + std::to_string(precision) + "d").c_str(), 1).size(), most) << precision;
        EXPECT_EQ(format("%.*f", precision, 0.5).size(), most + 2) << precision;
    }
}

TEST(FormatPortable, AStringIsNeverTruncatedByTheLimit)
{
    const std::string string(2'500'000, 'x');
    EXPECT_EQ(format("%s", string.c_str()).size(), string.size());
    EXPECT_EQ(format("%.2000000s", string.c_str()).size(), 2'000'000U);
    EXPECT_EQ(format("%.*s", 2'000'000, string.c_str()).size(), 2'000'000U);
    EXPECT_EQ(format("%.99999999999s", string.c_str()).size(), string.size());
    EXPECT_EQ(format("%.*s", INT_MIN, string.c_str()).size(), string.size()); // as if it were missing
}

TEST(FormatPortable, ANumberThatTheCLibraryCannotPrintEndsTheResult)
{
#ifdef ZSPACE_SANITIZED
    GTEST_SKIP() << "the sanitizer's own allocations must not fail";
#endif
    const Outcome outcome = runInChild([] {
        const rlimit none{0, 0};
        setrlimit(RLIMIT_AS, &none);
        void* volatile block = nullptr;
        do {
            block = std::malloc(65'536);
        } while (block);
        // The C library needs megabytes for the digits of this number.
        std::fputs(format("before %.1000000f after %d", 0.5, 1).c_str(), stdout);
        return 0;
    });
    EXPECT_TRUE(outcome.hasExited);
    EXPECT_TRUE(outcome.standardOutput == "before ") << outcome.standardOutput.substr(0, 30);
}

TEST(FormatPortable, AnArgumentPositionOutOfRangePrintsNothing)
{
    EXPECT_EQ(format("a%99999$db"), "ab");
}

} // namespace
} // namespace ZSpace::Testing
