// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

namespace ZSpace {

/// The base of an object that logs: it holds the book that it writes to, and forwards to it.
///
/// Starts with a dummy book. Another book can be attached, or the present one detached, any number of times,
/// but not while another thread logs through the same object. Without a book every operation does nothing and
/// answers false or an empty list.
class ZLoggable {
public:
    ZLoggable();
    ZLoggable(const ZLoggable&) = default;
    ZLoggable& operator=(const ZLoggable&) = default;

    /// Hooks for derived classes.
    virtual void onLogBookAttached(ZRef<ZLogBook> book);
    virtual void onLogBookDetached();

    virtual void writeStream(unsigned char tag, int number, const void* data, long length);
    virtual ~ZLoggable();

    /// Writes to `book` from now on.
    virtual void attachLogBook(ZRef<ZLogBook> book);
    /// Writes to no book from now on.
    virtual void detachLogBook();
    /// Hands the record to the book and, when debug lines are written, tells it on standard error as well:
    /// time, thread and the texts of the values that have any, in one line.
    virtual void addLogRecord(const ZLogRecord& record);

    void setLastError(int op, const char* caller, const char* callee, int result, const char* text);
    /// The same under the operation number `m_logOp`; nothing while that is 0.
    void setLastError(const char* caller, const char* callee, int result, const char* text);
    bool getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread);
    ZLogBook::Errors getLastThreadErrors(pthread_t thread);
    ZLogBook::Errors getLastOpErrors(int op);
    ZLogBook::Errors getLastErrors();
    bool hasLastError(int op, pthread_t thread);
    void clearLastError(int op, pthread_t thread);
    void writeStream(unsigned char tag, int number, const TZBinary<unsigned char>& data);

    /// The calling thread as lines name it: "Thread[1a03]", with the system's number in hexadecimal.
    static ZGStr<char> getLogThreadId();
    /// A new, empty record.
    static ZLogRecord createLogRecord() { return {}; }

protected:
    ZRef<ZLogBook> m_logBook; // may be empty
    int m_logOp = 0;
};

} // namespace ZSpace
