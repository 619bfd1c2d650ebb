// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"

#include "tests/core/ListSupport.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/CountedTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;
using ZListTest = CountedTest;

static_assert(sizeof(ZList<std::string>) == 3 * sizeof(void*));
static_assert(
    std::is_nothrow_move_constructible_v<ZList<int>> && std::is_nothrow_move_assignable_v<ZList<int>>);
static_assert(noexcept(std::declval<ZList<std::string>&>().add(std::declval<std::string>())));
static_assert(noexcept(std::declval<ZList<int>&>().il_removeAt(0)));
static_assert(noexcept(std::declval<ZList<int>&>().il_removeAll()));

TEST_F(ZListTest, EmptyListIsAllZeros)
{
    const ZList<int> list;
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Capacity(), 0);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(wordAt(&list, i), 0u);
    EXPECT_TRUE(list.begin() == list.end());
}

TEST_F(ZListTest, FieldsAreSlotsThenCountThenCapacity)
{
    ZList<int> list;
    int* first = list.add(7);
    int* second = list.add(8);
    EXPECT_EQ(*reinterpret_cast<int**>(wordAt(&list, 0)), first);
    EXPECT_EQ(reinterpret_cast<int**>(wordAt(&list, 0))[1], second);
    EXPECT_EQ(wordAt(&list, 1), 2u);
    EXPECT_EQ(wordAt(&list, 2), 3u);
}

TEST_F(ZListTest, CapacityIsOneLessThanAPowerOfTwo)
{
    ZList<int> list;
    std::vector<long> capacities;
    for (int i = 0; i < 16; ++i) {
        list.add(i);
        capacities.push_back(list.Capacity());
    }
    EXPECT_THAT(capacities, ElementsAre(1, 3, 3, 7, 7, 7, 7, 15, 15, 15, 15, 15, 15, 15, 15, 31));
}

TEST_F(ZListTest, AddReturnsTheStoredElement)
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

TEST_F(ZListTest, AddAcceptsAnOwnElement)
{
    ZList<std::string> list;
    list.add(std::string(50, 'a'));
    for (int i = 0; i < 8; ++i)
        list.add(list[0]);
    EXPECT_THAT(list, testing::Each(std::string(50, 'a')));
    EXPECT_EQ(list.Count(), 9);
}

TEST_F(ZListTest, RemoveAtDeletesOneElementAndClosesTheGap)
{
    ZList<Counted> list = countedList(5);
    const Counted* last = &list[4];
    Counted::s_tally.destroyed.clear();
    EXPECT_TRUE(list.il_removeAt(1));
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
    EXPECT_THAT(list, ElementsAre(0, 2, 3, 4));
    EXPECT_EQ(&list[3], last);
    EXPECT_EQ(list.Capacity(), 7);
}

TEST_F(ZListTest, RemoveAtKeepsTheCapacity)
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

TEST_F(ZListTest, RemoveAtRejectsIndicesOutOfRange)
{
    ZList<int> list = listOf({1, 2, 3});
    for (long index : {-1L, 3L, 4L, LONG_MIN, LONG_MAX})
        EXPECT_FALSE(list.il_removeAt(index));
    EXPECT_THAT(list, ElementsAre(1, 2, 3));
    EXPECT_EQ(list.Capacity(), 3);
    ZList<int> empty;
    EXPECT_FALSE(empty.il_removeAt(0));
}

TEST_F(ZListTest, RemoveAtAcceptsAnIndexInsideTheRemovedElement)
{
    ZList<long> list;
    list.add(9);
    list.add(1);
    list.add(8);
    EXPECT_TRUE(list.il_removeAt(list[1]));
    EXPECT_THAT(list, ElementsAre(9, 8));
}

TEST_F(ZListTest, RemoveAllDeletesFromLastToFirst)
{
    ZList<Counted> list = countedList(3);
    Counted::s_tally.destroyed.clear();
    EXPECT_TRUE(list.il_removeAll());
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2, 1, 0));
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_EQ(wordAt(&list, i), 0u);
    EXPECT_FALSE(list.il_removeAll());
    list.add(Counted(1));
    EXPECT_EQ(list.Capacity(), 1);
}

TEST_F(ZListTest, RemoveAllOfAnEmptiedListFreesTheSlots)
{
    ZList<int> list = listOf({1});
    list.il_removeAt(0);
    EXPECT_EQ(list.Capacity(), 1);
    EXPECT_FALSE(list.il_removeAll());
    EXPECT_EQ(list.Capacity(), 0);
}

TEST_F(ZListTest, DestructorDeletesFromLastToFirst)
{
    {
        const ZList<Counted> list = countedList(3);
        Counted::s_tally.destroyed.clear();
    }
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2, 1, 0));
}

/// Records the count of its list on destruction.
struct Onlooker {
    const ZList<Onlooker>* list = nullptr;
    std::vector<long>* seen = nullptr;
    ~Onlooker()
    {
        if (list)
            seen->push_back(list->Count());
    }
};

TEST_F(ZListTest, ElementDestructorsSeeOnlyLiveElements)
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

TEST_F(ZListTest, PointerElementsAreNotOwned)
{
    int x = 0;
    ZList<int*> list;
    int** added = list.add(&x);
    EXPECT_EQ(*added, &x);
    EXPECT_THAT(list, ElementsAre(&x));
}

TEST_F(ZListTest, IteratorsDereferenceToElements)
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

TEST_F(ZListTest, SwapExchangesTheElements)
{
    ZList<int> a = listOf({1, 2});
    ZList<int> b = listOf({3});
    const int* first = &a[0];
    a.swap(b);
    EXPECT_THAT(a, ElementsAre(3));
    EXPECT_THAT(b, ElementsAre(1, 2));
    EXPECT_EQ(&b[0], first);
}

TEST_F(ZListTest, AdoptStoresTheElementItself)
{
    ZList<Counted> list;
    auto element = std::make_unique<Counted>(7);
    const Counted* address = element.get();
    EXPECT_EQ(list.adopt(std::move(element)), address);
    EXPECT_EQ(&list[0], address);
}

TEST_F(ZListTest, AdoptPropagatesAllocationFailuresAndDeletesTheElement)
{
    ZList<Counted> list = countedList(3); // no capacity left
    auto element = std::make_unique<Counted>(3);
    {
        const AllocationFault fault(1);
        EXPECT_THROW(list.adopt(std::move(element)), std::bad_alloc);
    }
    EXPECT_EQ(list.Count(), 3);
    EXPECT_EQ(Counted::s_tally.alive, 3);
}

TEST_F(ZListTest, TakeLastRemovesAnElementWithoutDeletingIt)
{
    ZList<Counted> list = countedList(3);
    const Counted* last = &list[2];
    EXPECT_EQ(list.takeLast().get(), last);
    EXPECT_EQ(list.Count(), 2);
    EXPECT_EQ(list.Capacity(), 3);
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

} // namespace
} // namespace ZSpace::Testing
