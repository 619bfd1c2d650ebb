// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// An open connection to the system log, and the template for its messages. Neither is ever closed.
struct SystemLogClient;
struct SystemLogMessage;

/// The level of a notice; levels run from 0 (emergency) to 7 (debug).
inline constexpr int SystemLogNotice = 5;

enum class CopyToStandardError : bool { No, Yes };

/// Opens the system log with the sender name `ident`, which is copied; null selects the host's default.
SystemLogClient* openSystemLog(const char* ident, CopyToStandardError copy) noexcept;
/// Creates a template of the plain message type.
SystemLogMessage* newSystemLogMessage() noexcept;
/// Writes `text` verbatim; it is never used as a format. Clamps `level` to the valid range. Thread-safe.
void writeSystemLog(SystemLogClient* client, SystemLogMessage* message, int level, const char* text) noexcept;

} // namespace ZSpace::Host
