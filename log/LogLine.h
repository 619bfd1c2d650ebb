// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "string/ZMStr.h"

namespace ZSpace::detail {

/// What a line's builder reserves, so that most lines cost one allocation.
inline constexpr long s_usualLineLength = 254;

/// "Thread[1a03]": the calling thread's number in hexadecimal without leading zeros.
[[nodiscard]] ZStrToken<char> threadId() noexcept;

/// What every line begins with: a line feed, the current time in UTC with milliseconds, one blank, the thread
/// and a colon. The line feed ends a line that was cut; whoever needs none leaves it out.
///
/// Costs one look at the clock: second and thread are written anew only when they have changed. Both texts
/// are the calling thread's own and stay until it asks again.
[[nodiscard]] ZStrToken<char> linePrefix() noexcept;

} // namespace ZSpace::detail
