// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/detail/WholeWrite.h"

namespace ZSpace::detail {

/// A file that lines are appended to without a buffer. Must be used by one thread at a time.
class LineFile {
public:
    LineFile() noexcept = default;
    LineFile(const LineFile&) = delete; // owns a descriptor
    LineFile& operator=(const LineFile&) = delete;
    ~LineFile() { close(); }

    /// Closes the file, then opens `path` for appending and creates it if missing.
    /// @return whether the file is open.
    bool open(const char* path) noexcept;
    void close() noexcept;

    /// The size in bytes; 0 for a closed file.
    [[nodiscard]] long long size() const noexcept;
    /// Appends a line with one `write`. Ends a line that was cut before with a line feed.
    void append(const char* line, long length) noexcept;

private:
    int m_descriptor = -1;
    SignalRisk m_signalRisk = SignalRisk::No;
    bool m_isLastLineCut = false;
};

} // namespace ZSpace::detail
