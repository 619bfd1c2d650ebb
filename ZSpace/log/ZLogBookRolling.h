// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

#include <chrono>
#include <ctime>
#include <memory>

namespace ZSpace {

namespace detail {
class LineFile;
} // namespace detail

/// A book that writes lines like `ZLogBookFile` and starts a new file when the current one is full or a day ends.
///
///     ZLogBookRolling::Limits limits;
///     limits.sizeInBytes = 10'000'000;
///     limits.oldFileCount = 5;
///     ZRef<ZLogBook> book(new ZLogBookRolling(L"/var/log/mine.txt", limits));
///
/// The current file keeps its name. The old ones are "mine.txt.1" (the newest), "mine.txt.2" and so on; those beyond
/// the limits are removed. A line is never split between two files. A line longer than the size limit has a file of its
/// own.
///
/// Records may come from any thread. Several processes must not share a path: set `isPerProcess`, which inserts the
/// process id, as in "mine.txt.812" and "mine.txt.812.1". Use a directory that other users cannot write to.
///
/// Errors of the file lose lines but never reach the caller.
class ZLogBookRolling : public ZLogBook {
public:
    struct Limits {
        long long sizeInBytes = 0; ///< of one file; 0 means unlimited
        bool isDaily = false; ///< a new file for each day (UTC)
        int oldFileCount = 5; ///< old files to keep
        std::chrono::hours oldFileAge{0}; ///< removes old files last written longer ago; 0 means never
        bool isPerProcess = false; ///< appends the process id to the path
    };

    /// Appends to the file at `path`, which is created if missing. The path is narrowed to the low 8 bits of each
    /// unit.
    /// @throws ZException "Report file could not be opened".
    ZLogBookRolling(const wchar_t* path, const Limits& limits);
    ~ZLogBookRolling() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    /// Does nothing.
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;

    /// Starts a new file now, unless the current one is empty.
    void roll();
    /// Opens the path again, after another program has moved the file away.
    void reopen();

private:
    void rollIfNeeded(long length, std::time_t now);
    void rollFiles();
    void removeOldFiles();
    [[nodiscard]] ZGStr<char> oldPath(int number) const;

    // All guarded by lock().
    std::unique_ptr<detail::LineFile> m_file;
    ZGStr<char> m_path;
    Limits m_limits;
    long long m_size = 0;
    long long m_day = 0; // of the last line, in days since 1970
};

} // namespace ZSpace
