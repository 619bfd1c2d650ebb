// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/SystemLog.h"

#include <algorithm>
#include <cstring>
#include <syslog.h>

namespace ZSpace::Host {

// syslog(3) has one connection per process and no templates; its levels have the same numbers.
struct SystemLogClient { };
struct SystemLogMessage { };

namespace {
SystemLogClient g_client;
SystemLogMessage g_message;
} // namespace

SystemLogClient* openSystemLog(const char* ident, CopyToStandardError copy) noexcept
{
    // syslog keeps the pointer, so the copy is never freed: another thread may still be using an earlier one.
    // If `ident` is null, messages carry the program's name.
    const char* const sender = ident ? strdup(ident) : nullptr;
    openlog(sender, copy == CopyToStandardError::Yes ? LOG_PERROR : 0, LOG_USER);
    return &g_client; // NOLINT(clang-analyzer-unix.Malloc): see above
}

SystemLogMessage* newSystemLogMessage() noexcept
{
    return &g_message;
}

void writeSystemLog(SystemLogClient*, SystemLogMessage*, int level, const char* text) noexcept
{
    syslog(std::clamp(level, LOG_EMERG, LOG_DEBUG), "%s", text);
}

} // namespace ZSpace::Host
