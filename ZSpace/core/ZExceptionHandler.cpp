// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZExceptionHandler.h"

namespace ZSpace {

void g_setExceptionHandler(ZRef<ZDelegate2<int, unsigned int, void*>, TZRefCounter<int>> handler) noexcept
{
    g_ref_Exception_Handler_Delegate = std::move(handler);
}

} // namespace ZSpace
