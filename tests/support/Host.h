// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace ZSpace::Testing {

/// What tests expect where hosts differ. Each host has its own definition: HostPortable.cpp (no Foundation),
/// HostGnustep.cpp and HostMacos.cpp.
struct HostExpectations {
    /// The machine-wide Application Support directory in a `PrivateRoot`.
    std::string applicationSupport;
    /// How the array of "-uninstall" and "YES" prints.
    std::string printedArguments;
    /// A regular expression for the beginning of the innermost frame's line.
    std::string innermostFrame;
    /// What the console prints for an incomplete character, the byte C3 (hexadecimal), at the end of a
    /// message.
    std::string cutCharacter;
    /// Whether a child that was forked while another thread wrote to the console may write there.
    bool forkedChildrenHaveConsole;
};
const HostExpectations& host();

/// The reason of an exception for a launch path that does not exist.
std::string reasonForMissing(const std::string& path);

/// Prepares `root` to be the root directory of this process, with Application Support where `host()` has it.
void settleIn(const std::filesystem::path& root);

} // namespace ZSpace::Testing
