// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Testing {

/// During its lifetime `mktime` refuses years before 1900, as the C library of macOS does. Works in programs
/// that compile MktimeFault.cpp: it replaces the function.
class MktimeFault {
public:
    MktimeFault() noexcept;
    MktimeFault(const MktimeFault&) = delete; // one at a time
    MktimeFault& operator=(const MktimeFault&) = delete;
    ~MktimeFault();

    /// Whether a call has been refused since the latest fault began.
    [[nodiscard]] static bool hasStruck() noexcept;
};

} // namespace ZSpace::Testing
