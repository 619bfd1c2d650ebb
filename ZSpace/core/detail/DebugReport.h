// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::detail {

/// Writes the report of `z_dbg_error` to standard output and flushes it. A null `expression` or `file` puts
/// standard output into its failed state, as writing a null string to a stream does: nothing after it is
/// written.
///
/// There are two definitions. The library's goes through `std::cout`. A program that links the other one,
/// which writes to the descriptor, does not contain the standard streams at all; in a short static program,
/// setting them up would take a third of the time from start to end.
void reportToStandardOutput(const char* expression, const char* file, unsigned int line);

} // namespace ZSpace::detail
