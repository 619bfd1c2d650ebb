// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>
#include <unistd.h>

namespace ZSpace::Testing {

/// For the statement of a death test, which checks standard error: redirects standard output there.
inline void sendOutputToError()
{
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

/// A regular expression for what `std::terminate` prints, with every supported standard library.
inline constexpr const char* s_terminateMessage = "terminat(e called|ing)";

} // namespace ZSpace::Testing
