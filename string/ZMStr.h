// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// `ZMStr<T>`, the builder of text: a buffer that grows by half its size.
///
///     ZMStr<char> clock(8);
///     clock.appendValueOf(7, 2).append(':').appendValueOf(5, 2); // 07:05
///
/// A finished text is kept as a `ZGStr`. The string classes name each other in their interfaces, so each of
/// the three headers gives all of them.

#include "string/classes/ZGStr.h"
#include "string/classes/ZMStr.h"
#include "string/classes/ZStrToken.h"
