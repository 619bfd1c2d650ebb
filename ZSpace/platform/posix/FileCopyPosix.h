// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// `copyContents` with `read` and `write` alone, which work for every kind of file.
[[nodiscard]] int copyByReadingAndWriting(int from, int to) noexcept;

} // namespace ZSpace::Host
