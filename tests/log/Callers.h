// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/LogFrontEnd.h"

#ifdef __cplusplus
extern "C" {
#endif

/// Logs one line through every function that takes a printf format.
void logFromC(const char* word, int number);
/// Logs `format`, which belongs to the caller, and null.
void logHostStringFromC(NSString* format, ...);
/// Logs one line through every function that takes a Foundation format, and one through `CNSLog`.
void logFromObjectiveC(const char* word, int number);

#ifdef __cplusplus
} // extern "C"
#endif
