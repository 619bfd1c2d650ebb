// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/SystemLog.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <syslog.h>

namespace ZSpace::Host {

// syslog(3) has one connection per process and no templates; its levels have the same numbers.
struct SystemLogClient {
    char* ident;
};
struct SystemLogMessage { };

namespace {
SystemLogClient g_client{nullptr};
SystemLogMessage g_message;
} // namespace

SystemLogClient* openSystemLog(const char* ident, CopyToStandardError copy) noexcept
{
    // syslog keeps the pointer, so the text must live as long as the process. One that is replaced is left
    // alone: another thread may be using it.
    g_client.ident = strdup(ident ? ident : "");
    openlog(g_client.ident, copy == CopyToStandardError::Yes ? LOG_PERROR : 0, LOG_USER);
    return &g_client;
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
