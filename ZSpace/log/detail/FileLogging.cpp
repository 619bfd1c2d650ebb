// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/FileLogging.h"

#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/system/ZSysInfoPaths.h"

namespace ZSpace {

namespace {

/// Logging must never stop a program: whatever fails while it is set up is dropped here.
template <typename SetUp>
void dropFailures(SetUp setUp) noexcept
{
    try {
        setUp();
    } catch (...) { // NOLINT(bugprone-empty-catch): by design
    }
}

} // namespace

void useLogFolder(const char* folder) noexcept
{
    dropFailures([=] { ZSysInfoPaths::setUserLogDirW(ZGStr<wchar_t>(folder)); });
}

void enableFileLogging(const char* tag) noexcept
{
    dropFailures([=] {
        const ZGStr<char> prefix = ZGStr<char>(tag) + "_";
        const ZGStr<wchar_t> path = ZSysInfoPaths::getNewLogFileNameW(prefix, ".txt");
        // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): what it throws is dropped above
        ZTransferLog::useLogBook(ZRef<ZLogBook>(new ZLogBookFile(path)));
    });
}

void disableFileLogging() noexcept
{
    ZTransferLog::useLogBook(ZRef<ZLogBook>());
}

} // namespace ZSpace
