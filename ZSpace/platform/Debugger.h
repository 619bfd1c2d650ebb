// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// Whether a debugger is attached to this process. False if the system does not tell.
[[nodiscard]] bool isDebuggerAttached() noexcept;

} // namespace ZSpace::Host
