// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Each allocation that the program makes fails, once and for good.

#include "tests/app/AnywhereFixture.h"

#include <map>
#include <regex>
#include <sstream>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

constexpr const char* s_failedStart = "CdkRemotedUninstaller: Failed to launch uninstaller task:";
constexpr const char* s_outOfMemory = "Out of memory";

class UninstallerAllocations : public AnywhereFixture {
protected:
    /// The installer appends the name of its run to this file.
    [[nodiscard]] fs::path calls() const { return m_folder.path() / "calls"; }
    void installCounting() const { install("echo \"$ZSPACE_TEST_RUN\" >> '" + calls().string() + "'\n"); }

    struct Run {
        bool hasStruck;
        std::string logged;
    };
    /// Runs the program with one failing allocation, which must end with status 0 and complete lines.
    /// @param fault the number of the allocation; if a "+" follows it, all later ones fail as well.
    [[nodiscard]] Run runWith(const std::string& fault) const
    {
        fs::remove_all(logs());
        const Outcome outcome = run(ZSPACE_UNINSTALLER_STARVED, [&] {
            alarm(50);
            setenv(ZSPACE_FAILING_ALLOCATION, fault.c_str(), 1);
            setenv("ZSPACE_TEST_RUN", fault.c_str(), 1);
        });
        EXPECT_TRUE(outcome.hasExited) << fault << ": signal " << outcome.status << outcome.standardError;
        EXPECT_EQ(outcome.status, 0) << fault << outcome.standardError;
        expectWholeLines(report(), fault);
        return {outcome.standardOutput != "0\n", report() + outcome.standardError};
    }

    static void expectWholeLines(const std::string& text, const std::string& fault)
    {
        EXPECT_TRUE(text.empty() || text.ends_with('\n')) << fault << text;
        static const std::regex s_line("[-0-9]{10}T[:0-9]{8}\\.[0-9]{3} Thread\\[[0-9a-f]+\\]:\t.*");
        std::istringstream stream(text);
        for (std::string line; std::getline(stream, line);) {
            const bool isOfFailure = line.starts_with("stack:") || line.starts_with("(");
            EXPECT_TRUE(isOfFailure || std::regex_match(line, s_line)) << fault << line;
        }
    }

    /// How often the installer ran, for each run of the program.
    [[nodiscard]] std::map<std::string, int> callsByRun() const
    {
        std::map<std::string, int> counts;
        std::istringstream stream(contentOf(calls()));
        for (std::string line; std::getline(stream, line);)
            ++counts[line];
        return counts;
    }
};

TEST_F(UninstallerAllocations, AfterASingleFailureTheInstallerRunsOnceOrALineSaysWhyNot)
{
    installCounting();
    std::map<std::string, bool> hasFailed;
    for (int nth = 1;; ++nth) {
        const std::string fault = std::to_string(nth);
        const auto [hasStruck, logged] = runWith(fault);
        if (!hasStruck)
            break;
        hasFailed[fault] = logged.find(s_failedStart) != std::string::npos
            || logged.find(s_outOfMemory) != std::string::npos;
    }
    EXPECT_GT(hasFailed.size(), 20U);
    const auto everyCall = [&] {
        const std::map<std::string, int> calls = callsByRun();
        for (const auto& [run, failed] : hasFailed) {
            if (!failed && !calls.contains(run))
                return false;
        }
        return true;
    };
    EXPECT_TRUE(waitUntil(everyCall)) << "neither an installer nor a line";
    usleep(200'000); // a second installer would have started by now
    for (const auto& [run, count] : callsByRun()) {
        EXPECT_EQ(count, 1) << run;
        EXPECT_FALSE(hasFailed[run]) << run;
    }
}

TEST_F(UninstallerAllocations, IfAllocationsFailFromAnyPointOnTheStatusIsZero)
{
    installCounting();
    int nth = 1;
    while (runWith(std::to_string(nth) + "+").hasStruck)
        ++nth;
    EXPECT_GT(nth, 20);
    usleep(200'000); // the last installers
    for (const auto& [run, count] : callsByRun())
        EXPECT_EQ(count, 1) << run;
}

#ifdef ZSPACE_SANITIZED
constexpr int s_step = 3; // a sanitizer makes each of the many runs slow
#else
constexpr int s_step = 1;
#endif

TEST_F(UninstallerAllocations, AfterASingleFailureAFailedStartEndsWithStatusZero)
{
    int nth = 1;
    while (runWith(std::to_string(nth)).hasStruck)
        nth += s_step;
    EXPECT_GT(nth, 100) << "the failure line alone needs more";
}

TEST_F(UninstallerAllocations, WithoutMemoryFromAnyPointOnAFailedStartEndsWithStatusZero)
{
    int nth = 1;
    while (runWith(std::to_string(nth) + "+").hasStruck)
        nth += s_step;
    EXPECT_GT(nth, 100);
}

} // namespace
} // namespace ZSpace::Testing
