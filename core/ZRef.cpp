// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "core/ZRef.h"

#include "core/z_dbg.h"

#include <cstdlib>

namespace ZSpace::detail {

void reportEmptyHandle(HandleCheck check) noexcept
{
    z_dbg_error("this->m_ptValue", "ZTypeRef", static_cast<unsigned int>(check), true);
    std::abort();
}

} // namespace ZSpace::detail
