// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Home, temporary and log directories, and log file names.

#include "ZSpace/system/ZSysInfoPaths.h"

#include "ZSpace/system/ZAppContext.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Widths.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <set>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace {
extern ZGStr<wchar_t> customLogDirW; // the directory that was set
}

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

/// Sets or removes an environment variable and restores it at the end of its lifetime.
class Variable {
public:
    Variable(const char* name, const char* value)
        : m_name(name)
    {
        if (const char* const before = std::getenv(name)) {
            m_before = before;
            m_wasSet = true;
        }
        value ? setenv(name, value, 1) : unsetenv(name);
    }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;
    ~Variable() { m_wasSet ? setenv(m_name, m_before.c_str(), 1) : unsetenv(m_name); }

private:
    const char* m_name;
    std::string m_before;
    bool m_wasSet = false;
};

TEST(ZSysInfoPathsTest, ConstantsHaveTheirValues)
{
    EXPECT_STREQ(Z_SYS_ENV_HOMEDIR, "HOME");
    EXPECT_STREQ(Z_SYS_ENV_TEMPDIR, "TMPDIR");
    EXPECT_STREQ(Z_SYS_ENV_PATH_SEP, "/");
    EXPECT_STREQ(Z_SYS_ENV_PATH_SEPW, L"/");
    EXPECT_STREQ(Z_SYS_ENV_PATH_SELF, "./");
    EXPECT_STREQ(Z_SYS_ENV_PATH_SELFW, L"./");
    EXPECT_STREQ(Z_SYS_ALT_HOMEDIR, L"./");
    EXPECT_STREQ(ZSysInfoPath_Paths, L"system.paths");
    EXPECT_STREQ(ZSysInfoPath_NPaths, L"System paths");
    EXPECT_STREQ(ZSysInfoPath_Paths_HomeFolder, L"system.paths.homefolder");
    EXPECT_STREQ(ZSysInfoPath_NPaths_HomeFolder, L"Home folder");
    EXPECT_STREQ(ZSysInfoPath_Paths_TempFolder, L"system.paths.tempfolder");
    EXPECT_STREQ(ZSysInfoPath_NPaths_TempFolder, L"Temp folder");
}

TEST(ZSysInfoPathsTest, HomeDirectoryEndsWithOneSeparator)
{
    const struct {
        const char* home;
        const char* directory;
    } rows[] = {{"/Users/x", "/Users/x/"}, {"/Users/x/", "/Users/x/"}, {"", "./"}, {nullptr, "./"},
        {"/", "/"}, {"/h\xE9", "/h\xE9/"}};
    for (const auto& row : rows) {
        const Variable home("HOME", row.home);
        EXPECT_STREQ(ZSysInfoPaths::getHomeFolderA(), row.directory);
        EXPECT_TRUE(ZSysInfoPaths::getHomeFolderW() == ZGStr<wchar_t>(row.directory));
        EXPECT_TRUE(ZSysInfoPaths::getHomeFolder() == ZGStr<wchar_t>(row.directory));
    }
}

TEST(ZSysInfoPathsTest, TemporaryDirectoryEndsWithOneSeparator)
{
    const struct {
        const char* variable;
        const char* directory;
    } rows[] = {{"/t", "/t/"}, {"/t/", "/t/"}, {"", "/tmp/"}, {nullptr, "/tmp/"}};
    for (const auto& row : rows) {
        const Variable temporary("TMPDIR", row.variable);
        EXPECT_STREQ(ZSysInfoPaths::getTempFolderA(), row.directory);
        EXPECT_TRUE(ZSysInfoPaths::getTempFolderW() == ZGStr<wchar_t>(row.directory));
        EXPECT_TRUE(ZSysInfoPaths::getTempFolder() == ZGStr<wchar_t>(row.directory));
    }
}

class LogDirectoryTest : public testing::Test {
protected:
    void TearDown() override { ZSysInfoPaths::setUserLogDirW(nullptr); }

    static std::string current()
    {
        return static_cast<const char*>(ZGStr<char>(ZSysInfoPaths::getUserLogDirW()));
    }

    TemporaryFolder m_directory;
    Variable m_home{"HOME", m_directory.path().c_str()};
};

TEST_F(LogDirectoryTest, IsCdLogsInTheHomeDirectoryAndCreatedIfMissing)
{
    const fs::path expected = m_directory.path() / "CdLogs";
    EXPECT_EQ(current(), expected.string() + "/");
    EXPECT_TRUE(fs::is_directory(expected));
    fs::remove(expected);
    EXPECT_EQ(current(), expected.string() + "/"); // each call checks again
    EXPECT_TRUE(fs::is_directory(expected));
}

mode_t modeOf(const fs::path& path)
{
    struct stat status { };
    stat(path.c_str(), &status);
    return status.st_mode & 07777;
}

TEST_F(LogDirectoryTest, MissingDirectoryIsCreatedOpenToAllWhateverTheMask)
{
    const fs::path directory = m_directory.path() / "logs";
    const mode_t before = umask(077);
    ZSysInfoPaths::setUserLogDirW(widened(directory).c_str());
    umask(before);
    EXPECT_EQ(modeOf(directory), 0777U);
    EXPECT_EQ(current(), directory.string() + "/");
}

TEST_F(LogDirectoryTest, ExistingDirectoryKeepsItsMode)
{
    const fs::path directory = m_directory.path() / "logs";
    fs::create_directory(directory);
    fs::permissions(directory, fs::perms::owner_all);
    ZSysInfoPaths::setUserLogDirW(widened(directory).c_str());
    EXPECT_EQ(modeOf(directory), 0700U);
}

TEST_F(LogDirectoryTest, FileThatAppearsMeanwhileKeepsItsMode)
{
    if (!SystemCallFault::isPossible())
        GTEST_SKIP() << "the calls of this host cannot be interposed";
    const fs::path file = m_directory.path() / "file";
    writeFile(file, "secret");
    fs::permissions(file, fs::perms(0600));
    fs::create_symlink(file, m_directory.path() / "logs");
    const SystemCallFault missing(SystemCall::Status, ENOENT); // at the time of the check
    ZSysInfoPaths::setUserLogDirW(widened(m_directory.path() / "logs").c_str());
    EXPECT_EQ(missing.count(), 1);
    EXPECT_EQ(modeOf(file), 0600U);
}

TEST_F(LogDirectoryTest, TrailingSeparatorIsNotDoubled)
{
    const std::string directory = (m_directory.path() / "logs").string() + "/";
    ZSysInfoPaths::setUserLogDirW(ZGStr<wchar_t>(directory.c_str()));
    EXPECT_EQ(current(), directory);
}

TEST_F(LogDirectoryTest, NullAndEmptyStringsRestoreTheDefault)
{
    const std::string usual = (m_directory.path() / "CdLogs").string() + "/";
    for (const wchar_t* nothing : {L"", static_cast<const wchar_t*>(nullptr)}) {
        ZSysInfoPaths::setUserLogDirW(widened(m_directory.path() / "logs").c_str());
        EXPECT_NE(current(), usual);
        ZSysInfoPaths::setUserLogDirW(nothing);
        EXPECT_EQ(current(), usual);
    }
}

TEST_F(LogDirectoryTest, ItsOwnStringIsEmptiedBeforeItIsRead)
{
    ZSysInfoPaths::setUserLogDirW(widened(m_directory.path() / "logs").c_str());
    ZSysInfoPaths::setUserLogDirW(customLogDirW);
    EXPECT_EQ(current(), (m_directory.path() / "CdLogs").string() + "/");
}

TEST_F(LogDirectoryTest, DirectoryThatCannotBeCreatedIsUsedAnyway)
{
    const fs::path directory = m_directory.path() / "no" / "logs";
    ZSysInfoPaths::setUserLogDirW(widened(directory).c_str());
    EXPECT_EQ(current(), directory.string() + "/");
    EXPECT_FALSE(fs::exists(directory));
}

TEST_F(LogDirectoryTest, LogFileNameConsistsOfPrefixTimeAndExtension)
{
    const fs::path directory = m_directory.path() / "logs";
    ZSysInfoPaths::setUserLogDirW(widened(directory).c_str());
    const ZGStr<char> name(ZSysInfoPaths::getNewLogFileNameW("trace_", ".log"));
    EXPECT_THAT(static_cast<const char*>(name),
        testing::MatchesRegex(directory.string()
            + "/trace_[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}-[0-9]{2}-[0-9]{2}\\.[0-9]{3}\\.log"));
    EXPECT_FALSE(fs::exists(static_cast<const char*>(name)));
    EXPECT_THAT(static_cast<const char*>(ZGStr<char>(ZSysInfoPaths::getNewLogFileNameW(nullptr, nullptr))),
        testing::MatchesRegex(directory.string() + "/[-0-9T.]+"));
}

TEST_F(LogDirectoryTest, LogFileNamesAreInUtc)
{
    const Outcome outcome = runInChild([] {
        setenv("TZ", "XXX-14", 1);
        tzset();
        const time_t now = time(nullptr);
        char hour[32];
        strftime(hour, sizeof hour, "x%Y-%m-%dT%H-", gmtime(&now));
        const ZGStr<char> name(ZSysInfoPaths::getNewLogFileNameW("x", ""));
        return name.indexOf(hour) >= 0 || now % 3600 > 3598 ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST(ZSysInfoPathsProviderTest, ReturnsItsKeys)
{
    const ZSysInfoPaths provider;
    EXPECT_EQ(provider.Key(), ZSysInfoPath_Paths);
    EXPECT_EQ(provider.Name(), ZSysInfoPath_NPaths);
    ZSysInfoKeyMap keys;
    provider.getKeys(keys);
    ASSERT_EQ(keys.Count(), 3);
    EXPECT_EQ(keys[0].first, ZSysInfoPath_Paths);
    EXPECT_EQ(keys[0].second, ZSysInfoPath_NPaths);
    EXPECT_EQ(keys[1].first, ZSysInfoPath_Paths_HomeFolder);
    EXPECT_EQ(keys[1].second, ZSysInfoPath_NPaths_HomeFolder);
    EXPECT_EQ(keys[2].first, ZSysInfoPath_Paths_TempFolder);
    EXPECT_EQ(keys[2].second, ZSysInfoPath_NPaths_TempFolder);
}

TEST(ZSysInfoPathsProviderTest, ComparesKeysAsStrings)
{
    const Variable home("HOME", "/Users/x");
    const Variable temporary("TMPDIR", "/t");
    ZSysInfoPaths provider;
    provider.refreshInfo();
    provider.releaseInfo();
    const std::wstring key = L"system.paths.homefolder"; // at a different address
    ZRef<ZSysInfoObject> object;
    ASSERT_EQ(provider.getObject(key.c_str(), object), 0U);
    EXPECT_STREQ(object->Key(), L"system.paths.homefolder");
    EXPECT_STREQ(object->Name(), L"Home folder");
    EXPECT_EQ(static_cast<unsigned int>(object->Value().Type()), 0x200000U);
    EXPECT_TRUE(object->Value().toCString() == "/Users/x/");

    ASSERT_EQ(provider.getObject(ZSysInfoPath_Paths_TempFolder, object), 0U);
    EXPECT_STREQ(object->Name(), L"Temp folder");
    EXPECT_TRUE(object->Value().toCString() == "/t/");

    ASSERT_EQ(provider.getObject(L"system.paths", object), 0U);
    EXPECT_EQ(object->ObjectType(), 5U);
    EXPECT_STREQ(object->Name(), L"System paths");
    const ZSysInfoKeyMap members = object->KeyMap();
    ASSERT_EQ(members.Count(), 2);
    EXPECT_EQ(members[0].first, ZSysInfoPath_Paths_HomeFolder);
    EXPECT_EQ(members[1].second, ZSysInfoPath_NPaths_TempFolder);
}

TEST(ZSysInfoPathsProviderTest, UnknownKeyDoesNotChangeTheHandle)
{
    ZSysInfoPaths provider;
    ZRef<ZSysInfoObject> object;
    ASSERT_EQ(provider.getObject(ZSysInfoPath_Paths, object), 0U);
    ZSysInfoObject* const before = object.get();
    for (const wchar_t* key : {L"system.paths.other", L"", L"system.path", L"system.paths.homefolder2",
             static_cast<const wchar_t*>(nullptr)}) {
        EXPECT_EQ(provider.getObject(key, object), 0xFFFFFFFFU);
        EXPECT_EQ(object.get(), before);
    }
    ZSysInfo info;
    info.addProvider(new ZSysInfoPaths);
    EXPECT_FALSE(info.getObject(L"system.paths.other"));
    EXPECT_TRUE(info.getObject(L"system.paths.tempfolder"));
}

TEST(ZSysInfoPathsTest, AFailedAllocationIsThrown)
{
    const TemporaryFolder folder;
    const std::string home = (folder.path() / std::string(40, 'h')).string();
    const Variable homeVariable("HOME", home.c_str());
    const Variable tempVariable("TMPDIR", home.c_str());
    fs::create_directories(home);
    EXPECT_GT(failEachAllocation([] { (void)ZSysInfoPaths::getHomeFolderA(); }), 0);
    EXPECT_GT(failEachAllocation([] { (void)ZSysInfoPaths::getHomeFolderW(); }), 0);
    EXPECT_GT(failEachAllocation([] { (void)ZSysInfoPaths::getTempFolderA(); }), 0);
    EXPECT_GT(failEachAllocation([] { (void)ZSysInfoPaths::getUserLogDirW(); }), 0);
    EXPECT_GT(failEachAllocation([] { (void)ZSysInfoPaths::getNewLogFileNameW("prefix_", ".txt"); }), 0);
    EXPECT_GT(failEachAllocation([] { (void)ZAppContext::getEnv("HOME"); }), 0);
}

} // namespace
} // namespace ZSpace::Testing
