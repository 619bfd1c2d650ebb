// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <filesystem>
#include <string>

namespace ZSpace::Testing {

/// A fresh folder of the test's own, removed with everything in it at the end of its life.
class TemporaryFolder {
public:
    TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder();

    [[nodiscard]] const std::filesystem::path& path() const { return m_path; }

private:
    std::filesystem::path m_path;
};

/// The whole content of a file; empty when there is none.
std::string contentOf(const std::filesystem::path& file);
void writeFile(const std::filesystem::path& file, const std::string& content);

} // namespace ZSpace::Testing
