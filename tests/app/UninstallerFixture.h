// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/support/ChildProcess.h"
#include "tests/support/Host.h"
#include "tests/support/PrivateRoot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <initializer_list>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {

inline const std::string s_service = host().applicationSupport + "/com.coraldesk.remote";
inline const std::string s_installer =
    s_service + "/bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller";
inline const std::string s_startLine =
    "Running uninstall script: " + s_installer + ", args: " + host().printedArguments;
inline const std::string s_failureStart =
    "CdkRemotedUninstaller: Failed to launch uninstaller task:" + s_installer + ", exception:";

inline long countOf(const std::string& text, const std::string& part)
{
    long count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        ++count;
    return count;
}

/// The signal mask in a line of the report, without the signals that the C library reserves (32 and 33).
inline unsigned long long maskIn(const std::string& report, const std::string& name)
{
    const std::size_t line = report.find(name + ":\t");
    EXPECT_NE(line, std::string::npos) << report;
    return std::stoull(report.substr(line + name.size() + 2), nullptr, 16) & 0x7FFFFFFF;
}

inline unsigned long long maskOf(std::initializer_list<int> signals)
{
    unsigned long long mask = 0;
    for (const int signal : signals)
        mask |= 1ULL << (signal - 1);
    return mask;
}

class Uninstaller : public testing::Test {
protected:
    void SetUp() override
    {
        if (!PrivateRoot::isPossible())
            GTEST_SKIP() << "this user may not make mount namespaces here";
    }

    [[nodiscard]] std::filesystem::path inRoot(const std::string& path) const
    {
        return m_root.path() / path.substr(1);
    }

    void installProbe()
    {
        prepareInstallerFolder();
        std::filesystem::copy_file(ZSPACE_PROBE_INSTALLER, inRoot(s_installer));
    }
    void installFile(const std::string& content, mode_t mode)
    {
        prepareInstallerFolder();
        writeFile(inRoot(s_installer), content);
        chmod(inRoot(s_installer).c_str(), mode);
    }
    void prepareInstallerFolder() { std::filesystem::create_directories(inRoot(s_installer).parent_path()); }

    Outcome run(
        const std::function<void()>& before = [] {}, PrivateRoot::Omit omit = {false, false},
        const std::vector<std::string>& arguments = {})
    {
        return m_root.runProgram(ZSPACE_UNINSTALLER, before, omit, arguments);
    }
    Outcome runWithDescriptorClosed(int descriptor)
    {
        return run([=] { close(descriptor); });
    }

    /// What the probe installer reports about its start. Waits for it.
    [[nodiscard]] std::string report() const
    {
        waitUntil([&] { return std::filesystem::exists(inRoot(s_service + "/report")); });
        return contentOf(inRoot(s_service + "/report"));
    }
    [[nodiscard]] bool hasEnded() const { return std::filesystem::exists(inRoot(s_service + "/ended")); }

    [[nodiscard]] std::vector<std::filesystem::path> reportFiles() const
    {
        std::vector<std::filesystem::path> files;
        const std::filesystem::path folder = inRoot("/var/log/com.coraldesk.remote");
        if (std::filesystem::is_directory(folder)) {
            for (const auto& entry : std::filesystem::directory_iterator(folder))
                files.push_back(entry.path());
        }
        return files;
    }

    /// Everything that was logged, to the console and to report files.
    [[nodiscard]] std::string logged(const Outcome& outcome) const
    {
        std::string text = outcome.standardError;
        for (const std::filesystem::path& file : reportFiles())
            text += contentOf(file);
        return text;
    }

    void expectFailedStart(const Outcome& outcome, const std::string& reason) const
    {
        EXPECT_TRUE(outcome.hasExited);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(logged(outcome), testing::HasSubstr(s_startLine));
        EXPECT_THAT(
            logged(outcome), testing::HasSubstr(s_failureStart + "NSInvalidArgumentException reason:"));
        EXPECT_THAT(logged(outcome), testing::HasSubstr(reason));
    }

    PrivateRoot m_root;
};

} // namespace ZSpace::Testing
