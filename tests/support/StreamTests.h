// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {

/// A test with a folder of its own.
class FolderTest : public testing::Test {
protected:
    [[nodiscard]] std::string pathOf(const std::string& name) const
    {
        return (m_folder.path() / name).string();
    }

    std::string make(const std::string& name, const std::string& content = "") const
    {
        ZSpace::Testing::writeFile(m_folder.path() / name, content);
        return pathOf(name);
    }

    [[nodiscard]] std::string contentOf(const std::string& name) const
    {
        return ZSpace::Testing::contentOf(m_folder.path() / name);
    }

    [[nodiscard]] const std::filesystem::path& folder() const { return m_folder.path(); }

    /// Lets every user into the folder.
    void openToAll() const { std::filesystem::permissions(folder(), std::filesystem::perms::all); }

private:
    ZSpace::Testing::TemporaryFolder m_folder;
};

/// In a child process: goes on as a user whom permissions bind.
inline bool becomeNobody()
{
    constexpr unsigned int s_nobody = 65'534;
    return geteuid() != 0 || (setgid(s_nobody) == 0 && setuid(s_nobody) == 0);
}

/// The text unit by unit, as wide as it gets.
inline std::wstring widened(const std::string& text)
{
    std::wstring wide;
    for (char c : text)
        wide += static_cast<wchar_t>(static_cast<unsigned char>(c));
    return wide;
}

} // namespace ZSpace::Testing
