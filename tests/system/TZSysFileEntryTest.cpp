// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"
#include "tests/support/Probes.h"
#include "tests/system/SysFileTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <string>
#include <type_traits>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

using testing::UnorderedElementsAre;

static_assert(static_cast<int>(ZTRISTATE::No) == 0 && static_cast<int>(ZTRISTATE::Yes) == 1
    && static_cast<int>(ZTRISTATE::Unknown) == -1);
static_assert(std::is_copy_constructible_v<TZSysFile<char>> && std::is_copy_assignable_v<TZSysFile<char>>);

// Objects for directory entries, in both widths.
template <typename T>
class TZSysFileEntryTest : public SysFileTest<T> {
};

TYPED_TEST_SUITE(TZSysFileEntryTest, Widths, WidthNames);

const ZTime s_created(2001, 2, 3, 4, 5, 6, 7);
const ZTime s_accessed(2002, 3, 4, 5, 6, 7, 8);
const ZTime s_modified(2003, 4, 5, 6, 7, 8, 9);

TYPED_TEST(TZSysFileEntryTest, HoldsItsArguments)
{
    using SysFile = TZSysFile<TypeParam>;
    const SysFile entry(
        this->text("/no/such").c_str(), ZTRISTATE::Yes, ~0ULL, 1LL << 40, s_created, s_accessed, s_modified);
    EXPECT_EQ(bytesOf(entry.Path()), "/no/such");
    EXPECT_EQ(bytesOf(entry.Name()), "such");
    EXPECT_EQ(bytesOf(entry.ParentPath()), "/no");
    EXPECT_TRUE(entry.isDirectory());
    EXPECT_FALSE(entry.isFile());
    EXPECT_EQ(entry.Attributes(), ~0ULL);
    EXPECT_EQ(entry.Size(), 1LL << 40);
    EXPECT_EQ(entry.TimeCreated(), s_created);
    EXPECT_EQ(entry.TimeAccessed(), s_accessed);
    EXPECT_EQ(entry.TimeModified(), s_modified);
    EXPECT_FALSE(entry.exists());
}

TYPED_TEST(TZSysFileEntryTest, PathIsKeptAsGiven)
{
    for (const char* path : {"/a/b/", "a", "", "//", "./a/../b"})
        EXPECT_EQ(bytesOf(TestFixture::entryOf(path).Path()), path);
}

TYPED_TEST(TZSysFileEntryTest, KindIsLookedUpOnlyIfUnknown)
{
    const std::string file = this->make("file");
    const std::string directory = this->directory().string();
    for (const std::string& path : {file, directory, this->pathOf("missing")}) {
        EXPECT_FALSE(TestFixture::entryOf(path, ZTRISTATE::No).isDirectory());
        EXPECT_TRUE(TestFixture::entryOf(path, ZTRISTATE::Yes).isDirectory());
        for (int unknown : {-1, 2, 7, -5}) {
            const auto entry = TestFixture::entryOf(path, static_cast<ZTRISTATE>(unknown));
            EXPECT_EQ(entry.isDirectory(), path == directory) << unknown;
            EXPECT_EQ(entry.isFile(), path != directory) << unknown; // the negation, even for missing paths
        }
    }
}

TYPED_TEST(TZSysFileEntryTest, KindIsCachedAndExistenceIsLookedUpEachTime)
{
    const auto entry = TestFixture::entryOf(this->pathOf("x"));
    EXPECT_FALSE(entry.exists());
    fs::create_directory(this->pathOf("x"));
    EXPECT_TRUE(entry.exists());
    EXPECT_FALSE(entry.isDirectory());
    fs::remove(this->pathOf("x"));
    EXPECT_FALSE(entry.exists());
}

TYPED_TEST(TZSysFileEntryTest, SizeIsLookedUpUntilItIsAboveZero)
{
    const auto entry = TestFixture::entryOf(this->pathOf("file"));
    EXPECT_EQ(entry.Size(), -1);
    this->make("file");
    EXPECT_EQ(entry.Size(), 0);
    this->make("file", "12345");
    EXPECT_EQ(entry.Size(), 5);
    this->make("file", "1234567");
    EXPECT_EQ(entry.Size(), 5);
    fs::remove(this->pathOf("file"));
    EXPECT_EQ(entry.Size(), 5);
}

TYPED_TEST(TZSysFileEntryTest, SizeOfOneByteIsKnown)
{
    const auto entry = TestFixture::entryOf(this->make("file", "1"));
    EXPECT_EQ(entry.Size(), 1);
    this->make("file", "1234");
    EXPECT_EQ(entry.Size(), 1);
}

TYPED_TEST(TZSysFileEntryTest, SizeBelowOneIsUnknown)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file", "12345");
    for (long long size : {0LL, -1LL, -100LL}) {
        const SysFile entry(this->path("file").c_str(), ZTRISTATE::No, 0, size, ZTime(), ZTime(), ZTime());
        EXPECT_EQ(entry.Size(), 5);
    }
}

TYPED_TEST(TZSysFileEntryTest, TimesAreLookedUpUntilTheyAreKnown)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto entry = TestFixture::entryOf(this->pathOf("file"));
    EXPECT_TRUE(entry.TimeAccessed().isCleared());
    EXPECT_TRUE(entry.TimeModified().isCleared());
    EXPECT_TRUE(entry.TimeCreated().isCleared());
    this->make("file");
    setTimes(this->pathOf("file"), 1'000'000'000, 1'700'000'000);
    ZTime accessed;
    ZTime modified;
    SysFile::lastAccessTimeOf(this->path("file").c_str(), accessed);
    SysFile::lastChangeTimeOf(this->path("file").c_str(), modified);
    EXPECT_NE(accessed, modified);
    EXPECT_EQ(entry.TimeAccessed(), accessed);
    EXPECT_EQ(entry.TimeModified(), modified);
    EXPECT_TRUE(entry.TimeCreated().isCleared()); // never looked up
    fs::remove(this->pathOf("file"));
    EXPECT_EQ(entry.TimeAccessed(), accessed);
    EXPECT_EQ(entry.TimeModified(), modified);
}

TYPED_TEST(TZSysFileEntryTest, TimesCanBeSet)
{
    auto entry = TestFixture::entryOf(this->make("file"));
    entry.TimeCreated(s_created);
    entry.TimeAccessed(s_accessed);
    entry.TimeModified(s_modified);
    EXPECT_EQ(entry.TimeCreated(), s_created);
    EXPECT_EQ(entry.TimeAccessed(), s_accessed);
    EXPECT_EQ(entry.TimeModified(), s_modified);
    entry.TimeAccessed(ZTime()); // unknown again
    EXPECT_FALSE(entry.TimeAccessed().isCleared());
    EXPECT_NE(entry.TimeAccessed(), s_accessed);
}

TYPED_TEST(TZSysFileEntryTest, CopiesAreIndependent)
{
    using SysFile = TZSysFile<TypeParam>;
    SysFile entry(this->text("/a/b").c_str(), ZTRISTATE::Yes, 5, 6, s_created, s_accessed, s_modified);
    SysFile copy(entry);
    SysFile assigned = TestFixture::entryOf("/x");
    assigned = entry;
    entry = TestFixture::entryOf("/y", ZTRISTATE::No);
    for (const SysFile* same : {&copy, &assigned}) {
        EXPECT_EQ(bytesOf(same->Path()), "/a/b");
        EXPECT_TRUE(same->isDirectory());
        EXPECT_EQ(same->Attributes(), 5u);
        EXPECT_EQ(same->Size(), 6);
        EXPECT_EQ(same->TimeModified(), s_modified);
    }
    EXPECT_EQ(bytesOf(entry.Path()), "/y");
}

TYPED_TEST(TZSysFileEntryTest, ParentIsLookedUp)
{
    this->make("file");
    const auto parent = TestFixture::entryOf(this->pathOf("file")).Parent();
    EXPECT_EQ(bytesOf(parent.Path()), this->directory().string());
    EXPECT_TRUE(parent.isDirectory());
    EXPECT_EQ(parent.Attributes(), 0u);
    EXPECT_EQ(wordAt(&parent, 5), ~std::uintptr_t{0}); // the size: -1 until it is looked up
    EXPECT_TRUE(parent.TimeCreated().isCleared());
    const auto missing = TestFixture::entryOf(this->pathOf("missing/file")).Parent();
    EXPECT_EQ(bytesOf(missing.Path()), this->pathOf("missing"));
    EXPECT_FALSE(missing.isDirectory());
    EXPECT_EQ(bytesOf(TestFixture::entryOf("/a").Parent().Path()), "");
}

TYPED_TEST(TZSysFileEntryTest, MovesAndKeepsItsPath)
{
    const auto entry = TestFixture::entryOf(this->make("a", "content"));
    EXPECT_EQ(entry.moveTo(this->path("b").c_str()), 0);
    EXPECT_EQ(bytesOf(entry.Path()), this->pathOf("a"));
    EXPECT_FALSE(entry.exists());
    EXPECT_EQ(this->contentOf("b"), "content");
    EXPECT_EQ(entry.moveTo(this->path("c").c_str()), ENOENT);
}

TYPED_TEST(TZSysFileEntryTest, RenamesWithinItsDirectoryAndKeepsItsPath)
{
    fs::create_directory(this->pathOf("directory"));
    for (const char* slash : {"", "/"}) {
        fs::create_directory(this->pathOf("directory/b"));
        const auto entry = TestFixture::entryOf(this->pathOf("directory/b") + slash);
        EXPECT_EQ(entry.renameTo(this->text("c \xC3\xA9").c_str()), 0);
        EXPECT_TRUE(fs::exists(this->pathOf("directory/c \xC3\xA9")));
        EXPECT_EQ(bytesOf(entry.Path()), this->pathOf("directory/b") + slash);
        EXPECT_EQ(entry.renameTo(this->text("d").c_str()), ENOENT);
        fs::remove(this->pathOf("directory/c \xC3\xA9"));
    }
}

TYPED_TEST(TZSysFileEntryTest, Removes)
{
    const auto entry = TestFixture::entryOf(this->make("a"));
    EXPECT_EQ(entry.remove(), 0);
    EXPECT_FALSE(fs::exists(this->pathOf("a")));
    EXPECT_EQ(entry.remove(), ENOENT);
    EXPECT_EQ(bytesOf(entry.Path()), this->pathOf("a"));
}

TYPED_TEST(TZSysFileEntryTest, FilesAndDirectoriesOfADirectory)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("a");
    this->make("b");
    this->make(".DS_Store");
    fs::create_directory(this->pathOf("c"));
    fs::create_directory_symlink(this->pathOf("c"), this->pathOf("to c"));
    const auto directory = TestFixture::entryOf(this->directory().string());
    const auto files = directory.Files();
    EXPECT_THAT(this->namesOf(files), UnorderedElementsAre("a", "b", ".DS_Store"));
    for (const SysFile& file : files) {
        EXPECT_TRUE(file.isFile());
        EXPECT_TRUE(file.exists());
    }
    const auto directories = directory.SubDirectories();
    EXPECT_THAT(this->namesOf(directories), UnorderedElementsAre(".", "..", "c", "to c"));
    for (const SysFile& each : directories)
        EXPECT_TRUE(each.isDirectory());
    EXPECT_THAT(bytesOf(directory.FileNames()), UnorderedElementsAre("a", "b", ".DS_Store"));
    EXPECT_THAT(bytesOf(directory.SubDirNames()), UnorderedElementsAre(".", "..", "c", "to c"));
}

TYPED_TEST(TZSysFileEntryTest, EmptyDirectoryHasNoFiles)
{
    const auto directory = TestFixture::entryOf(this->directory().string() + "/");
    EXPECT_EQ(directory.Files().Count(), 0);
    EXPECT_EQ(directory.FileNames().Count(), 0);
    EXPECT_THAT(bytesOf(directory.SubDirNames()), UnorderedElementsAre(".", ".."));
}

TYPED_TEST(TZSysFileEntryTest, FilesAndMissingPathsHaveNoEntries)
{
    for (const std::string& path : {this->make("file"), this->pathOf("missing")}) {
        const auto entry = TestFixture::entryOf(path, ZTRISTATE::Yes);
        EXPECT_EQ(entry.Files().Count(), 0);
        EXPECT_EQ(entry.SubDirectories().Count(), 0);
        EXPECT_EQ(entry.FileNames().Count(), 0);
        EXPECT_EQ(entry.SubDirNames().Count(), 0);
    }
}

} // namespace
} // namespace ZSpace::Testing
