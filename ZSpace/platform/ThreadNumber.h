// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// The id of the calling thread, as the system's own tools show it. Makes a system call only the first time
/// in a thread. After `fork` the child reports its own id.
[[nodiscard]] unsigned int threadNumber() noexcept;

} // namespace ZSpace::Host
