// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/DeathTests.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <new>

// Lengths, counts and positions at the ends of their range: no arithmetic on them overflows, and what exceeds the
// address space fails in the allocation. The test program's `operator new` refuses it, since sanitizers stop at absurd
// sizes.

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class ExtremeLengths : public ::testing::Test {
};
TYPED_TEST_SUITE(ExtremeLengths, Widths, TypeNames);

TYPED_TEST(ExtremeLengths, CompareAsTheNearestDifference)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* text = lit<T>("ab");
    EXPECT_EQ(S::compare(text, 2, text, LONG_MIN), LONG_MAX);
    EXPECT_EQ(S::compare(text, LONG_MIN, text, 2), LONG_MIN);
    EXPECT_EQ(S::compareIgnoreCase(text, 2, text, LONG_MIN), LONG_MAX);
    EXPECT_EQ(S::compareIgnoreCase(text, LONG_MIN, text, 2), LONG_MIN);
    EXPECT_EQ(ZStrToken<T>(text).compare(text, LONG_MIN), LONG_MAX);
    EXPECT_EQ(ZStrToken<T>(text, LONG_MIN).compareIgnoreCase(text), LONG_MIN);
    EXPECT_EQ(S::compare(text, LONG_MIN, text, LONG_MIN), 0);
    EXPECT_TRUE(ZStrToken<T>(text) > ZStrToken<T>(text + 1, LONG_MIN));
    EXPECT_TRUE(S::isLike(text, LONG_MIN, text, 0));
}

TYPED_TEST(ExtremeLengths, OfNegativeTextsCountAsNone)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* text = lit<T>("ab");
    for (const long from : {0L, -1L, LONG_MIN, LONG_MAX}) {
        EXPECT_EQ(S::indexOf(text, LONG_MIN, T('a'), from), -1);
        EXPECT_EQ(S::indexOf(text, LONG_MIN, text, from), -1);
        EXPECT_EQ(S::lastIndexOf(text, LONG_MIN, T('a'), from), -1);
        EXPECT_EQ(S::lastIndexOf(text, LONG_MIN, text, from), -1);
        EXPECT_EQ(S::s_verify(text, LONG_MIN, T('a'), from), -1);
        EXPECT_EQ(S::s_verify(text, LONG_MIN, text, from), -1);
        EXPECT_TRUE(S::subString(text, LONG_MIN, from, from).isEmpty());
        EXPECT_EQ(S::removeSubString(nullptr, LONG_MIN, from, from), 0);
    }
    EXPECT_EQ(S::count(text, LONG_MIN, T('a')) + S::count(text, LONG_MIN, text), 0);
    EXPECT_EQ(S::toInt32(text, LONG_MIN) + S::hexToUInt8(text, LONG_MIN), 0);
    EXPECT_TRUE(S::isNumeric(text, LONG_MIN) && !S::isAlpha(text, LONG_MIN));
    EXPECT_EQ(S::split(text, LONG_MIN, T(','), LONG_MAX).Count(), 1);
    EXPECT_EQ(S::stripIndexOf(text, LONG_MIN, text), 0);
}

TYPED_TEST(ExtremeLengths, OfPositionsAreClamped)
{
    using T = TypeParam;
    const ZMStr<T> text(lit<T>("abc"));
    EXPECT_EQ(str(text.subString(LONG_MIN, LONG_MAX)), "abc");
    EXPECT_EQ(str(text.subString(LONG_MAX, LONG_MAX)), "");
    EXPECT_EQ(str(text.subString(1, LONG_MIN)), "bc");
    EXPECT_EQ(str(text.left(LONG_MAX)) + str(text.right(LONG_MAX)) + str(text.left(LONG_MIN)), "abcabc");
    ZMStr<T> changed(text);
    EXPECT_EQ(changed.remove(LONG_MAX, LONG_MAX) + changed.remove(LONG_MAX, LONG_MIN), 0);
    EXPECT_EQ(str(changed.insert(lit<T>("x"), LONG_MAX).insert(lit<T>("y"), LONG_MIN)), "yabcx");
    EXPECT_THROW(changed.at(LONG_MIN), ZException);
}

TYPED_TEST(ExtremeLengths, OfCapacitiesThrow)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("text"));
    EXPECT_THROW(builder.alloc(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(builder.allocInc(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(builder.allocInc(LONG_MAX - 2), std::bad_alloc);
    EXPECT_THROW(builder.getBuffer(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(builder.assign(builder, LONG_MAX), std::bad_alloc);
    EXPECT_THROW(ZMStr<T>(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(ZMStr<T>(ULONG_MAX), std::bad_alloc); // not -1
    EXPECT_THROW(ZGStr<T>(builder, LONG_MAX), std::bad_alloc);
    EXPECT_THROW(ZGStr<T>::create(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(ZGStr<T>::create(LONG_MAX, T('x')), std::bad_alloc);
    EXPECT_THROW(ZGStr<T>().getBuffer(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(builder.replace(builder.left(1), ZStrToken<T>(builder, LONG_MAX)), std::bad_alloc);
    EXPECT_EQ(str(builder), "text");
    EXPECT_EQ(builder.Capacity(), 5);
}

TYPED_TEST(ExtremeLengths, BelowZeroCountAsZero)
{
    using T = TypeParam;
    for (const long n : {-1L, -1000L, LONG_MIN}) {
        EXPECT_EQ(ZMStr<T>(n).Capacity(), 1);
        ZMStr<T> builder(lit<T>("abcdef"));
        builder.allocInc(n);
        EXPECT_EQ(str(builder), "abcdef");
        EXPECT_EQ(builder.Capacity(), 7 + 3 + 1);
        builder.append(T('x'), n).append(lit<T>("x"), n).insert(lit<T>("x"), n, 0).appendHexOf("x", n);
        EXPECT_EQ(builder.rFill(T('x'), n) + builder.lFill(T('x'), n), 0);
        EXPECT_EQ(str(builder.appendValueOf(7, n)), "abcdef7");
        builder.alloc(n);
        EXPECT_EQ(builder.Capacity(), 1);
        EXPECT_EQ(taken(ZGStr<T>::create(n)) + taken(ZGStr<T>::copy(lit<T>("x"), n)), "");
        EXPECT_EQ(taken(ZGStr<T>::concat(lit<T>("x"), n, lit<T>("x"), n)), "");
    }
}

template <typename T>
class ExtremeLengthsDeathTest : public ::testing::Test {
};
TYPED_TEST_SUITE(ExtremeLengthsDeathTest, Widths, TypeNames);

TYPED_TEST(ExtremeLengthsDeathTest, AppendingMoreThanMemoryHoldsTerminates)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("text"));
    ZGStr<T> string(lit<T>("text"));
    const T* text = lit<T>("more");
    const std::function<void()> operations[]{
        [&] { builder.append(text, LONG_MAX); },
        [&] { builder.append(text, LONG_MAX - 6); },
        [&] { builder.append(T('x'), LONG_MAX); },
        [&] { builder.appendHexOf(text, LONG_MAX); },
        [&] { builder.appendValueOf(1, LONG_MAX); },
        [&] { builder.appendValueOf("other width", LONG_MAX).appendValueOf(L"other width", LONG_MAX); },
        [&] { builder.insert(text, LONG_MAX, 1); },
        [&] { builder.fill(T('x'), LONG_MAX, 0); },
        [&] { keep(builder.concat(ZStrToken<T>(text, LONG_MAX))); },
        [&] { string.append(text, LONG_MAX); },
        [&] { string.appendHexOf(text, LONG_MAX); },
        [&] { string.appendValueOf("other width", LONG_MAX).appendValueOf(L"other width", LONG_MAX); },
        [&] { ZGStr<T>::release(ZGStr<T>::concat(text, LONG_MAX, text, LONG_MAX)); },
    };
    for (const auto& operation : operations) {
        EXPECT_DEATH(operation(), s_terminateMessage) << "operation " << &operation - operations;
    }
}

} // namespace
