// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZInvokable.h"

namespace ZSpace {

template class ZInvokable<void>;
template class ZExecutor<void>;

} // namespace ZSpace
