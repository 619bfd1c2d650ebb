// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLoggable.h"

namespace ZSpace {

/// Connects the log front end to the process's log book. At most one is in use, `theLog`.
///
///     ZTransferLog::useLogBook(ZRef<ZLogBook>(new ZLogBookFile(L"/var/log/mine.txt")));
///     ZTransferLog::log("started");
///
/// Books may be exchanged and detached while other threads log. A line goes to the book that was attached when it
/// began, and the last user of a book destroys it. A transfer log that was turned off stays allocated.
class ZTransferLog : public ZLoggable {
public:
    ~ZTransferLog() override;

    /// Sends later lines to `book`. An empty reference turns the transfer log off.
    static void useLogBook(ZRef<ZLogBook> book);
    /// Writes one line. `text` need only stay valid during the call.
    /// @return false if there is no active book; nothing is then written.
    static bool log(const char* text);
    /// Whether there is an active book.
    static bool isOn();
    /// Whether the book currently refuses records. Aborts after a report through `z_dbg_error` if there is no book.
    bool isInactive();

private:
    struct Channel;
};

/// Null while no book is attached.
extern ZTransferLog* theLog;

} // namespace ZSpace
