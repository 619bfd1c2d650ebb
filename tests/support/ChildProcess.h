// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>

namespace ZSpace::Testing {

/// How a child process ended, and what it wrote.
struct Outcome {
    bool hasExited = false; ///< ended by itself, not by a signal
    int status = -1; ///< its exit status, or the signal that ended it
    std::string standardOutput;
    std::string standardError;
};

/// Runs `work` in a forked child and gives what became of it. The child's exit status is what `work` returns;
/// its standard output and error are files, which `work` may replace.
Outcome runInChild(const std::function<int()>& work);

/// Waits, at most `seconds`, until `condition` holds; false when it never did.
bool waitUntil(const std::function<bool()>& condition, double seconds = 20);

} // namespace ZSpace::Testing
