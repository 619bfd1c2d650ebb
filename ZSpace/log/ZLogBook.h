// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/core/ZThreadLock.h"
#include "ZSpace/log/ZLogLastError.h"
#include "ZSpace/log/ZLogRecord.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/value/TZBinary.h"

#include <pthread.h>

namespace ZSpace {

/// The base of all destinations of log records. It also keeps a trail of the last errors.
///
///     ZRef<ZLogBook> book(new ZLogBookFile(L"/var/log/mine.txt"));
///     book->add(ZLogRecord() << "started");
///
/// Books are shared through `ZRef<ZLogBook>` and deleted with the last reference. The trail has no length
/// limit: entries stay until they are cleared. In searches of the trail, an `op` of 0 and a null `thread`
/// match any operation and any thread.
///
/// The trail may be used from any thread. Its lock is held only while the list is read or changed, never
/// while a record is written. Operations throw `std::bad_alloc` if allocation fails.
class ZLogBook {
public:
    /// The entries of a trail.
    using Errors = ZList<ZRef<ZLogLastError>>;

    ZLogBook();
    ZLogBook(const ZLogBook&) = delete; // books are shared, not copied
    ZLogBook& operator=(const ZLogBook&) = delete;
    virtual ~ZLogBook();

    /// Writes one record.
    virtual void add(const ZLogRecord& record) = 0;
    /// Takes a block of `length` raw bytes. Books do not interpret the tags.
    virtual void writeStream(unsigned char tag, int number, const void* data, long length) = 0;

    /// Appends an error to the trail and adds a record that reports it.
    virtual void setLastError(int op, const char* caller, const char* callee, int result, const char* text);
    /// Finds the newest entry that matches.
    /// @return false if there is none; `out` is then unchanged.
    virtual bool getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread);
    /// The entries of exactly this thread, oldest first; null is not a wildcard here.
    virtual Errors getLastThreadErrors(pthread_t thread);
    /// The entries with exactly this operation number, oldest first; 0 is not a wildcard here.
    virtual Errors getLastOpErrors(int op);
    /// The whole trail, oldest first.
    virtual Errors getLastErrors();
    /// Whether an entry matches.
    virtual bool hasLastError(int op, pthread_t thread);
    /// Removes the entries that match and, if there were any, adds a record that says so.
    virtual void clearLastError(int op, pthread_t thread);

    /// Whether the book currently refuses records.
    virtual bool isInactive();
    /// Retrieves the records of this session as one string.
    /// @return false if the book does not keep them; `out` is then unchanged.
    virtual bool getSessionTransferLog(ZGStr<wchar_t>& out) = 0;

    /// Appends the text of each entry of the trail to `out`, oldest first, each followed by a line break.
    /// @return whether there was an entry.
    bool getLastErrorString(ZGStr<wchar_t>& out);
    /// Calls the virtual `writeStream` with the bytes of `data`.
    void writeStream(unsigned char tag, int number, const TZBinary<unsigned char>& data);
    /// Does nothing and returns the book. Use `add` to write a record.
    ZLogBook& operator<<(const ZLogRecord& record);
    /// Returns an empty record.
    static ZLogRecord create() { return {}; }

protected:
    /// Guards the trail and, in derived classes, whatever else they need to guard. Recursive.
    [[nodiscard]] ZThreadLock_T<pthread_mutex_t>& lock() noexcept { return m_lock; }

private:
    ZThreadLock_T<pthread_mutex_t> m_lock;
    Errors m_trail; // oldest first; guarded by m_lock
};

/// A book that discards records. It still keeps the trail of last errors.
class ZLogBookDummy : public ZLogBook {
public:
    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;
};

} // namespace ZSpace
