// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/FileLogging.h"

#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/platform/ReportFile.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/system/ZSysInfoPaths.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace ZSpace {

namespace {

/// Logging must never stop a program: ignores whatever its set-up throws.
template <typename SetUp>
void dropFailures(SetUp setUp) noexcept
{
    try {
        setUp();
    } catch (...) { // NOLINT(bugprone-empty-catch): by design
    }
}

/// Opens a report file relative to its directory, so that nothing that another user has put there is used.
/// @return the descriptor, or a negative error number.
int openReport(const char* path)
{
    const char* const slash = std::strrchr(path, '/');
    if (!slash)
        return -EINVAL; // report files are always in a directory
    const char* const name = slash + 1;
    const int directory = Host::openReportDirectory(ZGStr<char>(path, name - path));
    if (directory < 0)
        return directory;
    const int file = Host::openReportFile(directory, name);
    close(directory);
    return file;
}

} // namespace

void useLogDirectory(const char* directory) noexcept
{
    dropFailures([=] {
        // Appended to a large enough buffer: an append that allocates would terminate instead of throwing.
        const ZStrToken<char> path(directory);
        ZMStr<wchar_t> wide(path.Length() + 1);
        wide.appendValueOf(static_cast<const char*>(path), path.Length());
        ZSysInfoPaths::setUserLogDirW(wide);
    });
}

void enableFileLogging(const char* tag) noexcept
{
    dropFailures([=] {
        ZMStr<char> prefix(ZStrToken<char>(tag).Length() + 2);
        prefix << tag << '_';
        const ZGStr<wchar_t> wide = ZSysInfoPaths::getNewLogFileNameW(prefix, ".txt");
        ZMStr<char> path(wide.length() + 1);
        path.appendValueOf(static_cast<const wchar_t*>(wide), wide.length());
        // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): ignored by the caller
        ZTransferLog::useLogBook(ZRef<ZLogBook>(new ZLogBookFile(ZLogBookFile::OpenFile{openReport(path)})));
    });
}

void disableFileLogging() noexcept
{
    dropFailures([] { ZTransferLog::useLogBook(ZRef<ZLogBook>()); });
}

} // namespace ZSpace
