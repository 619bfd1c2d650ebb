// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Copying contents between files of all kinds.

#include "ZSpace/platform/FileCopy.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <string>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

/// A string of `size` bytes without a short period.
std::string someText(std::size_t size)
{
    std::string text(size, ' ');
    unsigned int state = 1;
    for (char& c : text) {
        state = state * 1'103'515'245U + 12'345U;
        c = static_cast<char>(state >> 24);
    }
    return text;
}

class FileCopy : public testing::Test {
protected:
    [[nodiscard]] int openFor(const char* name, int flags) const
    {
        return open((m_folder.path() / name).c_str(), flags | O_CLOEXEC, 0666);
    }
    [[nodiscard]] std::string textOf(const char* name) const { return contentOf(m_folder.path() / name); }

    TemporaryFolder m_folder;
};

TEST_F(FileCopy, CopiesEverySizeCompletely)
{
    for (const std::size_t size : {0UL, 1UL, 4096UL, 65'535UL, 65'536UL, 65'537UL, 3'000'001UL}) {
        const std::string text = someText(size);
        writeFile(m_folder.path() / "from", text);
        const int from = openFor("from", O_RDONLY);
        const int to = openFor("to", O_WRONLY | O_CREAT | O_TRUNC);
        EXPECT_EQ(Host::copyContents(from, to), 0) << size;
        EXPECT_TRUE(textOf("to") == text) << size;
        close(from);
        close(to);
    }
}

TEST_F(FileCopy, StartsAtTheCurrentPositions)
{
    writeFile(m_folder.path() / "from", "skipped, copied");
    writeFile(m_folder.path() / "to", "kept: lost");
    const int from = openFor("from", O_RDONLY);
    const int to = openFor("to", O_WRONLY);
    lseek(from, 9, SEEK_SET);
    lseek(to, 6, SEEK_SET);
    EXPECT_EQ(Host::copyContents(from, to), 0);
    EXPECT_EQ(textOf("to"), "kept: copied");
    EXPECT_EQ(lseek(to, 0, SEEK_CUR), 12);
    close(from);
    close(to);
}

TEST_F(FileCopy, ReadsAPipeToItsEnd)
{
    const std::string text = someText(300'000);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::thread writer([&] {
        for (std::size_t at = 0; at < text.size();) {
            const ssize_t written = write(ends[1], text.data() + at, text.size() - at);
            if (written <= 0)
                break;
            at += static_cast<std::size_t>(written);
        }
        close(ends[1]);
    });
    const int to = openFor("to", O_WRONLY | O_CREAT);
    EXPECT_EQ(Host::copyContents(ends[0], to), 0);
    writer.join();
    EXPECT_TRUE(textOf("to") == text);
    close(ends[0]);
    close(to);
}

TEST_F(FileCopy, WritesEverythingToAPipe)
{
    writeFile(m_folder.path() / "from", someText(300'000));
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    std::string taken;
    std::thread reader([&] {
        char block[1000];
        for (ssize_t size = 0; (size = read(ends[0], block, sizeof block)) > 0;)
            taken.append(block, static_cast<std::size_t>(size));
    });
    const int from = openFor("from", O_RDONLY);
    EXPECT_EQ(Host::copyContents(from, ends[1]), 0);
    close(ends[1]);
    reader.join();
    EXPECT_TRUE(taken == textOf("from"));
    close(ends[0]);
    close(from);
}

TEST_F(FileCopy, AppendsToAnAppendingTarget)
{
    writeFile(m_folder.path() / "from", "more");
    writeFile(m_folder.path() / "to", "some ");
    const int from = openFor("from", O_RDONLY);
    const int to = openFor("to", O_WRONLY | O_APPEND);
    EXPECT_EQ(Host::copyContents(from, to), 0);
    EXPECT_EQ(textOf("to"), "some more");
    close(from);
    close(to);
}

TEST_F(FileCopy, FailuresAreReported)
{
    writeFile(m_folder.path() / "from", "text");
    const int from = openFor("from", O_RDONLY);
    const int to = openFor("to", O_WRONLY | O_CREAT);
    EXPECT_EQ(Host::copyContents(-1, to), EBADF);
    EXPECT_EQ(Host::copyContents(from, -1), EBADF);
    lseek(from, 0, SEEK_SET);
    EXPECT_EQ(Host::copyContents(from, from), EBADF); // not writable
    EXPECT_EQ(Host::copyContents(to, to), EBADF); // not readable
    const int folder = open(m_folder.path().c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(Host::copyContents(folder, to), EISDIR);
    for (const int descriptor : {from, to, folder})
        close(descriptor);
}

} // namespace
} // namespace ZSpace::Testing
