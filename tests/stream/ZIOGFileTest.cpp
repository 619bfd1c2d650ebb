// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/FileFields.h"
#include "tests/support/ReadFaults.h"
#include "tests/support/Slots.h"
#include "tests/support/StreamTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <type_traits>
#include <vector>

namespace ZSpace {
namespace {

using Testing::runInChild;
using ZSpace::Testing::AllocationFault;
using ZSpace::Testing::becomeNobody;
using ZSpace::Testing::ClaimedRead;
using ZSpace::Testing::DescriptorLimit;
using ZSpace::Testing::FileFields;
using ZSpace::Testing::isInherited;
using ZSpace::Testing::isOpen;
using ZSpace::Testing::nextDescriptor;
using ZSpace::Testing::ReadFault;
using ZSpace::Testing::slotOf;
using ZSpace::Testing::widened;

using File = ZIOGFile<>;

static_assert(std::is_same_v<File, ZIOGFile<FILE*, char, ZStreamTransaction>>);
static_assert(!std::is_abstract_v<File>);

class ZIOGFileTest : public ZSpace::Testing::FolderTest {
protected:
    ~ZIOGFileTest() override { m_file.close(); }

    /// A closed file that a test may open; closed again at its end.
    File m_file;
};

std::string readAll(File& file)
{
    std::string text(1 << 16, '\0');
    const long got = file.read(text.data(), static_cast<long>(text.size()));
    return got < 0 ? "(failed)" : text.substr(0, static_cast<std::size_t>(got));
}

// Opening and closing

TEST_F(ZIOGFileTest, IsClosedAtFirst)
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

TEST_F(ZIOGFileTest, OtherModesAreRefused)
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

TEST_F(ZIOGFileTest, NamesThatCannotBe)
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

TEST_F(ZIOGFileTest, WidePathsGoNarrow)
{
    make("f\xE9 x", "content");
    EXPECT_EQ(m_file.open(widened(pathOf("f\xE9 x")).c_str(), 2), 0);
    EXPECT_EQ(readAll(m_file), "content");
    const std::wstring beyondBytes = widened(pathOf("f")) + L'\u20E9' + L" x"; // the low 8 bits count
    EXPECT_EQ(m_file.open(beyondBytes.c_str(), 8), 0);
    EXPECT_EQ(readAll(m_file), "content");
    EXPECT_EQ(m_file.open(widened(pathOf("missing")).c_str(), 2), ENOENT);
    EXPECT_EQ(m_file.State(), 0);
}

TEST_F(ZIOGFileTest, NamesMayHaveAnyBytes)
{
    const std::string name = "\xC3\xA9 \xFF\x80\n";
    EXPECT_EQ(m_file.open(pathOf(name).c_str(), 4), 0);
    EXPECT_EQ(m_file.write("x", 1), 1);
    m_file.close();
    EXPECT_EQ(contentOf(name), "x");
}

TEST_F(ZIOGFileTest, FolderOpensForReadingOnlyAndCannotBeRead)
{
    for (int mode : {4, 6, 8}) {
        EXPECT_EQ(m_file.open(folder().c_str(), mode), EISDIR) << mode;
        EXPECT_EQ(m_file.State(), 0) << mode;
    }
    ASSERT_EQ(m_file.open(folder().c_str(), 2), 0);
    char buffer[16];
    long got = 5;
    EXPECT_NE(m_file.read(buffer, sizeof buffer, got), 0);
    EXPECT_EQ(got, 0);
    EXPECT_EQ(m_file.read(buffer, sizeof buffer), -1);
}

TEST_F(ZIOGFileTest, DanglingLinkIsMissingForReadingAndMadeForWriting)
{
    std::filesystem::create_symlink(pathOf("target"), pathOf("link"));
    EXPECT_EQ(m_file.open(pathOf("link").c_str(), 2), ENOENT);
    EXPECT_EQ(m_file.open(pathOf("link").c_str(), 6), ENOENT);
    EXPECT_EQ(m_file.open(pathOf("link").c_str(), 8), 0);
    EXPECT_TRUE(std::filesystem::exists(pathOf("target")));
}

TEST_F(ZIOGFileTest, MissingRightsAreReported)
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

TEST_F(ZIOGFileTest, WantOfDescriptorsIsReported)
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

TEST_F(ZIOGFileTest, ClosingSucceedsEvenWhenTheRestCannotBeWritten)
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

// Closed streams

TEST_F(ZIOGFileTest, ClosedAnswersComeBeforeEverythingElse)
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

TEST_F(ZIOGFileTest, AnswersAreThoseOfAClosedStreamAgainAfterClose)
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

// Reading

TEST_F(ZIOGFileTest, ReadsWhatIsThere)
{
    ASSERT_EQ(m_file.open(make("file", "abcdef").c_str(), 2), 0);
    char buffer[16] = {};
    long got = 77;
    EXPECT_EQ(m_file.read(buffer, 4, got), 0);
    EXPECT_EQ(got, 4);
    EXPECT_EQ(m_file.read(buffer + 4, 12, got), 0);
    EXPECT_EQ(got, 2);
    EXPECT_STREQ(buffer, "abcdef");
    EXPECT_EQ(m_file.read(buffer, 16, got), 0);
    EXPECT_EQ(got, 0);
    EXPECT_EQ(m_file.read(buffer, 16), 0);
}

TEST_F(ZIOGFileTest, ReadingNothingGivesNothing)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    for (long count : {0L, -1L}) {
        char buffer[4] = "...";
        long got = 77;
        EXPECT_EQ(m_file.read(buffer, count, got), 0);
        EXPECT_EQ(got, 0);
        EXPECT_STREQ(buffer, "...");
    }
    EXPECT_FALSE(m_file.EOS());
    EXPECT_EQ(m_file.Position(), 0);
}

TEST_F(ZIOGFileTest, EndIsKnownOnceAReadHasRunIntoIt)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    EXPECT_FALSE(m_file.EOS());
    m_file.moveEnd();
    EXPECT_FALSE(m_file.EOS());
    char buffer[4];
    EXPECT_EQ(m_file.read(buffer, 1), 0);
    EXPECT_TRUE(m_file.EOS());
    m_file.moveBegin();
    EXPECT_FALSE(m_file.EOS());
    EXPECT_EQ(m_file.read(buffer, 3), 3);
    EXPECT_FALSE(m_file.EOS());
    EXPECT_EQ(m_file.read(buffer, 1), 0);
    EXPECT_TRUE(m_file.EOS());
}

TEST_F(ZIOGFileTest, EmptyFileEndsWithTheFirstRead)
{
    ASSERT_EQ(m_file.open(make("file").c_str(), 2), 0);
    EXPECT_FALSE(m_file.EOS());
    EXPECT_TRUE(m_file.BOS());
    char c;
    EXPECT_EQ(m_file.read(&c, 1), 0);
    EXPECT_TRUE(m_file.EOS());
    EXPECT_TRUE(m_file.BOS());
}

TEST_F(ZIOGFileTest, FileOpenForWritingCannotBeRead)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    char c;
    long got = 77;
    EXPECT_NE(m_file.read(&c, 1, got), 0);
    EXPECT_EQ(got, 0);
    EXPECT_EQ(m_file.read(&c, 1), -1);
}

TEST_F(ZIOGFileTest, ReadThatFailsHalfWayGivesBothStatusAndItems)
{
    ASSERT_EQ(m_file.open(make("file", "abcdefgh").c_str(), 2), 0);
    char buffer[8];
    long got = 77;
    {
        const ReadFault fault(1);
        EXPECT_NE(m_file.read(buffer, 8, got), 0);
    }
    EXPECT_EQ(got, 4);
    m_file.moveBegin();
    const ReadFault fault(1);
    EXPECT_EQ(m_file.read(buffer, 8), -1);
}

TEST_F(ZIOGFileTest, CountsOfItemsReadHave32Bits)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    const ClaimedRead claim((1L << 31) + 5); // a buffer of that size would be too much for a test
    char buffer[4];
    long got = 0;
    EXPECT_EQ(m_file.read(buffer, 4, got), 0);
    EXPECT_EQ(got, -(1L << 31) + 5);
}

// Writing

TEST_F(ZIOGFileTest, WritesWhatItIsGiven)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    long written = 77;
    EXPECT_EQ(m_file.write("a\0b", 3, written), 0);
    EXPECT_EQ(written, 3);
    EXPECT_EQ(m_file.write("cdef", 2), 2);
    m_file.close();
    EXPECT_EQ(contentOf("file"), std::string("a\0bcd", 5));
}

TEST_F(ZIOGFileTest, NegativeCountWritesTheTextWithoutItsTerminator)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    long written = 77;
    EXPECT_EQ(m_file.write("text", -1, written), 0);
    EXPECT_EQ(written, 4);
    EXPECT_EQ(m_file.write("more", -9), 4);
    m_file.close();
    EXPECT_EQ(contentOf("file"), "textmore");
}

TEST_F(ZIOGFileTest, WritingNothingLeavesTheNumberAlone)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    long written = 77;
    EXPECT_EQ(m_file.write(nullptr, -1, written), 0);
    EXPECT_EQ(m_file.write("", -1, written), 0);
    EXPECT_EQ(m_file.write("abc", 0, written), 0);
    EXPECT_EQ(m_file.write(nullptr, 0, written), 0);
    EXPECT_EQ(written, 77);
    EXPECT_EQ(m_file.write(nullptr, -1), 0);
    EXPECT_EQ(m_file.write("", -1), 0);
    EXPECT_EQ(m_file.Position(), 0);
}

TEST_F(ZIOGFileTest, FileOpenForReadingCannotBeWritten)
{
    ASSERT_EQ(m_file.open(make("file", "abc").c_str(), 2), 0);
    long written = 77;
    EXPECT_NE(m_file.write("x", 1, written), 0);
    EXPECT_EQ(written, 0);
    EXPECT_EQ(m_file.write("x", 1), -1);
    EXPECT_EQ(m_file.write("", -1), 0); // nothing to write is no error
    m_file.close();
    EXPECT_EQ(contentOf("file"), "abc");
}

TEST_F(ZIOGFileTest, FlushHandsOverWhatIsBuffered)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    EXPECT_EQ(m_file.flush(), 0);
    m_file.write("text", -1);
    EXPECT_EQ(contentOf("file"), "");
    EXPECT_EQ(m_file.flush(), 0);
    EXPECT_EQ(contentOf("file"), "text");
}

TEST_F(ZIOGFileTest, FullDiskShowsWhereTheBufferIsHandedOver)
{
    if (m_file.open("/dev/full", 4) != 0)
        GTEST_SKIP() << "the host has no full device";
    long written = 77;
    EXPECT_EQ(m_file.write("abc", -1, written), 0);
    EXPECT_EQ(written, 3);
    EXPECT_NE(m_file.flush(), 0);

    ASSERT_EQ(m_file.open("/dev/full", 4), 0);
    const std::string much(1 << 20, 'x');
    EXPECT_NE(m_file.write(much.data(), 1 << 20, written), 0);
    EXPECT_EQ(written, 0);
    ASSERT_EQ(m_file.open("/dev/full", 4), 0);
    EXPECT_EQ(m_file.write(much.data(), 1 << 20), -1);
}

TEST_F(ZIOGFileTest, WritingAPartIsSuccess)
{
    const auto outcome = runInChild([&] {
        constexpr long s_room = 100'000;
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{s_room, s_room};
        setrlimit(RLIMIT_FSIZE, &limit);
        File file;
        const std::string much(s_room * 2, 'x');
        long written = 0;
        if (file.open(pathOf("file").c_str(), 4) != 0 || !file.writeThrough())
            return 1;
        if (file.write(much.data(), s_room * 2, written) != 0)
            return 2;
        if (written <= 0 || written > s_room)
            return 3;
        if (file.write(much.data(), s_room * 2, written) == 0 || written != 0)
            return 4;
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(ZIOGFileTest, AppendModeReadsAnywhereAndWritesAtTheEnd)
{
    ASSERT_EQ(m_file.open(make("file", "old").c_str(), 8), 0);
    m_file.moveBegin();
    EXPECT_EQ(readAll(m_file), "old");
    m_file.moveBegin();
    EXPECT_EQ(m_file.write("new", -1), 3);
    EXPECT_EQ(m_file.Position(), 6);
    m_file.close();
    EXPECT_EQ(contentOf("file"), "oldnew");
}

TEST_F(ZIOGFileTest, ReadWriteModeChangesInPlace)
{
    ASSERT_EQ(m_file.open(make("file", "abcdef").c_str(), 6), 0);
    m_file.moveTo(2);
    EXPECT_EQ(m_file.write("XY", -1), 2);
    m_file.moveTo(1);
    EXPECT_EQ(readAll(m_file), "bXYef");
}

// One write for each line

/// The calls by which this thread has handed data to the system so far, -1 where it does not tell.
long writeCalls()
{
    std::ifstream counts("/proc/thread-self/io");
    std::string name;
    long number = 0;
    while (counts >> name >> number) {
        if (name == "syscw:")
            return number;
    }
    return -1;
}

TEST_F(ZIOGFileTest, WriteThroughReachesTheSystemAtOnceInOneCall)
{
    if (writeCalls() < 0)
        GTEST_SKIP() << "the system does not count calls";
    for (int mode : {4, 6, 8}) {
        for (long length : {1L, 60L, 4'095L, 4'096L, 4'097L, 9'000L, 100'000L, 3'000'000L}) {
            ASSERT_EQ(m_file.open(make("file").c_str(), mode), 0);
            ASSERT_TRUE(m_file.writeThrough());
            const std::string line(static_cast<std::size_t>(length), 'x');
            // Once without counting: sanitizers write, too, when they see a class for the first time.
            EXPECT_EQ(m_file.write(line.data(), length), length);
            EXPECT_EQ(m_file.flush(), 0);
            for (int i = 2; i <= 4; ++i) {
                const long before = writeCalls();
                EXPECT_EQ(m_file.write(line.data(), length), length);
                EXPECT_EQ(writeCalls(), before + 1) << mode << ", " << length;
                EXPECT_EQ(static_cast<long>(std::filesystem::file_size(pathOf("file"))), i * length);
                EXPECT_EQ(m_file.flush(), 0);
                EXPECT_EQ(writeCalls(), before + 1) << mode << ", " << length;
            }
        }
    }
}

TEST_F(ZIOGFileTest, WriteThroughChangesNothingElse)
{
    ASSERT_EQ(m_file.open(make("file", "old").c_str(), 8), 0);
    ASSERT_TRUE(m_file.writeThrough());
    EXPECT_EQ(m_file.Size(), 3);
    EXPECT_EQ(m_file.moveEnd(), 0);
    EXPECT_EQ(m_file.write("\r\n", -1), 2);
    EXPECT_EQ(m_file.Position(), 5);
    m_file.moveBegin();
    EXPECT_EQ(readAll(m_file), "old\r\n");
    EXPECT_TRUE(m_file.EOS());
    EXPECT_EQ(m_file.State(), 6);

    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0); // the next file is buffered again
    m_file.write("x", 1);
    EXPECT_EQ(contentOf("file"), "");
}

TEST_F(ZIOGFileTest, FullDiskShowsInTheWriteItselfWhereWritesGoThrough)
{
    if (m_file.open("/dev/full", 4) != 0)
        GTEST_SKIP() << "the host has no full device";
    ASSERT_TRUE(m_file.writeThrough());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(m_file.write("lost", -1), -1);
}

TEST_F(ZIOGFileTest, WritingAtOnceTakesOneCall)
{
    if (writeCalls() < 0)
        GTEST_SKIP() << "the system does not count calls";
    ASSERT_EQ(m_file.open(make("file", "old").c_str(), 8), 0);
    ASSERT_TRUE(m_file.writeThrough());
    const std::string line(100'000, 'x');
    for (long i = 1; i <= 3; ++i) {
        const long before = writeCalls();
        EXPECT_EQ(m_file.writeAtOnce(line.data(), 100'000), 100'000);
        EXPECT_EQ(writeCalls(), before + 1);
        EXPECT_EQ(static_cast<long>(std::filesystem::file_size(pathOf("file"))), 3 + i * 100'000);
    }
    EXPECT_EQ(m_file.writeAtOnce(line.data(), 0), 0);
    EXPECT_FALSE(m_file.hasError());
}

TEST_F(ZIOGFileTest, WhatIsNotWrittenAtOnceSetsTheErrorMark)
{
    const auto outcome = runInChild([&] {
        constexpr long s_room = 1'000;
        signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{s_room, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &limit);
        File file;
        const std::string text(s_room * 2, 'x');
        if (file.open(pathOf("file").c_str(), 8) != 0 || !file.writeThrough())
            return 1;
        if (file.writeAtOnce(text.data(), s_room * 2) != s_room || !file.hasError())
            return 2;
        file.clearError();
        if (file.hasError() || file.writeAtOnce(text.data(), s_room) != 0 || !file.hasError())
            return 3;
        file.clearError();
        const rlimit noLimit{RLIM_INFINITY, RLIM_INFINITY};
        setrlimit(RLIMIT_FSIZE, &noLimit);
        return file.writeAtOnce(text.data(), s_room) == s_room && !file.hasError() ? 0 : 4;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(contentOf("file").size(), 2'000U);
}

TEST_F(ZIOGFileTest, LinesOfTwoProcessesNeverMix)
{
    constexpr int s_lines = 300;
    const auto append = [&](char letter) {
        File file;
        if (file.open(pathOf("file").c_str(), 8) != 0 || !file.writeThrough())
            return 1;
        for (int i = 0; i < s_lines; ++i) {
            const std::string line = std::string(static_cast<std::size_t>(5'000 + i), letter) + "\n";
            if (file.write(line.data(), static_cast<long>(line.size())) != static_cast<long>(line.size()))
                return 2;
        }
        return file.close();
    };
    const auto outcome = runInChild([&] {
        const pid_t other = fork();
        if (other == 0)
            _exit(append('a'));
        int status = append('b');
        int otherStatus = -1;
        waitpid(other, &otherStatus, 0);
        return status + otherStatus;
    });
    EXPECT_EQ(outcome.status, 0);

    std::istringstream lines(contentOf("file"));
    int count = 0;
    for (std::string line; std::getline(lines, line); ++count)
        ASSERT_EQ(line.find_first_not_of(line[0]), std::string::npos);
    EXPECT_EQ(count, 2 * s_lines);
}

// Position and size

TEST_F(ZIOGFileTest, Moves)
{
    ASSERT_EQ(m_file.open(make("file", "0123456789").c_str(), 2), 0);
    EXPECT_EQ(m_file.Position(), 0);
    EXPECT_TRUE(m_file.BOS());
    EXPECT_EQ(m_file.moveTo(7), 0);
    EXPECT_EQ(m_file.Position(), 7);
    EXPECT_FALSE(m_file.BOS());
    EXPECT_EQ(m_file.move(-3), 0);
    EXPECT_EQ(m_file.Position(), 4);
    EXPECT_EQ(m_file.move(2), 0);
    EXPECT_EQ(m_file.Position(), 6);
    EXPECT_EQ(m_file.moveEnd(), 0);
    EXPECT_EQ(m_file.Position(), 10);
    EXPECT_EQ(m_file.moveTo(25), 0); // past the end is a place, too
    EXPECT_EQ(m_file.Position(), 25);
    EXPECT_EQ(m_file.moveBegin(), 0);
    EXPECT_TRUE(m_file.BOS());
}

TEST_F(ZIOGFileTest, MovingBeforeTheBeginningFailsAndStays)
{
    ASSERT_EQ(m_file.open(make("file", "0123456789").c_str(), 2), 0);
    m_file.moveTo(3);
    EXPECT_EQ(m_file.moveTo(-1), -1);
    EXPECT_EQ(m_file.move(-4), -1);
    EXPECT_EQ(m_file.Position(), 3);
}

TEST_F(ZIOGFileTest, SizeLeavesThePosition)
{
    ASSERT_EQ(m_file.open(make("file", "0123456789").c_str(), 6), 0);
    for (long long position : {0LL, 3LL, 10LL, 12LL}) {
        m_file.moveTo(position);
        EXPECT_EQ(m_file.Size(), 10);
        EXPECT_EQ(m_file.Position(), position);
    }
    m_file.moveEnd();
    m_file.write("ab", -1);
    EXPECT_EQ(m_file.Size(), 12); // what is buffered counts
    EXPECT_EQ(m_file.Position(), 12);
}

TEST_F(ZIOGFileTest, FilesMayHaveMoreThan4GiB)
{
    constexpr long long s_far = (5LL << 30) + 3;
    ASSERT_EQ(m_file.open(make("file", "begin").c_str(), 6), 0);
    EXPECT_EQ(m_file.moveTo(s_far), 0);
    EXPECT_EQ(m_file.write("end", -1), 3);
    EXPECT_EQ(m_file.Position(), s_far + 3);
    EXPECT_EQ(m_file.Size(), s_far + 3);
    EXPECT_EQ(m_file.moveBegin(), 0);
    EXPECT_EQ(m_file.move(s_far), 0);
    EXPECT_EQ(readAll(m_file), "end");
    EXPECT_EQ(m_file.move(-s_far), 0);
    EXPECT_EQ(m_file.Position(), 3);
}

// What is no file

TEST_F(ZIOGFileTest, FifoCarriesDataAndHasNoPositions)
{
    ASSERT_EQ(mkfifo(pathOf("fifo").c_str(), 0600), 0);
    File writer;
    std::thread opener([&] { writer.open(pathOf("fifo").c_str(), 4); });
    ASSERT_EQ(m_file.open(pathOf("fifo").c_str(), 2), 0);
    opener.join();
    EXPECT_EQ(writer.State(), 4);
    EXPECT_EQ(m_file.Position(), -1);
    EXPECT_EQ(m_file.Size(), -1);
    EXPECT_FALSE(m_file.BOS());
    EXPECT_EQ(m_file.moveBegin(), -1);
    EXPECT_EQ(m_file.moveEnd(), -1);
    EXPECT_EQ(m_file.moveTo(1), -1);
    EXPECT_EQ(m_file.move(1), -1);

    EXPECT_EQ(writer.write("through", -1), 7);
    EXPECT_EQ(writer.flush(), 0);
    writer.close();
    EXPECT_EQ(readAll(m_file), "through");
    EXPECT_TRUE(m_file.EOS());
}

TEST_F(ZIOGFileTest, PipeWithoutReaderIsAnError)
{
    const auto outcome = runInChild([&] {
        signal(SIGPIPE, SIG_IGN);
        int ends[2];
        if (pipe(ends) != 0)
            return 1;
        File file;
        if (file.open(("/dev/fd/" + std::to_string(ends[1])).c_str(), 4) != 0)
            return 2;
        if (file.write("x", 1) != 1 || file.flush() != 0)
            return 3;
        ::close(ends[0]);
        if (file.write("x", 1) != 1 || file.flush() == 0)
            return 4;
        return file.writeThrough() && file.write("x", 1) == -1 ? 0 : 5;
    });
    EXPECT_EQ(outcome.status, 0);
}

// Clones

TEST_F(ZIOGFileTest, CloneOfAClosedFileIsClosed)
{
    const std::unique_ptr<File> clone(m_file.clone());
    ASSERT_TRUE(clone);
    EXPECT_EQ(clone->State(), 0);
    EXPECT_EQ(clone->Position(), -1);
    const AllocationFault fault(1);
    EXPECT_EQ(m_file.clone(), nullptr);
}

TEST_F(ZIOGFileTest, CloneHasTheSameState)
{
    make("file", "content");
    for (int mode : {2, 6, 8, 4}) {
        ASSERT_EQ(m_file.open(pathOf("file").c_str(), mode), 0);
        const std::unique_ptr<File> clone(m_file.clone());
        ASSERT_TRUE(clone) << mode;
        EXPECT_EQ(clone->State(), m_file.State()) << mode;
        EXPECT_EQ(clone->close(), 0);
        EXPECT_NE(m_file.State(), 0) << mode;
        EXPECT_EQ(m_file.moveEnd(), 0) << mode;
    }
}

TEST_F(ZIOGFileTest, CloneReadsOnFromTheSharedOffset)
{
    ASSERT_EQ(m_file.open(make("file", "0123456789").c_str(), 2), 0);
    m_file.moveTo(4);
    const std::unique_ptr<File> clone(m_file.clone());
    EXPECT_EQ(clone->Position(), 4);
    EXPECT_EQ(readAll(*clone), "456789");
    clone->close();
    EXPECT_EQ(m_file.State(), 2);
    m_file.moveBegin();
    EXPECT_EQ(readAll(m_file), "0123456789");
}

TEST_F(ZIOGFileTest, CloneOfAFileForWritingGoesOnWriting)
{
    ASSERT_EQ(m_file.open(pathOf("file").c_str(), 4), 0);
    m_file.write("first ", -1);
    m_file.flush();
    const std::unique_ptr<File> clone(m_file.clone());
    EXPECT_EQ(contentOf("file"), "first ");
    clone->write("second", -1);
    clone->close();
    EXPECT_EQ(contentOf("file"), "first second");
}

TEST_F(ZIOGFileTest, CloneOfAFileForAppendingAppends)
{
    ASSERT_EQ(m_file.open(make("file", "old").c_str(), 8), 0);
    const std::unique_ptr<File> clone(m_file.clone());
    clone->moveBegin();
    clone->write("new", -1);
    clone->close();
    EXPECT_EQ(contentOf("file"), "oldnew");
}

TEST_F(ZIOGFileTest, CloneThatCannotBeIsNullAndLeavesNothingOpen)
{
    ASSERT_EQ(m_file.open(make("file").c_str(), 2), 0);
    const FileFields usual = FileFields::of(m_file);
    const int next = nextDescriptor();
    {
        const DescriptorLimit limit(next); // no duplicate
        EXPECT_EQ(m_file.clone(), nullptr);
    }
    FileFields{usual.handle, true, true}.putInto(m_file); // no stream on the duplicate: it cannot be written
    EXPECT_EQ(m_file.clone(), nullptr);
    EXPECT_EQ(nextDescriptor(), next);

    FileFields{usual.handle, false, false}.putInto(m_file); // no flag
    EXPECT_EQ(m_file.clone(), nullptr);
    EXPECT_EQ(nextDescriptor(), next);

    char memory[8] = {}; // no descriptor
    FILE* onMemory = fmemopen(memory, sizeof memory, "r");
    FileFields{onMemory, true, false}.putInto(m_file);
    EXPECT_EQ(m_file.clone(), nullptr);
    fclose(onMemory);
    usual.putInto(m_file);
    EXPECT_EQ(nextDescriptor(), next);

    {
        const AllocationFault fault(1);
        EXPECT_EQ(m_file.clone(), nullptr);
    }
    EXPECT_EQ(nextDescriptor(), next);
    const std::unique_ptr<File> clone(m_file.clone());
    EXPECT_TRUE(clone);
    clone->close();
}

// The rest

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

TEST_F(ZIOGFileTest, OperationsStandInOrder)
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
} // namespace ZSpace
