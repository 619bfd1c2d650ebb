// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// Copies everything from the current position of the descriptor `from` up to its end to the current position of
/// `to`, by the fastest way that the host has for these two files. Interrupted calls are repeated, partial writes
/// continued.
/// @return 0, or the error number; `to` then holds the part that was copied until then. Where the two positions are
/// after an error is unspecified.
[[nodiscard]] int copyContents(int from, int to) noexcept;

} // namespace ZSpace::Host
