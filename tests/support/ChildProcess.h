// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <string>

namespace ZSpace::Testing {

/// How a child process ended, and its output.
struct Outcome {
    bool hasExited = false; ///< exited, not killed by a signal
    int status = -1; ///< its exit status, or the signal that killed it
    std::string standardOutput;
    std::string standardError;
};

/// Runs `work` in a forked child and returns its outcome. The exit status is the return value of `work`;
/// standard output and error are files, which `work` may replace.
Outcome runInChild(const std::function<int()>& work);

/// Waits until `condition` holds, at most `seconds`.
/// @return whether it held in time.
bool waitUntil(const std::function<bool()>& condition, double seconds = 20);

} // namespace ZSpace::Testing
