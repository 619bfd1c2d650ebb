// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "log/ZTransferLog.h"

#include <utility>

namespace ZSpace {

ZTransferLog* theLog = nullptr;

ZTransferLog::~ZTransferLog() = default;

namespace {

/// The process's transfer log: made on first use, and never destroyed, since another thread may still be
/// looking at it when it is turned off.
ZTransferLog& onlyLog()
{
    static auto* const log = new ZTransferLog;
    return *log;
}

} // namespace

void ZTransferLog::useLogBook(ZRef<ZLogBook> book)
{
    if (book) {
        ZTransferLog& log = theLog ? *theLog : onlyLog();
        log.attachLogBook(std::move(book));
        theLog = &log;
    } else if (theLog) {
        std::exchange(theLog, nullptr)->detachLogBook();
    }
}

bool ZTransferLog::log(const char* text)
{
    if (!isOn())
        return false;
    theLog->addLogRecord(createLogRecord() << text);
    return true;
}

bool ZTransferLog::isOn()
{
    return theLog && !theLog->isInactive();
}

bool ZTransferLog::isInactive()
{
    return m_logBook->isInactive();
}

} // namespace ZSpace
