// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/SystemLog.h"

#include <algorithm>
#include <asl.h>
#include <cstdint>

// Superseded, and still there: this is where the program's readers look for its messages.
#pragma clang diagnostic ignored "-Wdeprecated-declarations"

namespace ZSpace::Host {

namespace {

// The handles of the outside are the system's own under another name.

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
    // The text goes where the facility goes: the sender's name stays that of the program.
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
