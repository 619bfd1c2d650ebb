// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"
#include "ZSpace/stream/ZIOGFile.h"

#include <cstdint>

namespace ZSpace {

/// A book that writes each record as one line of a plain text report file.
///
///     ZRef<ZLogBook> book(new ZLogBookFile(L"/var/log/mine.txt"));
///     book->add(ZLogRecord() << "Connection" << 42);
///     // 2026-03-04T05:06:07.089 Thread[1a03]:<tab>Connection<tab>42
///
/// The time is UTC. Texts stand there as they are: one that holds a tab or a line feed is not escaped.
/// Sessions that were appended to one file are separated by two line breaks (CR LF).
///
/// Records may come from any thread. When `add` returns, the line has been handed to the system, whole, by a
/// single write at the end of the file, so lines of several threads and of several processes never mix, and a
/// process that is killed loses none. (What a power cut loses is up to the file system.) A disk that is full,
/// or a file that is removed, never stops the program: lines are then lost, and a line that was cut is ended
/// before the next one.
///
/// The file stays open for the book's life; there is no rotation and no size limit.
class ZLogBookFile : public virtual ZLogBook {
public:
    /// Appends to the file at `path`, which is made when it is missing. The path goes narrow unit by unit.
    /// @throws ZException "Report file could not be opened"; nothing is then left open.
    explicit ZLogBookFile(const wchar_t* path);
    /// A new file in the user's home folder, named after the time and the process.
    /// @throws ZException "Report file could not be opened".
    ZLogBookFile();
    ~ZLogBookFile() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    /// Does nothing: the file for raw blocks is reserved.
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    /// Beside the message that every book writes, one record with the error's details as values of their own.
    void setLastError(int op, const char* caller, const char* callee, int result, const char* text) override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;

private:
    void open(const char* path, int mode);
    void separateSessions();
    void write(ZStrToken<char> line);

    ZIOGFile<> m_reportFile;
    ZIOGFile<> m_streamFile; // reserved, never opened
};

/// What stands ahead of each block in the file that is reserved for them.
struct ZLogBookFileEntry {
    ZLogBookFileEntry() = default;
    /// Stamped with the current time.
    ZLogBookFileEntry(unsigned char tag, int first, int second) noexcept;

    std::uint64_t m_time = 0; // a packed `ZTime`
    std::uint8_t m_tag = 0;
    std::int32_t m_first = 0;
    std::int32_t m_second = 0;
};

} // namespace ZSpace
