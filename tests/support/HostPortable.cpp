// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/Host.h"

namespace ZSpace::Testing {

const HostExpectations& host()
{
    static const HostExpectations expectations{
        .applicationSupport = "/Library/Application Support",
        .printedArguments = "(\"-uninstall\", YES)",
        .innermostFrame = "0   ",
        .cutCharacter = "\xC3",
        .forkedChildrenHaveConsole = true,
    };
    return expectations;
}

std::string reasonForMissing(const std::string& path)
{
    return "Couldn't launch \"" + path + "\": No such file or directory (error 2)";
}

void settleIn(const std::filesystem::path&) { }

} // namespace ZSpace::Testing
