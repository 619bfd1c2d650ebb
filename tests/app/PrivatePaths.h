// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// Environment variables of the test build of the program: where it looks for the service and creates its report.
#define ZSPACE_PRIVATE_LIBRARY "ZSPACE_PRIVATE_LIBRARY"
#define ZSPACE_PRIVATE_LOGS "ZSPACE_PRIVATE_LOGS"

/// In the test build with failing allocations: which one fails.
#define ZSPACE_FAILING_ALLOCATION "ZSPACE_FAILING_ALLOCATION"
