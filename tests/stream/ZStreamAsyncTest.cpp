// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Requests in general, and asynchronous reading.

#include "ZSpace/stream/ZStreamAsync.h"

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/stream/AsyncTests.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/Slots.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

// One test requests more memory than exists: the allocation must fail, not abort.
extern "C" const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace ZSpace::Testing {
namespace {

static_assert(std::is_same_v<Async::ReadCallback, ZDelegate5<void, Async*, int, long, char const*, long>>);
static_assert(std::is_same_v<Async::WriteCallback, ZDelegate4<void, Async*, int, DataRef, long>>);
static_assert(std::is_same_v<Async::MoveCallback, ZDelegate3<void, Async*, int, long long>>);
static_assert(std::is_same_v<Async::NumberCallback, ZDelegate2<void, Async*, long long>>);
static_assert(std::is_same_v<Async::FlagCallback, ZDelegate2<void, Async*, bool>>);
static_assert(std::is_same_v<Async::StatusCallback, ZDelegate2<void, Async*, int>>);
static_assert(std::is_base_of_v<Async, Ex> && std::is_base_of_v<Ex, File>);

// Placeholders

TEST_F(ZStreamAsyncTest, PlaceholdersAreRefusedAndNeverCallBack)
{
    struct Unused {
        void number(Async*, long long) { ++calls; }
        void flag(Async*, bool) { ++calls; }
        void status(Async*, int) { ++calls; }
        int calls = 0;
    };
    Unused unused;
    ZDelegator2V<Unused, Async*, long long> number(&unused, &Unused::number);
    ZDelegator2V<Unused, Async*, bool> flag(&unused, &Unused::flag);
    ZDelegator2V<Unused, Async*, int> status(&unused, &Unused::status);
    const auto move = zMakeDelegate<Async::MoveCallback>([&](Async*, int, long long) { ++unused.calls; });
    m_file.open(make("file", "abc").c_str(), 6);
    for (int i = 0; i < 2; ++i) {
        Async& stream = m_file;
        EXPECT_FALSE(stream.SizeAsync(&number));
        EXPECT_FALSE(stream.BOSAsync(&flag));
        EXPECT_FALSE(stream.EOSAsync(&flag));
        EXPECT_FALSE(stream.PositionAsync(&number));
        EXPECT_FALSE(stream.moveBeginAsync(&status));
        EXPECT_FALSE(stream.moveEndAsync(&status));
        EXPECT_FALSE(stream.moveToAsync(move.get(), 2));
        EXPECT_FALSE(stream.moveAsync(move.get(), 2));
        EXPECT_FALSE(stream.StateAsync(&status));
        EXPECT_FALSE(stream.closeAsync(&status));
        EXPECT_FALSE(stream.closeAsync(nullptr));
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(unused.calls, 0);
    EXPECT_EQ(m_file.State(), 6);
    EXPECT_EQ(m_file.Position(), 0);
}

TEST_F(ZStreamAsyncTest, RequestsAreInOrder)
{
    const std::vector<std::size_t> slots{slotOf(&Async::clone), slotOf(&Async::SizeAsync),
        slotOf(&Async::BOSAsync), slotOf(&Async::EOSAsync), slotOf(&Async::PositionAsync),
        slotOf(&Async::moveBeginAsync), slotOf(&Async::moveEndAsync), slotOf(&Async::moveToAsync),
        slotOf(&Async::moveAsync), slotOf(&Async::StateAsync), slotOf(&Async::closeAsync),
        slotOf(&Async::readAsync), slotOf(&Async::writeAsync)};
    for (std::size_t i = 1; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], slots[i - 1] + 1) << i;
    EXPECT_EQ(slotOf(&File::readAsync), slotOf(&Async::readAsync));
    EXPECT_EQ(slotOf(&File::writeAsync), slotOf(&Async::writeAsync));
    EXPECT_EQ(slotOf(&File::State), slotOf(&Async::writeAsync) + 1);
}

TEST_F(ZStreamAsyncTest, StreamThatCannotBeClonedReturnsNull)
{
    ScriptedStream stream;
    EXPECT_EQ(stream.clone(), nullptr);
    Async& async = m_file;
    const std::unique_ptr<Async> clone(async.clone());
    EXPECT_TRUE(clone);
}

// Reading

TEST_F(ZStreamAsyncTest, ReadReportsFromAThreadOfItsOwn)
{
    m_file.open(make("file", "abcdef").c_str(), 2);
    EXPECT_TRUE(m_file.readAsync(m_reports.forRead(), 4));
    const Report report = m_reports.next();
    EXPECT_EQ(report.stream, static_cast<Async*>(&m_file));
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.asked, 4);
    EXPECT_EQ(report.text, "abcd");
    EXPECT_EQ(report.done, 4);
    EXPECT_NE(report.thread, std::this_thread::get_id());
}

TEST_F(ZStreamAsyncTest, ReadAtTheEndReportsTheRest)
{
    m_file.open(make("file", "abcdef").c_str(), 2);
    m_file.moveTo(4);
    EXPECT_TRUE(m_file.readAsync(m_reports.forRead(), 100));
    const Report report = m_reports.next();
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.asked, 100);
    EXPECT_EQ(report.text, "ef");
}

TEST_F(ZStreamAsyncTest, ReadOfZeroItemsReportsAnEmptyBuffer)
{
    m_file.open(make("file", "abcdef").c_str(), 2);
    EXPECT_TRUE(m_file.readAsync(m_reports.forRead(), 0));
    const Report report = m_reports.next();
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.asked, 0);
    EXPECT_EQ(report.done, 0);
    EXPECT_TRUE(report.hasBuffer);
}

TEST_F(ZStreamAsyncTest, ReadOfAClosedStreamReportsMinusOne)
{
    EXPECT_TRUE(m_file.readAsync(m_reports.forRead(), 4));
    const Report report = m_reports.next();
    EXPECT_EQ(report.status, -1);
    EXPECT_EQ(report.done, 0);
    EXPECT_TRUE(report.hasBuffer);
}

TEST_F(ZStreamAsyncTest, FailedReadReportsTheErrorIndicator)
{
    m_file.open(directory().c_str(), 2);
    EXPECT_TRUE(m_file.readAsync(m_reports.forRead(), 4));
    const Report report = m_reports.next();
    EXPECT_NE(report.status, 0);
    EXPECT_NE(report.status, -1);
    EXPECT_EQ(report.done, 0);
}

TEST_F(ZStreamAsyncTest, ReadWhoseBufferCannotBeAllocatedReportsENOMEM)
{
    m_file.open(make("file", "abcdef").c_str(), 2);
    for (long count : {-1L, -4'096L, 1L << 50}) {
        File file;
        EXPECT_TRUE(file.readAsync(m_reports.forRead(), count));
        const Report report = m_reports.next();
        EXPECT_EQ(report.status, ENOMEM) << count;
        EXPECT_EQ(report.asked, count);
        EXPECT_EQ(report.done, 0) << count;
        EXPECT_FALSE(report.hasBuffer) << count;
    }
}

TEST_F(ZStreamAsyncTest, ReadFreesTheBufferAndThenDestroysTheCallback)
{
    struct Callback final : Async::ReadCallback {
        bool operator!() const override { return false; }
        void* Object() const override { return nullptr; }
        void operator()(Async*, int, long, char const*, long) const override { inCall = blocksAlive(); }
        Callback* clone() const override { return nullptr; }
        bool operator==(const Async::ReadCallback&) const override { return false; }
        bool operator==(void const*) const override { return false; }
        ~Callback() override
        {
            atEnd = blocksAlive();
            gone.open();
        }
        Callback(long& blocksInCall, long& blocksAtEnd, Gate& destroyed)
            : inCall(blocksInCall)
            , atEnd(blocksAtEnd)
            , gone(destroyed)
        {
        }
        long& inCall;
        long& atEnd;
        Gate& gone;
    };
    long inCall = 0;
    long atEnd = 0;
    Gate gone;
    m_file.readAsync(new Callback(inCall, atEnd, gone), 4);
    gone.wait();
    EXPECT_EQ(atEnd, inCall - 1);
}

TEST_F(ZStreamAsyncTest, CallbackMayBeNull)
{
    {
        File file;
        EXPECT_TRUE(file.readAsync(nullptr, 4));
    }
    EXPECT_TRUE(m_file.writeAsync(nullptr, dataOf("abc")));
}

TEST_F(ZStreamAsyncTest, ReadOverriddenByADerivedFileIsUsed)
{
    struct Shouting : File {
        using File::read;
        int read(char* buffer, long count, long& got) override
        {
            const int status = File::read(buffer, count, got);
            for (char* c = buffer; c < buffer + got; ++c)
                *c = static_cast<char>(*c - 'a' + 'A');
            return status;
        }
        ~Shouting() override { waitForRead(); }
    };
    Shouting file;
    file.open(make("file", "abc").c_str(), 2);
    EXPECT_TRUE(file.readAsync(m_reports.forRead(), 10));
    EXPECT_EQ(m_reports.next().text, "ABC");
    file.waitForRead();
    file.close();
}

TEST_F(ZStreamAsyncTest, RequestAfterWaitingIsNeverRefused)
{
    constexpr int s_rounds = 1'000;
    m_file.open(make("file", std::string(s_rounds, 'r')).c_str(), 2);
    File target;
    target.open(pathOf("target").c_str(), 4);
    std::string read;
    const auto forRead = zMakeDelegate<Async::ReadCallback>(
        [&](Async*, int, long, char const* buffer, long got) { read.append(buffer, buffer + got); });
    const DataRef data = dataOf("w");
    for (int i = 0; i < s_rounds; ++i) {
        ASSERT_TRUE(m_file.readAsync(forRead->clone(), 1));
        ASSERT_TRUE(target.writeAsync(nullptr, data));
        m_file.waitForRead();
        target.waitForWrite();
        ASSERT_EQ(read.size(), static_cast<std::size_t>(i + 1));
        ASSERT_EQ(data.RefCount(), 1);
    }
    m_file.waitForRead(); // returns at once
    target.waitForWrite();
    target.close();
    EXPECT_EQ(read, std::string(s_rounds, 'r'));
    EXPECT_EQ(contentOf("target"), std::string(s_rounds, 'w'));
}

TEST_F(ZStreamAsyncTest, WaitingInTheCallbackReturnsAtOnce)
{
    Gate gate;
    m_file.open(make("file", "abc").c_str(), 6);
    m_file.readAsync(zMakeDelegate<Async::ReadCallback>([&](Async*, int, long, char const*, long) {
        m_file.waitForRead();
        gate.open();
    }).release(),
        3);
    gate.wait();
    m_file.waitForRead();
}

TEST_F(ZStreamAsyncTest, SecondReadIsRefusedWhileTheFirstRuns)
{
    Gate gate;
    ScriptedStream stream;
    stream.m_readGate = &gate;
    EXPECT_TRUE(stream.readAsync(m_reports.forRead(), 1));
    std::unique_ptr<Async::ReadCallback> second(m_reports.forRead());
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(stream.readAsync(second.get(), 1));
    gate.open();
    m_reports.next();
    await([&] { return stream.readAsync(second.get(), 2); });
    static_cast<void>(second.release());
    EXPECT_EQ(m_reports.next().text, "rr");
    EXPECT_EQ(m_reports.count(), 2u);
}

TEST_F(ZStreamAsyncTest, ReadIsOutstandingUntilItsCallbackHasReturned)
{
    Gate gate;
    ScriptedStream stream;
    bool accepted = true;
    stream.readAsync(zMakeDelegate<Async::ReadCallback>([&](Async* same, int, long, char const*, long) {
        accepted = same->readAsync(nullptr, 1);
        gate.open();
    }).release(),
        1);
    gate.wait();
    EXPECT_FALSE(accepted);
}

} // namespace
} // namespace ZSpace::Testing
