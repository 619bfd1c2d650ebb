// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookFilter.h"

#include <utility>

namespace ZSpace {

ZLogBookFilter::ZLogBookFilter(ZRef<ZLogBook> book, ZLogLevel least)
    : ZLogBookFilter(std::move(book), [least](const ZLogRecord& record) {
        ZLogLevel level = ZLogLevel::Info;
        getLevel(record, level);
        return level >= least;
    })
{
}

ZLogBookFilter::ZLogBookFilter(ZRef<ZLogBook> book, Predicate predicate)
    : m_book(std::move(book))
    , m_isWanted(std::move(predicate))
{
}

ZLogBookFilter::~ZLogBookFilter() = default;

void ZLogBookFilter::add(const ZLogRecord& record)
{
    if (m_isWanted(record))
        m_book->add(record);
}

void ZLogBookFilter::writeStream(unsigned char tag, int number, const void* data, long length)
{
    m_book->writeStream(tag, number, data, length);
}

void ZLogBookFilter::setLastError(
    int op, const char* caller, const char* callee, int result, const char* text)
{
    m_book->setLastError(op, caller, callee, result, text);
}

bool ZLogBookFilter::getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread)
{
    return m_book->getLastError(out, op, thread);
}

ZLogBook::Errors ZLogBookFilter::getLastThreadErrors(pthread_t thread)
{
    return m_book->getLastThreadErrors(thread);
}

ZLogBook::Errors ZLogBookFilter::getLastOpErrors(int op)
{
    return m_book->getLastOpErrors(op);
}

ZLogBook::Errors ZLogBookFilter::getLastErrors()
{
    return m_book->getLastErrors();
}

bool ZLogBookFilter::hasLastError(int op, pthread_t thread)
{
    return m_book->hasLastError(op, thread);
}

void ZLogBookFilter::clearLastError(int op, pthread_t thread)
{
    m_book->clearLastError(op, thread);
}

bool ZLogBookFilter::isInactive()
{
    return m_book->isInactive();
}

bool ZLogBookFilter::getSessionTransferLog(ZGStr<wchar_t>& out)
{
    return m_book->getSessionTransferLog(out);
}

} // namespace ZSpace
