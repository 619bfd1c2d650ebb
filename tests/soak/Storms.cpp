// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Many threads and processes that log to one file, while processes fork, are killed, or find the disk full.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZTransferLog.h"
#include "tests/soak/Load.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <random>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace ZSpace::Soak {

namespace {

using Clock = std::chrono::steady_clock;
namespace fs = std::filesystem;

constexpr int s_mostThreads = 64;
using Counts = std::array<std::atomic<long>, s_mostThreads>;

std::string nameOf(int process, int thread)
{
    return "p" + std::to_string(process) + "t" + std::to_string(thread);
}

/// Threads that log numbered lines to a book until they are stopped. A line is acknowledged when its call has returned.
class Loggers {
public:
    Loggers(ZRef<ZLogBook> book, int process, int threadCount, Counts& acknowledged)
        : m_book(std::move(book))
    {
        for (int t = 0; t < threadCount; ++t) {
            m_threads.emplace_back([this, process, t, &acknowledged] {
                const std::string name = nameOf(process, t);
                for (long i = 0; !m_isOver; ++i) {
                    logNumbered(*m_book, name, i);
                    acknowledged[static_cast<std::size_t>(t)] = i + 1;
                }
            });
        }
    }
    Loggers(const Loggers&) = delete; // threads refer to it
    Loggers& operator=(const Loggers&) = delete;
    ~Loggers()
    {
        m_isOver = true;
        for (std::thread& thread : m_threads)
            thread.join();
    }

private:
    ZRef<ZLogBook> m_book;
    std::atomic<bool> m_isOver{false};
    std::vector<std::thread> m_threads;
};

/// How many acknowledged lines of a process are not in its report.
long missing(const Lines& lines, int process, const Counts& acknowledged)
{
    long count = 0;
    for (int t = 0; t < s_mostThreads; ++t) {
        const long wanted = acknowledged[static_cast<std::size_t>(t)];
        const auto found = lines.next.find(nameOf(process, t));
        const long had = found == lines.next.end() ? 0 : found->second;
        count += std::max(wanted - had, 0L);
    }
    return count;
}

std::string lossOf(long missingLines, const Lines& lines, long badEnds)
{
    if (missingLines == 0 && lines.broken == 0 && lines.disordered == 0 && badEnds == 0)
        return s_nothing;
    return grouped(missingLines) + " missing, " + grouped(lines.broken) + " broken, "
        + grouped(lines.disordered) + " out of order, " + grouped(badEnds) + " processes ended badly";
}

/// Waits for a child. @return whether it ended with status 0.
bool endedWell(pid_t child)
{
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

Result flood(const Scale& scale)
{
    constexpr int processes = 4;
    const fs::path file = scale.directory / "flood.txt";
    const Shared<std::array<Counts, processes>> acknowledged;
    std::vector<pid_t> children;
    for (int p = 0; p < processes; ++p) {
        children.push_back(fork());
        if (children.back() == 0) {
            {
                const Loggers loggers(
                    openBook(file), p, s_mostThreads, (*acknowledged)[static_cast<std::size_t>(p)]);
                std::this_thread::sleep_for(scale.storm);
            }
            std::_Exit(0);
        }
    }
    long badEnds = 0;
    for (const pid_t child : children)
        badEnds += !endedWell(child);
    const Lines lines = readNumbered(file);
    long missingLines = 0;
    for (int p = 0; p < processes; ++p)
        missingLines += missing(lines, p, (*acknowledged)[static_cast<std::size_t>(p)]);
    const auto megabytes = static_cast<long>(fs::file_size(file) >> 20);
    fs::remove(file);
    return {"64 threads in each of 4 processes, one file, " + std::to_string(scale.storm.count()) + " s",
        grouped(lines.whole) + " lines (" + grouped(megabytes)
            + " MiB), whole and in the order of their threads",
        lossOf(missingLines, lines, badEnds)};
}

Result forkStorm(const Scale& scale)
{
    constexpr int threads = 8;
    constexpr long linesPerChild = 10;
    const fs::path file = scale.directory / "fork.txt";
    const Shared<Counts> acknowledged;
    const ZRef<ZLogBook> book = openBook(file);
    long children = 0;
    long badEnds = 0;
    {
        const Loggers loggers(book, 0, threads, *acknowledged);
        for (const Clock::time_point end = Clock::now() + scale.storm; Clock::now() < end; ++children) {
            const pid_t child = fork();
            if (child == 0) {
                alarm(30); // a signal ends a child that hangs
                for (long i = 0; i < linesPerChild; ++i)
                    logNumbered(*book, "child" + std::to_string(children), i);
                std::_Exit(0);
            }
            badEnds += !endedWell(child);
        }
    }
    const Lines lines = readNumbered(file);
    fs::remove(file);
    long missingLines = missing(lines, 0, *acknowledged);
    for (long c = 0; c < children; ++c) {
        const auto found = lines.next.find("child" + std::to_string(c));
        missingLines += linesPerChild - (found == lines.next.end() ? 0 : found->second);
    }
    return {
        "forks while 8 threads log, " + std::to_string(scale.storm.count()) + " s; each child logs 10 lines",
        grouped(children) + " children, " + grouped(lines.whole) + " lines",
        lossOf(missingLines, lines, badEnds)};
}

Result killStorm(const Scale& scale)
{
    constexpr int threads = 8;
    const fs::path file = scale.directory / "kill.txt";
    std::mt19937 random(1);
    std::uniform_int_distribution<int> milliseconds(1, 40);
    long kills = 0;
    long missingLines = 0;
    Lines all;
    for (const Clock::time_point end = Clock::now() + scale.storm; Clock::now() < end; ++kills) {
        const Shared<Counts> acknowledged;
        const pid_t child = fork();
        if (child == 0) {
            const Loggers loggers(openBook(file), 0, threads, *acknowledged);
            for (;;)
                pause();
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds(random)));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const Lines lines = readNumbered(file);
        fs::remove(file);
        missingLines += missing(lines, 0, *acknowledged);
        all.whole += lines.whole;
        all.broken += lines.broken;
        all.disordered += lines.disordered;
    }
    return {"a process with 8 threads is killed (SIGKILL) after 1 to 40 ms, again and again for "
            + std::to_string(scale.storm.count()) + " s",
        grouped(kills) + " kills, " + grouped(all.whole) + " lines, " + grouped(all.broken)
            + " cut by a kill",
        // What a kill interrupts was not acknowledged.
        lossOf(missingLines, {all.whole, std::max(all.broken - kills, 0L), all.disordered, {}}, 0)};
}

namespace {

/// In its own mount namespace: a disk of 4 MiB that is alternately full and not.
int logToFullDisk(const fs::path& disk, std::chrono::seconds time, std::array<long, 5>& counts)
{
    const bool isRoot = geteuid() == 0;
    if (unshare(isRoot ? CLONE_NEWNS : CLONE_NEWUSER | CLONE_NEWNS) != 0
        || mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0
        || mount("tmpfs", disk.c_str(), "tmpfs", 0, "size=4m") != 0)
        return 2;
    auto& [rounds, whole, broken, disordered, unfinished] = counts;
    for (const Clock::time_point end = Clock::now() + time; Clock::now() < end; ++rounds) {
        const fs::path file = disk / "report.txt";
        const fs::path filler = disk / "filler";
        {
            const ZRef<ZLogBook> book = openBook(file);
            std::ofstream(filler) << std::string(3 << 20, 'x');
            const Shared<Counts> acknowledged;
            {
                const Loggers loggers(book, 0, 8, *acknowledged);
                while (fs::space(disk).available > 0)
                    std::this_thread::yield();
                std::this_thread::sleep_for(std::chrono::milliseconds(10));
                fs::remove(filler); // there is space again
                std::this_thread::sleep_for(std::chrono::milliseconds(3));
            }
            logNumbered(*book, "last", 0);
        }
        const Lines lines = readNumbered(file, true);
        whole += lines.whole;
        broken += lines.broken;
        disordered += lines.disordered;
        unfinished += !lines.next.contains("last") && fs::space(disk).available > 4096;
        fs::remove(file);
    }
    return 0;
}

} // namespace

Result fullDiskStorm(const Scale& scale)
{
    const fs::path disk = scale.directory / "disk";
    fs::create_directories(disk);
    const Shared<std::array<long, 5>> counts;
    const pid_t child = fork();
    if (child == 0)
        std::_Exit(logToFullDisk(disk, scale.storm, *counts));
    int status = -1;
    waitpid(child, &status, 0);
    const std::string load = "8 threads log to a disk that fills up and gets space again, for "
        + std::to_string(scale.storm.count()) + " s";
    if (WIFEXITED(status) && WEXITSTATUS(status) == 2)
        return {load, "not run: this user may not make mount namespaces", s_nothing};
    const auto [rounds, whole, broken, disordered, unfinished] = *counts;
    // What does not fit is lost; the line at which the disk fills up may be cut.
    const Lines beyond{whole, std::max(broken - rounds, 0L), disordered, {}};
    return {load,
        grouped(rounds) + " times full, " + grouped(whole) + " whole lines, " + grouped(broken)
            + " cut where the disk was full",
        lossOf(unfinished, beyond, !(WIFEXITED(status) && WEXITSTATUS(status) == 0))};
}

} // namespace ZSpace::Soak
