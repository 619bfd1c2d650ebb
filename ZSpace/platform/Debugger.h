// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// Whether a debugger is attached to this process. False if that cannot be determined.
[[nodiscard]] bool isDebuggerAttached() noexcept;

} // namespace ZSpace::Host
