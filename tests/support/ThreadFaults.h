// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>

namespace ZSpace::Testing {

<<<<<<< HEAD
/// During its lifetime no thread can be created: its stack would not fit into any address space.
class ThreadFault {
public:
    /// Whether the host can change the default stack size; otherwise tests skip themselves.
=======
/// During its lifetime, no thread can be created: each would need a stack larger than the address space.
class ThreadFault {
public:
    /// Whether the default stack size can be set on this host; if not, tests skip themselves.
>>>>>>> a9a694a (Describe the hosts in plain terms, and add one that provides nothing to prove the seam complete)
    [[nodiscard]] static bool isPossible();

    ThreadFault();
    ThreadFault(const ThreadFault&) = delete; // one at a time
    ThreadFault& operator=(const ThreadFault&) = delete;
    ~ThreadFault();

private:
    std::size_t m_defaultStackSize = 0;
};

} // namespace ZSpace::Testing
