// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"

#include "tests/stream/FileTests.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/FileFields.h"
#include "tests/support/FileNames.h"
#include "tests/support/Slots.h"
#include "tests/support/Widths.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

static_assert(std::is_same_v<File, ZIOGFile<FILE*, char, ZStreamTransaction>>);
static_assert(!std::is_abstract_v<File>);

// Opening and closing

TEST_F(ZIOGFileTest, IsClosedAfterConstruction)
{
    EXPECT_EQ(m_file.State(), 0);
    EXPECT_EQ(m_file.close(), 0);
}

TEST_F(ZIOGFileTest, HoldsHandleAndFlags)
{
    make("file");
    const FileFields closed = FileFields::of(m_file);
    EXPECT_EQ(closed.handle, nullptr);
    EXPECT_FALSE(closed.isReadable);
    EXPECT_FALSE(closed.isWritable);
    const int descriptor = nextDescriptor();
    for (int mode : {2, 4, 6, 8}) {
        m_file.open(pathOf("file").c_str(), mode);
        const FileFields open = FileFields::of(m_file);
        EXPECT_EQ(fileno(open.handle), descriptor) << mode;
        EXPECT_EQ(open.isReadable, mode != 4) << mode;
        EXPECT_EQ(open.isWritable, mode != 2) << mode;
    }
}

TEST_F(ZIOGFileTest, ModesOnAFileThatExists)
{
    struct Row {
        int mode;
        int state;
        std::string content;
    };
    for (const Row& row : {Row{2, 2, "old"}, Row{4, 4, ""}, Row{6, 6, "old"}, Row{8, 6, "old"}}) {
        make("file", "old");
        EXPECT_EQ(m_file.open(pathOf("file").c_str(), row.mode), 0) << row.mode;
        EXPECT_EQ(m_file.State(), row.state) << row.mode;
        EXPECT_EQ(contentOf("file"), row.content) << row.mode;
        EXPECT_EQ(m_file.close(), 0);
        EXPECT_EQ(m_file.State(), 0) << row.mode;
    }
}

TEST_F(ZIOGFileTest, ModesOnAFileThatIsMissing)
{
    for (int mode : {2, 6}) {
        EXPECT_EQ(m_file.open(pathOf("missing").c_str(), mode), ENOENT) << mode;
        EXPECT_EQ(m_file.State(), 0) << mode;
        EXPECT_EQ(FileFields::of(m_file).handle, nullptr) << mode;
        EXPECT_FALSE(std::filesystem::exists(pathOf("missing"))) << mode;
    }
    for (int mode : {4, 8}) {
        EXPECT_EQ(m_file.open(pathOf("missing").c_str(), mode), 0) << mode;
        EXPECT_TRUE(std::filesystem::remove(pathOf("missing"))) << mode;
    }
}

TEST_F(ZIOGFileTest, ModesHaveNames)
{
    EXPECT_EQ(File::ModeRead, 2);
    EXPECT_EQ(File::ModeWrite, 4);
    EXPECT_EQ(File::ModeReadWrite, 6);
    EXPECT_EQ(File::ModeAppend, 8);
}

TEST_F(ZIOGFileTest, UnknownModesAreRefused)
{
    for (int mode : {0, 1, 3, 5, 7, 9, 10, 12, 14, -1, -2, 256 + 2}) {
        make("open");
        ASSERT_EQ(m_file.open(pathOf("open").c_str(), 2), 0);
        EXPECT_EQ(m_file.open(pathOf("new").c_str(), mode), EINVAL) << mode;
        EXPECT_EQ(m_file.State(), 0) << mode;
        EXPECT_FALSE(std::filesystem::exists(pathOf("new"))) << mode;
        EXPECT_EQ(m_file.open(widened(pathOf("new")).c_str(), mode), EINVAL) << mode;
    }
}

TEST_F(ZIOGFileTest, OpeningClosesWhatWasOpen)
{
    const int descriptor = nextDescriptor();
    ASSERT_EQ(m_file.open(pathOf("first").c_str(), 4), 0);
    m_file.write("kept", -1);
    ASSERT_EQ(m_file.open(pathOf("second").c_str(), 4), 0);
    EXPECT_EQ(contentOf("first"), "kept");
    EXPECT_EQ(nextDescriptor(), descriptor + 1);
    EXPECT_EQ(m_file.open(pathOf("missing").c_str(), 2), ENOENT);
    EXPECT_EQ(m_file.State(), 0);
    EXPECT_EQ(nextDescriptor(), descriptor);
}

TEST_F(ZIOGFileTest, InvalidPathsAreReported)
{
    for (int mode : {2, 4, 6, 8}) {
        EXPECT_EQ(m_file.open("", mode), ENOENT) << mode;
        EXPECT_EQ(m_file.open(static_cast<const char*>(nullptr), mode), ENOENT) << mode;
        EXPECT_EQ(m_file.open(L"", mode), ENOENT) << mode;
        EXPECT_EQ(m_file.open(static_cast<const wchar_t*>(nullptr), mode), ENOENT) << mode;
        EXPECT_EQ(m_file.open(pathOf(std::string(300, 'x')).c_str(), mode), ENAMETOOLONG) << mode;
        EXPECT_EQ(m_file.open(pathOf("missing/file").c_str(), mode), ENOENT) << mode;
        EXPECT_EQ(m_file.open((make("file") + "/x").c_str(), mode), ENOTDIR) << mode;
    }
}

TEST_F(ZIOGFileTest, WidePathsAreNarrowed)
{
    make("f\xC3\xA9 x", "content");
    EXPECT_EQ(m_file.open(widened(pathOf("f\xC3\xA9 x")).c_str(), 2), 0);
    EXPECT_EQ(readAll(m_file), "content");
    const std::wstring beyondBytes = widened(pathOf("f")) + L"\u20C3\u20A9 x"; // the low 8 bits count
    EXPECT_EQ(m_file.open(beyondBytes.c_str(), 8), 0);
    EXPECT_EQ(readAll(m_file), "content");
    EXPECT_EQ(m_file.open(widened(pathOf("missing")).c_str(), 2), ENOENT);
    EXPECT_EQ(m_file.State(), 0);
}

TEST_F(ZIOGFileTest, NamesMayHaveAnyBytes)
{
    if (!takesNamesOfAnyBytes())
        GTEST_SKIP() << "the file system takes only names in UTF-8";
    const std::string name = "\xC3\xA9 \xFF\x80\n";
    EXPECT_EQ(m_file.open(pathOf(name).c_str(), 4), 0);
    EXPECT_EQ(m_file.write("x", 1), 1);
    m_file.close();
    EXPECT_EQ(contentOf(name), "x");
}

TEST_F(ZIOGFileTest, DirectoryOpensForReadingOnlyAndCannotBeRead)
{
    for (int mode : {4, 6, 8}) {
        EXPECT_EQ(m_file.open(directory().c_str(), mode), EISDIR) << mode;
        EXPECT_EQ(m_file.State(), 0) << mode;
    }
    ASSERT_EQ(m_file.open(directory().c_str(), 2), 0);
    char buffer[16];
    long got = 5;
    EXPECT_NE(m_file.read(buffer, sizeof buffer, got), 0);
    EXPECT_EQ(got, 0);
    EXPECT_EQ(m_file.read(buffer, sizeof buffer), -1);
}

TEST_F(ZIOGFileTest, DanglingLinkIsMissingForReadingAndCreatedForWriting)
{
    std::filesystem::create_symlink(pathOf("target"), pathOf("link"));
    EXPECT_EQ(m_file.open(pathOf("link").c_str(), 2), ENOENT);
    EXPECT_EQ(m_file.open(pathOf("link").c_str(), 6), ENOENT);
    EXPECT_EQ(m_file.open(pathOf("link").c_str(), 8), 0);
    EXPECT_TRUE(std::filesystem::exists(pathOf("target")));
}

TEST_F(ZIOGFileTest, MissingPermissionsAreReported)
{
    openToAll();
    const std::string file = make("file", "secret");
    std::filesystem::permissions(file, std::filesystem::perms::none);
    std::filesystem::create_directory(pathOf("closed"));
    std::filesystem::permissions(pathOf("closed"), std::filesystem::perms::none);
    const auto outcome = runInChild([&] {
        if (!becomeNobody())
            return 100;
        File asNobody;
        for (int mode : {2, 4, 6, 8}) {
            if (asNobody.open(file.c_str(), mode) != EACCES || asNobody.State() != 0)
                return mode;
            if (asNobody.open(pathOf("closed/new").c_str(), mode) != EACCES)
                return 10 + mode;
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    std::filesystem::permissions(pathOf("closed"), std::filesystem::perms::owner_all);
}

TEST_F(ZIOGFileTest, DescriptorLimitIsReported)
{
    const std::string path = make("file");
    const int descriptor = nextDescriptor();
    ASSERT_EQ(m_file.open(path.c_str(), 2), 0);
    const DescriptorLimit limit(descriptor);
    EXPECT_EQ(m_file.open(path.c_str(), 2), EMFILE);
    EXPECT_EQ(m_file.State(), 0);
}

TEST_F(ZIOGFileTest, DescriptorIsNotInherited)
{
    make("file");
    const int descriptor = nextDescriptor();
    for (int mode : {2, 4, 6, 8}) {
        ASSERT_EQ(m_file.open(pathOf("file").c_str(), mode), 0);
        EXPECT_TRUE(isOpen(descriptor));
        EXPECT_FALSE(isInherited(descriptor)) << mode;
        const std::unique_ptr<File> clone(m_file.clone());
        EXPECT_TRUE(isOpen(descriptor + 1));
        EXPECT_FALSE(isInherited(descriptor + 1)) << mode;
        clone->close();
    }
}

TEST_F(ZIOGFileTest, ClosingSucceedsEvenIfBufferedDataCannotBeWritten)
{
    if (m_file.open("/dev/full", 4) != 0)
        GTEST_SKIP() << "the host has no full device";
    EXPECT_EQ(m_file.write("lost", -1), 4);
    EXPECT_EQ(m_file.close(), 0);
    EXPECT_EQ(m_file.State(), 0);
    EXPECT_EQ(m_file.close(), 0);
}

TEST_F(ZIOGFileTest, DestructionLeavesTheFileOpen)
{
    const int descriptor = nextDescriptor();
    FILE* handle = nullptr;
    {
        File file;
        ASSERT_EQ(file.open(pathOf("file").c_str(), 4), 0);
        handle = FileFields::of(file).handle;
    }
    EXPECT_TRUE(isOpen(descriptor));
    EXPECT_EQ(fclose(handle), 0);
}

// Adopted descriptors

TEST_F(ZIOGFileTest, AdoptsAnOpenDescriptor)
{
    make("file", "old");
    ASSERT_EQ(m_file.open(pathOf("other").c_str(), 4), 0);
    const int descriptor = ::open(pathOf("file").c_str(), O_RDWR | O_APPEND | O_CLOEXEC);
    EXPECT_EQ(m_file.adopt(descriptor, 8), 0);
    EXPECT_EQ(m_file.descriptor(), descriptor);
    EXPECT_EQ(m_file.State(), 6);
    EXPECT_EQ(readAll(m_file), "old");
    m_file.moveBegin();
    EXPECT_EQ(m_file.write("new", -1), 3);
    EXPECT_EQ(m_file.close(), 0);
    EXPECT_EQ(m_file.descriptor(), -1);
    EXPECT_FALSE(isOpen(descriptor));
    EXPECT_EQ(contentOf("file"), "oldnew");
}

TEST_F(ZIOGFileTest, DescriptorThatCannotBeAdoptedIsClosed)
{
    make("file", "old");
    const int next = nextDescriptor();
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 2), 0);
    EXPECT_EQ(m_file.adopt(-1, 2), EBADF);
    EXPECT_EQ(m_file.State(), 0);
    for (const int mode : {4, 6, 8, 0, 3}) { // not what the descriptor was opened for, and unknown ones
        EXPECT_EQ(m_file.adopt(::open(pathOf("file").c_str(), O_RDONLY | O_CLOEXEC), mode), EINVAL) << mode;
        EXPECT_EQ(m_file.State(), 0);
        EXPECT_EQ(nextDescriptor(), next);
    }
    EXPECT_EQ(contentOf("file"), "old");
}

TEST_F(ZIOGFileTest, DescriptorZeroIsClosedTooIfItCannotBeAdopted)
{
    const auto outcome = runInChild([] {
        File file;
        const bool refused = file.adopt(STDIN_FILENO, 3) == EINVAL;
        return refused && fcntl(STDIN_FILENO, F_GETFD) < 0 ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
}

// Closed streams

TEST_F(ZIOGFileTest, ClosedStreamIgnoresItsArguments)
{
    char buffer[4];
    long number = 77;
    for (long count : {3L, 0L, -1L}) {
        EXPECT_EQ(m_file.read(buffer, count, number), -1) << count;
        EXPECT_EQ(m_file.read(buffer, count), -1) << count;
        EXPECT_EQ(m_file.write("abc", count, number), -1) << count;
        EXPECT_EQ(m_file.write("abc", count), -1) << count;
    }
    EXPECT_EQ(m_file.write(nullptr, -1, number), -1);
    EXPECT_EQ(m_file.write(nullptr, -1), -1);
    EXPECT_EQ(m_file.write("", -1), -1);
    EXPECT_EQ(number, 77);
    EXPECT_EQ(m_file.flush(), -1);
    EXPECT_EQ(m_file.Position(), -1);
    EXPECT_EQ(m_file.moveBegin(), -1);
    EXPECT_EQ(m_file.moveEnd(), -1);
    EXPECT_EQ(m_file.moveTo(0), -1);
    EXPECT_EQ(m_file.move(0), -1);
    EXPECT_EQ(m_file.Size(), -1);
    EXPECT_TRUE(m_file.EOS());
    EXPECT_FALSE(m_file.BOS());
    EXPECT_EQ(m_file.State(), 0);
    EXPECT_EQ(m_file.ItemSize(), 1u);
    EXPECT_FALSE(m_file.writeThrough());
    EXPECT_EQ(m_file.writeAtOnce("x", 1), 0);
    EXPECT_FALSE(m_file.hasError());
}

TEST_F(ZIOGFileTest, StreamIsClosedAgainAfterClose)
{
    ASSERT_EQ(m_file.open(make("file", "x").c_str(), 6), 0);
    m_file.close();
    long number = 77;
    EXPECT_EQ(m_file.write("", -1, number), -1);
    EXPECT_EQ(m_file.Position(), -1);
    EXPECT_TRUE(m_file.EOS());
    EXPECT_FALSE(m_file.BOS());
    EXPECT_EQ(number, 77);
}

// Interface

TEST_F(ZIOGFileTest, TransactionsDoNothing)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 6), 0);
    m_file.moveTo(1);
    m_file.beginTransaction();
    std::thread([&] {
        m_file.beginTransaction();
        m_file.endTransaction();
    }).join();
    m_file.endTransaction();
    m_file.endTransaction();
    EXPECT_EQ(m_file.Position(), 1);
    EXPECT_EQ(m_file.State(), 6);
}

TEST_F(ZIOGFileTest, WorksThroughItsBases)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    ZStream<>& stream = m_file;
    ZOutStream<>& out = stream;
    EXPECT_EQ(out.write("abc", -1), 3);
    ZStreamBase<>& base = stream;
    EXPECT_EQ(base.Position(), 3);
    EXPECT_EQ(base.State(), 4);
    EXPECT_EQ(base.close(), 0);
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 2), 0);
    ZInStream<>& in = stream;
    char buffer[8];
    EXPECT_EQ(in.read(buffer, 8), 3);
    EXPECT_TRUE(in.EOS());
}

TEST_F(ZIOGFileTest, OperationsAreInOrder)
{
    const std::vector<std::size_t> slots{slotOf(&File::State),
        slotOf(static_cast<int (File::*)(wchar_t const*, int)>(&File::open)),
        slotOf(static_cast<int (File::*)(char const*, int)>(&File::open)), slotOf(&File::close),
        slotOf(&File::Size), slotOf(&File::BOS), slotOf(&File::EOS), slotOf(&File::Position),
        slotOf(&File::moveBegin), slotOf(&File::moveEnd), slotOf(&File::moveTo), slotOf(&File::move),
        slotOf(&File::beginTransaction), slotOf(&File::endTransaction),
        slotOf(static_cast<int (File::*)(char const*, long, long&)>(&File::write)), slotOf(&File::flush)};
    for (std::size_t i = 1; i < slots.size(); ++i)
        EXPECT_EQ(slots[i], slots[i - 1] + 1) << i;
}

} // namespace
} // namespace ZSpace::Testing
