// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"

#include <pthread.h>

namespace ZSpace {

/// One entry of a log book's trail of last errors: who called what, what it returned, and on which thread.
///
/// Immutable once it is in a trail, so threads may share it.
class ZLogLastError {
public:
    /// @param op the operation number under which the error is filed; 0 for none.
    /// @param caller the function that made the failing call.
    /// @param callee the function that failed.
    /// @param text a description; null for none.
    ZLogLastError(int op, const char* caller, const char* callee, int result, const char* text);
    /// The same from wide strings, which are narrowed to the low 8 bits of each unit.
    ZLogLastError(int op, const wchar_t* caller, const wchar_t* callee, int result, const wchar_t* text);

    /// The operation's number.
    [[nodiscard]] int op() const noexcept { return m_op; }
    /// Who called.
    [[nodiscard]] const ZGStr<char>& caller() const noexcept ZSPACE_LIFETIMEBOUND { return m_caller; }
    /// What failed.
    [[nodiscard]] const ZGStr<char>& callee() const noexcept ZSPACE_LIFETIMEBOUND { return m_callee; }
    /// What it returned.
    [[nodiscard]] int result() const noexcept { return m_result; }
    /// A message.
    [[nodiscard]] const ZGStr<char>& text() const noexcept ZSPACE_LIFETIMEBOUND { return m_text; }
    /// The thread that created the entry.
    [[nodiscard]] pthread_t thread() const noexcept { return m_thread; }

    /// For example `Error #-5[gone] in [stat < open]  Thread=1 Op=3`. An empty text and the operation 0 are
    /// omitted. Every thread is printed as 1.
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
