// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdio>

namespace ZSpace::Host {

/// Like `fopen`, with a close-on-exec descriptor. `mode` is one of the standard ones, such as "r", "wb" or
/// "a+". The position starts at 0, in the append modes too.
/// @return the stream; null on failure, with the reason in `errno`.
[[nodiscard]] std::FILE* openFileStream(const char* path, const char* mode) noexcept;

} // namespace ZSpace::Host
