// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// How costs grow with the size of the work. Prints one line per measurement, "<subject> <size> <value>": nanoseconds
// per element, except for the memory of a process that logs, which is in KiB. scale.py draws the curves.

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/system/TZSysFile.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace ZSpace;
namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

long g_maximum = 1'000'000;

void report(const char* subject, long size, double value)
{
    std::cout << subject << ' ' << size << ' ' << value << std::endl; // at once, since a run takes minutes
}

double nanosecondsOf(const std::function<void()>& work)
{
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count();
}

/// The least time of several runs, per element. Small work is repeated within a run.
double nanosecondsPerElement(long size, const std::function<void()>& work)
{
    const long repetitions = std::max(1L, 20'000 / size);
    double least = 1e300;
    for (int attempt = 0; attempt < 5; ++attempt) {
        least = std::min(least, nanosecondsOf([&] {
            for (long i = 0; i < repetitions; ++i)
                work();
        }));
    }
    return least / static_cast<double>(repetitions * size);
}

/// Measures four decades of sizes.
void measure(const char* subject, long least, const std::function<std::function<void()>(long size)>& prepare)
{
    for (long size = least; size <= std::min(g_maximum, least * 10'000); size *= 10)
        report(subject, size, nanosecondsPerElement(size, prepare(size)));
}

long residentKibibytes()
{
    std::ifstream memory("/proc/self/statm");
    long pages = 0;
    memory >> pages >> pages;
    return pages * (sysconf(_SC_PAGESIZE) / 1024);
}

const std::string s_line(60, 'x');

void logLines(long count)
{
    for (long i = 0; i < count; ++i)
        CNSLogMsg(s_line.c_str());
}

/// The cost of a line after ten, a hundred, ... lines, and the memory that the process has in use then.
void measureLines(const fs::path& folder)
{
    CNSInitLog(CNSLogFlagFile, 0, "scale", folder.c_str());
    for (long done = 0, size = 10; size <= 10 * g_maximum; size *= 10) {
        report(
            "lines", size, nanosecondsOf([&] { logLines(size - done); }) / static_cast<double>(size - done));
        report("memory", size, static_cast<double>(residentKibibytes()));
        done = size;
    }
    CNSDisableFileLogging();
}

/// The time that the machine needs for a line, by up to 64 threads per processor.
void measureThreads(const fs::path& folder)
{
    CNSInitLog(CNSLogFlagFile, 0, "threads", folder.c_str());
    const long processors = std::max(1L, static_cast<long>(std::thread::hardware_concurrency()));
    for (long count = 1; count <= 64 * processors; count *= 2) {
        const long lines = std::min(g_maximum, 200'000L) / count;
        report("threads", count, nanosecondsOf([&] {
            std::vector<std::jthread> threads;
            for (long i = 0; i < count; ++i)
                threads.emplace_back(logLines, lines);
        }) / static_cast<double>(lines * count));
    }
    CNSDisableFileLogging();
}

void measureTrail(const fs::path& folder)
{
    ZLogBookFile book((folder / "book").wstring().c_str());
    const pthread_t thread = pthread_self();
    measure("trail, add and clear", 10, [&](long size) {
        return [&book, thread, size] {
            for (long i = 0; i < size; ++i)
                book.setLastError(1, "caller", "callee", 1, "text");
            book.clearLastError(1, thread);
        };
    });
}

void measureContainers()
{
    measure("list, add", 10, [](long size) {
        return [size] {
            ZList<long> list;
            for (long i = 0; i < size; ++i)
                list.add(i);
        };
    });
    const long sizeOfMap = std::min(g_maximum, 10'000L); // look-up is linear
    for (long size = 1; size <= sizeOfMap; size *= 10) {
        ZMap<long, long> map;
        for (long i = 0; i < size; ++i)
            map.add(i, i);
        report("map, find", size, nanosecondsPerElement(1'000, [&map, size] {
            long sum = 0;
            for (long i = 0; i < 1'000; ++i)
                sum += *map.find(i * 7919 % size);
            if (sum < 0)
                std::abort(); // keeps the look-ups
        }));
    }
}

std::string piecesOf(long count)
{
    std::string text;
    for (long i = 0; i < count; ++i)
        text += "piece" + std::to_string(i % 100) + ",";
    return text;
}

void measureStrings()
{
    measure("split", 100, [](long size) {
        return [text = ZGStr<char>(piecesOf(size).c_str())] { static_cast<void>(text.split(',').Count()); };
    });
    measure("replace", 100, [](long size) {
        return [text = piecesOf(size)] {
            ZMStr<char> copy(text.c_str(), static_cast<long>(text.size()));
            copy.replace(",", ", ");
        };
    });
}

void measureDirectory(const fs::path& folder)
{
    for (long size = 10; size <= std::min(g_maximum, 100'000L); size *= 10) {
        const fs::path directory = folder / std::to_string(size);
        fs::create_directory(directory);
        for (long i = 0; i < size; ++i)
            std::ofstream(directory / ("name " + std::to_string(i)));
        report("directory, list", size, nanosecondsPerElement(size, [&] {
            ZList<ZMStr<char>> names;
            TZSysFile<char>::readDirectory(directory.c_str(), names);
            if (names.Count() != size)
                std::abort();
        }));
        fs::remove_all(directory);
    }
}

} // namespace

/// Arguments: a directory for files, and the largest size, by default a million.
int main(int count, char** arguments)
{
    if (count < 2) {
        std::cerr << "usage: scale DIRECTORY [LARGEST]\n";
        return 2;
    }
    if (count > 2)
        g_maximum = std::atol(arguments[2]);
    const fs::path folder = fs::path(arguments[1]) / ("zspace-scale-" + std::to_string(getpid()));
    fs::create_directories(folder);
    measureLines(folder);
    measureThreads(folder);
    measureTrail(folder);
    measureContainers();
    measureStrings();
    measureDirectory(folder);
    fs::remove_all(folder);
    return 0;
}
