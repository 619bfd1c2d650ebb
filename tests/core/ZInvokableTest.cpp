// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZInvokable.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>

namespace ZSpace::Testing {
namespace {

struct Door {
    void turn(int degrees, std::string why)
    {
        ++calls;
        last = why + std::to_string(degrees);
    }
    void open(ZRef<Counted> key, int times)
    {
        calls += times;
        keyCount = key.RefCount();
    }
    int calls = 0;
    int keyCount = 0;
    std::string last;
};

using Turn = ZDelegator2V<Door, int, std::string>;
using Executor = ZExecutor2V<int, std::string>;

static_assert(std::is_base_of_v<ZInvokable<void>, ZExecutor<void>>);
static_assert(std::is_base_of_v<ZExecutor<void>, Executor>);
static_assert(std::is_abstract_v<ZInvokable<void>> && std::has_virtual_destructor_v<ZInvokable<void>>);
static_assert(std::is_abstract_v<ZExecutor<void>>);
static_assert(sizeof(ZExecutor2V<void*, long>) == 4 * sizeof(void*));

TEST(ZExecutorTest, InvokingExecutes)
{
    struct Plain : ZExecutor<int> {
        [[nodiscard]] int ParamCount() const override { return 0; }
        int execute() const override { return 7; }
        [[nodiscard]] Plain* clone() const override { return new Plain(*this); }
    };
    const Plain plain;
    const ZInvokable<int>& invokable = plain;
    EXPECT_EQ(invokable.invoke(), 7);
    EXPECT_EQ(std::unique_ptr<ZExecutor<int>>(plain.clone())->invoke(), 7);
}

TEST(ZExecutor2VTest, CallsItsBinderWithTheStoredArguments)
{
    Door door;
    const Executor executor(new Turn(&door, &Door::turn), 90, "left ");
    const ZExecutor<void>& base = executor;
    EXPECT_EQ(base.ParamCount(), 2);
    base.execute();
    EXPECT_EQ(door.last, "left 90");
    base.invoke();
    EXPECT_EQ(door.calls, 2);
}

TEST(ZExecutor2VTest, StoresTheBinderAndThenTheArguments)
{
    Door door;
    auto* binder = new ZDelegator2V<Door, void*, long>(&door, nullptr);
    const ZExecutor2V<void*, long> executor(binder, &door, 7L);
    EXPECT_EQ(wordAt(&executor, 1), asWord(binder));
    EXPECT_EQ(wordAt(&executor, 2), asWord(&door));
    EXPECT_EQ(wordAt(&executor, 3), 7u);
}

TEST(ZExecutor2VTest, CloneOwnsACopyOfTheBinder)
{
    Door door;
    auto executor = std::make_unique<Executor>(new Turn(&door, &Door::turn), 90, "left ");
    const std::unique_ptr<ZExecutor<void>> clone(executor->clone());
    EXPECT_NE(wordAt(clone.get(), 1), wordAt(executor.get(), 1));
    executor.reset();
    clone->execute();
    EXPECT_EQ(door.last, "left 90");
}

TEST(ZExecutor2VTest, StoredHandlesAreCounted)
{
    Door door;
    const ZRef<Counted> key(new Counted);
    {
        const ZExecutor2V<ZRef<Counted>, int> executor(
            new ZDelegator2V<Door, ZRef<Counted>, int>(&door, &Door::open), key, 3);
        EXPECT_EQ(key.RefCount(), 2);
        const std::unique_ptr<ZExecutor<void>> clone(executor.clone());
        EXPECT_EQ(key.RefCount(), 3);
        executor.execute();
        EXPECT_EQ(door.keyCount, 4);
        EXPECT_EQ(door.calls, 3);
    }
    EXPECT_EQ(key.RefCount(), 1);
}

TEST(ZExecutor2VTest, OwnsItsBinder)
{
    const auto token = std::make_shared<int>(1);
    {
        const ZExecutor2V<int, int> executor(
            zMakeDelegate<ZDelegate2<void, int, int>>([token](int, int) {}).release(), 1, 2);
        EXPECT_EQ(token.use_count(), 2);
    }
    EXPECT_EQ(token.use_count(), 1);
}

TEST(ZExecutor2VTest, AllocationFailuresOfClonePropagateWithoutLeaks)
{
    Door door;
    const Executor executor(new Turn(&door, &Door::turn), 90, std::string(50, 'a'));
    // The executor, its binder and its string.
    EXPECT_EQ(failEachAllocation([&] { const std::unique_ptr<ZExecutor<void>> clone(executor.clone()); }), 3);
}

} // namespace
} // namespace ZSpace::Testing
