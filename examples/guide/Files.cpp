// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/TZSysFile.h"

#include <iostream>

using ZSpace::TZSysFile;

int main()
{
    TZSysFile<char>::makeDirectory("backup");
    const bool isThere = TZSysFile<char>::isDirectory("backup");
    std::cout << TZSysFile<char>::getNameOf("/var/log/mine.txt") << ' ' << isThere << '\n';
}
