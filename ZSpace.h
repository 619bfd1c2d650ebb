// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// The whole framework in one include. Code that needs one class includes that class's own header instead.

#include "app/LogFrontEnd.h"
#include "log/ZTransferLog.h"
