// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZRef.h"

#include "ZSpace/core/z_dbg.h"

#include <cstdlib>

namespace ZSpace::detail {

void reportEmptyHandle(HandleCheck check) noexcept
{
    z_dbg_error("this->m_ptValue", "ZTypeRef", static_cast<unsigned int>(check), true);
    std::abort();
}

} // namespace ZSpace::detail
