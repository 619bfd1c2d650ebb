// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The report file: its bytes, its sessions, many threads and processes, full disks and kills.

#include "ZSpace/log/ZLogBookFile.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/platform/ThreadNumber.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <fstream>
#include <random>
#include <regex>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::MatchesRegex;
using testing::StartsWith;

const std::string s_time = "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}";
const std::string s_prefix = s_time + " Thread\\[[0-9a-f]+\\]:";

std::wstring widened(const fs::path& path)
{
    const std::string narrow = path.string();
    return {narrow.begin(), narrow.end()};
}

std::vector<std::string> linesOf(const std::string& text)
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

class ReportFile : public testing::Test {
protected:
    ZRef<ZLogBook> openBook() const { return ZRef<ZLogBook>(new ZLogBookFile(widened(m_path).c_str())); }
    [[nodiscard]] std::string content() const { return contentOf(m_path); }

    TemporaryFolder m_folder;
    fs::path m_path = m_folder.path() / "report.txt";
};

TEST_F(ReportFile, ARecordIsOneLine)
{
    openBook()->add(ZLogRecord() << "Connection" << 42);
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tConnection\t42\n"));
}

TEST_F(ReportFile, ARecordWithoutValuesIsTimeAndThread)
{
    openBook()->add(ZLogRecord());
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\n"));
}

TEST_F(ReportFile, TheTimeIsUtcAndTheThreadIsTheCaller)
{
    const auto seconds = [](const std::string& line) {
        tm fields{};
        strptime(line.c_str(), "%Y-%m-%dT%H:%M:%S", &fields);
        return timegm(&fields);
    };
    const time_t before = time(nullptr);
    const Outcome outcome = runInChild([&] {
        setenv("TZ", "XXX-14", 1);
        tzset();
        openBook()->add(ZLogRecord());
        std::printf("Thread[%x]:\n", Host::threadNumber());
        return 0;
    });
    EXPECT_GE(seconds(content()), before);
    EXPECT_LE(seconds(content()), time(nullptr));
    EXPECT_THAT(content(), EndsWith(" " + outcome.standardOutput));
}

TEST_F(ReportFile, TextsStandAsTheyAre)
{
    openBook()->add(ZLogRecord() << "a\tb\nc"
                                 << "" << static_cast<const char*>(nullptr) << L"w\u00E9");
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\ta\tb\nc\t\t\tw\xE9\n"));
}

TEST_F(ReportFile, ValuesPrintInTheirOwnForm)
{
    const ZTime time(2024, 3, 5, 7, 8, 9, 42);
    openBook()->add(ZLogRecord() << true << false << 'x' << L'y' << static_cast<signed char>(-1)
                                 << static_cast<unsigned char>(255) << 4294967295U << -9223372036854775807LL
                                 << 2.5 << time << ZGUID() << TZValueBase<ZTypeId>());
    EXPECT_THAT(content(),
        MatchesRegex(s_prefix
            + "\t1\t0\tx\ty\t-1\t255\t4294967295\t-9223372036854775807\t2\\.5\t2024-03-05T07:08:09"
              "\t\\{00000000-0000-0000-0000-000000000000\\}\t\n"));
}

TEST_F(ReportFile, ANewOrEmptyFileGetsNoSeparator)
{
    openBook();
    EXPECT_EQ(content(), "");
    openBook()->add(ZLogRecord() << "x");
    EXPECT_THAT(content(), MatchesRegex(s_prefix + "\tx\n"));
}

TEST_F(ReportFile, ALaterSessionIsAppendedBehindASeparator)
{
    writeFile(m_path, "before");
    openBook()->add(ZLogRecord() << "x");
    EXPECT_THAT(content(), MatchesRegex("before\r\n\r\n" + s_prefix + "\tx\n"));
    openBook();
    EXPECT_THAT(content(), EndsWith("\tx\n\r\n\r\n"));
}

TEST_F(ReportFile, EachRecordIsThereWhenAddReturns)
{
    const ZRef<ZLogBook> book = openBook();
    for (int i = 0; i < 10; ++i) {
        book->add(ZLogRecord() << i);
        EXPECT_THAT(content(), EndsWith("\t" + std::to_string(i) + "\n"));
    }
}

TEST_F(ReportFile, IsClosedWithTheBook)
{
    const auto descriptors = [] {
        return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
    };
    const auto before = descriptors();
    {
        const ZRef<ZLogBook> book = openBook();
        EXPECT_EQ(descriptors(), before + 1);
    }
    EXPECT_EQ(descriptors(), before);
}

TEST_F(ReportFile, AnErrorIsToldTwice)
{
    const ZRef<ZLogBook> book = openBook();
    book->setLastError(5, "open", "/tmp/x", 12, "denied");
    book->setLastError(0, "a", "b", -1, nullptr);
    const std::vector<std::string> lines = linesOf(content());
    ASSERT_EQ(lines.size(), 4U);
    EXPECT_THAT(
        lines[0], EndsWith("]:\tSetLastError(5): [open] has invoked [/tmp/x] which returned: 12 - denied"));
    EXPECT_THAT(lines[1], EndsWith("]:\tSet LastError:\t4294967295\t5\topen\t/tmp/x\t12\tdenied"));
    EXPECT_THAT(lines[2], EndsWith("]:\tSetLastError(0): [a] has invoked [b] which returned: -1"));
    EXPECT_THAT(lines[3], EndsWith("]:\tSet LastError:\t4294967295\t0\ta\tb\t-1\t"));
    EXPECT_EQ(book->getLastErrors().Count(), 2);
    book->clearLastError(5, pthread_t{});
    EXPECT_THAT(content(), EndsWith("]:\tClearLastError(5)\n"));
}

TEST_F(ReportFile, BlocksAreNotWritten)
{
    const ZRef<ZLogBook> book = openBook();
    book->writeStream(1, 2, "abc", 3);
    book->writeStream(255, -1, nullptr, -5);
    EXPECT_EQ(content(), "");
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.path()), fs::directory_iterator()), 1);
}

TEST_F(ReportFile, HasNoSessionText)
{
    ZGStr<wchar_t> out(L"x");
    EXPECT_FALSE(openBook()->getSessionTransferLog(out));
    EXPECT_TRUE(out == L"x");
    EXPECT_FALSE(openBook()->isInactive());
}

void expectOpenFailure(const std::function<void()>& open)
{
    try {
        open();
        ADD_FAILURE() << "it was opened";
    } catch (const ZException& exception) {
        EXPECT_STREQ(exception.what(), "Report file could not be opened");
        EXPECT_STREQ(exception.where(), "ZLogBookFile()");
        EXPECT_EQ(exception.why(), nullptr);
    }
}

TEST_F(ReportFile, AFolderThatIsMissingOrAFileInItsPlaceThrows)
{
    expectOpenFailure([&] { ZLogBookFile(widened(m_folder.path() / "no" / "report.txt").c_str()); });
    expectOpenFailure([&] { ZLogBookFile(widened(m_folder.path()).c_str()); });
    expectOpenFailure([] { ZLogBookFile(L""); });
}

TEST_F(ReportFile, AFolderThatIsNotWritableThrows)
{
    const Outcome outcome = runInChild([&] {
        fs::permissions(m_folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
        if (geteuid() == 0 && setuid(65534) != 0)
            return 1;
        expectOpenFailure([&] { ZLogBookFile(widened(m_path).c_str()); });
        return testing::Test::HasFailure() ? 2 : 0;
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
    fs::permissions(m_folder.path(), fs::perms::owner_all);
}

TEST_F(ReportFile, APathGoesNarrowUnitByUnit)
{
    const std::wstring path = widened(m_folder.path() / "r") + L"\u00E9\u20AC";
    ZLogBookFile book(path.c_str());
    EXPECT_TRUE(fs::exists(m_folder.path() / "r\xE9\xAC"));
}

TEST_F(ReportFile, TheDefaultBookIsNamedAfterTimeAndProcess)
{
    const Outcome outcome = runInChild([&] {
        setenv("HOME", m_folder.path().c_str(), 1);
        ZLogBookFile book;
        book.add(ZLogRecord() << "x");
        std::printf("%d", static_cast<int>(getpid()));
        return 0;
    });
    ASSERT_EQ(outcome.status, 0);
    const fs::directory_iterator files(m_folder.path());
    EXPECT_THAT(files->path().filename().string(),
        MatchesRegex("transfer\\.[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}-[0-9]{2}-[0-9]{2}_p"
            + outcome.standardOutput + "\\.report\\.txt"));
    EXPECT_THAT(contentOf(files->path()), MatchesRegex(s_prefix + "\tx\n"));
    EXPECT_EQ(std::distance(fs::directory_iterator(m_folder.path()), fs::directory_iterator()), 1);
}

TEST_F(ReportFile, ADefaultBookThatCannotBeOpenedThrows)
{
    const Outcome outcome = runInChild([&] {
        setenv("HOME", (m_folder.path() / "no").c_str(), 1);
        expectOpenFailure([] { ZLogBookFile book; });
        return testing::Test::HasFailure() ? 1 : 0;
    });
    EXPECT_EQ(outcome.status, 0) << outcome.standardOutput;
}

TEST_F(ReportFile, LinesOfManyThreadsAreWholeAndInOrder)
{
    constexpr int threadCount = 4;
    constexpr int lineCount = 250;
    const ZRef<ZLogBook> book = openBook();
    std::vector<std::thread> threads;
    for (int t = 0; t < threadCount; ++t) {
        threads.emplace_back([&book, t] {
            for (int i = 0; i < lineCount; ++i)
                book->add(ZLogRecord() << "thread" << t << i << "end");
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    const std::regex pattern(s_prefix + "\tthread\t([0-9]+)\t([0-9]+)\tend");
    std::vector<int> next(threadCount, 0);
    for (const std::string& line : linesOf(content())) {
        std::smatch match;
        ASSERT_TRUE(std::regex_match(line, match, pattern)) << line;
        EXPECT_EQ(std::stoi(match[2]), next[static_cast<std::size_t>(std::stoi(match[1]))]++);
    }
    EXPECT_THAT(next, testing::Each(lineCount));
}

TEST_F(ReportFile, LinesOfManyProcessesAreWhole)
{
    constexpr int processCount = 3;
    constexpr int lineCount = 200;
    const std::string filler(300, '.');
    const Outcome outcome = runInChild([&] {
        for (int p = 0; p < processCount; ++p) {
            if (fork() == 0) {
                const ZRef<ZLogBook> book = openBook();
                for (int i = 0; i < lineCount; ++i)
                    book->add(ZLogRecord() << filler.c_str() << "end");
                std::_Exit(0);
            }
        }
        while (wait(nullptr) > 0) { }
        return 0;
    });
    ASSERT_EQ(outcome.status, 0);
    const std::regex pattern("\r|(" + s_prefix + "\t\\.{300}\tend)");
    long records = 0;
    for (const std::string& line : linesOf(content())) {
        EXPECT_TRUE(std::regex_match(line, pattern)) << line;
        records += line != "\r";
    }
    EXPECT_EQ(records, processCount * lineCount);
}

/// A book on one end of a datagram socket pair: each write arrives as a message of its own.
TEST_F(ReportFile, ARecordOfAnyLengthIsOneWrite)
{
    int ends[2];
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends), 0);
    for (const int end : ends) {
        const int size = 1 << 20;
        setsockopt(end, SOL_SOCKET, SO_SNDBUF, &size, sizeof size);
    }
    const ZRef<ZLogBook> book = openBook();
    for (const auto& entry : fs::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (fs::read_symlink(entry.path(), error) == m_path)
            dup2(ends[0], std::stoi(entry.path().filename()));
    }
    std::vector<char> buffer(1 << 18);
    for (const std::size_t length : {0U, 60U, 4095U, 4096U, 9000U, 65536U, 100'000U}) {
        const std::string text(length, 'x');
        book->add(ZLogRecord() << text.c_str());
        const ssize_t received = recv(ends[1], buffer.data(), buffer.size(), MSG_DONTWAIT);
        ASSERT_GT(received, 0);
        EXPECT_THAT(
            std::string(buffer.data(), static_cast<std::size_t>(received)), EndsWith("]:\t" + text + "\n"));
        EXPECT_LT(recv(ends[1], buffer.data(), buffer.size(), MSG_DONTWAIT), 0);
    }
    close(ends[0]);
    close(ends[1]);
}

TEST_F(ReportFile, AFullDiskLosesLinesAndCutsOneAtMost)
{
    const Outcome outcome = runInChild([&] {
        signal(SIGXFSZ, SIG_IGN);
        const ZRef<ZLogBook> book = openBook();
        const auto limit = [](rlim_t bytes) {
            const rlimit limits{bytes, RLIM_INFINITY};
            setrlimit(RLIMIT_FSIZE, &limits);
        };
        for (const rlim_t size : {rlim_t{1000}, rlim_t{2000}, rlim_t{3000}}) {
            limit(size); // as full as a disk can be, in the middle of a line
            for (int i = 0; i < 100; ++i)
                book->add(ZLogRecord() << "number" << i << "end");
        }
        limit(RLIM_INFINITY);
        book->add(ZLogRecord() << "last" << 0 << "end");
        return 0;
    });
    EXPECT_EQ(outcome.status, 0);
    const std::regex whole(s_prefix + "\t(number|last)\t[0-9]+\tend");
    int torn = 0;
    for (const std::string& line : linesOf(content()))
        torn += !std::regex_match(line, whole);
    EXPECT_LE(torn, 3); // one for each time that the disk was full
    EXPECT_THAT(content(), EndsWith("\tlast\t0\tend\n"));
}

TEST_F(ReportFile, ADeviceWithoutRoomLosesLinesOnly)
{
    ZLogBookFile book(L"/dev/full");
    for (int i = 0; i < 100; ++i)
        book.add(ZLogRecord() << i);
}

TEST_F(ReportFile, AFileThatIsRemovedOrRenamedIsStillWritten)
{
    const ZRef<ZLogBook> book = openBook();
    fs::rename(m_path, m_folder.path() / "moved");
    book->add(ZLogRecord() << "x");
    EXPECT_THAT(contentOf(m_folder.path() / "moved"), MatchesRegex(s_prefix + "\tx\n"));
    fs::remove(m_folder.path() / "moved");
    book->add(ZLogRecord() << "y");
    EXPECT_FALSE(fs::exists(m_path));
}

TEST_F(ReportFile, AFileThatIsMadeReadOnlyIsStillWritten)
{
    const ZRef<ZLogBook> book = openBook();
    chmod(m_path.c_str(), 0444);
    book->add(ZLogRecord() << "x");
    EXPECT_THAT(content(), EndsWith("\tx\n"));
}

TEST_F(ReportFile, IsNotInheritedByPrograms)
{
    const ZRef<ZLogBook> book = openBook();
    const Outcome outcome = runInChild([] {
        execl("/bin/ls", "ls", "-l", "/proc/self/fd", nullptr);
        return 126;
    });
    EXPECT_THAT(outcome.standardOutput, testing::Not(testing::HasSubstr("report.txt")));
}

TEST_F(ReportFile, AForkedChildLogsItsOwnNumber)
{
    const ZRef<ZLogBook> book = openBook();
    book->add(ZLogRecord());
    const Outcome outcome = runInChild([&] {
        book->add(ZLogRecord());
        std::printf("Thread[%x]:\n", static_cast<unsigned int>(getpid()));
        return 0;
    });
    EXPECT_THAT(content(), EndsWith(" " + outcome.standardOutput));
}

/// Kills a process at random moments while it logs; each line whose call has returned must be there, whole.
TEST_F(ReportFile, AKilledProcessLosesNoLineWhoseCallHadReturned)
{
    auto* const acknowledged = static_cast<volatile int*>(
        mmap(nullptr, sizeof(int), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(acknowledged, MAP_FAILED);
    std::mt19937 random(20260304); // NOLINT: the same moments, as far as a clock allows, on every run
    const std::regex whole(s_prefix + "\tnumber\t([0-9]+)\tend");
    for (int run = 0; run < 500; ++run) {
        fs::remove(m_path);
        *acknowledged = 0;
        const pid_t child = fork();
        if (child == 0) {
            const ZRef<ZLogBook> book = openBook();
            for (int i = 1;; ++i) {
                book->add(ZLogRecord() << "number" << i << "end");
                *acknowledged = i;
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(random() % 2000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        int next = 1;
        const std::vector<std::string> lines = linesOf(content());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            std::smatch match;
            if (std::regex_match(lines[i], match, whole))
                ASSERT_EQ(std::stoi(match[1]), next++);
            else
                ASSERT_EQ(i, lines.size() - 1) << lines[i];
        }
        ASSERT_GT(next, *acknowledged) << "in run " << run;
    }
    munmap(const_cast<int*>(acknowledged), sizeof(int));
}

TEST(ZLogBookFileEntry, StartsAtZero)
{
    const ZLogBookFileEntry entry;
    EXPECT_EQ(entry.m_time, 0U);
    EXPECT_EQ(entry.m_tag, 0);
    EXPECT_EQ(entry.m_first, 0);
    EXPECT_EQ(entry.m_second, 0);
}

TEST(ZLogBookFileEntry, IsStampedWithTheTime)
{
    const unsigned long long before = ZTime(true);
    const ZLogBookFileEntry entry(200, -1, 2);
    EXPECT_GE(entry.m_time, before);
    EXPECT_LE(entry.m_time, static_cast<unsigned long long>(ZTime(true)));
    EXPECT_EQ(entry.m_tag, 200);
    EXPECT_EQ(entry.m_first, -1);
    EXPECT_EQ(entry.m_second, 2);
    static_assert(offsetof(ZLogBookFileEntry, m_time) == 0 && offsetof(ZLogBookFileEntry, m_tag) == 8);
    static_assert(offsetof(ZLogBookFileEntry, m_first) == 12 && offsetof(ZLogBookFileEntry, m_second) == 16);
}

TEST(ZLogBookFileDeathTest, AnItemThatHoldsNothingEndsTheProcess)
{
    const TemporaryFolder folder;
    ZLogRecord record;
    record << 1;
    const_cast<ZLogRecord::Item&>(*record.begin()) = nullptr;
    const Outcome outcome = runInChild([&] {
        ZLogBookFile(ZGStr<wchar_t>((folder.path() / "file").c_str())).add(record);
        return 1;
    });
    EXPECT_EQ(outcome.status, SIGABRT);
    EXPECT_EQ(outcome.standardOutput, "this->m_ptValue - File: ZTypeRef - Line: 534\n");
}

} // namespace
} // namespace ZSpace::Testing
