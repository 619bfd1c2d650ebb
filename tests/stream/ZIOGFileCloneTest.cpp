// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/stream/FileTests.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/FileFields.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

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

TEST_F(ZIOGFileTest, CloneMayHaveDescriptorZero)
{
    ASSERT_EQ(m_file.open(make("file", "content").c_str(), 2), 0);
    const auto outcome = runInChild([&] {
        ::close(STDIN_FILENO);
        const std::unique_ptr<File> clone(m_file.clone());
        return clone && clone->descriptor() == STDIN_FILENO ? 0 : 1;
    });
    EXPECT_EQ(outcome.status, 0);
}

TEST_F(ZIOGFileTest, CloneContinuesReadingAtTheSharedOffset)
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

TEST_F(ZIOGFileTest, CloneOfAFileForWritingContinuesWriting)
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

TEST_F(ZIOGFileTest, FailedCloneIsNullAndLeavesNothingOpen)
{
    ASSERT_EQ(m_file.open(make("file").c_str(), 2), 0);
    const FileFields usual = FileFields::of(m_file);
    const int next = nextDescriptor();
    {
        const DescriptorLimit limit(next); // no duplicate
        EXPECT_EQ(m_file.clone(), nullptr);
    }
    FileFields{usual.handle, true, true}.putInto(m_file); // `fdopen` fails: the descriptor is read-only
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

} // namespace
} // namespace ZSpace::Testing
