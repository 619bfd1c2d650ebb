// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

namespace ZSpace {

/// The base of objects that log: it holds a reference to a book and forwards to it.
///
/// It starts with a dummy book. Books can be attached and detached any number of times, but not while another
/// thread logs through the same object. Without a book, operations do nothing and return false or an empty
/// list.
class ZLoggable {
public:
    ZLoggable();
    ZLoggable(const ZLoggable&) = default;
    ZLoggable& operator=(const ZLoggable&) = default;

    /// Called after a book was attached or detached, for derived classes to override.
    virtual void onLogBookAttached(ZRef<ZLogBook> book);
    /// Called after the log book was taken away.
    virtual void onLogBookDetached();

    /// Hands raw data to the log book.
    virtual void writeStream(unsigned char tag, int number, const void* data, long length);
    virtual ~ZLoggable();

    /// Replaces the book.
    virtual void attachLogBook(ZRef<ZLogBook> book);
    /// Releases the book and leaves none.
    virtual void detachLogBook();
    /// Adds the record to the book. When debug lines are on, also writes it to standard error as one line: time,
    /// thread and the values whose text is not empty.
    virtual void addLogRecord(const ZLogRecord& record);

    /// As the log book's; does nothing without one.
    void setLastError(int op, const char* caller, const char* callee, int result, const char* text);
    /// The same with the operation number `m_logOp`; does nothing while that is 0.
    void setLastError(const char* caller, const char* callee, int result, const char* text);
    /// As the log book's; false without one.
    bool getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread);
    /// As the log book's; empty without one.
    ZLogBook::Errors getLastThreadErrors(pthread_t thread);
    /// As the log book's; empty without one.
    ZLogBook::Errors getLastOpErrors(int op);
    /// As the log book's; empty without one.
    ZLogBook::Errors getLastErrors();
    /// As the log book's; false without one.
    bool hasLastError(int op, pthread_t thread);
    /// As the log book's; does nothing without one.
    void clearLastError(int op, pthread_t thread);
    /// Hands raw data to the log book.
    void writeStream(unsigned char tag, int number, const TZBinary<unsigned char>& data);

    /// The calling thread as it appears in lines: "Thread[1a03]", the system's thread number in hexadecimal.
    static ZGStr<char> getLogThreadId();
    /// Returns an empty record.
    static ZLogRecord createLogRecord() { return {}; }

protected:
    ZRef<ZLogBook> m_logBook; // may be empty
    /// The operation that this object's records and errors belong to.
    int m_logOp = 0;

private:
    void exchangeBook(ZRef<ZLogBook> book);
};

} // namespace ZSpace
