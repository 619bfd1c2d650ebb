// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/SpareValues.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace ZSpace::detail {

namespace {

constexpr std::size_t s_spareCount = 8;
constexpr long s_largestCapacity = 15;

/// The kinds whose content is overwritten by a plain assignment.
constexpr ZTypeId s_plainKinds = ZTypeId_bool | ZTypeId_unsigned_char | ZTypeId_signed_char
    | ZTypeId_unsigned_short | ZTypeId_short | ZTypeId_unsigned_int | ZTypeId_int | ZTypeId_unsigned_long_long
    | ZTypeId_long_long | ZTypeId_float | ZTypeId_double | ZTypeId_char | ZTypeId_wchar_t | ZTypeId_cstring
    | ZTypeId_wcstring | ZTypeId_time | ZTypeId_guid;

/// The kind of a value that can be used again; none otherwise.
ZTypeId reusableKindOf(const ZRef<LogValue>& value) noexcept
{
    if (value.RefCount() != 1 || !value->Name().isEmpty())
        return ZTypeId_none;
    const ZTypeId type = value->Type();
    return (type & s_plainKinds) && value->Content() ? type : ZTypeId_none;
}

struct Spares {
    ~Spares();

    void keep(std::unique_ptr<ZRef<LogValue>> value) noexcept
    {
        if (reusableKindOf(*value) == ZTypeId_none)
            return;
        const std::size_t place = count < s_spareCount ? count++ : replaced++ % s_spareCount;
        values[place] = std::move(value);
    }

    /// The list of a record: empty, or with the one value that it had.
    LogValues list;
    std::array<std::unique_ptr<ZRef<LogValue>>, s_spareCount> values;
    std::size_t count = 0;
    std::size_t replaced = 0; // since the array was full
};

/// Destructors of other thread-local objects may log when the spares are gone.
thread_local constinit bool t_isThreadEnding = false;
thread_local constinit Spares t_spares;

Spares::~Spares()
{
    t_isThreadEnding = true;
}

} // namespace

bool takeSpareRecord(LogValues& values, ZTypeId type) noexcept
{
    if (t_isThreadEnding)
        return false;
    LogValues& list = t_spares.list;
    if (list.Count() != 1 || list[0]->Type() != type)
        return false;
    values.swap(list);
    return true;
}

std::unique_ptr<ZRef<LogValue>> takeSpareValue(ZTypeId type) noexcept
{
    if (t_isThreadEnding)
        return nullptr;
    Spares& spares = t_spares;
    for (std::size_t i = spares.count; i > 0; --i) {
        if ((*spares.values[i - 1])->Type() == type) {
            std::swap(spares.values[i - 1], spares.values[--spares.count]);
            return std::move(spares.values[spares.count]);
        }
    }
    return nullptr;
}

void takeSpareCapacity(LogValues& values) noexcept
{
    if (t_isThreadEnding)
        return;
    LogValues& list = t_spares.list;
    if (list.Count() == 1)
        t_spares.keep(list.takeLast());
    values.swap(list);
}

void recycle(LogValues& values) noexcept
{
    if (t_isThreadEnding || values.Count() == 0)
        return;
    Spares& spares = t_spares;
    const bool isSingle = values.Count() == 1 && reusableKindOf(values[0]) != ZTypeId_none;
    while (!isSingle && values.Count() > 0)
        spares.keep(values.takeLast());
    if (spares.list.Capacity() == 0 && values.Capacity() <= s_largestCapacity)
        values.swap(spares.list);
}

} // namespace ZSpace::detail
