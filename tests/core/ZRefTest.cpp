// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZRef.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/CountedTest.h"
#include "tests/support/DeathTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <stdexcept>
#include <thread>
#include <tuple>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

using Handle = ZRef<Counted>;

static_assert(std::is_same_v<Handle, ZRef<Counted, TZRefCounter<int>>>);
static_assert(sizeof(Handle) == 2 * sizeof(void*));
static_assert(std::is_nothrow_move_constructible_v<Handle> && std::is_nothrow_move_assignable_v<Handle>);
static_assert(!std::is_convertible_v<Counted*, Handle> && std::is_constructible_v<Handle, Counted*>);
static_assert(!std::is_convertible_v<Handle, bool>);

using ZRefTest = CountedTest;

TEST(TZRefCounterTest, IsOneWordReadAsAnInt)
{
    static_assert(sizeof(TZRefCounter<int>) == 8);
    TZRefCounter<int> counter;
    EXPECT_EQ(counter.value(), 0);
    EXPECT_EQ(counter.increment(), 1);
    EXPECT_EQ(counter.decrement(), 0);
    EXPECT_EQ(counter.decrement(), -1);
    EXPECT_EQ(counter.value(), -1);
    EXPECT_EQ(TZRefCounter<int>(7).value(), 7);
}

TEST(TZRefCounterTest, CarriesIntoTheUpperHalf)
{
    TZRefCounter<int> counter(-1);
    EXPECT_EQ(counter.increment(), 0);
    EXPECT_EQ(counter.increment(), 1);
    EXPECT_EQ(wordAt(&counter, 0), 1u);
}

TEST_F(ZRefTest, StartsEmpty)
{
    const Handle handle;
    EXPECT_TRUE(!handle);
    EXPECT_FALSE(static_cast<bool>(handle));
    EXPECT_EQ(handle.get(), nullptr);
    EXPECT_EQ(handle.RefCount(), 0);
    EXPECT_EQ(wordAt(&handle, 0), 0u);
    EXPECT_EQ(wordAt(&handle, 1), 0u);
}

TEST_F(ZRefTest, AdoptsAnObjectWithACountOfOne)
{
    auto* object = new Counted(3);
    const Handle handle(object);
    EXPECT_FALSE(!handle);
    EXPECT_TRUE(static_cast<bool>(handle));
    EXPECT_EQ(handle.get(), object);
    EXPECT_EQ(&*handle, object);
    EXPECT_EQ(handle->number(), 3);
    EXPECT_EQ(handle.RefCount(), 1);
}

TEST_F(ZRefTest, StoresTheCounterCellAndThenTheObject)
{
    const Handle handle(new Counted);
    const Handle other(handle);
    EXPECT_EQ(*reinterpret_cast<const std::int64_t*>(wordAt(&handle, 0)), 2);
    EXPECT_EQ(wordAt(&handle, 1), asWord(handle.get()));
    EXPECT_EQ(wordAt(&other, 0), wordAt(&handle, 0));
}

TEST_F(ZRefTest, CopiesShareTheObject)
{
    const Handle a(new Counted(1));
    {
        const Handle b(a);
        const Handle c(b);
        EXPECT_EQ(a.RefCount(), 3);
        EXPECT_EQ(c.get(), a.get());
    }
    EXPECT_EQ(a.RefCount(), 1);
    EXPECT_EQ(Counted::s_tally.alive, 1);
    const Handle empty;
    const Handle copy(empty);
    EXPECT_TRUE(!copy);
}

TEST_F(ZRefTest, LastOfThreeHandlesDeletesTheObjectOnceAndFreesTheCell)
{
    const long blocks = blocksAlive();
    {
        Handle a(new Counted(1));
        Handle b(a);
        Handle c(b);
        b = nullptr;
        a = nullptr;
        EXPECT_EQ(Counted::s_tally.alive, 1);
        EXPECT_EQ(c.RefCount(), 1);
        c = nullptr;
        EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
        Counted::reset();
        EXPECT_EQ(blocksAlive(), blocks);
    }
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre());
}

TEST_F(ZRefTest, AssigningAHandleToItselfChangesNothing)
{
    Handle a(new Counted);
    const Handle& self = a;
    a = self;
    EXPECT_EQ(a.RefCount(), 1);
    a = std::move(const_cast<Handle&>(self));
    EXPECT_EQ(a.RefCount(), 1);
    EXPECT_EQ(Counted::s_tally.alive, 1);
}

TEST_F(ZRefTest, AssigningAHandleOnTheSameObjectChangesNoCount)
{
    Handle a(new Counted);
    const Handle b(a);
    a = b;
    EXPECT_EQ(a.RefCount(), 2);
    EXPECT_EQ(wordAt(&a, 0), wordAt(&b, 0));
}

TEST_F(ZRefTest, AssigningTheHeldPointerMakesNoSecondCounter)
{
    Handle a(new Counted);
    const Handle b(a);
    const long allocations = allocationsMade();
    a = a.get();
    EXPECT_EQ(allocationsMade(), allocations);
    EXPECT_EQ(b.RefCount(), 2);
}

TEST_F(ZRefTest, AssigningNullToAnEmptyHandleAllocatesNothing)
{
    Handle a;
    const long allocations = allocationsMade();
    a = nullptr;
    a = Handle();
    EXPECT_EQ(allocationsMade(), allocations);
    EXPECT_TRUE(!a);
    EXPECT_EQ(wordAt(&a, 0), 0u);
}

TEST_F(ZRefTest, AssigningAnObjectReleasesTheOldOne)
{
    Handle a(new Counted(1));
    Handle& result = (a = new Counted(2));
    EXPECT_EQ(&result, &a);
    EXPECT_EQ(a->number(), 2);
    EXPECT_EQ(a.RefCount(), 1);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
}

TEST_F(ZRefTest, AssigningAnEmptyHandleReleasesAndClearsBothFields)
{
    Handle a(new Counted(1));
    const Handle empty;
    a = empty;
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
    EXPECT_EQ(wordAt(&a, 0), 0u);
    EXPECT_EQ(wordAt(&a, 1), 0u);
}

TEST_F(ZRefTest, AssigningAHandleSharesItsObject)
{
    Handle a(new Counted(1));
    const Handle b(new Counted(2));
    Handle& result = (a = b);
    EXPECT_EQ(&result, &a);
    EXPECT_EQ(a.get(), b.get());
    EXPECT_EQ(b.RefCount(), 2);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
}

TEST_F(ZRefTest, MovingTransfersTheShare)
{
    Handle a(new Counted(1));
    Handle b(std::move(a));
    EXPECT_TRUE(!a); // NOLINT(bugprone-use-after-move): empty is what is promised
    EXPECT_EQ(b.RefCount(), 1);
    Handle c(new Counted(2));
    c = std::move(b);
    EXPECT_TRUE(!b); // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(c->number(), 1);
    EXPECT_EQ(c.RefCount(), 1);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2));
}

TEST_F(ZRefTest, ReleaseDropsTheCountAndKeepsThePointers)
{
    const Handle a(new Counted(1));
    alignas(Handle) unsigned char storage[sizeof(Handle)];
    auto* b = new (storage) Handle(a); // never destroyed: `release` drops its share
    b->release();
    EXPECT_EQ(a.RefCount(), 1);
    EXPECT_EQ(b->get(), a.get());
    EXPECT_EQ(wordAt(b, 0), wordAt(&a, 0));

    Handle empty;
    empty.release();
    EXPECT_TRUE(!empty);
}

/// Records the live blocks while it is destroyed.
struct BlockCounter {
    long& blocks;
    ~BlockCounter() { blocks = blocksAlive(); }
};

TEST_F(ZRefTest, FreesTheCounterCellBeforeTheObject)
{
    long blocks = 0;
    ZRef<BlockCounter> handle(new BlockCounter{blocks});
    const long before = blocksAlive();
    handle = nullptr;
    EXPECT_EQ(blocks, before - 1);
    EXPECT_EQ(blocksAlive(), before - 2);
}

TEST_F(ZRefTest, OnlyACountOfExactlyZeroDeletesTheObject)
{
    auto object = std::make_unique<Counted>(1);
    std::unique_ptr<TZRefCounter<int>> cell;
    {
        const Handle handle(object.get());
        cell.reset(reinterpret_cast<TZRefCounter<int>*>(wordAt(&handle, 0)));
        cell->decrement();
    }
    EXPECT_EQ(cell->value(), -1);
    EXPECT_EQ(Counted::s_tally.alive, 1);
}

struct Node {
    Handle payload;
    ZRef<Node> next;
};

TEST_F(ZRefTest, AssignmentAcceptsAHandleInsideTheReleasedObject)
{
    ZRef<Node> node(new Node{Handle(new Counted(1)), ZRef<Node>(new Node{Handle(new Counted(2)), {}})});
    node = node->next;
    EXPECT_EQ(node->payload->number(), 2);
    EXPECT_EQ(node.RefCount(), 1);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
}

struct Base {
    virtual ~Base() = default;
    Base() = default;
    Base(const Base&) = delete;
    Base& operator=(const Base&) = delete;
};

struct Derived : Counted, virtual Base {
    using Counted::Counted;
};

TEST_F(ZRefTest, DeletesThroughAVirtualDestructor)
{
    ZRef<Base> base(new Derived(4));
    base = nullptr;
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(4));
}

TEST_F(ZRefTest, DeletesTheObjectIfTheCounterCannotBeAllocated)
{
    auto* first = new Counted(1);
    {
        const AllocationFault fault(1);
        EXPECT_THROW(Handle{first}, std::bad_alloc);
    }
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));

    Handle held(new Counted(2));
    auto* second = new Counted(3);
    {
        const AllocationFault fault(1);
        EXPECT_THROW(held = second, std::bad_alloc);
    }
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1, 3));
    EXPECT_EQ(held->number(), 2);
    EXPECT_EQ(held.RefCount(), 1);
}

TEST_F(ZRefTest, CountsAgreeWithAReferenceOverRandomOperations)
{
    std::mt19937 random(20240602);
    std::vector<Handle> handles(8);
    std::vector<int> objects(
        handles.size(), 0); // the number of the object that each handle holds, 0 for none
    int last = 0;
    for (int step = 0; step < 20'000; ++step) {
        const std::size_t i = random() % handles.size();
        const std::size_t j = random() % handles.size();
        switch (random() % 5) {
        case 0:
            handles[i] = new Counted(++last);
            objects[i] = last;
            break;
        case 1:
            handles[i] = nullptr;
            objects[i] = 0;
            break;
        case 2:
            handles[i] = std::move(handles[j]);
            objects[i] = objects[j];
            if (i != j)
                objects[j] = 0;
            break;
        default:
            handles[i] = handles[j];
            objects[i] = objects[j];
        }
        ASSERT_EQ(
            handles[i].RefCount(), objects[i] ? std::count(objects.begin(), objects.end(), objects[i]) : 0);
        ASSERT_EQ(handles[i] ? handles[i]->number() : 0, objects[i]);
    }
}

struct Flagged {
    explicit Flagged(std::atomic<int>& counter)
        : deleted(counter)
    {
    }
    Flagged(const Flagged&) = delete;
    Flagged& operator=(const Flagged&) = delete;
    ~Flagged() { ++deleted; }

    std::atomic<int>& deleted;
};

/// Copies and releases handles on one object on three threads.
template <typename Make>
void shareAmongThreads(Make make)
{
    constexpr int rounds = 200;
    std::atomic<int> deleted{0};
    for (int round = 0; round < rounds; ++round) {
        std::vector<std::thread> threads;
        {
            const ZRef<Flagged> shared = make(deleted);
            for (int t = 0; t < 3; ++t) {
                threads.emplace_back([own = shared]() mutable {
                    for (int i = 0; i < 50; ++i) {
                        ZRef<Flagged> copy(own);
                        ZRef<Flagged> assigned;
                        assigned = copy;
                    }
                    own = nullptr;
                });
            }
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(deleted, rounds);
}

TEST_F(ZRefTest, ThreadsCopyAndReleaseHandlesOnOneObject)
{
    shareAmongThreads([](std::atomic<int>& deleted) { return ZRef<Flagged>(new Flagged(deleted)); });
    shareAmongThreads([](std::atomic<int>& deleted) { return makeRef<Flagged>(deleted); });
}

TEST_F(ZRefTest, HoldsVolatileObjects)
{
    const ZRef<volatile int> handle(new volatile int(3));
    const ZRef<volatile int> made = makeRef<volatile int>(4);
    const int sum = *handle + *made;
    EXPECT_EQ(sum, 7);
}

TEST_F(ZRefTest, ReleasingTheOnlyHandleSetsTheCountToZeroBeforeTheObjectDies)
{
    struct Watching {
        ZRef<Watching>* handle = nullptr;
        int* count = nullptr;
        ~Watching() { *count = handle->RefCount(); }
    };
    int count = -1;
    alignas(ZRef<Watching>) std::byte storage[sizeof(ZRef<Watching>)]; // its handle is never destroyed
    auto* handle = new (storage) ZRef<Watching>(makeRef<Watching>());
    (*handle)->handle = handle;
    (*handle)->count = &count;
    handle->release();
    EXPECT_EQ(count, 0);
}

using ZRefDeathTest = ZRefTest;

TEST_F(ZRefDeathTest, MemberAccessOnAnEmptyHandleIsReported)
{
    const Handle empty;
    EXPECT_EXIT((sendOutputToError(), std::ignore = empty->number()), testing::KilledBySignal(SIGABRT),
        "^this->m_ptValue - File: ZTypeRef - Line: 534\n$");
}

TEST_F(ZRefDeathTest, IndirectionOnAnEmptyHandleIsReported)
{
    const Handle empty;
    EXPECT_EXIT((sendOutputToError(), std::ignore = &*empty), testing::KilledBySignal(SIGABRT),
        "^this->m_ptValue - File: ZTypeRef - Line: 543\n$");
}

TEST_F(ZRefDeathTest, TerminatesIfTheDestructorOfTheObjectThrows)
{
    struct Thrower {
        ~Thrower() noexcept(false) { throw std::runtime_error("from a destructor"); }
    };
    EXPECT_EXIT(ZRef<Thrower>(new Thrower), testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

} // namespace
} // namespace ZSpace::Testing
