// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "tests/core/ListSupport.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/CountedTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <string>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;
using ZListCopyTest = CountedTest;

TEST_F(ZListCopyTest, CopyIsDeepAndInOrder)
{
    ZList<std::string> original;
    for (const char* text : {"a", "b", "c", "d", "e"})
        original.add(text);
    const ZList<std::string> copy(original);
    original[0] = "changed";
    EXPECT_THAT(copy, ElementsAre("a", "b", "c", "d", "e"));
    EXPECT_EQ(copy.Capacity(), 7);
    EXPECT_EQ(ZList<std::string>(ZList<std::string>()).Capacity(), 0);
}

TEST_F(ZListCopyTest, CopyHasTheCapacityOfAppendingOneByOne)
{
    ZList<int> list;
    for (int i = 0; i < 40; ++i) {
        const ZList<int> copy(list);
        ZList<int> assigned = listOf({1, 2, 3});
        assigned = list;
        EXPECT_EQ(copy.Capacity(), list.Capacity());
        EXPECT_EQ(assigned.Capacity(), list.Capacity());
        list.add(i);
    }
}

TEST_F(ZListCopyTest, CopyAllocatesItsSlotsOnce)
{
    ZList<int> list;
    for (int i = 0; i < 40; ++i) {
        list.add(i);
        const long allocations = allocationsMade();
        const ZList<int> copy(list);
        EXPECT_EQ(allocationsMade() - allocations, 1 + list.Count());
    }
}

TEST_F(ZListCopyTest, AssignmentReplacesAllElements)
{
    ZList<Counted> target = countedList(3);
    const ZList<Counted> source = countedList(5);
    Counted::s_tally.destroyed.clear();
    EXPECT_EQ(&(target = source), &target);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2, 1, 0));
    EXPECT_THAT(target, ElementsAre(0, 1, 2, 3, 4));
    EXPECT_NE(&target[0], &source[0]);
    target = ZList<Counted>(ZList<Counted>());
    EXPECT_EQ(target.Count(), 0);
    EXPECT_EQ(target.Capacity(), 0);
}

TEST_F(ZListCopyTest, SelfAssignmentDoesNothing)
{
    ZList<int> list = listOf({1, 2});
    const int* first = &list[0];
    const ZList<int>& self = list;
    list = self;
    EXPECT_EQ(&list[0], first);
    EXPECT_THAT(list, ElementsAre(1, 2));
    list = std::move(const_cast<ZList<int>&>(self));
    EXPECT_THAT(list, ElementsAre(1, 2));
}

TEST_F(ZListCopyTest, MovingTransfersTheElements)
{
    ZList<int> original = listOf({1, 2});
    const int* first = &original[0];
    ZList<int> moved(std::move(original));
    EXPECT_EQ(&moved[0], first);
    EXPECT_EQ(original.Count(), 0); // NOLINT(bugprone-use-after-move): empty is what is promised
    ZList<int> target = listOf({3});
    target = std::move(moved);
    EXPECT_EQ(&target[0], first);
    EXPECT_EQ(moved.Count(), 0); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(target.Capacity(), 3);
}

TEST_F(ZListCopyTest, CopiedHandlesShareTheirObjects)
{
    const ZRef<Counted> handle(new Counted(1));
    ZList<ZRef<Counted>> list;
    list.add(handle);
    list.add(handle);
    ZRef<Counted>* empty = list.add(ZRef<Counted>());
    EXPECT_TRUE(!*empty);
    EXPECT_EQ(handle.RefCount(), 3);
    {
        const ZList<ZRef<Counted>> copy(list);
        EXPECT_EQ(handle.RefCount(), 5);
        EXPECT_TRUE(!copy[2]);
    }
    EXPECT_EQ(handle.RefCount(), 3);
    list.il_removeAll();
    EXPECT_EQ(handle.RefCount(), 1);
}

TEST_F(ZListCopyTest, AllocationFailuresOfCopyingPropagateWithoutLeaks)
{
    ZList<std::string> original;
    for (char c = 'a'; c < 'f'; ++c)
        original.add(std::string(50, c));
    // The slots, then each element and its string.
    EXPECT_EQ(failEachAllocation([&] { const ZList<std::string> copy(original); }), 1 + 5 * 2);
}

TEST_F(ZListCopyTest, CopyConstructorPropagatesExceptionsOfElements)
{
    const ZList<Counted> original = countedList(3);
    Counted::s_copiesLeft = 2;
    const long blocks = blocksAlive();
    EXPECT_THROW(ZList<Counted>{original}, std::runtime_error);
    EXPECT_EQ(Counted::s_tally.alive, 3);
    EXPECT_EQ(blocksAlive(), blocks);
}

TEST_F(ZListCopyTest, AssignmentPropagatesAllocationFailuresAndLeavesTheListEmpty)
{
    const ZList<int> source = listOf({1, 2, 3, 4, 5});
    EXPECT_EQ(failEachAllocation([&] {
        ZList<int> target;
        target = source;
    }),
        1 + 5);

    ZList<Counted> target = countedList(3);
    const ZList<Counted> other = countedList(4);
    {
        const AllocationFault fault(3);
        EXPECT_THROW(target = other, std::bad_alloc);
    }
    EXPECT_EQ(target.Count(), 0);
    EXPECT_EQ(target.Capacity(), 0);
    EXPECT_EQ(Counted::s_tally.alive, 4);
}

TEST_F(ZListCopyTest, ShrinkingAndMovingAllocateNothing)
{
    ZList<int> list = listOf({1, 2, 3});
    const long allocations = allocationsMade();
    list.il_removeAt(1);
    ZList<int> moved(std::move(list));
    list = std::move(moved);
    list.il_removeAll();
    EXPECT_EQ(allocationsMade(), allocations);
}

} // namespace
} // namespace ZSpace::Testing
