// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Report files are opened safely in directories that other users can write to.

#include "ZSpace/platform/ReportFile.h"

#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

mode_t modeOf(const fs::path& path)
{
    struct stat status { };
    return lstat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

class ReportFile : public testing::Test {
protected:
    ReportFile()
        : m_directory(Host::openReportDirectory(m_folder.path().c_str()))
    {
    }
    ~ReportFile() override { close(m_directory); }

    [[nodiscard]] fs::path pathOf(const char* name) const { return m_folder.path() / name; }
    [[nodiscard]] int openReport() const { return Host::openReportFile(m_directory, "report.txt"); }

    TemporaryFolder m_folder;
    int m_directory;
};

TEST_F(ReportFile, AMissingFileIsCreatedWithTheUsualMode)
{
    const Outcome outcome = runInChild([&] {
        umask(027);
        return openReport() >= 0 ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(modeOf(pathOf("report.txt")), 0640U);
}

TEST_F(ReportFile, AnExistingFileOfTheUserIsAppendedTo)
{
    for (const char* part : {"first ", "second"}) {
        const int file = openReport();
        ASSERT_GE(file, 0);
        lseek(file, 0, SEEK_SET);
        EXPECT_EQ(write(file, part, 6), 6);
        char first = 0;
        EXPECT_EQ(pread(file, &first, 1, 0), 1); // readable, too
        EXPECT_EQ(first, 'f');
        close(file);
    }
    EXPECT_EQ(contentOf(pathOf("report.txt")), "first second");
}

TEST_F(ReportFile, TheDescriptorIsNotInheritedAndBlocks)
{
    for (int round = 0; round < 2; ++round) { // created, then found
        const int file = openReport();
        EXPECT_FALSE(isInherited(file));
        EXPECT_EQ(fcntl(file, F_GETFL) & (O_NONBLOCK | O_APPEND | O_ACCMODE), O_APPEND | O_RDWR);
        close(file);
    }
    EXPECT_FALSE(isInherited(m_directory));
}

TEST_F(ReportFile, NoSymbolicLinkIsFollowed)
{
    writeFile(pathOf("target"), "mine");
    fs::create_symlink("target", pathOf("report.txt"));
    EXPECT_EQ(openReport(), -ELOOP);
    EXPECT_EQ(contentOf(pathOf("target")), "mine");
    fs::remove(pathOf("target"));
    EXPECT_EQ(openReport(), -ELOOP);
    EXPECT_FALSE(fs::exists(pathOf("target")));
}

TEST_F(ReportFile, AFileWithASecondHardLinkIsRefused)
{
    writeFile(pathOf("target"), "mine");
    fs::create_hard_link(pathOf("target"), pathOf("report.txt"));
    EXPECT_EQ(openReport(), -EPERM);
    EXPECT_EQ(contentOf(pathOf("target")), "mine");
    fs::remove(pathOf("target"));
    EXPECT_GE(openReport(), 0);
}

TEST_F(ReportFile, OnlyRegularFilesAreOpenedAndNothingBlocks)
{
    ASSERT_EQ(mkfifo(pathOf("report.txt").c_str(), 0666), 0);
    EXPECT_EQ(openReport(), -EPERM); // a plain open would wait for a reader
    fs::remove(pathOf("report.txt"));

    fs::create_directory(pathOf("report.txt"));
    EXPECT_EQ(openReport(), -EISDIR);
    fs::remove(pathOf("report.txt"));

    const int endpoint = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = pathOf("report.txt").string();
    ASSERT_LT(path.size(), sizeof address.sun_path);
    path.copy(address.sun_path, path.size());
    ASSERT_EQ(bind(endpoint, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_LT(openReport(), 0);
    close(endpoint);
}

TEST_F(ReportFile, AFileOfAnotherUserIsRefused)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make files of other users";
    writeFile(pathOf("report.txt"), "theirs");
    ASSERT_EQ(chown(pathOf("report.txt").c_str(), 65'534, 65'534), 0);
    EXPECT_EQ(openReport(), -EPERM);
    EXPECT_EQ(contentOf(pathOf("report.txt")), "theirs");
}

TEST_F(ReportFile, ARefusedFileLeavesNoDescriptorOpen)
{
    ASSERT_EQ(mkfifo(pathOf("report.txt").c_str(), 0666), 0);
    const int next = nextDescriptor();
    EXPECT_LT(openReport(), 0);
    EXPECT_EQ(nextDescriptor(), next);
}

TEST_F(ReportFile, AMissingDirectoryIsReported)
{
    EXPECT_EQ(Host::openReportDirectory(pathOf("none").c_str()), -ENOENT);
    writeFile(pathOf("file"), "");
    EXPECT_EQ(Host::openReportDirectory(pathOf("file").c_str()), -ENOTDIR);
    fs::create_directory(pathOf("gone"));
    const int directory = Host::openReportDirectory(pathOf("gone").c_str());
    fs::remove(pathOf("gone"));
    EXPECT_EQ(Host::openReportFile(directory, "report.txt"), -ENOENT);
    close(directory);
}

TEST_F(ReportFile, TheDirectoryMayBeReachedThroughALink)
{
    fs::create_directory(pathOf("real"));
    fs::create_directory_symlink("real", pathOf("link"));
    const int directory = Host::openReportDirectory(pathOf("link").c_str());
    const int file = Host::openReportFile(directory, "report.txt");
    EXPECT_GE(file, 0);
    EXPECT_TRUE(fs::exists(pathOf("real") / "report.txt"));
    close(file);
    close(directory);
}

TEST(ReportDirectory, ANewOneIsOpenToAllRegardlessOfTheUmask)
{
    const TemporaryFolder folder;
    const fs::path path = folder.path() / "reports";
    const int next = nextDescriptor();
    const Outcome outcome = runInChild([&] {
        umask(077);
        return Host::makeDirectoryOpenToAll(path.c_str());
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(modeOf(path), 0777U);
    EXPECT_EQ(nextDescriptor(), next);
}

TEST(ReportDirectory, AnExistingPathKeepsItsMode)
{
    const TemporaryFolder folder;
    const fs::path path = folder.path() / "reports";
    const fs::path secret = folder.path() / "secret";
    writeFile(secret, "");
    chmod(secret.c_str(), 0600);
    fs::create_symlink(secret, path);
    EXPECT_EQ(Host::makeDirectoryOpenToAll(path.c_str()), EEXIST);
    EXPECT_EQ(modeOf(secret), 0600U);
    fs::remove(path);
    mkdir(path.c_str(), 0700);
    EXPECT_EQ(Host::makeDirectoryOpenToAll(path.c_str()), EEXIST);
    EXPECT_EQ(modeOf(path), 0700U);
}

TEST(ReportDirectory, AMissingParentIsReported)
{
    const TemporaryFolder folder;
    EXPECT_EQ(Host::makeDirectoryOpenToAll((folder.path() / "none" / "reports").c_str()), ENOENT);
}

TEST_F(ReportFile, Descriptor0IsLikeAnyOther)
{
    const Outcome outcome = runInChild([&] {
        close(STDIN_FILENO);
        errno = EINTR; // of an earlier call
        const int directory = Host::openReportDirectory(m_folder.path().c_str());
        if (directory != STDIN_FILENO)
            return 1;
        close(directory);
        errno = EINTR;
        if (openReport() != STDIN_FILENO) // a new file
            return 2;
        close(STDIN_FILENO);
        errno = EINTR;
        if (openReport() != STDIN_FILENO) // an existing one
            return 3;
        close(STDIN_FILENO);
        errno = EINTR;
        if (Host::makeDirectoryOpenToAll(pathOf("new").c_str()) != 0)
            return 4;
        return isOpen(STDIN_FILENO) ? 5 : 0;
    });
    EXPECT_EQ(outcome.status, 0);
}

} // namespace
} // namespace ZSpace::Testing
