// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"
#include "tests/support/AllocationFaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <string>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class ZMStrFilling : public ::testing::Test {
protected:
    /// A builder with the given capacity and content.
    static ZMStr<T> holding(const char* text, long capacity)
    {
        ZMStr<T> builder(capacity - 1);
        builder.append(lit<T>(text));
        EXPECT_EQ(builder.Capacity(), capacity);
        return builder;
    }
};
TYPED_TEST_SUITE(ZMStrFilling, Widths, TypeNames);

// Padded numbers

TYPED_TEST(ZMStrFilling, NumbersArePaddedWithZeros)
{
    using T = TypeParam;
    const auto padded = [](auto number, long width, bool emptyIfZero = false) {
        ZMStr<T> builder(lit<T>("<"));
        builder.appendValueOf(number, width, emptyIfZero);
        return str(builder);
    };
    EXPECT_EQ(padded(7, 3), "<007");
    EXPECT_EQ(padded(1234, 3), "<1234");
    EXPECT_EQ(padded(123, 3), "<123");
    EXPECT_EQ(padded(0, 2), "<00");
    EXPECT_EQ(padded(0, 2, true), "<00");
    EXPECT_EQ(padded(0, 0, true), "<");
    EXPECT_EQ(padded(0, 1, true), "<0");
    EXPECT_EQ(padded(5, 0), "<5");
    EXPECT_EQ(padded(5, -4), "<5");
    EXPECT_EQ(padded(-5, 3), "<0-5");
    EXPECT_EQ(padded(-5, 2), "<-5");
    EXPECT_EQ(padded(static_cast<unsigned char>(9), 2), "<09");
    EXPECT_EQ(padded(static_cast<unsigned short>(2024), 4), "<2024");
    EXPECT_EQ(padded(static_cast<signed char>(-1), 4), "<00-1");
    EXPECT_EQ(padded(5ULL, 25), "<0000000000000000000000005");
    EXPECT_EQ(padded(LLONG_MIN, 3), "<-9223372036854775808");
}

TYPED_TEST(ZMStrFilling, EveryNumberOfADateIsPadded)
{
    ZMStr<TypeParam> builder(100);
    for (int number = 0; number < 10'100; ++number) {
        for (int width = 1; width <= 5; ++width) {
            const std::string digits = std::to_string(number);
            const std::string zeros(
                static_cast<std::size_t>(width) - std::min(static_cast<std::size_t>(width), digits.size()),
                '0');
            builder.remove(0);
            ASSERT_EQ(str(builder.appendValueOf(number, width)), zeros + digits) << width;
        }
    }
    builder.remove(0);
    builder.appendValueOf(0, 4, true).appendValueOf(1ULL << 32, 4).appendValueOf((1ULL << 32) + 7, 2);
    EXPECT_EQ(str(builder), "000042949672964294967303");
}

TYPED_TEST(ZMStrFilling, AFlagAfterANumberIsNotAWidth)
{
    ZMStr<TypeParam> builder;
    builder.appendValueOf(0, true).appendValueOf(0, false).appendValueOf(5, true).appendValueOf(6);
    EXPECT_EQ(str(builder), "056");
}

TYPED_TEST(ZMStrFilling, PaddingAndDigitsGrowOneAfterTheOther)
{
    ZMStr<TypeParam> builder;
    builder.appendValueOf(7, LONG_MIN);
    EXPECT_EQ(str(builder), "7");
    builder.remove(0);
    builder.appendValueOf(7, 3);
    EXPECT_EQ(builder.Capacity(), (0 + 2 + 0 + 1) + 1 + 1 + 1); // two zeros, then a digit
}

TYPED_TEST(ZMStrFilling, AppendingNumbersAllocatesOnlyTheBuffer)
{
    ZMStr<TypeParam> builder(200);
    const long before = allocationsMade();
    builder.appendValueOf(LLONG_MIN, 40).appendValueOf(true, false).appendHexOf(1ULL);
    builder << -1234567 << 1.0 / 3 << 2.5F << 'x' << L"wide" << "narrow";
    builder.appendHexOf("abc", 3);
    EXPECT_EQ(allocationsMade(), before);
}

// Inserting and filling

TYPED_TEST(ZMStrFilling, InsertingMovesTheTail)
{
    using T = TypeParam;
    const auto inserted = [](long at) {
        ZMStr<T> builder(lit<T>("abcd"));
        return str(builder.insert(lit<T>("xy"), at));
    };
    EXPECT_EQ(inserted(0), "xyabcd");
    EXPECT_EQ(inserted(1), "axybcd");
    EXPECT_EQ(inserted(2), "abxycd");
    EXPECT_EQ(inserted(4), "abcdxy");
    EXPECT_EQ(inserted(9), "abcdxy");
    EXPECT_EQ(inserted(-2), "abxycd");
    EXPECT_EQ(inserted(-4), "xyabcd");
    EXPECT_EQ(inserted(-9), "xyabcd");
}

TYPED_TEST(ZMStrFilling, InsertingBeforeTheLastCharacterAppends)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abcd"));
    EXPECT_EQ(str(builder.insert(lit<T>("xy"), 3)), "abcdxy");
    EXPECT_EQ(str(builder.insert(lit<T>("z"), -1)), "abcdxyz");
    EXPECT_EQ(str(ZMStr<T>(lit<T>("a")).insert(lit<T>("b"), 0)), "ab");
}

TYPED_TEST(ZMStrFilling, InsertingTakesALengthOrAToken)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abcd"));
    builder.insert(lit<T>("xyz"), 2, 1).insert(ZGStr<T>(lit<T>("-")), 0);
    EXPECT_EQ(str(builder), "-axybcd");
    builder.insert(lit<T>("x"), 0, 1)
        .insert(lit<T>("x"), -1, 1)
        .insert(nullptr, 3, 1)
        .insert(ZStrToken<T>(), 1);
    EXPECT_EQ(str(builder), "-axybcd");
    EXPECT_EQ(str(ZMStr<T>().insert(lit<T>("ab"), 0)), "ab");
    EXPECT_EQ(str(ZMStr<T>().insert(lit<T>("ab"), -3)), "ab");
    EXPECT_EQ(str(ZMStr<T>(lit<T>("")).insert(lit<T>("a"), 0)), "a"); // capacity 1 and no buffer
}

TYPED_TEST(ZMStrFilling, InsertingGrowsOnlyWhenTheTextExceedsTheCapacity)
{
    using T = TypeParam;
    auto builder = this->holding("abcd", 8);
    const T* buffer = builder;
    builder.insert(lit<T>("1234"), 1); // 8 is the capacity: the spare element holds the terminator
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 8);
    EXPECT_EQ(builder.Length(), 8);
    EXPECT_EQ(str(static_cast<const T*>(builder)), "a1234bcd");
    builder.insert(lit<T>("x"), 1);
    EXPECT_EQ(builder.Capacity(), 8 + 1 + 4 + 1);
    EXPECT_EQ(str(builder), "ax1234bcd");
    EXPECT_EQ(ZMStr<T>().insert(lit<T>("abc"), 0).Capacity(), 4);

    auto full = this->holding("abcd", 8);
    full.insert(lit<T>("1234"), 1);
    full.append(T('!')); // later operations continue normally
    EXPECT_EQ(str(full), "a1234bcd!");
}

TYPED_TEST(ZMStrFilling, ABuilderInsertsItsOwnText)
{
    using T = TypeParam;
    for (const long capacity : {7L, 100L}) {
        for (long start = 0; start < 6; ++start) {
            for (long count = 1; start + count <= 6; ++count) {
                for (const long at : {0L, 1L, 3L, 4L, 6L}) {
                    ZMStr<T> builder(capacity - 1);
                    builder.append(lit<T>("abcdef"));
                    std::string expected = "abcdef";
                    expected.insert(static_cast<std::size_t>(at),
                        std::string("abcdef").substr(
                            static_cast<std::size_t>(start), static_cast<std::size_t>(count)));
                    builder.insert(builder.subString(start, count), at);
                    EXPECT_EQ(str(builder), expected) << start << ' ' << count << ' ' << at;
                }
            }
        }
    }
}

TYPED_TEST(ZMStrFilling, FillingAddsWhatIsMissing)
{
    using T = TypeParam;
    const auto filled = [](long length, long at) {
        ZMStr<T> builder(lit<T>("ab"));
        const long added = builder.fill(T('.'), length, at);
        EXPECT_EQ(builder.Length(), 2 + added);
        return str(builder).append(" ").append(std::to_string(added));
    };
    EXPECT_EQ(filled(5, 0), "...ab 3");
    EXPECT_EQ(filled(5, 1), "a...b 3");
    EXPECT_EQ(filled(5, 2), "ab... 3");
    EXPECT_EQ(filled(5, 9), "ab... 3");
    EXPECT_EQ(filled(5, -1), "ab... 3");
    EXPECT_EQ(filled(5, -2), "a...b 3");
    EXPECT_EQ(filled(5, -3), "...ab 3");
    EXPECT_EQ(filled(5, -4), "...ab 3"); // before the beginning: clamped, not counted from the end again
    EXPECT_EQ(filled(5, -5), "...ab 3");
    EXPECT_EQ(filled(5, -9), "...ab 3");
    EXPECT_EQ(filled(5, LONG_MIN), "...ab 3");
    EXPECT_EQ(filled(2, 0), "ab 0");
    EXPECT_EQ(filled(1, 0), "ab 0");
    EXPECT_EQ(filled(-1, 0), "ab 0");
    EXPECT_EQ(filled(LONG_MIN, 0), "ab 0");
}

TYPED_TEST(ZMStrFilling, FillingGrowsByItsOwnRule)
{
    using T = TypeParam;
    auto builder = this->holding("ab", 8);
    const T* buffer = builder;
    EXPECT_EQ(builder.fill(T('.'), 7, -1), 5);
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 8);
    EXPECT_EQ(builder.fill(T('!'), 8, 0), 1);
    EXPECT_EQ(builder.Capacity(), 8 + 1 + 4 + 1 + 1);
    EXPECT_EQ(str(builder), "!ab.....");
    ZMStr<T> none;
    EXPECT_EQ(none.fill(T('x'), 3, 0), 3);
    EXPECT_EQ(none.Capacity(), 0 + 3 + 0 + 1 + 1);
    EXPECT_EQ(str(none), "xxx");
}

TYPED_TEST(ZMStrFilling, PaddingGoesToEitherSide)
{
    using T = TypeParam;
    ZMStr<T> right(lit<T>("ab"));
    EXPECT_EQ(right.rFill(T('.'), 5), 3);
    EXPECT_EQ(str(right), "ab...");
    EXPECT_EQ(right.rFill(T('.'), 1), 0);
    EXPECT_EQ(str(right), "ab...");
    ZMStr<T> left(lit<T>("ab"));
    EXPECT_EQ(left.lFill(T('.'), 5), 3);
    EXPECT_EQ(str(left), "...ab");
    EXPECT_EQ(left.lFill(T('.'), 5), 0);
    EXPECT_EQ(ZMStr<T>().lFill(T('x'), 2) + ZMStr<T>().rFill(T('x'), 2), 4);
    ZMStr<T> one(lit<T>("a"));
    EXPECT_EQ(one.lFill(T('0'), 3), 3 - 1); // no exception at the end, unlike inserting
    EXPECT_EQ(str(one), "00a");
}

} // namespace
