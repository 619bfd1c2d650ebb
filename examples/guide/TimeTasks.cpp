// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"

#include <chrono>
#include <iostream>
#include <unordered_set>

using namespace ZSpace;

int main()
{
    // Fields, comparison and difference in seconds.
    const ZTime start(2024, 2, 28, 23, 59, 59, 0);
    const ZTime end(2024, 3, 1, 0, 0, 1, 0);
    std::cout << (start < end) << ' ' << end - start << " s, " << int{end.Month()} << '/' << int{end.Day()}
              << '\n';

    // To and from the standard clock. Arithmetic in UTC belongs there.
    const auto later = std::chrono::sys_time<std::chrono::milliseconds>(start) + std::chrono::minutes(90);
    std::cout << ZTime(later) << '\n';

    // The current time is UTC.
    const ZTime now(true);
    std::cout << (ZTime(std::chrono::system_clock::now()) - now < 60 ? "same minute\n" : "clock set\n");

    // GUIDs are keys.
    std::unordered_set<ZGUID> seen;
    ZGUID id;
    id.generate();
    seen.insert(id);
    std::cout << seen.count(id) << " of " << seen.size() << ", text of " << id.toCString().size()
              << " characters\n";
}
