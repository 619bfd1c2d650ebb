// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLoggable.h"

#include "ZSpace/log/detail/BookLock.h"
#include "ZSpace/log/detail/DebugLog.h"
#include "ZSpace/log/detail/LentBook.h"
#include "ZSpace/log/detail/LogLine.h"
#include "ZSpace/log/detail/WholeWrite.h"

#include <cstdio>
#include <mutex>
#include <utility>

namespace ZSpace {

namespace {

void echo(const ZLogRecord& record)
{
    detail::LogLine line;
    line.append(detail::linePrefix());
    line.append(' ');
    for (const ZLogRecord::Item& item : record) {
        const long before = line.length();
        line.append(item);
        if (line.length() > before)
            line.append('\t');
    }
    line.append("\n", 2); // null-terminated
    const detail::SignalShield shield;
    std::fputs(line.data(), stderr);
}

} // namespace

thread_local constinit detail::LentBook detail::t_lentBook;

ZLoggable::ZLoggable()
    : m_logBook(new ZLogBookDummy)
{
}

ZLoggable::~ZLoggable() = default;

// NOLINTNEXTLINE(performance-unnecessary-value-param): overriders may keep it
void ZLoggable::onLogBookAttached(ZRef<ZLogBook>) { }

void ZLoggable::onLogBookDetached() { }

void ZLoggable::writeStream(unsigned char tag, int number, const void* data, long length)
{
    if (m_logBook)
        m_logBook->writeStream(tag, number, data, length);
}

void ZLoggable::attachLogBook(ZRef<ZLogBook> book)
{
    exchangeBook(book);
    onLogBookAttached(std::move(book));
}

void ZLoggable::detachLogBook()
{
    exchangeBook({});
    onLogBookDetached();
}

/// The previous book may be destroyed here, while no lock is held.
void ZLoggable::exchangeBook(ZRef<ZLogBook> book)
{
    const std::lock_guard guard(detail::BookLock::instance());
    std::swap(m_logBook, book);
}

void ZLoggable::addLogRecord(const ZLogRecord& record)
{
    const bool isLent = detail::t_lentBook.borrower == this;
    ZLogBook* const book = isLent ? std::exchange(detail::t_lentBook, {}).book : m_logBook.get();
    if (book)
        book->add(record);
    if (debugLogEnabled)
        echo(record);
}

void ZLoggable::setLastError(int op, const char* caller, const char* callee, int result, const char* text)
{
    if (m_logBook)
        m_logBook->setLastError(op, caller, callee, result, text);
}

void ZLoggable::setLastError(const char* caller, const char* callee, int result, const char* text)
{
    if (m_logOp != 0)
        setLastError(m_logOp, caller, callee, result, text);
}

bool ZLoggable::getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread)
{
    return m_logBook && m_logBook->getLastError(out, op, thread);
}

ZLogBook::Errors ZLoggable::getLastThreadErrors(pthread_t thread)
{
    return m_logBook ? m_logBook->getLastThreadErrors(thread) : ZLogBook::Errors();
}

ZLogBook::Errors ZLoggable::getLastOpErrors(int op)
{
    return m_logBook ? m_logBook->getLastOpErrors(op) : ZLogBook::Errors();
}

ZLogBook::Errors ZLoggable::getLastErrors()
{
    return m_logBook ? m_logBook->getLastErrors() : ZLogBook::Errors();
}

bool ZLoggable::hasLastError(int op, pthread_t thread)
{
    return m_logBook && m_logBook->hasLastError(op, thread);
}

void ZLoggable::clearLastError(int op, pthread_t thread)
{
    if (m_logBook)
        m_logBook->clearLastError(op, thread);
}

void ZLoggable::writeStream(unsigned char tag, int number, const TZBinary<unsigned char>& data)
{
    writeStream(tag, number, data.Data(), static_cast<long>(data.Length()));
}

ZGStr<char> ZLoggable::getLogThreadId()
{
    return ZGStr<char>(detail::threadId());
}

} // namespace ZSpace
