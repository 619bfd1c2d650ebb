// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// Copies from the current position of the descriptor `from` up to the end of that file to the current
/// position of `to`, the fastest way that the host offers. Retries interrupted calls and continues partial
/// writes.
/// @return 0, or the error number; part of the contents may then have been copied.
[[nodiscard]] int copyContents(int from, int to) noexcept;

} // namespace ZSpace::Host
