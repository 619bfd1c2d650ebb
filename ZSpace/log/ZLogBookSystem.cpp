// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookSystem.h"

#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/log/detail/LogLine.h"
#include "ZSpace/log/detail/WholeWrite.h"
#include "ZSpace/platform/SystemLog.h"
#include "ZSpace/platform/ThreadNumber.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace ZSpace {

namespace {

/// The system log's numbers, by `ZLogLevel`.
constexpr int s_priorities[]{7, 6, 5, 4, 3, 2};

/// @return a descriptor, or -1 if no process listens at `path`.
int connectTo(const char* path) noexcept
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (!path || std::strlen(path) >= sizeof address.sun_path)
        return -1;
    std::memcpy(address.sun_path, path, std::strlen(path) + 1);
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM, 0);
    if (descriptor < 0)
        return -1;
    fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    if (connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

/// One field of the journal's protocol. The size, as 64 bits in little-endian order, allows any content.
void appendField(std::string& datagram, const char* name, const char* value, std::size_t length)
{
    datagram.append(name).append(1, '\n');
    for (int shift = 0; shift < 64; shift += 8)
        datagram.append(1, static_cast<char>(static_cast<std::uint64_t>(length) >> shift & 0xFF));
    datagram.append(value, length).append(1, '\n');
}

void appendField(std::string& datagram, const char* name, const std::string& value)
{
    appendField(datagram, name, value.data(), value.size());
}

} // namespace

ZLogBookSystem::ZLogBookSystem(const char* ident, const char* journalSocket)
    : m_ident(ident)
    , m_client(Host::openSystemLog(ident, Host::CopyToStandardError::No))
    , m_message(Host::newSystemLogMessage())
    , m_journal(connectTo(journalSocket))
{
}

ZLogBookSystem::~ZLogBookSystem()
{
    if (m_journal >= 0)
        close(m_journal);
}

void ZLogBookSystem::add(const ZLogRecord& record)
{
    ZLogLevel level = ZLogLevel::Notice;
    auto item = record.begin();
    if (getLevel(record, level))
        ++item;
    detail::LogLine message;
    for (; item != record.end(); ++item) {
        if (message.length() > 0)
            message.append(' ');
        message.append(*item);
    }
    const int priority = s_priorities[static_cast<std::size_t>(level)];
    if (sendToJournal(priority, message.data(), message.length()))
        return;
    message.append('\0');
    Host::writeSystemLog(m_client, m_message, priority, message.data());
}

void ZLogBookSystem::writeStream(unsigned char, int, const void*, long) { }

bool ZLogBookSystem::getSessionTransferLog(ZGStr<wchar_t>&)
{
    return false;
}

bool ZLogBookSystem::sendToJournal(int priority, const char* message, long length) const
{
    if (m_journal < 0)
        return false;
    std::string datagram;
    appendField(datagram, "MESSAGE", message, static_cast<std::size_t>(length));
    appendField(datagram, "PRIORITY", std::to_string(priority));
    if (!m_ident.isEmpty())
        appendField(datagram, "SYSLOG_IDENTIFIER", static_cast<const char*>(m_ident));
    appendField(datagram, "TID", std::to_string(Host::threadNumber()));
    const auto size = static_cast<long>(datagram.size());
    return detail::writeWhole(m_journal, datagram.data(), size, detail::SignalRisk::Yes) == size;
}

} // namespace ZSpace
