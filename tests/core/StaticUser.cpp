// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZExceptionHandler.h"
#include "ZSpace/core/z_dbg.h"

namespace {

using namespace ZSpace;

/// Uses all globals before `main` and after it. If one did not exist then, the program would crash or the
/// destructor would throw.
class StaticUser {
public:
    StaticUser() noexcept
    {
        z_dbg_add_eventreg(this);
        z_dbg_error("before main", "f", 1, false);
    }
    StaticUser(const StaticUser&) = delete;
    StaticUser& operator=(const StaticUser&) = delete;
    ~StaticUser()
    {
        using Handler = ZDelegate2<int, unsigned int, void*>;
        const ZRef<Handler> handler(zMakeDelegate<Handler>([](unsigned int, void*) { return 0; }).release());
        g_setExceptionHandler(handler);
        z_dbg_rem_eventreg(this);
        z_dbg_check_eventreg(this);
        z_dbg_error("after main", "f", 3, false);
    }
};

const StaticUser s_user;

} // namespace

int main()
{
    z_dbg_error("in main", "f", 2, false);
    return g_eventregistrations.Count() == 1 && !g_ref_Exception_Handler_Delegate ? 0 : 1;
}
