// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// The number by which the system's own tools name the calling thread. Costs no system call after a thread's
/// first one; a forked child gets its own number.
[[nodiscard]] unsigned int threadNumber() noexcept;

} // namespace ZSpace::Host
