// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

namespace ZSpace::Testing {

/// During its lifetime `mktime` refuses years before `firstYear`, as the C library of macOS does with 1900. Works in
/// programs that compile MktimeFault.cpp: it replaces the function.
class MktimeFault {
public:
    explicit MktimeFault(int firstYear = 1900) noexcept;
    MktimeFault(const MktimeFault&) = delete; // one at a time
    MktimeFault& operator=(const MktimeFault&) = delete;
    ~MktimeFault();

    /// Whether a call has been refused since the latest fault began.
    [[nodiscard]] static bool hasStruck() noexcept;
};

} // namespace ZSpace::Testing
