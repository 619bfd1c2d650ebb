// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <atomic>

namespace ZSpace {

/// 1 if debug lines are written. Set by `CNSInitLog` and never cleared. Declared apart from the front end
/// because `ZLoggable` reads it, too.
extern std::atomic<unsigned char> debugLogEnabled;

} // namespace ZSpace
