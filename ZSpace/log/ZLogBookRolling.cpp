// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookRolling.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/log/detail/LineFile.h"
#include "ZSpace/log/detail/LogLine.h"
#include "ZSpace/string/ZMStr.h"

#include <cstdio>
#include <mutex>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace ZSpace {

namespace {

constexpr long long s_secondsPerDay = 86'400;

/// When the file at `path` was last written; nothing if there is none.
std::optional<std::time_t> timeWritten(const char* path) noexcept
{
    struct stat status { };
    if (stat(path, &status) != 0)
        return {};
    return status.st_mtime;
}

} // namespace

ZLogBookRolling::ZLogBookRolling(const wchar_t* path, const Limits& limits)
    : m_file(std::make_unique<detail::LineFile>())
    , m_limits(limits)
{
    ZMStr<char> name(ZGStr<char>(path ? path : L""));
    if (limits.isPerProcess)
        name << "." << static_cast<int>(getpid());
    m_path = ZGStr<char>(name);
    // The day of what an earlier run has left.
    m_day = timeWritten(m_path).value_or(std::time(nullptr)) / s_secondsPerDay;
    if (!m_file->open(m_path))
        throw ZException("Report file could not be opened", "ZLogBookRolling()");
    m_size = m_file->size();
    removeOldFiles();
}

ZLogBookRolling::~ZLogBookRolling() = default;

void ZLogBookRolling::add(const ZLogRecord& record)
{
    detail::LogLine line;
    line.appendRecord(record);
    const std::lock_guard guard(lock());
    rollIfNeeded(line.length(), std::time(nullptr));
    m_file->append(line.data(), line.length());
    m_size += line.length();
}

void ZLogBookRolling::writeStream(unsigned char, int, const void*, long) { }

bool ZLogBookRolling::getSessionTransferLog(ZGStr<wchar_t>&)
{
    return false;
}

void ZLogBookRolling::roll()
{
    const std::lock_guard guard(lock());
    if (m_file->size() > 0)
        rollFiles();
}

void ZLogBookRolling::reopen()
{
    const std::lock_guard guard(lock());
    m_file->open(m_path);
    m_size = m_file->size();
}

void ZLogBookRolling::rollIfNeeded(long length, std::time_t now)
{
    const long long day = now / s_secondsPerDay;
    const bool isFull = m_limits.sizeInBytes > 0 && m_size + length > m_limits.sizeInBytes;
    const bool isOver = m_limits.isDaily && day != m_day;
    m_day = day;
    if (m_size > 0 && (isFull || isOver))
        rollFiles();
}

/// If the current file cannot be renamed, it stays in use.
void ZLogBookRolling::rollFiles()
{
    m_file->close();
    for (int number = m_limits.oldFileCount; number > 1; --number)
        std::rename(oldPath(number - 1), oldPath(number));
    if (m_limits.oldFileCount > 0)
        std::rename(m_path, oldPath(1));
    else
        unlink(m_path);
    m_file->open(m_path);
    m_size = m_file->size();
    removeOldFiles();
}

/// The files are numbered without gaps, so the first missing one ends the search.
void ZLogBookRolling::removeOldFiles()
{
    const std::time_t oldest =
        std::time(nullptr) - std::chrono::duration_cast<std::chrono::seconds>(m_limits.oldFileAge).count();
    for (int number = 1; const auto written = timeWritten(oldPath(number)); ++number) {
        const bool isTooOld = m_limits.oldFileAge.count() > 0 && *written < oldest;
        if (number > m_limits.oldFileCount || isTooOld)
            unlink(oldPath(number));
    }
}

ZGStr<char> ZLogBookRolling::oldPath(int number) const
{
    ZMStr<char> path(m_path);
    path << "." << number;
    return ZGStr<char>(path);
}

} // namespace ZSpace
