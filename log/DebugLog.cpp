// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "log/DebugLog.h"

unsigned char debugLogEnabled = 0;
