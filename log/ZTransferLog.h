// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace {

/// The way of a plain text line into the process's log book.
class ZTransferLog {
public:
    /// Offers one line to the log book; false when none takes it.
    static bool log(const char* text);
};

} // namespace ZSpace
