// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "tests/support/Probes.h"

#include <initializer_list>

namespace ZSpace::Testing {

/// A list of the given numbers.
[[nodiscard]] inline ZList<int> listOf(std::initializer_list<int> numbers)
{
    ZList<int> list;
    for (int number : numbers)
        list.add(number);
    return list;
}

/// A list of the numbers 0 to `n` - 1.
[[nodiscard]] inline ZList<Counted> countedList(int n)
{
    ZList<Counted> list;
    for (int i = 0; i < n; ++i)
        list.add(Counted(i));
    return list;
}

} // namespace ZSpace::Testing
