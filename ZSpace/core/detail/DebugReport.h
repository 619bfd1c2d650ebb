// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::detail {

/// Writes the report of `z_dbg_error` to standard output and flushes it. A null `expression` or `file` puts
/// standard output into its failed state, as writing a null string to a stream does: nothing after it is
/// written.
///
/// There are two definitions. The library's writes to `std::cout`. The other one writes to the descriptor, so
/// that a program that links it does not contain the standard streams; setting them up would take a third of
/// the run time of a short static program.
void reportToStandardOutput(const char* expression, const char* file, unsigned int line);

} // namespace ZSpace::detail
