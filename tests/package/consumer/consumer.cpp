// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Uses something of every layer, and the version.

#include "ZSpace/ZSpace.h"

#include <cstdio>

#if !defined(ZSPACE_ON_PORTABLE) && !defined(ZSPACE_ON_FOUNDATION)
#error "The package does not say which side of the host it was built for"
#endif

static_assert(ZSPACE_VERSION_MAJOR == ZSpace::VersionMajor);

int main()
{
    ZSpace::ZGStr<char> text("consumer ");
    text << 42;
    ZSpace::ZList<ZSpace::ZTime> times;
    times.add(ZSpace::ZTime(true));
    ZSpace::ZIOGFile<> stream;
    try {
        throw ZSpace::ZException("thrown here", "consumer");
    } catch (const ZSpace::ZException&) {
        CNSLogMsg(text);
    }
    const bool isRight = times.Count() == 1 && stream.State() == 0 && ZSpace::ZLogRecord().Count() == 0;
    return std::puts(isRight ? static_cast<const char*>(text) : "wrong") < 0;
}
