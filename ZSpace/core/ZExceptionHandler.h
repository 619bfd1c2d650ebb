// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZDelegate.h"
#include "ZSpace/core/ZRef.h"

namespace ZSpace {

/// The process-wide exception handler: takes an error code and a context pointer and returns an `int`.
/// Initially empty. The framework stores it but never calls it.
///
/// As an inline variable it is constructed before, and destroyed after, the static objects of every source
/// file that includes this header. Not thread-safe: set it before starting other threads.
inline constinit ZRef<ZDelegate2<int, unsigned int, void*>, TZRefCounter<int>>
    g_ref_Exception_Handler_Delegate;

/// Replaces the process-wide handler; ownership is shared.
void g_setExceptionHandler(ZRef<ZDelegate2<int, unsigned int, void*>, TZRefCounter<int>> handler) noexcept;

} // namespace ZSpace
