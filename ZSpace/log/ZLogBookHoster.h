// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/log/ZLogBook.h"

namespace ZSpace {

/// A book that forwards every record and every error to several books, in the order of construction.
///
///     class Both : public ZLogBookHoster {
///     public:
///         using ZLogBookHoster::ZLogBookHoster;
///         bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
///     };
///     ZRef<ZLogBook> book(new Both(new ZLogBookFile(L"a.txt"), new ZLogBookFile(L"b.txt")));
///
/// A book that throws does not stop the others: the first exception is rethrown after all have been called.
///
/// The books are called in turn on the thread that logs, and no lock is held meanwhile. A slow book delays only that
/// thread and the books after it, so construct a hoster with its slow books last.
///
/// Each hosted book has its own trail besides the hoster's. The getters read the hoster's trail.
class ZLogBookHoster : public ZLogBook {
public:
    /// Adopts the books; null pointers are skipped. Deletes all books if it throws `std::bad_alloc`.
    explicit ZLogBookHoster(ZLogBook* b1 = nullptr, ZLogBook* b2 = nullptr, ZLogBook* b3 = nullptr,
        ZLogBook* b4 = nullptr, ZLogBook* b5 = nullptr, ZLogBook* b6 = nullptr, ZLogBook* b7 = nullptr,
        ZLogBook* b8 = nullptr);
    ~ZLogBookHoster() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    /// The hoster's own trail and message omit the text; those of the hosted books include it.
    void setLastError(int op, const char* caller, const char* callee, int result, const char* text) override;
    void clearLastError(int op, pthread_t thread) override;

private:
    template <typename Call>
    void forEachBook(Call call);

    ZList<ZRef<ZLogBook>> m_books;
};

} // namespace ZSpace
