// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Every system call of a stream fails with each of its documented errors, once and lastingly. Calls that the
// C library makes internally cannot be interposed, so a custom storage makes them fail.

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/stream/AsyncTests.h"
#include "tests/stream/FileTests.h"
#include "tests/support/Descriptors.h"
#include "tests/support/FileFields.h"
#include "tests/support/SystemCallFaults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <sys/types.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

using Kind = SystemCallFault::Kind;

const std::vector<int> s_transferErrors{EAGAIN, EBADF, EDQUOT, EFAULT, EFBIG, EINTR, EINVAL, EIO, EISDIR,
    ENOSPC, EPERM, EPIPE, ECONNRESET, ENXIO, ENOBUFS};

/// The storage of a stdio stream whose operations can fail.
class FaultyStorage {
public:
    enum class Call { None, Read, Write, Seek, Close };

    explicit FaultyStorage(std::string content = "")
        : m_content(std::move(content))
    {
    }

    /// A stream on this storage, which the caller closes.
    FILE* open()
    {
        const cookie_io_functions_t functions{&read, &write, &seek, &close};
        return fopencookie(this, "r+", functions);
    }

    void fail(Call call, int error, Kind kind, long nth = 1)
    {
        m_call = call;
        m_error = error;
        m_isLasting = kind == Kind::Lasting;
        m_untilFault = nth;
    }
    void limitTransfers(std::size_t most) { m_most = most; }

    [[nodiscard]] const std::string& content() const { return m_content; }
    [[nodiscard]] int closeCalls() const { return m_closeCalls; }

private:
    static FaultyStorage& of(void* cookie) { return *static_cast<FaultyStorage*>(cookie); }

    bool fails(Call call)
    {
        if (call != m_call || m_untilFault == 0 || --m_untilFault > 0)
            return false;
        m_untilFault = m_isLasting ? 1 : 0;
        errno = m_error;
        return true;
    }
    static ssize_t read(void* cookie, char* buffer, std::size_t size)
    {
        FaultyStorage& storage = of(cookie);
        if (storage.fails(Call::Read))
            return -1;
        const std::size_t got =
            std::min({size, storage.m_most, storage.m_content.size() - storage.m_position});
        std::memcpy(buffer, storage.m_content.data() + storage.m_position, got);
        storage.m_position += got;
        return static_cast<ssize_t>(got);
    }
    static ssize_t write(void* cookie, const char* data, std::size_t size)
    {
        FaultyStorage& storage = of(cookie);
        if (storage.fails(Call::Write))
            return 0; // the library's sign of an error
        storage.m_content.replace(storage.m_position, size, data, size);
        storage.m_position += size;
        return static_cast<ssize_t>(size);
    }
    static int seek(void* cookie, off64_t* offset, int origin)
    {
        FaultyStorage& storage = of(cookie);
        if (storage.fails(Call::Seek))
            return -1;
        const auto from = origin == SEEK_SET ? 0U
            : origin == SEEK_CUR             ? storage.m_position
                                             : storage.m_content.size();
        storage.m_position = static_cast<std::size_t>(static_cast<off64_t>(from) + *offset);
        *offset = static_cast<off64_t>(storage.m_position);
        return 0;
    }
    static int close(void* cookie)
    {
        FaultyStorage& storage = of(cookie);
        ++storage.m_closeCalls;
        return storage.fails(Call::Close) ? -1 : 0;
    }

    std::string m_content;
    std::size_t m_position = 0;
    std::size_t m_most = SIZE_MAX;
    Call m_call = Call::None;
    int m_error = 0;
    bool m_isLasting = false;
    long m_untilFault = 0;
    int m_closeCalls = 0;
};

using Call = FaultyStorage::Call;

class ZIOGFileFaultTest : public ZIOGFileTest {
protected:
    /// Makes `m_file` an open stream on `storage`.
    void openOn(FaultyStorage& storage)
    {
        m_file.close();
        FileFields{storage.open(), true, true}.putInto(m_file);
    }
};

TEST_F(ZIOGFileFaultTest, FailedOpenReturnsTheErrorAndLeavesTheStreamClosed)
{
    make("file", "content");
    const int next = nextDescriptor();
    for (const int mode : {2, 4, 6, 8}) {
        for (const int error : {EACCES, EAGAIN, EDQUOT, EEXIST, EFAULT, EFBIG, EINTR, EINVAL, EIO, EISDIR,
                 ELOOP, EMFILE, ENAMETOOLONG, ENFILE, ENODEV, ENOENT, ENOMEM, ENOSPC, ENOTDIR, ENXIO,
                 EOVERFLOW, EPERM, EROFS, ETXTBSY}) {
            for (const Kind kind : {Kind::Once, Kind::Lasting}) {
                const SystemCallFault fault(SystemCall::OpenStream, error, kind);
                EXPECT_EQ(m_file.open(pathOf("file").c_str(), mode), error);
                EXPECT_EQ(m_file.State(), 0);
                EXPECT_EQ(FileFields::of(m_file).handle, nullptr);
                EXPECT_EQ(fault.count(), 1);
                EXPECT_EQ(nextDescriptor(), next);
            }
        }
    }
    EXPECT_EQ(contentOf("file"), "content");
    EXPECT_EQ(m_file.open(pathOf("file").c_str(), 2), 0);
}

TEST_F(ZIOGFileFaultTest, FailedCloneIsNullAndLeaksNothing)
{
    ASSERT_EQ(m_file.open(make("file", "content").c_str(), 6), 0);
    const int next = nextDescriptor();
    for (const SystemCall call : {SystemCall::Control, SystemCall::AttachStream}) {
        for (const int error : {EBADF, EINVAL, EMFILE, ENFILE, ENOMEM, EINTR}) {
            for (const Kind kind : {Kind::Once, Kind::Lasting}) {
                {
                    const SystemCallFault fault(call, error, kind);
                    EXPECT_EQ(m_file.clone(), nullptr);
                    EXPECT_EQ(fault.count(), 1);
                }
                EXPECT_EQ(nextDescriptor(), next);
            }
        }
    }
    EXPECT_EQ(readAll(m_file), "content");
}

TEST_F(ZIOGFileFaultTest, FailedReadSetsTheErrorIndicator)
{
    for (const int error : s_transferErrors) {
        for (const Kind kind : {Kind::Once, Kind::Lasting}) {
            FaultyStorage storage("content");
            openOn(storage);
            storage.fail(Call::Read, error, kind);
            char buffer[16];
            long got = 77;
            EXPECT_NE(m_file.read(buffer, 16, got), 0);
            EXPECT_EQ(got, 0);
            EXPECT_TRUE(m_file.hasError());
            EXPECT_FALSE(m_file.EOS());
            m_file.clearError();
            EXPECT_EQ(m_file.read(buffer, 16), kind == Kind::Once ? 7 : -1) << error;
            m_file.close();
        }
    }
}

TEST_F(ZIOGFileFaultTest, ReadContinuesPartialTransfers)
{
    for (const std::size_t most : {1U, 2U, 3U}) {
        FaultyStorage storage("abcdefgh");
        openOn(storage);
        storage.limitTransfers(most);
        EXPECT_EQ(readAll(m_file), "abcdefgh");
        m_file.close();
    }
}

TEST_F(ZIOGFileFaultTest, ReadThatFailsLaterReportsStatusAndItems)
{
    FaultyStorage storage("abcdefgh");
    openOn(storage);
    storage.limitTransfers(3);
    storage.fail(Call::Read, EIO, Kind::Once, 3);
    char buffer[16];
    long got = 77;
    EXPECT_NE(m_file.read(buffer, 8, got), 0);
    EXPECT_EQ(got, 6);
    m_file.close();
}

TEST_F(ZIOGFileFaultTest, FailedWriteOfABufferIsReportedByFlush)
{
    for (const int error : s_transferErrors) {
        for (const Kind kind : {Kind::Once, Kind::Lasting}) {
            FaultyStorage storage;
            openOn(storage);
            storage.fail(Call::Write, error, kind);
            EXPECT_EQ(m_file.write("content", -1), 7); // buffered
            EXPECT_FALSE(m_file.hasError());
            EXPECT_EQ(m_file.flush(), EOF) << error;
            EXPECT_TRUE(m_file.hasError());
            EXPECT_EQ(storage.content(), "");
            EXPECT_EQ(m_file.close(), 0);
            EXPECT_EQ(storage.closeCalls(), 1);
        }
    }
}

TEST_F(ZIOGFileFaultTest, FailedWriteIsReportedAtOnceAfterWriteThrough)
{
    for (const int error : s_transferErrors) {
        for (const Kind kind : {Kind::Once, Kind::Lasting}) {
            FaultyStorage storage;
            openOn(storage);
            ASSERT_TRUE(m_file.writeThrough());
            storage.fail(Call::Write, error, kind);
            long written = 77;
            EXPECT_NE(m_file.write("content", -1, written), 0) << error;
            EXPECT_EQ(written, 0);
            m_file.clearError();
            EXPECT_EQ(m_file.write("more", -1), kind == Kind::Once ? 4 : -1);
            EXPECT_EQ(storage.content(), kind == Kind::Once ? "more" : "");
            m_file.close();
        }
    }
}

TEST_F(ZIOGFileFaultTest, FailedMovesReturnMinusOne)
{
    for (const int error : {EBADF, EINVAL, ENXIO, EOVERFLOW, ESPIPE}) {
        FaultyStorage storage("content");
        openOn(storage);
        storage.fail(Call::Seek, error, Kind::Lasting);
        EXPECT_EQ(m_file.moveEnd(), -1);
        EXPECT_EQ(m_file.moveTo(3), -1);
        EXPECT_EQ(m_file.move(2), -1);
        EXPECT_EQ(m_file.Position(), -1);
        EXPECT_EQ(m_file.Size(), -1);
        EXPECT_FALSE(m_file.BOS());
        storage.fail(Call::None, 0, Kind::Once);
        EXPECT_EQ(m_file.Size(), 7);
        EXPECT_EQ(readAll(m_file), "content");
        m_file.close();
    }
}

TEST_F(ZIOGFileFaultTest, FailedCloseReturnsZeroAndIsNotRepeated)
{
    for (const int error : {EBADF, EDQUOT, EINTR, EIO, ENOSPC}) {
        FaultyStorage storage;
        openOn(storage);
        storage.fail(Call::Close, error, Kind::Lasting);
        EXPECT_EQ(m_file.close(), 0);
        EXPECT_EQ(m_file.State(), 0);
        EXPECT_EQ(m_file.close(), 0);
        EXPECT_EQ(storage.closeCalls(), 1);
    }
}

TEST_F(ZIOGFileFaultTest, WriteAtOnceRepeatsInterruptedCallsAndContinuesPartialOnes)
{
    const std::string line(10'000, 'x');
    const auto size = static_cast<long>(line.size());
    for (const long most : {1'000L, 3'333L, 10'000L}) {
        for (long nth = 1; nth <= 10'000 / most; ++nth) {
            ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
            ASSERT_TRUE(m_file.writeThrough());
            const ShortTransfers transfers(most);
            const SystemCallFault fault(SystemCall::Write, EINTR, Kind::Once, nth);
            EXPECT_EQ(m_file.writeAtOnce(line.data(), size), size);
            EXPECT_EQ(fault.count(), 1);
            EXPECT_FALSE(m_file.hasError());
            m_file.close();
            EXPECT_EQ(contentOf("file"), line);
        }
    }
}

TEST_F(ZIOGFileFaultTest, WriteAtOnceTriesTheCLibraryAfterAnError)
{
    for (const int error : {EAGAIN, EDQUOT, EIO, ENOSPC}) {
        ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
        ASSERT_TRUE(m_file.writeThrough());
        const ShortTransfers transfers(3);
        const SystemCallFault fault(SystemCall::Write, error, Kind::Once, 2);
        EXPECT_EQ(m_file.writeAtOnce("abcdefgh", 8), 8);
        m_file.close();
        EXPECT_EQ(contentOf("file"), "abcdefgh");
    }
}

TEST_F(ZIOGFileFaultTest, AsynchronousRequestsReportTheFailure)
{
    Reports reports;
    for (const Kind kind : {Kind::Once, Kind::Lasting}) {
        FaultyStorage storage(std::string(100, 'r'));
        openOn(storage);
        storage.fail(Call::Read, EIO, kind);
        ASSERT_TRUE(m_file.readAsync(reports.forRead(), 10));
        m_file.waitForRead();
        Report report = reports.next();
        EXPECT_NE(report.status, 0);
        EXPECT_EQ(report.done, 0);
        m_file.close();

        openOn(storage);
        m_file.writeThrough();
        storage.fail(Call::Write, ENOSPC, kind);
        const auto callback = reports.forWrite();
        ASSERT_TRUE(m_file.writeAsync(callback.get(), dataOf("abc")));
        m_file.waitForWrite();
        report = reports.next();
        EXPECT_NE(report.status, 0);
        EXPECT_EQ(report.done, 0);
        m_file.close();
    }
}

} // namespace
} // namespace ZSpace::Testing
