// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"
#include "tests/support/Descriptors.h"
#include "tests/support/FileNames.h"
#include "tests/system/SysFileTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <initializer_list>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;
using testing::UnorderedElementsAre;

// Listing directories, in both widths.
template <typename T>
class TZSysFileListTest : public SysFileTest<T> {
};

TYPED_TEST_SUITE(TZSysFileListTest, Widths, WidthNames);

TYPED_TEST(TZSysFileListTest, EmptyDirectoryHasNoNamesAndTwoEntries)
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

TYPED_TEST(TZSysFileListTest, NamesSkipThreeAndEntriesNone)
{
    using SysFile = TZSysFile<TypeParam>;
    const std::string bytes = takesNamesOfAnyBytes() ? "\xE9\xFF" : "\xC3\xA9";
    const std::string otherCase = distinguishesCase() ? ".ds_store" : ".ds_store2";
    for (const std::string& name : std::initializer_list<std::string>{
             ".DS_Store", ".DS_Store3", otherCase, ".hidden", "...", "..x", "a", bytes})
        this->make(name);
    fs::create_directory(this->pathOf("directory"));
    for (const char* slash : {"", "/"}) {
        const auto path = this->text(this->directory().string() + slash);
        typename TestFixture::Names names;
        EXPECT_EQ(SysFile::readDirectory(path.c_str(), names), 0);
        EXPECT_THAT(bytesOf(names),
            UnorderedElementsAre(".DS_Store3", otherCase, ".hidden", "...", "..x", "a", bytes, "directory"));
        typename TestFixture::Entries entries;
        EXPECT_EQ(SysFile::readDirectory(path.c_str(), entries), 0);
        EXPECT_THAT(this->namesOf(entries),
            UnorderedElementsAre(".", "..", ".DS_Store", ".DS_Store3", otherCase, ".hidden", "...", "..x",
                "a", bytes, "directory"));
    }
}

TYPED_TEST(TZSysFileListTest, EntriesKnowPathAndKindAndNothingElse)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file", "content");
    fs::create_directory(this->pathOf("directory"));
    fs::create_directory_symlink(this->pathOf("directory"), this->pathOf("to directory"));
    fs::create_symlink(this->pathOf("file"), this->pathOf("to file"));
    fs::create_symlink(this->pathOf("missing"), this->pathOf("to nothing"));
    ASSERT_EQ(mkfifo(this->pathOf("fifo").c_str(), 0600), 0);
    for (const char* slash : {"", "/"}) {
        typename TestFixture::Entries entries;
        SysFile::readDirectory(this->text(this->directory().string() + slash).c_str(), entries);
        ASSERT_EQ(entries.Count(), 8);
        for (const SysFile& entry : entries) {
            const std::string name = bytesOf(entry.Name());
            EXPECT_EQ(bytesOf(entry.Path()), this->directory().string() + "/" + name);
            const bool isDirectory =
                name == "." || name == ".." || name == "directory" || name == "to directory";
            EXPECT_EQ(entry.isDirectory(), isDirectory) << name;
            EXPECT_EQ(entry.isFile(), !isDirectory) << name;
            EXPECT_EQ(entry.Attributes(), 0u);
            EXPECT_TRUE(entry.TimeCreated().isCleared());
        }
        this->make("file", std::string(slash).empty() ? "grown content" : "content");
        for (const SysFile& entry : entries) {
            if (entry.Name() == this->text("file").c_str()) {
                EXPECT_EQ(entry.Size(), std::string(slash).empty() ? 13 : 7); // looked up only now
            }
        }
    }
}

TYPED_TEST(TZSysFileListTest, ListingKeepsTheOrderOfTheSystem)
{
    using SysFile = TZSysFile<TypeParam>;
    for (const char* name : {"c", "a", "d", "b", "f", "e"})
        this->make(name);
    std::vector<std::string> expected;
    for (const auto& entry : fs::directory_iterator(this->directory()))
        expected.push_back(entry.path().filename().string());
    typename TestFixture::Names names;
    SysFile::readDirectory(this->path("").c_str(), names);
    EXPECT_EQ(bytesOf(names), expected);
    EXPECT_EQ(bytesOf(TestFixture::entryOf(this->directory().string()).FileNames()), expected);
}

TYPED_TEST(TZSysFileListTest, ListingAddsToWhatIsThere)
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

TYPED_TEST(TZSysFileListTest, FailedListingDoesNotChangeTheList)
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

TYPED_TEST(TZSysFileListTest, ListingClosesTheDirectory)
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

TYPED_TEST(TZSysFileListTest, EmptyPathListsTheRoot)
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

TYPED_TEST(TZSysFileListTest, PatternsAreNotImplemented)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file");
    typename TestFixture::Entries entries;
    EXPECT_EQ(static_cast<unsigned int>(
                  SysFile::readDirectory(this->path("").c_str(), this->text("*").c_str(), entries)),
        0xFFFFFFFFu);
    EXPECT_EQ(entries.Count(), 0);
}

template <typename T>
void expectEntries(const std::basic_string<T>& path, long files, long directories)
{
    ZList<ZMStr<T>> names;
    EXPECT_EQ(TZSysFile<T>::readDirectory(path.c_str(), names), 0);
    EXPECT_EQ(names.Count(), files + directories);
    const std::vector<std::string> all = bytesOf(names);
    EXPECT_EQ(std::set<std::string>(all.begin(), all.end()).size(), all.size());
    const TZSysFile<T> directory(path.c_str(), ZTRISTATE::Yes, 0, -1, ZTime(), ZTime(), ZTime());
    EXPECT_EQ(directory.Files().Count(), files);
    EXPECT_EQ(directory.SubDirectories().Count(), directories + 2);
}

TEST(TZSysFileListManyTest, ListsManyEntries)
{
    constexpr int s_count = 10'000;
    const TemporaryFolder directory;
    for (int i = 0; i < s_count; ++i) {
        const std::string path = (directory.path() / std::to_string(i)).string();
        if (i % 100 == 0)
            mkdir(path.c_str(), 0700);
        else
            close(open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600));
    }
    expectEntries(directory.path().string(), s_count - s_count / 100, s_count / 100);
    expectEntries(directory.path().wstring(), s_count - s_count / 100, s_count / 100);
}

TEST(TZSysFileListWideTest, EntriesKeepThePathOfTheDirectory)
{
    const TemporaryFolder directory;
    const std::string bytes = (directory.path() / "caf\xC3\xA9").string();
    fs::create_directory(bytes);
    writeFile(bytes + "/\xC3\xBC", "");
    std::wstring wide = widened(bytes);
    wide.back() = L'\u20A9';
    const TZSysFile<wchar_t> entry(wide.c_str(), ZTRISTATE::Unknown, 0, -1, ZTime(), ZTime(), ZTime());
    EXPECT_TRUE(entry.isDirectory());
    EXPECT_TRUE(entry.Path() == wide.c_str());
    const ZList<TZSysFile<wchar_t>> files = entry.Files();
    ASSERT_EQ(files.Count(), 1);
    EXPECT_TRUE(files[0].Path() == (wide + L"/\u00C3\u00BC").c_str());
    EXPECT_TRUE(files[0].exists());
}

} // namespace
} // namespace ZSpace::Testing
