// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookFile.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/log/detail/LogLine.h"
#include "ZSpace/system/ZSysInfoPaths.h"
#include "ZSpace/value/ZTime.h"

#include <mutex>
#include <unistd.h>

namespace ZSpace {

namespace {

constexpr unsigned int s_errorMark = 0xFFFFFFFF;

ZMStr<char> freshReportFileName()
{
    ZMStr<char> time = ZTime(true).toCString();
    time.replace(':', '-');
    ZMStr<char> name(ZSysInfoPaths::getHomeFolderA());
    name << "transfer." << time << "_p" << static_cast<int>(getpid()) << ".report.txt";
    return name;
}

} // namespace

ZLogBookFile::ZLogBookFile(const wchar_t* path)
{
    open(ZGStr<char>(path), ZIOGFile<>::ModeAppend);
    separateSessions();
}

ZLogBookFile::ZLogBookFile()
{
    open(freshReportFileName(), ZIOGFile<>::ModeWrite);
}

ZLogBookFile::~ZLogBookFile()
{
    const std::lock_guard guard(lock());
    m_reportFile.close();
}

void ZLogBookFile::add(const ZLogRecord& record)
{
    detail::LogLine line;
    line.append(detail::linePrefix());
    for (const ZLogRecord::Item& item : record) {
        line.append('\t');
        line.append(item);
    }
    line.append('\n');
    write(line.text());
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

void ZLogBookFile::open(const char* path, int mode)
{
    if (m_reportFile.open(path, mode) != 0 || !m_reportFile.writeThrough())
        throw ZException("Report file could not be opened", "ZLogBookFile()");
}

void ZLogBookFile::separateSessions()
{
    if (m_reportFile.Size() > 0) {
        m_reportFile.moveEnd();
        m_reportFile.write("\r\n\r\n", 4);
    }
}

/// Writes a line that has a line feed in front, which is left out unless the line before was cut. The file's
/// error mark is what remembers that.
void ZLogBookFile::write(ZStrToken<char> line)
{
    const std::lock_guard guard(lock());
    const bool isTorn = m_reportFile.hasError();
    if (isTorn)
        m_reportFile.clearError();
    else
        line = ZStrToken<char>(line + 1, line.Length() - 1);
    const long written = m_reportFile.writeAtOnce(line, line.Length());
    if (written < 1 && !isTorn)
        m_reportFile.clearError();
}

ZLogBookFileEntry::ZLogBookFileEntry(unsigned char tag, int first, int second) noexcept
    : m_time(static_cast<unsigned long long>(ZTime(true)))
    , m_tag(tag)
    , m_first(first)
    , m_second(second)
{
}

} // namespace ZSpace
