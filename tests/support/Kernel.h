// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/ChildProcess.h"

#include <functional>
#include <string>

/// Queries of the kernel, to check the product's results. Each kernel has its own definition.
namespace ZSpace::Testing {

/// The id of the calling thread, never cached.
unsigned int kernelThreadNumber();

/// The file of the running program.
std::string programFile();

/// Runs `work` in a child that is traced from the start, as by a debugger.
Outcome runTraced(const std::function<int()>& work);

} // namespace ZSpace::Testing
