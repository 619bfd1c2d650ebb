// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZDelegate.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace ZSpace::Testing {
namespace {

struct First {
    virtual ~First() = default;
    First() = default;
    First(const First&) = delete;
    First& operator=(const First&) = delete;
    virtual void note(int a, std::string b) { last = "First " + std::to_string(a) + b; }
    std::string last;
};

struct Second {
    virtual ~Second() = default;
    Second() = default;
    Second(const Second&) = delete;
    Second& operator=(const Second&) = delete;
    virtual void mark(int a, std::string b) { last2 = "Second " + std::to_string(a) + b; }
    void plain(int a, std::string b) { last2 = "plain " + std::to_string(a) + b; }
    std::string last2;
};

struct Both : First, Second {
    void note(int a, std::string b) override { last = "Both " + std::to_string(a) + b; }
    void mark(int a, std::string b) override { last2 = "Both mark " + std::to_string(a) + b; }
    void own(int a, std::string b) { last = "own " + std::to_string(a) + b; }
};

using Binder = ZDelegator2V<Both, int, std::string>;
using Delegate = ZDelegate2<void, int, std::string>;

static_assert(std::is_base_of_v<ZDelegable_T<void>, Delegate>);
static_assert(std::is_base_of_v<Delegate, Binder>);
static_assert(std::is_abstract_v<Delegate>);
static_assert(std::has_virtual_destructor_v<ZDelegable_T<void>>);
static_assert(sizeof(Delegate) == sizeof(void*));
static_assert(sizeof(void(Both::*)(int, std::string)) == 2 * sizeof(void*));
static_assert(sizeof(Binder) == sizeof(void*) + 3 * sizeof(void*));

/// A delegate as users write one.
template <int N, typename Base, typename R, typename... P>
class Sum final : public Base {
public:
    [[nodiscard]] bool operator!() const override { return false; }
    [[nodiscard]] void* Object() const override { return nullptr; }
    R operator()(P... arguments) const override { return (arguments + ... + 0); }
    [[nodiscard]] Base* clone() const override { return new Sum; }
    [[nodiscard]] bool operator==(const Base& other) const override { return &other == this; }
    [[nodiscard]] bool operator==(void const* object) const override { return !object; }
};

TEST(ZDelegateTest, ParamCountIsTheNumberInTheName)
{
    const Sum<2, ZDelegate2<int, int, int>, int, int, int> two;
    const Sum<3, ZDelegate3<int, int, int, int>, int, int, int, int> three;
    const Sum<4, ZDelegate4<int, int, int, int, int>, int, int, int, int, int> four;
    const Sum<5, ZDelegate5<int, int, int, int, int, int>, int, int, int, int, int, int> five;
    const ZDelegable_T<void>* all[] = {&two, &three, &four, &five};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(all[i]->ParamCount(), i + 2);
    EXPECT_EQ(two(1, 2), 3);
    EXPECT_EQ(three(1, 2, 3), 6);
    EXPECT_EQ(four(1, 2, 3, 4), 10);
    EXPECT_EQ(five(1, 2, 3, 4, 5), 15);
}

TEST(ZDelegateTest, IsComparedAndClonedThroughItsBase)
{
    const Sum<2, ZDelegate2<int, int, int>, int, int, int> sum;
    const ZDelegate2<int, int, int>& a = sum;
    const std::unique_ptr<ZDelegate2<int, int, int>> b(a.clone());
    EXPECT_TRUE(a == a);
    EXPECT_FALSE(a == *b);
    EXPECT_TRUE(a != *b);
    EXPECT_TRUE(a == static_cast<const void*>(nullptr));
    EXPECT_FALSE(a == static_cast<const void*>(&sum));
}

TEST(ZDelegator2VTest, CallsAMemberOfItsObject)
{
    Both object;
    const Binder binder(&object, &Both::own);
    EXPECT_EQ(binder.ParamCount(), 2);
    EXPECT_FALSE(!binder);
    EXPECT_EQ(binder.Object(), &object);
    binder(1, "a");
    EXPECT_EQ(object.last, "own 1a");
}

TEST(ZDelegator2VTest, CallsVirtualMembersThroughTheVtable)
{
    Both object;
    ZDelegator2V<First, int, std::string>(&object, &First::note)(2, "b");
    EXPECT_EQ(object.last, "Both 2b");
    Binder(&object, &Both::note)(3, "c");
    EXPECT_EQ(object.last, "Both 3c");
    First first;
    ZDelegator2V<First, int, std::string>(&first, &First::note)(4, "d");
    EXPECT_EQ(first.last, "First 4d");
}

TEST(ZDelegator2VTest, AdjustsThisForMembersOfASecondBase)
{
    Both object;
    Binder(&object, &Both::plain)(1, "a");
    EXPECT_EQ(object.last2, "plain 1a");
    Binder(&object, static_cast<void (Both::*)(int, std::string)>(&Second::mark))(2, "b");
    EXPECT_EQ(object.last2, "Both mark 2b");
}

TEST(ZDelegator2VTest, StoresTheMemberPointerAndThenTheObject)
{
    Both object;
    const Binder::Function function = &Both::plain; // of the second base, so `this` is adjusted
    const Binder binder(&object, function);
    EXPECT_EQ(wordAt(&binder, 1), wordAt(&function, 0));
    EXPECT_EQ(wordAt(&binder, 2), wordAt(&function, 1));
    EXPECT_NE(wordAt(&binder, 2), 0u);
    EXPECT_EQ(wordAt(&binder, 3), asWord(&object));
}

TEST(ZDelegator2VTest, IsUnboundWithoutAFunctionOrAnObject)
{
    Both object;
    EXPECT_TRUE(!Binder(&object, nullptr));
    EXPECT_TRUE(!Binder(nullptr, &Both::own));
    EXPECT_TRUE(!Binder(nullptr, nullptr));
    EXPECT_FALSE(!Binder(&object, &Both::note));
    EXPECT_FALSE((!ZDelegator2V<First, int, std::string>(&object, &First::note)));
}

TEST(ZDelegator2VTest, CloneHasTheSameThreeWords)
{
    Both object;
    const Binder binder(&object, &Both::plain);
    const Delegate& base = binder;
    const std::unique_ptr<Delegate> clone(base.clone());
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(wordAt(clone.get(), i), wordAt(&binder, i));
    EXPECT_TRUE(*clone == base);
    (*clone)(5, "e");
    EXPECT_EQ(object.last2, "plain 5e");
}

TEST(ZDelegator2VTest, EqualsTheSameFunctionOnTheSameObject)
{
    Both object;
    Both other;
    const Binder own(&object, &Both::own);
    EXPECT_TRUE(own == Binder(&object, &Both::own));
    EXPECT_FALSE(own == Binder(&other, &Both::own));
    EXPECT_FALSE(own == Binder(&object, &Both::plain));
    EXPECT_TRUE(own != Binder(&object, &Both::note));
    EXPECT_TRUE(Binder(&object, nullptr) == Binder(&object, nullptr));
    EXPECT_FALSE(Binder(&object, nullptr) == own);
}

TEST(ZDelegator2VTest, DiffersFromOtherKindsOfDelegates)
{
    Both object;
    const Binder own(&object, &Both::own);
    const ZDelegator2V<First, int, std::string> first(&object, &First::note);
    const auto lambda = zMakeDelegate<Delegate>([](int, const std::string&) {});
    const Delegate& base = own;
    EXPECT_FALSE(base == first);
    EXPECT_FALSE(base == *lambda);
    EXPECT_FALSE(*lambda == base);
}

TEST(ZDelegator2VTest, EqualsTheObjectItIsBoundTo)
{
    Both object;
    const Binder own(&object, &Both::own);
    EXPECT_TRUE(own == static_cast<const void*>(&object));
    EXPECT_FALSE(own == static_cast<const void*>(&own));
    EXPECT_TRUE(Binder(nullptr, &Both::own) == static_cast<const void*>(nullptr));
}

TEST(ZMakeDelegateTest, CallsTheFunctionObject)
{
    int sum = 0;
    const auto add =
        zMakeDelegate<ZDelegate3<int, int, int, int>>([&](int a, int b, int c) { return sum += a + b + c; });
    EXPECT_EQ((*add)(1, 2, 3), 6);
    EXPECT_EQ((*add)(1, 1, 1), 9);
    EXPECT_EQ(add->ParamCount(), 3);
    EXPECT_FALSE(!*add);

    const auto result = zMakeDelegate<ZDelegate2<void, int, int>>([&](int a, int b) { return sum = a * b; });
    (*result)(5, 6);
    EXPECT_EQ(sum, 30);
}

TEST(ZMakeDelegateTest, ClonesShareTheFunctionObject)
{
    using Counting = ZDelegate2<int, int, int>;
    auto original =
        zMakeDelegate<Counting>([calls = std::make_unique<int>()](int, int) mutable { return ++*calls; });
    const std::unique_ptr<Counting> clone(original->clone());
    EXPECT_EQ((*original)(0, 0), 1);
    EXPECT_EQ((*clone)(0, 0), 2);
    EXPECT_TRUE(*clone == *original);
    EXPECT_TRUE(*clone == original->Object());
    EXPECT_NE(clone->Object(), nullptr);
    const auto other = zMakeDelegate<Counting>([](int, int) { return 0; });
    EXPECT_FALSE(*clone == *other);
    EXPECT_FALSE(*clone == other->Object());
    original.reset();
    EXPECT_EQ((*clone)(0, 0), 3);
}

TEST(ZMakeDelegateTest, AcceptsAnyCallable)
{
    struct Door {
        static int turn(int degrees, int times) { return degrees * times; }
    };
    const auto function = zMakeDelegate<ZDelegate2<int, int, int>>(&Door::turn);
    EXPECT_EQ((*function)(90, 2), 180);
    const auto named = [](int a, int b) { return a - b; };
    EXPECT_EQ((*zMakeDelegate<ZDelegate2<long, int, int>>(named))(5, 3), 2);
}

TEST(ZMakeDelegateTest, ForwardsArgumentsWithoutCopies)
{
    using Taking = ZDelegate2<void, std::unique_ptr<int>, int&>;
    int seen = 0;
    const auto take = zMakeDelegate<Taking>([](std::unique_ptr<int> value, int& out) { out = *value; });
    (*take)(std::make_unique<int>(7), seen);
    EXPECT_EQ(seen, 7);
}

TEST(ZMakeDelegateTest, AllocationFailuresPropagateWithoutLeaks)
{
    int sum = 0;
    EXPECT_EQ(failEachAllocation([&] {
        const auto add = zMakeDelegate<ZDelegate2<void, int, int>>([&](int a, int b) { sum += a + b; });
        const std::unique_ptr<ZDelegate2<void, int, int>> clone(add->clone());
    }),
        4);
}

} // namespace
} // namespace ZSpace::Testing
