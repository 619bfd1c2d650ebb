// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>

namespace ZSpace::Host {

/// Opens `path` like `fopen` with one of its six modes ("r", "w", "a", each with or without "+"; a "b" changes nothing),
/// with a close-on-exec descriptor: programs that the process starts do not inherit it.
/// @return the stream; null on failure, with the reason in `errno`.
[[nodiscard]] std::FILE* openFileStream(const char* path, const char* mode) noexcept;

} // namespace ZSpace::Host
