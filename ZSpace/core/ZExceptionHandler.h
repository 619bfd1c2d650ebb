// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZDelegate.h"
#include "ZSpace/core/ZRef.h"

namespace ZSpace {

/// The process-wide delegate for errors: takes an error number and a context and gives an `int`. Empty at
/// first; kept for those who ask for it, never called by the framework.
///
/// Being an inline variable, it is there before the static objects of every file that includes this header,
/// and goes after them. Not guarded: set it while one thread runs.
inline constinit ZRef<ZDelegate2<int, unsigned int, void*>, TZRefCounter<int>>
    g_ref_Exception_Handler_Delegate;

/// Shares `handler` as the process-wide one in place of the one before.
void g_setExceptionHandler(ZRef<ZDelegate2<int, unsigned int, void*>, TZRefCounter<int>> handler) noexcept;

} // namespace ZSpace
