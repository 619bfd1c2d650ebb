// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

// Every array has space for its characters, the terminator and one spare element. This program replaces array
// `new` to record the size of the last request.

namespace {

std::size_t g_lastArraySize = 0;

} // namespace

void* operator new[](std::size_t size)
{
    g_lastArraySize = size;
    if (void* block = std::malloc(size))
        return block;
    throw std::bad_alloc();
}

void operator delete[](void* block) noexcept
{
    std::free(block);
}

void operator delete[](void* block, std::size_t) noexcept
{
    std::free(block);
}

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class StringArraySizes : public ::testing::Test {
protected:
    /// The number of elements in the last array that an operation allocated.
    template <typename Operation>
    static long elementsMadeBy(Operation operation)
    {
        g_lastArraySize = 0;
        operation();
        return static_cast<long>(g_lastArraySize / sizeof(T));
    }
};
TYPED_TEST_SUITE(StringArraySizes, Widths, TypeNames);

TYPED_TEST(StringArraySizes, ATextHasTwoElementsMore)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* abc = lit<T>("abc");
    const T* texts[]{abc, abc, nullptr};
    S text;
    EXPECT_EQ(this->elementsMadeBy([&] { text = abc; }), 3 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text = lit<T>(""); }), 0 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text.assign(abc, 2); }), 2 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text.append(abc); }), 5 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text.append(T('x')); }), 6 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text << L"wide" << "narrow"; }), 16 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text.join(texts); }), 6 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text.replace(lit<T>("a"), lit<T>("xx")); }), 8 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text.getBuffer(7); }), 7 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { S::release(S::create(5)); }), 5 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { S::release(S::create(5, T('x'))); }), 5 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { S::release(S::create(0)); }), 0 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { text = S::hexOf("", 0); }), 0 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { S::release(S::create(-5)); }), 0 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { S::release(S::concat(abc, abc)); }), 6 + 2);
}

TYPED_TEST(StringArraySizes, AnAppendedNumberHasThreeElementsMore)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    EXPECT_EQ(this->elementsMadeBy([&] { text.appendValueOf(12345, false); }), 3 + 5 + 3);
    EXPECT_EQ(this->elementsMadeBy([&] { text << -7; }), 8 + 2 + 3);
    EXPECT_EQ(this->elementsMadeBy([&] { text << 2.5; }), 10 + 3 + 3);
    EXPECT_EQ(this->elementsMadeBy([&] { text << true; }), 13 + 1 + 3);
    EXPECT_EQ(this->elementsMadeBy([&] { text.appendHexOf(1U); }), 14 + 8 + 3);
}

TYPED_TEST(StringArraySizes, AppendingNothingAllocatesNothing)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    EXPECT_EQ(this->elementsMadeBy([&] { text.appendValueOf(0, true); }), 0);
    EXPECT_EQ(this->elementsMadeBy([&] { text.appendValueOf(0.0, true); }), 0);
    EXPECT_EQ(this->elementsMadeBy([&] { text.appendHexOf("bytes", 0); }), 0);
    EXPECT_EQ(this->elementsMadeBy([&] { text.appendValueOf("narrow", 0).appendValueOf(L"wide", 0); }), 0);
    EXPECT_EQ(this->elementsMadeBy([&] { text.append(lit<T>("x"), 0); }), 0);
}

TYPED_TEST(StringArraySizes, ABufferHasOneElementBeyondItsCapacity)
{
    using T = TypeParam;
    ZMStr<T> builder;
    EXPECT_EQ(this->elementsMadeBy([&] { builder = ZMStr<T>(40); }), 41 + 1);
    EXPECT_EQ(this->elementsMadeBy([&] { builder.append(T('x'), 99); }), 41 + 99 + 20 + 1 + 1);
    EXPECT_EQ(this->elementsMadeBy([&] { builder.alloc(7); }), 7 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { builder.getBuffer(9); }), 9 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { builder = ZMStr<T>(lit<T>("abc")); }), 3 + 2);
    EXPECT_EQ(this->elementsMadeBy([&] { builder.replace(lit<T>("a"), lit<T>("xx")); }), 4 + 2);
}

} // namespace
