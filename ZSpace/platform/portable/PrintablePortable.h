// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace ZSpace::Host {

/// Escapes `name` for a line that this process prints: at most 64 bytes, with everything but printable ASCII
/// escaped ("a\nb" becomes "a\x0Ab"). Whoever starts or installs a program or file chooses its name, which
/// must not be able to forge lines or to control a terminal. Longer names are cut and end in "...".
std::string printableName(const char* name);

} // namespace ZSpace::Host
