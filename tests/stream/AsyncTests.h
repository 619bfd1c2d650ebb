// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/support/StreamTests.h"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <utility>
#include <vector>

namespace ZSpace::Testing {

using Async = ZStreamAsync<>;
using Ex = ZStreamEx<>;
using File = ZIOGFile<>;
using Bytes = ZArray<char, ZAllocation<char>>;
using DataRef = ZRef<Bytes, TZRefCounter<int>>;

inline DataRef dataOf(const std::string& text)
{
    return DataRef(new Bytes(text.data(), static_cast<long>(text.size())));
}

/// Spins until another thread makes `condition` true.
template <typename Condition>
void await(Condition condition)
{
    for (int tries = 0; !condition(); ++tries) {
        if (tries > 100)
            std::this_thread::yield();
    }
}

/// Blocks any number of threads until it is opened. A waiting thread may destroy it after that.
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

/// The arguments of one callback.
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

/// Records the arguments of callbacks in order.
class Reports {
public:
    /// A callback for `readAsync`, owned by the caller until the read is started.
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
    /// A callback for `writeAsync`, owned by the caller.
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

/// Returns preset results, one for each `write`.
class ScriptedStream : public ZStreamEx<> {
public:
    struct Pass {
        int status;
        long done;
        bool answers = true; ///< whether it sets the count at all
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
        if (pass.answers)
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

class ZStreamAsyncTest : public DirectoryTest {
protected:
    ~ZStreamAsyncTest() override { m_file.close(); }

    /// Creates a fifo that is open at both ends: reading an empty one and writing to a full one block.
    int makeFifo(const std::string& name) const
    {
        EXPECT_EQ(mkfifo(pathOf(name).c_str(), 0600), 0);
        return ::open(pathOf(name).c_str(), O_RDWR | O_CLOEXEC);
    }

    File m_file;
    Reports m_reports;
};

} // namespace ZSpace::Testing
