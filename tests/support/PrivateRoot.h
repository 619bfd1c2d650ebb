// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ZSpace::Testing {

/// A file tree of the test's own that a child sees as "/", in a mount namespace of its own: the host's
/// programs and libraries are there, and `/Library`, `/var/log`, `/home`, `/tmp` and `/dev/log` are the
/// test's. What the child leaves in these can be looked at from outside, below `path()`.
class PrivateRoot {
public:
    /// What of the host is left out.
    struct Omit {
        bool proc = false;
        bool nullDevice = false;
    };

    PrivateRoot();

    /// False where the system does not let this user make namespaces; tests then skip themselves.
    static bool isPossible();

    [[nodiscard]] const std::filesystem::path& path() const { return m_folder.path(); }

    /// Runs `work` in a child whose "/" is this tree.
    Outcome run(const std::function<int()>& work, Omit omit = {false, false}) const;
    /// Replaces such a child by a program; `before` makes the last settings (descriptors, limits, signals).
    Outcome runProgram(
        const std::filesystem::path& program, const std::function<void()>& before = [] {},
        Omit omit = {false, false}, const std::vector<std::string>& arguments = {}) const;

private:
    void enter(Omit omit) const;

    TemporaryFolder m_folder;
};

} // namespace ZSpace::Testing
