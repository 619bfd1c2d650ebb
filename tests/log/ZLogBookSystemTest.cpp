// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The book of the system log, with a socket of the test instead of journald's.

#include "ZSpace/log/ZLogBookSystem.h"

#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
