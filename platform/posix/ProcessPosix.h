// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

namespace ZSpace::Host {

/// The last component of the name that this process was started under.
const char* programName() noexcept;

/// The signals that this process ignores now and did not ignore when it was started. A child is to get their
/// default disposition back.
const sigset_t& shieldedSignals() noexcept;

} // namespace ZSpace::Host
