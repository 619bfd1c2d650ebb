// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Foundation.h"

// In a file of its own, so that a test program can define this function itself.

namespace ZSpace::NS {

Array searchPathForDirectoriesInDomains(
    SearchPathDirectory directory, SearchPathDomainMask domains, [[maybe_unused]] ExpandTilde expandTilde)
{
    if (directory != SearchPathDirectory::ApplicationSupport || domains != SearchPathDomainMask::MachineWide)
        return Array::arrayWithObjects({});
    return Array::arrayWithObjects({"/Library/Application Support"});
}

} // namespace ZSpace::NS
