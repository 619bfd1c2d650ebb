// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Uses something of every layer, templates that the library defines, and the version.

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
    char time[ZSpace::ZTime::s_textCapacity];
    wchar_t guid[ZSpace::ZGUID::s_textLength];
    times[0].writeText(time);
    ZSpace::ZGUID().writeText(guid);
    const bool isFound =
        text.indexOf("42") == 9 && text.lastIndexOf('s') == 3 && text.compareIgnoreCase("CONSUMER 42") == 0;
    const bool isRead = ZSpace::ZGStr<wchar_t>("42").toInt32() == 42 && text.count('4') == 1 && guid[0] == '{'
        && time[4] == '-';
    const bool isRight =
        times.Count() == 1 && stream.State() == 0 && ZSpace::ZLogRecord().Count() == 0 && isFound && isRead;
    return std::puts(isRight ? static_cast<const char*>(text) : "wrong") < 0;
}
