// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

namespace ZSpace::detail {

/// Whether writing to a descriptor may raise SIGPIPE or SIGXFSZ.
enum class SignalRisk : bool { No, Yes };

/// Looks at the descriptor once: writing to a regular file raises no signal unless the process has a file size
/// limit. A limit that is set later is not noticed.
[[nodiscard]] SignalRisk signalRiskOf(int descriptor) noexcept;

/// Blocks SIGPIPE and SIGXFSZ in the calling thread while it lives, and then discards those that were raised
/// meanwhile. The dispositions, which belong to the whole process, stay as they are.
class SignalShield {
public:
    SignalShield() noexcept;
    SignalShield(const SignalShield&) = delete; // a scope
    SignalShield& operator=(const SignalShield&) = delete;
    ~SignalShield();

private:
    sigset_t m_mask; // the thread's mask before
    sigset_t m_pending; // the signals that were pending before
};

/// Writes `count` bytes with one `write`. Continues after a short write and repeats an interrupted one.
/// @return the number of bytes written, less than `count` after an error.
long writeWhole(int descriptor, const char* bytes, long count, SignalRisk risk) noexcept;

/// Appends a line with one `write`. A line that was cut by an error is ended by a line feed before the next one.
void appendLine(int descriptor, const char* line, long length, SignalRisk risk, bool& isLastLineCut) noexcept;

} // namespace ZSpace::detail
