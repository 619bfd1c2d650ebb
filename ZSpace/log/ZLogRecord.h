// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/ZStrToken.h"
#include "ZSpace/value/TZValue.h"
#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"

#include <memory>
#include <utility>

namespace ZSpace {

/// One log entry: an ordered list of typed values. The log book that receives it decides how they are
/// printed.
///
///     book->add(ZLogRecord() << "opened" << path << 42);
///
/// A record stores a copy of each value, except that of a C string it stores only the pointer: the characters
/// must stay alive and unchanged for as long as the record, or a book that keeps it, may be read. Copies of a
/// record share their values. Self-assignment empties a record.
///
/// Each thread keeps a few blocks of its finished records, so that the next record need not allocate.
///
/// A record is filled by one thread; several threads may release shared values. Adding throws
/// `std::bad_alloc` and leaves the record unchanged if allocation fails.
class ZLogRecord {
public:
    /// One value of a record.
    using Item = ZRef<TZValueBase<ZTypeId>>;

    ZLogRecord() noexcept = default;
    ZLogRecord(const ZLogRecord& other);
    ZLogRecord(ZLogRecord&& other) noexcept = default;
    ZLogRecord& operator=(const ZLogRecord& other);
    ZLogRecord& operator=(ZLogRecord&& other) noexcept = default;
    ~ZLogRecord();

    /// The number of values.
    [[nodiscard]] long Count() const noexcept { return m_items.Count(); }

    /// Returns a new reference to the value at `index`. A negative index counts from the end; an index out of range is
    /// clamped to the first or last value. Precondition: the record is not empty.
    [[nodiscard]] Item itemAt(long index) const;

    /// The values from first to last, without new references to them.
    [[nodiscard]] auto begin() const noexcept { return m_items.begin(); }
    [[nodiscard]] auto end() const noexcept { return m_items.end(); }

    /// Appends one value. The usual promotions and conversions apply: an unscoped enumeration is an `int`.
    ZLogRecord& add(bool value) { return append(value); }
    ZLogRecord& add(unsigned char value) { return append(value); }
    ZLogRecord& add(signed char value) { return append(value); }
    ZLogRecord& add(unsigned short value) { return append(value); }
    ZLogRecord& add(short value) { return append(value); }
    ZLogRecord& add(unsigned int value) { return append(value); }
    ZLogRecord& add(int value) { return append(value); }
    ZLogRecord& add(unsigned long long value) { return append(value); }
    ZLogRecord& add(long long value) { return append(value); }
    ZLogRecord& add(float value) { return append(value); }
    ZLogRecord& add(double value) { return append(value); }
    ZLogRecord& add(char value) { return append(value); }
    ZLogRecord& add(wchar_t value) { return append(value); }
    ZLogRecord& add(const char* value) { return append(value); }
    ZLogRecord& add(const wchar_t* value) { return append(value); }
    ZLogRecord& add(const ZGStr<char>& value) { return append(value); }
    ZLogRecord& add(const ZGStr<wchar_t>& value) { return append(value); }
    ZLogRecord& add(const ZTime& value) { return append(value); }
    ZLogRecord& add(const ZGUID& value) { return append(value); }
    ZLogRecord& add(const TZValueBase<ZTypeId>& value)
    {
        auto item = std::make_unique<Item>(); // first: if this fails, there is no value to leak
        *item = Item(new TZValueBase<ZTypeId>(value));
        return appendItem(std::move(item));
    }
    /// `long` has no kind of its own and is stored as `long long`.
    ZLogRecord& add(long value) { return append(static_cast<long long>(value)); }
    ZLogRecord& add(unsigned long value) { return append(static_cast<unsigned long long>(value)); }
    /// Deleted: would convert to `bool`.
    template <typename T>
    ZLogRecord& add(const T*) = delete;
    /// Deleted: would convert to a pointer to characters that may change or lack a terminator. Use `<<`.
    template <typename T>
    ZLogRecord& add(const ZMStr<T>&) = delete;
    template <typename T>
    ZLogRecord& add(const ZStrToken<T>&) = delete;

    /// As `add`. The characters of a builder or a view are copied into a string value.
    template <typename T, typename Record = ZLogRecord>
    requires requires(Record& record, const T& value) { record.add(value); }
    ZLogRecord& operator<<(const T& value) { return add(value); }
    ZLogRecord& operator<<(const ZMStr<char>& characters) { return add(ZGStr<char>(characters)); }
    ZLogRecord& operator<<(const ZMStr<wchar_t>& characters) { return add(ZGStr<wchar_t>(characters)); }
    ZLogRecord& operator<<(const ZStrToken<char>& characters) { return add(ZGStr<char>(characters)); }
    ZLogRecord& operator<<(const ZStrToken<wchar_t>& characters) { return add(ZGStr<wchar_t>(characters)); }

private:
    template <typename T>
    ZLogRecord& append(const T& value);
    ZLogRecord& appendItem(std::unique_ptr<Item> item);

    ZList<Item> m_items;
};

} // namespace ZSpace
