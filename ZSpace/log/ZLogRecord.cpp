// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogRecord.h"

#include <algorithm>
#include <utility>

namespace ZSpace {

ZLogRecord::ZLogRecord(const ZLogRecord& other)
{
    *this = other;
}

ZLogRecord& ZLogRecord::operator=(const ZLogRecord& other)
{
    m_items.il_removeAll(); // first: self-assignment empties the record
    for (const Item& item : other)
        m_items.append(item);
    return *this;
}

ZLogRecord::Item ZLogRecord::itemAt(long index) const
{
    if (index < 0)
        index += Count();
    return m_items[std::clamp(index, 0L, Count() - 1)];
}

ZLogRecord& ZLogRecord::appendItem(Item&& item)
{
    m_items.append(std::move(item));
    return *this;
}

} // namespace ZSpace
