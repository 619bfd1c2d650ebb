// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/portable/SpawnPortable.h"

namespace ZSpace::Host {

int addCloseFrom(posix_spawn_file_actions_t& actions, int first) noexcept
{
    return posix_spawn_file_actions_addclosefrom_np(&actions, first);
}

} // namespace ZSpace::Host
