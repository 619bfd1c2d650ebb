// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Reads a file piece by piece on worker threads and counts its lines:
//
//     asynchronous_reader FILE

#include "ZSpace/stream/ZIOGFile.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace {

using namespace ZSpace;

/// What the callback has counted so far. It runs on a worker thread, but never after the main thread has
/// returned from `waitForRead`, so no lock is needed.
struct Totals {
    long pieces = 0;
    long bytes = 0;
    long lines = 0;
    int status = 0;
};

Totals readPieces(ZIOGFile<>& file, long size)
{
    Totals totals;
    const auto count = zMakeDelegate<ZIOGFile<>::ReadCallback>(
        [&totals](ZStreamAsync<>*, int status, long, const char* piece, long length) {
            totals.status = status;
            totals.pieces += length > 0 ? 1 : 0;
            totals.bytes += length;
            totals.lines += std::count(piece, piece + length, '\n');
        });
    while (totals.status == 0 && !file.EOS()) {
        file.readAsync(count->clone(), size); // the worker thread destroys the clone
        // The main thread could do other work here.
        file.waitForRead();
    }
    return totals;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::printf("usage: asynchronous_reader FILE\n");
        return 2;
    }
    ZIOGFile<> file;
    if (const int error = file.open(argv[1], ZIOGFile<>::ModeRead)) {
        std::printf("cannot open %s: %s\n", argv[1], std::strerror(error));
        return 1;
    }
    const Totals totals = readPieces(file, 4096);
    file.close();
    if (totals.status != 0) {
        std::printf("cannot read %s\n", argv[1]);
        return 1;
    }
    std::printf("%ld lines and %ld bytes in %ld pieces\n", totals.lines, totals.bytes, totals.pieces);
    return 0;
}
