// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>

namespace ZSpace::Testing {

/// What a process executed in user mode.
struct Steps {
    long instructions = 0;
    long systemCalls = 0;
};

/// Runs `prepare` and then `work` in a forked child, `work` one instruction at a time. It must not start threads.
/// @return what `work` executed, without what the measurement itself needs.
Steps stepsOf(const std::function<void()>& prepare, const std::function<void()>& work);

/// Executes a program without arguments in a child, one instruction at a time, from its entry to its end. Must be
/// called in a process that has no other children.
Steps stepsOfProgram(const char* path);

} // namespace ZSpace::Testing
