// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace ZSpace::Testing {

/// While it lives, no thread can be made: each would need a stack that no address space has room for.
class ThreadFault {
public:
    /// Whether the host lets the usual stack size be set; tests skip themselves where it does not.
    [[nodiscard]] static bool isPossible();

    ThreadFault();
    ThreadFault(const ThreadFault&) = delete; // one at a time
    ThreadFault& operator=(const ThreadFault&) = delete;
    ~ThreadFault();

private:
    std::size_t m_usualStackSize = 0;
};

} // namespace ZSpace::Testing
