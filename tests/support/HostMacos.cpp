// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/Host.h"

namespace ZSpace::Testing {

const HostExpectations& host()
{
    static const HostExpectations expectations{
        .applicationSupport = "/Library/Application Support",
        .printedArguments = "(\n    \"-uninstall\",\n    YES\n)",
        .innermostFrame = "0   ",
        .cutCharacter = "\xE2\x88\x9A", // a square root: "%s" assumes Mac Roman
        .forkedChildrenHaveConsole = false,
    };
    return expectations;
}

std::string reasonForMissing(const std::string&)
{
    return {}; // differs between versions of the system
}

void settleIn(const std::filesystem::path&) { }

} // namespace ZSpace::Testing
