// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/ZLogBookRolling.h"

int main()
{
    ZSpace::ZLogBookRolling::Limits limits;
    limits.sizeInBytes = 10'000'000;
    limits.isDaily = true;
    limits.oldFileCount = 5;
    ZSpace::ZLogBookRolling book(L"guide.txt", limits);
    book.add(ZSpace::ZLogRecord() << "started" << 3);
}
