// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Copies and queries whose system calls are interrupted, do a part of their work, or fail.

#include "ZSpace/platform/Debugger.h"
#include "ZSpace/platform/FileCopy.h"
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
    const ShortTransfers transfers(4);
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

} // namespace
} // namespace ZSpace::Testing
