// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <spawn.h>

namespace ZSpace::Host {

/// Makes the child close every descriptor from `first` on.
/// @return 0, or the error number.
[[nodiscard]] int addCloseFrom(posix_spawn_file_actions_t& actions, int first) noexcept;

} // namespace ZSpace::Host
