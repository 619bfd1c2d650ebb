// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/stream/ZIOGFile.h"
#include "ZSpace/string/ZMStr.h"

#include <iostream>

using namespace ZSpace;
using File = ZIOGFile<>;

int main()
{
    // Append, then read anywhere.
    File file;
    if (const int error = file.open("log.txt", File::ModeAppend)) {
        std::cout << "error " << error << '\n';
        return 1;
    }
    file.write("first\nsecond\n", -1);
    file.moveTo(6);
    char buffer[6];
    const long got = file.read(buffer, sizeof buffer);
    std::cout << ZStrToken<char>(buffer, got) << " at " << file.Position() << " of " << file.Size() << '\n';

    // Read on a worker thread, wait for it, and request the next piece.
    file.moveBegin();
    ZMStr<char> content;
    const auto append =
        zMakeDelegate<File::ReadCallback>([&content](ZStreamAsync<>*, int, long, const char* piece,
                                              long length) { content.append(piece, length); });
    while (!file.EOS() && file.readAsync(append->clone(), 4)) // the stream destroys the clone
        file.waitForRead();
    std::cout << content.Length() << " characters, " << content.count('\n') << " lines\n";
    file.close();
}
