// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"

#include "tests/support/ChildProcess.h"
#include "tests/system/SysFileTests.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

using testing::ElementsAre;

// Operations on files and directories, in both widths.
template <typename T>
class TZSysFileTest : public SysFileTest<T> {
};

TYPED_TEST_SUITE(TZSysFileTest, Widths, WidthNames);

TYPED_TEST(TZSysFileTest, CurrentDirectoryIsThatOfTheProcess)
{
    using SysFile = TZSysFile<TypeParam>;
    EXPECT_EQ(bytesOf(SysFile::getCurrentDirectory()), fs::current_path().string());
    const auto outcome = runInChild([&] {
        if (SysFile::changeDirectory(this->path("").c_str()) != 0)
            return 1;
        if (bytesOf(SysFile::getCurrentDirectory()) != fs::canonical(this->directory()).string())
            return 2;
        fs::create_directory("caf\xC3\xA9");
        if (SysFile::changeDirectory(this->text("caf\xC3\xA9").c_str()) != 0)
            return 3;
        return bytesOf(SysFile::getCurrentDirectory())
                == fs::canonical(this->directory()).string() + "/caf\xC3\xA9"
            ? 0
            : 4;
    });
    EXPECT_EQ(outcome.status, 0);
}

TYPED_TEST(TZSysFileTest, CurrentDirectoryOfMoreThan1023BytesIsEmpty)
{
    using SysFile = TZSysFile<TypeParam>;
    const auto outcome = runInChild([&] {
        fs::current_path(this->directory());
        std::size_t length = fs::current_path().string().size();
        while (length < 1'023) {
            // Must end at exactly 1023, so never leave a rest too short for a name.
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

TYPED_TEST(TZSysFileTest, CurrentDirectoryThatWasRemovedIsEmpty)
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

TYPED_TEST(TZSysFileTest, MakeDirectoryReturnsTheRawResult)
{
    using SysFile = TZSysFile<TypeParam>;
    EXPECT_EQ(SysFile::makeDirectory(this->path("new").c_str()), 0);
    EXPECT_TRUE(fs::is_directory(this->pathOf("new")));
    EXPECT_EQ(SysFile::makeDirectory(this->path("new").c_str()), -1);
    EXPECT_EQ(SysFile::makeDirectory(this->path("missing/new").c_str()), -1);
    EXPECT_EQ(SysFile::makeDirectory(this->text("").c_str()), -1);
    EXPECT_EQ(SysFile::makeDirectory(nullptr), -1);
}

TYPED_TEST(TZSysFileTest, NewDirectoryIsOpenToAllLessTheUmask)
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

TYPED_TEST(TZSysFileTest, RemoveDirectoryRemovesAnEmptyDirectoryOnly)
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

TYPED_TEST(TZSysFileTest, MovesFilesAndDirectories)
{
    for (auto move : movers<TypeParam>()) {
        this->make("file", "content");
        EXPECT_EQ(move(this->path("file").c_str(), this->path("moved").c_str()), 0);
        EXPECT_FALSE(fs::exists(this->pathOf("file")));
        EXPECT_EQ(this->contentOf("moved"), "content");
        fs::create_directories(this->pathOf("directory/inner"));
        EXPECT_EQ(move(this->path("directory").c_str(), this->path("other").c_str()), 0);
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
    fs::create_directories(this->pathOf("directory/inner"));
    fs::create_directories(this->pathOf("full/inner"));
    for (auto move : movers<TypeParam>()) {
        const auto to = [&](const char* name) { return this->path(name); };
        EXPECT_EQ(move(to("missing").c_str(), to("x").c_str()), ENOENT);
        EXPECT_EQ(move(to("file").c_str(), to("missing/x").c_str()), ENOENT);
        EXPECT_EQ(move(to("file").c_str(), to("directory").c_str()), EISDIR);
        EXPECT_EQ(move(to("directory").c_str(), to("file").c_str()), ENOTDIR);
        EXPECT_EQ(move(to("directory").c_str(), to("directory/inner/x").c_str()), EINVAL);
        EXPECT_THAT(move(to("directory").c_str(), to("full").c_str()), testing::AnyOf(ENOTEMPTY, EEXIST));
        EXPECT_EQ(move(nullptr, nullptr), ENOENT);
    }
    EXPECT_TRUE(fs::exists(this->pathOf("file")));
    EXPECT_TRUE(fs::exists(this->pathOf("directory/inner")));
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
    EXPECT_TRUE(fs::exists(this->directory()));
    EXPECT_EQ(SysFile::removeFile(nullptr), ENOENT);
}

TYPED_TEST(TZSysFileTest, MissingPermissionsAreReported)
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
            if (entry.isDirectory()) // cannot be looked up
                return 11;
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    for (const char* name : {"closed", "secret"})
        fs::permissions(this->pathOf(name), fs::perms::owner_all);
    EXPECT_EQ(this->contentOf("secret"), "secret");
}

// Queries

TYPED_TEST(TZSysFileTest, KindsAndSizes)
{
    using SysFile = TZSysFile<TypeParam>;
    this->make("file", "content");
    this->make("empty");
    fs::create_directory(this->pathOf("directory"));
    fs::create_directory_symlink(this->pathOf("directory"), this->pathOf("to directory"));
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
             Row{"directory", true, false, true, -2}, Row{"directory/", true, false, true, -2},
             Row{"to directory", true, false, true, -2}, Row{"to file", true, true, false, 7},
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

TYPED_TEST(TZSysFileTest, TimesAreAddedAsZTimeDoes)
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

TYPED_TEST(TZSysFileTest, TimesOfAMissingFileDoNotChange)
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

TYPED_TEST(TZSysFileTest, UnimplementedOperationsChangeNothing)
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

// Path strings

TYPED_TEST(TZSysFileTest, ParentAndNameOfAPath)
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

TEST(TZSysFileWideTest, PathsKeepTheLow8BitsOfEachUnit)
{
    const TemporaryFolder directory;
    const std::string bytes = (directory.path() / "caf\xC3\xA9").string();
    writeFile(bytes, "content");
    std::wstring wide = widened(bytes);
    wide.back() = L'\u20A9';
    EXPECT_EQ(TZSysFile<wchar_t>::sizeOf(wide.c_str()), 7);
    EXPECT_EQ(bytesOf(TZSysFile<wchar_t>::getNameOf(wide.c_str())), "caf\xC3\xA9");
    EXPECT_EQ(bytesOf(TZSysFile<wchar_t>::getParentOf(L"/\u2061/x")), "/a");
    EXPECT_EQ(bytesOf(TZSysFile<wchar_t>::getNameOf(L"/a\u012Fx")), "x"); // 0x2F is a "/"
    EXPECT_EQ(TZSysFile<wchar_t>::removeFile(wide.c_str()), 0);
    EXPECT_FALSE(fs::exists(bytes));
}

} // namespace
} // namespace ZSpace::Testing
