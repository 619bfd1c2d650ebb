// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdarg>
#include <string>

namespace ZSpace::Host {

/// Formats `arguments` with every conversion of printf, including flags, widths, precisions, `*` and
/// positions (`%2$s`, `%1$*3$d`), and `%@` for an `NSObject*`, which prints its description.
///
/// - Wide characters and strings (`%lc`, `%ls`, and the 16-bit `%C`, `%S`) print as UTF-8 in any locale.
/// - A null object or string prints "(null)". A `%` that starts no conversion is printed.
/// - `%n` consumes its argument but stores and prints nothing: a format must not modify memory.
/// - Widths, and precisions that lengthen the output, are limited to a million, whether they are part of the
///    format or passed for a `*`, so that no format can exhaust memory.
/// - A number that the C library cannot print ends the result.
std::string formatWithObjects(const char* format, std::va_list arguments);

} // namespace ZSpace::Host
