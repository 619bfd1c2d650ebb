// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>
#include <unistd.h>

namespace ZSpaceFuzz {

/// A private directory for the whole run, removed at its end.
class PrivateDirectory {
public:
    PrivateDirectory()
    {
        std::string name = (std::filesystem::temp_directory_path() / "zspace-fuzz-XXXXXX").string();
        if (!mkdtemp(name.data()))
            std::abort();
        m_path = name;
    }
    PrivateDirectory(const PrivateDirectory&) = delete;
    PrivateDirectory& operator=(const PrivateDirectory&) = delete;
    ~PrivateDirectory()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    [[nodiscard]] std::string operator/(const std::string& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

} // namespace ZSpaceFuzz
