// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace ZSpace::Host {

/// `name` as a part of a line that this process prints: at most 64 bytes, in which everything but printable
/// ASCII is escaped ("a\nb" becomes "a\x0Ab"). The name of a program or of a file is chosen by whoever starts
/// or installs it, and must not be able to forge lines or to control a terminal. A name that is too long ends
/// in "...".
std::string printableName(const char* name);

} // namespace ZSpace::Host
