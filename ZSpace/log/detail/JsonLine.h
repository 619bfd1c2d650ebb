// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogRecord.h"
#include "ZSpace/log/detail/LogLine.h"

namespace ZSpace::detail {

/// Appends a record as one JSON object with a line feed. Throws `std::bad_alloc` if allocation fails.
void appendJson(LogLine& line, const ZLogRecord& record);

} // namespace ZSpace::detail
