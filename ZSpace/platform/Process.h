// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace ZSpace::Host {

/// The absolute path of this process's executable; empty if it cannot be determined.
[[nodiscard]] std::string executablePath();

/// The last component of the name that this process was started under.
[[nodiscard]] const char* programName() noexcept;

/// Protects a program whose exit status must not depend on its terminal. Call it once, first thing in `main`:
/// - opens the null device on each of the descriptors 0, 1 and 2 that is closed, so that no file opened later
///    can get one of these numbers and receive what is written to a standard stream;
/// - makes writing to a closed pipe or beyond the file-size limit fail instead of raising a fatal signal.
///    Child programs still get the signal dispositions that this process was started with.
void shieldStandardStreams() noexcept;

} // namespace ZSpace::Host
