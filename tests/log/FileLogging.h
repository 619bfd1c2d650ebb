// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/LogFrontEnd.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Descriptors.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace ZSpace::Testing {

namespace fs = std::filesystem;

/// What every line of a report begins with, as a regular expression.
inline const std::string s_prefix =
    "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} Thread\\[[0-9a-f]+\\]:";
inline constexpr int s_file = 0x100;
inline constexpr int s_debug = 0x002;

/// The front end with a report file in the test's own directory.
class FileLogging : public testing::Test {
protected:
    /// Runs `work` in a child whose home is the test's directory.
    Outcome run(const std::function<void()>& work) const
    {
        return runInChild([&] {
            setenv("HOME", m_folder.path().c_str(), 1);
            work();
            return testing::Test::HasFailure() ? 1 : 0;
        });
    }
    /// The same with file logging on.
    Outcome runLogging(const std::function<void()>& work, int flags = s_file) const
    {
        return run([&] {
            CNSInitLog(flags, 0, "Tag", m_logs.c_str());
            work();
        });
    }
    [[nodiscard]] std::vector<fs::path> files() const { return filesIn(m_logs); }
    static std::vector<fs::path> filesIn(const fs::path& folder)
    {
        std::vector<fs::path> found;
        if (fs::exists(folder)) {
            for (const auto& entry : fs::directory_iterator(folder))
                found.push_back(entry.path());
        }
        return found;
    }
    /// The number of this process's descriptors of report files.
    [[nodiscard]] std::size_t openReports() const
    {
        std::size_t count = 0;
        for (const fs::path& file : files())
            count += descriptorsOf(file.string()).size();
        return count;
    }
    /// The content of the only report file.
    [[nodiscard]] std::string report() const
    {
        EXPECT_EQ(files().size(), 1U);
        return files().empty() ? "" : contentOf(files()[0]);
    }

    TemporaryFolder m_folder;
    fs::path m_logs = m_folder.path() / "logs";
};

} // namespace ZSpace::Testing
