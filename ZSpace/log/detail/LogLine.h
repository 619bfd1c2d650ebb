// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogRecord.h"
#include "ZSpace/string/ZMStr.h"

#include <cstring>

namespace ZSpace::detail {

/// "Thread[1a03]": the calling thread's number in hexadecimal without leading zeros. The text is the thread's
/// own.
[[nodiscard]] ZStrToken<char> threadId() noexcept;

/// What every line begins with: a line feed, the current time in UTC with milliseconds, one blank, the thread
/// and a colon. The line feed ends a line that was cut; whoever needs none leaves it out.
///
/// Costs one look at the clock: second and thread are written anew only when they have changed. The text is
/// the thread's own and stays until it asks again.
[[nodiscard]] ZStrToken<char> linePrefix() noexcept;

/// A line while it is built: on the stack as long as it is short, so that most lines cost no allocation.
class LogLine {
public:
    LogLine() noexcept = default;
    LogLine(const LogLine&) = delete; // lives for one line
    LogLine& operator=(const LogLine&) = delete;
    ~LogLine() = default;

    void append(const ZStrToken<char>& text) noexcept
    {
        const long end = m_length + text.Length();
        if (end > s_shortRoom || !m_long.isEmpty())
            return appendLong(text);
        if (text.Length() > 0)
            std::memcpy(m_short + m_length, text, static_cast<std::size_t>(text.Length()));
        m_length = end;
    }
    void append(char c) noexcept { append(ZStrToken<char>(&c, 1)); }
    /// Appends the text of an item. Texts go straight into the line, other kinds through a builder that the
    /// line keeps.
    void append(const ZLogRecord::Item& item) noexcept;

    /// What was appended so far; until more is.
    [[nodiscard]] ZStrToken<char> text() const noexcept
    {
        return m_long.isEmpty() ? ZStrToken<char>(m_short, m_length) : ZStrToken<char>(m_long);
    }

private:
    void appendLong(const ZStrToken<char>& text) noexcept;

    static constexpr long s_shortRoom = 1024;

    char m_short[s_shortRoom]; // not cleared: `m_length` says what counts
    long m_length = 0;
    ZMStr<char> m_long; // the whole line, once it is too long for the stack
    ZMStr<char> m_printed; // the value at hand
};

} // namespace ZSpace::detail
