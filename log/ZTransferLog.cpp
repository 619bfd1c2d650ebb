// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "log/ZTransferLog.h"

#include <memory>
#include <utility>

namespace ZSpace {

ZTransferLog* theLog = nullptr;

ZTransferLog::~ZTransferLog() = default;

void ZTransferLog::useLogBook(ZRef<ZLogBook> book)
{
    if (book && theLog) {
        theLog->attachLogBook(std::move(book));
    } else if (book) {
        auto log = std::make_unique<ZTransferLog>();
        log->attachLogBook(std::move(book));
        theLog = log.release();
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
