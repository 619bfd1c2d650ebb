// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// An open connection to the system log, and the template that its messages start from. Neither is ever
/// closed.
struct SystemLogClient;
struct SystemLogMessage;

/// Levels as the system log numbers them.
inline constexpr int SystemLogNotice = 5;

enum class CopyToStandardError : bool { No, Yes };

/// Opens the system log with `ident` (copied; null is no name) in front of every message.
SystemLogClient* openSystemLog(const char* ident, CopyToStandardError copy) noexcept;
/// Makes a message template of the plain message type.
SystemLogMessage* newSystemLogMessage() noexcept;
/// Writes `text` as it stands (never as a format). A level outside 0 (emergency) to 7 (debug) counts as the
/// nearer end. May be called from any thread.
void writeSystemLog(SystemLogClient* client, SystemLogMessage* message, int level, const char* text) noexcept;

} // namespace ZSpace::Host
