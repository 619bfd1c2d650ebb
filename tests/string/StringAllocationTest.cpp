// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/DeathTests.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <new>
#include <utility>
#include <vector>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class StringAllocation : public ::testing::Test {
};
TYPED_TEST_SUITE(StringAllocation, Widths, TypeNames);

TYPED_TEST(StringAllocation, ConstructingAStringThrowsBadAlloc)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* text = lit<T>("some text that is to be copied");
    const S string(text);
    const ZMStr<T> builder(text);
    EXPECT_EQ(failEachAllocation([&] { S made(text); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S made(text, 4); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S made(string.left(4)); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S made(string); }), 1); // NOLINT
    EXPECT_EQ(failEachAllocation([&] { S made(builder); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S::release(S::copy(text)); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S::release(S::create(7)); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S::release(S::create(7, T('x'))); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S::release(string.clone()); }), 1);
    EXPECT_EQ(failEachAllocation([&] { S::release(S::replace(text, 9, text, 1, text, 4, -1)); }), 1);
}

TYPED_TEST(StringAllocation, ConstructingABuilderThrowsBadAlloc)
{
    using T = TypeParam;
    using M = ZMStr<T>;
    const T* text = lit<T>("some text that is to be copied");
    const ZGStr<T> string(text);
    const M builder(text);
    EXPECT_EQ(failEachAllocation([] { const M made(40); }), 1);
    EXPECT_EQ(failEachAllocation([&] { M made(text); }), 1);
    EXPECT_EQ(failEachAllocation([&] { M made(text, 4); }), 1);
    EXPECT_EQ(failEachAllocation([&] { M made(builder.left(4)); }), 1);
    EXPECT_EQ(failEachAllocation([&] { M made(builder); }), 1); // NOLINT
    EXPECT_EQ(failEachAllocation([&] { M made(string); }), 1);
    EXPECT_EQ(failEachAllocation([&] { ZGStr<T>::release(builder.clone()); }), 1);
    EXPECT_EQ(failEachAllocation([&] { const M made = builder.left(4).toUpper(); }), 1);
}

TYPED_TEST(StringAllocation, AFailedChangeLeavesTheStringUnchanged)
{
    using T = TypeParam;
    const T* text = lit<T>("a longer text than the one before");
    ZGStr<T> string(lit<T>("a,b"));
    const ZGStr<T> otherString(text);
    const ZMStr<T> other(text);
    const T* comma = lit<T>(",");
    const std::function<void()> stringChanges[]{[&] { string = text; }, [&] { string = otherString; },
        [&] { string = other; }, [&] { string.assign(text, 9); }, [&] { string = otherString.left(7); },
        [&] { string.getBuffer(9); }, [&] { string.replace(comma, text); }};
    for (const auto& change : stringChanges) {
        const AllocationFault fault(1);
        EXPECT_THROW(change(), std::bad_alloc);
        EXPECT_EQ(str(string), "a,b");
    }

    ZMStr<T> builder(lit<T>("a,b"));
    const std::function<void()> builderChanges[]{[&] { builder = text; }, [&] { builder = otherString; },
        [&] { builder = other; }, [&] { builder.assign(text, 9); }, [&] { builder.getBuffer(9); },
        [&] { builder.alloc(99); }, [&] { builder.allocInc(99); }, [&] { builder.replace(comma, text); }};
    for (const auto& change : builderChanges) {
        const AllocationFault fault(1);
        EXPECT_THROW(change(), std::bad_alloc);
        EXPECT_EQ(str(builder), "a,b");
        EXPECT_EQ(builder.Capacity(), 4);
    }
}

TYPED_TEST(StringAllocation, AFailedSplitLeaksNothing)
{
    using T = TypeParam;
    const ZGStr<T> string(lit<T>("a,b,c"));
    const ZMStr<T> builder(lit<T>("a,b,c"));
    EXPECT_EQ(failEachAllocation([&] { keep(string.split(T(',')).begin()); }), 1 + 3);
    EXPECT_EQ(failEachAllocation([&] { keep(builder.split(T(',')).begin()); }), 1 + 3);
}

TYPED_TEST(StringAllocation, EditingInPlaceAllocatesNothing)
{
    using T = TypeParam;
    ZGStr<T> string(lit<T>("  Some Text  "));
    ZMStr<T> builder(lit<T>("  Some Text  "));
    const T* what = lit<T>("nowhere");
    const long before = allocationsMade();
    string.toLower().toUpper().reverse().replace(T('E'), T('e')).trim();
    builder.toLower().toUpper().reverse().replace(T('E'), T('e')).trim();
    string.remove(2, 3);
    builder.remove(2, 3);
    string.replace(what, what);
    builder.replace(what, what);
    string.append(what, 0);
    string.swap(string);
    ZGStr<T> moved(std::move(string));
    string = std::move(moved);
    EXPECT_EQ(allocationsMade(), before);
    EXPECT_EQ(str(string), str(builder));
}

TYPED_TEST(StringAllocation, EachAppendOfAStringMakesOneArray)
{
    using T = TypeParam;
    ZGStr<T> string(lit<T>("text"));
    const T* text = lit<T>("more");
    const T* other = lit<T>("less");
    const T* texts[]{text, text, nullptr};
    const auto allocationsOf = [](auto change) {
        const long before = allocationsMade();
        change();
        return allocationsMade() - before;
    };
    EXPECT_EQ(allocationsOf([&] { string.append(text); }), 1);
    EXPECT_EQ(allocationsOf([&] { string << 12345; }), 1);
    EXPECT_EQ(allocationsOf([&] { string << 1.5; }), 1);
    EXPECT_EQ(allocationsOf([&] { string << L"wide" << "narrow"; }), 2);
    EXPECT_EQ(allocationsOf([&] { string.appendHexOf(text, 4); }), 1);
    EXPECT_EQ(allocationsOf([&] { string.join(texts); }), 1);
    EXPECT_EQ(allocationsOf([&] { string.joinFrom(texts); }), 1);
    EXPECT_EQ(allocationsOf([&] { keep(&(string = string + text)); }), 1); // the sum is moved in
    EXPECT_EQ(allocationsOf([&] { string.replace(text, other); }), 1);
}

// Where allocations keep failing

template <typename T>
class StringAllocationDeathTest : public ::testing::Test {
protected:
    using Operations = std::vector<std::function<void()>>;

    static void expectEachToTerminate(const Operations& operations)
    {
        for (std::size_t i = 0; i < operations.size(); ++i) {
            EXPECT_DEATH(
                {
                    const AllocationFault fault(1, AllocationFault::Kind::Lasting);
                    operations[i]();
                },
                s_terminateMessage)
                << "operation " << i;
        }
    }
};
TYPED_TEST_SUITE(StringAllocationDeathTest, Widths, TypeNames);

TYPED_TEST(StringAllocationDeathTest, AppendingToAStringTerminates)
{
    using T = TypeParam;
    ZGStr<T> string(lit<T>("text"));
    const T* text = lit<T>("more");
    const T* texts[]{text, nullptr};
    this->expectEachToTerminate({
        [&] { string.append(text); },
        [&] { string += text; },
        [&] { keep(static_cast<const T*>(string + text)); },
        [&] { ZGStr<T>::release(ZGStr<T>::concat(text, text)); },
        [&] { string.join(texts); },
    });
}

TYPED_TEST(StringAllocationDeathTest, ConvertingNumbersTerminates)
{
    using T = TypeParam;
    ZGStr<T> string(lit<T>("text"));
    this->expectEachToTerminate({
        [&] { string << 1; },
        [&] { string << 1.5; },
        [&] { string.appendHexOf(1); },
        [&] { string << L"wide" << "narrow"; },
        [&] { keep(static_cast<const T*>(ZGStr<T>::valueOf(1, false))); },
        [&] { keep(static_cast<const T*>(ZGStr<T>::valueOf(0, true))); },
        [&] { keep(static_cast<const T*>(ZGStr<T>::hexOf(1))); },
    });
}

TYPED_TEST(StringAllocationDeathTest, GrowingABuilderTerminates)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("text"));
    const T* text = lit<T>("more");
    this->expectEachToTerminate({
        [&] { builder.append(text); },
        [&] { builder.append(T('x'), 99); },
        [&] { builder << 12345; },
        [&] { builder.appendValueOf(1, 9); },
        [&] { builder.appendHexOf(1ULL); },
        [&] { builder.insert(text, 1); },
        [&] { builder.fill(T('x'), 99, 1); },
        [&] { builder.rFill(T('x'), 99); },
    });
}

TYPED_TEST(StringAllocationDeathTest, AHugeCountTerminates)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("text"));
    this->expectEachToTerminate({
        [&] { builder.append(T('x'), LONG_MAX); },
        [&] { builder.fill(T('x'), LONG_MAX, 0); },
        [&] { builder.insert(builder, LONG_MAX, 0); },
    });
    const AllocationFault fault(1, AllocationFault::Kind::Lasting);
    EXPECT_THROW(builder.alloc(LONG_MAX), std::bad_alloc);
    EXPECT_THROW(ZMStr<T>(LONG_MAX), std::bad_alloc);
    EXPECT_EQ(str(builder), "text");
}

} // namespace
