// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Every system call of the toolbox fails with each of its documented errors, once and lastingly.

#include "ZSpace/system/TZSysFile.h"
#include "tests/support/Descriptors.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/system/SysFileTests.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <string>
#include <vector>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

using Kind = SystemCallFault::Kind;

const std::vector<int> s_pathErrors{EACCES, EBUSY, EDQUOT, EEXIST, EFAULT, EINVAL, EIO, EISDIR, ELOOP, EMLINK,
    ENAMETOOLONG, ENOENT, ENOMEM, ENOSPC, ENOTDIR, ENOTEMPTY, EPERM, EROFS, EXDEV};
const std::vector<int> s_openErrors{EACCES, EDQUOT, EFBIG, EISDIR, ELOOP, EMFILE, ENAMETOOLONG, ENFILE,
    ENODEV, ENOENT, ENOMEM, ENOSPC, ENOTDIR, ENXIO, EOVERFLOW, EPERM, EROFS, ETXTBSY};
const std::vector<int> s_transferErrors{EAGAIN, EBADF, EDQUOT, EFAULT, EFBIG, EINVAL, EIO, EISDIR, ENOSPC,
    EPERM, EPIPE, ECONNRESET, ENXIO, ENOBUFS};

template <typename T>
class TZSysFileFaultTest : public SysFileTest<T> {
protected:
    void SetUp() override
    {
        if (!SystemCallFault::isPossible())
            GTEST_SKIP() << "the calls of this host cannot be interposed";
        this->make("file", "content");
        fs::create_directory(this->pathOf("directory"));
    }

    /// Calls `check` with each error, once with a single fault and once with lasting ones, and expects that
    /// the fault has happened and that no descriptor is left open.
    template <typename Check>
    void forEachFault(SystemCall call, const std::vector<int>& errors, Check check, long nth = 1)
    {
        for (const int error : errors) {
            for (const Kind kind : {Kind::Once, Kind::Lasting}) {
                SCOPED_TRACE(testing::Message() << "error " << error << (kind == Kind::Once ? ", once" : ""));
                const int next = nextDescriptor();
                long count = 0;
                {
                    const SystemCallFault fault(call, error, kind, nth);
                    check(error, kind);
                    count = fault.count();
                }
                EXPECT_GE(count, 1);
                EXPECT_EQ(nextDescriptor(), next);
            }
        }
    }
};

TYPED_TEST_SUITE(TZSysFileFaultTest, Widths, WidthNames);

TYPED_TEST(TZSysFileFaultTest, FailuresOfPathCallsAreReturned)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto file = this->path("file");
    const auto directory = this->path("directory");
    const auto other = this->path("other");
    this->forEachFault(SystemCall::ChangeDirectory, s_pathErrors,
        [&](int error, Kind) { EXPECT_EQ(SysFile::changeDirectory(directory.c_str()), error); });
    this->forEachFault(SystemCall::MakeDirectory, s_pathErrors,
        [&](int, Kind) { EXPECT_EQ(SysFile::makeDirectory(other.c_str()), -1); });
    this->forEachFault(SystemCall::RemoveDirectory, s_pathErrors,
        [&](int, Kind) { EXPECT_EQ(SysFile::removeDirectory(directory.c_str()), -1); });
    this->forEachFault(SystemCall::Unlink, s_pathErrors,
        [&](int error, Kind) { EXPECT_EQ(SysFile::removeFile(file.c_str()), error); });
    for (auto move : {&SysFile::moveFile, &SysFile::moveDirectory, &SysFile::renameDirectory}) {
        this->forEachFault(SystemCall::Rename, s_pathErrors,
            [&](int error, Kind) { EXPECT_EQ(move(file.c_str(), other.c_str()), error); });
    }
    this->forEachFault(SystemCall::CurrentDirectory, {EACCES, EFAULT, EINVAL, ENOENT, ENOMEM, ERANGE},
        [&](int, Kind) { EXPECT_TRUE(SysFile::getCurrentDirectory().isEmpty()); });
    EXPECT_TRUE(fs::exists(this->pathOf("file")));
    EXPECT_TRUE(fs::exists(this->pathOf("directory")));
    EXPECT_FALSE(fs::exists(this->pathOf("other")));
}

TYPED_TEST(TZSysFileFaultTest, FailedQueriesReportAMissingFile)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto file = this->path("file");
    const ZTime before(2020, 1, 2, 3, 4, 5, 6);
    for (const int error : {EACCES, EFAULT, EIO, ELOOP, ENAMETOOLONG, ENOENT, ENOMEM, ENOTDIR, EOVERFLOW}) {
        const SystemCallFault fault(SystemCall::Status, error, Kind::Lasting);
        ZTime time = before;
        EXPECT_FALSE(SysFile::exists(file.c_str()));
        EXPECT_FALSE(SysFile::isFile(file.c_str()));
        EXPECT_FALSE(SysFile::isDirectory(this->path("directory").c_str()));
        EXPECT_EQ(SysFile::sizeOf(file.c_str()), -1);
        EXPECT_EQ(SysFile::lastAccessTimeOf(file.c_str(), time), -1);
        EXPECT_EQ(SysFile::lastChangeTimeOf(file.c_str(), time), -1);
        EXPECT_EQ(time, before);
        EXPECT_EQ(fault.count(), 6);
    }
}

TYPED_TEST(TZSysFileFaultTest, EntryTriesAgainAfterAFailedQuery)
{
    const auto entry = TestFixture::entryOf(this->pathOf("file"), ZTRISTATE::No);
    {
        const SystemCallFault fault(SystemCall::Status, EIO, Kind::Lasting);
        EXPECT_EQ(entry.Size(), -1);
        EXPECT_TRUE(entry.TimeAccessed().isCleared());
        EXPECT_TRUE(entry.TimeModified().isCleared());
        EXPECT_EQ(fault.count(), 3);
    }
    EXPECT_EQ(entry.Size(), 7);
    EXPECT_FALSE(entry.TimeAccessed().isCleared());
    EXPECT_FALSE(entry.TimeModified().isCleared());
}

TYPED_TEST(TZSysFileFaultTest, DirectoryThatCannotBeOpenedIsReported)
{
    using SysFile = TZSysFile<TypeParam>;
    typename TestFixture::Names names;
    typename TestFixture::Entries entries;
    const auto path = this->path("");
    this->forEachFault(SystemCall::OpenDirectory, {EACCES, EMFILE, ENFILE, ENOENT, ENOMEM, ENOTDIR},
        [&](int error, Kind) { EXPECT_EQ(SysFile::readDirectory(path.c_str(), names), error); });
    this->forEachFault(SystemCall::OpenDirectory, {EACCES, EMFILE, ENFILE, ENOENT, ENOMEM, ENOTDIR},
        [&](int error, Kind) { EXPECT_EQ(SysFile::readDirectory(path.c_str(), entries), error); });
    EXPECT_EQ(names.Count(), 0);
    EXPECT_EQ(entries.Count(), 0);
}

TYPED_TEST(TZSysFileFaultTest, ListingEndsWhereReadingFails)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto path = this->path("");
    for (long nth = 1; nth <= 5; ++nth) {
        this->forEachFault(
            SystemCall::ReadDirectory, {EBADF, EIO, ENOENT, EOVERFLOW},
            [&](int, Kind) {
                typename TestFixture::Entries entries;
                EXPECT_EQ(SysFile::readDirectory(path.c_str(), entries), 0);
                EXPECT_EQ(entries.Count(), nth - 1);
            },
            nth);
    }
}

TYPED_TEST(TZSysFileFaultTest, EntryOutOfReachIsNoDirectory)
{
    using SysFile = TZSysFile<TypeParam>;
    this->forEachFault(SystemCall::StatusOfEntry, {EACCES, EIO, ELOOP, ENOENT, ENOMEM, ENOTCONN, ESTALE},
        [&](int, Kind kind) {
            typename TestFixture::Entries entries;
            EXPECT_EQ(SysFile::readDirectory(this->path("").c_str(), entries), 0);
            ASSERT_EQ(entries.Count(), 4);
            int directories = 0;
            for (const SysFile& entry : entries)
                directories += entry.isDirectory();
            EXPECT_EQ(directories, kind == Kind::Once ? 2 : 0);
        });
}

TYPED_TEST(TZSysFileFaultTest, CopyReportsWhatCannotBeOpened)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto file = this->path("file");
    const auto other = this->path("other");
    for (const SystemCall call : {SystemCall::Open, SystemCall::StatusOfDescriptor}) {
        this->forEachFault(call, s_openErrors,
            [&](int, Kind) { EXPECT_EQ(SysFile::copyFile(file.c_str(), other.c_str()), 0x0F000004); });
        this->make("other", "old");
        this->forEachFault(
            call, s_openErrors,
            [&](int, Kind) { EXPECT_EQ(SysFile::copyFile(file.c_str(), other.c_str()), 0x0F000005); }, 2);
        EXPECT_EQ(this->contentOf("other"), "old");
    }
    this->forEachFault(SystemCall::Truncate, {EFBIG, EINVAL, EIO, EPERM, EROFS, ETXTBSY},
        [&](int, Kind) { EXPECT_EQ(SysFile::copyFile(file.c_str(), other.c_str()), 0x0F000005); });
    EXPECT_EQ(this->contentOf("other"), "old");
    EXPECT_EQ(this->contentOf("file"), "content");
}

TYPED_TEST(TZSysFileFaultTest, CopyThatFailsLeavesNoTarget)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file", std::string(300'000, 'x'));
    const SystemCallFault plain(SystemCall::CopyRange, EOPNOTSUPP, Kind::Lasting);
    for (const SystemCall call : {SystemCall::Read, SystemCall::Write}) {
        for (long nth = 1; nth <= 3; ++nth) {
            this->forEachFault(
                call, s_transferErrors,
                [&](int, Kind) {
                    EXPECT_EQ(SysFile::copyFile(this->path("file").c_str(), this->path("other").c_str()),
                        0x0F000000);
                    EXPECT_FALSE(fs::exists(this->pathOf("other")));
                },
                nth);
        }
    }
    this->forEachFault(SystemCall::Close, {EDQUOT, EIO, ENOSPC}, [&](int, Kind) {
        EXPECT_EQ(SysFile::copyFile(this->path("file").c_str(), this->path("other").c_str()), 0x0F000000);
        EXPECT_FALSE(fs::exists(this->pathOf("other")));
    });
    EXPECT_EQ(fs::file_size(this->pathOf("file")), 300'000U);
}

TYPED_TEST(TZSysFileFaultTest, CopyThatCannotRemoveItsTargetStillReportsTheFailure)
{
    using SysFile = TZSysFile<TypeParam>;
    this->forEachFault(SystemCall::Unlink, {EACCES, EBUSY, EIO, EPERM, EROFS}, [&](int, Kind) {
        const SystemCallFault lateFailure(SystemCall::Close, EIO);
        EXPECT_EQ(SysFile::copyFile(this->path("file").c_str(), this->path("other").c_str()), 0x0F000000);
    });
}

TYPED_TEST(TZSysFileFaultTest, CopyContinuesWhereTheKernelRefusesToCopy)
{
    using SysFile = TZSysFile<TypeParam>;
    std::string content(3'000'000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * 31 + i / 251);
    this->make("file", content);
    for (const Kind kind : {Kind::Once, Kind::Lasting}) {
        for (const int error :
            {EBADF, EINVAL, EIO, EISDIR, ENOMEM, ENOSYS, EOPNOTSUPP, EPERM, ETXTBSY, EXDEV}) {
            const SystemCallFault fault(SystemCall::CopyRange, error, kind);
            EXPECT_EQ(SysFile::copyFile(this->path("file").c_str(), this->path("other").c_str()), 0) << error;
            EXPECT_TRUE(this->contentOf("other") == content) << error;
            EXPECT_GE(fault.count(), 1);
        }
    }
}

TYPED_TEST(TZSysFileFaultTest, CopyRepeatsInterruptedCallsAndContinuesPartialOnes)
{
    using SysFile = TZSysFile<TypeParam>;
    const std::string content(70'000, 'y');
    this->make("file", content);
    for (const SystemCall call : {SystemCall::Open, SystemCall::Read, SystemCall::Write,
             SystemCall::CopyRange, SystemCall::Close, SystemCall::Truncate}) {
        for (long nth = 1; nth <= 2; ++nth) {
            this->make("other", "old");
            const SystemCallFault fault(call, EINTR, Kind::Once, nth);
            EXPECT_EQ(SysFile::copyFile(this->path("file").c_str(), this->path("other").c_str()), 0);
            EXPECT_TRUE(this->contentOf("other") == content) << static_cast<int>(call) << ", " << nth;
        }
    }
    for (const long most : {1L, 7L, 4'096L}) {
        const ShortTransfers transfers(most);
        EXPECT_EQ(SysFile::copyFile(this->path("file").c_str(), this->path("other").c_str()), 0);
        EXPECT_TRUE(this->contentOf("other") == content) << most;
    }
}

} // namespace
} // namespace ZSpace::Testing
