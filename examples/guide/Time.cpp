// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"

#include <iostream>

int main()
{
    const ZSpace::ZTime time(2024, 3, 5, 7, 8, 9, 42);
    const ZSpace::ZGUID id("{00112233-4455-6677-8899-aabbccddeeff}");
    std::cout << time.toCStringEx() << ' ' << id << '\n';
}
