// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogLevel.h"

#include <array>
#include <cstddef>
#include <cstring>

namespace ZSpace {

namespace {

constexpr std::array<const char*, 6> s_names{"DEBUG", "INFO", "NOTICE", "WARNING", "ERROR", "CRITICAL"};

} // namespace

const char* nameOf(ZLogLevel level) noexcept
{
    return s_names[static_cast<std::size_t>(level)];
}

bool getLevel(const ZLogRecord& record, ZLogLevel& level) noexcept
{
    if (record.Count() == 0 || (*record.begin())->Type() != ZTypeId_cstring)
        return false;
    const char* const name = *static_cast<const char* const*>((*record.begin())->Content());
    for (std::size_t i = 0; name && i < s_names.size(); ++i) {
        if (std::strcmp(name, s_names[i]) == 0) {
            level = static_cast<ZLogLevel>(i);
            return true;
        }
    }
    return false;
}

} // namespace ZSpace
