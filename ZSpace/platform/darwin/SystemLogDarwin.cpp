// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/SystemLog.h"

#include <algorithm>
#include <asl.h>
#include <cstdint>

// Deprecated in favor of os_log, but readers of this program's messages look for them here.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace ZSpace::Host {

namespace {

// Conversions from our opaque types to the system's.

aslclient native(SystemLogClient* client)
{
    return reinterpret_cast<aslclient>(client);
}

aslmsg native(SystemLogMessage* message)
{
    return reinterpret_cast<aslmsg>(message);
}

} // namespace

SystemLogClient* openSystemLog(const char* ident, CopyToStandardError copy) noexcept
{
    const std::uint32_t options = copy == CopyToStandardError::Yes ? ASL_OPT_STDERR : 0;
    // `ident` is the facility; the sender stays the program's name.
    return reinterpret_cast<SystemLogClient*>(asl_open(nullptr, ident, options));
}

SystemLogMessage* newSystemLogMessage() noexcept
{
    return reinterpret_cast<SystemLogMessage*>(asl_new(ASL_TYPE_MSG));
}

void writeSystemLog(SystemLogClient* client, SystemLogMessage* message, int level, const char* text) noexcept
{
    asl_log(native(client), native(message), std::clamp(level, ASL_LEVEL_EMERG, ASL_LEVEL_DEBUG), "%s", text);
}

} // namespace ZSpace::Host
