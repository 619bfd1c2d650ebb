// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What a run of the program costs, in numbers that do not depend on the machine. Change a limit only together with
// docs/performance.md.

#include "bench/counts/SteppedProcess.h"
#include "tests/app/UninstallerFixture.h"

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

class LauncherCounts : public Uninstaller {
protected:
    void SetUp() override
    {
        Uninstaller::SetUp();
        installProbe();
        std::filesystem::copy_file(ZSPACE_UNINSTALLER, m_root.path() / "program");
    }
};

TEST_F(LauncherCounts, ARunTouchesFewPages)
{
    const Outcome outcome = m_root.run([] {
        const pid_t child = fork();
        if (child == 0) {
            execl("/program", "/program", nullptr);
            std::_Exit(127);
        }
        int status = 0;
        rusage usage{};
        wait4(child, &status, 0, &usage);
        std::ofstream("/Library/counts") << usage.ru_minflt;
        return status;
    });
    ASSERT_EQ(outcome.status, 0);
    const long faults = std::stol(contentOf(inRoot("/Library/counts")));
    std::cout << faults << " page faults\n";
    EXPECT_GT(faults, 0);
    EXPECT_LE(faults, 75);
}

TEST_F(LauncherCounts, ARunNeedsFewInstructionsAndSystemCalls)
{
    const Outcome outcome = m_root.run([] {
        const Steps steps = stepsOfProgram("/program");
        std::ofstream("/Library/counts") << steps.instructions << ' ' << steps.systemCalls;
        return 0;
    });
    ASSERT_EQ(outcome.status, 0);
    Steps steps;
    std::ifstream(inRoot("/Library/counts")) >> steps.instructions >> steps.systemCalls;
    std::cout << steps.instructions << " instructions, " << steps.systemCalls << " system calls\n";
    EXPECT_GT(steps.instructions, 0);
    EXPECT_LE(steps.instructions, 105'000);
    EXPECT_LE(steps.systemCalls, 62);
    ASSERT_EQ(reportFiles().size(), 1U);
    EXPECT_EQ(countOf(contentOf(reportFiles()[0]), s_startLine), 1);
}

} // namespace
} // namespace ZSpace::Testing
