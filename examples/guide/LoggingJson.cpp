// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookJson.h"
#include "ZSpace/log/ZLogLevel.h"

int main()
{
    ZSpace::ZLogBookJson book(L"guide.json");
    book.add(ZSpace::ZLogRecord() << ZSpace::ZLogLevel::Warning << "disk almost full" << 97 << true);
}
