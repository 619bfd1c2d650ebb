// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <csignal>

namespace ZSpace::detail {

/// Whether writing to a descriptor may raise SIGPIPE or SIGXFSZ.
enum class SignalRisk : bool { No, Yes };

/// Checks the descriptor once: writing to a regular file raises no signal unless the process has a file size limit.
/// Does not notice a limit that is set later.
[[nodiscard]] SignalRisk signalRiskOf(int descriptor) noexcept;

/// Blocks SIGPIPE and SIGXFSZ in the calling thread during its lifetime, then discards those raised
/// meanwhile. The dispositions, which belong to the whole process, do not change.
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

/// Appends a line with one `write`. Ends a line that an error has cut with a line feed before the next one.
void appendLine(int descriptor, const char* line, long length, SignalRisk risk, bool& isLastLineCut) noexcept;

} // namespace ZSpace::detail
