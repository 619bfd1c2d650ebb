// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"

#include "ZSpace/core/ZRef.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

namespace ZSpace {
namespace {

using testing::ElementsAre;
using ZSpace::Testing::AllocationFault;
using ZSpace::Testing::allocationsMade;
using ZSpace::Testing::blocksAlive;
using ZSpace::Testing::Counted;
using ZSpace::Testing::failEachAllocation;
using ZSpace::Testing::wordAt;

static_assert(sizeof(ZList<std::string>) == 3 * sizeof(void*));
static_assert(
    std::is_nothrow_move_constructible_v<ZList<int>> && std::is_nothrow_move_assignable_v<ZList<int>>);
static_assert(noexcept(std::declval<ZList<std::string>&>().add(std::declval<std::string>())));
static_assert(noexcept(std::declval<ZList<int>&>().il_removeAt(0)));
static_assert(noexcept(std::declval<ZList<int>&>().il_removeAll()));

ZList<int> listOf(std::initializer_list<int> numbers)
{
    ZList<int> list;
    for (int number : numbers)
        list.add(number);
    return list;
}

class ZListTest : public testing::Test {
protected:
    void SetUp() override { Counted::reset(); }
    void TearDown() override
    {
        EXPECT_EQ(Counted::s_tally.alive, 0);
        Counted::reset();
    }

    static ZList<Counted> counted(int n)
    {
        ZList<Counted> list;
        for (int i = 0; i < n; ++i)
            list.add(Counted(i));
        return list;
    }
};

TEST_F(ZListTest, EmptyListHoldsNothing)
{
    const ZList<int> list;
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Capacity(), 0);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(wordAt(&list, i), 0u);
    EXPECT_TRUE(list.begin() == list.end());
}

TEST_F(ZListTest, HoldsItsSlotsThenCountAndCapacity)
{
    ZList<int> list;
    int* first = list.add(7);
    int* second = list.add(8);
    EXPECT_EQ(*reinterpret_cast<int**>(wordAt(&list, 0)), first);
    EXPECT_EQ(reinterpret_cast<int**>(wordAt(&list, 0))[1], second);
    EXPECT_EQ(wordAt(&list, 1), 2u);
    EXPECT_EQ(wordAt(&list, 2), 3u);
}

TEST_F(ZListTest, CapacityGrowsToOneLessThanAPowerOfTwo)
{
    ZList<int> list;
    std::vector<long> capacities;
    for (int i = 0; i < 16; ++i) {
        list.add(i);
        capacities.push_back(list.Capacity());
    }
    EXPECT_THAT(capacities, ElementsAre(1, 3, 3, 7, 7, 7, 7, 15, 15, 15, 15, 15, 15, 15, 15, 31));
}

TEST_F(ZListTest, AddGivesTheStoredElement)
{
    ZList<std::string> list;
    std::string* a = list.add("a");
    EXPECT_EQ(a, &list[0]);
    *a = "b";
    EXPECT_THAT(list, ElementsAre("b"));
    list[0] = "c";
    const ZList<std::string>& constant = list;
    EXPECT_EQ(constant[0], "c");
}

TEST_F(ZListTest, AddCopiesOnceAndMovesNoElement)
{
    {
        ZList<Counted> list;
        std::vector<Counted*> added;
        for (int i = 0; i < 100; ++i)
            added.push_back(list.add(Counted(i)));
        EXPECT_EQ(Counted::s_tally.copied, 100);
        EXPECT_EQ(Counted::s_tally.assigned, 0);
        for (int i = 0; i < 100; ++i)
            EXPECT_EQ(added[static_cast<std::size_t>(i)], &list[i]);
    }
}

TEST_F(ZListTest, OwnElementCanBeAdded)
{
    ZList<std::string> list;
    list.add(std::string(50, 'a'));
    for (int i = 0; i < 8; ++i)
        list.add(list[0]);
    EXPECT_THAT(list, testing::Each(std::string(50, 'a')));
    EXPECT_EQ(list.Count(), 9);
}

TEST_F(ZListTest, RemovesOneElementAndClosesTheGap)
{
    ZList<Counted> list = counted(5);
    const Counted* last = &list[4];
    Counted::s_tally.destroyed.clear();
    EXPECT_TRUE(list.il_removeAt(1));
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
    EXPECT_THAT(list, ElementsAre(0, 2, 3, 4));
    EXPECT_EQ(&list[3], last);
    EXPECT_EQ(list.Capacity(), 7);
}

TEST_F(ZListTest, RemovesTheLastElementAndKeepsTheCapacity)
{
    ZList<int> list = listOf({1, 2, 3});
    const int* first = &list[0];
    EXPECT_TRUE(list.il_removeAt(2));
    EXPECT_THAT(list, ElementsAre(1, 2));
    EXPECT_EQ(&list[0], first);
    EXPECT_EQ(list.Capacity(), 3);
    EXPECT_TRUE(list.il_removeAt(0));
    EXPECT_TRUE(list.il_removeAt(0));
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Capacity(), 3);
}

TEST_F(ZListTest, RemovesNothingOutsideOfTheList)
{
    ZList<int> list = listOf({1, 2, 3});
    for (long index : {-1L, 3L, 4L, LONG_MIN, LONG_MAX})
        EXPECT_FALSE(list.il_removeAt(index));
    EXPECT_THAT(list, ElementsAre(1, 2, 3));
    EXPECT_EQ(list.Capacity(), 3);
    ZList<int> empty;
    EXPECT_FALSE(empty.il_removeAt(0));
}

TEST_F(ZListTest, IndexMayBeAPartOfTheElementThatGoes)
{
    ZList<long> list;
    list.add(9);
    list.add(1);
    list.add(8);
    EXPECT_TRUE(list.il_removeAt(list[1]));
    EXPECT_THAT(list, ElementsAre(9, 8));
}

TEST_F(ZListTest, RemovesAllFromTheLastToTheFirst)
{
    ZList<Counted> list = counted(3);
    Counted::s_tally.destroyed.clear();
    EXPECT_TRUE(list.il_removeAll());
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2, 1, 0));
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(wordAt(&list, i), 0u);
    EXPECT_FALSE(list.il_removeAll());
    list.add(Counted(1));
    EXPECT_EQ(list.Capacity(), 1);
}

TEST_F(ZListTest, RemovingAllOfAnEmptiedListFreesItsSlots)
{
    ZList<int> list = listOf({1});
    list.il_removeAt(0);
    EXPECT_EQ(list.Capacity(), 1);
    EXPECT_FALSE(list.il_removeAll());
    EXPECT_EQ(list.Capacity(), 0);
}

TEST_F(ZListTest, DestructionRemovesAllFromTheLastToTheFirst)
{
    {
        const ZList<Counted> list = counted(3);
        Counted::s_tally.destroyed.clear();
    }
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2, 1, 0));
}

/// An element that looks at its list while it is destroyed.
struct Onlooker {
    const ZList<Onlooker>* list = nullptr;
    std::vector<long>* seen = nullptr;
    ~Onlooker()
    {
        if (list)
            seen->push_back(list->Count());
    }
};

TEST_F(ZListTest, DestructorsSeeOnlyElementsThatLive)
{
    std::vector<long> seen;
    ZList<Onlooker> list;
    for (int i = 0; i < 3; ++i) {
        Onlooker* added = list.add(Onlooker());
        added->list = &list;
        added->seen = &seen;
    }
    list.il_removeAt(0);
    list.il_removeAll();
    EXPECT_THAT(seen, ElementsAre(2, 1, 0));
}

TEST_F(ZListTest, CopyHasElementsOfItsOwnInOrder)
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

TEST_F(ZListTest, CopyHasTheCapacityOfAddingOneByOne)
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

TEST_F(ZListTest, AssignmentReplacesAllElements)
{
    ZList<Counted> target = counted(3);
    const ZList<Counted> source = counted(5);
    Counted::s_tally.destroyed.clear();
    EXPECT_EQ(&(target = source), &target);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2, 1, 0));
    EXPECT_THAT(target, ElementsAre(0, 1, 2, 3, 4));
    EXPECT_NE(&target[0], &source[0]);
    target = ZList<Counted>(ZList<Counted>());
    EXPECT_EQ(target.Count(), 0);
    EXPECT_EQ(target.Capacity(), 0);
}

TEST_F(ZListTest, SelfAssignmentDoesNothing)
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

TEST_F(ZListTest, MovingHandsTheElementsOver)
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

TEST_F(ZListTest, CopiesOfHandlesShareTheirObjects)
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

TEST_F(ZListTest, HoldsPointersThatBelongToOthers)
{
    int x = 0;
    ZList<int*> list;
    int** added = list.add(&x);
    EXPECT_EQ(*added, &x);
    EXPECT_THAT(list, ElementsAre(&x));
}

TEST_F(ZListTest, IteratorsWalkTheElements)
{
    ZList<std::string> list;
    list.add("a");
    list.add("bc");
    for (std::string& text : list)
        text += "!";
    auto it = list.begin();
    EXPECT_EQ(it->size(), 2u);
    EXPECT_EQ(*it++, "a!");
    EXPECT_EQ(*it, "bc!");
    EXPECT_TRUE(++it == list.end());
    EXPECT_EQ(std::as_const(list).begin()->size(), 2u);
}

TEST_F(ZListTest, AgreesWithAReferenceOverRandomOperations)
{
    std::mt19937 random(20240603);
    ZList<std::string> list;
    std::vector<std::string> reference;
    for (int step = 0; step < 5000; ++step) {
        const long size = static_cast<long>(reference.size());
        switch (random() % 8) {
        case 0:
        case 1:
        case 2:
        case 3: {
            std::string text(random() % 30, static_cast<char>('a' + random() % 26));
            EXPECT_EQ(*list.add(text), text);
            reference.push_back(std::move(text));
            break;
        }
        case 4:
        case 5: {
            const long index = static_cast<long>(random() % 100) - 20;
            const bool inside = index >= 0 && index < size;
            EXPECT_EQ(list.il_removeAt(index), inside);
            if (inside)
                reference.erase(reference.begin() + index);
            break;
        }
        case 6: {
            const ZList<std::string> copy(list);
            list = copy;
            break;
        }
        default:
            if (random() % 20 == 0) {
                EXPECT_EQ(list.il_removeAll(), size > 0);
                reference.clear();
            }
        }
        ASSERT_EQ(list.Count(), static_cast<long>(reference.size()));
        ASSERT_TRUE(std::equal(list.begin(), list.end(), reference.begin()));
    }
}

TEST_F(ZListTest, CopyThatFailsLeavesNothingBehind)
{
    ZList<std::string> original;
    for (char c = 'a'; c < 'f'; ++c)
        original.add(std::string(50, c));
    // The slots, and then an element and its text each.
    EXPECT_EQ(failEachAllocation([&] { const ZList<std::string> copy(original); }), 1 + 5 * 2);
}

TEST_F(ZListTest, CopyPassesOnThatAnElementCannotBeCopied)
{
    const ZList<Counted> original = counted(3);
    Counted::s_copiesLeft = 2;
    const long blocks = blocksAlive();
    EXPECT_THROW(ZList<Counted>{original}, std::runtime_error);
    EXPECT_EQ(Counted::s_tally.alive, 3);
    EXPECT_EQ(blocksAlive(), blocks);
}

TEST_F(ZListTest, AssignmentPassesTheWantOfMemoryOnAndIsEmptyThen)
{
    const ZList<int> source = listOf({1, 2, 3, 4, 5});
    EXPECT_EQ(failEachAllocation([&] {
        ZList<int> target;
        target = source;
    }),
        1 + 5);

    ZList<Counted> target = counted(3);
    const ZList<Counted> other = counted(4);
    {
        const AllocationFault fault(3);
        EXPECT_THROW(target = other, std::bad_alloc);
    }
    EXPECT_EQ(target.Count(), 0);
    EXPECT_EQ(target.Capacity(), 0);
    EXPECT_EQ(Counted::s_tally.alive, 4);
}

TEST_F(ZListTest, ShrinkingAndMovingAllocateNothing)
{
    ZList<int> list = listOf({1, 2, 3});
    const long allocations = allocationsMade();
    list.il_removeAt(1);
    ZList<int> moved(std::move(list));
    list = std::move(moved);
    list.il_removeAll();
    EXPECT_EQ(allocationsMade(), allocations);
}

using ZListDeathTest = ZListTest;

TEST_F(ZListDeathTest, AddEndsTheProcessAtEachFailure)
{
    for (long nth = 1; nth <= 3; ++nth) {
        EXPECT_EXIT(
            {
                ZList<std::string> list;
                const std::string text(50, 'a');
                const AllocationFault fault(nth); // the element, its text, the slots
                list.add(text);
            },
            testing::KilledBySignal(SIGABRT), "");
    }
}

TEST_F(ZListDeathTest, AddEndsTheProcessWhenTheElementCannotBeCopied)
{
    EXPECT_EXIT(
        {
            ZList<Counted> list;
            Counted::s_copiesLeft = 0;
            list.add(Counted(1));
        },
        testing::KilledBySignal(SIGABRT), "");
}

TEST_F(ZListDeathTest, AssignmentEndsTheProcessWhenAnElementCannotBeCopied)
{
    EXPECT_EXIT(
        {
            const ZList<Counted> source = counted(3);
            ZList<Counted> target;
            Counted::s_copiesLeft = 1;
            target = source;
        },
        testing::KilledBySignal(SIGABRT), "");
}

struct Thrower {
    bool armed = false;
    ~Thrower() noexcept(false)
    {
        if (armed)
            throw std::runtime_error("from a destructor");
    }
};

TEST_F(ZListDeathTest, ElementThatThrowsWhileRemovedEndsTheProcess)
{
    ZList<Thrower> list;
    list.add(Thrower());
    EXPECT_EXIT((list[0].armed = true, list.il_removeAt(0)), testing::KilledBySignal(SIGABRT), "");
    EXPECT_EXIT((list[0].armed = true, list.il_removeAll()), testing::KilledBySignal(SIGABRT), "");
}

class ZListingTest : public testing::Test {
protected:
    ZListingTest()
    {
        for (int number : {5, 6, 5, 7, 6})
            m_list.add(number);
    }

    ZListing<int> m_list; // NOLINT(misc-non-private-member-variables-in-classes)
};

TEST_F(ZListingTest, FindsTheFirstMatchFromTheStartOn)
{
    EXPECT_EQ(m_list.il_find(5), 0);
    EXPECT_EQ(m_list.il_find(5, 0), 0);
    EXPECT_EQ(m_list.il_find(5, 1), 2);
    EXPECT_EQ(m_list.il_find(5, 3), -1);
    EXPECT_EQ(m_list.il_find(6, 4), 4);
    EXPECT_EQ(m_list.il_find(8, 0), -1);
}

TEST_F(ZListingTest, NegativeStartSearchesTheLastElementsOnly)
{
    EXPECT_EQ(m_list.il_find(6, -1), 4);
    EXPECT_EQ(m_list.il_find(7, -1), -1);
    EXPECT_EQ(m_list.il_find(7, -2), 3);
    EXPECT_EQ(m_list.il_find(5, -5), 0);
    EXPECT_EQ(m_list.il_find(5, -6), 0);
    EXPECT_EQ(m_list.il_find(5, LONG_MIN), 0);
}

TEST_F(ZListingTest, StartAtOrPastTheEndFindsNothing)
{
    EXPECT_EQ(m_list.il_find(6, 5), -1);
    EXPECT_EQ(m_list.il_find(6, 6), -1);
    EXPECT_EQ(m_list.il_find(6, LONG_MAX), -1);
}

TEST_F(ZListingTest, EmptyListHasNothingToFind)
{
    const ZListing<int> empty;
    for (long start : {-1L, 0L, 1L})
        EXPECT_EQ(empty.il_find(5, start), -1);
}

TEST_F(ZListingTest, IsCopiedLikeAList)
{
    const ZListing<int> copy(m_list);
    EXPECT_THAT(copy, ElementsAre(5, 6, 5, 7, 6));
    m_list = ZListing<int>();
    EXPECT_EQ(m_list.Count(), 0);
}

} // namespace
} // namespace ZSpace
