// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/system/SysFileTests.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

// Copying files, in both widths.
template <typename T>
class TZSysFileCopyTest : public SysFileTest<T> {
};

TYPED_TEST_SUITE(TZSysFileCopyTest, Widths, WidthNames);

TYPED_TEST(TZSysFileCopyTest, CopiesFilesOfAllSizes)
{
    using SysFile = TZSysFile<TypeParam>;
    for (std::size_t size : {0UL, 1UL, 4'095UL, 4'096UL, 4'097UL, 8'191UL, 8'192UL, 8'193UL, 1'000'003UL}) {
        std::string content(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            content[i] = static_cast<char>(i * 31 + i / 251);
        this->make("from \xC3\xA9", content);
        EXPECT_EQ(
            SysFile::copyFile(this->path("from \xC3\xA9").c_str(), this->path("to \xC3\xA9").c_str()), 0);
        EXPECT_TRUE(this->contentOf("to \xC3\xA9") == content) << size;
        EXPECT_TRUE(this->contentOf("from \xC3\xA9") == content) << size;
    }
}

TYPED_TEST(TZSysFileCopyTest, CopyReplacesALongerFile)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "short");
    this->make("to", std::string(100'000, 'x'));
    EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()), 0);
    EXPECT_EQ(this->contentOf("to"), "short");
}

TYPED_TEST(TZSysFileCopyTest, CopyTakesTheContentOnly)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "content");
    fs::permissions(this->pathOf("from"), fs::perms(0700));
    fs::last_write_time(this->pathOf("from"), fs::file_time_type::clock::now() - std::chrono::hours(100));
    const mode_t usual = umask(022);
    EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()), 0);
    umask(usual);
    EXPECT_EQ(fs::status(this->pathOf("to")).permissions(), fs::perms(0644));
    const auto age = fs::file_time_type::clock::now() - fs::last_write_time(this->pathOf("to"));
    EXPECT_LT(std::chrono::duration_cast<std::chrono::hours>(age).count(), 1);
}

TYPED_TEST(TZSysFileCopyTest, CopyWithoutASourceChangesNothing)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("to", "kept");
    const int next = nextDescriptor();
    EXPECT_EQ(SysFile::copyFile(this->path("missing").c_str(), this->path("to").c_str()), 0x0F000004);
    EXPECT_EQ(SysFile::copyFile(this->path("missing").c_str(), this->path("new").c_str()), 0x0F000004);
    EXPECT_EQ(SysFile::copyFile(nullptr, this->path("to").c_str()), 0x0F000004);
    EXPECT_EQ(this->contentOf("to"), "kept");
    EXPECT_FALSE(fs::exists(this->pathOf("new")));
    EXPECT_EQ(nextDescriptor(), next);
}

TYPED_TEST(TZSysFileCopyTest, CopyWithoutATargetClosesTheSource)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "content");
    fs::create_directory(this->pathOf("directory"));
    const int next = nextDescriptor();
    for (const char* to : {"missing/to", "directory", "from/to"})
        EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path(to).c_str()), 0x0F000005) << to;
    EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), nullptr), 0x0F000005);
    EXPECT_EQ(
        SysFile::copyFile(this->path("directory").c_str(), this->path("directory").c_str()), 0x0F000005);
    EXPECT_EQ(nextDescriptor(), next);
    EXPECT_EQ(this->contentOf("from"), "content");
}

TYPED_TEST(TZSysFileCopyTest, CopyOfADirectoryLeavesNoTarget)
{
    using SysFile = TZSysFile<TypeParam>;
    fs::create_directory(this->pathOf("directory"));
    this->make("to", "old");
    const int next = nextDescriptor();
    EXPECT_EQ(SysFile::copyFile(this->path("directory").c_str(), this->path("to").c_str()), 0x0F000000);
    EXPECT_FALSE(fs::exists(this->pathOf("to")));
    EXPECT_EQ(nextDescriptor(), next);
}

TYPED_TEST(TZSysFileCopyTest, FailedCopyRemovesNothingButARegularFile)
{
    using SysFile = TZSysFile<TypeParam>;
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "this host has no full device";
    fs::create_symlink("/dev/full", this->pathOf("to"));
    const int next = nextDescriptor();
    for (std::size_t size : {1UL, 4'095UL, 4'096UL, 100'000UL}) {
        this->make("from", std::string(size, 'x'));
        EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()), 0x0F000000)
            << size;
        EXPECT_TRUE(fs::is_symlink(this->pathOf("to"))) << size;
        EXPECT_EQ(nextDescriptor(), next) << size;
    }
    EXPECT_TRUE(fs::exists("/dev/full"));
}

TYPED_TEST(TZSysFileCopyTest, FailedCopyLeavesAFifo)
{
    using SysFile = TZSysFile<TypeParam>;
    ASSERT_EQ(mkfifo(this->pathOf("fifo").c_str(), 0600), 0);
    this->make("from", std::string(1 << 20, 'x')); // more than the fifo takes
    std::thread reader([&] { close(open(this->pathOf("fifo").c_str(), O_RDONLY | O_CLOEXEC)); });
    const auto outcome = runInChild([&] {
        signal(SIGPIPE, SIG_IGN);
        return SysFile::copyFile(this->path("from").c_str(), this->path("fifo").c_str()) == 0x0F000000 ? 0
                                                                                                       : 1;
    });
    reader.join();
    EXPECT_EQ(outcome.status, 0);
    EXPECT_TRUE(fs::is_fifo(this->pathOf("fifo")));
}

TYPED_TEST(TZSysFileCopyTest, FailedCopyThroughALinkRemovesTheLink)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", std::string(100, 'x'));
    this->make("linked", "old");
    fs::create_symlink(this->pathOf("linked"), this->pathOf("to"));
    const auto outcome = runInChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{50, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &limit);
        return SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()) == 0x0F000000 ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_FALSE(fs::is_symlink(this->pathOf("to")));
    EXPECT_TRUE(fs::exists(this->pathOf("linked")));
}

TYPED_TEST(TZSysFileCopyTest, CopyThatFillsTheDiskLeavesNoTarget)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", std::string(100'000, 'x'));
    const auto outcome = runInChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        for (rlim_t room : {0UL, 1UL, 4'096UL, 50'000UL, 99'999UL}) {
            const rlimit limit{room, RLIM_INFINITY};
            setrlimit(RLIMIT_FSIZE, &limit);
            if (SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()) != 0x0F000000)
                return 1;
            if (fs::exists(this->pathOf("to")))
                return 2;
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

TYPED_TEST(TZSysFileCopyTest, CopyDoesNotRemoveADevice)
{
    using SysFile = TZSysFile<TypeParam>;
    struct stat full;
    if (stat("/dev/full", &full) != 0)
        GTEST_SKIP() << "the host has no full device";
    if (mknod(this->pathOf("full").c_str(), S_IFCHR | 0600, full.st_rdev) != 0)
        GTEST_SKIP() << "this user cannot make a device";
    if (const int device = open(this->pathOf("full").c_str(), O_WRONLY | O_CLOEXEC); device < 0)
        GTEST_SKIP() << "this file system has no devices";
    else
        close(device);
    this->make("from", "content");
    EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("full").c_str()), 0x0F000000);
    EXPECT_TRUE(fs::exists(this->pathOf("full")));
}

TYPED_TEST(TZSysFileCopyTest, FileCopiedOntoItselfDoesNotChange)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file", "content");
    fs::create_hard_link(this->pathOf("file"), this->pathOf("same"));
    fs::create_symlink(this->pathOf("file"), this->pathOf("link"));
    const int next = nextDescriptor();
    for (const char* from : {"file", "same", "link"}) {
        for (const char* to : {"file", "same", "link", "./file"})
            EXPECT_EQ(SysFile::copyFile(this->path(from).c_str(), this->path(to).c_str()), 0);
    }
    EXPECT_EQ(this->contentOf("file"), "content");
    EXPECT_TRUE(fs::is_symlink(this->pathOf("link")));
    EXPECT_EQ(nextDescriptor(), next);
}

TYPED_TEST(TZSysFileCopyTest, ReadOnlyFileCopiedOntoItselfDoesNotChange)
{
    using SysFile = TZSysFile<TypeParam>;
    this->openToAll();
    this->make("file", "content");
    fs::permissions(this->pathOf("file"), fs::perms(0444));
    const auto outcome = runInChild([&] {
        if (!becomeNobody())
            return 100;
        return SysFile::copyFile(this->path("file").c_str(), this->path("file").c_str());
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(this->contentOf("file"), "content");
}

TYPED_TEST(TZSysFileCopyTest, CopyOfAnEmptyFileUpdatesTheTimeOfAnEmptyTarget)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from");
    this->make("to");
    fs::last_write_time(this->pathOf("to"), fs::file_time_type::clock::now() - std::chrono::hours(100));
    EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()), 0);
    const auto age = fs::file_time_type::clock::now() - fs::last_write_time(this->pathOf("to"));
    EXPECT_LT(std::chrono::duration_cast<std::chrono::hours>(age).count(), 1);
}

TYPED_TEST(TZSysFileCopyTest, Descriptor0IsLikeAnyOther)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "content");
    const auto outcome = runInChild([&] {
        close(STDIN_FILENO); // the source gets its number
        errno = EINTR; // of an earlier call
        if (SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()) != 0)
            return 1;
        return isOpen(STDIN_FILENO) ? 2 : 0;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(this->contentOf("to"), "content");
}

TYPED_TEST(TZSysFileCopyTest, CopyFollowsLinks)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "content");
    fs::create_symlink(this->pathOf("from"), this->pathOf("link"));
    fs::create_symlink(this->pathOf("new"), this->pathOf("dangling"));
    EXPECT_EQ(SysFile::copyFile(this->path("dangling").c_str(), this->path("to").c_str()), 0x0F000004);
    EXPECT_EQ(SysFile::copyFile(this->path("link").c_str(), this->path("dangling").c_str()), 0);
    EXPECT_EQ(this->contentOf("new"), "content");
}

TYPED_TEST(TZSysFileCopyTest, CopiesFromDevices)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("to", "old");
    EXPECT_EQ(SysFile::copyFile(this->text("/dev/null").c_str(), this->path("to").c_str()), 0);
    EXPECT_EQ(this->contentOf("to"), "");
    EXPECT_EQ(SysFile::copyFile(this->text("/dev/null").c_str(), this->text("/dev/null").c_str()), 0);
}

} // namespace
} // namespace ZSpace::Testing
