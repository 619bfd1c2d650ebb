// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZTransferLog.h"

#include <memory>
#include <utility>
#include <vector>

namespace ZSpace {

ZTransferLog* theLog = nullptr;

ZTransferLog::~ZTransferLog() = default;

namespace {

/// A transfer log that stays for the life of the process, since another thread may still be looking at it
/// when it is turned off. The list keeps those that were turned off in sight of whoever looks for leaks.
ZTransferLog& newLog()
{
    static auto& logs = *new std::vector<std::unique_ptr<ZTransferLog>>;
    return *logs.emplace_back(std::make_unique<ZTransferLog>());
}

} // namespace

void ZTransferLog::useLogBook(ZRef<ZLogBook> book)
{
    if (!book) {
        if (theLog)
            std::exchange(theLog, nullptr)->detachLogBook();
    } else if (theLog) {
        theLog->attachLogBook(std::move(book));
    } else {
        ZTransferLog& log = newLog();
        log.attachLogBook(std::move(book));
        theLog = &log;
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
