// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace {

/// Makes `folder` the folder of new report files. Failures are not reported.
void useLogFolder(const char* folder) noexcept;

/// Sends the lines of the log front end into a new report file whose name begins with `tag` and "_". When
/// that cannot be done, logging stays as it was and nothing is reported: it must never stop a program.
void enableFileLogging(const char* tag) noexcept;

/// Ends what `enableFileLogging` began.
void disableFileLogging() noexcept;

} // namespace ZSpace
