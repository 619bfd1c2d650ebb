// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

namespace ZSpace {

namespace Host {
struct SystemLogClient;
struct SystemLogMessage;
} // namespace Host

/// A book that writes to the system log, each record at the level that it begins with (`ZLogLevel::Notice` if none).
///
///     ZRef<ZLogBook> book(new ZLogBookSystem("mytool"));
///     book->add(ZLogRecord() << ZLogLevel::Error << "cannot open" << path);
///
/// The message consists of the values, separated by spaces. If journald's socket exists, the record is sent there as
/// structured fields: MESSAGE, PRIORITY, SYSLOG_IDENTIFIER and TID, the thread number. If that fails, the record goes
/// to the system log.
///
/// Records may come from any thread. Failures are ignored. Where the system log has one sender name for the whole
/// process, as on Linux, the one set last is used, by a book or by `CNSInitLog`.
class ZLogBookSystem : public ZLogBook {
public:
    /// @param ident the sender's name, which is copied; null selects the host's default.
    /// @param journalSocket where journald listens.
    explicit ZLogBookSystem(const char* ident, const char* journalSocket = "/run/systemd/journal/socket");
    ~ZLogBookSystem() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    /// Does nothing.
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;

private:
    [[nodiscard]] bool sendToJournal(int priority, const char* message, long length) const;

    ZGStr<char> m_ident;
    Host::SystemLogClient* m_client;
    Host::SystemLogMessage* m_message;
    int m_journal; // -1 without journald
};

} // namespace ZSpace
