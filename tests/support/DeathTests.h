// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>
#include <unistd.h>

namespace ZSpace::Testing {

/// For the statement of a death test: sends standard output to where such tests look for messages.
inline void sendOutputToError()
{
    dup2(STDERR_FILENO, STDOUT_FILENO);
}

} // namespace ZSpace::Testing
