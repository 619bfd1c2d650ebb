// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZMap.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/CountedTest.h"
#include "tests/support/DeathTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

using Names = ZMap<const wchar_t*, const wchar_t*>;
using Texts = ZMap<std::string, std::string>;

static_assert(std::is_base_of_v<ZSet<ZPair<int, int>>, ZMap<int, int>>);
static_assert(std::is_base_of_v<ZListing<int>, ZSet<int>>);
static_assert(std::is_base_of_v<ZList<int>, ZSet<int>>);
static_assert(sizeof(Names) == 3 * sizeof(void*));
static_assert(sizeof(ZPair<const wchar_t*, const wchar_t*>) == 3 * sizeof(void*));
static_assert(noexcept(std::declval<Texts&>().add(std::declval<std::string>(), std::declval<std::string>())));

TEST(ZPairTest, PointsToItsOwnKey)
{
    const wchar_t* key = L"key";
    const wchar_t* value = L"value";
    const ZPair<const wchar_t*, const wchar_t*> pair(key, value);
    EXPECT_EQ(wordAt(&pair, 0), asWord(key));
    EXPECT_EQ(wordAt(&pair, 1), asWord(value));
    EXPECT_EQ(wordAt(&pair, 2), asWord(&pair));

    const ZPair<const wchar_t*, const wchar_t*> copy(pair);
    EXPECT_EQ(wordAt(&copy, 2), asWord(&copy));
    EXPECT_EQ(copy.second, value);

    ZPair<const wchar_t*, const wchar_t*> assigned;
    EXPECT_EQ(assigned.first, nullptr);
    EXPECT_EQ(assigned.second, nullptr);
    assigned = pair;
    EXPECT_EQ(wordAt(&assigned, 2), asWord(&assigned));
    EXPECT_EQ(assigned.key(), key);
    EXPECT_EQ(assigned.second, value);
}

TEST(ZPairTest, PairsAreEqualWhenTheirKeysAre)
{
    using Pair = ZPair<std::string, int>;
    EXPECT_TRUE(Pair("a", 1) == Pair("a", 2));
    EXPECT_FALSE(Pair("a", 1) == Pair("b", 1));
    EXPECT_TRUE(Pair("a", 1) != Pair("b", 1));
}

/// Compares by number only; the mark identifies the object.
struct Item {
    Item(int n, int m)
        : number(n)
        , mark(m)
    {
    }
    Counted number;
    int mark;
    friend bool operator==(const Item& a, const Item& b) { return a.number == b.number; }
};

using ZSetTest = CountedTest;

TEST_F(ZSetTest, AppendsNewElements)
{
    ZSet<Item> set;
    auto* a = new Item(1, 10);
    auto* b = new Item(2, 20);
    EXPECT_EQ(set.il_add(a), a);
    EXPECT_EQ(set.il_add(b), b);
    EXPECT_EQ(&set[0], a);
    EXPECT_EQ(&set[1], b);
    EXPECT_EQ(set.Capacity(), 3);
}

TEST_F(ZSetTest, NewElementReplacesAnEqualOne)
{
    ZSet<Item> set;
    for (int i = 0; i < 3; ++i)
        set.il_add(new Item(i, 0));
    Counted::s_tally.destroyed.clear();
    auto* newer = new Item(1, 10);
    EXPECT_EQ(set.il_add(newer), newer);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
    EXPECT_EQ(set.Count(), 3);
    EXPECT_EQ(&set[1], newer);
}

TEST_F(ZSetTest, AddingAStoredElementKeepsIt)
{
    ZSet<Item> set;
    Item* item = set.il_add(new Item(1, 10));
    EXPECT_EQ(set.il_add(item), item);
    EXPECT_EQ(set.Count(), 1);
    EXPECT_EQ(set[0].mark, 10);
}

TEST_F(ZSetTest, AddedCopiesFollowTheSameRule)
{
    ZSet<Item> set;
    set.add(Item(1, 10));
    set.add(Item(2, 20));
    Item* newer = set.add(Item(1, 30));
    EXPECT_EQ(set.Count(), 2);
    EXPECT_EQ(newer, &set[0]);
    EXPECT_EQ(set[0].mark, 30);
    const ZSet<Item> copy(set);
    EXPECT_EQ(copy[0].mark, 30);
    EXPECT_EQ(copy.il_find(Item(2, 0)), 1);
}

class ZMapTest : public testing::Test { };

TEST_F(ZMapTest, AddReturnsTheNewPair)
{
    Texts map;
    ZPair<std::string, std::string>& pair = map.add("a", "1");
    EXPECT_EQ(&pair, &map[0]);
    EXPECT_EQ(pair.first, "a");
    EXPECT_EQ(pair.second, "1");
    EXPECT_EQ(map.Count(), 1);
}

TEST_F(ZMapTest, AddOverwritesTheValueOfAnExistingKey)
{
    Texts map;
    map.add("a", "1");
    auto& pair = map.add("b", "2");
    map.add("c", "3");
    EXPECT_EQ(&map.add("b", "4"), &pair);
    EXPECT_EQ(map.Count(), 3);
    EXPECT_EQ(pair.second, "4");
    EXPECT_EQ(map[1].first, "b");
}

TEST_F(ZMapTest, PointerKeysCompareAsAddresses)
{
    const wchar_t here[] = L"key";
    const wchar_t there[] = L"key";
    Names map;
    map.add(here, L"1");
    map.add(here, L"2");
    EXPECT_EQ(map.Count(), 1);
    EXPECT_STREQ(map[0].second, L"2");
    map.add(there, L"3");
    EXPECT_EQ(map.Count(), 2);
    EXPECT_STREQ(*map.find(here), L"2");
    EXPECT_STREQ(*map.find(there), L"3");
    EXPECT_EQ(map.il_find({there, nullptr}, 0), 1);
}

TEST_F(ZMapTest, AddAcceptsOwnKeysAndValues)
{
    Texts map;
    map.add("a", std::string(50, '1'));
    map.add(map[0].second, map[0].second);
    map.add(map[0].first, map[1].second);
    EXPECT_EQ(map.Count(), 2);
    EXPECT_EQ(map[1].second, std::string(50, '1'));
}

TEST_F(ZMapTest, GetCopiesTheValueOfAKey)
{
    Texts map;
    map.add("a", "1");
    std::string out = "before";
    EXPECT_FALSE(map.get("b", out));
    EXPECT_EQ(out, "before");
    EXPECT_TRUE(map.get("a", out));
    EXPECT_EQ(out, "1");
}

TEST_F(ZMapTest, AtReturnsTheValueOfAKeyOrThrows)
{
    ZMap<int, std::string> map;
    map.add(7, "a");
    map.at(7) += "b";
    EXPECT_EQ(std::as_const(map).at(7), "ab");
    EXPECT_EQ(map[0].second, "ab"); // a position, not the key
    try {
        std::ignore = map.at(0);
        FAIL();
    } catch (const ZXCOutOfBounds& e) {
        EXPECT_STREQ(e.where(), "ZMap::at");
    }
}

TEST_F(ZMapTest, FindReturnsAStablePointer)
{
    Texts map;
    EXPECT_EQ(map.find("a"), nullptr);
    map.add("a", "1");
    const std::string* value = map.find("a");
    for (int i = 0; i < 20; ++i)
        map.add(std::to_string(i), "x");
    EXPECT_EQ(map.find("a"), value);
    EXPECT_EQ(*value, "1");
}

TEST_F(ZMapTest, CopyIsDeep)
{
    Texts original;
    for (char key = 'a'; key < 'f'; ++key)
        original.add(std::string(1, key), std::string(1, key));
    const Texts copy(original);
    Texts assigned;
    assigned.add("z", "z");
    assigned = original;
    original.add("a", "changed");
    for (const Texts* map : {&copy, static_cast<const Texts*>(&assigned)}) {
        EXPECT_EQ(map->Count(), 5);
        EXPECT_EQ(map->Capacity(), 7);
        EXPECT_EQ(*map->find("a"), "a");
        EXPECT_EQ((*map)[4].first, "e");
        for (const ZPair<std::string, std::string>& pair : *map)
            EXPECT_EQ(&pair.key(), &pair.first);
    }
}

TEST_F(ZMapTest, CopyMergesPairsWithEqualKeys)
{
    Texts original;
    original.add("a", "1");
    original.add("b", "2");
    original[1].first = "a";
    const Texts copy(original);
    EXPECT_EQ(copy.Count(), 1);
    EXPECT_EQ(copy[0].second, "2");
}

TEST_F(ZMapTest, MovingTransfersThePairs)
{
    Texts original;
    original.add("a", "1");
    const std::string* value = original.find("a");
    Texts moved(std::move(original));
    EXPECT_EQ(moved.find("a"), value);
    Texts target;
    target = std::move(moved);
    EXPECT_EQ(target.find("a"), value);
}

TEST_F(ZMapTest, AgreesWithAReferenceOverRandomOperations)
{
    std::mt19937 random(20240604);
    ZMap<int, std::string> map;
    std::map<int, std::string> reference;
    for (int step = 0; step < 5000; ++step) {
        const int key = static_cast<int>(random() % 60);
        if (random() % 4) {
            std::string value = std::to_string(random());
            EXPECT_EQ(map.add(key, value).second, value);
            reference[key] = std::move(value);
        } else if (const long index = map.il_find({key, {}}, 0); index >= 0) {
            EXPECT_TRUE(map.il_removeAt(index));
            EXPECT_EQ(reference.erase(key), 1u);
        }
        ASSERT_EQ(map.Count(), static_cast<long>(reference.size()));
        const int other = static_cast<int>(random() % 60);
        const auto found = reference.find(other);
        const std::string* value = map.find(other);
        ASSERT_EQ(value != nullptr, found != reference.end());
        ASSERT_EQ(value ? *value : "", value ? found->second : "");
    }
}

TEST_F(ZMapTest, AllocationFailuresOfCopyingPropagateWithoutLeaks)
{
    Texts original;
    for (char key = 'a'; key < 'd'; ++key)
        original.add(std::string(50, key), std::string(50, key));
    // The slots, then each pair, its key and its value.
    EXPECT_EQ(failEachAllocation([&] { const Texts copy(original); }), 1 + 3 * 3);
}

TEST(ZMapDeathTest, AddTerminatesIfAnyAllocationFails)
{
    for (long nth = 1; nth <= 4; ++nth) {
        EXPECT_EXIT(
            {
                Texts map;
                const std::string text(50, 'a');
                const AllocationFault fault(nth); // the pair, its key, its value, the slots
                map.add(text, text);
            },
            testing::KilledBySignal(SIGABRT), s_terminateMessage);
    }
}

TEST(ZMapDeathTest, OverwritingTerminatesIfAllocationFails)
{
    EXPECT_EXIT(
        {
            Texts map;
            const std::string text(50, 'a');
            map.add("a", "1");
            const std::string key = "a";
            const AllocationFault fault(1);
            map.add(key, text);
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

TEST(ZSetDeathTest, AppendingTerminatesIfAllocationFails)
{
    EXPECT_EXIT(
        {
            ZSet<int> set;
            int* item = new int(1);
            const AllocationFault fault(1);
            set.il_add(item);
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

} // namespace
} // namespace ZSpace::Testing
