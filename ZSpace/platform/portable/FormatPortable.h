// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdarg>
#include <string>

namespace ZSpace::Host {

/// `format` filled with `arguments`: every conversion of printf, with flags, widths and precisions (given or
/// by `*`), positions (`%2$s`, `%1$*3$d`), and `%@` for an `NSObject*`, which prints its description. Wide
/// characters and texts (`%lc`, `%ls`, and the 16-bit `%C`, `%S`) come out as UTF-8 in any locale. A null
/// object or text prints
/// "(null)". `%n` takes its argument and writes nothing, since a format must not change memory. A `%` that
/// starts no conversion stands for itself.
std::string formatWithObjects(const char* format, std::va_list arguments);

} // namespace ZSpace::Host
