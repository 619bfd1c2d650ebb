// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

namespace ZSpace {

/// The base of objects that log: it holds a reference to a book and forwards to that.
///
/// It starts with a dummy book. Books can be attached and detached any number of times, but not while another
/// thread logs through the same object. Without a book, operations do nothing and return false or an empty
/// list.
class ZLoggable {
public:
    ZLoggable();
    ZLoggable(const ZLoggable&) = default;
    ZLoggable& operator=(const ZLoggable&) = default;

    /// Called after a book was attached, for derived classes to override.
    virtual void onLogBookAttached(ZRef<ZLogBook> book);
    /// Called after the book was detached.
    virtual void onLogBookDetached();

    /// Passes raw data to the book.
    virtual void writeStream(unsigned char tag, int number, const void* data, long length);
    virtual ~ZLoggable();

    /// Replaces the book.
    virtual void attachLogBook(ZRef<ZLogBook> book);
    /// Releases the book and leaves none.
    virtual void detachLogBook();
    /// Adds the record to the book. When debug lines are on, also writes it to standard error as one line: time,
    /// thread and the values whose text is not empty.
    virtual void addLogRecord(const ZLogRecord& record);

    /// As `ZLogBook::setLastError`; does nothing without a book.
    void setLastError(int op, const char* caller, const char* callee, int result, const char* text);
    /// The same with the operation number `m_logOp`; does nothing while that is 0.
    void setLastError(const char* caller, const char* callee, int result, const char* text);
    /// As in `ZLogBook`; false without a book.
    bool getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread);
    /// As in `ZLogBook`; empty without a book.
    ZLogBook::Errors getLastThreadErrors(pthread_t thread);
    /// As in `ZLogBook`; empty without a book.
    ZLogBook::Errors getLastOpErrors(int op);
    /// As in `ZLogBook`; empty without a book.
    ZLogBook::Errors getLastErrors();
    /// As in `ZLogBook`; false without a book.
    bool hasLastError(int op, pthread_t thread);
    /// As in `ZLogBook`; does nothing without a book.
    void clearLastError(int op, pthread_t thread);
    /// Passes raw data to the book.
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
