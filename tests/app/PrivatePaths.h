// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// Environment variables of the test build of the program: where it looks for the service and creates its report.
#define ZSPACE_PRIVATE_LIBRARY "ZSPACE_PRIVATE_LIBRARY"
#define ZSPACE_PRIVATE_LOGS "ZSPACE_PRIVATE_LOGS"
