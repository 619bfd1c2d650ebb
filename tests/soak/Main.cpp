// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Runs the loads and prints a table of Markdown: soak [--quick] DIRECTORY. The exit status is 0 if nothing was lost.

#include "tests/soak/Load.h"

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    using namespace ZSpace::Soak;
    const bool isQuick = argc > 1 && std::strcmp(argv[1], "--quick") == 0;
    if (argc != (isQuick ? 3 : 2)) {
        std::fprintf(stderr, "usage: %s [--quick] DIRECTORY\n", argv[0]);
        return 2;
    }
    const Scale scale{std::chrono::seconds(isQuick ? 1 : 60), isQuick ? 100 : 1, argv[argc - 1]};
    int failures = 0;
    std::printf("| load | result | lost | seconds |\n|---|---|---|---|\n");
    for (const auto load :
        {flood, forkStorm, killStorm, fullDiskStorm, longTrail, longList, longStrings, longLine}) {
        std::fflush(stdout); // before it forks
        const auto start = std::chrono::steady_clock::now();
        const Result result = load(scale);
        const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
        std::printf("| %s | %s | %s | %.1f |\n", result.load.c_str(), result.result.c_str(),
            result.lost.c_str(), time.count());
        failures += result.lost != s_nothing;
    }
    return failures == 0 ? 0 : 1;
}
