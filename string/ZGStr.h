// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// `ZGStr<T>`, the owned text that is as small as a pointer; what text is kept and passed as.
///
///     ZGStr<char> path("/var/log");
///     path << '/' << 2024 << L".txt";
///
/// Each change of length moves to a new array; longer texts are built in a `ZMStr`. The string classes name
/// each other in their interfaces, so each of the three headers gives all of them.

#include "string/classes/ZGStr.h"
#include "string/classes/ZMStr.h"
#include "string/classes/ZStrToken.h"
