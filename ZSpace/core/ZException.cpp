// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZException.h"

namespace ZSpace {

ZException::ZException(unsigned int code, const char* what) noexcept
    : m_code(code)
    , m_what(what)
{
}

ZException::ZException(unsigned int code, const char* what, const char* where) noexcept
    : m_code(code)
    , m_what(what)
    , m_where(where)
{
}

ZException::ZException(unsigned int code, const char* what, const char* where, const char* why) noexcept
    : m_code(code)
    , m_what(what)
    , m_where(where)
    , m_why(why)
{
}

ZException::ZException(const char* what) noexcept
    : m_what(what)
{
}

ZException::ZException(const char* what, const char* where) noexcept
    : m_what(what)
    , m_where(where)
{
}

ZException::ZException(const char* what, const char* where, const char* why) noexcept
    : m_what(what)
    , m_where(where)
    , m_why(why)
{
}

ZException::~ZException() = default;

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): assigning a pointer to itself is harmless
ZException& ZException::operator=(const ZException& other) noexcept
{
    m_what = other.what();
    m_where = other.where();
    m_why = other.why();
    return *this;
}

const char* ZException::what() const noexcept
{
    return m_what;
}

unsigned int ZException::code() noexcept
{
    return m_code;
}

const char* ZException::where() const noexcept
{
    return m_where;
}

const char* ZException::why() const noexcept
{
    return m_why;
}

ZXCNotImplemented::ZXCNotImplemented(const char* where, const char* why) noexcept
    : ZException(s_code, "Not implemented", where, why)
{
}

ZXCNotImplemented::~ZXCNotImplemented() = default;

ZXCOutOfBounds::ZXCOutOfBounds(const char* where, const char* why) noexcept
    : ZException(s_code, "Out of bounds", where, why)
{
}

ZXCOutOfBounds::~ZXCOutOfBounds() = default;

} // namespace ZSpace
