// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"

#include <pthread.h>

namespace ZSpace {

/// One entry of a log book's trail of last errors: who called what, what that returned, and where.
///
/// Written once, when it is made, and only read afterwards; shared between threads by reference.
class ZLogLastError {
public:
    /// @param op the operation number under which the error is filed; 0 for none.
    /// @param caller the function that made the failing call.
    /// @param callee the function that failed.
    /// @param text further words; null for none.
    ZLogLastError(int op, const char* caller, const char* callee, int result, const char* text);
    /// The same from wide texts, which are kept narrow.
    ZLogLastError(int op, const wchar_t* caller, const wchar_t* callee, int result, const wchar_t* text);

    [[nodiscard]] int op() const noexcept { return m_op; }
    [[nodiscard]] const ZGStr<char>& caller() const noexcept { return m_caller; }
    [[nodiscard]] const ZGStr<char>& callee() const noexcept { return m_callee; }
    [[nodiscard]] int result() const noexcept { return m_result; }
    [[nodiscard]] const ZGStr<char>& text() const noexcept { return m_text; }
    /// The thread that made the entry.
    [[nodiscard]] pthread_t thread() const noexcept { return m_thread; }

    /// For example `Error #-5[gone] in [stat < open]  Thread=1 Op=3`. The text and the operation stand there
    /// only when there are any. The thread shows as 1 for any thread.
    [[nodiscard]] ZGStr<char> toString() const;

private:
    int m_op;
    ZGStr<char> m_caller;
    ZGStr<char> m_callee;
    int m_result;
    ZGStr<char> m_text; // null when none was given
    pthread_t m_thread;
};

} // namespace ZSpace
