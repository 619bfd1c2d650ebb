// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Copies, report files and queries whose system calls are interrupted, do a part of their work, or fail.

#include "ZSpace/platform/Debugger.h"
#include "ZSpace/platform/FileCopy.h"
#include "ZSpace/platform/ReportFile.h"
#include "tests/support/Descriptors.h"
#include "tests/support/SystemCallFaults.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

class FileCopyFaults : public testing::Test {
protected:
    void SetUp() override
    {
        writeFile(m_folder.path() / "from", m_text);
        m_from = open((m_folder.path() / "from").c_str(), O_RDONLY | O_CLOEXEC);
        m_to = open((m_folder.path() / "to").c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    }
    void TearDown() override
    {
        close(m_from);
        close(m_to);
    }
    [[nodiscard]] std::string copied() const { return contentOf(m_folder.path() / "to"); }

    const std::string m_text = "a text of some length";
    TemporaryFolder m_folder;
    int m_from = -1;
    int m_to = -1;
};

TEST_F(FileCopyFaults, InterruptedCallsAreRepeated)
{
    const SystemCallFault refused(SystemCall::CopyRange, EXDEV, SystemCallFault::Kind::Lasting);
    const SystemCallFault read(SystemCall::Read, EINTR);
    const SystemCallFault write(SystemCall::Write, EINTR);
    EXPECT_EQ(Host::copyContents(m_from, m_to), 0);
    EXPECT_EQ(copied(), m_text);
    EXPECT_EQ(read.count() + write.count(), 2);
}

TEST_F(FileCopyFaults, PartialCallsAreContinued)
{
    const SystemCallFault refused(SystemCall::CopyRange, EXDEV, SystemCallFault::Kind::Lasting);
    {
        const ShortTransfers transfers(4);
        EXPECT_EQ(Host::copyContents(m_from, m_to), 0);
        EXPECT_EQ(copied(), m_text);
    }
    lseek(m_from, 0, SEEK_SET);
    lseek(m_to, 0, SEEK_SET);
    ASSERT_EQ(ftruncate(m_to, 0), 0);
    const ShortTransfers transfers(100, 4); // what is read at once is written in pieces
    EXPECT_EQ(Host::copyContents(m_from, m_to), 0);
    EXPECT_EQ(copied(), m_text);
}

TEST_F(FileCopyFaults, AFailureIsReturned)
{
    const SystemCallFault refused(SystemCall::CopyRange, EXDEV, SystemCallFault::Kind::Lasting);
    {
        const SystemCallFault write(SystemCall::Write, ENOSPC);
        EXPECT_EQ(Host::copyContents(m_from, m_to), ENOSPC);
    }
    const SystemCallFault read(SystemCall::Read, EIO);
    EXPECT_EQ(Host::copyContents(m_from, m_to), EIO);
}

TEST(DebuggerFaults, WhereItCannotBeReadNoneIsAttached)
{
    const SystemCallFault read(SystemCall::Read, EIO);
    EXPECT_FALSE(Host::isDebuggerAttached());
    EXPECT_EQ(read.count(), 1);
}

class ReportFileFaults : public testing::Test {
protected:
    void SetUp() override { writeFile(m_folder.path() / "report.txt", "text"); }

    TemporaryFolder m_folder;
    const int m_directory = Host::openReportDirectory(m_folder.path().c_str());
    const int m_next = nextDescriptor();
};

TEST_F(ReportFileFaults, AFailedQueryIsReturnedAndClosesTheFile)
{
    for (const SystemCall call : {SystemCall::StatusOfDescriptor, SystemCall::Control}) {
        const SystemCallFault fault(call, EIO);
        EXPECT_EQ(Host::openReportFile(m_directory, "report.txt"), -EIO);
        EXPECT_EQ(fault.count(), 1);
    }
    EXPECT_EQ(nextDescriptor(), m_next);
}

TEST_F(ReportFileFaults, AFailedQueryOfANewDirectoryIsReturned)
{
    const SystemCallFault fault(SystemCall::StatusOfDescriptor, EIO);
    EXPECT_EQ(Host::makeDirectoryOpenToAll((m_folder.path() / "new").c_str()), EIO);
    EXPECT_EQ(nextDescriptor(), m_next);
}

} // namespace
} // namespace ZSpace::Testing
