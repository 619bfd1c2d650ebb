// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

namespace ZSpace::Host {

/// The frames of the calling thread as printable lines, innermost first. Frames inside of the one whose code
/// holds the address `caller` are left out; when it is not found, all frames are kept. Never empty.
std::vector<std::string> callStackLines(const void* caller);

} // namespace ZSpace::Host
