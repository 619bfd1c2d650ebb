// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace ZSpace::Testing {

/// What tests expect where hosts differ. Each host has its own definition: HostPosix.cpp (no Foundation),
/// HostGnustep.cpp and HostMacos.cpp.
struct HostExpectations {
    /// The machine-wide Application Support folder of a `PrivateRoot`, seen from its "/".
    std::string applicationSupport;
    /// How the list of "-uninstall" and "YES" prints.
    std::string printedArguments;
    /// A regular expression for the beginning of the line of an innermost frame.
    std::string innermostFrame;
    /// What the console makes of a character's first byte, C3 (hexadecimal), at the end of a text.
    std::string cutCharacter;
};
const HostExpectations& host();

/// The reason of a start at a path where nothing is.
std::string reasonForMissing(const std::string& path);

/// Tells this process that `root` is to be its "/", where Application Support is to be found as `host()`
/// says.
void settleIn(const std::filesystem::path& root);

} // namespace ZSpace::Testing
