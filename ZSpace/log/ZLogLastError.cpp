// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogLastError.h"

#include "ZSpace/string/ZMStr.h"

namespace ZSpace {

ZLogLastError::ZLogLastError(int op, const char* caller, const char* callee, int result, const char* text)
    : m_op(op)
    , m_caller(caller)
    , m_callee(callee)
    , m_result(result)
    , m_thread(pthread_self())
{
    if (text)
        m_text = text;
}

ZLogLastError::ZLogLastError(
    int op, const wchar_t* caller, const wchar_t* callee, int result, const wchar_t* text)
    : m_op(op)
    , m_caller(caller)
    , m_callee(callee)
    , m_result(result)
    , m_thread(pthread_self())
{
    if (text)
        m_text << text;
}

ZGStr<char> ZLogLastError::toString() const
{
    ZMStr<char> line(64);
    line << "Error #" << m_result;
    if (!m_text.isEmpty())
        line << "[" << m_text << "]";
    line << " in [" << m_callee << " < " << m_caller << "] ";
    line << " Thread=" << (m_thread != pthread_t{});
    if (m_op != 0)
        line << " Op=" << m_op;
    return ZGStr<char>(line);
}

} // namespace ZSpace
