// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>

namespace ZSpace::Host {

/// The path of the program file that this process runs, in full; empty where the system will not tell.
[[nodiscard]] std::string executablePath();

/// The last component of the name that this process was started under.
[[nodiscard]] const char* programName() noexcept;

/// Makes sure that nothing which happens to this process's output can end it or spoil it. To be called once,
/// first thing in `main`, by a program whose exit status must not depend on its terminal:
///  - descriptors 0, 1 and 2 are occupied from now on (by the null device, where one was closed), so that no
///    file or pipe opened later can land there and take what is written to a standard stream;
///  - a closed pipe or a file-size limit makes writing fail instead of ending the process. Programs that it
///    starts still get the dispositions that it was started with itself.
void shieldStandardStreams() noexcept;

} // namespace ZSpace::Host
