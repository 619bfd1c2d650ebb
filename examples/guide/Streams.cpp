// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"

#include <iostream>

int main()
{
    ZSpace::ZIOGFile<> file;
    if (file.open("notes.txt", ZSpace::ZIOGFile<>::ModeWrite) != 0)
        return 1;
    file.write("one line\n", -1); // -1: up to the terminator
    const bool isWritten = file.flush() == 0; // `close` does not tell
    std::cout << "size " << file.Size() << (isWritten ? ", written\n" : ", lost\n");
    file.close();
}
