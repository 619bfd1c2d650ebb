// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "log/ZTransferLog.h"

namespace ZSpace {

// No log book can be attached yet.
bool ZTransferLog::log(const char*)
{
    return false;
}

} // namespace ZSpace
