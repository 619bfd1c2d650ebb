// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZThread.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/DeathTests.h"
#include "tests/support/Probes.h"
#include "tests/support/ThreadFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <thread>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

using Worker = ZThread_T<pthread_t*>;

static_assert(!std::is_copy_constructible_v<Worker> && !std::is_copy_assignable_v<Worker>);
static_assert(sizeof(Worker)
    == sizeof(pthread_mutex_t) + 2 * sizeof(pthread_t) + 2 * sizeof(void*) + sizeof(ZRef<std::atomic<bool>>));

/// Runs a lambda. Destroys its captures when it is deleted.
class Job final : public ZInvokable<void> {
public:
    explicit Job(std::function<void()> work)
        : m_work(std::move(work))
    {
    }
    void invoke() const override { m_work(); }

private:
    std::function<void()> m_work;
};

/// Blocks threads until it is opened.
class Gate {
public:
    void open() { m_promise.set_value(); }
    void wait() const { m_future.wait(); }

private:
    std::promise<void> m_promise;
    std::shared_future<void> m_future = m_promise.get_future().share();
};

/// Waits until the work that shares `token` has been deleted.
void awaitLastShare(const std::shared_ptr<Gate>& token)
{
    while (token.use_count() > 1)
        std::this_thread::yield();
}

TEST(ZThreadTest, IsIdleAtFirst)
{
    Worker worker;
    EXPECT_FALSE(worker.isRunning());
    EXPECT_EQ(worker.lastThread(), pthread_t{});
    worker.join();
    worker.close();
    EXPECT_FALSE(worker.isRunning());
}

TEST(ZThreadTest, InvokesOnAThreadOfItsOwn)
{
    Worker worker;
    pthread_t runner{};
    EXPECT_TRUE(worker.execute(new Job([&] { runner = pthread_self(); })));
    const pthread_t started = worker.lastThread();
    worker.join();
    EXPECT_FALSE(pthread_equal(runner, pthread_self()));
    EXPECT_TRUE(pthread_equal(runner, started));
}

TEST(ZThreadTest, IsRunningUntilTheWorkHasEnded)
{
    Gate gate;
    Worker worker;
    int result = 0;
    worker.execute(new Job([&] {
        gate.wait();
        result = 1;
    }));
    EXPECT_TRUE(worker.isRunning());
    gate.open();
    while (worker.isRunning())
        std::this_thread::yield();
    EXPECT_EQ(result, 1); // no join in between: isRunning() itself synchronizes
    worker.join();
    EXPECT_FALSE(worker.isRunning());
}

TEST(ZThreadTest, JoinClearsTheHandle)
{
    Worker worker;
    worker.execute(new Job([] {}));
    const pthread_t started = worker.lastThread();
    worker.join();
    EXPECT_FALSE(worker.isRunning());
    EXPECT_TRUE(pthread_equal(worker.lastThread(), started));
    worker.join();
    worker.close();
}

TEST(ZThreadTest, JoinClearsTheRunningFlagWhateverTheWorkLeftInIt)
{
    struct OpenWorker : Worker {
        using Worker::m_running;
    };
    OpenWorker worker;
    worker.execute(new Job([] {}));
    while (worker.isRunning())
        std::this_thread::yield();
    worker.m_running->store(true);
    worker.join();
    EXPECT_FALSE(worker.m_running->load());
}

TEST(ZThreadTest, StoresTheLastThreadAndThenTheCurrentOne)
{
    Gate gate;
    Worker worker;
    worker.execute(new Job([&] { gate.wait(); }));
    constexpr std::size_t s_last = sizeof(pthread_mutex_t) / sizeof(void*);
    EXPECT_NE(wordAt(&worker, s_last), 0u);
    EXPECT_EQ(wordAt(&worker, s_last + 1), wordAt(&worker, s_last));
    EXPECT_EQ(wordAt(&worker, s_last + 2), 0u);
    EXPECT_EQ(wordAt(&worker, s_last + 3), 0u);
    gate.open();
    worker.join();
    EXPECT_NE(wordAt(&worker, s_last), 0u);
    EXPECT_EQ(wordAt(&worker, s_last + 1), 0u);
}

TEST(ZThreadTest, CloseDetachesTheThread)
{
    const auto gate = std::make_shared<Gate>();
    std::atomic<bool> done{false};
    Worker worker;
    worker.execute(new Job([gate, &done] {
        gate->wait();
        done = true;
    }));
    worker.close();
    EXPECT_FALSE(worker.isRunning());
    worker.join(); // no thread to join
    EXPECT_FALSE(done);
    gate->open();
    while (!done)
        std::this_thread::yield();
    awaitLastShare(gate);
}

TEST(ZThreadTest, NextStartDetachesThePreviousThread)
{
    const auto gate = std::make_shared<Gate>();
    Gate second;
    Worker worker;
    worker.execute(new Job([gate] { gate->wait(); }));
    const pthread_t first = worker.lastThread();
    worker.execute(new Job([&] { second.wait(); }));
    EXPECT_FALSE(pthread_equal(worker.lastThread(), first));
    gate->open();
    awaitLastShare(gate); // the end of the first work does not end the second
    EXPECT_TRUE(worker.isRunning());
    second.open();
    worker.join();
}

/// Whether a live thread has been detached already.
bool isDetached(pthread_t thread)
{
    return pthread_detach(thread) == EINVAL;
}

TEST(ZThreadTest, DetachedThreadsAreDetachedForTheSystemToo)
{
    Gate gate;
    const auto token = std::make_shared<Gate>();
    const auto start = [&](Worker& worker) {
        worker.execute(new Job([&gate, token] { gate.wait(); }));
        return worker.lastThread();
    };
    std::vector<pthread_t> threads;
    {
        Worker closed;
        threads.push_back(start(closed));
        closed.close();
        Worker restarted;
        threads.push_back(start(restarted));
        threads.push_back(start(restarted));
    }
    for (pthread_t thread : threads)
        EXPECT_TRUE(isDetached(thread));
    gate.open();
    awaitLastShare(token);
}

TEST(ZThreadTest, NothingToInvokeStartsNothing)
{
    Gate gate;
    Worker worker;
    EXPECT_FALSE(worker.execute(nullptr));
    EXPECT_FALSE(worker.isRunning());
    EXPECT_EQ(worker.lastThread(), pthread_t{});
    worker.execute(new Job([&] { gate.wait(); }));
    EXPECT_FALSE(worker.execute(nullptr));
    EXPECT_TRUE(worker.isRunning());
    gate.open();
    worker.join();
}

TEST(ZThreadTest, DestructorDetachesTheThread)
{
    const auto gate = std::make_shared<Gate>();
    {
        Worker worker;
        worker.execute(new Job([gate] { gate->wait(); }));
    }
    gate->open();
    awaitLastShare(gate);
}

TEST(ZThreadTest, WorkMayDestroyItsOwnWorker)
{
    const auto gate = std::make_shared<Gate>();
    auto worker = std::make_unique<Worker>();
    Worker* raw = worker.get();
    raw->execute(new Job([gate, owned = std::make_shared<std::unique_ptr<Worker>>(std::move(worker))] {
        gate->wait();
        owned->reset();
    }));
    gate->open();
    awaitLastShare(gate);
}

TEST(ZThreadTest, JoinReturnsImmediatelyOnTheThreadItself)
{
    Worker worker;
    bool runningAfterwards = false;
    worker.execute(new Job([&] {
        worker.join();
        runningAfterwards = worker.isRunning();
    }));
    worker.join();
    EXPECT_TRUE(runningAfterwards);
}

TEST(ZThreadTest, WorkIsDeletedAfterItsRun)
{
    const auto token = std::make_shared<int>(0);
    Worker worker;
    worker.execute(new Job([token] { ++*token; }));
    worker.join();
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_EQ(*token, 1);
}

// Hooks are plain functions, so their records are global.
std::vector<std::string> s_notes;

TEST(ZThreadTest, HooksRunBeforeAndAfterTheWork)
{
    struct Departing : ZInvokable<void> {
        void invoke() const override { s_notes.emplace_back("work"); }
        ~Departing() override { s_notes.emplace_back("gone"); }
    };
    s_notes.clear();
    Worker worker;
    worker.setHooks([] { s_notes.emplace_back("before"); }, [] { s_notes.emplace_back("after"); });
    worker.execute(new Departing);
    worker.join();
    EXPECT_THAT(s_notes, ElementsAre("before", "work", "after", "gone"));

    s_notes.clear();
    worker.setHooks(nullptr, nullptr);
    worker.execute(new Departing);
    worker.join();
    EXPECT_THAT(s_notes, ElementsAre("work", "gone"));
}

TEST(ZThreadTest, IsNoLongerRunningInTheSecondHook)
{
    static Worker* s_worker;
    static bool s_running;
    Worker worker;
    s_worker = &worker;
    s_running = true;
    worker.setHooks(nullptr, [] { s_running = s_worker->isRunning(); });
    worker.execute(new Job([] {}));
    worker.join();
    EXPECT_FALSE(s_running);
}

TEST(ZThreadTest, RunsExecutors)
{
    struct Sum {
        void add(int a, long b) { value += a + static_cast<int>(b); }
        int value = 0;
    };
    Sum sum;
    Worker worker;
    worker.execute(new ZExecutor2V<int, long>(new ZDelegator2V<Sum, int, long>(&sum, &Sum::add), 3, 4L));
    worker.join();
    EXPECT_EQ(sum.value, 7);
}

TEST(ZThreadTest, ExecuteReturnsFalseIfNoThreadCanBeCreated)
{
    if (!ThreadFault::isPossible())
        GTEST_SKIP() << "pthread_create cannot be made to fail in this build";
    const auto token = std::make_shared<int>(0);
    Worker worker;
    {
        const ThreadFault fault;
        EXPECT_FALSE(worker.execute(new Job([token] { ++*token; })));
    }
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_EQ(*token, 0);
    EXPECT_FALSE(worker.isRunning());
    EXPECT_EQ(worker.lastThread(), pthread_t{});
    worker.join();

    EXPECT_TRUE(worker.execute(new Job([token] { ++*token; })));
    worker.join();
    EXPECT_EQ(*token, 1);
}

TEST(ZThreadTest, PreviousThreadIsDetachedEvenIfNoThreadCanBeCreated)
{
    if (!ThreadFault::isPossible())
        GTEST_SKIP() << "pthread_create cannot be made to fail in this build";
    const auto gate = std::make_shared<Gate>();
    Worker worker;
    worker.execute(new Job([gate] { gate->wait(); }));
    const pthread_t first = worker.lastThread();
    {
        const ThreadFault fault;
        EXPECT_FALSE(worker.execute(new Job([] {})));
    }
    EXPECT_FALSE(worker.isRunning());
    EXPECT_TRUE(pthread_equal(worker.lastThread(), first));
    gate->open();
    awaitLastShare(gate);
}

TEST(ZThreadTest, AllocationFailuresPropagateAndKeepThePreviousThread)
{
    Gate gate;
    Worker worker;
    worker.execute(new Job([&] { gate.wait(); }));
    for (long nth = 1; nth <= 3; ++nth) { // the flag, its counter, the start record
        const auto token = std::make_shared<int>(0);
        auto* job = new Job([token] { ++*token; });
        {
            const AllocationFault fault(nth);
            EXPECT_THROW(worker.execute(job), std::bad_alloc);
        }
        EXPECT_EQ(token.use_count(), 1);
        EXPECT_EQ(*token, 0);
        EXPECT_TRUE(worker.isRunning());
    }
    gate.open();
    worker.join();
}

TEST(ZThreadTest, ManyStartsInARowLeakNothing)
{
    constexpr int s_starts = 2'000;
    std::atomic<int> done{0};
    Worker worker;
    for (int i = 0; i < s_starts; ++i) {
        ASSERT_TRUE(worker.execute(new Job([&] { ++done; })));
        if (i % 2)
            worker.join();
    }
    worker.join();
    while (done < s_starts)
        std::this_thread::yield();
}

TEST(ZThreadTest, AnyThreadMayAskWhetherItRuns)
{
    Worker worker;
    std::atomic<bool> stop{false};
    std::thread asker([&] {
        while (!stop)
            static_cast<void>(worker.isRunning());
    });
    for (int i = 0; i < 100; ++i) {
        worker.execute(new Job([] {}));
        worker.join();
    }
    stop = true;
    asker.join();
    EXPECT_FALSE(worker.isRunning());
}

TEST(ZThreadDeathTest, TerminatesIfAnExceptionEscapesTheWork)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            Worker worker;
            worker.execute(new Job([] { throw std::runtime_error("from the work"); }));
            worker.join();
        },
        testing::KilledBySignal(SIGABRT), s_terminateMessage);
}

} // namespace
} // namespace ZSpace::Testing
