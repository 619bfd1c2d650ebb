// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/Foundation.h"

#include <iostream>

namespace NS = ZSpace::NS;

int main()
{
    const NS::AutoreleasePool pool;
    const NS::String folder("/Library");
    const NS::String file = folder.stringByAppendingPathComponent("caf\u00E9.txt");
    std::cout << file.UTF8String() << '\n';
}
