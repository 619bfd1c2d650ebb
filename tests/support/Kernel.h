// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/ChildProcess.h"

#include <functional>
#include <string>

/// What tests ask of the kernel to check the product's answers. Each kernel has its own definition.
namespace ZSpace::Testing {

/// The number of the calling thread, asked for afresh.
unsigned int kernelThreadNumber();

/// The file of the running program.
std::string programFile();

/// Runs `work` in a child that is traced from its start on, as under a debugger.
Outcome runTraced(const std::function<int()>& work);

} // namespace ZSpace::Testing
