// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZRef.h"
#include "ZSpace/log/detail/LogList.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/value/TZValue.h"
#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"

#include <concepts>
#include <utility>

namespace ZSpace {

namespace detail {

/// What a record takes as a value by itself; C strings have overloads of their own.
template <typename T>
concept LogItem = std::same_as<T, bool> || std::same_as<T, unsigned char> || std::same_as<T,
    signed char> || std::same_as<T, unsigned short> || std::same_as<T, short> || std::same_as<T,
    unsigned int> || std::same_as<T, int> || std::same_as<T, unsigned long long> || std::same_as<T,
    long long> || std::same_as<T, float> || std::same_as<T, double> || std::same_as<T,
    char> || std::same_as<T, wchar_t> || std::same_as<T, ZGStr<char>> || std::same_as<T,
    ZGStr<wchar_t>> || std::same_as<T, ZTime> || std::same_as<T, ZGUID>;

} // namespace detail

/// One entry of a log: an ordered list of typed values, filled by whoever logs and handed to a log book,
/// which decides what it looks like.
///
///     book->add(ZLogRecord() << "opened" << path << 42);
///
/// Each value is copied into a typed value of its own. Of a C string only the pointer is kept: the text must
/// stay as it is for as long as the record, or a book that holds on to it, may be read. Copies of a record
/// share their values. Assigning a record to itself empties it.
///
/// A record belongs to one thread while it is filled. When memory runs out, adding passes the exception on
/// and leaves the record as it was. A value costs four small allocations and the list's growth.
class ZLogRecord {
public:
    using Item = ZRef<TZValueBase<ZTypeId>>;

    ZLogRecord() noexcept = default;
    ZLogRecord(const ZLogRecord& other);
    ZLogRecord(ZLogRecord&& other) noexcept = default;
    ZLogRecord& operator=(const ZLogRecord& other);
    ZLogRecord& operator=(ZLogRecord&& other) noexcept = default;
    ~ZLogRecord() = default;

    /// The number of values.
    [[nodiscard]] long Count() const noexcept { return m_items.Count(); }

    /// A further reference to the value at `index`. A negative index counts from the end; one out of range
    /// gives the first or the last value. The record must not be empty.
    [[nodiscard]] Item itemAt(long index) const;

    /// The values from first to last, without references of their own.
    [[nodiscard]] auto begin() const noexcept { return m_items.begin(); }
    [[nodiscard]] auto end() const noexcept { return m_items.end(); }

    /// Appends one value.
    template <detail::LogItem T>
    ZLogRecord& add(const T& value)
    {
        return append(Item(new TZValueBase<ZTypeId>(std::in_place, value)));
    }
    ZLogRecord& add(const char* text) { return append(Item(new TZValueBase<ZTypeId>(std::in_place, text))); }
    ZLogRecord& add(const wchar_t* text)
    {
        return append(Item(new TZValueBase<ZTypeId>(std::in_place, text)));
    }
    ZLogRecord& add(const TZValueBase<ZTypeId>& value)
    {
        return append(Item(new TZValueBase<ZTypeId>(value)));
    }
    /// `long` has no kind of its own: it is kept as the `long long` that it fits into.
    ZLogRecord& add(long number) { return add(static_cast<long long>(number)); }
    ZLogRecord& add(unsigned long number) { return add(static_cast<unsigned long long>(number)); }
    /// These turn into a pointer by themselves, to characters that may change or have no terminator.
    template <typename T>
    ZLogRecord& add(const ZMStr<T>&) = delete;
    template <typename T>
    ZLogRecord& add(const ZStrToken<T>&) = delete;

    /// As `add`; the characters of a builder or a view are copied into a string value.
    template <typename T, typename Record = ZLogRecord>
    requires requires(Record& record, const T& value) { record.add(value); }
    ZLogRecord& operator<<(const T& value) { return add(value); }
    ZLogRecord& operator<<(const ZMStr<char>& text) { return add(ZGStr<char>(text)); }
    ZLogRecord& operator<<(const ZMStr<wchar_t>& text) { return add(ZGStr<wchar_t>(text)); }
    ZLogRecord& operator<<(const ZStrToken<char>& text) { return add(ZGStr<char>(text)); }
    ZLogRecord& operator<<(const ZStrToken<wchar_t>& text) { return add(ZGStr<wchar_t>(text)); }

private:
    ZLogRecord& append(Item&& item);

    detail::LogList<Item> m_items;
};

} // namespace ZSpace
