// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

#include <memory>

namespace ZSpace {

namespace detail {
class LineFile;
} // namespace detail

/// A book that writes each record as one JSON object (RFC 8259) on a line of its own.
///
///     ZRef<ZLogBook> book(new ZLogBookJson(L"/var/log/mine.json"));
///     book->add(ZLogRecord() << ZLogLevel::Warning << "disk almost full" << 97);
///     // {"time":"2026-03-04T05:06:07.089Z","thread":"1a03","level":"WARNING","values":["disk almost full",97]}
///
/// The time is UTC (RFC 3339). "level" is present if the record begins with a `ZLogLevel`. Numbers and booleans are
/// JSON numbers and booleans; strings, characters, times and GUIDs are strings; binary values are strings in base64. A
/// value without a text form, a null C string, infinity and NaN are null. A value with a name is an object with that
/// one member. Bytes and code units that are not valid Unicode become U+FFFD.
///
/// As with `ZLogBookFile`, records may come from any thread, each is one system call, and errors of the file lose lines
/// but never reach the caller.
class ZLogBookJson : public ZLogBook {
public:
    /// Appends to the file at `path`, which is created if missing. The path is narrowed to the low 8 bits of each
    /// unit.
    /// @throws ZException "Report file could not be opened".
    explicit ZLogBookJson(const wchar_t* path);
    ~ZLogBookJson() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    /// Does nothing.
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;

private:
    std::unique_ptr<detail::LineFile> m_file; // guarded by lock()
};

} // namespace ZSpace
