// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZStreamAsync.h"

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/DeathTests.h"
#include "tests/support/FileFields.h"
#include "tests/support/Slots.h"
#include "tests/support/StreamTests.h"
#include "tests/support/ThreadFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <type_traits>
#include <unistd.h>
#include <utility>
#include <vector>

// A test asks for more memory than there is: that shall fail, not end the process.
extern "C" const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
extern "C" const char* __tsan_default_options()
{
    return "allocator_may_return_null=1";
}

namespace ZSpace {
namespace {

using Testing::runInChild;
using ZSpace::Testing::becomeNobody;
using ZSpace::Testing::blocksAlive;
using ZSpace::Testing::failEachAllocation;
using ZSpace::Testing::FileFields;
using ZSpace::Testing::sendOutputToError;
using ZSpace::Testing::slotOf;
using ZSpace::Testing::ThreadFault;

using Async = ZStreamAsync<>;
using Ex = ZStreamEx<>;
using File = ZIOGFile<>;
using Bytes = ZArray<char, ZAllocation<char>>;
using DataRef = ZRef<Bytes, TZRefCounter<int>>;

static_assert(std::is_same_v<Async::ReadCallback, ZDelegate5<void, Async*, int, long, char const*, long>>);
static_assert(std::is_same_v<Async::WriteCallback, ZDelegate4<void, Async*, int, DataRef, long>>);
static_assert(std::is_same_v<Async::MoveCallback, ZDelegate3<void, Async*, int, long long>>);
static_assert(std::is_same_v<Async::NumberCallback, ZDelegate2<void, Async*, long long>>);
static_assert(std::is_same_v<Async::FlagCallback, ZDelegate2<void, Async*, bool>>);
static_assert(std::is_same_v<Async::StatusCallback, ZDelegate2<void, Async*, int>>);
static_assert(std::is_base_of_v<Async, Ex> && std::is_base_of_v<Ex, File>);

DataRef dataOf(const std::string& text)
{
    return DataRef(new Bytes(text.data(), static_cast<long>(text.size())));
}

/// Waits for what another thread brings about; mostly that is a matter of moments.
template <typename Condition>
void await(Condition condition)
{
    for (int tries = 0; !condition(); ++tries) {
        if (tries > 100)
            std::this_thread::yield();
    }
}

/// Opened once, for any number of threads that wait for it. Opening is the opener's last use of it.
class Gate {
public:
    void open() { m_isOpen = true; }
    void wait() const
    {
        await([this] { return m_isOpen.load(); });
    }

private:
    std::atomic<bool> m_isOpen{false};
};

/// What a callback has been told.
struct Report {
    Async* stream = nullptr;
    int status = -77;
    long asked = -77;
    bool hasBuffer = false;
    std::string text;
    Bytes* data = nullptr;
    long done = -77;
    std::thread::id thread;
};

/// Remembers what one callback after the other is told.
class Reports {
public:
    /// To be given to `readAsync`; it is destroyed by the worker, or by the test where nobody takes it over.
    Async::ReadCallback* forRead()
    {
        return zMakeDelegate<Async::ReadCallback>([this](Async* stream, int status, long asked,
                                                      char const* buffer, long got) {
            Report report;
            report.stream = stream;
            report.status = status;
            report.asked = asked;
            report.hasBuffer = buffer;
            report.text.assign(buffer ? buffer : "", static_cast<std::size_t>(buffer ? got : 0));
            report.done = got;
            take(std::move(report));
        }).release();
    }
    /// To be given to `writeAsync`; the test keeps it.
    std::unique_ptr<Async::WriteCallback> forWrite()
    {
        return zMakeDelegate<Async::WriteCallback>(
            [this](Async* stream, int status, const DataRef& data, long written) {
                Report report;
                report.stream = stream;
                report.status = status;
                report.data = data.get();
                report.done = written;
                take(std::move(report));
            });
    }

    /// Waits for the next report.
    Report next()
    {
        await([&] { return m_count.load() > m_seen; });
        return m_reports[m_seen++];
    }
    [[nodiscard]] std::size_t count() const { return m_count; }

private:
    void take(Report report)
    {
        report.thread = std::this_thread::get_id();
        m_reports.at(m_count) = std::move(report);
        ++m_count;
    }

    std::vector<Report> m_reports{64};
    std::atomic<std::size_t> m_count{0};
    std::size_t m_seen = 0;
};

/// Gives the answers of a list, one for each pass.
class ScriptedStream : public ZStreamEx<> {
public:
    struct Pass {
        int status;
        long done;
    };

    explicit ScriptedStream(std::vector<Pass> passes = {})
        : m_passes(std::move(passes))
    {
    }
    ~ScriptedStream() override
    {
        waitForRead();
        waitForWrite();
    }

    int read(char* buffer, long count, long& got) override
    {
        if (m_readGate)
            m_readGate->wait();
        std::fill(buffer, buffer + count, 'r');
        got = count;
        return 0;
    }
    int write(char const* data, long count, long& written) override
    {
        if (m_writeGate)
            m_writeGate->wait();
        m_writes.emplace_back(std::string(data ? data : "", static_cast<std::size_t>(data ? count : 0)));
        const Pass pass = m_passes.at(m_writes.size() - 1);
        written = pass.done;
        return pass.status;
    }
    long long Size() override { return 0; }
    bool BOS() override { return true; }
    bool EOS() override { return true; }
    long long Position() override { return 0; }
    int moveBegin() override { return 0; }
    int moveEnd() override { return 0; }
    int moveTo(long long) override { return 0; }
    int move(long long) override { return 0; }
    int State() const override { return 6; }
    int close() override { return 0; }

    void awaitWrite() { waitForWrite(); }

    Gate* m_readGate = nullptr;
    Gate* m_writeGate = nullptr;
    std::vector<std::string> m_writes;

private:
    std::vector<Pass> m_passes;
};

class ZStreamAsyncTest : public ZSpace::Testing::FolderTest {
protected:
    ~ZStreamAsyncTest() override { m_file.close(); }

    /// A fifo that is open at both ends: reads from it wait, and so do writes of more than it holds.
    int makeFifo(const std::string& name) const
    {
        EXPECT_EQ(mkfifo(pathOf(name).c_str(), 0600), 0);
        return ::open(pathOf(name).c_str(), O_RDWR | O_CLOEXEC);
    }

    File m_file;
    Reports m_reports;
};

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

TEST_F(ZStreamAsyncTest, RequestsStandInOrder)
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

TEST_F(ZStreamAsyncTest, StreamWithoutACloneGivesNull)
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

TEST_F(ZStreamAsyncTest, ReadAtTheEndReportsWhatIsLeft)
{
    m_file.open(make("file", "abcdef").c_str(), 2);
    m_file.moveTo(4);
    EXPECT_TRUE(m_file.readAsync(m_reports.forRead(), 100));
    const Report report = m_reports.next();
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.asked, 100);
    EXPECT_EQ(report.text, "ef");
}

TEST_F(ZStreamAsyncTest, ReadOfNothingReportsAnEmptyBuffer)
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

TEST_F(ZStreamAsyncTest, ReadThatFailsReportsTheErrorMark)
{
    m_file.open(folder().c_str(), 2);
    EXPECT_TRUE(m_file.readAsync(m_reports.forRead(), 4));
    const Report report = m_reports.next();
    EXPECT_NE(report.status, 0);
    EXPECT_NE(report.status, -1);
    EXPECT_EQ(report.done, 0);
}

TEST_F(ZStreamAsyncTest, ReadWithoutMemoryForItsBufferReportsThat)
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

TEST_F(ZStreamAsyncTest, ReadMayGoWithoutACallback)
{
    {
        File file;
        EXPECT_TRUE(file.readAsync(nullptr, 4));
    }
    EXPECT_TRUE(m_file.writeAsync(nullptr, dataOf("abc")));
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

TEST_F(ZStreamAsyncTest, ReadIsUnderWayUntilItsCallbackHasReturned)
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

// Writing

TEST_F(ZStreamAsyncTest, WriteReportsFromAThreadOfItsOwn)
{
    m_file.open(pathOf("file").c_str(), 4);
    const DataRef data = dataOf("abcdef");
    const auto callback = m_reports.forWrite();
    EXPECT_TRUE(m_file.writeAsync(callback.get(), data));
    const Report report = m_reports.next();
    EXPECT_EQ(report.stream, static_cast<Async*>(&m_file));
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.data, data.get());
    EXPECT_EQ(report.done, 6);
    EXPECT_NE(report.thread, std::this_thread::get_id());
    await([&] { return data.RefCount() == 1; });
    m_file.close();
    EXPECT_EQ(contentOf("file"), "abcdef");
}

TEST_F(ZStreamAsyncTest, WriteLeavesTheCallbackToItsOwner)
{
    m_file.open(pathOf("file").c_str(), 4);
    const auto callback = m_reports.forWrite();
    for (int i = 0; i < 3; ++i) {
        await([&] { return m_file.writeAsync(callback.get(), dataOf("abc")); });
        EXPECT_EQ(m_reports.next().done, 3);
    }
    m_file.close();
    EXPECT_EQ(contentOf("file"), "abcabcabc");
}

TEST_F(ZStreamAsyncTest, WriteKeepsTheDataAlive)
{
    m_file.open(pathOf("file").c_str(), 4);
    const auto callback = m_reports.forWrite();
    m_file.writeAsync(callback.get(), dataOf(std::string(100'000, 'x')));
    EXPECT_EQ(m_reports.next().done, 100'000);
}

TEST_F(ZStreamAsyncTest, WriteOfAClosedStreamReportsMinusOne)
{
    const auto callback = m_reports.forWrite();
    for (const char* text : {"abc", ""}) {
        File file;
        EXPECT_TRUE(file.writeAsync(callback.get(), dataOf(text)));
        const Report report = m_reports.next();
        EXPECT_EQ(report.status, -1);
        EXPECT_EQ(report.done, 0);
    }
}

TEST_F(ZStreamAsyncTest, WriteThatFailsAtOnceReportsTheErrorMark)
{
    if (m_file.open("/dev/full", 4) != 0)
        GTEST_SKIP() << "the host has no full device";
    const auto callback = m_reports.forWrite();
    m_file.writeAsync(callback.get(), dataOf(std::string(1 << 20, 'x')));
    const Report report = m_reports.next();
    EXPECT_NE(report.status, 0);
    EXPECT_EQ(report.done, 0);
}

TEST_F(ZStreamAsyncTest, PassesOfAWrite)
{
    struct Row {
        std::string text;
        std::vector<ScriptedStream::Pass> passes;
        std::vector<std::string> writes;
        int status;
        long done;
    };
    const std::vector<Row> rows{
        {"abcdef", {{0, 6}}, {"abcdef"}, 0, 6}, // all at once
        {"abcdef", {{0, 2}, {0, 3}, {0, 1}}, {"abcdef", "cdef", "f"}, 0, 6}, // in parts
        {"abcdef", {{0, 0}, {0, 6}}, {"abcdef", "abcdef"}, 0, 6}, // nothing written is no failure
        {"abcdef", {{0, 4}, {28, 0}}, {"abcdef", "ef"}, 28, 4}, // fails part way
        {"abcdef", {{0, 1}, {-1, 3}}, {"abcdef", "bcdef"}, -1, 1}, // what a failing pass wrote does not count
        {"abcdef", {{5, 2}}, {"abcdef"}, 5, 0}, // fails at once
        {"abc", {{0, 9}}, {"abc"}, 0, 9}, // more than was asked is believed
        {"", {{0, 0}}, {""}, 0, 0}, // an empty array has one pass
        {"", {{7, 0}}, {""}, 7, 0},
    };
    for (const Row& row : rows) {
        ScriptedStream stream(row.passes);
        const DataRef data = dataOf(row.text);
        const auto callback = m_reports.forWrite();
        EXPECT_TRUE(stream.writeAsync(callback.get(), data));
        const Report report = m_reports.next();
        EXPECT_EQ(stream.m_writes, row.writes);
        EXPECT_EQ(report.status, row.status);
        EXPECT_EQ(report.done, row.done);
        EXPECT_EQ(report.data, data.get());
        EXPECT_EQ(report.stream, static_cast<Async*>(&stream));
        stream.awaitWrite();
    }
    EXPECT_EQ(m_reports.count(), rows.size());
}

TEST_F(ZStreamAsyncTest, SecondWriteIsRefusedWhileTheFirstRuns)
{
    Gate gate;
    ScriptedStream stream({{0, 3}, {0, 3}});
    stream.m_writeGate = &gate;
    const auto callback = m_reports.forWrite();
    const DataRef data = dataOf("abc");
    EXPECT_TRUE(stream.writeAsync(callback.get(), data));
    for (int i = 0; i < 3; ++i)
        EXPECT_FALSE(stream.writeAsync(callback.get(), data));
    EXPECT_FALSE(stream.writeAsync(callback.get(), DataRef())); // not even looked at
    gate.open();
    m_reports.next();
    stream.awaitWrite();
    EXPECT_EQ(data.RefCount(), 1);
    EXPECT_TRUE(stream.writeAsync(callback.get(), data));
    m_reports.next();
    EXPECT_EQ(m_reports.count(), 2u);
}

TEST_F(ZStreamAsyncTest, SecondWriteToAFileIsRefusedWhileTheFirstRuns)
{
    const int fifo = makeFifo("fifo");
    m_file.open(pathOf("fifo").c_str(), 4);
    const auto callback = m_reports.forWrite();
    const DataRef data = dataOf(std::string(1 << 20, 'x'));
    EXPECT_TRUE(m_file.writeAsync(callback.get(), data)); // waits for room
    EXPECT_FALSE(m_file.writeAsync(callback.get(), data));
    std::string buffer(1 << 16, '\0');
    for (long left = 1 << 20; left > 0;)
        left -= ::read(fifo, buffer.data(), buffer.size());
    const Report report = m_reports.next();
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.done, 1 << 20);
    ::close(fifo);
}

TEST_F(ZStreamAsyncTest, ReadAndWriteRunAtTheSameTime)
{
    Gate readGate;
    Gate writeGate;
    ScriptedStream stream({{0, 3}});
    stream.m_readGate = &readGate;
    stream.m_writeGate = &writeGate;
    const auto callback = m_reports.forWrite();
    EXPECT_TRUE(stream.readAsync(m_reports.forRead(), 2));
    EXPECT_TRUE(stream.writeAsync(callback.get(), dataOf("abc")));
    writeGate.open();
    EXPECT_EQ(m_reports.next().done, 3);
    readGate.open();
    EXPECT_EQ(m_reports.next().text, "rr");
}

TEST_F(ZStreamAsyncTest, WriteOfADerivedFileIsItsOwn)
{
    struct Shouting : File {
        using File::write;
        int write(char const* data, long count, long& written) override
        {
            std::string loud(data, static_cast<std::size_t>(count));
            for (char& c : loud)
                c = static_cast<char>(c - 'a' + 'A');
            return File::write(loud.data(), count, written);
        }
        ~Shouting() override { waitForWrite(); }
    };
    const auto callback = m_reports.forWrite();
    Shouting file;
    file.open(pathOf("file").c_str(), 4);
    EXPECT_TRUE(file.writeAsync(callback.get(), dataOf("abc")));
    EXPECT_EQ(m_reports.next().stream, static_cast<Async*>(&file));
    file.close();
    EXPECT_EQ(contentOf("file"), "ABC");
}

// Without threads, without memory

TEST_F(ZStreamAsyncTest, RequestWithoutAThreadCountsAsTakenAndComesToNothing)
{
    if (!ThreadFault::isPossible())
        GTEST_SKIP() << "the host does not let the usual stack size be set";
    m_file.open(make("file", "abc").c_str(), 6);
    const std::unique_ptr<Async::ReadCallback> forRead(m_reports.forRead());
    const auto forWrite = m_reports.forWrite();
    const DataRef data = dataOf("xyz");
    {
        const ThreadFault fault;
        for (int i = 0; i < 2; ++i) {
            EXPECT_TRUE(m_file.readAsync(forRead.get(), 3));
            EXPECT_TRUE(m_file.writeAsync(forWrite.get(), data));
        }
    }
    EXPECT_EQ(data.RefCount(), 1);
    EXPECT_EQ(m_file.Position(), 0);
    EXPECT_TRUE(m_file.readAsync(forRead->clone(), 3));
    EXPECT_EQ(m_reports.next().text, "abc");
    EXPECT_EQ(m_reports.count(), 1u);
}

TEST_F(ZStreamAsyncTest, ThreadLimitOfTheUserIsSurvived)
{
    make("file", "abc");
    openToAll();
    const auto outcome = runInChild([&] {
        const rlimit none{0, 0};
        if (!becomeNobody() || setrlimit(RLIMIT_NPROC, &none) != 0)
            return 100;
        File file;
        Reports reports;
        const std::unique_ptr<Async::ReadCallback> forRead(reports.forRead());
        const auto forWrite = reports.forWrite();
        if (file.open(pathOf("file").c_str(), 2) != 0)
            return 1;
        for (int i = 0; i < 100; ++i) {
            if (!file.readAsync(forRead.get(), 3) || !file.writeAsync(forWrite.get(), dataOf("abc")))
                return 2;
        }
        char buffer[3];
        if (file.read(buffer, 3) != 3)
            return 3;
        return reports.count() == 0 ? file.close() : 4;
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardError;
}

TEST_F(ZStreamAsyncTest, WantOfMemoryPassesOnBeforeAnythingIsBegun)
{
    ScriptedStream stream({{0, 3}});
    std::unique_ptr<Async::ReadCallback> forRead(m_reports.forRead());
    EXPECT_GE(failEachAllocation([&] { stream.readAsync(forRead.get(), 3); }), 3);
    static_cast<void>(forRead.release());
    m_reports.next();
    const auto forWrite = m_reports.forWrite();
    const DataRef data = dataOf("xyz");
    EXPECT_GE(failEachAllocation([&] { stream.writeAsync(forWrite.get(), data); }), 3);
    m_reports.next();
    m_file.open(pathOf("file").c_str(), 4);
    EXPECT_GE(failEachAllocation([&] { m_file.writeAsync(forWrite.get(), data); }), 3);
    EXPECT_EQ(m_reports.next().done, 3);
    EXPECT_EQ(m_reports.count(), 3u);
}

TEST(ZStreamAsyncDeathTest, EmptyDataIsReported)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            sendOutputToError();
            File file;
            file.writeAsync(nullptr, DataRef());
        },
        testing::KilledBySignal(SIGABRT), "this->m_ptValue.*ZTypeRef.*534");
    EXPECT_EXIT(
        {
            sendOutputToError();
            ScriptedStream stream;
            stream.writeAsync(nullptr, DataRef());
        },
        testing::KilledBySignal(SIGABRT), "this->m_ptValue.*ZTypeRef.*534");
}

// Destruction

TEST_F(ZStreamAsyncTest, DestructionWaitsForTheCallbackOfARead)
{
    const int fifo = makeFifo("fifo");
    std::atomic<bool> returned{false};
    std::atomic<bool> destroyed{false};
    auto file = std::make_unique<File>();
    file->open(pathOf("fifo").c_str(), 2);
    FILE* handle = FileFields::of(*file).handle;
    file->readAsync(zMakeDelegate<Async::ReadCallback>([&](Async*, int, long, char const*, long) {
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        returned = true;
    }).release(),
        3);
    std::thread destroyer([&] {
        file.reset();
        EXPECT_TRUE(returned);
        destroyed = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(destroyed); // nothing to read yet
    EXPECT_EQ(::write(fifo, "abc", 3), 3);
    destroyer.join();
    fclose(handle);
    ::close(fifo);
}

TEST_F(ZStreamAsyncTest, DestructionLetsAWriteGoOn)
{
    const int fifo = makeFifo("fifo");
    const auto callback = m_reports.forWrite();
    Async* stream = nullptr;
    FILE* handle = nullptr;
    {
        File file;
        stream = &file;
        file.open(pathOf("fifo").c_str(), 4);
        handle = FileFields::of(file).handle;
        EXPECT_TRUE(file.writeAsync(callback.get(), dataOf(std::string(1 << 20, 'x')))); // waits for room
    }
    EXPECT_EQ(m_reports.count(), 0u);
    std::string buffer(1 << 16, '\0');
    for (long left = 1 << 20; left > 0;)
        left -= ::read(fifo, buffer.data(), buffer.size());
    const Report report = m_reports.next();
    EXPECT_EQ(report.stream, stream); // whose it was
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.done, 1 << 20);
    fclose(handle);
    ::close(fifo);
}

TEST_F(ZStreamAsyncTest, DestructionDuringAReadIsSafeAtEveryMoment)
{
    make("file", "abcdef");
    std::atomic<int> reports{0};
    const auto callback =
        zMakeDelegate<Async::ReadCallback>([&](Async*, int status, long, char const* buffer, long got) {
            if (status == 0 && std::string(buffer, static_cast<std::size_t>(got)) == "abcdef")
                ++reports;
        });
    constexpr int s_rounds = 1'000;
    for (int i = 0; i < s_rounds; ++i) {
        FILE* handle = nullptr;
        {
            File file;
            ASSERT_EQ(file.open(pathOf("file").c_str(), 2), 0);
            handle = FileFields::of(file).handle;
            EXPECT_TRUE(file.readAsync(callback->clone(), 10));
            for (int spin = 0; spin < i * 20; ++spin)
                std::atomic_signal_fence(std::memory_order_seq_cst);
        }
        EXPECT_EQ(reports, i + 1); // the destructor has waited
        fclose(handle);
    }
}

TEST_F(ZStreamAsyncTest, DestructionDuringAWriteIsSafeAtEveryMoment)
{
    const DataRef data = dataOf("abcdef");
    std::atomic<int> reports{0};
    const auto callback =
        zMakeDelegate<Async::WriteCallback>([&](Async*, int status, const DataRef&, long written) {
            if (status == 0 && written == 6)
                ++reports;
        });
    constexpr int s_rounds = 1'000;
    for (int i = 0; i < s_rounds; ++i) {
        FILE* handle = nullptr;
        {
            // In memory of its own, so that a use after its end shows.
            const auto file = std::make_unique<File>();
            ASSERT_EQ(file->open(pathOf("file").c_str(), 8), 0);
            handle = FileFields::of(*file).handle;
            EXPECT_TRUE(file->writeAsync(callback.get(), data));
            for (int spin = 0; spin < i * 20; ++spin)
                std::atomic_signal_fence(std::memory_order_seq_cst);
        }
        await([&] { return reports > i; });
        fclose(handle);
    }
    EXPECT_EQ(contentOf("file").size(), 6u * s_rounds);
    await([&] { return data.RefCount() == 1; });
}

TEST_F(ZStreamAsyncTest, CallbackOfAReadMayDestroyItsStream)
{
    make("file", "abcdef");
    for (int i = 0; i < 100; ++i) {
        Gate gate;
        auto* file = new File;
        file->open(pathOf("file").c_str(), 2);
        file->readAsync(
            zMakeDelegate<Async::ReadCallback>([&](Async* stream, int, long, char const* buffer, long got) {
                stream->close();
                delete stream;
                EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(got)), "abcdef"); // still good
                gate.open();
            }).release(),
            10);
        gate.wait();
    }
}

TEST_F(ZStreamAsyncTest, CallbackOfAWriteMayDestroyItsStream)
{
    for (int i = 0; i < 100; ++i) {
        Gate gate;
        const auto callback =
            zMakeDelegate<Async::WriteCallback>([&](Async* stream, int, const DataRef&, long) {
                stream->close();
                delete stream;
                gate.open();
            });
        auto* file = new File;
        file->open(pathOf("file").c_str(), 8);
        file->writeAsync(callback.get(), dataOf("abc"));
        gate.wait();
    }
    EXPECT_EQ(contentOf("file").size(), 300u);
}

TEST_F(ZStreamAsyncTest, DerivedStreamWaitsBeforeItsPartGoes)
{
    const auto callback = m_reports.forWrite();
    for (int i = 0; i < 300; ++i) {
        ScriptedStream stream({{0, 1}, {0, 1}, {0, 1}});
        stream.readAsync(nullptr, 10);
        stream.writeAsync(nullptr, dataOf("abc"));
        for (int spin = 0; spin < i * 20; ++spin)
            std::atomic_signal_fence(std::memory_order_seq_cst);
    }
}

TEST_F(ZStreamAsyncTest, TenThousandRequestsInARow)
{
    constexpr int s_rounds = 5'000;
    m_file.open(pathOf("file").c_str(), 4);
    File reader;
    make("source", std::string(s_rounds, 'r'));
    reader.open(pathOf("source").c_str(), 2);
    std::atomic<int> read{0};
    std::atomic<int> written{0};
    const auto forRead = zMakeDelegate<Async::ReadCallback>(
        [&](Async*, int, long, char const* buffer, long got) { read += got == 1 && *buffer == 'r'; });
    const auto forWrite = zMakeDelegate<Async::WriteCallback>(
        [&](Async*, int, const DataRef&, long done) { written += static_cast<int>(done); });
    const DataRef data = dataOf("w");
    for (int i = 0; i < s_rounds; ++i) {
        std::unique_ptr<Async::ReadCallback> callback(forRead->clone());
        await([&] { return reader.readAsync(callback.get(), 1); });
        static_cast<void>(callback.release());
        await([&] { return m_file.writeAsync(forWrite.get(), data); });
        await([&] { return read > i && written > i; });
    }
    EXPECT_EQ(read, s_rounds);
    EXPECT_EQ(written, s_rounds);
    await([&] { return data.RefCount() == 1; });
    m_file.close();
    reader.close();
    EXPECT_EQ(contentOf("file"), std::string(s_rounds, 'w'));
}

} // namespace
} // namespace ZSpace
