// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZValueArray.h"

#include "ZSpace/core/ZException.h"
#include "tests/support/AllocationFaults.h"
#include "tests/value/Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <random>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

constexpr auto s_cell = std::in_place;

ZValueArrayBase numbers(std::initializer_list<int> items)
{
    ZValueArrayBase array(ZTypeId_int);
    for (int number : items)
        array.ArrayAdd(Value(s_cell, number));
    return array;
}

std::vector<int> numbersOf(const ZValueArrayBase& array)
{
    std::vector<int> items;
    for (unsigned int i = 0; i < array.ArrayItemCount(); ++i)
        items.push_back(*static_cast<const int*>(array.ArrayItem(i).Content()));
    return items;
}

const Value* const* blockOf(const ZValueArrayBase& array)
{
    return static_cast<const Value* const*>(array.Content());
}

TEST(ZValueArrayTest, StartsEmptyWithTheKindAndCellSizeOfItsItems)
{
    struct Row {
        ZTypeId item;
        unsigned int size;
    };
    for (const Row& row : {Row{0, 0}, Row{2, 1}, Row{16, 2}, Row{128, 4}, Row{8192, 8}, Row{0x40000, 8},
             Row{0x100000, 8}, Row{0x400000, 24}, Row{0x800000, 0}, Row{0x1000000, 10}, Row{0x2000000, 16},
             Row{0x4000000, 0}, Row{0x8000000, 16}, Row{0x20000000, 0}, Row{3, 0}}) {
        const ZValueArrayBase array(row.item);
        EXPECT_EQ(array.Type(), row.item | 0x80000000);
        EXPECT_EQ(array.ArrayType(), row.item);
        EXPECT_EQ(array.Size(), row.size) << row.item;
        EXPECT_EQ(array.ArrayItemSize(), row.size) << row.item;
        EXPECT_EQ(array.Content(), nullptr);
        EXPECT_EQ(array.ArrayItemCount(), 0u);
        EXPECT_TRUE(array.Name().isEmpty());
    }
}

TEST(ZValueArrayTest, ContentIsANullTerminatedBlockOfPointers)
{
    const ZValueArrayBase array = numbers({7, 8, 9});
    EXPECT_EQ(array.ArrayItemCount(), 3u);
    EXPECT_EQ(blockOf(array)[1], &array.ArrayItem(1));
    EXPECT_EQ(blockOf(array)[3], nullptr);
    EXPECT_THAT(numbersOf(array), ElementsAre(7, 8, 9));
}

TEST(ZValueArrayTest, IndexOutOfRangeThrows)
{
    ZValueArrayBase array(ZTypeId_int);
    const ZValueArrayBase& constant = array;
    const Value value(s_cell, 1);
    EXPECT_THROW(array.ArrayItem(0), ZOutOfBoundsException);
    EXPECT_THROW(constant.ArrayItem(0), ZOutOfBoundsException);
    EXPECT_THROW(array.ArrayItem(0, value), ZOutOfBoundsException);
    EXPECT_THROW(array.ArrayRemove(0), ZOutOfBoundsException);
    array.ArrayAdd(value);
    EXPECT_TRUE(array.ArrayItem(0) == value);
    EXPECT_TRUE(constant.ArrayItem(0) == value);
    for (unsigned int index : {1u, 2u, UINT_MAX}) {
        EXPECT_THROW(array.ArrayItem(index), ZOutOfBoundsException);
        EXPECT_THROW(constant.ArrayItem(index), ZOutOfBoundsException);
        EXPECT_THROW(array.ArrayItem(index, value), ZOutOfBoundsException);
        EXPECT_THROW(array.ArrayRemove(index), ZOutOfBoundsException);
    }
    EXPECT_EQ(array.ArrayItemCount(), 1u);
}

TEST(ZValueArrayTest, AddingAPointerTakesOwnership)
{
    ZValueArrayBase array(ZTypeId_int);
    auto* value = new Value(s_cell, 5);
    array.ArrayAdd(value);
    EXPECT_EQ(&array.ArrayItem(0), value);
    array.ArrayAdd(static_cast<Value*>(nullptr));
    EXPECT_EQ(array.ArrayItemCount(), 1u);
}

TEST(ZValueArrayTest, EachAddReallocatesTheBlock)
{
    ZValueArrayBase array = numbers({1, 2});
    const long alive = blocksAlive();
    const long made = allocationsMade();
    auto* value = new Value();
    array.ArrayAdd(value);
    EXPECT_EQ(allocationsMade() - made, 2); // the value and the block
    EXPECT_EQ(blocksAlive() - alive, 1);
}

TEST(ZValueArrayTest, EachBlockHasOnePointerPerItemAndATerminator)
{
    ZValueArrayBase array(ZTypeId_int);
    for (std::size_t count = 1; count <= 20; ++count) {
        array.ArrayAdd(new Value(s_cell, 5));
        EXPECT_EQ(lastAllocationSize(), (count + 1) * sizeof(Value*));
    }
    const ZValueArrayBase copy(array);
    EXPECT_EQ(blockOf(copy)[20], nullptr);
}

TEST(ZValueArrayTest, RemovedAndReplacedItemsAreFreed)
{
    ZValueArrayBase array(ZTypeId_reference);
    for (int i = 0; i < 3; ++i)
        array.ArrayAdd(Value(ZReference<ZObject>(new CountedObject)));
    const long alive = blocksAlive();
    array.ArrayRemove(1);
    EXPECT_EQ(CountedObject::s_alive, 2);
    const long blocksPerItem = alive - blocksAlive();
    EXPECT_GE(blocksPerItem, 3); // the value, its cell, the object
    array.ArrayItem(0, Value());
    EXPECT_EQ(CountedObject::s_alive, 1);
    EXPECT_EQ(alive - blocksAlive(), 2 * blocksPerItem - 1);
    array.ArrayClear();
    EXPECT_EQ(CountedObject::s_alive, 0);
}

TEST(ZValueArrayTest, IndicesAreNotNarrowed)
{
    ZValueArrayBase array = numbers({1, 2});
    EXPECT_THROW(array.ArrayItem(1ULL << 32), ZOutOfBoundsException);
    EXPECT_THROW(array.ArrayItem(~0ULL), ZOutOfBoundsException);
    EXPECT_THROW(array.ArrayItem(1ULL << 32, Value()), ZOutOfBoundsException);
    EXPECT_THROW(array.ArrayRemove(1ULL << 32), ZOutOfBoundsException);
    EXPECT_EQ(numbersOf(array), (std::vector<int>{1, 2}));
}

TEST(ZValueArrayTest, ItsOwnItemsCanBeAdded)
{
    ZValueArrayBase array = numbers({1, 2});
    array.ArrayAdd(array.ArrayItem(0));
    array.ArrayAdd(static_cast<const Value&>(array)); // and so can the array itself
    EXPECT_EQ(array.ArrayItemCount(), 4u);
    EXPECT_TRUE(array.ArrayItem(2) == array.ArrayItem(0));
    EXPECT_EQ(static_cast<const ZValueArrayBase&>(array.ArrayItem(3)).ArrayItemCount(), 3u);
}

TEST(ZValueArrayTest, ItemsKeepTheirClassAndName)
{
    ZValueArrayBase inner = numbers({1});
    inner.Name("inner");
    ZValueArrayBase outer(inner.Type());
    outer.ArrayAdd(inner);
    const ZValueArrayBase copy(outer);
    ASSERT_NE(dynamic_cast<const ZValueArrayBase*>(&copy.ArrayItem(0)), nullptr);
    EXPECT_STREQ(copy.ArrayItem(0).Name(), "inner");
    EXPECT_TRUE(copy == outer);
}

TEST(ZValueArrayTest, ReplacesAnItemWithACopy)
{
    ZValueArrayBase array = numbers({1, 2, 3});
    array.ArrayItem(1, Value(s_cell, 20));
    EXPECT_THAT(numbersOf(array), ElementsAre(1, 20, 3));
    array.ArrayItem(1, array.ArrayItem(1)); // with itself
    array.ArrayItem(0, array.ArrayItem(2));
    EXPECT_THAT(numbersOf(array), ElementsAre(3, 20, 3));
    EXPECT_EQ(blockOf(array)[3], nullptr);
}

TEST(ZValueArrayTest, RemovesItemsAndKeepsTheTerminator)
{
    ZValueArrayBase array = numbers({1, 2, 3, 4});
    array.ArrayRemove(1);
    EXPECT_THAT(numbersOf(array), ElementsAre(1, 3, 4));
    array.ArrayRemove(2);
    EXPECT_THAT(numbersOf(array), ElementsAre(1, 3));
    array.ArrayRemove(0);
    array.ArrayRemove(0);
    EXPECT_EQ(array.ArrayItemCount(), 0u);
    EXPECT_THROW(array.ArrayRemove(0), ZOutOfBoundsException);
    EXPECT_TRUE(ZValueArrayBase(array) == numbers({}));
    array.ArrayAdd(Value(s_cell, 9));
    EXPECT_THAT(numbersOf(array), ElementsAre(9));
}

TEST(ZValueArrayTest, ClearsItsItemsAndKeepsItsKind)
{
    ZValueArrayBase array = numbers({1, 2, 3});
    array.ArrayClear();
    EXPECT_EQ(array.ArrayItemCount(), 0u);
    EXPECT_EQ(array.Content(), nullptr);
    EXPECT_EQ(array.Type(), 0x80000080u);
    EXPECT_EQ(array.Size(), 4u);
    array.ArrayClear();
    array.ArrayAdd(Value(s_cell, 9));
    EXPECT_THAT(numbersOf(array), ElementsAre(9));
}

TEST(ZValueArrayTest, BehavesLikeAVectorOfNumbers)
{
    std::mt19937 random(17);
    ZValueArrayBase array(ZTypeId_int);
    std::vector<int> model;
    for (int step = 0; step < 2000; ++step) {
        const int number = static_cast<int>(random() % 100);
        const auto index = static_cast<unsigned int>(random() % (model.size() + 1));
        switch (random() % 5) {
        case 0:
            EXPECT_EQ(array.ArrayItemCount(), model.size());
            break;
        case 1:
            if (index < model.size()) {
                array.ArrayRemove(index);
                model.erase(model.begin() + index);
            }
            break;
        case 2:
            if (index < model.size()) {
                array.ArrayItem(index, Value(s_cell, number));
                model[index] = number;
            }
            break;
        default:
            array.ArrayAdd(Value(s_cell, number));
            model.push_back(number);
        }
        ASSERT_EQ(numbersOf(array), model);
        if (model.size() > 40) {
            array.ArrayClear();
            model.clear();
        }
    }
}

TEST(ZValueArrayTest, CopiesItemByItem)
{
    ZValueArrayBase array = numbers({1, 2});
    array.Name("array");
    const ZValueArrayBase copy(array);
    const std::unique_ptr<ZValueArrayBase> clone(array.clone());
    ZValueArrayBase assigned = numbers({3});
    assigned.Name("assigned");
    EXPECT_EQ(&(assigned = array), &assigned);
    array.ArrayItem(0, Value(s_cell, 10));
    EXPECT_THAT(numbersOf(copy), ElementsAre(1, 2));
    EXPECT_THAT(numbersOf(*clone), ElementsAre(1, 2));
    EXPECT_THAT(numbersOf(assigned), ElementsAre(1, 2));
    EXPECT_STREQ(copy.Name(), "array");
    EXPECT_STREQ(assigned.Name(), "assigned");
    const ZValueArrayBase empty(ZTypeId_int);
    assigned = empty;
    EXPECT_EQ(assigned.Content(), nullptr);
    EXPECT_EQ(ZValueArrayBase(empty).Content(), nullptr);
    // An array can be assigned one of its own items.
    ZValueArrayBase outer(array.Type());
    outer.ArrayAdd(array);
    outer = static_cast<const ZValueArrayBase&>(outer.ArrayItem(0));
    EXPECT_THAT(numbersOf(outer), ElementsAre(10, 2));
}

TEST(ZValueArrayTest, EqualityComparesTheItems)
{
    EXPECT_TRUE(numbers({1, 2}) == numbers({1, 2}));
    EXPECT_FALSE(numbers({1, 2}) == numbers({1, 3}));
    EXPECT_FALSE(numbers({1, 2}) == numbers({3, 2}));
    EXPECT_FALSE(numbers({1, 2}) == numbers({1}));
    EXPECT_TRUE(numbers({1, 2}) != numbers({2, 1}));
    EXPECT_TRUE(numbers({}) == numbers({}));
    EXPECT_TRUE(numbers({}) == ZValueArrayBase(ZTypeId_bool)); // as arrays, whatever their item kind
    const Value asValue = numbers({});
    const Value other = ZValueArrayBase(ZTypeId_bool);
    EXPECT_FALSE(asValue == other); // as values, their kinds differ
    EXPECT_TRUE(asValue == numbers({}));
    EXPECT_TRUE(numbers({}) == asValue);
}

TEST(ZValueArrayTest, RemainsUsableAfterAChangeThroughItsBase)
{
    ZValueArrayBase array = numbers({1});
    static_cast<Value&>(array) = Value(s_cell, 5LL);
    EXPECT_EQ(array.ArrayItemCount(), 0u);
    EXPECT_THROW(array.ArrayItem(0), ZOutOfBoundsException);
    array.ArrayClear();
    EXPECT_EQ(array.Type(), ZTypeId_long_long);
    array.ArrayAdd(Value(s_cell, 6));
    EXPECT_THAT(numbersOf(array), ElementsAre(6));
    array.clear(array.Type());
    EXPECT_EQ(array.ArrayItemCount(), 0u);
    array.ArrayAdd(Value(s_cell, 7));
    EXPECT_THAT(numbersOf(array), ElementsAre(7));
}

TEST(ZValueArrayTest, AddingFreesAContentThatCameThroughItsBase)
{
    ZValueArrayBase array(ZTypeId_int);
    static_cast<Value&>(array) = Value(ZReference<ZObject>(new CountedObject));
    EXPECT_EQ(CountedObject::s_alive, 1);
    array.ArrayAdd(Value(s_cell, 6));
    EXPECT_EQ(CountedObject::s_alive, 0);
    EXPECT_THAT(numbersOf(array), ElementsAre(6));
}

TEST(ZValueArrayTest, FailedAllocationsLeaveTheArrayUnchanged)
{
    ZValueArrayBase array = numbers({1, 2});
    const Value value(s_cell, 3);
    for (long nth = 1; nth <= 3; ++nth) { // the clone, its cell, the block
        const long alive = blocksAlive();
        const AllocationFault fault(nth);
        EXPECT_THROW(array.ArrayAdd(value), std::bad_alloc);
        EXPECT_EQ(blocksAlive(), alive);
    }
    {
        auto* passed = new Value(s_cell, 3);
        const long alive = blocksAlive();
        const AllocationFault fault(1);
        EXPECT_THROW(array.ArrayAdd(passed), std::bad_alloc);
        EXPECT_EQ(blocksAlive(), alive - 2); // ownership was transferred anyway
    }
    for (long nth = 1; nth <= 2; ++nth) {
        const long alive = blocksAlive();
        const AllocationFault fault(nth);
        EXPECT_THROW(array.ArrayItem(0, value), std::bad_alloc);
        EXPECT_EQ(blocksAlive(), alive);
    }
    for (long nth = 1; nth <= 3; ++nth) {
        const AllocationFault fault(nth);
        EXPECT_THROW(array.ArrayAdd(&array.ArrayItem(0)), std::bad_alloc); // adds a copy
        EXPECT_EQ(array.ArrayItemCount(), 2u);
    }
    EXPECT_THAT(numbersOf(array), ElementsAre(1, 2));
    EXPECT_EQ(failEachAllocation([&] { ZValueArrayBase{array}; }), 5);
    EXPECT_EQ(failEachAllocation([&] { ZValueArrayBase{ZTypeId_time}; }), 0);
}

} // namespace
} // namespace ZSpace::Testing
