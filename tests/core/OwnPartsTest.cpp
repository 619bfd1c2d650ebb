// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Runs every mutating operation of the containers with arguments that belong to the container itself. Memory
// errors show under AddressSanitizer.

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZReference.h"
#include "ZSpace/core/ZSet.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

const std::string s_long(50, 'a');

// Elements that contain containers of their own kind, for assignments from inside an element

template <template <typename> typename Container>
struct Tree {
    explicit Tree(std::string text = {})
        : name(std::move(text))
    {
    }
    friend bool operator==(const Tree& a, const Tree& b) { return a.name == b.name; }

    std::string name;
    Container<Tree> children;
};

template <typename T>
using ExactArray = ZArray<T>;
template <typename T>
using BufferedArray = ZArray<T, ZAllocationBuf<T>>;

/// A container whose first of two elements has two children.
template <typename Container>
Container grown()
{
    using Node = typename Container::value_type;
    Container container;
    container.add(Node("a" + s_long));
    container.add(Node("b" + s_long));
    container[0].children.add(Node("c" + s_long));
    container[0].children.add(Node("d" + s_long));
    return container;
}

template <typename Container>
void expectChildren(const Container& container)
{
    ASSERT_EQ(container.Count(), 2);
    EXPECT_EQ(container[0].name, "c" + s_long);
    EXPECT_EQ(container[1].name, "d" + s_long);
}

template <typename Container>
class OwnPartsTest : public testing::Test {
};

struct ContainerName {
    template <typename Container>
    static std::string GetName(int)
    {
        using Node = typename Container::value_type;
        if constexpr (std::is_base_of_v<ZSet<Node>, Container>)
            return "ZSet";
        else if constexpr (std::is_base_of_v<ZListing<Node>, Container>)
            return "ZListing";
        else if constexpr (std::is_base_of_v<ZList<Node>, Container>)
            return "ZList";
        else
            return sizeof(Container) == 2 * sizeof(void*) ? "ZArray" : "BufferedZArray";
    }
};

using Containers = testing::Types<ExactArray<Tree<ExactArray>>, BufferedArray<Tree<BufferedArray>>,
    ZList<Tree<ZList>>, ZListing<Tree<ZListing>>, ZSet<Tree<ZSet>>>;
TYPED_TEST_SUITE(OwnPartsTest, Containers, ContainerName);

TYPED_TEST(OwnPartsTest, AssignmentFromAContainerInsideAnElement)
{
    TypeParam container = grown<TypeParam>();
    container = std::as_const(container)[0].children;
    expectChildren(container);
}

TYPED_TEST(OwnPartsTest, MoveAssignmentFromAContainerInsideAnElement)
{
    TypeParam container = grown<TypeParam>();
    container = std::move(container[0].children);
    expectChildren(container);
}

TYPED_TEST(OwnPartsTest, AssignmentOfTheContainerToOneInsideAnElement)
{
    TypeParam container = grown<TypeParam>();
    container[1].children = container;
    EXPECT_EQ(container.Count(), 2);
    ASSERT_EQ(container[1].children.Count(), 2);
    expectChildren(container[1].children[0].children);
}

TYPED_TEST(OwnPartsTest, SelfAssignmentAndSelfMove)
{
    TypeParam container = grown<TypeParam>();
    TypeParam& self = container;
    container = std::as_const(self);
    container = std::move(self);
    ASSERT_EQ(container.Count(), 2);
    expectChildren(container[0].children);
}

TYPED_TEST(OwnPartsTest, AddingAnElementOrAChildOfOne)
{
    TypeParam container = grown<TypeParam>();
    for (int i = 0; i < 9; ++i) {
        container.add(container[0]);
        container.add(container[0].children[1]);
    }
    EXPECT_EQ(container[0].name, "a" + s_long);
    EXPECT_EQ(container[container.Count() - 1].name, "d" + s_long);
    expectChildren(container[0].children);
}

TYPED_TEST(OwnPartsTest, AddingAContainerToItsOwnChild)
{
    TypeParam container = grown<TypeParam>();
    container[0].children.add(container[0]);
    ASSERT_EQ(container[0].children.Count(), 3);
    expectChildren(container[0].children[2].children);
}

template <typename Array>
class OwnPartsOfArraysTest : public testing::Test {
};

using Arrays = testing::Types<ZArray<long>, ZArray<long, ZAllocationBuf<long>>>;
TYPED_TEST_SUITE(OwnPartsOfArraysTest, Arrays, ContainerName);

TYPED_TEST(OwnPartsOfArraysTest, ResizingAndRemovingByCountsAndIndicesStoredInTheArray)
{
    TypeParam array;
    for (long number : {1L, 2L, 0L, 7L, 8L})
        array.add(number);
    array.remove(array[0], array[1]);
    EXPECT_THAT(array, ElementsAre(1, 7, 8));
    array.resize(array[0]);
    EXPECT_THAT(array, ElementsAre(1));
    array = TypeParam(array.begin(), array[0]);
    EXPECT_THAT(array, ElementsAre(1));
}

template <typename List>
class OwnPartsOfListsTest : public testing::Test {
};

using Lists = testing::Types<ZList<long>, ZListing<long>, ZSet<long>>;
TYPED_TEST_SUITE(OwnPartsOfListsTest, Lists, ContainerName);

TYPED_TEST(OwnPartsOfListsTest, RemovingAtAnIndexStoredInTheList)
{
    TypeParam list;
    for (long number : {2L, 1L, 3L})
        list.add(number);
    EXPECT_TRUE(list.il_removeAt(list[1]));
    EXPECT_TRUE(list.il_removeAt(list[1] - 2));
    EXPECT_THAT(list, ElementsAre(2));
}

TEST(OwnPartsOfZListingTest, FindingAnElementFromAStartStoredInTheList)
{
    ZListing<long> list;
    for (long number : {1L, 0L, 1L})
        list.add(number);
    EXPECT_EQ(list.il_find(list[0], list[0]), 2);
}

TEST(OwnPartsOfZSetTest, ReplacingAnElementByItselfAndByItsCopy)
{
    ZSet<std::string> set;
    set.add(s_long);
    set.add("b");
    EXPECT_EQ(set.il_add(&set[0]), &set[0]);
    set.add(set[0]);
    EXPECT_THAT(set, ElementsAre(s_long, "b"));
}

TEST(OwnPartsOfZMapTest, AddingAndGettingOwnKeysAndValues)
{
    ZMap<std::string, std::string> map;
    map.add("key" + s_long, "value" + s_long);
    map.add(map[0].second, map[0].first);
    map.add(map[0].first, map[0].second);
    map.add(map[0].first, map[1].second);
    map.add(map[1].second, map[1].first);
    EXPECT_EQ(map.Count(), 2);
    EXPECT_EQ(map[0].second, "value" + s_long);
    EXPECT_TRUE(map.get(map[0].first, map[0].second));
    EXPECT_TRUE(map.get(map[1].first, map[0].second));
    EXPECT_EQ(map[0].second, "key" + s_long);
    map[0] = std::as_const(map)[0];
    EXPECT_EQ(map[0].first, "key" + s_long);
    EXPECT_TRUE(map.il_removeAt(map.il_find(map[0])));
    EXPECT_EQ(map.Count(), 1);
}

struct Branch {
    ZMap<std::string, Branch> branches;
};

TEST(OwnPartsOfZMapTest, AssignmentFromAMapInsideAValue)
{
    ZMap<std::string, Branch> map;
    map.add("a" + s_long, Branch()).second.branches.add("b" + s_long, Branch());
    ZMap<std::string, Branch> other(map);
    map = std::as_const(map)[0].second.branches;
    ASSERT_EQ(map.Count(), 1);
    EXPECT_EQ(map[0].key(), "b" + s_long);
    other = std::move(other[0].second.branches);
    ASSERT_EQ(other.Count(), 1);
    EXPECT_EQ(other[0].key(), "b" + s_long);
    ZMap<std::string, Branch>& self = other;
    other = std::as_const(self);
    other = std::move(self);
    EXPECT_EQ(other.Count(), 1);
}

// Handles

struct Linked : TZReferenceable<TZRefCounter<int>> {
    virtual ~Linked() = default;
    std::string name = s_long;
    ZRef<Linked> shared;
    ZReference<Linked> counted;
};

TEST(OwnPartsOfHandlesTest, AssignmentFromAHandleInsideTheObject)
{
    ZRef<Linked> a(new Linked);
    a->shared = new Linked;
    a->shared->shared = new Linked;
    a = std::as_const(*a).shared;
    a = std::move(a->shared);
    EXPECT_EQ(a->name, s_long);
    a = a->shared.get();
    EXPECT_TRUE(!a);

    ZReference<Linked> b(new Linked);
    b->counted = new Linked;
    b->counted->counted = new Linked;
    b->counted->counted->counted = new Linked;
    b = std::as_const(*b).counted;
    b = std::move(b->counted);
    b = b->counted.get();
    EXPECT_EQ(b->name, s_long);
    EXPECT_EQ(b.RefCount(), 1);
}

} // namespace
} // namespace ZSpace::Testing
