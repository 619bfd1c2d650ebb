// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZDelegate.h"

namespace ZSpace {

template class ZDelegable_T<void>;

} // namespace ZSpace
