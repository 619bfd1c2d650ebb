// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"
#include "ZSpace/stream/ZIOGFile.h"

#include <cstdint>

namespace ZSpace {

namespace detail {
enum class SignalRisk : bool;
} // namespace detail

/// A book that writes each record as one line of a plain text report file.
///
///     ZRef<ZLogBook> book(new ZLogBookFile(L"/var/log/mine.txt"));
///     book->add(ZLogRecord() << "Connection" << 42);
///     // 2026-03-04T05:06:07.089 Thread[1a03]:<tab>Connection<tab>42
///
/// The time is UTC. Values are not escaped: one that contains a tab or a line feed is written as it is.
/// Sessions in one file are separated by two line breaks (CR LF).
///
/// Records may come from any thread. `add` appends the whole line with a single system call before it returns, so the
/// lines of several threads never mix, and a process that is killed loses no line that `add` has written. (A power
/// failure may lose lines: nothing waits for the disk.)
///
/// Errors of the file, and the signals that they raise, never reach the caller: the line is lost, and one that was cut
/// is ended by a line feed before the next. `add` throws only `std::bad_alloc`.
///
/// The file stays open as long as the book lives. There is no rotation and no size limit.
class ZLogBookFile : public virtual ZLogBook {
public:
    /// A file that the caller has opened for appending.
    struct OpenFile {
        int descriptor; ///< open for appending
    };

    /// Appends to the file at `path`, which is created if missing. Opens it as `fopen` does, so it may be a
    /// device, a pipe or a link. The path is narrowed to the low 8 bits of each unit.
    /// @throws ZException "Report file could not be opened"; nothing is left open.
    explicit ZLogBookFile(const wchar_t* path);
    /// Appends to an open file and closes it with the book, also if the constructor throws.
    /// @throws ZException "Report file could not be opened" if the descriptor is not open for writing.
    explicit ZLogBookFile(OpenFile file);
    /// Creates a file in the user's home directory, named after the time and the process.
    /// @throws ZException "Report file could not be opened".
    ZLogBookFile();
    ~ZLogBookFile() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    /// Does nothing: the file for raw blocks is reserved for later use.
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    /// Adds the record that every book adds, then one with the details of the error as separate values.
    void setLastError(int op, const char* caller, const char* callee, int result, const char* text) override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;

private:
    /// The stream and the state for appending lines to it, which fits into the stream's padding.
    struct ReportFile : ZIOGFile<> {
        detail::SignalRisk m_signalRisk{};
        bool m_isLastLineCut = false;
    };
    static_assert(sizeof(ReportFile) == sizeof(ZIOGFile<>));

    void start(int error);
    void separateSessions();
    void write(const char* line, long length);

    ReportFile m_reportFile; // guarded by lock()
    ZIOGFile<> m_streamFile; // reserved, never opened
};

/// The header of each block in the file that is reserved for raw blocks.
struct ZLogBookFileEntry {
    ZLogBookFileEntry() = default;
    /// Stores the current time and the arguments.
    ZLogBookFileEntry(unsigned char tag, int first, int second) noexcept;

    std::uint64_t m_time = 0; // a packed `ZTime`
    /// The kind of the entry.
    std::uint8_t m_tag = 0;
    /// The first number.
    std::int32_t m_first = 0;
    /// The second number.
    std::int32_t m_second = 0;
};

} // namespace ZSpace
