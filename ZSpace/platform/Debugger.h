// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// True when a debugger has attached to this process. Where the system will not tell, the answer is false.
[[nodiscard]] bool isDebuggerAttached() noexcept;

} // namespace ZSpace::Host
