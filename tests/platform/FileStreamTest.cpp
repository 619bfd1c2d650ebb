// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Streams with close-on-exec descriptors.

#include "ZSpace/platform/FileStream.h"

#include "tests/support/Descriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <string>

namespace ZSpace::Testing {
namespace {

TEST(FileStream, EveryModeOpensAsFopenDoesAndIsNotInherited)
{
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "file").string();
    for (const char* mode : {"w", "r", "a", "w+", "r+", "a+", "wb", "rb", "ab", "wb+", "rb+", "ab+", "w+b"}) {
        writeFile(path, "text");
        std::FILE* const stream = Host::openFileStream(path.c_str(), mode);
        ASSERT_TRUE(stream) << mode;
        EXPECT_FALSE(isInherited(fileno(stream))) << mode;
        const bool isWritable = *mode != 'r' || std::string(mode).find('+') != std::string::npos;
        EXPECT_EQ(std::fputs("!", stream) >= 0 && std::fflush(stream) == 0, isWritable) << mode;
        std::fclose(stream);
        const std::string expected = *mode == 'w' ? "!"
            : *mode == 'a'                        ? "text!"
            : isWritable                          ? "!ext"
                                                  : "text";
        EXPECT_EQ(contentOf(path), expected) << mode;
    }
}

TEST(FileStream, AStreamForReadingAndAppendingStartsAtTheBeginning)
{
    const TemporaryFolder folder;
    const std::string path = (folder.path() / "file").string();
    writeFile(path, "text");
    std::FILE* const stream = Host::openFileStream(path.c_str(), "a+");
    ASSERT_TRUE(stream);
    EXPECT_EQ(std::ftell(stream), 0);
    EXPECT_EQ(std::fgetc(stream), 't');
    std::fclose(stream);
}

TEST(FileStream, AFailureLeavesItsErrorNumber)
{
    const TemporaryFolder folder;
    errno = 0;
    EXPECT_EQ(Host::openFileStream((folder.path() / "none" / "file").c_str(), "w"), nullptr);
    EXPECT_EQ(errno, ENOENT);
}

} // namespace
} // namespace ZSpace::Testing
