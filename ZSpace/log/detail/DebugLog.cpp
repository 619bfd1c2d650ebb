// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/DebugLog.h"

std::atomic<unsigned char> ZSpace::debugLogEnabled{0};
