// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace ZSpace::Testing {

/// During its lifetime no thread can be created: its stack would not fit into any address space.
class ThreadFault {
public:
    /// Whether the host can change the default stack size; otherwise tests skip themselves.
    [[nodiscard]] static bool isPossible();

    ThreadFault();
    ThreadFault(const ThreadFault&) = delete; // one at a time
    ThreadFault& operator=(const ThreadFault&) = delete;
    ~ThreadFault();

private:
    std::size_t m_defaultStackSize = 0;
};

} // namespace ZSpace::Testing
