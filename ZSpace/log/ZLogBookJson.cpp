// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookJson.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/log/detail/JsonLine.h"
#include "ZSpace/log/detail/LineFile.h"
#include "ZSpace/log/detail/LogLine.h"

#include <mutex>

namespace ZSpace {

ZLogBookJson::ZLogBookJson(const wchar_t* path)
    : m_file(std::make_unique<detail::LineFile>())
{
    if (!m_file->open(ZGStr<char>(path ? path : L"")))
        throw ZException("Report file could not be opened", "ZLogBookJson()");
}

ZLogBookJson::~ZLogBookJson() = default;

void ZLogBookJson::add(const ZLogRecord& record)
{
    detail::LogLine line;
    detail::appendJson(line, record);
    const std::lock_guard guard(lock());
    m_file->append(line.data(), line.length());
}

void ZLogBookJson::writeStream(unsigned char, int, const void*, long) { }

bool ZLogBookJson::getSessionTransferLog(ZGStr<wchar_t>&)
{
    return false;
}

} // namespace ZSpace
