// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZValue.h"
#include "ZSpace/value/ZValueArray.h"

#include <iostream>

using namespace ZSpace;
using Value = TZValueBase<ZTypeId>;

int main()
{
    // A name, which comparison ignores and assignment keeps.
    Value answer(std::in_place, 42);
    answer.Name("answer");
    std::cout << answer.Name() << " = " << answer.toCString()
              << (answer == Value(std::in_place, 42) ? " equal\n" : "\n");

    // A value whose kind is known to the compiler.
    ZValue<double, ZTypeId_double> ratio(0.5);
    ratio.Value(ratio.Value() / 2);
    std::cout << ratio.Value() << '\n';

    // An array of values, with checked access.
    ZValueArrayBase array(ZTypeId_int);
    array.ArrayAdd(answer);
    array.ArrayAdd(Value(std::in_place, 43));
    std::cout << array.ArrayItemCount() << " items, the last is " << array.ArrayItem(1).toCString() << '\n';
}
