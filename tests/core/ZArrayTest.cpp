// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZArray.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/DeathTests.h"
#include "tests/support/Probes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <new>
#include <numeric>
#include <random>
#include <string>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;
using testing::ElementsAreArray;

using PointerArray = ZArray<int*, ZAllocationBuf<int*>>;

static_assert(std::is_same_v<ZArray<char>, ZArray<char, ZAllocation<char>>>);
static_assert(sizeof(ZArray<char>) == 2 * sizeof(void*));
static_assert(sizeof(ZArray<std::string>) == 2 * sizeof(void*));
static_assert(sizeof(PointerArray) == 3 * sizeof(void*));

TEST(ZArrayTest, StartsEmpty)
{
    const ZArray<std::string> values;
    EXPECT_EQ(values.Count(), 0);
    EXPECT_EQ(wordAt(&values, 0), 0u);
    EXPECT_EQ(values.begin(), values.end());

    const PointerArray pointers;
    EXPECT_EQ(pointers.Count(), 0);
    EXPECT_EQ(pointers.Capacity(), 0);
    EXPECT_EQ(wordAt(&pointers, 0), 0u);
}

TEST(ZArrayTest, FieldsAreInOrder)
{
    ZArray<std::string> values;
    values.add("a");
    values.add("b");
    EXPECT_EQ(wordAt(&values, 0), asWord(values.begin()));
    EXPECT_EQ(wordAt(&values, 1), 2u);

    int x = 0;
    PointerArray pointers;
    pointers.add(&x);
    pointers.add(&x);
    EXPECT_EQ(wordAt(&pointers, 0), asWord(pointers.begin()));
    EXPECT_EQ(wordAt(&pointers, 1), 2u);
    EXPECT_EQ(wordAt(&pointers, 2), 3u);
}

TEST(ZArrayTest, AddReturnsTheStoredElement)
{
    ZArray<std::string> values;
    std::string& added = values.add("a");
    EXPECT_EQ(&added, &values[0]);
    added = "b";
    EXPECT_THAT(values, ElementsAre("b"));

    int x = 0;
    PointerArray pointers;
    int*& slot = pointers.add(&x);
    EXPECT_EQ(&slot, &pointers[0]);
    EXPECT_EQ(slot, &x);
}

TEST(ZArrayTest, AddAcceptsAnOwnElement)
{
    ZArray<std::string> values;
    values.add(std::string(50, 'a'));
    for (int i = 0; i < 5; ++i)
        values.add(values[0]);
    EXPECT_EQ(values.Count(), 6);
    for (const std::string& value : values)
        EXPECT_EQ(value, std::string(50, 'a'));

    int x = 0;
    PointerArray pointers;
    pointers.add(&x);
    for (int i = 0; i < 9; ++i)
        pointers.add(pointers[0]);
    EXPECT_THAT(pointers, testing::Each(&x));
}

TEST(ZArrayTest, EachAddCopiesAllValuesToANewBlock)
{
    Counted::reset();
    {
        ZArray<Counted> values;
        for (int i = 0; i < 4; ++i)
            values.add(Counted(i));
        EXPECT_EQ(Counted::s_tally.alive, 4);
        EXPECT_EQ(Counted::s_tally.assigned, (0 + 1) + (1 + 1) + (2 + 1) + (3 + 1));
        EXPECT_EQ(Counted::s_tally.copied, 0);
        Counted::s_tally.destroyed.clear();
    }
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(3, 2, 1, 0));
    EXPECT_EQ(Counted::s_tally.alive, 0);
}

TEST(ZArrayTest, PointerArrayGrowsByTheRequestedCount)
{
    int x = 0;
    PointerArray pointers;
    std::vector<long> capacities;
    for (int i = 0; i < 16; ++i) {
        pointers.add(&x);
        capacities.push_back(pointers.Capacity());
    }
    EXPECT_THAT(capacities, ElementsAre(1, 3, 3, 7, 7, 7, 7, 15, 15, 15, 15, 15, 15, 15, 15, 31));

    pointers.resize(40);
    EXPECT_EQ(pointers.Count(), 40);
    EXPECT_EQ(pointers.Capacity(), 71);
    EXPECT_EQ(pointers[15], &x);
    EXPECT_EQ(pointers[16], nullptr);
}

TEST(ZArrayTest, PointerArrayNeverShrinks)
{
    PointerArray pointers(5);
    const int* const* block = pointers.begin();
    pointers.resize(1);
    EXPECT_EQ(pointers.Count(), 1);
    EXPECT_EQ(pointers.Capacity(), 5);
    EXPECT_EQ(pointers.begin(), block);
    pointers.remove(0, 1);
    EXPECT_EQ(pointers.Count(), 0);
    EXPECT_EQ(pointers.Capacity(), 5);
}

TEST(ZArrayTest, ReleaseFreesTheBlock)
{
    PointerArray pointers(5);
    pointers.release();
    EXPECT_EQ(wordAt(&pointers, 0), 0u);
    EXPECT_EQ(pointers.Count(), 0);
    EXPECT_EQ(pointers.Capacity(), 0);

    ZArray<std::string> values(5);
    values.release();
    EXPECT_EQ(wordAt(&values, 0), 0u);
    EXPECT_EQ(values.Count(), 0);
    values.release();
    EXPECT_THAT(values, ElementsAre());
}

TEST(ZArrayTest, RemoveClosesTheGap)
{
    std::vector<int> x(6);
    PointerArray pointers;
    for (int& i : x)
        pointers.add(&i);
    EXPECT_EQ(pointers.remove(1, 2), 4);
    EXPECT_THAT(pointers, ElementsAre(&x[0], &x[3], &x[4], &x[5]));
    EXPECT_EQ(pointers.remove(3, 1), 3);
    EXPECT_THAT(pointers, ElementsAre(&x[0], &x[3], &x[4]));
    EXPECT_EQ(pointers.remove(0, 0), 3);
    EXPECT_EQ(pointers.remove(0, 3), 0);
    EXPECT_EQ(pointers.Capacity(), 7);

    ZArray<std::string> values;
    for (const char* text : {"a", "b", "c", "d"})
        values.add(text);
    EXPECT_EQ(values.remove(1, 2), 2);
    EXPECT_THAT(values, ElementsAre("a", "d"));
}

TEST(ZArrayTest, IsConstructedWithValueInitializedElements)
{
    const ZArray<std::string> values(3);
    EXPECT_THAT(values, ElementsAre("", "", ""));
    EXPECT_EQ(ZArray<std::string>(0).Count(), 0);
    EXPECT_EQ(ZArray<std::string>(-1).Count(), 0);
    EXPECT_THAT(ZArray<char>(2), ElementsAre('\0', '\0'));
}

TEST(ZArrayTest, FillingASizedArrayAssignsEachElementOnce)
{
    Counted::reset();
    ZArray<Counted> values(1000);
    for (Counted& value : values)
        value = Counted(1);
    EXPECT_EQ(Counted::s_tally.assigned, 1000);
    values.resize(3);
    EXPECT_EQ(values.Count(), 3);
    EXPECT_EQ(Counted::s_tally.alive, 3);
    EXPECT_EQ(values[2].number(), 1);
}

TEST(ZArrayTest, CopiesASourceBlock)
{
    const ZArray<char> bytes("abc", 3);
    EXPECT_THAT(bytes, ElementsAre('a', 'b', 'c'));
    EXPECT_EQ(ZArray<char>("abc", 0).Count(), 0);
    EXPECT_EQ(ZArray<char>(nullptr, -4).Count(), 0);
    int x = 0;
    int* const source[] = {&x, nullptr};
    const PointerArray pointers(source, 2);
    EXPECT_THAT(pointers, ElementsAre(&x, nullptr));
    EXPECT_EQ(pointers.Capacity(), 2);
}

TEST(ZArrayTest, NegativeCountsCountAsZero)
{
    PointerArray pointers(-3);
    EXPECT_EQ(pointers.Count(), 0);
    EXPECT_EQ(pointers.Capacity(), 0);
    int x = 0;
    pointers.add(&x);
    EXPECT_EQ(pointers.remove(0, -1), 1);
    EXPECT_THAT(pointers, ElementsAre(&x));
    pointers.resize(LONG_MIN);
    EXPECT_EQ(pointers.Count(), 0);
    EXPECT_EQ(pointers.Capacity(), 1);
    EXPECT_EQ(pointers.begin(), pointers.end());
    EXPECT_EQ(PointerArray(nullptr, LONG_MIN).Count(), 0);

    ZArray<std::string> values(LONG_MIN);
    EXPECT_EQ(values.Count(), 0);
    values.add("a");
    EXPECT_EQ(values.remove(0, LONG_MIN), 1);
    EXPECT_THAT(values, ElementsAre("a"));
    values.resize(-1);
    EXPECT_EQ(values.Count(), 0);
}

TEST(ZArrayTest, NullSourceMeansValueInitializedElements)
{
    {
        const std::string garbage(100, 'x'); // which an uninitialized block would contain
        EXPECT_EQ(garbage.size(), 100U);
    }
    EXPECT_THAT(ZArray<char>(nullptr, 5), testing::Each('\0'));
    EXPECT_EQ(ZArray<char>(nullptr, 5).Count(), 5);
    EXPECT_THAT(PointerArray(nullptr, 3), ElementsAre(nullptr, nullptr, nullptr));
    EXPECT_THAT(ZArray<std::string>(nullptr, 2), ElementsAre("", ""));
}

TEST(ZArrayTest, CapacityBeyondTheRangeOfItsTypeIsRefused)
{
    int x = 0;
    PointerArray pointers;
    pointers.add(&x);
    EXPECT_THROW(pointers.resize(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(pointers.resize(LONG_MAX - 1), std::bad_alloc);
    EXPECT_THAT(pointers, ElementsAre(&x));
    EXPECT_EQ(pointers.Capacity(), 1);
    EXPECT_THROW(ZArray<std::string>{LONG_MAX}, std::bad_alloc);
}

template <typename Array>
class ZArrayCopyTest : public testing::Test {
};

struct ArrayName {
    template <typename Array>
    static std::string GetName(int)
    {
        return sizeof(Array) == 2 * sizeof(void*) ? "Exact" : "Buffered";
    }
};

using Arrays = testing::Types<ZArray<std::string>, ZArray<std::string, ZAllocationBuf<std::string>>>;
TYPED_TEST_SUITE(ZArrayCopyTest, Arrays, ArrayName);

TYPED_TEST(ZArrayCopyTest, CopyIsDeep)
{
    TypeParam original;
    original.add("a");
    original.add("b");
    TypeParam copy(original);
    original[0] = "c";
    EXPECT_THAT(copy, ElementsAre("a", "b"));
    original = copy;
    EXPECT_THAT(original, ElementsAre("a", "b"));
    EXPECT_NE(original.begin(), copy.begin());
}

TYPED_TEST(ZArrayCopyTest, SelfAssignmentChangesNothing)
{
    TypeParam array;
    array.add("a");
    const std::string* element = &array[0];
    const TypeParam& self = array;
    array = self;
    EXPECT_EQ(&array[0], element);
    EXPECT_THAT(array, ElementsAre("a"));
}

TYPED_TEST(ZArrayCopyTest, MovingTransfersTheBlock)
{
    TypeParam original;
    original.add("a");
    const std::string* element = &original[0];
    TypeParam moved(std::move(original));
    EXPECT_EQ(&moved[0], element);
    EXPECT_EQ(original.Count(), 0); // NOLINT(bugprone-use-after-move): empty is what is promised
    TypeParam target;
    target.add("b");
    target = std::move(moved);
    EXPECT_EQ(&target[0], element);
    EXPECT_EQ(moved.Count(), 0); // NOLINT(bugprone-use-after-move)
    TypeParam& self = target;
    target = std::move(self);
    EXPECT_THAT(target, ElementsAre("a"));
}

TYPED_TEST(ZArrayCopyTest, AgreesWithAReferenceOverRandomOperations)
{
    std::mt19937 random(20240601);
    TypeParam array;
    std::vector<std::string> reference;
    for (int step = 0; step < 2000; ++step) {
        const long size = static_cast<long>(reference.size());
        switch (random() % 5) {
        case 0:
        case 1:
        case 2: {
            std::string text(random() % 30, static_cast<char>('a' + random() % 26));
            array.add(text);
            reference.push_back(std::move(text));
            break;
        }
        case 3: {
            const long from = size ? static_cast<long>(random()) % size : 0;
            const long n = static_cast<long>(random()) % (size - from + 1);
            EXPECT_EQ(array.remove(from, n), size - n);
            reference.erase(reference.begin() + from, reference.begin() + from + n);
            break;
        }
        default:
            TypeParam copy(array);
            array = copy;
        }
        ASSERT_THAT(array, ElementsAreArray(reference));
    }
}

TYPED_TEST(ZArrayCopyTest, FailuresOfCopyingAndResizingPropagateWithoutLeaks)
{
    TypeParam original;
    original.add(std::string(50, 'a'));
    original.add(std::string(50, 'b'));
    // A block and two strings each for the copy, the assignment and the resize.
    const long made = failEachAllocation([&] {
        TypeParam copy(original);
        TypeParam assigned;
        assigned = copy;
        copy.resize(8);
    });
    EXPECT_EQ(made, 9);
    EXPECT_EQ(failEachAllocation([] {
        const TypeParam array(3);
        keep(&array);
    }),
        1);

    const AllocationFault fault(2);
    EXPECT_THROW(original.resize(9), std::bad_alloc);
    EXPECT_THAT(original, ElementsAre(std::string(50, 'a'), std::string(50, 'b')));
}

template <typename Array>
class ZArrayDeathTest : public testing::Test {
};

TYPED_TEST_SUITE(ZArrayDeathTest, Arrays, ArrayName);

TYPED_TEST(ZArrayDeathTest, AddTerminatesIfAnyAllocationFails)
{
    for (long nth = 1; nth <= 4; ++nth) {
        EXPECT_EXIT(
            {
                TypeParam array;
                const std::string text(50, 'a');
                array.add(text);
                const AllocationFault fault(nth, AllocationFault::Kind::Lasting);
                array.add(text); // the block and the string; a temporary string where there is spare capacity
                array.add(text);
                array.add(text);
            },
            testing::KilledBySignal(SIGABRT), s_terminateMessage);
    }
}

TEST(ZArrayRemovalDeathTest, RemoveTerminatesIfTheSmallerBlockCannotBeAllocated)
{
    EXPECT_EXIT(
        {
            ZArray<std::string> array(3);
            const AllocationFault fault(1);
            array.remove(0, 1);
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

} // namespace
} // namespace ZSpace::Testing
