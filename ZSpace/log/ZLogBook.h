// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZThreadLock.h"
#include "ZSpace/log/ZLogLastError.h"
#include "ZSpace/log/ZLogRecord.h"
#include "ZSpace/log/detail/LogList.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/value/TZBinary.h"

#include <pthread.h>

namespace ZSpace {

/// What takes the records of a log, and keeps a trail of the last errors.
///
///     ZRef<ZLogBook> book(new ZLogBookFile(L"/var/log/mine.txt"));
///     book->add(ZLogRecord() << "started");
///
/// Books are shared through `ZRef<ZLogBook>`; a book lives as long as anything refers to it. The trail has no
/// length limit: entries stay until they are cleared. In the trail's operations, an `op` of 0 and a null
/// `thread` stand for any operation and any thread.
///
/// The trail may be used from any thread; its lock is held only while the list is read or changed, never
/// while a record is written. Allocation failures pass on.
class ZLogBook {
public:
    using Errors = ZList<ZRef<ZLogLastError>>;

    ZLogBook() = default;
    ZLogBook(const ZLogBook&) = delete; // books are shared, not copied
    ZLogBook& operator=(const ZLogBook&) = delete;
    virtual ~ZLogBook();

    /// Writes one record.
    virtual void add(const ZLogRecord& record) = 0;
    /// Takes a block of `length` raw bytes. The tags belong to whoever writes and reads such blocks.
    virtual void writeStream(unsigned char tag, int number, const void* data, long length) = 0;

    /// Adds an error to the trail, and a record that tells it to the book.
    virtual void setLastError(int op, const char* caller, const char* callee, int result, const char* text);
    /// The newest entry that matches.
    /// @return false when there is none; `out` is then unchanged.
    virtual bool getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread);
    /// The entries of exactly this thread, oldest first.
    virtual Errors getLastThreadErrors(pthread_t thread);
    /// The entries with exactly this operation number, oldest first; 0 gives those filed under none.
    virtual Errors getLastOpErrors(int op);
    /// The whole trail, oldest first.
    virtual Errors getLastErrors();
    /// Whether an entry matches.
    virtual bool hasLastError(int op, pthread_t thread);
    /// Removes the entries that match and, if there were any, adds a record that tells so to the book.
    virtual void clearLastError(int op, pthread_t thread);

    /// Whether the book would not take a record now.
    virtual bool isInactive();
    /// The records of this session as one text, where a book has them.
    /// @return false when it has none; `out` is then unchanged.
    virtual bool getSessionTransferLog(ZGStr<wchar_t>& out) = 0;

    /// Appends to `out` the text of each entry of the trail, oldest first, each with a line break behind it.
    /// @return whether there was an entry.
    bool getLastErrorString(ZGStr<wchar_t>& out);
    /// `writeStream` with the bytes of `data`.
    void writeStream(unsigned char tag, int number, const TZBinary<unsigned char>& data);
    /// Does nothing and gives the book back. Records are written with `add`.
    ZLogBook& operator<<(const ZLogRecord& record);
    /// A new, empty record.
    static ZLogRecord create() { return {}; }

protected:
    /// The lock of the trail, and of whatever else a book guards. Recursive.
    [[nodiscard]] ZThreadLock_T<pthread_mutex_t>& lock() noexcept { return m_lock; }

private:
    ZThreadLock_T<pthread_mutex_t> m_lock;
    detail::LogList<ZRef<ZLogLastError>> m_trail; // oldest first
};

/// A book that throws records away. It still keeps last errors.
class ZLogBookDummy : public ZLogBook {
public:
    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;
};

} // namespace ZSpace
