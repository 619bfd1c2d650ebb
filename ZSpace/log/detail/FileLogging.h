// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace {

// None of these reports a failure: logging must never stop a program.

/// Creates new report files in `directory` from now on.
void useLogDirectory(const char* directory) noexcept;

/// Sends the lines of the log front end to a new report file whose name begins with `tag` and "_". Changes
/// nothing if that fails.
void enableFileLogging(const char* tag) noexcept;

/// Detaches the report file. It is closed when its last user is done.
void disableFileLogging() noexcept;

} // namespace ZSpace
