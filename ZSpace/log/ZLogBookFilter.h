// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"
#include "ZSpace/log/ZLogLevel.h"

#include <functional>

namespace ZSpace {

/// A book that passes on only some records to another book.
///
///     ZRef<ZLogBook> errors(new ZLogBookFilter(file, ZLogLevel::Error));
///     errors->add(ZLogRecord() << ZLogLevel::Info << "not written");
///     errors->add(ZLogRecord() << ZLogLevel::Error << "written");
///
/// Records without a level count as `ZLogLevel::Info`. Everything but `add` is forwarded unchanged: the trail of last
/// errors is that of the other book, and so are the records that report errors.
///
/// May be used from any thread if the other book and the predicate may.
class ZLogBookFilter : public ZLogBook {
public:
    /// Whether a record is to be passed on.
    using Predicate = std::function<bool(const ZLogRecord& record)>;

    /// Passes on records of at least this level. `book` must not be empty.
    ZLogBookFilter(ZRef<ZLogBook> book, ZLogLevel least);
    /// Passes on records for which `predicate` returns true. `add` propagates its exceptions.
    ZLogBookFilter(ZRef<ZLogBook> book, Predicate predicate);
    ~ZLogBookFilter() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    void setLastError(int op, const char* caller, const char* callee, int result, const char* text) override;
    bool getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread) override;
    Errors getLastThreadErrors(pthread_t thread) override;
    Errors getLastOpErrors(int op) override;
    Errors getLastErrors() override;
    bool hasLastError(int op, pthread_t thread) override;
    void clearLastError(int op, pthread_t thread) override;
    bool isInactive() override;
    bool getSessionTransferLog(ZGStr<wchar_t>& out) override;

private:
    ZRef<ZLogBook> m_book;
    Predicate m_isWanted;
};

} // namespace ZSpace
