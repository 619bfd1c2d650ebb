// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Every system call that the built program makes from `main` on fails, once and for good, with each error
// that it may report, and the program is killed at each of them. strace injects the faults.

#include "tests/app/UninstallerFixture.h"

#include <cstdlib>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <sys/wait.h>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

/// One call: its name, and which call of that name it is.
struct Call {
    std::string name;
    int ordinal;
};

/// How to disturb a run, as strace expects it after "inject=".
struct Fault {
    std::string injection;
    bool mayEndTheProgram = false;
};

class UninstallerFaults : public Uninstaller {
protected:
    void SetUp() override
    {
#ifdef ZSPACE_SANITIZED
        GTEST_SKIP() << "the sanitizers make calls of their own";
#endif
        Uninstaller::SetUp();
        if (!IsSkipped()
            && m_root.run([] {
                         return exec({"strace", "-o", "/dev/null", "/bin/true"});
                     })
                    .status
                != 0)
            GTEST_SKIP() << "there is no strace, or this user may not trace here";
        installFile("#!/bin/sh\necho \"run $ZSPACE_TEST_RUN\" >> '" + s_service + "/calls'\n", 0755);
    }

    static int exec(std::vector<std::string> arguments)
    {
        std::vector<char*> vector;
        for (std::string& argument : arguments)
            vector.push_back(argument.data());
        vector.push_back(nullptr);
        execvp(vector[0], vector.data());
        return 126;
    }

    /// The calls from `main` on, the first of which queries descriptor 0.
    [[nodiscard]] std::vector<Call> calls() const
    {
        m_root.run([] { return exec({"strace", "-o", "/tmp/trace", ZSPACE_UNINSTALLER}); });
        std::istringstream trace(contentOf(inRoot("/tmp/trace")));
        std::map<std::string, int> counts;
        std::vector<Call> result;
        bool isInMain = false;
        for (std::string line; std::getline(trace, line);) {
            const std::string name = line.substr(0, line.find('('));
            if (name.size() == line.size() || line.starts_with("---") || line.starts_with("+++"))
                continue;
            const int ordinal = ++counts[name];
            isInMain = isInMain || line.starts_with("fcntl(0, F_GETFD");
            if (isInMain)
                result.push_back({name, ordinal});
        }
        return result;
    }

    /// Runs the program once with each fault, several at a time.
    /// @return what went wrong, a line for each run that should have ended with status 0.
    std::string runWithEach(const std::vector<Fault>& faults) const
    {
        return m_root
            .run([&] {
                constexpr std::size_t workers = 4;
                for (std::size_t worker = 0; worker < workers; ++worker) {
                    if (fork() != 0)
                        continue;
                    for (std::size_t i = worker; i < faults.size(); i += workers)
                        runWith(faults[i], i);
                    std::fflush(stdout);
                    std::_Exit(0);
                }
                while (wait(nullptr) > 0) { }
                return 0;
            })
            .standardOutput;
    }

    static void runWith(const Fault& fault, std::size_t number)
    {
        const pid_t child = fork();
        if (child == 0) {
            setenv("ZSPACE_TEST_RUN", std::to_string(number).c_str(), 1);
            std::_Exit(exec({"strace", "-qq", "-o", "/dev/null", "-e", "trace=none", "-e",
                "inject=" + fault.injection, ZSPACE_UNINSTALLER}));
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (status != 0 && !fault.mayEndTheProgram)
            std::printf("%s: status %d\n", fault.injection.c_str(), status);
    }

    /// @return the number of runs that started an installer.
    long expectWholeReportsAndNoSecondInstaller() const
    {
        for (const fs::path& file : reportFiles())
            expectWholeLines(contentOf(file));
        usleep(200'000); // the last installers
        std::istringstream calls(contentOf(inRoot(s_service + "/calls")));
        std::set<std::string> runs;
        for (std::string line; std::getline(calls, line);)
            EXPECT_TRUE(runs.insert(line).second) << line << " started two installers";
        EXPECT_FALSE(runs.empty());
        return static_cast<long>(runs.size());
    }

    /// Every line of a report is a complete record, because each call writes all of its line.
    static void expectWholeLines(const std::string& report)
    {
        EXPECT_TRUE(report.empty() || report.ends_with('\n')) << report;
        static const std::regex s_prefix("[-0-9]{10}T[:0-9]{8}\\.[0-9]{3} Thread\\[[0-9a-f]+\\]:\t");
        std::istringstream stream(report);
        std::string before;
        for (std::string line; std::getline(stream, line); before = line) {
            std::smatch prefix;
            const bool isRecord =
                std::regex_search(line, prefix, s_prefix, std::regex_constants::match_continuous);
            const std::string text = isRecord ? prefix.suffix().str() : line;
            const bool isSeparator = line == "\r";
            const bool isStack = line == "stack:" || (before == "stack:" && line.ends_with("\")"));
            const bool isFailure = text.starts_with(s_failureStart) && text.ends_with("userinfo:(null)");
            EXPECT_TRUE(isSeparator || isStack || (isRecord && (text == s_startLine || isFailure))) << line;
            EXPECT_EQ(before.find(s_failureStart) != std::string::npos, line == "stack:") << line;
            EXPECT_TRUE(before != "stack:" || isStack) << line;
        }
    }

    /// The number of lines in the reports that announce a start.
    [[nodiscard]] long startLines() const
    {
        long count = 0;
        for (const fs::path& file : reportFiles())
            count += countOf(contentOf(file), s_startLine + "\n");
        return count;
    }
};

/// The errors of a call that can occur in the program; none for calls that cannot fail.
std::vector<std::string> errorsOf(const std::string& call)
{
    static const std::map<std::string, std::vector<std::string>> s_errors{
        {"fcntl", {"EBADF", "EINVAL"}},
        {"rt_sigaction", {"EINVAL"}},
        {"openat", {"EACCES", "EEXIST", "ELOOP", "EMFILE", "ENFILE", "ENOENT", "ENOMEM", "ENOSPC", "EROFS"}},
        {"read", {"EIO", "EISDIR"}},
        {"close", {"EIO"}},
        {"newfstatat", {"EACCES", "EIO", "ENOENT", "ENOMEM"}},
        {"fstat", {"EIO", "ENOMEM"}},
        {"mkdir", {"EACCES", "EEXIST", "ENOSPC", "EROFS"}},
        {"fchmod", {"EPERM", "EROFS"}},
        {"lseek", {"ESPIPE", "EOVERFLOW"}},
        {"write", {"EAGAIN", "EDQUOT", "EFBIG", "EIO", "ENOSPC", "EPIPE"}},
        {"prlimit64", {"EPERM"}},
        {"brk", {"ENOMEM"}},
        {"mmap", {"ENOMEM"}},
        {"munmap", {"EINVAL"}},
        {"clone3", {"EAGAIN", "ENOMEM", "ENOSYS"}},
        {"clone", {"EAGAIN", "ENOMEM"}},
        {"vfork", {"EAGAIN", "ENOMEM"}},
        {"wait4", {"ECHILD"}},
    };
    const auto found = s_errors.find(call);
    return found == s_errors.end() ? std::vector<std::string>() : found->second;
}

bool canBeInterrupted(const std::string& call)
{
    return call == "openat" || call == "read" || call == "write";
}

TEST_F(UninstallerFaults, ASingleFailureOfAnyCallLeavesTheStatusZero)
{
    std::vector<Fault> faults;
    for (const Call& call : calls()) {
        std::vector<std::string> errors = errorsOf(call.name);
        if (canBeInterrupted(call.name))
            errors.emplace_back("EINTR");
        for (const std::string& error : errors)
            faults.push_back({call.name + ":error=" + error + ":when=" + std::to_string(call.ordinal)});
    }
    EXPECT_GT(faults.size(), 20U);
    EXPECT_EQ(runWithEach(faults), "");
    expectWholeReportsAndNoSecondInstaller();
}

TEST_F(UninstallerFaults, ALastingFailureOfAnyCallLeavesTheStatusZero)
{
    std::vector<Fault> faults;
    for (const Call& call : calls()) {
        for (const std::string& error : errorsOf(call.name))
            faults.push_back({call.name + ":error=" + error + ":when=" + std::to_string(call.ordinal) + "+"});
    }
    EXPECT_GT(faults.size(), 20U);
    EXPECT_EQ(runWithEach(faults), "");
    expectWholeReportsAndNoSecondInstaller();
}

TEST_F(UninstallerFaults, AShortWriteIsContinued)
{
    for (const Call& call : calls()) {
        if (call.name != "write")
            continue;
        EXPECT_EQ(runWithEach({{call.name + ":retval=1:when=" + std::to_string(call.ordinal)}}), "");
    }
}

TEST_F(UninstallerFaults, KilledAtAnyCallItStartsNoSecondInstallerAndLeavesWholeReports)
{
    std::vector<Fault> faults;
    for (const Call& call : calls())
        faults.push_back({call.name + ":signal=KILL:when=" + std::to_string(call.ordinal), true});
    EXPECT_GT(faults.size(), 20U);
    EXPECT_EQ(runWithEach(faults), "");
    const long started = expectWholeReportsAndNoSecondInstaller();
    EXPECT_GE(startLines(), started) << "an installer runs whose line was acknowledged and is lost";
}

} // namespace
} // namespace ZSpace::Testing
