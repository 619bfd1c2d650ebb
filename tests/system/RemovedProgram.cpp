// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Removes its own executable unless called with an argument, then prints its path. Started by a test from a
// private copy.

#include "ZSpace/system/ZAppContext.h"

#include <cstdio>
#include <unistd.h>

int main(int argc, char** argv)
{
    if (argc == 1)
        unlink(argv[0]);
    const ZSpace::ZGStr<char> path(ZSpace::ZAppContext().Path());
    std::fputs(path, stdout);
    return 0;
}
