// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/core/ZRef.h"

#include <algorithm>
#include <iostream>

using namespace ZSpace;

struct Shape {
    virtual ~Shape() = default;
    [[nodiscard]] virtual int corners() const = 0;
};

struct Square : Shape {
    [[nodiscard]] int corners() const override { return 4; }
};

int main()
{
    // Elements stay where they are while the list grows.
    ZListing<int> numbers;
    const int* const first = numbers.add(7);
    for (int i = 8; i < 12; ++i)
        numbers.add(i);
    std::cout << *first << " is at " << numbers.il_find(7) << ", 11 at " << numbers.il_find(11) << '\n';
    std::cout << std::count_if(numbers.begin(), numbers.end(), [](int n) { return n % 2 == 0; }) << " even\n";

    // By key: `at`, `find` and `get`. The operator `[]` takes a position.
    ZMap<int, const char*> names;
    names.add(404, "Not Found");
    names.add(200, "OK");
    std::cout << names.at(200) << ", " << names[0].second << ", " << (names.find(500) ? "known" : "unknown")
              << '\n';

    // A handle converts to one of a base, and back with a check.
    const ZRef<Shape> shape = makeRef<Square>();
    if (const ZRef<Square> square = dynamicRefCast<Square>(shape); square != nullptr)
        std::cout << "a square with " << square->corners() << " corners\n";
}
