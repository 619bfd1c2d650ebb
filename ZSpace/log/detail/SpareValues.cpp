// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/SpareValues.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <new>
#include <pthread.h>
#include <utility>

namespace ZSpace::detail {

namespace {

constexpr std::size_t s_spareCount = 8;
constexpr long s_largestCapacity = 15;

/// The kinds whose content can be overwritten by plain assignment.
constexpr ZTypeId s_plainKinds = ZTypeId_bool | ZTypeId_unsigned_char | ZTypeId_signed_char
    | ZTypeId_unsigned_short | ZTypeId_short | ZTypeId_unsigned_int | ZTypeId_int | ZTypeId_unsigned_long_long
    | ZTypeId_long_long | ZTypeId_float | ZTypeId_double | ZTypeId_char | ZTypeId_wchar_t | ZTypeId_cstring
    | ZTypeId_wcstring | ZTypeId_time | ZTypeId_guid;

/// The kind of a value that can be reused; none otherwise.
ZTypeId reusableKindOf(const ZRef<LogValue>& value) noexcept
{
    if (value.RefCount() != 1 || !value->Name().isEmpty())
        return ZTypeId_none;
    const ZTypeId type = value->Type();
    return (type & s_plainKinds) && value->Content() ? type : ZTypeId_none;
}

struct Spares {
    void keep(std::unique_ptr<ZRef<LogValue>> value) noexcept
    {
        if (reusableKindOf(*value) == ZTypeId_none)
            return;
        const std::size_t place = count < s_spareCount ? count++ : replaced++ % s_spareCount;
        values[place] = std::move(value);
    }

    /// The list of a finished record, either empty or with its only value.
    LogValues list;
    std::array<std::unique_ptr<ZRef<LogValue>>, s_spareCount> values;
    std::size_t count = 0;
    std::size_t replaced = 0; // since the array was full
};

struct ThreadSpares {
    Spares* spares = nullptr;
    bool isUnavailable = false; // the thread is ending, or allocation has failed
};
thread_local constinit ThreadSpares t_own;

/// Frees a thread's spares when the thread ends.
///
/// Uses a key instead of a thread-local object with a destructor, because the C library aborts if it cannot allocate the
/// registration of such a destructor.
class ThreadEnd {
public:
    ThreadEnd() noexcept
        : m_isValid(pthread_key_create(&m_key, end) == 0)
    {
    }
    ThreadEnd(const ThreadEnd&) = delete; // one for the process
    ThreadEnd& operator=(const ThreadEnd&) = delete;
    /// Runs before a plug-in is unloaded, because threads that end later must not call its code.
    ~ThreadEnd()
    {
        if (m_isValid.exchange(false))
            pthread_key_delete(m_key);
    }

    [[nodiscard]] bool free(Spares* spares) const noexcept
    {
        return m_isValid && pthread_setspecific(m_key, spares) == 0;
    }

private:
    static void end(void* spares)
    {
        t_own = {nullptr, true}; // destructors of other thread-local objects may still log
        delete static_cast<Spares*>(spares);
    }

    pthread_key_t m_key{};
    std::atomic<bool> m_isValid;
};

/// Creates the calling thread's spares on first use.
Spares* makeSpares() noexcept
{
    static ThreadEnd s_threadEnd;
    if (t_own.isUnavailable)
        return nullptr;
    std::unique_ptr<Spares> spares(new (std::nothrow) Spares);
    t_own.isUnavailable = !spares || !s_threadEnd.free(spares.get());
    if (!t_own.isUnavailable)
        t_own.spares = spares.release();
    return t_own.spares;
}

/// The calling thread's spares; null if there are none.
Spares* ownSpares() noexcept
{
    Spares* const spares = t_own.spares;
    return spares ? spares : makeSpares();
}

} // namespace

bool takeSpareRecord(LogValues& values, ZTypeId type) noexcept
{
    Spares* const spares = t_own.spares;
    if (!spares || spares->list.Count() != 1 || spares->list[0]->Type() != type)
        return false;
    values.swap(spares->list);
    return true;
}

std::unique_ptr<ZRef<LogValue>> takeSpareValue(ZTypeId type) noexcept
{
    Spares* const spares = t_own.spares;
    for (std::size_t i = spares ? spares->count : 0; i > 0; --i) {
        if ((*spares->values[i - 1])->Type() == type) {
            std::swap(spares->values[i - 1], spares->values[--spares->count]);
            return std::move(spares->values[spares->count]);
        }
    }
    return nullptr;
}

void takeSpareCapacity(LogValues& values) noexcept
{
    Spares* const spares = t_own.spares;
    if (!spares)
        return;
    if (spares->list.Count() == 1)
        spares->keep(spares->list.takeLast());
    values.swap(spares->list);
}

void recycle(LogValues& values) noexcept
{
    if (values.Count() == 0)
        return;
    Spares* const spares = ownSpares();
    if (!spares)
        return;
    const bool isSingle = values.Count() == 1 && reusableKindOf(values[0]) != ZTypeId_none;
    while (!isSingle && values.Count() > 0)
        spares->keep(values.takeLast());
    if (spares->list.Capacity() == 0 && values.Capacity() <= s_largestCapacity)
        values.swap(spares->list);
}

} // namespace ZSpace::detail
