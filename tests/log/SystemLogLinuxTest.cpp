// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The front end's lines in the system log, read from the socket of the log's daemon.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZLogBookSystem.h"
#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/platform/Foundation.h"
#include "tests/support/Kernel.h"
#include "tests/support/PrivateRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ContainsRegex;
using testing::EndsWith;
using testing::HasSubstr;
using testing::MatchesRegex;

/// A private root whose system log socket the test reads.
class SystemLog : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateRoot::isPossible())
            GTEST_SKIP() << "this user may not make mount namespaces here";
        m_socket = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const std::string path = (m_root.path() / "dev/log").string();
        ASSERT_LT(path.size(), sizeof address.sun_path);
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        ASSERT_EQ(bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    void TearDown() override { close(m_socket); }

    /// The messages sent so far, each followed by a line feed.
    std::string messages() const
    {
        std::string all;
        std::vector<char> buffer(65536);
        for (ssize_t n = 0; (n = recv(m_socket, buffer.data(), buffer.size(), 0)) > 0;)
            all += std::string(buffer.data(), static_cast<std::size_t>(n)) + "\n";
        return all;
    }

    /// Priority of a message of the user facility.
    static std::string priority(int level) { return std::string("<") + std::to_string(8 + level) + '>'; }

    PrivateRoot m_root;
    int m_socket = -1;
};

TEST_F(SystemLog, IsOpenedBySwitch1AndTakesLinesAtNoticeLevelUnderTheTag)
{
    const Outcome outcome = m_root.run([] {
        CNSInitLog(0, 1, "MyTag", nullptr);
        CNSLog("one %d", 1);
        OCNSLog(NS::String("two").native());
        CNSLogMsg("100 %s");
        return 0;
    });
    const std::string sent = messages();
    EXPECT_THAT(sent, ContainsRegex(priority(5) + ".* MyTag: one 1\n"));
    EXPECT_THAT(sent, ContainsRegex(priority(5) + ".* MyTag: two\n"));
    EXPECT_THAT(sent, ContainsRegex(priority(5) + ".* MyTag: 100 %s\n"));
    EXPECT_EQ(outcome.standardError, "");
}

TEST_F(SystemLog, StaysClosedWithAnyOtherSwitch)
{
    for (const int sysLogSwitch : {0, 2, -1, 257}) {
        const Outcome outcome = m_root.run([=] {
            CNSInitLog(0, sysLogSwitch, "MyTag", nullptr);
            CNSLog("line");
            return 0;
        });
        EXPECT_EQ(messages(), "");
        EXPECT_THAT(outcome.standardError, EndsWith("] line\n"));
    }
}

TEST_F(SystemLog, TakesEachLevelAndClampsOthers)
{
    for (int level = -2; level <= 9; ++level) {
        m_root.run([=] {
            CNSInitLog(0, 1, "MyTag", nullptr);
            CNSSysLog(level, "level %d", level);
            return 0;
        });
        EXPECT_THAT(messages(),
            ContainsRegex(
                priority(std::clamp(level, 0, 7)) + ".* MyTag: level " + std::to_string(level) + "\n"));
    }
}

TEST_F(SystemLog, ANullTagSelectsTheDefaultSender)
{
    m_root.run([] {
        CNSInitLog(0, 1, nullptr, nullptr);
        CNSLog("line");
        return 0;
    });
    EXPECT_THAT(messages(), ContainsRegex(priority(5) + ".* front_end_tests: line\n"));
}

TEST_F(SystemLog, KeepsACopyOfTheTag)
{
    m_root.run([] {
        std::string tag = "MyTag";
        CNSInitLog(0, 1, tag.c_str(), nullptr);
        tag.assign("other");
        CNSLog("line");
        return 0;
    });
    EXPECT_THAT(messages(), HasSubstr(" MyTag: line\n"));
}

TEST_F(SystemLog, CopiesToStandardErrorUnderADebuggerOnly)
{
    const auto work = [] {
        CNSInitLog(0, 1, "MyTag", nullptr);
        CNSLog("line");
        return 0;
    };
    EXPECT_EQ(m_root.run(work).standardError, "");
    const Outcome traced = m_root.run([&] {
        const Outcome inner = runTraced(work);
        std::fputs(inner.standardError.c_str(), stderr);
        return inner.status;
    });
    EXPECT_EQ(traced.standardError, "MyTag: line\n");
}

TEST_F(SystemLog, TakesTheRecordsOfABookWithoutAJournal)
{
    const Outcome outcome = m_root.run([] {
        for (const char* journal : {"/no/such/socket", static_cast<const char*>(nullptr)}) {
            ZLogBookSystem book("MyTool", journal);
            book.add(ZLogRecord() << std::string(500, 'x').c_str()); // leaves its characters behind
            book.add(ZLogRecord() << ZLogLevel::Error << "short" << 5);
        }
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    const std::string sent = messages();
    EXPECT_THAT(sent, ContainsRegex(priority(5) + ".* MyTool: x{500}\n"));
    EXPECT_THAT(sent, ContainsRegex(priority(3) + ".* MyTool: short 5\n.* MyTool: x{500}\n"));
    EXPECT_THAT(sent, EndsWith(" MyTool: short 5\n"));
}

TEST_F(SystemLog, TakesOnlyTheRecordsThatTheJournalDoesNotTake)
{
    const Outcome outcome = m_root.run([] {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, "/tmp/journal", sizeof "/tmp/journal");
        const int journal = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        if (bind(journal, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
            return 1;
        ZLogBookSystem book("MyTool", address.sun_path);
        book.add(ZLogRecord() << "for the journal");
        close(journal);
        book.add(ZLogRecord() << "for the system log");
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(messages(), MatchesRegex(priority(5) + "[^\n]* MyTool: for the system log\n"));
}

} // namespace
} // namespace ZSpace::Testing
