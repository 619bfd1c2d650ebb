// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBook.h"

#include "ZSpace/log/detail/ForkSafety.h"
#include "ZSpace/string/ZMStr.h"

#include <mutex>
#include <utility>

namespace ZSpace {

namespace {

/// Selects the entries that match an operation and a thread.
class Selection {
public:
    Selection(int op, pthread_t thread) noexcept
        : m_op(op)
        , m_thread(thread)
    {
    }
    [[nodiscard]] bool matches(const ZRef<ZLogLastError>& error) const noexcept
    {
        return (m_op == 0 || error->op() == m_op) && (m_thread == pthread_t{} || error->thread() == m_thread);
    }

private:
    int m_op;
    pthread_t m_thread;
};

ZGStr<char> setErrorMessage(int op, const char* caller, const char* callee, int result, const char* text)
{
    ZMStr<char> message(128);
    message << "SetLastError(" << op << "): [" << caller << "] has invoked [" << callee
            << "] which returned: " << result;
    if (text)
        message << " - " << text;
    return ZGStr<char>(message);
}

ZGStr<char> clearErrorMessage(int op)
{
    ZMStr<char> message(32);
    message << "ClearLastError(" << op << ")";
    return ZGStr<char>(message);
}

template <typename Predicate>
ZLogBook::Errors selected(const ZLogBook::Errors& trail, Predicate isWanted)
{
    ZLogBook::Errors errors;
    for (const ZRef<ZLogLastError>& error : trail) {
        if (isWanted(error))
            errors.append(error);
    }
    return errors;
}

} // namespace

ZLogBook::ZLogBook()
{
    detail::enterForkSafety(m_lock);
}

ZLogBook::~ZLogBook()
{
    detail::leaveForkSafety(m_lock);
}

void ZLogBook::setLastError(int op, const char* caller, const char* callee, int result, const char* text)
{
    const ZRef<ZLogLastError> error(new ZLogLastError(op, caller, callee, result, text));
    {
        const std::lock_guard guard(m_lock);
        m_trail.append(error);
    }
    add(create() << setErrorMessage(op, caller, callee, result, text));
}

bool ZLogBook::getLastError(ZRef<ZLogLastError>& out, int op, pthread_t thread)
{
    const Selection selection(op, thread);
    const std::lock_guard guard(m_lock);
    for (long i = m_trail.Count() - 1; i >= 0; --i) {
        if (selection.matches(m_trail[i])) {
            out = m_trail[i];
            return true;
        }
    }
    return false;
}

ZLogBook::Errors ZLogBook::getLastThreadErrors(pthread_t thread)
{
    const std::lock_guard guard(m_lock);
    return selected(m_trail, [=](const ZRef<ZLogLastError>& error) { return error->thread() == thread; });
}

ZLogBook::Errors ZLogBook::getLastOpErrors(int op)
{
    const std::lock_guard guard(m_lock);
    return selected(m_trail, [=](const ZRef<ZLogLastError>& error) { return error->op() == op; });
}

ZLogBook::Errors ZLogBook::getLastErrors()
{
    const std::lock_guard guard(m_lock);
    return m_trail;
}

bool ZLogBook::hasLastError(int op, pthread_t thread)
{
    ZRef<ZLogLastError> ignored;
    return ZLogBook::getLastError(ignored, op, thread);
}

void ZLogBook::clearLastError(int op, pthread_t thread)
{
    const Selection selection(op, thread);
    bool hasRemoved = false;
    {
        // In linear time, because threads that log may be waiting for the lock.
        const std::lock_guard guard(m_lock);
        long kept = 0;
        for (ZRef<ZLogLastError>& entry : m_trail) {
            if (!selection.matches(entry))
                std::swap(m_trail[kept++], entry);
        }
        hasRemoved = kept < m_trail.Count();
        while (m_trail.Count() > kept)
            static_cast<void>(m_trail.takeLast());
    }
    if (hasRemoved)
        add(create() << clearErrorMessage(op));
}

bool ZLogBook::isInactive()
{
    return false;
}

bool ZLogBook::getLastErrorString(ZGStr<wchar_t>& out)
{
    const Errors errors = getLastErrors();
    for (const ZRef<ZLogLastError>& error : errors)
        out << error->text() << ZGStr<wchar_t>::s_lineBreak;
    return errors.Count() > 0;
}

void ZLogBook::writeStream(unsigned char tag, int number, const TZBinary<unsigned char>& data)
{
    writeStream(tag, number, data.Data(), static_cast<long>(data.Length()));
}

ZLogBook& ZLogBook::operator<<(const ZLogRecord&)
{
    return *this;
}

void ZLogBookDummy::add(const ZLogRecord&) { }

void ZLogBookDummy::writeStream(unsigned char, int, const void*, long) { }

bool ZLogBookDummy::getSessionTransferLog(ZGStr<wchar_t>&)
{
    return false;
}

} // namespace ZSpace
