// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "app/FileLogging.h"

namespace ZSpace {

// There is no log book that writes files yet, so lines stay with the system log or the console.

void useLogFolder(const char*) noexcept { }

void enableFileLogging(const char*) noexcept { }

void disableFileLogging() noexcept { }

} // namespace ZSpace
