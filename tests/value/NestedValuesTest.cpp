// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Arrays that are nested deeper than the stack of a thread allows to recurse.

#include "tests/support/AllocationFaults.h"
#include "tests/value/Values.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <typeinfo>
#include <utility>

namespace ZSpace::Testing {
namespace {

constexpr auto s_cell = std::in_place;
constexpr int s_depth = 60'000; // about 10 MB of stack, if each level took a call

/// An array in an array in an array, each with a number on either side; the innermost one is empty.
std::unique_ptr<ZValueArrayBase> nestedArrays(int depth, int number = 7)
{
    auto array = std::make_unique<ZValueArrayBase>(ZTypeId_int);
    for (int i = 0; i < depth; ++i) {
        auto outer = std::make_unique<ZValueArrayBase>(array->Type());
        outer->ArrayAdd(Value(s_cell, number));
        outer->ArrayAdd(array.release());
        outer->ArrayAdd(Value(s_cell, number));
        array = std::move(outer);
    }
    return array;
}

int depthOf(const ZValueArrayBase& array)
{
    int depth = 0;
    for (const ZValueArrayBase* level = &array; level->ArrayItemCount() > 0; ++depth)
        level = dynamic_cast<const ZValueArrayBase*>(&level->ArrayItem(1));
    return depth;
}

TEST(NestedValuesTest, VeryDeepNestingIsDestroyed)
{
    const long alive = blocksAlive();
    nestedArrays(300'000).reset();
    EXPECT_EQ(blocksAlive(), alive);
}

TEST(NestedValuesTest, DeepNestingIsDestroyedInEveryWay)
{
    const long alive = blocksAlive();
    {
        auto array = nestedArrays(s_depth);
        array.reset();
        array = nestedArrays(s_depth);
        array->ArrayRemove(1);
        array = nestedArrays(s_depth);
        array->ArrayClear();
        array = nestedArrays(s_depth);
        array->ArrayItem(1, Value());
        array = nestedArrays(s_depth);
        array->clear(array->Type());
        array = nestedArrays(s_depth);
        *array = ZValueArrayBase(ZTypeId_int);
    }
    EXPECT_EQ(blocksAlive(), alive);
}

TEST(NestedValuesTest, DeepNestingIsCopiedComparedAndPrinted)
{
    const long alive = blocksAlive();
    {
        const auto array = nestedArrays(s_depth);
        const auto different = nestedArrays(s_depth, 8);
        const ZValueArrayBase copy(*array);
        const std::unique_ptr<Value> clone(array->clone());
        Value plain(*array); // an array without the class of one
        EXPECT_EQ(depthOf(copy), s_depth);
        EXPECT_TRUE(copy == *array);
        EXPECT_TRUE(*clone == *array);
        EXPECT_TRUE(plain == *array);
        EXPECT_FALSE(copy == *different);
        EXPECT_FALSE(copy == *nestedArrays(s_depth - 1));
        EXPECT_EQ(textOf(copy), "");
        Value::ReleaseContentOfValue(plain);
        EXPECT_TRUE(plain == copy);
    }
    EXPECT_EQ(blocksAlive(), alive);
}

TEST(NestedValuesTest, ItemsAreDestroyedDepthFirstFromTheLastToTheFirst)
{
    struct Logger : ZObject {
        Logger(std::string& log, char letter)
            : m_log(log)
            , m_letter(letter)
        {
        }
        ~Logger() override { m_log += m_letter; }
        std::string& m_log;
        char m_letter;
    };
    std::string log;
    const auto item = [&](char letter) { return Value(ZReference<ZObject>(new Logger(log, letter))); };
    {
        ZValueArrayBase inner(ZTypeId_reference);
        inner.ArrayAdd(item('b'));
        inner.ArrayAdd(item('c'));
        ZValueArrayBase outer(ZTypeId_reference);
        outer.ArrayAdd(item('a'));
        outer.ArrayAdd(new ZValueArrayBase(std::move(inner)));
        outer.ArrayAdd(new ZValueArrayBase(ZTypeId_reference));
        outer.ArrayAdd(item('d'));
    }
    EXPECT_EQ(log, "dcba");
}

TEST(NestedValuesTest, NestedArraysKeepTheirNamesKindsAndClasses)
{
    struct Derived : ZValueArrayBase {
        using ZValueArrayBase::ZValueArrayBase;
        [[nodiscard]] Derived* clone() const override { return new Derived(*this); }
    };
    ZValueArrayBase outer(ZTypeId_none);
    auto* array = new ZValueArrayBase(ZTypeId_double);
    array->Name("array");
    array->ArrayAdd(Value(s_cell, 0.5));
    outer.ArrayAdd(array);
    outer.ArrayAdd(new Value(*array));
    auto* derived = new Derived(ZTypeId_bool);
    derived->ArrayAdd(Value(s_cell, true));
    outer.ArrayAdd(derived);
    outer.ArrayAdd(new Value(*structureOf("s", {Value(*array)})));

    const ZValueArrayBase copy(outer);
    EXPECT_TRUE(copy == outer);
    for (unsigned int i = 0; i < outer.ArrayItemCount(); ++i) {
        const Value& copied = copy.ArrayItem(i);
        const Value& original = outer.ArrayItem(i);
        EXPECT_EQ(typeid(copied), typeid(original)) << i;
        EXPECT_EQ(copied.Type(), original.Type()) << i;
        EXPECT_EQ(copied.Size(), original.Size()) << i;
        EXPECT_NE(copied.Content(), original.Content()) << i;
    }
    EXPECT_STREQ(copy.ArrayItem(0).Name(), "array");
    EXPECT_STREQ(copy.ArrayItem(1).Name(), "array");
}

TEST(NestedValuesTest, DerivedArraysAreDestroyedWithTheirItems)
{
    static unsigned int s_seen;
    struct Derived : ZValueArrayBase {
        using ZValueArrayBase::ZValueArrayBase;
        ~Derived() override { s_seen = ArrayItemCount(); }
    };
    s_seen = 0;
    {
        ZValueArrayBase outer(ZTypeId_none);
        auto* derived = new Derived(ZTypeId_int);
        derived->ArrayAdd(Value(s_cell, 1));
        derived->ArrayAdd(Value(s_cell, 2));
        outer.ArrayAdd(derived);
    }
    EXPECT_EQ(s_seen, 2u);
}

TEST(NestedValuesTest, FailedAllocationsOfNestedCopiesLeakNothing)
{
    const auto array = nestedArrays(4);
    EXPECT_GT(failEachAllocation([&] { ZValueArrayBase{*array}; }), 4 * 6);
    EXPECT_GT(failEachAllocation([&] { Value{*array}; }), 4 * 6);
    ZValueArrayBase target(ZTypeId_int);
    target.ArrayAdd(Value(s_cell, 1));
    for (long nth = 1; nth <= 24; ++nth) {
        const AllocationFault fault(nth);
        EXPECT_THROW(target = *array, std::bad_alloc);
        EXPECT_EQ(target.ArrayItemCount(), 1u);
    }
}

} // namespace
} // namespace ZSpace::Testing
