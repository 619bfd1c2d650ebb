// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogRecord.h"
#include "ZSpace/string/ZMStr.h"

#include <cstddef>
#include <cstring>
#include <memory>

namespace ZSpace::detail {

/// "Thread[1a03]": the calling thread's number in hexadecimal without leading zeros. The result views
/// thread-local storage.
[[nodiscard]] ZStrToken<char> threadId() noexcept;

/// The beginning of a line: "2026-03-04T05:06:07.089 Thread[1a03]:", the current time in UTC and the calling
/// thread. The result views thread-local storage, which the thread's next call overwrites.
///
/// Reads the clock once. Formats the second and the thread only when they have changed.
[[nodiscard]] ZStrToken<char> linePrefix() noexcept;

/// A line under construction. Up to 1,024 bytes are stored on the stack; longer lines move to the heap.
///
/// Appending throws `std::bad_alloc` if allocation fails.
class LogLine {
public:
    LogLine() noexcept = default;
    LogLine(const LogLine&) = delete; // points into itself
    LogLine& operator=(const LogLine&) = delete;
    ~LogLine() = default;

    void append(const char* characters, long count)
    {
        if (count <= 0)
            return;
        if (count > m_capacity - m_length)
            grow(count);
        std::memcpy(m_characters + m_length, characters, static_cast<std::size_t>(count));
        m_length += count;
    }
    void append(const ZStrToken<char>& characters) { append(characters, characters.Length()); }
    void append(char c) { append(&c, 1); }
    /// Appends what `item->toCString()` returns.
    void append(const ZLogRecord::Item& item);

    /// Appends a whole line: the prefix, each value after a tab, and a line feed.
    void appendRecord(const ZLogRecord& record);

    /// The characters, without a terminator. Invalidated by the next `append`.
    [[nodiscard]] const char* data() const noexcept { return m_characters; }
    [[nodiscard]] long length() const noexcept { return m_length; }

private:
    void appendNarrowed(const wchar_t* characters);
    template <typename Integer>
    void appendInteger(Integer number);
    void appendPrinted(const TZValueBase<ZTypeId>& value);
    void grow(long count);

    static constexpr long s_stackCapacity = 1024;

    char m_stack[s_stackCapacity]; // uninitialized: `m_length` says how much is valid
    char* m_characters = m_stack;
    long m_length = 0;
    long m_capacity = s_stackCapacity;
    std::unique_ptr<char[]> m_heap; // once the line has outgrown the stack
    ZMStr<char> m_printed; // one value; kept so that all values of a line share its buffer
};

} // namespace ZSpace::detail
