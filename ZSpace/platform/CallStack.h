// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace ZSpace::Host {

/// The frames of the calling thread as printable lines, innermost first. Starts at the frame with the return
/// address `caller`, or at the innermost frame if there is none with that address. Never empty.
std::vector<std::string> callStackLines(const void* caller);

} // namespace ZSpace::Host
