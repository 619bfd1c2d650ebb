// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Copies a file in blocks and prints its progress:
//
//     file_copier FROM TO

#include "ZSpace/stream/ZIOGFile.h"

#include <array>
#include <cstdio>
#include <cstring>

namespace {

using File = ZSpace::ZIOGFile<>;

int fail(const char* what, const char* path)
{
    std::printf("cannot %s %s\n", what, path);
    return 1;
}

void printProgress(long long done, long long size)
{
    std::printf("%3lld %% of %lld bytes\n", size > 0 ? done * 100 / size : 100, size);
}

int copy(File& from, const char* fromPath, File& to, const char* toPath)
{
    static std::array<char, 64 * 1024> block;
    const long long size = from.Size();
    long long done = 0;
    while (!from.EOS()) {
        const long got = from.read(block.data(), static_cast<long>(block.size()));
        if (got < 0)
            return fail("read", fromPath);
        if (got > 0 && to.write(block.data(), got) != got)
            return fail("write", toPath);
        done += got;
        if (got > 0)
            printProgress(done, size);
    }
    // The last bytes are still buffered, and `close` does not tell whether they could be written.
    if (to.flush() != 0)
        return fail("write", toPath);
    std::printf("copied %lld bytes\n", done);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::printf("usage: file_copier FROM TO\n");
        return 2;
    }
    File from;
    if (const int error = from.open(argv[1], File::ModeRead)) {
        std::printf("cannot open %s: %s\n", argv[1], std::strerror(error));
        return 1;
    }
    File to;
    int status = 1;
    if (const int error = to.open(argv[2], File::ModeWrite))
        std::printf("cannot create %s: %s\n", argv[2], std::strerror(error));
    else
        status = copy(from, argv[1], to, argv[2]);
    to.close(); // the destructors do not
    from.close();
    return status;
}
