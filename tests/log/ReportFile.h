// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBookFile.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/Widths.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace ZSpace::Testing {

namespace fs = std::filesystem;

/// What every line begins with, as a regular expression.
inline const std::string s_time = "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}";
inline const std::string s_prefix = s_time + " Thread\\[[0-9a-f]+\\]:";

/// The lines without their line feeds; one that lacks it ends in "<torn>".
inline std::vector<std::string> linesOf(const std::string& text)
{
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = 0; (end = text.find('\n', begin)) != std::string::npos; begin = end + 1)
        lines.push_back(text.substr(begin, end - begin));
    if (begin < text.size()) {
        lines.push_back(text.substr(begin));
        lines.back() += "<torn>";
    }
    return lines;
}

/// A report file in the test's own directory.
class ReportFile : public testing::Test {
protected:
    ZRef<ZLogBook> openBook() const { return ZRef<ZLogBook>(new ZLogBookFile(widened(m_path).c_str())); }
    [[nodiscard]] std::string content() const { return contentOf(m_path); }

    TemporaryFolder m_folder;
    fs::path m_path = m_folder.path() / "report.txt";
};

} // namespace ZSpace::Testing
