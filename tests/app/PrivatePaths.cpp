// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Replaces, in the test build of the program, the host's directory look-up and the fixed directory of reports. The
// program that is shipped contains neither.

#include "tests/app/PrivatePaths.h"

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/platform/Foundation.h"

#include <cstdlib>

namespace ZSpace::NS {

Array searchPathForDirectoriesInDomains(SearchPathDirectory, SearchPathDomainMask, ExpandTilde)
{
    return Array::arrayWithObjects({String(std::getenv(ZSPACE_PRIVATE_LIBRARY))});
}

} // namespace ZSpace::NS

extern "C" void initLogInPrivateFolder(int flags, int sysLogSwitch, const char* tag, const char*)
{
    CNSInitLog(flags, sysLogSwitch, tag, std::getenv(ZSPACE_PRIVATE_LOGS));
}
