// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "tests/app/PrivatePaths.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Host.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <unistd.h>

namespace ZSpace::Testing {

/// The test builds of the program, on every host and without privileges: builds of the same `main` that take both
/// directories from the environment.
class AnywhereFixture : public testing::Test {
protected:
    [[nodiscard]] std::filesystem::path installer() const
    {
        return m_folder.path()
            / "com.coraldesk.remote/bin/CdkRemotedInstaller.app/Contents/MacOS/CdkRemotedInstaller";
    }
    /// Installs a shell script.
    void install(const std::string& script) const
    {
        std::filesystem::create_directories(installer().parent_path());
        writeFile(installer(), "#!/bin/sh\n" + script);
        std::filesystem::permissions(installer(), std::filesystem::perms::all);
    }

    [[nodiscard]] Outcome run(
        const char* program, const std::function<void()>& before = [] {}) const
    {
        return runInChild([&] {
            setenv(ZSPACE_PRIVATE_LIBRARY, m_folder.path().c_str(), 1);
            setenv(ZSPACE_PRIVATE_LOGS, logs().c_str(), 1);
            before();
            execl(program, program, nullptr);
            return 126;
        });
    }

    [[nodiscard]] std::filesystem::path logs() const { return m_folder.path() / "logs"; }
    [[nodiscard]] std::string report() const
    {
        std::string content;
        if (std::filesystem::exists(logs())) {
            for (const auto& entry : std::filesystem::directory_iterator(logs()))
                content += contentOf(entry.path());
        }
        return content;
    }

    [[nodiscard]] std::string startLine() const
    {
        return "Running uninstall script: " + installer().string() + ", args: " + host().printedArguments;
    }

    TemporaryFolder m_folder;
};

} // namespace ZSpace::Testing
