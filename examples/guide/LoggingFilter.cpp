// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/log/ZLogBookFilter.h"

int main()
{
    const ZSpace::ZRef<ZSpace::ZLogBook> file = ZSpace::makeRef<ZSpace::ZLogBookFile>(L"errors.txt");
    ZSpace::ZLogBookFilter book(file, ZSpace::ZLogLevel::Error);
    book.add(ZSpace::ZLogRecord() << ZSpace::ZLogLevel::Info << "not written");
    book.add(ZSpace::ZLogRecord() << ZSpace::ZLogLevel::Critical << "written");
}
