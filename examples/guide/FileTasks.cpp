// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"
#include "ZSpace/system/TZSysFile.h"
#include "ZSpace/system/ZAppContext.h"
#include "ZSpace/system/ZSysInfoPaths.h"

#include <iostream>

using namespace ZSpace;
using SysFile = TZSysFile<char>;

int main(int argc, char** argv)
{
    // The program itself.
    const ZAppContext context(argc, argv);
    std::cout << SysFile::getNameOf(ZMStr<char>(context.Path())) << '\n';

    // A file, a copy, a move.
    ZIOGFile<> file;
    if (file.open("a.txt", ZIOGFile<>::ModeWrite) != 0)
        return 1;
    file.write("12345", 5);
    file.close();
    std::cout << SysFile::copyFile("a.txt", "b.txt") << ' ' << SysFile::moveFile("b.txt", "c.txt") << ' '
              << SysFile::sizeOf("c.txt") << ' ' << SysFile::exists("b.txt") << '\n';

    // A directory: names alone, or entries with size and time.
    SysFile::makeDirectory("d");
    SysFile::copyFile("c.txt", "d/e.txt");
    ZList<ZMStr<char>> names;
    SysFile::readDirectory("d", names);
    std::cout << names.Count() << " entry: " << names[0] << '\n';

    // Where things belong on this host.
    std::cout << (ZSysInfoPaths::getTempFolderA().right(1) == "/" ? "ends with /\n" : "no separator\n");
}
