// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Host {

/// The last component of the name that this process was started under.
const char* programName() noexcept;

} // namespace ZSpace::Host
