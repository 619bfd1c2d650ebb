// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"

#include <iostream>

int main()
{
    const ZSpace::ZGStr<char> line("color = blue"); // owns its characters
    const ZSpace::ZStrToken<char> name = line.left(line.indexOf(' ')); // a view of them
    ZSpace::ZMStr<char> text; // builds a string
    text << name << " ends at " << name.size() << " of " << line.size();
    std::cout << text << '\n';
}
