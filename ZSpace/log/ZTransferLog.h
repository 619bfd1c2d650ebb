// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLoggable.h"

namespace ZSpace {

/// The way of plain text lines into the process's log book. There is one at most, `theLog`.
///
///     ZTransferLog::useLogBook(ZRef<ZLogBook>(new ZLogBookFile(L"/var/log/mine.txt")));
///     ZTransferLog::log("started");
///
/// Books are attached and detached at start and end, while no other thread logs; lines may then come from any
/// thread. One that was detached stays allocated: another thread may still be looking at it.
class ZTransferLog : public ZLoggable {
public:
    ~ZTransferLog() override;

    /// Sends later lines to `book`; an empty reference turns the transfer log off.
    static void useLogBook(ZRef<ZLogBook> book);
    /// Writes one line. The book is done with `text` when this returns.
    /// @return false when there is no active book; nothing is then written.
    static bool log(const char* text);
    /// Whether there is an active book.
    static bool isOn();
    /// Whether the book would not take a line now. A transfer log without a book ends the process with a
    /// report.
    bool isInactive();
};

/// Null while no book is attached. Owned by nobody.
extern ZTransferLog* theLog;

} // namespace ZSpace
