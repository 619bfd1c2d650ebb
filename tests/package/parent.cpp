// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZGStr.h"

#include <cstdio>

int main()
{
    ZSpace::ZGStr<char> text("parent ");
    text << 42;
    return std::puts(text) < 0;
}
