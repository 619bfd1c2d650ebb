// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookFile.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/log/detail/LogLine.h"
#include "ZSpace/log/detail/WholeWrite.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/system/ZSysInfoPaths.h"
#include "ZSpace/value/ZTime.h"

#include <atomic>
#include <mutex>
#include <unistd.h>

namespace ZSpace {

namespace {

constexpr unsigned int s_errorMark = 0xFFFFFFFF;

ZMStr<char> newReportFileName()
{
    ZMStr<char> time = ZTime(true).toCString();
    time.replace(':', '-');
    ZMStr<char> name(ZSysInfoPaths::getHomeFolderA());
    name << "transfer." << time << "_p" << static_cast<int>(getpid()) << ".report.txt";
    return name;
}

/// Locks for a write. Other threads hold the lock for about a microsecond, so retrying for a while costs less than
/// sleeping and being woken.
template <typename Lock>
void lockForWrite(Lock& lock) noexcept
{
    constexpr int attempts = 64;
    constexpr int pause = 32;
    for (int attempt = 0; attempt < attempts; ++attempt) {
        if (lock.try_lock())
            return;
        for (int i = 0; i < pause; ++i)
            std::atomic_signal_fence(std::memory_order_seq_cst); // an empty loop that the compiler keeps
    }
    lock.lock();
}

} // namespace

ZLogBookFile::ZLogBookFile(const wchar_t* path)
{
    start(m_reportFile.open(path, ZIOGFile<>::ModeAppend));
    separateSessions();
}

ZLogBookFile::ZLogBookFile(OpenFile file)
{
    start(m_reportFile.adopt(file.descriptor, ZIOGFile<>::ModeWrite)); // does not truncate an open file
    separateSessions();
}

ZLogBookFile::ZLogBookFile()
{
    start(m_reportFile.open(newReportFileName(), ZIOGFile<>::ModeWrite));
}

ZLogBookFile::~ZLogBookFile()
{
    const std::lock_guard guard(lock());
    m_reportFile.close();
}

void ZLogBookFile::add(const ZLogRecord& record)
{
    detail::LogLine line;
    line.appendRecord(record);
    write(line.data(), line.length());
}

void ZLogBookFile::writeStream(unsigned char, int, const void*, long) { }

void ZLogBookFile::setLastError(int op, const char* caller, const char* callee, int result, const char* text)
{
    ZLogBook::setLastError(op, caller, callee, result, text);
    add(create() << "Set LastError:" << s_errorMark << op << caller << callee << result << text);
}

bool ZLogBookFile::getSessionTransferLog(ZGStr<wchar_t>&)
{
    return false;
}

/// @param error what opening the report file returned.
void ZLogBookFile::start(int error)
{
    if (error != 0)
        throw ZException("Report file could not be opened", "ZLogBookFile()");
    m_reportFile.m_signalRisk = detail::signalRiskOf(m_reportFile.descriptor());
}

void ZLogBookFile::separateSessions()
{
    if (m_reportFile.Size() > 0)
        write("\r\n\r\n", 4);
}

/// All lines reach the file here.
void ZLogBookFile::write(const char* line, long length)
{
    lockForWrite(lock());
    const std::lock_guard guard(lock(), std::adopt_lock);
    detail::appendLine(
        m_reportFile.descriptor(), line, length, m_reportFile.m_signalRisk, m_reportFile.m_isLastLineCut);
}

ZLogBookFileEntry::ZLogBookFileEntry(unsigned char tag, int first, int second) noexcept
    : m_time(static_cast<unsigned long long>(ZTime(true)))
    , m_tag(tag)
    , m_first(first)
    , m_second(second)
{
}

} // namespace ZSpace
