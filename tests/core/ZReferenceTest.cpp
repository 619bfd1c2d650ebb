// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZReference.h"

#include "tests/support/CountedTest.h"
#include "tests/support/DeathTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>
#include <tuple>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

using Counter = TZRefCounter<int>;

/// Has the layout of `ZObject`: vtable pointer, then the count.
class Dispatching : public TZReferenceable<Counter> {
public:
    Dispatching() = default;
    Dispatching(const Dispatching&) = default;
    Dispatching& operator=(const Dispatching&) = default;
    virtual ~Dispatching() = default;
    [[nodiscard]] virtual int number() const { return 0; }
};

class Object : public Dispatching {
public:
    explicit Object(int number)
        : m_counted(number)
    {
    }
    [[nodiscard]] int number() const override { return m_counted.number(); }

private:
    Counted m_counted;
};

using Handle = ZReference<Dispatching>;

static_assert(std::is_same_v<Handle, ZReference<Dispatching, Counter>>);
static_assert(!std::is_polymorphic_v<TZReferenceable<Counter>>);
static_assert(sizeof(TZReferenceable<Counter>) == 8);
static_assert(sizeof(Dispatching) == sizeof(void*) + 8);
static_assert(sizeof(Handle) == 2 * sizeof(void*));
static_assert(std::is_nothrow_move_constructible_v<Handle> && std::is_nothrow_move_assignable_v<Handle>);

using ZReferenceTest = CountedTest;

TEST_F(ZReferenceTest, StartsEmpty)
{
    Handle handle;
    EXPECT_TRUE(!handle);
    EXPECT_FALSE(static_cast<bool>(handle));
    EXPECT_EQ(handle.get(), nullptr);
    EXPECT_EQ(handle.RefCount(), 0);
    EXPECT_TRUE(handle.release());
}

TEST_F(ZReferenceTest, CountFollowsTheVtablePointerOfTheObject)
{
    auto* object = new Object(1);
    const Handle handle(object);
    EXPECT_EQ(wordAt(&handle, 0), asWord(object) + sizeof(void*));
    EXPECT_EQ(wordAt(&handle, 1), asWord(object));
    EXPECT_EQ(wordAt(object, 1), 1u);
}

TEST_F(ZReferenceTest, EachHandleIncrementsTheCount)
{
    auto* object = new Object(1);
    const Handle a(object);
    const Handle b(object);
    Handle c;
    c = object;
    const Handle d(c);
    EXPECT_EQ(d.RefCount(), 4);
    EXPECT_EQ(a->number(), 1);
    EXPECT_EQ(&*b, object);
}

TEST_F(ZReferenceTest, ReleaseReturnsFalseIfItDeletedTheObject)
{
    Handle a(new Object(1));
    Handle b(a);
    EXPECT_TRUE(a.release());
    EXPECT_TRUE(!a);
    EXPECT_EQ(wordAt(&a, 0), 0u);
    EXPECT_EQ(b.RefCount(), 1);
    EXPECT_EQ(Counted::s_tally.alive, 1);

    EXPECT_FALSE(b.release());
    EXPECT_TRUE(!b);
    EXPECT_EQ(wordAt(&b, 0), 0u);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
    EXPECT_TRUE(b.release());
}

TEST_F(ZReferenceTest, CountBelowZeroDeletesTheObjectToo)
{
    auto* object = new Object(1);
    Handle handle(object);
    // The counter is the word after the vtable pointer.
    reinterpret_cast<Counter*>(reinterpret_cast<std::uintptr_t*>(object) + 1)->decrement();
    EXPECT_EQ(handle.RefCount(), 0);
    EXPECT_FALSE(handle.release());
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
}

TEST_F(ZReferenceTest, DestructorDecrementsTheCount)
{
    const Handle outer(new Object(1));
    {
        const Handle inner(outer);
        EXPECT_EQ(outer.RefCount(), 2);
    }
    EXPECT_EQ(outer.RefCount(), 1);
}

TEST_F(ZReferenceTest, AssigningTheSameObjectChangesNothing)
{
    Handle a(new Object(1));
    const Handle b(a);
    const Handle& self = a;
    a = self;
    a = b;
    a = b.get();
    EXPECT_EQ(a.RefCount(), 2);
}

TEST_F(ZReferenceTest, AssigningReleasesTheOldObject)
{
    Handle a(new Object(1));
    const Handle b(new Object(2));
    EXPECT_EQ(&(a = b), &a);
    EXPECT_EQ(b.RefCount(), 2);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1));
    EXPECT_EQ(&(a = new Object(3)), &a);
    EXPECT_EQ(b.RefCount(), 1);
    EXPECT_EQ(a->number(), 3);
    a = nullptr;
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(1, 3));
    a = Handle();
    EXPECT_TRUE(!a);
}

TEST_F(ZReferenceTest, MovingTransfersTheCount)
{
    Handle a(new Object(1));
    Handle b(std::move(a));
    EXPECT_TRUE(!a); // NOLINT(bugprone-use-after-move): empty is what is promised
    EXPECT_EQ(b.RefCount(), 1);
    Handle c(new Object(2));
    EXPECT_EQ(&(c = std::move(b)), &c);
    EXPECT_EQ(c->number(), 1);
    EXPECT_EQ(c.RefCount(), 1);
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(2));
}

TEST_F(ZReferenceTest, CopiedObjectStartsWithACountOfZero)
{
    const Handle original(new Dispatching);
    Dispatching copy(*original);
    EXPECT_EQ(wordAt(&copy, 1), 0u);
    const Handle handle(new Dispatching(copy));
    *handle = *original;
    EXPECT_EQ(handle.RefCount(), 1);
}

TEST_F(ZReferenceTest, AssignmentAcceptsAHandleInsideTheReleasedObject)
{
    struct Node : TZReferenceable<Counter> {
        virtual ~Node() = default;
        ZReference<Node> next;
        Counted counted;
    };
    ZReference<Node> node(new Node);
    node->next = new Node;
    node = node->next;
    EXPECT_EQ(node.RefCount(), 1);
    EXPECT_EQ(Counted::s_tally.alive, 1);
}

TEST_F(ZReferenceTest, ThreadsCopyAndReleaseHandlesOnOneObject)
{
    struct Flagged : TZReferenceable<Counter> {
        explicit Flagged(std::atomic<int>& deleted)
            : m_deleted(deleted)
        {
        }
        virtual ~Flagged() { ++m_deleted; }
        std::atomic<int>& m_deleted;
    };
    constexpr int s_rounds = 200;
    std::atomic<int> deleted{0};
    for (int round = 0; round < s_rounds; ++round) {
        std::vector<std::thread> threads;
        {
            const ZReference<Flagged> shared(new Flagged(deleted));
            for (int t = 0; t < 3; ++t) {
                threads.emplace_back([own = shared]() mutable {
                    for (int i = 0; i < 50; ++i)
                        ZReference<Flagged>{own};
                    own.release();
                });
            }
        }
        for (std::thread& thread : threads)
            thread.join();
    }
    EXPECT_EQ(deleted, s_rounds);
}

} // namespace

// A class that is incomplete where it is the target of handle members, as `ZObject` is in values.
class CompletedLater;

} // namespace ZSpace::Testing

namespace ZSpace {

using Testing::CompletedLater;
extern template TZReferenceable<TZRefCounter<int>>* ZReference<CompletedLater>::countedPartOf(
    CompletedLater*) noexcept;
extern template void ZReference<CompletedLater>::destroy(CompletedLater*) noexcept;

} // namespace ZSpace

namespace ZSpace::Testing {
namespace {

struct Holder {
    ZReference<CompletedLater> handle;
};

bool copyAndRelease(Holder& holder)
{
    Holder copy(holder);
    Holder assigned;
    assigned = copy;
    assigned.handle.release();
    copy.handle.release();
    return holder.handle.release();
}

} // namespace

class CompletedLater : public TZReferenceable<Counter> {
public:
    virtual ~CompletedLater() = default;

private:
    Counted m_counted{5};
};

} // namespace ZSpace::Testing

namespace ZSpace {

template TZReferenceable<TZRefCounter<int>>* ZReference<CompletedLater>::countedPartOf(
    CompletedLater*) noexcept;
template void ZReference<CompletedLater>::destroy(CompletedLater*) noexcept;

} // namespace ZSpace

namespace ZSpace::Testing {
namespace {

TEST_F(ZReferenceTest, ClassMayBeIncompleteWhereHandlesAreCopied)
{
    Holder holder{ZReference<CompletedLater>(new CompletedLater)};
    EXPECT_FALSE(copyAndRelease(holder));
    EXPECT_THAT(Counted::s_tally.destroyed, ElementsAre(5));
}

using ZReferenceDeathTest = ZReferenceTest;

TEST_F(ZReferenceDeathTest, DereferencingAnEmptyHandleIsReported)
{
    const Handle empty;
    EXPECT_EXIT((sendOutputToError(), std::ignore = empty->number()), testing::KilledBySignal(SIGABRT),
        "^this->m_ptValue - File: ZTypeRef - Line: 534\n$");
    EXPECT_EXIT((sendOutputToError(), std::ignore = &*empty), testing::KilledBySignal(SIGABRT),
        "^this->m_ptValue - File: ZTypeRef - Line: 543\n$");
}

TEST_F(ZReferenceDeathTest, TerminatesIfTheDestructorOfTheObjectThrows)
{
    struct Thrower : TZReferenceable<Counter> {
        ~Thrower() noexcept(false) { throw std::runtime_error("from a destructor"); }
    };
    EXPECT_EXIT(ZReference<Thrower>(new Thrower), testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

} // namespace
} // namespace ZSpace::Testing
