// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBook.h"

namespace ZSpace {

/// A book that hands every record and every error on to several books, in the order given.
///
///     class Both : public ZLogBookHoster {
///     public:
///         using ZLogBookHoster::ZLogBookHoster;
///         bool getSessionTransferLog(ZGStr<wchar_t>&) override { return false; }
///     };
///     ZRef<ZLogBook> book(new Both(new ZLogBookFile(L"a.txt"), new ZLogBookFile(L"b.txt")));
///
/// Each hosted book keeps a trail of its own beside the hoster's; the getters read the hoster's.
class ZLogBookHoster : public ZLogBook {
public:
    /// Takes over the books; null ones are passed over. When memory runs out, every book is destroyed.
    explicit ZLogBookHoster(ZLogBook* b1 = nullptr, ZLogBook* b2 = nullptr, ZLogBook* b3 = nullptr,
        ZLogBook* b4 = nullptr, ZLogBook* b5 = nullptr, ZLogBook* b6 = nullptr, ZLogBook* b7 = nullptr,
        ZLogBook* b8 = nullptr);
    ~ZLogBookHoster() override;

    void add(const ZLogRecord& record) override;
    using ZLogBook::writeStream;
    void writeStream(unsigned char tag, int number, const void* data, long length) override;
    /// The hoster's own trail and message leave the text out; those of the hosted books have it.
    void setLastError(int op, const char* caller, const char* callee, int result, const char* text) override;
    void clearLastError(int op, pthread_t thread) override;

private:
    detail::LogList<ZRef<ZLogBook>> m_books;
};

} // namespace ZSpace
