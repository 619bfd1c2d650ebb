// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/ZSpace.h"

#include <cstdio>

int main()
{
    ZSpace::ZGStr<char> text("consumer ");
    text << 42;
    CNSLogMsg(text);
    return std::puts(text) < 0;
}
