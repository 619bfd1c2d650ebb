// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/Host.h"
#include "tests/support/TemporaryFolder.h"

#include <cstdlib>

namespace ZSpace::Testing {

const HostExpectations& host()
{
    static const HostExpectations expectations{
        .applicationSupport = "/Library/ApplicationSupport", // without the space
        .printedArguments = "(\"-uninstall\", YES)",
        .innermostFrame = "[^ ]*\\(", // "path/of/module(name+0x5) [0x7f1816a716e4]"
        .cutCharacter = "", // output ends at the first invalid byte
        .forkedChildrenHaveConsole = false,
    };
    return expectations;
}

std::string reasonForMissing(const std::string& path)
{
    return "NSTask - launch path (" + path + ") not valid";
}

/// GNUstep's own Application Support directory is below /usr, which a private root shares with the host.
void settleIn(const std::filesystem::path& root)
{
    writeFile(root / "tmp/GNUstep.conf", "GNUSTEP_SYSTEM_LIBRARY=/Library\n");
    setenv("GNUSTEP_CONFIG_FILE", "/tmp/GNUstep.conf", 1);
}

} // namespace ZSpace::Testing
