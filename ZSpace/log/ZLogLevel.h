// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogRecord.h"

namespace ZSpace {

/// The importance of a record, carried as its first value.
///
///     book->add(ZLogRecord() << ZLogLevel::Warning << "disk almost full" << 97);
///
/// The value is the level's name, a C string, so a book that does not know levels prints it.
enum class ZLogLevel : unsigned char { Debug, Info, Notice, Warning, Error, Critical };

/// "DEBUG", "INFO", "NOTICE", "WARNING", "ERROR" or "CRITICAL".
[[nodiscard]] const char* nameOf(ZLogLevel level) noexcept;

/// The level that `record` begins with.
/// @return false if it begins with something else; `level` is then unchanged.
bool getLevel(const ZLogRecord& record, ZLogLevel& level) noexcept;

/// Appends the name of a level. Makes it the record's level if it is the first value.
inline ZLogRecord& operator<<(ZLogRecord& record, ZLogLevel level)
{
    return record.add(nameOf(level));
}
inline ZLogRecord& operator<<(ZLogRecord&& record, ZLogLevel level)
{
    return record.add(nameOf(level));
}

} // namespace ZSpace
