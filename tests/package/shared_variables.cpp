// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The variables that headers define exist once in a program and the shared library that it uses, and are destroyed once:
// the sanitizer that this is compiled with reports a second time.

#include "ZSpace/ZSpace.h"

#include <cstdio>
#include <memory>

using Handler = ZSpace::ZDelegate2<int, unsigned int, void*>;

namespace {

struct Witness {
    ~Witness() { std::puts("released"); }
};

} // namespace

int main()
{
    const auto handler = ZSpace::zMakeDelegate<Handler>(
        [held = std::make_shared<Witness>()](unsigned int, void*) { return 0; });
    ZSpace::g_setExceptionHandler(ZSpace::ZRef<Handler>(handler->clone()));
    int object = 0;
    ZSpace::z_dbg_add_eventreg(&object);
    std::printf("%ld registration\n", ZSpace::g_eventregistrations.Count());
    ZSpace::z_dbg_rem_eventreg(&object);
}
