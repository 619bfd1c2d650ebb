// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZTransferLog.h"

#include "ZSpace/log/detail/BookLock.h"
#include "ZSpace/log/detail/LentBook.h"

#include <atomic>
#include <mutex>
#include <utility>

namespace ZSpace {

ZTransferLog* theLog = nullptr;

namespace {

/// A transfer log that is never destroyed, because another thread may still use it when it is turned off.
struct ImmortalLog {
    ZTransferLog log;
    ImmortalLog* next = nullptr;
};
std::atomic<ImmortalLog*> s_logs{nullptr}; // all of them, so that leak checkers stay quiet

ZTransferLog& newLog()
{
    auto* const added = new ImmortalLog;
    added->next = s_logs.load();
    while (!s_logs.compare_exchange_weak(added->next, added)) { }
    return added->log;
}

ZTransferLog* currentLog() noexcept
{
    const std::lock_guard guard(detail::BookLock::instance().stripe());
    return theLog;
}

ZTransferLog* exchangeLog(ZTransferLog* log) noexcept
{
    const std::lock_guard guard(detail::BookLock::instance());
    return std::exchange(theLog, log);
}

/// Makes the calling thread's next record through a loggable go to a given book.
class Loan {
public:
    Loan(const ZLoggable& borrower, ZLogBook& book) noexcept
        : m_outer(std::exchange(detail::t_lentBook, {&borrower, &book}))
    {
    }
    Loan(const Loan&) = delete; // a scope
    Loan& operator=(const Loan&) = delete;
    ~Loan() { detail::t_lentBook = m_outer; }

private:
    detail::LentBook m_outer; // of an outer line that is not finished yet
};

} // namespace

/// `theLog` and a shared reference to its book, taken at the same moment. The book lives at least as long as this, even
/// if another thread exchanges or detaches it.
struct ZTransferLog::Channel {
    Channel()
        : Channel(
            std::lock_guard(detail::BookLock::instance().stripe())) // unlocked again after the initialization
    {
    }
    /// Whether the book takes records. Aborts with a report if there is a log without a book.
    [[nodiscard]] bool isOn() const { return log && !book->isInactive(); }

    /// Releases the book that was attached to a log which another thread has meanwhile turned off.
    static void takeBack(ZTransferLog& log, const ZRef<ZLogBook>& book)
    {
        ZRef<ZLogBook> released; // destroyed after unlocking
        const std::lock_guard guard(detail::BookLock::instance());
        if (theLog != &log && log.m_logBook.get() == book.get())
            std::swap(released, log.m_logBook);
    }

    ZTransferLog* log;
    ZRef<ZLogBook> book;

private:
    explicit Channel(const std::lock_guard<detail::BookLock::Stripe>&)
        : log(theLog)
        , book(bookOf(log))
    {
    }
    static ZRef<ZLogBook> bookOf(const ZTransferLog* log)
    {
        if (log)
            return log->m_logBook;
        return {};
    }
};

ZTransferLog::~ZTransferLog() = default;

void ZTransferLog::useLogBook(ZRef<ZLogBook> book)
{
    if (!book) {
        if (ZTransferLog* const log = exchangeLog(nullptr))
            log->detachLogBook();
    } else if (ZTransferLog* const log = currentLog()) {
        log->attachLogBook(book);
        Channel::takeBack(*log, book);
    } else {
        ZTransferLog& created = newLog();
        created.attachLogBook(std::move(book));
        if (ZTransferLog* const other = exchangeLog(&created))
            other->detachLogBook(); // another thread has created it meanwhile
    }
}

bool ZTransferLog::log(const char* text)
{
    const Channel channel;
    if (!channel.isOn())
        return false;
    const Loan loan(*channel.log, *channel.book);
    channel.log->addLogRecord(createLogRecord() << text);
    return true;
}

bool ZTransferLog::isOn()
{
    return Channel().isOn();
}

bool ZTransferLog::isInactive()
{
    return m_logBook->isInactive();
}

} // namespace ZSpace
