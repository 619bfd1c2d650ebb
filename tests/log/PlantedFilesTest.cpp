// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What another user can plant where report files are created. The names of reports can be guessed, and their
// directory may be writable by every user.

#include "ZSpace/log/ZLogBookFile.h"
#include "tests/log/FileLogging.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace ZSpace::Testing {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

constexpr const char* s_secret = "secret\n";

class PlantedFiles : public FileLogging {
protected:
    void SetUp() override
    {
        fs::create_directory(m_logs);
        writeFile(m_victim, s_secret);
        chmod(m_victim.c_str(), 0600);
    }

    using Clock = std::chrono::system_clock;

    /// The name of the report that is created at `time`.
    static std::string reportName(Clock::time_point time)
    {
        const auto count =
            std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
        const time_t second = count / 1000;
        tm fields{};
        gmtime_r(&second, &fields);
        char text[32];
        std::strftime(text, sizeof text, "%Y-%m-%dT%H-%M-%S", &fields);
        char name[64];
        std::snprintf(name, sizeof name, "Tag_%s.%03d.txt", text, static_cast<int>(count % 1000));
        return name;
    }

    /// Plants something at every name that a report can get within the next second, and then logs a line.
    /// @return what was printed to the console: the line, since no report can be created.
    Outcome logAmong(const std::function<void(const fs::path&)>& plant) const
    {
        for (Clock::time_point time = Clock::now(); time < Clock::now() + std::chrono::seconds(1);
             time += std::chrono::milliseconds(1)) {
            plant(m_logs / reportName(time));
        }
        return run([this] {
            alarm(20); // a signal ends a set-up that blocks forever
            CNSInitLog(s_file, 0, "Tag", m_logs.c_str());
            CNSLog("line");
        });
    }
    static void expectOnConsole(const Outcome& outcome)
    {
        EXPECT_TRUE(outcome.hasExited) << "signal " << outcome.status;
        EXPECT_THAT(outcome.standardError, EndsWith("] line\n"));
    }
    void expectVictimUntouched() const
    {
        EXPECT_EQ(contentOf(m_victim), s_secret);
        struct stat status { };
        ASSERT_EQ(stat(m_victim.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 07777, 0600U);
    }

    fs::path m_victim = m_folder.path() / "victim";
};

TEST_F(PlantedFiles, ALinkToAFileIsNotFollowed)
{
    expectOnConsole(logAmong([this](const fs::path& name) { fs::create_symlink(m_victim, name); }));
    expectVictimUntouched();
}

TEST_F(PlantedFiles, ALinkToNothingCreatesNothing)
{
    const fs::path created = m_folder.path() / "nologin";
    expectOnConsole(logAmong([&](const fs::path& name) { fs::create_symlink(created, name); }));
    EXPECT_FALSE(fs::exists(created));
}

TEST_F(PlantedFiles, AHardLinkIsNotAppendedTo)
{
    expectOnConsole(logAmong([this](const fs::path& name) { fs::create_hard_link(m_victim, name); }));
    expectVictimUntouched();
}

TEST_F(PlantedFiles, AFifoDoesNotBlockTheProgram)
{
    expectOnConsole(logAmong([](const fs::path& name) { mkfifo(name.c_str(), 0666); }));
}

TEST_F(PlantedFiles, AFifoThatIsReadIsNotWritten)
{
    const fs::path fifo = m_folder.path() / "fifo";
    ASSERT_EQ(mkfifo(fifo.c_str(), 0666), 0);
    expectOnConsole(logAmong([&](const fs::path& name) { fs::create_hard_link(fifo, name); }));
}

TEST_F(PlantedFiles, ADirectoryOrASocketIsLeftAlone)
{
    expectOnConsole(logAmong([](const fs::path& name) { fs::create_directory(name); }));
    fs::remove_all(m_logs);
    fs::create_directory(m_logs);
    const fs::path socketFile = m_folder.path() / "s";
    const int descriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketFile.string().copy(address.sun_path, sizeof address.sun_path - 1);
    ASSERT_EQ(bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    expectOnConsole(logAmong([&](const fs::path& name) { fs::create_hard_link(socketFile, name); }));
    close(descriptor);
}

TEST_F(PlantedFiles, AFileOfTheSameUserIsAppendedTo)
{
    const Outcome outcome = logAmong([](const fs::path& name) { writeFile(name, "earlier"); });
    EXPECT_EQ(outcome.standardError, "");
    int found = 0;
    for (const fs::path& file : files()) {
        if (contentOf(file) != "earlier") {
            EXPECT_THAT(contentOf(file), testing::MatchesRegex("earlier\r\n\r\n" + s_prefix + "\tline\n"));
            ++found;
        }
    }
    EXPECT_EQ(found, 1);
}

TEST_F(PlantedFiles, AFileOfAnotherUserIsNotUsed)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can create files of another user";
    expectOnConsole(logAmong([](const fs::path& name) {
        writeFile(name, "");
        ASSERT_EQ(chown(name.c_str(), 65534, 65534), 0);
    }));
    for (const fs::path& file : files())
        EXPECT_EQ(contentOf(file), "");
}

TEST_F(PlantedFiles, ALinkInsteadOfTheDirectoryDoesNotOpenAFileToAll)
{
    fs::remove(m_logs);
    fs::create_symlink(m_victim, m_logs);
    expectOnConsole(runLogging([] { CNSLog("line"); }));
    expectVictimUntouched();
}

/// Between a failed `mkdir` and a `chmod` by name, the name could become a link.
TEST_F(PlantedFiles, ALinkThatAppearsAndDisappearsDoesNotOpenAFileToAll)
{
    fs::remove(m_logs);
    std::atomic<bool> isOver{false};
    std::thread attacker([&] {
        while (!isOver) {
            static_cast<void>(symlink(m_victim.c_str(), m_logs.c_str()));
            unlink(m_logs.c_str());
        }
    });
    run([this] {
        for (int i = 0; i < 2000; ++i) {
            CNSInitLog(0, 0, "Tag", m_logs.c_str());
            rmdir(m_logs.c_str());
        }
    });
    isOver = true;
    attacker.join();
    expectVictimUntouched();
}

TEST_F(PlantedFiles, AnExistingDirectoryKeepsItsMode)
{
    chmod(m_logs.c_str(), 0750);
    runLogging([] { CNSLog("line"); });
    struct stat status { };
    ASSERT_EQ(stat(m_logs.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777, 0750U);
    EXPECT_THAT(report(), EndsWith("\tline\n"));
}

/// Callers choose their own paths, so attackers cannot plant anything there.
TEST_F(PlantedFiles, ABookOnAPathOfTheCallerFollowsLinks)
{
    fs::create_symlink(m_victim, m_logs / "link");
    const std::string path = (m_logs / "link").string();
    {
        ZLogBookFile book(std::wstring(path.begin(), path.end()).c_str());
        book.add(ZLogRecord() << "line");
    }
    EXPECT_THAT(contentOf(m_victim), HasSubstr("\tline\n"));
}

} // namespace
} // namespace ZSpace::Testing
