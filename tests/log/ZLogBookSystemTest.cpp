// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The book of the system log, with a socket of the test instead of journald's.

#include "ZSpace/log/ZLogBookSystem.h"

#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <fcntl.h>
#include <map>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

class ZLogBookSystemTest : public testing::Test {
protected:
    void SetUp() override
    {
        m_socket = socket(AF_UNIX, SOCK_DGRAM, 0);
        fcntl(m_socket, F_SETFL, O_NONBLOCK);
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        ASSERT_LT(m_path.size(), sizeof address.sun_path);
        m_path.copy(address.sun_path, sizeof address.sun_path - 1);
        ASSERT_EQ(bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    void TearDown() override { close(m_socket); }

    /// The fields of the next datagram; none if there is no datagram.
    std::map<std::string, std::string> receive() const
    {
        std::vector<char> buffer(65536);
        const ssize_t size = recv(m_socket, buffer.data(), buffer.size(), 0);
        const std::string datagram(buffer.data(), size > 0 ? static_cast<std::size_t>(size) : 0);
        std::map<std::string, std::string> fields;
        for (std::size_t at = 0; at < datagram.size();) {
            const std::size_t end = datagram.find('\n', at);
            std::uint64_t length = 0;
            for (std::size_t i = 8; i > 0; --i)
                length = length << 8 | static_cast<unsigned char>(datagram.at(end + i));
            fields[datagram.substr(at, end - at)] = datagram.substr(end + 9, length);
            EXPECT_EQ(datagram.at(end + 9 + length), '\n');
            at = end + 10 + length;
        }
        return fields;
    }

    TemporaryFolder m_folder;
    std::string m_path = (m_folder.path() / "journal").string();
    int m_socket = -1;
};

TEST_F(ZLogBookSystemTest, SendsStructuredFieldsToTheJournal)
{
    ZLogBookSystem book("mytool", m_path.c_str());
    book.add(ZLogRecord() << ZLogLevel::Error << "cannot open\nit" << 5 << ZGStr<char>("x"));
    const auto fields = receive();
    EXPECT_EQ(fields.at("MESSAGE"), "cannot open\nit 5 x");
    EXPECT_EQ(fields.at("PRIORITY"), "3");
    EXPECT_EQ(fields.at("SYSLOG_IDENTIFIER"), "mytool");
    EXPECT_EQ(fields.at("TID"), std::to_string(Host::threadNumber()));
    EXPECT_EQ(fields.size(), 4U);
}

TEST_F(ZLogBookSystemTest, EachLevelHasItsPriority)
{
    ZLogBookSystem book(nullptr, m_path.c_str());
    const ZLogLevel levels[]{ZLogLevel::Debug, ZLogLevel::Info, ZLogLevel::Notice, ZLogLevel::Warning,
        ZLogLevel::Error, ZLogLevel::Critical};
    int priority = 7;
    for (const ZLogLevel level : levels) {
        book.add(ZLogRecord() << level << "text");
        EXPECT_EQ(receive().at("PRIORITY"), std::to_string(priority--));
    }
    book.add(ZLogRecord() << "no level");
    const auto fields = receive();
    EXPECT_EQ(fields.at("PRIORITY"), "5");
    EXPECT_EQ(fields.at("MESSAGE"), "no level");
    EXPECT_EQ(fields.count("SYSLOG_IDENTIFIER"), 0U);
    book.add(ZLogRecord());
    EXPECT_EQ(receive().at("MESSAGE"), "");
}

TEST_F(ZLogBookSystemTest, ALongMessageArrivesWhole)
{
    ZLogBookSystem book(nullptr, m_path.c_str());
    for (const std::size_t length : {255U, 256U, 60'000U}) {
        const std::string text(length, 'x');
        book.add(ZLogRecord() << text.c_str());
        EXPECT_EQ(receive().at("MESSAGE"), text);
    }
}

TEST_F(ZLogBookSystemTest, Descriptor0IsLikeAnyOther)
{
    const Outcome outcome = runInChild([this] {
        close(STDIN_FILENO);
        {
            ZLogBookSystem book(nullptr, m_path.c_str());
            if (!isOpen(STDIN_FILENO))
                return 1; // the connection did not get the number
            book.add(ZLogRecord() << "text");
        }
        return isOpen(STDIN_FILENO) ? 2 : 0;
    });
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(receive()["MESSAGE"], "text");
}

TEST_F(ZLogBookSystemTest, ItsConnectionIsNotInherited)
{
    const int next = nextDescriptor();
    {
        const ZLogBookSystem book(nullptr, m_path.c_str());
        ASSERT_TRUE(isOpen(next));
        EXPECT_FALSE(isInherited(next));
    }
    EXPECT_FALSE(isOpen(next));
}

TEST_F(ZLogBookSystemTest, WithoutAJournalItHasNoDescriptor)
{
    for (const char* path : {"/no/such/socket", static_cast<const char*>(nullptr)}) {
        const Outcome outcome = runInChild([path] {
            dup2(open("/dev/null", O_RDWR), STDIN_FILENO);
            const int next = nextDescriptor();
            {
                const ZLogBookSystem book(nullptr, path);
                if (nextDescriptor() != next)
                    return 1;
            }
            return isOpen(STDIN_FILENO) ? 0 : 2;
        });
        EXPECT_TRUE(outcome.hasExited);
        EXPECT_EQ(outcome.status, 0);
    }
}

TEST_F(ZLogBookSystemTest, APathThatLeavesNoPlaceForItsTerminatorIsRefused)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    constexpr std::size_t length = sizeof address.sun_path;
    std::string path = (m_folder.path() / "x").string();
    ASSERT_LT(path.size(), length);
    path.resize(length, 'x');
    path.copy(address.sun_path, length);
    close(m_socket);
    m_socket = socket(AF_UNIX, SOCK_DGRAM, 0);
    fcntl(m_socket, F_SETFL, O_NONBLOCK);
    if (bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        GTEST_SKIP() << "the kernel refuses such a path as well";
    ZLogBookSystem(nullptr, path.c_str()).add(ZLogRecord() << ZLogLevel::Debug << "not sent there");
    EXPECT_TRUE(receive().empty());
}

TEST_F(ZLogBookSystemTest, HasNoSessionLog)
{
    ZGStr<wchar_t> out(L"kept");
    EXPECT_FALSE(ZLogBookSystem(nullptr, m_path.c_str()).getSessionTransferLog(out));
    EXPECT_TRUE(out == L"kept");
}

TEST_F(ZLogBookSystemTest, AJournalThatDisappearsIsNotAFailure)
{
    ZLogBookSystem book("mytool", m_path.c_str());
    close(m_socket);
    book.add(ZLogRecord() << ZLogLevel::Debug << "goes to the system log");
    ZLogBookSystem(nullptr, "/no/such/socket").add(ZLogRecord() << ZLogLevel::Debug << "so does this");
    m_socket = -1;
}

TEST_F(ZLogBookSystemTest, KeepsTheTrailOfLastErrors)
{
    ZLogBookSystem book("mytool", m_path.c_str());
    book.setLastError(7, "caller", "callee", -1, nullptr);
    EXPECT_EQ(receive().at("MESSAGE"), "SetLastError(7): [caller] has invoked [callee] which returned: -1");
    EXPECT_TRUE(book.hasLastError(7, pthread_t{}));
}

} // namespace
} // namespace ZSpace::Testing
