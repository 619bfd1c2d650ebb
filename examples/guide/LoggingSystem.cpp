// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookSystem.h"
#include "ZSpace/log/ZLogLevel.h"

int main(int argc, char** argv)
{
    const char* const journal = argc > 1 ? argv[1] : "/run/systemd/journal/socket"; // which is the default
    ZSpace::ZLogBookSystem book("guide", journal);
    book.add(ZSpace::ZLogRecord() << ZSpace::ZLogLevel::Error << "cannot open"
                                  << "/etc/guide.conf");
}
