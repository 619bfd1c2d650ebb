// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"
#include "ZSpace/value/TZValue.h"

#include <iostream>

using namespace ZSpace;
using Value = TZValueBase<ZTypeId>;

int main()
{
    ZList<Value> values;
    values.add(Value(std::in_place, 42));
    values.add(Value(ZGStr<char>("text")));
    values.add(Value(std::in_place, ZTime(2024, 3, 5, 7, 8, 9, 42)));
    for (const Value& value : values)
        std::cout << value.toCString() << (value.Type() == ZTypeId_int ? " (int)\n" : "\n");
}
