// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Requests without threads or memory, and the destruction of streams with outstanding requests.

#include "ZSpace/stream/ZIOGFile.h"
#include "ZSpace/stream/ZStreamAsync.h"
#include "tests/stream/AsyncTests.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/DeathTests.h"
#include "tests/support/FileFields.h"
#include "tests/support/ThreadFaults.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <memory>
#include <stdexcept>
#include <string>
#include <sys/resource.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

// Without threads, without memory

TEST_F(ZStreamAsyncTest, RequestWithoutAThreadReturnsTrueAndDoesNothing)
{
    if (!ThreadFault::isPossible())
        GTEST_SKIP() << "the default stack size cannot be changed on this host";
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

TEST_F(ZStreamAsyncTest, FailedAllocationThrowsBeforeAnythingIsStarted)
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

TEST(ZStreamAsyncDeathTest, ExceptionOfACallbackTerminates)
{
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(
        {
            File file;
            file.readAsync(zMakeDelegate<Async::ReadCallback>([](Async*, int, long, char const*, long) {
                throw std::runtime_error("thrown by the callback");
            }).release(),
                1);
            file.waitForRead();
        },
        testing::KilledBySignal(SIGABRT), "thrown by the callback");
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
    EXPECT_FALSE(destroyed); // there is nothing to read yet
    EXPECT_EQ(::write(fifo, "abc", 3), 3);
    destroyer.join();
    fclose(handle);
    ::close(fifo);
}

TEST_F(ZStreamAsyncTest, WriteContinuesAfterDestruction)
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
        EXPECT_TRUE(file.writeAsync(callback.get(), dataOf(std::string(1 << 20, 'x')))); // blocks
    }
    EXPECT_EQ(m_reports.count(), 0u);
    std::string buffer(1 << 16, '\0');
    for (long left = 1 << 20; left > 0;)
        left -= ::read(fifo, buffer.data(), buffer.size());
    const Report report = m_reports.next();
    EXPECT_EQ(report.stream, stream); // by address only
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.done, 1 << 20);
    fclose(handle);
    ::close(fifo);
}

/// Overrides nothing that a write needs.
struct DerivedFile : File {
    int flush() override { return File::flush() + static_cast<int>(m_name.size()); }
    std::string m_name = "a string that is long enough to live on the heap";
};

TEST_F(ZStreamAsyncTest, WriteContinuesAfterTheDestructionOfADerivedFile)
{
    const int fifo = makeFifo("fifo");
    const auto callback = m_reports.forWrite();
    auto file = std::make_unique<DerivedFile>();
    file->open(pathOf("fifo").c_str(), 4);
    FILE* const handle = FileFields::of(*file).handle;
    EXPECT_TRUE(file->writeAsync(callback.get(), dataOf(std::string(1 << 20, 'x')))); // blocks
    file.reset();
    EXPECT_EQ(m_reports.count(), 0u);
    std::string buffer(1 << 16, '\0');
    for (long left = 1 << 20; left > 0;)
        left -= ::read(fifo, buffer.data(), buffer.size());
    const Report report = m_reports.next();
    EXPECT_EQ(report.status, 0);
    EXPECT_EQ(report.done, 1 << 20);
    fclose(handle);
    ::close(fifo);
}

TEST_F(ZStreamAsyncTest, DestructionOfADerivedFileIsSafeAtEveryMoment)
{
    make("source", "abcdef");
    const DataRef data = dataOf("abcdef");
    std::atomic<int> reads{0};
    std::atomic<int> writes{0};
    const auto forRead = zMakeDelegate<Async::ReadCallback>(
        [&](Async*, int status, long, char const*, long got) { reads += status == 0 && got == 6; });
    const auto forWrite = zMakeDelegate<Async::WriteCallback>(
        [&](Async*, int status, const DataRef&, long written) { writes += status == 0 && written == 6; });
    constexpr int s_rounds = 500;
    for (int i = 0; i < s_rounds; ++i) {
        auto reader = std::make_unique<DerivedFile>();
        auto writer = std::make_unique<DerivedFile>();
        ASSERT_EQ(reader->open(pathOf("source").c_str(), 2), 0);
        ASSERT_EQ(writer->open(pathOf("target").c_str(), 8), 0);
        FILE* const source = FileFields::of(*reader).handle;
        FILE* const target = FileFields::of(*writer).handle;
        EXPECT_TRUE(reader->readAsync(forRead->clone(), 10));
        EXPECT_TRUE(writer->writeAsync(forWrite.get(), data));
        for (int spin = 0; spin < i * 20; ++spin)
            std::atomic_signal_fence(std::memory_order_seq_cst);
        reader.reset();
        writer.reset();
        EXPECT_EQ(reads, i + 1);
        await([&] { return writes > i; });
        fclose(source);
        fclose(target);
    }
    EXPECT_EQ(contentOf("target").size(), 6u * s_rounds);
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
            // On the heap, so that sanitizers detect a use after free.
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
                EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(got)), "abcdef"); // still valid
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

TEST_F(ZStreamAsyncTest, DerivedStreamWaitsInItsDestructor)
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
} // namespace ZSpace::Testing
