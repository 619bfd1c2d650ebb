// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class ZMStrCapacityTest : public ::testing::Test {
};
TYPED_TEST_SUITE(ZMStrCapacityTest, Widths, TypeNames);

using Capacities = std::vector<long>;

/// Appends `c` repeatedly and returns the capacities in between.
template <typename T>
Capacities capacitiesOfAppendingTo(ZMStr<T> builder, int steps)
{
    Capacities capacities;
    for (int i = 0; i < steps; ++i)
        capacities.push_back(builder.append(T('x')).Capacity());
    return capacities;
}

TYPED_TEST(ZMStrCapacityTest, AppendingGrowsByHalfAndTheNewCharacters)
{
    using T = TypeParam;
    EXPECT_EQ(capacitiesOfAppendingTo(ZMStr<T>(), 11), (Capacities{2, 5, 5, 9, 9, 9, 9, 15, 15, 15, 15}));
    EXPECT_EQ(capacitiesOfAppendingTo(ZMStr<T>(0), 6), (Capacities{3, 6, 6, 6, 11, 11}));
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

TYPED_TEST(ZMStrCapacityTest, HexadecimalGrowsBySeventeen)
{
    using T = TypeParam;
    EXPECT_EQ(ZMStr<T>().appendHexOf(static_cast<unsigned char>(1)).Capacity(), 18);
    EXPECT_EQ(ZMStr<T>(10).appendHexOf(1U).Capacity(), 11);
    EXPECT_EQ(ZMStr<T>(10).append(lit<T>("a")).appendHexOf(1U).Capacity(), 11);
    EXPECT_EQ(ZMStr<T>(10).append(lit<T>("ab")).appendHexOf(1U).Capacity(), 11 + 5 + 17 + 1);
    EXPECT_EQ(ZMStr<T>(10).appendHexOf(1ULL).Capacity(), 11 + 5 + 17 + 1);
    const char bytes[5]{};
    EXPECT_EQ(ZMStr<T>(10).appendHexOf(bytes, 5).Capacity(), 11 + 10 + 5 + 1); // like any string
}

TYPED_TEST(ZMStrCapacityTest, AssigningGrowsWithoutCountingTheOldText)
{
    using T = TypeParam;
    auto builder = builderOf<T>("12345678", 11);
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

TYPED_TEST(ZMStrCapacityTest, ConcatenatingReservesBothTexts)
{
    using T = TypeParam;
    EXPECT_EQ(ZMStr<T>(lit<T>("abc")).concat(lit<T>("de")).Capacity(), 3 + 2 + 2);
    EXPECT_EQ(ZMStr<T>(40).concat(lit<T>("de")).Capacity(), 0 + 2 + 2);
    EXPECT_EQ(ZMStr<T>(lit<T>("abc")).concat(ZStrToken<T>(lit<T>("de"), -1)).Capacity(), 3 + 0 + 2);
    EXPECT_EQ(ZMStr<T>(lit<T>("abc")).concat(ZStrToken<T>()).Capacity(), 3 + 0 + 2);
}

TYPED_TEST(ZMStrCapacityTest, JoiningReservesAllTexts)
{
    using T = TypeParam;
    const ZMStr<T> texts[]{ZMStr<T>(lit<T>("abc")), ZMStr<T>(40), ZMStr<T>(lit<T>("de"))};
    EXPECT_EQ(ZMStr<T>().join(texts, 3).Capacity(), 3 + 0 + 2 + 2);
    EXPECT_EQ(ZMStr<T>().join(texts, 1).Capacity(), 3 + 2);
    EXPECT_EQ(ZMStr<T>(40).join(texts, 0).Capacity(), 0 + 2);
}

TYPED_TEST(ZMStrCapacityTest, AddingNothingAllocatesNothing)
{
    using T = TypeParam;
    ZMStr<T> builder;
    EXPECT_EQ(builder.insert(lit<T>("x"), 0, 0).Capacity(), 0);
    EXPECT_EQ(builder.fill(T('x'), 0, 0) + builder.rFill(T('x'), 0) + builder.lFill(T('x'), 0), 0);
    EXPECT_EQ(builder.append(lit<T>("x"), 0).append(T('x'), 0).appendHexOf("x", 0).Capacity(), 0);
    EXPECT_EQ(builder.appendValueOf(0, 0, true).appendValueOf(0.0, true).Capacity(), 0);
}

TYPED_TEST(ZMStrCapacityTest, AllocatingKeepsWhatFits)
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

TYPED_TEST(ZMStrCapacityTest, AllocatingMoreAddsHalfTheCapacity)
{
    using T = TypeParam;
    auto builder = builderOf<T>("abc", 11);
    builder.allocInc(7);
    EXPECT_EQ(builder.Capacity(), 7 + 11 + 5 + 1);
    EXPECT_EQ(str(builder), "abc");
    ZMStr<T> none;
    none.allocInc(7);
    EXPECT_EQ(none.Capacity(), 8);
}

TYPED_TEST(ZMStrCapacityTest, GettingABufferDiscardsTheTextAndSetsTheLength)
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

TYPED_TEST(ZMStrCapacityTest, ClearingFreesAndSwappingExchanges)
{
    using T = TypeParam;
    auto a = builderOf<T>("abc", 11);
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

TYPED_TEST(ZMStrCapacityTest, PaddingANumberGrowsAsAppendingZerosAndThenDigits)
{
    using T = TypeParam;
    for (long capacity = 0; capacity < 8; ++capacity) {
        for (const int number : {0, 1, 9, 10, 99, 100, 101, 5000, -1, -9, -10}) {
            for (int width = -1; width < 6; ++width) {
                ZMStr<T> padded(capacity);
                padded.append(T('x')).appendValueOf(number, width);
                ZMStr<T> pieces(capacity);
                pieces.append(T('x'));
                pieces.append(T('0'), width - static_cast<long>(std::to_string(number).size()));
                pieces << number;
                EXPECT_EQ(str(padded), str(pieces)) << capacity << ' ' << number << ' ' << width;
                EXPECT_EQ(padded.Capacity(), pieces.Capacity()) << capacity << ' ' << number << ' ' << width;
            }
        }
    }
}

TYPED_TEST(ZMStrCapacityTest, AZeroThatIsLeftOutIsStillPadded)
{
    ZMStr<TypeParam> text(20);
    text.appendValueOf(0, 2, true).append(TypeParam(' ')).appendValueOf(0, 3, true);
    EXPECT_EQ(str(text), "00 000");
}

} // namespace
