// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZMemory.h"

#include "tests/support/Probes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

template <typename T>
T sample(int i);

template <>
char sample(int i)
{
    return static_cast<char>('a' + i);
}
template <>
long sample(int i)
{
    return 1000L * (i + 1);
}
template <>
void* sample(int i)
{
    static char places[16];
    return places + i;
}
template <>
std::string sample(int i)
{
    return std::string(40, sample<char>(i));
}
template <>
Counted sample(int i)
{
    return {i + 1};
}

/// Tests for elements that are copied as bytes and for those that are copied by assignment.
template <typename T>
class ZMemoryTest : public testing::Test {
protected:
    static T* filled(long n)
    {
        T* block = ZMemory<T>::allocate(n);
        for (long i = 0; i < n; ++i)
            block[i] = sample<T>(static_cast<int>(i));
        return block;
    }
};

struct ElementName {
    template <typename T>
    static std::string GetName(int)
    {
        if (std::is_same_v<T, char>)
            return "Byte";
        if (std::is_same_v<T, long>)
            return "Long";
        if (std::is_same_v<T, void*>)
            return "Pointer";
        return std::is_same_v<T, std::string> ? "String" : "Counted";
    }
};

using Elements = testing::Types<char, long, void*, std::string, Counted>;
TYPED_TEST_SUITE(ZMemoryTest, Elements, ElementName);

TYPED_TEST(ZMemoryTest, AllocatesValueInitializedElements)
{
    TypeParam* block = ZMemory<TypeParam>::allocate(3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(block[i], TypeParam());
    ZMemory<TypeParam>::deallocate(block);
}

TYPED_TEST(ZMemoryTest, AllocatesNothingForNoElements)
{
    EXPECT_EQ(ZMemory<TypeParam>::allocate(0), nullptr);
    EXPECT_EQ(ZMemory<TypeParam>::allocate(-1), nullptr);
}

TYPED_TEST(ZMemoryTest, DeallocateIgnoresNull)
{
    ZMemory<TypeParam>::deallocate(nullptr);
}

TYPED_TEST(ZMemoryTest, CopiesTheRequestedCount)
{
    TypeParam* source = this->filled(3);
    TypeParam* target = ZMemory<TypeParam>::allocate(3);
    ZMemory<TypeParam>::copyTo(target, source, 2);
    EXPECT_EQ(target[0], source[0]);
    EXPECT_EQ(target[1], source[1]);
    EXPECT_EQ(target[2], TypeParam());
    ZMemory<TypeParam>::copyTo(target, source, -1);
    ZMemory<TypeParam>::copyTo(nullptr, source, 0);
    EXPECT_EQ(target[0], source[0]);
    ZMemory<TypeParam>::deallocate(target);
    ZMemory<TypeParam>::deallocate(source);
}

TYPED_TEST(ZMemoryTest, CopyOfClampsTheCountToTheCapacity)
{
    TypeParam* source = this->filled(4);
    for (const auto& [count, copied] :
        {std::pair(-1L, 0L), {0L, 0L}, {1L, 1L}, {2L, 2L}, {4L, 2L}, {LONG_MAX, 2L}}) {
        TypeParam* block = ZMemory<TypeParam>::copyOf(source, count, 2);
        for (long i = 0; i < 2; ++i)
            EXPECT_EQ(block[i], i < copied ? source[i] : TypeParam()) << count;
        ZMemory<TypeParam>::deallocate(block);
    }
    TypeParam* block = ZMemory<TypeParam>::copyOf(nullptr, 2, 2);
    EXPECT_EQ(block[1], TypeParam());
    ZMemory<TypeParam>::deallocate(block);
    EXPECT_EQ(ZMemory<TypeParam>::copyOf(source, 2, LONG_MIN), nullptr);
    ZMemory<TypeParam>::deallocate(source);
}

TYPED_TEST(ZMemoryTest, MovesElementsDownInsideABlock)
{
    TypeParam* block = this->filled(4);
    ZMemory<TypeParam>::copyTo(block, block + 1, 3);
    EXPECT_EQ(block[0], sample<TypeParam>(1));
    EXPECT_EQ(block[1], sample<TypeParam>(2));
    EXPECT_EQ(block[2], sample<TypeParam>(3));
    ZMemory<TypeParam>::deallocate(block);
}

TYPED_TEST(ZMemoryTest, RelocatingToTheSameCountReturnsTheBlock)
{
    TypeParam* block = this->filled(2);
    EXPECT_EQ(ZMemory<TypeParam>::relocate(block, 2, 2), block);
    ZMemory<TypeParam>::deallocate(block);
    EXPECT_EQ(ZMemory<TypeParam>::relocate(nullptr, 0, 0), nullptr);
}

TYPED_TEST(ZMemoryTest, RelocatingToMoreValueInitializesTheRest)
{
    TypeParam* block = ZMemory<TypeParam>::relocate(this->filled(2), 2, 4);
    EXPECT_EQ(block[0], sample<TypeParam>(0));
    EXPECT_EQ(block[1], sample<TypeParam>(1));
    EXPECT_EQ(block[2], TypeParam());
    EXPECT_EQ(block[3], TypeParam());
    ZMemory<TypeParam>::deallocate(block);
}

TYPED_TEST(ZMemoryTest, RelocatingToFewerTruncates)
{
    TypeParam* block = ZMemory<TypeParam>::relocate(this->filled(3), 3, 1);
    EXPECT_EQ(block[0], sample<TypeParam>(0));
    ZMemory<TypeParam>::deallocate(block);
}

TYPED_TEST(ZMemoryTest, RelocatingToNoneFreesTheBlock)
{
    EXPECT_EQ(ZMemory<TypeParam>::relocate(this->filled(3), 3, 0), nullptr);
    EXPECT_EQ(ZMemory<TypeParam>::relocate(this->filled(3), 3, -2), nullptr);
}

TYPED_TEST(ZMemoryTest, RelocatesFromAnEmptyBlock)
{
    TypeParam* block = ZMemory<TypeParam>::relocate(nullptr, 0, 2);
    EXPECT_EQ(block[1], TypeParam());
    ZMemory<TypeParam>::deallocate(block);
}

class ZMemoryLifetimeTest : public testing::Test {
protected:
    void SetUp() override { Counted::reset(); }
};

TEST_F(ZMemoryLifetimeTest, DestroysFromLastToFirst)
{
    Counted* block = ZMemory<Counted>::allocate(3);
    for (int i = 0; i < 3; ++i)
        block[i] = Counted(i);
    Counted::s_tally.destroyed.clear();
    ZMemory<Counted>::deallocate(block);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2, 1, 0));
    EXPECT_EQ(Counted::s_tally.alive, 0);
}

TEST_F(ZMemoryLifetimeTest, CopiesByAssignmentAndSkipsElementsAlreadyInPlace)
{
    Counted* block = ZMemory<Counted>::allocate(3);
    ZMemory<Counted>::copyTo(block, block, 3);
    EXPECT_EQ(Counted::s_tally.assigned, 0);
    ZMemory<Counted>::copyTo(block, block + 1, 2);
    EXPECT_EQ(Counted::s_tally.assigned, 2);
    EXPECT_EQ(Counted::s_tally.copied, 0);
    ZMemory<Counted>::deallocate(block);
}

TEST_F(ZMemoryLifetimeTest, RelocatesByAssignment)
{
    Counted* block = ZMemory<Counted>::relocate(ZMemory<Counted>::allocate(3), 3, 5);
    EXPECT_EQ(Counted::s_tally.assigned, 3);
    EXPECT_EQ(Counted::s_tally.alive, 5);
    block = ZMemory<Counted>::relocate(block, 5, 2);
    EXPECT_EQ(Counted::s_tally.assigned, 5);
    EXPECT_EQ(Counted::s_tally.alive, 2);
    ZMemory<Counted>::deallocate(block);
}

TEST_F(ZMemoryLifetimeTest, RelocateKeepsTheOldBlockIfCopyingThrows)
{
    Counted* block = ZMemory<Counted>::allocate(3);
    block[0] = Counted(9);
    Counted::s_copiesLeft = 1;
    EXPECT_THROW(std::ignore = ZMemory<Counted>::relocate(block, 3, 4), std::runtime_error);
    EXPECT_EQ(Counted::s_tally.alive, 3);
    EXPECT_EQ(block[0].number(), 9);
    ZMemory<Counted>::deallocate(block);
}

} // namespace
} // namespace ZSpace::Testing
