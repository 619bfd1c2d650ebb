// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {

/// A test with a private directory.
class DirectoryTest : public testing::Test {
protected:
    [[nodiscard]] std::string pathOf(const std::string& name) const
    {
        return (m_directory.path() / name).string();
    }

    std::string make(const std::string& name, const std::string& content = "") const
    {
        Testing::writeFile(m_directory.path() / name, content);
        return pathOf(name);
    }

    [[nodiscard]] std::string contentOf(const std::string& name) const
    {
        return Testing::contentOf(m_directory.path() / name);
    }

    [[nodiscard]] const std::filesystem::path& directory() const { return m_directory.path(); }

    /// Opens the directory to all users.
    void openToAll() const { std::filesystem::permissions(directory(), std::filesystem::perms::all); }

private:
    TemporaryFolder m_directory;
};

/// For child processes: switches to a user whom permissions restrict.
inline bool becomeNobody()
{
    constexpr unsigned int s_nobody = 65'534;
    return geteuid() != 0 || (setgid(s_nobody) == 0 && setuid(s_nobody) == 0);
}

} // namespace ZSpace::Testing
