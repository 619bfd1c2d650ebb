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

/// A private directory tree that a child sees as "/", in its own mount namespace. It contains the host's
/// programs and libraries, but `/Library`, `/var/log`, `/home`, `/tmp` and `/dev/log` belong to the test,
/// which finds the child's files below `path()`.
class PrivateRoot {
public:
    /// Parts of the host that are missing.
    struct Omit {
        bool proc = false;
        bool nullDevice = false;
    };

    PrivateRoot();

    /// False if the system does not let this user create namespaces; tests then skip themselves.
    static bool isPossible();

    [[nodiscard]] const std::filesystem::path& path() const { return m_folder.path(); }

    /// Runs `work` in a child whose root directory is this tree.
    Outcome run(const std::function<int()>& work, Omit omit = {false, false}) const;
    /// Executes a program in such a child, after `before` has set up descriptors, limits or signals.
    Outcome runProgram(
        const std::filesystem::path& program, const std::function<void()>& before = [] {},
        Omit omit = {false, false}, const std::vector<std::string>& arguments = {}) const;

private:
    void enter(Omit omit) const;

    TemporaryFolder m_folder;
};

} // namespace ZSpace::Testing
