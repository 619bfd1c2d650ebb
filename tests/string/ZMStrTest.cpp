// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"

#include "ZSpace/core/ZException.h"
#include "tests/string/StringTestSupport.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"

#include <gtest/gtest.h>

#include <climits>
#include <type_traits>
#include <utility>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class ZMStrTest : public ::testing::Test {
protected:
    /// A builder of the given capacity that holds a text.
    static ZMStr<T> holding(const char* text, long capacity)
    {
        ZMStr<T> builder(capacity - 1);
        builder.append(lit<T>(text));
        EXPECT_EQ(builder.Capacity(), capacity);
        return builder;
    }

    /// Appends `c` over and over and gives the capacities that are passed.
    static std::vector<long> capacitiesOfAppendingTo(ZMStr<T> builder, int steps)
    {
        std::vector<long> capacities;
        for (int i = 0; i < steps; ++i)
            capacities.push_back(builder.append(T('x')).Capacity());
        return capacities;
    }
};
TYPED_TEST_SUITE(ZMStrTest, Widths, TypeNames);

using Capacities = std::vector<long>;

TYPED_TEST(ZMStrTest, ABuilderIsBufferCapacityAndLength)
{
    using T = TypeParam;
    static_assert(sizeof(ZMStr<T>) == 24 && std::is_standard_layout_v<ZMStr<T>>);
    const ZMStr<T> builder(lit<T>("abc"));
    EXPECT_EQ(wordAt(&builder, 0), asWord(static_cast<const T*>(builder)));
    EXPECT_EQ(wordAt(&builder, 1), 4U);
    EXPECT_EQ(wordAt(&builder, 2), 3U);
}

TYPED_TEST(ZMStrTest, ADefaultBuilderHasNothing)
{
    const ZMStr<TypeParam> builder;
    EXPECT_EQ(static_cast<const TypeParam*>(builder), nullptr);
    EXPECT_EQ(builder.Capacity(), 0);
    EXPECT_EQ(builder.Length(), 0);
    EXPECT_TRUE(builder.isEmpty() && !builder);
}

TYPED_TEST(ZMStrTest, ACapacityIsReservedWithoutText)
{
    using T = TypeParam;
    const ZMStr<T> builder(40);
    EXPECT_EQ(builder.Capacity(), 41);
    EXPECT_EQ(builder.Length(), 0);
    EXPECT_EQ(static_cast<const T*>(builder)[0], T(0));
    EXPECT_EQ(ZMStr<T>(0).Capacity(), 1);
    EXPECT_EQ(ZMStr<T>(-7).Capacity(), 1);
    EXPECT_EQ(ZMStr<T>(5L).Capacity(), 6);
    EXPECT_EQ(ZMStr<T>(std::size_t{5}).Capacity(), 6);
}

TYPED_TEST(ZMStrTest, ThirtyEightCharactersFitIntoForty)
{
    using T = TypeParam;
    ZMStr<T> builder(40);
    const T* buffer = builder;
    for (int i = 0; i < 38; ++i)
        builder.append(T('x'));
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 41);
    ZMStr<T> atOnce(40);
    buffer = atOnce;
    atOnce.append(lit<T>(std::string(38, 'x')));
    EXPECT_EQ(static_cast<const T*>(atOnce), buffer);
    EXPECT_EQ(atOnce.append(T('x')).Capacity(), 41);
    EXPECT_EQ(atOnce.append(T('x')).Capacity(), 41 + 1 + 20 + 1);
    EXPECT_EQ(atOnce.Length(), 40);
}

TYPED_TEST(ZMStrTest, CopiesHaveNoMoreRoomThanTheyNeed)
{
    using T = TypeParam;
    ZMStr<T> roomy(40);
    roomy << lit<T>("abc");
    for (const ZMStr<T>& copy : {ZMStr<T>(lit<T>("abc")), ZMStr<T>(lit<T>("abcd"), 3), ZMStr<T>(roomy),
             ZMStr<T>(ZStrToken<T>(lit<T>("abc"))), ZMStr<T>(ZGStr<T>(lit<T>("abc")))}) {
        EXPECT_EQ(str(copy), "abc");
        EXPECT_EQ(copy.Length(), 3);
        EXPECT_EQ(copy.Capacity(), 4);
        EXPECT_NE(static_cast<const T*>(copy), static_cast<const T*>(roomy));
    }
}

TYPED_TEST(ZMStrTest, ACopyOfNothingHasACapacityOfOneAndNoBuffer)
{
    using T = TypeParam;
    const T* zeroFirst = lit<T>(std::string_view("\0ab", 3));
    for (const ZMStr<T>& copy :
        {ZMStr<T>(static_cast<const T*>(nullptr)), ZMStr<T>(lit<T>("")), ZMStr<T>(lit<T>("abc"), 0),
            ZMStr<T>(lit<T>("abc"), -1), ZMStr<T>(nullptr, 3), ZMStr<T>(ZStrToken<T>()), ZMStr<T>(ZGStr<T>()),
            ZMStr<T>(ZMStr<T>(40).append(lit<T>(""))), ZMStr<T>(zeroFirst, 3)}) {
        EXPECT_EQ(static_cast<const T*>(copy), nullptr);
        EXPECT_EQ(copy.Capacity(), 1);
        EXPECT_EQ(copy.Length(), 0);
    }
}

TYPED_TEST(ZMStrTest, ZerosWithinAGivenLengthAreKept)
{
    using T = TypeParam;
    const ZMStr<T> builder(lit<T>(std::string_view("a\0b", 3)), 3);
    EXPECT_EQ(builder.Length(), 3);
    EXPECT_EQ(str(builder), std::string("a\0b", 3));
    EXPECT_EQ(str(ZMStr<T>(builder)), std::string("a\0b", 3));
}

TYPED_TEST(ZMStrTest, MovingHandsTheBufferOver)
{
    using T = TypeParam;
    ZMStr<T> source(40);
    source << lit<T>("abc");
    const T* buffer = source;
    ZMStr<T> target(std::move(source));
    ZMStr<T> assigned(lit<T>("old"));
    assigned = std::move(target);
    EXPECT_EQ(static_cast<const T*>(assigned), buffer);
    EXPECT_EQ(assigned.Capacity(), 41);
    EXPECT_EQ(str(assigned), "abc");
    EXPECT_EQ(target.Capacity() + target.Length() + source.Capacity() + source.Length(), 0); // NOLINT
}

// Growth

TYPED_TEST(ZMStrTest, AppendingGrowsByHalfAndTheNewCharacters)
{
    using T = TypeParam;
    EXPECT_EQ(
        this->capacitiesOfAppendingTo(ZMStr<T>(), 11), (Capacities{2, 5, 5, 9, 9, 9, 9, 15, 15, 15, 15}));
    EXPECT_EQ(this->capacitiesOfAppendingTo(ZMStr<T>(0), 6), (Capacities{3, 6, 6, 6, 11, 11}));
    EXPECT_EQ(ZMStr<T>(0).append(T('x')).Capacity(), 3);
    EXPECT_EQ(ZMStr<T>(lit<T>("")).append(T('x')).Capacity(), 3);
    EXPECT_EQ(ZMStr<T>().append(lit<T>("abcde")).Capacity(), 6);
    EXPECT_EQ(ZMStr<T>(lit<T>("abc")).append(lit<T>("de")).Capacity(), 4 + 2 + 2 + 1);
    EXPECT_EQ(ZMStr<T>(10).append(T('x'), 9).Capacity(), 11);
    EXPECT_EQ(ZMStr<T>(10).append(T('x'), 10).Capacity(), 11 + 10 + 5 + 1);
    EXPECT_EQ((ZMStr<T>(10) << lit<T>("abcdefghij")).Capacity(), 11 + 10 + 5 + 1);
    EXPECT_EQ((ZMStr<T>(10) << L"abcdefghij").Capacity(), 11 + 10 + 5 + 1);
    EXPECT_EQ((ZMStr<T>(10) << 1234567890).Capacity(), 11 + 10 + 5 + 1);
    EXPECT_EQ((ZMStr<T>(10) << 12345.6789).Length(), ZGStr<T>::valueOf(12345.6789).length());
}

TYPED_TEST(ZMStrTest, HexadecimalGrowsBySeventeen)
{
    using T = TypeParam;
    EXPECT_EQ(ZMStr<T>().appendHexOf(static_cast<unsigned char>(1)).Capacity(), 18);
    EXPECT_EQ(ZMStr<T>(10).appendHexOf(1U).Capacity(), 11);
    EXPECT_EQ(ZMStr<T>(10).append(lit<T>("a")).appendHexOf(1U).Capacity(), 11);
    EXPECT_EQ(ZMStr<T>(10).append(lit<T>("ab")).appendHexOf(1U).Capacity(), 11 + 5 + 17 + 1);
    EXPECT_EQ(ZMStr<T>(10).appendHexOf(1ULL).Capacity(), 11 + 5 + 17 + 1);
    const char bytes[5]{};
    EXPECT_EQ(ZMStr<T>(10).appendHexOf(bytes, 5).Capacity(), 11 + 10 + 5 + 1); // as any text
}

TYPED_TEST(ZMStrTest, AssigningGrowsWithoutCountingTheOldText)
{
    using T = TypeParam;
    auto builder = this->holding("12345678", 11);
    const T* buffer = builder;
    builder = lit<T>("abcdefghi"); // 9 + 1 is below 11
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 11);
    builder = lit<T>("abcdefghij"); // 10 + 1 is not
    EXPECT_EQ(builder.Capacity(), 11 + 10 + 5 + 1);
    EXPECT_EQ(str(builder), "abcdefghij");
    ZMStr<T> fresh;
    fresh = lit<T>("abc");
    EXPECT_EQ(fresh.Capacity(), 4);
}

TYPED_TEST(ZMStrTest, AllocatingKeepsWhatFits)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abcdef"));
    builder.alloc(20);
    EXPECT_EQ(builder.Capacity(), 21);
    EXPECT_EQ(str(builder), "abcdef");
    EXPECT_EQ(static_cast<const T*>(builder)[20], T(0));
    builder.alloc(4);
    EXPECT_EQ(builder.Capacity(), 5);
    EXPECT_EQ(builder.Length(), 4);
    EXPECT_EQ(str(static_cast<const T*>(builder)), "abcd");
    builder.alloc(4);
    EXPECT_EQ(str(builder), "abcd");
    builder.alloc(0);
    EXPECT_EQ(builder.Capacity(), 1);
    EXPECT_TRUE(builder.isEmpty());
    builder.alloc(-3);
    EXPECT_EQ(builder.Capacity(), 1);
    ZMStr<T> none;
    none.alloc(3);
    EXPECT_EQ(none.Capacity(), 4);
}

TYPED_TEST(ZMStrTest, AllocatingMoreAddsHalfTheCapacity)
{
    using T = TypeParam;
    auto builder = this->holding("abc", 11);
    builder.allocInc(7);
    EXPECT_EQ(builder.Capacity(), 7 + 11 + 5 + 1);
    EXPECT_EQ(str(builder), "abc");
    ZMStr<T> none;
    none.allocInc(7);
    EXPECT_EQ(none.Capacity(), 8);
}

TYPED_TEST(ZMStrTest, GettingABufferDropsTheTextAndCountsTheRoom)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    T* buffer = builder.getBuffer(5);
    EXPECT_EQ(buffer, static_cast<const T*>(builder));
    EXPECT_EQ(builder.Capacity(), 6);
    EXPECT_EQ(builder.Length(), 5);
    EXPECT_EQ(buffer[0], T(0));
    EXPECT_EQ(buffer[5], T(0));
    for (int i = 0; i < 5; ++i)
        buffer[i] = static_cast<T>('v' + i);
    EXPECT_EQ(str(builder), "vwxyz");
    EXPECT_EQ(builder.getBuffer(0), buffer);
    EXPECT_EQ(builder.getBuffer(-1), buffer);
    EXPECT_EQ(str(builder), "vwxyz");
    EXPECT_EQ(ZMStr<T>().getBuffer(0), nullptr);
}

TYPED_TEST(ZMStrTest, ClearingFreesAndSwappingExchanges)
{
    using T = TypeParam;
    auto a = this->holding("abc", 11);
    ZMStr<T> b;
    a.swap(b);
    EXPECT_EQ(a.Capacity() + a.Length(), 0);
    EXPECT_EQ(b.Capacity(), 11);
    EXPECT_EQ(str(b), "abc");
    b.clear();
    EXPECT_EQ(static_cast<const T*>(b), nullptr);
    EXPECT_EQ(b.Capacity() + b.Length(), 0);
    EXPECT_EQ(b.append(T('x')).Capacity(), 2);
}

// Text in and out

TYPED_TEST(ZMStrTest, AssigningCopiesEveryKindOfText)
{
    using T = TypeParam;
    auto builder = this->holding("old text", 20);
    const T* buffer = builder;
    EXPECT_EQ(str(builder = lit<T>("pointer")), "pointer");
    EXPECT_EQ(str(builder = ZGStr<T>(lit<T>("string"))), "string");
    EXPECT_EQ(str(builder = ZStrToken<T>(lit<T>("tokens"), 5)), "token");
    const ZMStr<T> other(lit<T>("builder"));
    EXPECT_EQ(str(builder = other), "builder");
    EXPECT_EQ(str(builder.assign(lit<T>("abc"), 2)), "ab");
    EXPECT_EQ(str(builder.assign(ZStrToken<T>(lit<T>("xyz")))), "xyz");
    EXPECT_EQ(str(builder.assign(lit<T>("abc"), 0)), "");
    EXPECT_EQ(builder.Length(), 0);
    EXPECT_EQ(str(builder.assign(lit<T>(std::string_view("\0b", 2)), 2)), "");
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 20);
    ZMStr<T> none;
    none = lit<T>("");
    EXPECT_EQ(static_cast<const T*>(none), nullptr);
}

TYPED_TEST(ZMStrTest, AssigningItselfOrAPartOfItWorks)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abcdef"));
    const ZMStr<T>& same = builder;
    builder = same;
    EXPECT_EQ(str(builder), "abcdef");
    EXPECT_EQ(builder.Capacity(), 7);
    builder = builder.right(4);
    EXPECT_EQ(str(builder), "cdef");
    builder = ZMStr<T>(lit<T>("abc")); // exactly full, so that assigning moves
    builder = static_cast<const T*>(builder);
    EXPECT_EQ(str(builder), "abc");
}

TYPED_TEST(ZMStrTest, AppendingFewerThanOneCharacterDoesNothing)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    builder.append(lit<T>("x"), 0).append(lit<T>("x"), -1).append(lit<T>("")).append(nullptr, 3);
    builder.append(T('x'), 0).append(T('x'), -1).append(ZStrToken<T>());
    EXPECT_EQ(str(builder), "abc");
    EXPECT_EQ(builder.Capacity(), 4);
}

TYPED_TEST(ZMStrTest, AppendingItselfDoublesTheText)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    builder.append(builder);
    EXPECT_EQ(str(builder), "abcabc");
    builder.alloc(100);
    builder += builder;
    EXPECT_EQ(str(builder), "abcabcabcabc");
    ZMStr<T> full(lit<T>("xyz"));
    full.append(full[1]);
    full.append(full.at(-1), 5);
    EXPECT_EQ(str(full), "xyzyyyyyy");
    full.append(full.subString(1, 2));
    EXPECT_EQ(str(full), "xyzyyyyyyyz");
}

TYPED_TEST(ZMStrTest, ManyCopiesOfACharacterAreAppended)
{
    using T = TypeParam;
    ZMStr<T> builder;
    EXPECT_EQ(str(builder.append(T('a'), 3).append(T('b'), 1)), "aaab");
    EXPECT_EQ(builder.append(T('c'), 1000).Length(), 1004);
    EXPECT_EQ(builder.count(T('c')), 1000);
}

TYPED_TEST(ZMStrTest, ConcatenatingLeavesTheBuilderAlone)
{
    using T = TypeParam;
    const ZMStr<T> a(lit<T>("ab"));
    EXPECT_EQ(str(a + lit<T>("cd")) + str(a.concat(a)) + str(a), "abcdababab");
    EXPECT_EQ(str(ZMStr<T>() + ZMStr<T>()) + str(ZMStr<T>() + a), "ab");
    EXPECT_EQ(str(a + ZStrToken<T>(lit<T>("x"), -1)), "ab");
}

TYPED_TEST(ZMStrTest, JoiningReplacesTheText)
{
    using T = TypeParam;
    const ZMStr<T> texts[]{
        ZMStr<T>(lit<T>("a")), ZMStr<T>(4), ZMStr<T>(lit<T>("bc")), ZMStr<T>(), ZMStr<T>(lit<T>("d"))};
    ZMStr<T> builder(lit<T>("old"));
    EXPECT_EQ(str(builder.join(texts, 3)), "abc");
    EXPECT_EQ(str(builder.join(texts)), "abc"); // ends at the one without a buffer
    EXPECT_EQ(str(builder.join(texts, 5)), "abcd");
    EXPECT_EQ(str(builder.join(texts, 0)), "");
    EXPECT_EQ(str(builder.join(nullptr)), "");
    ZMStr<T> own[]{ZMStr<T>(lit<T>("x")), ZMStr<T>(lit<T>("y"))};
    EXPECT_EQ(str(own[1].join(own, 2)), "xy");
}

TYPED_TEST(ZMStrTest, ACloneIsABareArray)
{
    using T = TypeParam;
    EXPECT_EQ(taken(ZMStr<T>(lit<T>("abc")).clone()), "abc");
    EXPECT_EQ(taken(ZMStr<T>().clone()), "");
}

TYPED_TEST(ZMStrTest, AStringTakesTheTextOver)
{
    using T = TypeParam;
    ZMStr<T> builder(24);
    builder << lit<T>("abc") << 1;
    EXPECT_EQ(str(ZGStr<T>(builder)), "abc1");
    ZGStr<T> text;
    text = builder;
    EXPECT_EQ(str(text), "abc1");
}

// Padded numbers

TYPED_TEST(ZMStrTest, NumbersArePaddedWithZeros)
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

TYPED_TEST(ZMStrTest, AFlagBesideANumberIsNoWidth)
{
    ZMStr<TypeParam> builder;
    builder.appendValueOf(0, true).appendValueOf(0, false).appendValueOf(5, true).appendValueOf(6);
    EXPECT_EQ(str(builder), "056");
}

TYPED_TEST(ZMStrTest, PaddingAndDigitsGrowOneAfterTheOther)
{
    ZMStr<TypeParam> builder;
    builder.appendValueOf(7, LONG_MIN);
    EXPECT_EQ(str(builder), "7");
    builder.remove(0);
    builder.appendValueOf(7, 3);
    EXPECT_EQ(builder.Capacity(), (0 + 2 + 0 + 1) + 1 + 1 + 1); // two zeros, then a digit
}

TYPED_TEST(ZMStrTest, AppendingNumbersTakesNoMemoryBesideTheBuffer)
{
    ZMStr<TypeParam> builder(200);
    const long before = allocationsMade();
    builder.appendValueOf(LLONG_MIN, 40).appendValueOf(true, false).appendHexOf(1ULL);
    builder << -1234567 << 1.0 / 3 << 2.5F << 'x' << L"wide" << "narrow";
    builder.appendHexOf("abc", 3);
    EXPECT_EQ(allocationsMade(), before);
}

// Inserting and filling

TYPED_TEST(ZMStrTest, InsertingMovesTheTailOn)
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

TYPED_TEST(ZMStrTest, InsertingBeforeTheLastCharacterAppends)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abcd"));
    EXPECT_EQ(str(builder.insert(lit<T>("xy"), 3)), "abcdxy");
    EXPECT_EQ(str(builder.insert(lit<T>("z"), -1)), "abcdxyz");
    EXPECT_EQ(str(ZMStr<T>(lit<T>("a")).insert(lit<T>("b"), 0)), "ab");
}

TYPED_TEST(ZMStrTest, InsertingTakesALengthOrAToken)
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

TYPED_TEST(ZMStrTest, InsertingGrowsOnlyWhenTheTextExceedsTheCapacity)
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
    full.append(T('!')); // and from there everything goes on
    EXPECT_EQ(str(full), "a1234bcd!");
}

TYPED_TEST(ZMStrTest, ABuilderInsertsItsOwnText)
{
    using T = TypeParam;
    for (const long room : {7L, 100L}) {
        for (long start = 0; start < 6; ++start) {
            for (long count = 1; start + count <= 6; ++count) {
                for (const long at : {0L, 1L, 3L, 4L, 6L}) {
                    ZMStr<T> builder(room - 1);
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

TYPED_TEST(ZMStrTest, FillingAddsWhatIsMissing)
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
    EXPECT_EQ(filled(5, -4), "...ab 3"); // before the beginning: not counted from the end once more
    EXPECT_EQ(filled(5, -5), "...ab 3");
    EXPECT_EQ(filled(5, -9), "...ab 3");
    EXPECT_EQ(filled(5, LONG_MIN), "...ab 3");
    EXPECT_EQ(filled(2, 0), "ab 0");
    EXPECT_EQ(filled(1, 0), "ab 0");
    EXPECT_EQ(filled(-1, 0), "ab 0");
    EXPECT_EQ(filled(LONG_MIN, 0), "ab 0");
}

TYPED_TEST(ZMStrTest, FillingGrowsByItsOwnRule)
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

TYPED_TEST(ZMStrTest, PaddingGoesToEitherSide)
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
    EXPECT_EQ(one.lFill(T('0'), 3), 3 - 1); // inserting's way with the last character is not filling's
    EXPECT_EQ(str(one), "00a");
}

// Access

TYPED_TEST(ZMStrTest, CharactersAreReachedFromBothEnds)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    EXPECT_EQ(builder.at(0), T('a'));
    EXPECT_EQ(builder.at(-1), T('c'));
    EXPECT_EQ(builder[-3], T('a'));
    builder.at(-1) = 'x';
    builder[0] = 'y';
    EXPECT_EQ(str(builder), "ybx");
    EXPECT_EQ(std::as_const(builder).at(1), T('b'));
    EXPECT_EQ(std::as_const(builder)[-1], T('x'));
}

TYPED_TEST(ZMStrTest, IndicesOutsideOfTheTextThrow)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    const auto code = [](auto access) {
        try {
            access();
        } catch (ZException& e) {
            EXPECT_STREQ(e.what(), "Index out of range");
            return static_cast<int>(e.code());
        }
        return -1;
    };
    EXPECT_EQ(code([&] { builder.at(-4); }), 1);
    EXPECT_EQ(code([&] { builder.at(LONG_MIN); }), 1);
    EXPECT_EQ(code([&] { std::as_const(builder).at(-4); }), 1);
    EXPECT_EQ(code([&] { builder[-4]; }), 1);
    EXPECT_EQ(code([&] { builder.at(3); }), 0);
    EXPECT_EQ(code([&] { builder.at(LONG_MAX); }), 0);
    EXPECT_EQ(code([&] { std::as_const(builder)[3]; }), 0);
    EXPECT_EQ(code([] { ZMStr<T>().at(-1); }), 1);
    EXPECT_EQ(code([] { ZMStr<T>().at(0); }), 0);
    EXPECT_EQ(code([] { ZMStr<T>(9).at(0); }), 0);
}

TYPED_TEST(ZMStrTest, AnIndexIsTestedAgainstTheCharactersBeforeTheFirstZero)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>(std::string_view("a\0b", 3)), 3);
    EXPECT_EQ(builder.at(0), T('a'));
    EXPECT_THROW(builder.at(1), ZException);
    EXPECT_THROW(builder.at(2), ZException);
    EXPECT_THROW(builder.at(-1), ZException); // 2 from the front
    EXPECT_EQ(builder.at(-3), T('a'));
}

// The stored length

TYPED_TEST(ZMStrTest, EditingInPlaceKeepsTheStoredLength)
{
    using T = TypeParam;
    auto builder = this->holding("  abcdef  ", 20);
    const T* buffer = builder;
    builder.lTrim();
    EXPECT_EQ(builder.Length(), 8);
    builder.rTrim();
    EXPECT_EQ(builder.Length(), 6);
    builder.remove(1, 2);
    EXPECT_EQ(builder.Length(), 4);
    builder.reverse().toUpper();
    EXPECT_EQ(str(builder), "FEDA");
    builder.append(T(' ')).trim();
    EXPECT_EQ(builder.Length(), 4);
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 20);
    builder.replace(lit<T>("E"), lit<T>("eee"));
    EXPECT_EQ(builder.Length(), 6);
    EXPECT_EQ(str(static_cast<const T*>(builder)), "FeeeDA");
    builder << 1;
    EXPECT_EQ(str(builder), "FeeeDA1");
}

TYPED_TEST(ZMStrTest, QueriesUseTheStoredLengthPastZeros)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>(std::string_view("a\0b", 3)), 3);
    EXPECT_EQ(builder.indexOf(T('b')), 2);
    EXPECT_EQ(builder.count(T(0)), 1);
    EXPECT_EQ(builder.compare(lit<T>("a")), 2);
    builder.append(T('c'));
    EXPECT_EQ(builder.Length(), 4);
    EXPECT_EQ(str(builder.reverse()), std::string("cb\0a", 4));
}

TYPED_TEST(ZMStrTest, PiecesAreBuilders)
{
    using T = TypeParam;
    const ZMStr<T> builder(lit<T>("a,,bc"));
    const auto pieces = builder.split(T(','), -1);
    static_assert(
        std::is_same_v<decltype(builder.split(T(','), -1)), ZArray<ZMStr<T>, ZAllocation<ZMStr<T>>>>);
    ASSERT_EQ(pieces.Count(), 3);
    EXPECT_EQ(pieces[2].Capacity(), 3);
    EXPECT_EQ(static_cast<const T*>(pieces[1]), nullptr);
}

TYPED_TEST(ZMStrTest, WhatMayNotFailSaysSo)
{
    using T = TypeParam;
    ZMStr<T> m;
    const T* p = nullptr;
    static_assert(noexcept(m.append(p))&& noexcept(m.append(p, 1L))&& noexcept(m.append(T('x'), 1L)));
    static_assert(noexcept(m += p)&& noexcept(m + p)&& noexcept(m.concat(p))&& noexcept(m.join(&m, 1L)));
    static_assert(noexcept(m << p)&& noexcept(m << 1)&& noexcept(m << 1.5)&& noexcept(m.appendHexOf(1)));
    static_assert(noexcept(m.appendValueOf(1, 2, true))&& noexcept(m.appendValueOf(1.5, true)));
    static_assert(
        noexcept(m.insert(p, 1L, 1L))&& noexcept(m.fill(T('x'), 1L, 1L))&& noexcept(m.lFill(T('x'), 1L)));
    static_assert(
        !noexcept(ZMStr<T>(40)) && !noexcept(m.alloc(1)) && !noexcept(m = p) && !noexcept(m.getBuffer(1)));
}

} // namespace
