// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZValue.h"

#include "tests/support/AllocationFaults.h"
#include "tests/value/Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <limits>
#include <memory>
#include <tuple>
#include <type_traits>

namespace ZSpace::Testing {
namespace {

using Bool = ZValue<bool, 2>;
using UnsignedChar = ZValue<unsigned char, 4>;
using SignedChar = ZValue<signed char, 8>;
using UnsignedShort = ZValue<unsigned short, 16>;
using Short = ZValue<short, 32>;
using UnsignedInt = ZValue<unsigned int, 64>;
using Int = ZValue<int, 128>;
using UnsignedLongLong = ZValue<unsigned long long, 256>;
using LongLong = ZValue<long long, 512>;
using Float = ZValue<float, 4096>;
using Double = ZValue<double, 8192>;
using Char = ZValue<char, 65536>;

static_assert(std::is_base_of_v<Value, Double>);
static_assert(sizeof(Double) == sizeof(Value));
static_assert(!std::is_convertible_v<int, Int>);

template <typename T, ZTypeId tag>
void expectHolds(const T& value, const char* text)
{
    ZValue<T, tag> held(value);
    EXPECT_EQ(held.Type(), tag);
    EXPECT_EQ(held.toCString(), text);
    const ZValue<T, tag> copy(held);
    const std::unique_ptr<ZValue<T, tag>> clone(held.clone());
    EXPECT_EQ(copy.toCString(), text);
    EXPECT_EQ(clone->toCString(), text);
    held = ZValue<T, tag>();
    held.Value(value);
    EXPECT_EQ(held.toCString(), text);
}

TEST(ZValueTest, IsAvailableForEveryKindWhoseContentIsOneObject)
{
    expectHolds<bool, 2>(true, "1");
    expectHolds<unsigned char, 4>(200, "200");
    expectHolds<signed char, 8>(-5, "-5");
    expectHolds<unsigned short, 16>(60000, "60000");
    expectHolds<short, 32>(-300, "-300");
    expectHolds<unsigned int, 64>(4000000000u, "4000000000");
    expectHolds<int, 128>(-7, "-7");
    expectHolds<unsigned long long, 256>(~0ULL, "18446744073709551615");
    expectHolds<long long, 512>(-1, "-1");
    expectHolds<float, 0x1000>(0.5f, "0.5");
    expectHolds<double, 0x2000>(2.5, "2.5");
    expectHolds<char, 65536>('c', "c");
    expectHolds<wchar_t, 0x20000>(L'w', "w");
    expectHolds<const char*, 0x40000>("text", "text");
    expectHolds<const wchar_t*, 0x80000>(L"wide", "wide");
    expectHolds<ZGStr<char>, 0x100000>("text", "text");
    expectHolds<ZGStr<wchar_t>, 0x200000>(L"wide", "wide");
    expectHolds<TZBinary<unsigned char>, 0x400000>(ownedBytes({1, 0xAB}), "01ab");
    expectHolds<ZBITFIELD, 0x800000>(ZBITFIELD(3), "");
    expectHolds<ZTime, 0x1000000>(ZTime(2024, 3, 5, 7, 8, 9, 1), "2024-03-05T07:08:09");
    expectHolds<ZGUID, 0x2000000>(ZGUID(), "{00000000-0000-0000-0000-000000000000}");
    expectHolds<ZReference<ZObject>, 0x8000000>(ZReference<ZObject>(), "");
    expectHolds<void*, 0x10000000>(reinterpret_cast<void*>(0xAB), "00000000000000ab");
}

TEST(ZValueTest, ValueCanBeReadAndReplaced)
{
    Int number(5);
    EXPECT_EQ(number.Value(), 5);
    number.Value(6);
    EXPECT_EQ(number.Value(), 6);
    EXPECT_EQ(number.Type(), 128u);
    EXPECT_EQ(Int().Value(), 0);
    const ZValue<ZGStr<char>, 0x100000> text("text");
    EXPECT_STREQ(text.Value(), "text");
    EXPECT_NE(static_cast<const char*>(text.Value()), static_cast<const char*>(text.Value()));
}

TEST(ZValueTest, CStringsCanBePointersToMutableCharacters)
{
    char text[] = "text";
    ZValue<char*, 0x40000> value(text);
    EXPECT_EQ(value.Value(), text);
    EXPECT_TRUE(static_cast<Value&>(value) == Value(std::in_place, static_cast<const char*>(text)));
    value.Value(text + 1);
    EXPECT_STREQ(value.toCString(), "ext");
}

TEST(ZValueTest, KeepsItsNameWhenItsValueChanges)
{
    Int number(5);
    number.Name("n");
    number.Value(6);
    number = Int(7);
    EXPECT_STREQ(number.Name(), "n");
    const Int copy(number);
    EXPECT_STREQ(copy.Name(), "n");
    EXPECT_EQ(copy.Value(), 7);
}

TEST(ZValueTest, ReturnsADefaultIfItsKindWasChanged)
{
    Int number(5);
    number.clear(number.Type());
    EXPECT_EQ(number.Value(), 0);
    static_cast<Value&>(number) = Value(std::in_place, 'c');
    EXPECT_EQ(number.Value(), 0);
    number.Value(8);
    EXPECT_EQ(number.Value(), 8);
    ZValue<const char*, 0x40000> text("text");
    text.clear(text.Type());
    EXPECT_EQ(text.Value(), nullptr);
}

TEST(ZValueTest, ClonesToItsOwnClass)
{
    const std::unique_ptr<Value> clone(static_cast<const Value&>(Int(5)).clone());
    ASSERT_NE(dynamic_cast<Int*>(clone.get()), nullptr);
    EXPECT_EQ(dynamic_cast<Int&>(*clone).Value(), 5);
}

TEST(ZValueTest, FailedReplacementLeavesTheValueUnchanged)
{
    Int number(5);
    {
        const AllocationFault fault(1);
        EXPECT_THROW(number.Value(6), std::bad_alloc);
    }
    EXPECT_EQ(number.Value(), 5);
}

// Values of the same kind

TEST(ZValueTest, ValuesOfTheSameKindCompareAsUsual)
{
    EXPECT_TRUE(Int(5) == Int(5));
    EXPECT_TRUE(Int(5) != Int(6));
    EXPECT_TRUE(Char('a') == Char('a'));
    EXPECT_TRUE(Double(0.5) == Double(0.5));
    const ZValue<ZBITFIELD, 0x800000> bits(ZBITFIELD(3));
    EXPECT_FALSE(bits == bits);
}

// Values of different kinds: each row lists a first type and the second types that are comparable with it.

template <typename First, typename... Seconds>
struct Row {
};

// clang-format off
using MixedPairs =
    std::tuple<Row<Double, LongLong, Int, Short, SignedChar, UnsignedInt, UnsignedShort, UnsignedChar>,
        Row<Float, LongLong, Int, Short, SignedChar, UnsignedInt, UnsignedShort, UnsignedChar>,
        Row<UnsignedLongLong, Int, Short, SignedChar, UnsignedInt, UnsignedShort, UnsignedChar>,
        Row<LongLong, Int, Short, SignedChar, UnsignedInt, UnsignedShort, UnsignedChar>,
        Row<UnsignedInt, Short, SignedChar, UnsignedShort, UnsignedChar>,
        Row<Int, Short, SignedChar, UnsignedShort, UnsignedChar>,
        Row<UnsignedShort, SignedChar, UnsignedChar>, Row<Short, SignedChar, UnsignedChar>,
        Row<UnsignedChar, SignedChar>, Row<SignedChar, UnsignedChar>>;
// clang-format on

template <typename First, typename Second, typename FirstOfRow, typename... Seconds>
constexpr bool isIn(Row<FirstOfRow, Seconds...>)
{
    return std::is_same_v<First, FirstOfRow> && (std::is_same_v<Second, Seconds> || ...);
}

template <typename First, typename Second, typename... Rows>
constexpr bool isInAny(std::tuple<Rows...>)
{
    return (isIn<First, Second>(Rows()) || ...);
}

template <typename First, typename Second>
void expectComparison()
{
    using A = decltype(First().Value());
    using B = decltype(Second().Value());
    const long long numbers[]{0, 1, -1, 56, 100, 127, 128, 200, 255, 256, -56, -128, 32767, 32768, 65535,
        -32768, INT_MAX, INT_MIN, UINT_MAX, LLONG_MAX, LLONG_MIN, 16777217};
    constexpr bool compares = std::is_same_v<First, Second> || isInAny<First, Second>(MixedPairs());
    for (const long long number : numbers) {
        const B second = static_cast<B>(number);
        for (const long long other : numbers) {
            const A first = static_cast<A>(other);
            ASSERT_EQ(First(first) == Second(second), compares && first == static_cast<A>(second))
                << First().Type() << " " << other << ", " << Second().Type() << " " << number;
            ASSERT_NE(First(first) == Second(second), First(first) != Second(second));
        }
    }
}

template <typename First, typename... Seconds>
void expectComparisonsOf()
{
    (expectComparison<First, Seconds>(), ...);
}

template <typename... Numbers>
void expectAllComparisons()
{
    (expectComparisonsOf<Numbers, Numbers...>(), ...);
}

TEST(MixedComparisonTest, EveryPairOfNumbersFollowsTheTable)
{
    expectAllComparisons<UnsignedChar, SignedChar, UnsignedShort, Short, UnsignedInt, Int, UnsignedLongLong,
        LongLong, Float, Double>();
}

TEST(MixedComparisonTest, SecondNumberIsConvertedModuloTheWidthOfTheFirst)
{
    EXPECT_TRUE(UnsignedShort(65535) == SignedChar(-1));
    EXPECT_TRUE(UnsignedChar(200) == SignedChar(-56));
    EXPECT_TRUE(SignedChar(-56) == UnsignedChar(200));
    EXPECT_TRUE(UnsignedLongLong(~0ULL) == Int(-1));
    EXPECT_TRUE(UnsignedInt(4294967295u) == Short(-1));
    EXPECT_TRUE(LongLong(4294967295LL) == UnsignedInt(4294967295u));
    EXPECT_FALSE(LongLong(-1) == UnsignedInt(4294967295u));
    EXPECT_FALSE(UnsignedShort(255) == SignedChar(-1));
}

TEST(MixedComparisonTest, IntegersAreRoundedToTheFloatingPointType)
{
    EXPECT_TRUE(Float(16777216.0f) == Int(16777217)); // not representable as a float
    EXPECT_FALSE(Double(16777216.0) == Int(16777217));
    EXPECT_TRUE(Double(9223372036854775808.0) == LongLong(LLONG_MAX));
    EXPECT_FALSE(Double(0.5) == Int(0));
    EXPECT_FALSE(Double(std::numeric_limits<double>::quiet_NaN()) == Int(0));
}

TEST(MixedComparisonTest, OtherPairsAreUnequalInEitherOrder)
{
    EXPECT_FALSE(Int(5) == LongLong(5));
    EXPECT_TRUE(LongLong(5) == Int(5));
    EXPECT_FALSE(Short(5) == Double(5));
    EXPECT_FALSE(Double(5) == UnsignedLongLong(5));
    EXPECT_FALSE(Double(5) == Float(5));
    EXPECT_FALSE(Float(5) == Double(5));
    EXPECT_FALSE(UnsignedInt(5) == Int(5));
    EXPECT_FALSE(UnsignedLongLong(5) == LongLong(5));
    EXPECT_FALSE(Int(1) == Bool(true));
    EXPECT_FALSE(Int('a') == Char('a'));
    EXPECT_FALSE((ZValue<ZGStr<char>, 0x100000>() == ZValue<const char*, 0x40000>()));
}

TEST(MixedComparisonTest, ComparedThroughTheBaseDifferentKindsAreUnequal)
{
    const Value& number = LongLong(5);
    EXPECT_FALSE(number == static_cast<const Value&>(Int(5)));
    EXPECT_FALSE(number == Int(5));
}

} // namespace
} // namespace ZSpace::Testing
