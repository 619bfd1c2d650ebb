// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

/// `ZStrToken<T>`, the view of characters that belong to somebody else; the usual type of text arguments.
///
///     long port(ZStrToken<char> address) { return address.subString(address.lastIndexOf(':') + 1).toInt32();
///     } port("localhost:8080"); // and likewise with a ZGStr<char> or a ZMStr<char>
///
/// A view keeps nothing alive. The string classes name each other in their interfaces, so each of the three
/// headers gives all of them.

#include "string/classes/ZGStr.h"
#include "string/classes/ZMStr.h"
#include "string/classes/ZStrToken.h"
