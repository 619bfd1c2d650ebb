// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/ReadFaults.h"
#include "tests/system/SysFileTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <string>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ZSpace {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using Testing::runInChild;
using testing::UnorderedElementsAre;
using ZSpace::Testing::becomeNobody;
using ZSpace::Testing::bytesOf;
using ZSpace::Testing::DescriptorLimit;
using ZSpace::Testing::nextDescriptor;
using ZSpace::Testing::ReadFault;

// What the operations on files and folders do to the disk, for both twins.
template <typename T>
class TZSysFileTest : public ZSpace::Testing::SysFileTest<T> {
};

TYPED_TEST_SUITE(TZSysFileTest, ZSpace::Testing::Widths, ZSpace::Testing::WidthNames);

TYPED_TEST(TZSysFileTest, CurrentDirectoryIsThatOfTheProcess)
{
    using SysFile = TZSysFile<TypeParam>;
    EXPECT_EQ(bytesOf(SysFile::getCurrentDirectory()), fs::current_path().string());
    const auto outcome = runInChild([&] {
        if (SysFile::changeDirectory(this->path("").c_str()) != 0)
            return 1;
        if (bytesOf(SysFile::getCurrentDirectory()) != fs::canonical(this->folder()).string())
            return 2;
        fs::create_directory("caf\xE9");
        if (SysFile::changeDirectory(this->text("caf\xE9").c_str()) != 0)
            return 3;
        return bytesOf(SysFile::getCurrentDirectory()) == fs::canonical(this->folder()).string() + "/caf\xE9"
            ? 0
            : 4;
    });
    EXPECT_EQ(outcome.status, 0);
}

TYPED_TEST(TZSysFileTest, CurrentDirectoryOfMoreThan1023BytesIsEmpty)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto outcome = runInChild([&] {
        fs::current_path(this->folder());
        std::size_t length = fs::current_path().string().size();
        while (length < 1'023) {
            // At the end exactly 1023, never leaving a rest too short for a name.
            std::size_t step = std::min<std::size_t>(200, 1'023 - length - 1);
            if (1'023 - length - 1 - step == 1)
                --step;
            const std::string name(step, 'd');
            if (mkdir(name.c_str(), 0700) != 0 || chdir(name.c_str()) != 0)
                return 1;
            length += step + 1;
        }
        if (SysFile::getCurrentDirectory().Length() != 1'023)
            return 2;
        if (mkdir("d", 0700) != 0 || chdir("d") != 0)
            return 3;
        return SysFile::getCurrentDirectory().isEmpty() ? 0 : 4;
    });
    EXPECT_EQ(outcome.status, 0);
}

TYPED_TEST(TZSysFileTest, CurrentDirectoryThatIsGoneIsEmpty)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto outcome = runInChild([&] {
        fs::create_directory(this->pathOf("gone"));
        fs::current_path(this->pathOf("gone"));
        fs::remove(this->pathOf("gone"));
        return SysFile::getCurrentDirectory().isEmpty() ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
}

TYPED_TEST(TZSysFileTest, ThereIsOneVolume)
{
    using SysFile = TZSysFile<TypeParam>;
    EXPECT_EQ(bytesOf(SysFile::getCurrentVolume()), "/");
    typename TestFixture::Names volumes;
    EXPECT_EQ(SysFile::getVolumes(volumes), 0);
    EXPECT_THAT(bytesOf(volumes), ElementsAre("/"));
    EXPECT_EQ(SysFile::getVolumes(volumes), 0);
    EXPECT_THAT(bytesOf(volumes), ElementsAre("/", "/"));
}

TYPED_TEST(TZSysFileTest, ChangeDirectoryReportsItsError)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    EXPECT_EQ(SysFile::changeDirectory(this->path("missing").c_str()), ENOENT);
    EXPECT_EQ(SysFile::changeDirectory(this->path("file").c_str()), ENOTDIR);
    EXPECT_EQ(SysFile::changeDirectory(this->text("").c_str()), ENOENT);
    EXPECT_EQ(SysFile::changeDirectory(nullptr), ENOENT);
}

TYPED_TEST(TZSysFileTest, MakeDirectoryGivesTheRawResult)
{
    using SysFile = TZSysFile<TypeParam>;
    EXPECT_EQ(SysFile::makeDirectory(this->path("new").c_str()), 0);
    EXPECT_TRUE(fs::is_directory(this->pathOf("new")));
    EXPECT_EQ(SysFile::makeDirectory(this->path("new").c_str()), -1);
    EXPECT_EQ(SysFile::makeDirectory(this->path("missing/new").c_str()), -1);
    EXPECT_EQ(SysFile::makeDirectory(this->text("").c_str()), -1);
    EXPECT_EQ(SysFile::makeDirectory(nullptr), -1);
}

TYPED_TEST(TZSysFileTest, MadeDirectoryIsOpenToAllButForTheUmask)
{
    using SysFile = TZSysFile<TypeParam>;
    const mode_t usual = umask(0);
    SysFile::makeDirectory(this->path("open").c_str());
    umask(027);
    SysFile::makeDirectory(this->path("masked").c_str());
    umask(usual);
    EXPECT_EQ(fs::status(this->pathOf("open")).permissions(), fs::perms(0777));
    EXPECT_EQ(fs::status(this->pathOf("masked")).permissions(), fs::perms(0750));
}

TYPED_TEST(TZSysFileTest, RemoveDirectoryRemovesAnEmptyFolderOnly)
{
    using SysFile = TZSysFile<TypeParam>;
    fs::create_directories(this->pathOf("full/inner"));
    for (bool recursive : {false, true}) {
        fs::create_directory(this->pathOf("empty"));
        EXPECT_EQ(SysFile::removeDirectory(this->path("empty").c_str(), recursive), 0);
        EXPECT_FALSE(fs::exists(this->pathOf("empty")));
        EXPECT_EQ(SysFile::removeDirectory(this->path("empty").c_str(), recursive), -1);
        EXPECT_EQ(SysFile::removeDirectory(this->path("full").c_str(), recursive), -1);
        EXPECT_TRUE(fs::exists(this->pathOf("full/inner")));
    }
    this->make("file");
    EXPECT_EQ(SysFile::removeDirectory(this->path("file").c_str()), -1);
    EXPECT_TRUE(fs::exists(this->pathOf("file")));
}

// Moving and removing

template <typename T>
using Mover = int (*)(const T*, const T*);

template <typename T>
std::vector<Mover<T>> movers()
{
    return {&TZSysFile<T>::renameDirectory, &TZSysFile<T>::moveDirectory, &TZSysFile<T>::moveFile};
}

TYPED_TEST(TZSysFileTest, MovesFilesAndFolders)
{
    for (auto move : movers<TypeParam>()) {
        this->make("file", "content");
        EXPECT_EQ(move(this->path("file").c_str(), this->path("moved").c_str()), 0);
        EXPECT_FALSE(fs::exists(this->pathOf("file")));
        EXPECT_EQ(this->contentOf("moved"), "content");
        fs::create_directories(this->pathOf("folder/inner"));
        EXPECT_EQ(move(this->path("folder").c_str(), this->path("other").c_str()), 0);
        EXPECT_TRUE(fs::exists(this->pathOf("other/inner")));
        fs::remove_all(this->pathOf("other"));
    }
}

TYPED_TEST(TZSysFileTest, MovingReplacesAFile)
{
    for (auto move : movers<TypeParam>()) {
        this->make("file", "new");
        this->make("old", "old");
        EXPECT_EQ(move(this->path("file").c_str(), this->path("old").c_str()), 0);
        EXPECT_EQ(this->contentOf("old"), "new");
    }
}

TYPED_TEST(TZSysFileTest, MovingReportsItsError)
{
    this->make("file");
    fs::create_directories(this->pathOf("folder/inner"));
    fs::create_directories(this->pathOf("full/inner"));
    for (auto move : movers<TypeParam>()) {
        const auto to = [&](const char* name) { return this->path(name); };
        EXPECT_EQ(move(to("missing").c_str(), to("x").c_str()), ENOENT);
        EXPECT_EQ(move(to("file").c_str(), to("missing/x").c_str()), ENOENT);
        EXPECT_EQ(move(to("file").c_str(), to("folder").c_str()), EISDIR);
        EXPECT_EQ(move(to("folder").c_str(), to("file").c_str()), ENOTDIR);
        EXPECT_EQ(move(to("folder").c_str(), to("folder/inner/x").c_str()), EINVAL);
        EXPECT_THAT(move(to("folder").c_str(), to("full").c_str()), testing::AnyOf(ENOTEMPTY, EEXIST));
        EXPECT_EQ(move(nullptr, nullptr), ENOENT);
    }
    EXPECT_TRUE(fs::exists(this->pathOf("file")));
    EXPECT_TRUE(fs::exists(this->pathOf("folder/inner")));
}

TYPED_TEST(TZSysFileTest, RemovesFilesAndLinks)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    fs::create_symlink(this->pathOf("file"), this->pathOf("link"));
    fs::create_symlink(this->pathOf("missing"), this->pathOf("dangling"));
    EXPECT_EQ(SysFile::removeFile(this->path("link").c_str()), 0);
    EXPECT_TRUE(fs::exists(this->pathOf("file")));
    EXPECT_EQ(SysFile::removeFile(this->path("dangling").c_str()), 0);
    EXPECT_FALSE(fs::is_symlink(this->pathOf("dangling")));
    EXPECT_EQ(SysFile::removeFile(this->path("file").c_str()), 0);
    EXPECT_FALSE(fs::exists(this->pathOf("file")));
    EXPECT_EQ(SysFile::removeFile(this->path("file").c_str()), ENOENT);
    EXPECT_NE(SysFile::removeFile(this->path("").c_str()), 0);
    EXPECT_TRUE(fs::exists(this->folder()));
    EXPECT_EQ(SysFile::removeFile(nullptr), ENOENT);
}

TYPED_TEST(TZSysFileTest, MissingRightsAreReported)
{
    using SysFile = TZSysFile<TypeParam>;
    this->openToAll();
    this->make("secret", "secret");
    fs::permissions(this->pathOf("secret"), fs::perms::none);
    fs::create_directory(this->pathOf("closed"));
    this->make("closed/file");
    fs::permissions(this->pathOf("closed"), fs::perms(0444)); // may be listed, not entered
    fs::create_directory(this->pathOf("hidden"));
    fs::permissions(this->pathOf("hidden"), fs::perms(0111)); // may be entered, not listed
    this->make("open", "open");
    const auto outcome = runInChild([&] {
        if (!becomeNobody())
            return 100;
        typename TestFixture::Names names;
        typename TestFixture::Entries entries;
        const auto to = [&](const char* name) { return this->path(name); };
        if (SysFile::changeDirectory(to("closed").c_str()) != EACCES)
            return 1;
        if (SysFile::makeDirectory(to("closed/new").c_str()) != -1)
            return 2;
        if (SysFile::removeFile(to("closed/file").c_str()) != EACCES)
            return 3;
        if (SysFile::moveFile(to("open").c_str(), to("closed/new").c_str()) != EACCES)
            return 4;
        if (SysFile::exists(to("closed/file").c_str()) || SysFile::sizeOf(to("closed/file").c_str()) != -1)
            return 5;
        if (SysFile::readDirectory(to("hidden").c_str(), names) != EACCES
            || SysFile::readDirectory(to("hidden").c_str(), entries) != EACCES)
            return 6;
        if (SysFile::copyFile(to("secret").c_str(), to("copy").c_str()) != 0x0F000004
            || SysFile::exists(to("copy").c_str()))
            return 7;
        if (SysFile::copyFile(to("open").c_str(), to("secret").c_str()) != 0x0F000005)
            return 8;
        if (SysFile::readDirectory(to("closed").c_str(), names) != 0 || names.Count() != 1)
            return 9;
        if (SysFile::readDirectory(to("closed").c_str(), entries) != 0 || entries.Count() != 3)
            return 10;
        for (const SysFile& entry : entries) {
            if (entry.isDirectory()) // the disk does not tell
                return 11;
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    fs::permissions(this->pathOf("closed"), fs::perms::owner_all);
    EXPECT_EQ(this->contentOf("secret"), "secret");
}

// Listing

TYPED_TEST(TZSysFileTest, EmptyFolderHasNoNamesAndTwoEntries)
{
    using SysFile = TZSysFile<TypeParam>;
    typename TestFixture::Names names;
    EXPECT_EQ(SysFile::readDirectory(this->path("").c_str(), names), 0);
    EXPECT_EQ(names.Count(), 0);
    typename TestFixture::Entries entries;
    EXPECT_EQ(SysFile::readDirectory(this->path("").c_str(), entries), 0);
    EXPECT_THAT(this->namesOf(entries), UnorderedElementsAre(".", ".."));
    for (const SysFile& entry : entries)
        EXPECT_TRUE(entry.isDirectory());
}

TYPED_TEST(TZSysFileTest, NamesLeaveOutThreeAndEntriesNone)
{
    using SysFile = TZSysFile<TypeParam>;
    for (const char* name :
        {".DS_Store", ".DS_Store2", ".ds_store", ".hidden", "...", "..x", "a", "\xE9\xFF"})
        this->make(name);
    fs::create_directory(this->pathOf("folder"));
    for (const char* slash : {"", "/"}) {
        const auto path = this->text(this->folder().string() + slash);
        typename TestFixture::Names names;
        EXPECT_EQ(SysFile::readDirectory(path.c_str(), names), 0);
        EXPECT_THAT(bytesOf(names),
            UnorderedElementsAre(
                ".DS_Store2", ".ds_store", ".hidden", "...", "..x", "a", "\xE9\xFF", "folder"));
        typename TestFixture::Entries entries;
        EXPECT_EQ(SysFile::readDirectory(path.c_str(), entries), 0);
        EXPECT_THAT(this->namesOf(entries),
            UnorderedElementsAre(".", "..", ".DS_Store", ".DS_Store2", ".ds_store", ".hidden", "...", "..x",
                "a", "\xE9\xFF", "folder"));
    }
}

TYPED_TEST(TZSysFileTest, EntriesKnowPathAndKindAndNothingElse)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file", "content");
    fs::create_directory(this->pathOf("folder"));
    fs::create_directory_symlink(this->pathOf("folder"), this->pathOf("to folder"));
    fs::create_symlink(this->pathOf("file"), this->pathOf("to file"));
    fs::create_symlink(this->pathOf("missing"), this->pathOf("to nothing"));
    ASSERT_EQ(mkfifo(this->pathOf("fifo").c_str(), 0600), 0);
    for (const char* slash : {"", "/"}) {
        typename TestFixture::Entries entries;
        SysFile::readDirectory(this->text(this->folder().string() + slash).c_str(), entries);
        ASSERT_EQ(entries.Count(), 8);
        for (const SysFile& entry : entries) {
            const std::string name = bytesOf(entry.Name());
            EXPECT_EQ(bytesOf(entry.Path()), this->folder().string() + "/" + name);
            const bool isFolder = name == "." || name == ".." || name == "folder" || name == "to folder";
            EXPECT_EQ(entry.isDirectory(), isFolder) << name;
            EXPECT_EQ(entry.isFile(), !isFolder) << name;
            EXPECT_EQ(entry.Attributes(), 0u);
            EXPECT_TRUE(entry.TimeCreated().isCleared());
        }
        this->make("file", std::string(slash).empty() ? "grown content" : "content");
        for (const SysFile& entry : entries) {
            if (entry.Name() == this->text("file").c_str()) {
                EXPECT_EQ(entry.Size(), std::string(slash).empty() ? 13 : 7); // not looked up until now
            }
        }
    }
}

TYPED_TEST(TZSysFileTest, ListingComesInTheOrderOfTheSystem)
{
    using SysFile = TZSysFile<TypeParam>;
    for (const char* name : {"c", "a", "d", "b", "f", "e"})
        this->make(name);
    std::vector<std::string> expected;
    for (const auto& entry : fs::directory_iterator(this->folder()))
        expected.push_back(entry.path().filename().string());
    typename TestFixture::Names names;
    SysFile::readDirectory(this->path("").c_str(), names);
    EXPECT_EQ(bytesOf(names), expected);
    EXPECT_EQ(bytesOf(TestFixture::entryOf(this->folder().string()).FileNames()), expected);
}

TYPED_TEST(TZSysFileTest, ListingAddsToWhatIsThere)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    typename TestFixture::Names names;
    SysFile::getVolumes(names);
    SysFile::readDirectory(this->path("").c_str(), names);
    EXPECT_THAT(bytesOf(names), ElementsAre("/", "file"));
    typename TestFixture::Entries entries;
    SysFile::readDirectory(this->path("").c_str(), entries);
    SysFile::readDirectory(this->path("").c_str(), entries);
    EXPECT_EQ(entries.Count(), 6);
}

TYPED_TEST(TZSysFileTest, ListingThatFailsLeavesTheListAlone)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    typename TestFixture::Names names;
    SysFile::getVolumes(names);
    typename TestFixture::Entries entries;
    entries.add(TestFixture::entryOf("/x"));
    struct Row {
        const char* name;
        int error;
    };
    for (const Row& row : {Row{"missing", ENOENT}, Row{"file", ENOTDIR}, Row{"file/x", ENOTDIR}}) {
        EXPECT_EQ(SysFile::readDirectory(this->path(row.name).c_str(), names), row.error) << row.name;
        EXPECT_EQ(SysFile::readDirectory(this->path(row.name).c_str(), entries), row.error) << row.name;
    }
    {
        const DescriptorLimit limit(nextDescriptor());
        EXPECT_EQ(SysFile::readDirectory(this->path("").c_str(), names), EMFILE);
        EXPECT_EQ(SysFile::readDirectory(this->path("").c_str(), entries), EMFILE);
    }
    EXPECT_EQ(names.Count(), 1);
    EXPECT_EQ(entries.Count(), 1);
}

TYPED_TEST(TZSysFileTest, ListingClosesTheFolder)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    const int next = nextDescriptor();
    typename TestFixture::Names names;
    SysFile::readDirectory(this->path("").c_str(), names);
    typename TestFixture::Entries entries;
    SysFile::readDirectory(this->path("").c_str(), entries);
    EXPECT_EQ(nextDescriptor(), next);
}

TYPED_TEST(TZSysFileTest, EmptyPathListsTheRoot)
{
    using SysFile = TZSysFile<TypeParam>;
    typename TestFixture::Names ofRoot;
    EXPECT_EQ(SysFile::readDirectory(this->text("/").c_str(), ofRoot), 0);
    typename TestFixture::Names ofEmpty;
    EXPECT_EQ(SysFile::readDirectory(this->text("").c_str(), ofEmpty), 0);
    EXPECT_EQ(bytesOf(ofEmpty), bytesOf(ofRoot));
    typename TestFixture::Entries entries;
    EXPECT_EQ(SysFile::readDirectory(nullptr, entries), 0);
    ASSERT_GT(entries.Count(), 2);
    for (const SysFile& entry : entries)
        EXPECT_EQ(bytesOf(entry.Path()), std::string("/").append(bytesOf(entry.Name())));
}

TYPED_TEST(TZSysFileTest, PatternsAreNotImplemented)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    typename TestFixture::Entries entries;
    EXPECT_EQ(static_cast<unsigned int>(
                  SysFile::readDirectory(this->path("").c_str(), this->text("*").c_str(), entries)),
        0xFFFFFFFFu);
    EXPECT_EQ(entries.Count(), 0);
}

// Copying

TYPED_TEST(TZSysFileTest, CopiesFilesOfAllSizes)
{
    using SysFile = TZSysFile<TypeParam>;
    for (std::size_t size : {0UL, 1UL, 4'095UL, 4'096UL, 4'097UL, 8'191UL, 8'192UL, 8'193UL, 1'000'003UL}) {
        std::string content(size, '\0');
        for (std::size_t i = 0; i < size; ++i)
            content[i] = static_cast<char>(i * 31 + i / 251);
        this->make("from \xE9", content);
        EXPECT_EQ(SysFile::copyFile(this->path("from \xE9").c_str(), this->path("to \xE9").c_str()), 0);
        EXPECT_TRUE(this->contentOf("to \xE9") == content) << size;
        EXPECT_TRUE(this->contentOf("from \xE9") == content) << size;
    }
}

TYPED_TEST(TZSysFileTest, CopyReplacesALongerFile)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "short");
    this->make("to", std::string(100'000, 'x'));
    EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()), 0);
    EXPECT_EQ(this->contentOf("to"), "short");
}

TYPED_TEST(TZSysFileTest, CopyTakesTheContentAlone)
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

TYPED_TEST(TZSysFileTest, CopyWithoutASourceChangesNothing)
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

TYPED_TEST(TZSysFileTest, CopyWithoutATargetClosesTheSource)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "content");
    fs::create_directory(this->pathOf("folder"));
    const int next = nextDescriptor();
    for (const char* to : {"missing/to", "folder", "from/to"})
        EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path(to).c_str()), 0x0F000005) << to;
    EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), nullptr), 0x0F000005);
    EXPECT_EQ(SysFile::copyFile(this->path("folder").c_str(), this->path("folder").c_str()), 0x0F000005);
    EXPECT_EQ(nextDescriptor(), next);
    EXPECT_EQ(this->contentOf("from"), "content");
}

TYPED_TEST(TZSysFileTest, CopyOfAFolderLeavesNoTarget)
{
    using SysFile = TZSysFile<TypeParam>;
    fs::create_directory(this->pathOf("folder"));
    this->make("to", "old");
    const int next = nextDescriptor();
    EXPECT_EQ(SysFile::copyFile(this->path("folder").c_str(), this->path("to").c_str()), 0x0F000000);
    EXPECT_FALSE(fs::exists(this->pathOf("to")));
    EXPECT_EQ(nextDescriptor(), next);
}

TYPED_TEST(TZSysFileTest, CopyThatCannotReadOnLeavesNoTarget)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", std::string(20'000, 'x'));
    const int next = nextDescriptor();
    for (long chunk = 1; chunk <= 5; ++chunk) {
        const ReadFault fault(chunk);
        EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()), 0x0F000000);
        EXPECT_FALSE(fs::exists(this->pathOf("to"))) << chunk;
        EXPECT_EQ(nextDescriptor(), next) << chunk;
    }
    EXPECT_EQ(fs::file_size(this->pathOf("from")), 20'000u);
}

TYPED_TEST(TZSysFileTest, CopyThatCannotWriteRemovesTheTarget)
{
    using SysFile = TZSysFile<TypeParam>;
    if (!fs::exists("/dev/full"))
        GTEST_SKIP() << "the host has no full device";
    const int next = nextDescriptor();
    for (std::size_t size : {1UL, 4'095UL, 4'096UL, 100'000UL}) { // the small ones fail at the very end
        this->make("from", std::string(size, 'x'));
        fs::create_symlink("/dev/full", this->pathOf("to"));
        EXPECT_EQ(SysFile::copyFile(this->path("from").c_str(), this->path("to").c_str()), 0x0F000000)
            << size;
        EXPECT_FALSE(fs::is_symlink(this->pathOf("to"))) << size;
        EXPECT_EQ(nextDescriptor(), next) << size;
    }
    EXPECT_TRUE(fs::exists("/dev/full"));
}

TYPED_TEST(TZSysFileTest, CopyThatFillsTheDiskLeavesNoPartOfTheTarget)
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

TYPED_TEST(TZSysFileTest, CopyDoesNotRemoveADevice)
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

TYPED_TEST(TZSysFileTest, FileCopiedOntoItselfStaysAsItIs)
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

TYPED_TEST(TZSysFileTest, CopyFollowsLinks)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("from", "content");
    fs::create_symlink(this->pathOf("from"), this->pathOf("link"));
    fs::create_symlink(this->pathOf("new"), this->pathOf("dangling"));
    EXPECT_EQ(SysFile::copyFile(this->path("dangling").c_str(), this->path("to").c_str()), 0x0F000004);
    EXPECT_EQ(SysFile::copyFile(this->path("link").c_str(), this->path("dangling").c_str()), 0);
    EXPECT_EQ(this->contentOf("new"), "content");
}

TYPED_TEST(TZSysFileTest, CopiesFromDevices)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("to", "old");
    EXPECT_EQ(SysFile::copyFile(this->text("/dev/null").c_str(), this->path("to").c_str()), 0);
    EXPECT_EQ(this->contentOf("to"), "");
    EXPECT_EQ(SysFile::copyFile(this->text("/dev/null").c_str(), this->text("/dev/null").c_str()), 0);
}

// What there is

TYPED_TEST(TZSysFileTest, Kinds)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file", "content");
    this->make("empty");
    fs::create_directory(this->pathOf("folder"));
    fs::create_directory_symlink(this->pathOf("folder"), this->pathOf("to folder"));
    fs::create_symlink(this->pathOf("file"), this->pathOf("to file"));
    fs::create_symlink(this->pathOf("missing"), this->pathOf("to nothing"));
    fs::create_symlink(this->pathOf("loop"), this->pathOf("loop"));
    ASSERT_EQ(mkfifo(this->pathOf("fifo").c_str(), 0600), 0);
    struct Row {
        const char* name;
        bool exists;
        bool isFile;
        bool isDirectory;
        long long size; ///< -2: any
    };
    for (const Row& row : {Row{"file", true, true, false, 7}, Row{"empty", true, true, false, 0},
             Row{"folder", true, false, true, -2}, Row{"folder/", true, false, true, -2},
             Row{"to folder", true, false, true, -2}, Row{"to file", true, true, false, 7},
             Row{"to nothing", false, false, false, -1}, Row{"loop", false, false, false, -1},
             Row{"fifo", true, false, false, 0}, Row{"missing", false, false, false, -1},
             Row{"file/", false, false, false, -1}}) {
        const auto path = this->path(row.name);
        EXPECT_EQ(SysFile::exists(path.c_str()), row.exists) << row.name;
        EXPECT_EQ(SysFile::isFile(path.c_str()), row.isFile) << row.name;
        EXPECT_EQ(SysFile::isDirectory(path.c_str()), row.isDirectory) << row.name;
        if (row.size != -2) {
            EXPECT_EQ(SysFile::sizeOf(path.c_str()), row.size) << row.name;
        }
    }
    EXPECT_FALSE(SysFile::exists(this->text("").c_str()));
    EXPECT_FALSE(SysFile::exists(nullptr));
    EXPECT_FALSE(SysFile::isFile(nullptr));
    EXPECT_FALSE(SysFile::isDirectory(nullptr));
    EXPECT_EQ(SysFile::sizeOf(nullptr), -1);
    EXPECT_FALSE(SysFile::isFile(this->text("/dev/null").c_str()));
}

TYPED_TEST(TZSysFileTest, SizesHave64Bits)
{
    using SysFile = TZSysFile<TypeParam>;
    constexpr long long s_size = (6LL << 30) + 5;
    fs::resize_file(this->make("file"), s_size);
    EXPECT_EQ(SysFile::sizeOf(this->path("file").c_str()), s_size);
    EXPECT_EQ(TestFixture::entryOf(this->pathOf("file")).Size(), s_size);
}

/// Gives the file an access and a modification time.
void setTimes(const std::string& path, time_t accessed, time_t modified)
{
    const timespec times[]{{accessed, 999'999'999}, {modified, 500'000'000}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

TYPED_TEST(TZSysFileTest, TimesAreWholeSeconds)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    fs::create_symlink(this->pathOf("file"), this->pathOf("link"));
    const auto outcome = runInChild([&] {
        setenv("TZ", "UTC", 1);
        tzset();
        setTimes(this->pathOf("file"), 1'709'622'489, 1);
        for (const char* name : {"file", "link"}) {
            ZTime accessed(2020, 1, 2, 3, 4, 5, 6);
            ZTime modified(2020, 1, 2, 3, 4, 5, 6);
            if (SysFile::lastAccessTimeOf(this->path(name).c_str(), accessed) != 0
                || accessed != ZTime(2024, 3, 5, 7, 8, 9, 0))
                return 1;
            if (SysFile::lastChangeTimeOf(this->path(name).c_str(), modified) != 0
                || modified != ZTime(1970, 1, 1, 0, 0, 1, 0))
                return 2;
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

TYPED_TEST(TZSysFileTest, TimesAreShiftedAsTimesAre)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    setTimes(this->pathOf("file"), 1'709'622'489, 86'400);
    const auto outcome = runInChild([&] {
        setenv("TZ", "XYZ+5", 1);
        tzset();
        ZTime accessed;
        ZTime modified;
        SysFile::lastAccessTimeOf(this->path("file").c_str(), accessed);
        SysFile::lastChangeTimeOf(this->path("file").c_str(), modified);
        if (accessed != ZTime(1970, 1, 1, 0, 0, 0, 0) + 1'709'622'489)
            return 1;
        return modified == ZTime(1970, 1, 2, 5, 0, 0, 0) ? 0 : 2;
    });
    EXPECT_EQ(outcome.status, 0);
}

TYPED_TEST(TZSysFileTest, TimesOfAMissingFileStayAsTheyAre)
{
    using SysFile = TZSysFile<TypeParam>;
    const ZTime before(2020, 1, 2, 3, 4, 5, 6);
    ZTime time = before;
    EXPECT_EQ(SysFile::lastAccessTimeOf(this->path("missing").c_str(), time), -1);
    EXPECT_EQ(time, before);
    EXPECT_EQ(SysFile::lastChangeTimeOf(this->path("missing").c_str(), time), -1);
    EXPECT_EQ(time, before);
    EXPECT_EQ(SysFile::lastChangeTimeOf(nullptr, time), -1);
}

TYPED_TEST(TZSysFileTest, WhatIsNotImplementedChangesNothing)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    setTimes(this->pathOf("file"), 1'000, 2'000);
    const ZTime before(2020, 1, 2, 3, 4, 5, 6);
    for (const char* name : {"file", "missing"}) {
        const auto path = this->path(name);
        unsigned long long attributes = 77;
        EXPECT_EQ(static_cast<unsigned int>(SysFile::getAttributes(path.c_str(), attributes)), 0x80000000u);
        EXPECT_EQ(attributes, 77u);
        EXPECT_EQ(static_cast<unsigned int>(SysFile::setAttributes(path.c_str(), 1)), 0x80000000u);
        ZTime time = before;
        EXPECT_EQ(static_cast<unsigned int>(SysFile::creationTimeOf(path.c_str(), time)), 0x80000000u);
        EXPECT_EQ(time, before);
        EXPECT_EQ(SysFile::setCreationTimeOf(path.c_str(), time), 0);
        EXPECT_EQ(static_cast<unsigned int>(SysFile::setLastAccessTimeOf(path.c_str(), time)), 0x80000000u);
        EXPECT_EQ(static_cast<unsigned int>(SysFile::setLastChangeTimeOf(path.c_str(), time)), 0x80000000u);
    }
    struct stat status;
    ASSERT_EQ(stat(this->pathOf("file").c_str(), &status), 0);
    EXPECT_EQ(status.st_atime, 1'000);
    EXPECT_EQ(status.st_mtime, 2'000);
}

// Paths as text

TYPED_TEST(TZSysFileTest, ParentsAndNames)
{
    using SysFile = TZSysFile<TypeParam>;
    struct Row {
        std::string path;
        std::string parent;
        std::string name;
    };
    for (const Row& row :
        {Row{"/a/b/", "/a", "b"}, Row{"/a/b", "/a", "b"}, Row{"/a", "", "a"}, Row{"/a/", "", "a"},
            Row{"/", "", ""}, Row{"//", "", ""}, Row{"", "", ""}, Row{"a", "a", "a"}, Row{"a/", "a", "a"},
            Row{"a//", "a", ""}, Row{"a/b", "a", "b"}, Row{"a//b", "a/", "b"}, Row{"./x.txt", ".", "x.txt"},
            Row{"/a/..", "/a", ".."}, Row{"/caf\xE9/\xFF", "/caf\xE9", "\xFF"}}) {
        EXPECT_EQ(bytesOf(SysFile::getParentOf(this->text(row.path).c_str())), row.parent) << row.path;
        EXPECT_EQ(bytesOf(SysFile::getNameOf(this->text(row.path).c_str())), row.name) << row.path;
    }
    EXPECT_TRUE(SysFile::getParentOf(nullptr).isEmpty());
    EXPECT_TRUE(SysFile::getNameOf(nullptr).isEmpty());
}

template <typename T>
void expectEntries(const std::basic_string<T>& path, long files, long folders)
{
    ZList<ZMStr<T>> names;
    EXPECT_EQ(TZSysFile<T>::readDirectory(path.c_str(), names), 0);
    EXPECT_EQ(names.Count(), files + folders);
    const std::vector<std::string> all = bytesOf(names);
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
    const TZSysFile<T> folder(path.c_str(), ZTRISTATE::Yes, 0, -1, ZTime(), ZTime(), ZTime());
    EXPECT_EQ(folder.Files().Count(), files);
    EXPECT_EQ(folder.SubDirectories().Count(), folders + 2);
}

TEST(TZSysFileTest, ListsManyEntries)
{
    constexpr int s_count = 10'000;
    const Testing::TemporaryFolder folder;
    for (int i = 0; i < s_count; ++i) {
        const std::string path = (folder.path() / std::to_string(i)).string();
        if (i % 100 == 0)
            mkdir(path.c_str(), 0700);
        else
            close(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
    expectEntries(folder.path().string(), s_count - s_count / 100, s_count / 100);
    expectEntries(folder.path().wstring(), s_count - s_count / 100, s_count / 100);
}

TEST(TZSysFileWideTest, PathsKeepTheLow8BitsOfEachUnit)
{
    const Testing::TemporaryFolder folder;
    const std::string bytes = (folder.path() / "caf\xE9").string();
    Testing::writeFile(bytes, "content");
    std::wstring wide = ZSpace::Testing::widened(bytes);
    wide.back() = L'\u20E9';
    EXPECT_EQ(TZSysFile<wchar_t>::sizeOf(wide.c_str()), 7);
    EXPECT_EQ(bytesOf(TZSysFile<wchar_t>::getNameOf(wide.c_str())), "caf\xE9");
    EXPECT_EQ(bytesOf(TZSysFile<wchar_t>::getParentOf(L"/\u2061/x")), "/a");
    EXPECT_EQ(bytesOf(TZSysFile<wchar_t>::getNameOf(L"/a\u012Fx")), "x"); // 0x2F is a "/"
    EXPECT_EQ(TZSysFile<wchar_t>::removeFile(wide.c_str()), 0);
    EXPECT_FALSE(fs::exists(bytes));
}

TEST(TZSysFileWideTest, EntriesKeepTheTextOfTheFolder)
{
    const Testing::TemporaryFolder folder;
    const std::string bytes = (folder.path() / "caf\xE9").string();
    fs::create_directory(bytes);
    Testing::writeFile(bytes + "/\xFC", "");
    std::wstring wide = ZSpace::Testing::widened(bytes);
    wide.back() = L'\u20E9';
    const TZSysFile<wchar_t> entry(wide.c_str(), ZTRISTATE::Unknown, 0, -1, ZTime(), ZTime(), ZTime());
    EXPECT_TRUE(entry.isDirectory());
    EXPECT_TRUE(entry.Path() == wide.c_str());
    const ZList<TZSysFile<wchar_t>> files = entry.Files();
    ASSERT_EQ(files.Count(), 1);
    EXPECT_TRUE(files[0].Path() == (wide + L"/\u00FC").c_str());
    EXPECT_TRUE(files[0].exists());
}

} // namespace
} // namespace ZSpace
