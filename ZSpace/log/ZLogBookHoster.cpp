// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookHoster.h"

#include <exception>
#include <memory>

namespace ZSpace {

ZLogBookHoster::ZLogBookHoster(ZLogBook* b1, ZLogBook* b2, ZLogBook* b3, ZLogBook* b4, ZLogBook* b5,
    ZLogBook* b6, ZLogBook* b7, ZLogBook* b8)
{
    // Owns all books before anything can throw.
    std::unique_ptr<ZLogBook> books[]{std::unique_ptr<ZLogBook>(b1), std::unique_ptr<ZLogBook>(b2),
        std::unique_ptr<ZLogBook>(b3), std::unique_ptr<ZLogBook>(b4), std::unique_ptr<ZLogBook>(b5),
        std::unique_ptr<ZLogBook>(b6), std::unique_ptr<ZLogBook>(b7), std::unique_ptr<ZLogBook>(b8)};
    for (std::unique_ptr<ZLogBook>& book : books) {
        if (book)
            m_books.append(ZRef<ZLogBook>(book.release()));
    }
}

ZLogBookHoster::~ZLogBookHoster() = default;

/// A book that throws does not stop the others. The first exception is rethrown after all have been called.
template <typename Call>
void ZLogBookHoster::forEachBook(Call call)
{
    std::exception_ptr failure;
    for (const ZRef<ZLogBook>& book : m_books) {
        try {
            call(*book.operator->());
        } catch (...) {
            if (!failure)
                failure = std::current_exception();
        }
    }
    if (failure)
        std::rethrow_exception(failure);
}

void ZLogBookHoster::add(const ZLogRecord& record)
{
    forEachBook([&](ZLogBook& book) { book.add(record); });
}

void ZLogBookHoster::writeStream(unsigned char tag, int number, const void* data, long length)
{
    forEachBook([=](ZLogBook& book) { book.writeStream(tag, number, data, length); });
}

void ZLogBookHoster::setLastError(
    int op, const char* caller, const char* callee, int result, const char* text)
{
    ZLogBook::setLastError(op, caller, callee, result, nullptr);
    forEachBook([=](ZLogBook& book) { book.setLastError(op, caller, callee, result, text); });
}

void ZLogBookHoster::clearLastError(int op, pthread_t thread)
{
    ZLogBook::clearLastError(op, thread);
    forEachBook([=](ZLogBook& book) { book.clearLastError(op, thread); });
}

} // namespace ZSpace
