// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogRecord.h"

#include "ZSpace/log/detail/SpareValues.h"

#include <algorithm>
#include <type_traits>
#include <utility>

namespace ZSpace {

namespace {

using Value = TZValueBase<ZTypeId>;

template <typename T>
void overwrite(const ZLogRecord::Item& item, const T& value) noexcept
{
    *static_cast<T*>(const_cast<void*>(item->Content())) = value;
}

/// A reference, in a heap block of its own, to a value that holds a copy of `value`.
template <typename T>
std::unique_ptr<ZLogRecord::Item> itemOf(const T& value)
{
    if constexpr (std::is_trivially_copyable_v<T>) {
        if (std::unique_ptr<ZLogRecord::Item> spare = detail::takeSpareValue(detail::s_typeIdOf<T>)) {
            overwrite(*spare, value);
            return spare;
        }
    }
    auto item = std::make_unique<ZLogRecord::Item>(); // first: if this fails, there is no value to leak
    *item = ZLogRecord::Item(new Value(std::in_place, value));
    return item;
}

} // namespace

ZLogRecord::ZLogRecord(const ZLogRecord& other)
{
    *this = other;
}

ZLogRecord::~ZLogRecord()
{
    detail::recycle(m_items);
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

template <typename T>
ZLogRecord& ZLogRecord::append(const T& value)
{
    if constexpr (std::is_trivially_copyable_v<T>) {
        if (m_items.Capacity() == 0 && detail::takeSpareRecord(m_items, detail::s_typeIdOf<T>)) {
            overwrite(m_items[0], value);
            return *this;
        }
    }
    return appendItem(itemOf(value));
}

template ZLogRecord& ZLogRecord::append(const bool& value);
template ZLogRecord& ZLogRecord::append(const unsigned char& value);
template ZLogRecord& ZLogRecord::append(const signed char& value);
template ZLogRecord& ZLogRecord::append(const unsigned short& value);
template ZLogRecord& ZLogRecord::append(const short& value);
template ZLogRecord& ZLogRecord::append(const unsigned int& value);
template ZLogRecord& ZLogRecord::append(const int& value);
template ZLogRecord& ZLogRecord::append(const unsigned long long& value);
template ZLogRecord& ZLogRecord::append(const long long& value);
template ZLogRecord& ZLogRecord::append(const float& value);
template ZLogRecord& ZLogRecord::append(const double& value);
template ZLogRecord& ZLogRecord::append(const char& value);
template ZLogRecord& ZLogRecord::append(const wchar_t& value);
template ZLogRecord& ZLogRecord::append(const char* const& value);
template ZLogRecord& ZLogRecord::append(const wchar_t* const& value);
template ZLogRecord& ZLogRecord::append(const ZGStr<char>& value);
template ZLogRecord& ZLogRecord::append(const ZGStr<wchar_t>& value);
template ZLogRecord& ZLogRecord::append(const ZTime& value);
template ZLogRecord& ZLogRecord::append(const ZGUID& value);

ZLogRecord& ZLogRecord::appendItem(std::unique_ptr<Item> item)
{
    if (m_items.Capacity() == 0)
        detail::takeSpareCapacity(m_items);
    m_items.adopt(std::move(item));
    return *this;
}

} // namespace ZSpace
