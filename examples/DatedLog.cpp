// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Logs with levels to a file that is replaced when it is full and at the end of each day:
//
//     dated_log FILE LEVEL

#include "ZSpace/core/ZException.h"
#include "ZSpace/log/ZLogBookFilter.h"
#include "ZSpace/log/ZLogBookRolling.h"

#include <cstdio>

namespace {

using namespace ZSpace;

/// @return false if no level has this name.
bool levelOf(const ZGStr<char>& name, ZLogLevel& level)
{
    return getLevel(ZLogRecord() << static_cast<const char*>(name), level);
}

void work(ZLogBook& log)
{
    log.add(ZLogRecord() << ZLogLevel::Info << "started");
    for (int i = 1; i <= 30; ++i) {
        log.add(ZLogRecord() << ZLogLevel::Debug << "looking at item" << i);
        if (i % 7 == 0)
            log.add(ZLogRecord() << ZLogLevel::Warning << "item" << i << "is a multiple of seven");
    }
    log.add(ZLogRecord() << ZLogLevel::Notice << "done" << 30);
}

} // namespace

int main(int argc, char** argv)
{
    ZLogLevel level{};
    if (argc != 3 || !levelOf(ZGStr<char>(argv[2]).toUpper(), level)) {
        std::printf("usage: dated_log FILE debug|info|notice|warning|error|critical\n");
        return 2;
    }
    const ZGStr<wchar_t> path(argv[1]);
    ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 200;
    limits.isDaily = true;
    limits.oldFileCount = 2;
    try {
        const ZRef<ZLogBook> file = makeRef<ZLogBookRolling>(path, limits);
        work(*makeRef<ZLogBookFilter>(file, level));
    } catch (const ZException&) {
        std::printf("cannot open %s\n", argv[1]);
        return 1;
    }
    return 0;
}
