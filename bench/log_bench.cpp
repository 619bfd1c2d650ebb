// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The cost of one record on its way to a file: the log front end next to a baseline (read the clock, format
// by hand, one write) and to other ways to log that hand each record to the system before they return.
//
// Each benchmark takes the length of the string and the kind of file system: 0 for the temporary directory, 1
// for the shared memory file system. Compare ratios within one run.

#include "ZSpace/log/LogFrontEnd.h"
#include "ZSpace/log/ZLogBookFile.h"
#include "ZSpace/log/ZLogBookFilter.h"
#include "ZSpace/log/ZLogBookJson.h"
#include "ZSpace/log/ZLogBookRolling.h"
#include "ZSpace/log/ZLogBookSystem.h"
#include "ZSpace/log/ZTransferLog.h"
#include "ZSpace/system/ZSysInfoPaths.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <glog/logging.h>
#include <memory>
#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <string>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

fs::path folderOf(const benchmark::State& state)
{
    const fs::path base = state.range(1) == 0 ? fs::temp_directory_path() : fs::path("/dev/shm");
    const fs::path folder = base / ("zspace-bench-" + std::to_string(getpid()));
    fs::create_directories(folder);
    return folder;
}

std::string textOf(const benchmark::State& state)
{
    return std::string(static_cast<std::size_t>(state.range(0)), 'x');
}

/// Runs `log` for one string repeatedly; the first thread sets up and tears down.
template <typename SetUp, typename Log, typename TearDown>
void measure(benchmark::State& state, SetUp setUp, Log log, TearDown tearDown)
{
    const fs::path folder = folderOf(state);
    if (state.thread_index() == 0)
        setUp(folder);
    const std::string text = textOf(state);
    for (auto _ : state)
        log(text.c_str());
    if (state.thread_index() == 0) {
        tearDown();
        fs::remove_all(folder);
    }
}

int g_file = -1;

char* appendTwo(char* to, int number, char separator)
{
    *to++ = static_cast<char>('0' + number / 10);
    *to++ = static_cast<char>('0' + number % 10);
    *to++ = separator;
    return to;
}

/// The minimum that any logger with such lines must do.
void baselineLog(const char* text)
{
    thread_local const unsigned int thread = static_cast<unsigned int>(syscall(SYS_gettid));
    thread_local time_t cachedSecond = -1;
    thread_local tm fields{};
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    if (now.tv_sec != cachedSecond) {
        cachedSecond = now.tv_sec;
        gmtime_r(&now.tv_sec, &fields);
    }
    char line[512];
    const int year = fields.tm_year + 1900;
    char* to = appendTwo(line, year / 100, '0' + static_cast<char>(year % 100 / 10));
    *to++ = static_cast<char>('0' + year % 10);
    *to++ = '-';
    to = appendTwo(to, fields.tm_mon + 1, '-');
    to = appendTwo(to, fields.tm_mday, 'T');
    to = appendTwo(to, fields.tm_hour, ':');
    to = appendTwo(to, fields.tm_min, ':');
    to = appendTwo(to, fields.tm_sec, '.');
    const int milliseconds = static_cast<int>(now.tv_nsec / 1'000'000);
    *to++ = static_cast<char>('0' + milliseconds / 100);
    to = appendTwo(to, milliseconds % 100, ' ');
    std::memcpy(to, "Thread[", 7);
    to += 7;
    char digits[8];
    int count = 0;
    for (unsigned int rest = thread; rest != 0; rest >>= 4)
        digits[count++] = "0123456789abcdef"[rest & 15];
    while (count > 0)
        *to++ = digits[--count];
    std::memcpy(to, "]:\t", 3);
    to += 3;
    const std::size_t length = std::strlen(text);
    std::memcpy(to, text, length);
    to += length;
    *to++ = '\n';
    benchmark::DoNotOptimize(write(g_file, line, static_cast<std::size_t>(to - line)));
}

void Baseline(benchmark::State& state)
{
    measure(
        state,
        [](const fs::path& folder) {
            g_file = open((folder / "baseline").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
        },
        baselineLog, [] { close(g_file); });
}

ZSpace::ZRef<ZSpace::ZLogBook> g_book;

/// A record with one C string, added to the book that `make` creates from a path.
template <typename Make>
void measureBook(benchmark::State& state, Make make)
{
    measure(
        state,
        [make](const fs::path& folder) {
            const std::string path = (folder / "book").string();
            g_book = make(std::wstring(path.begin(), path.end()).c_str());
        },
        [](const char* text) { g_book->add(ZSpace::ZLogRecord() << text); }, [] { g_book = nullptr; });
}

void Book(benchmark::State& state)
{
    measureBook(state, [](const wchar_t* path) { return ZSpace::makeRef<ZSpace::ZLogBookFile>(path); });
}

void BookRolling(benchmark::State& state)
{
    measureBook(state, [](const wchar_t* path) {
        return ZSpace::makeRef<ZSpace::ZLogBookRolling>(
            path, ZSpace::ZLogBookRolling::Limits{.sizeInBytes = 1'000'000, .isDaily = true});
    });
}

void BookJson(benchmark::State& state)
{
    measureBook(state, [](const wchar_t* path) { return ZSpace::makeRef<ZSpace::ZLogBookJson>(path); });
}

/// Passes a record on to a report file, or refuses it.
void BookFilter(benchmark::State& state)
{
    measureBook(state, [](const wchar_t* path) {
        const ZSpace::ZRef<ZSpace::ZLogBook> file = ZSpace::makeRef<ZSpace::ZLogBookFile>(path);
        return ZSpace::makeRef<ZSpace::ZLogBookFilter>(file, ZSpace::ZLogLevel::Info);
    });
}

void BookFilterRefusing(benchmark::State& state)
{
    measureBook(state, [](const wchar_t*) {
        const ZSpace::ZRef<ZSpace::ZLogBook> none = ZSpace::makeRef<ZSpace::ZLogBookDummy>();
        return ZSpace::makeRef<ZSpace::ZLogBookFilter>(none, ZSpace::ZLogLevel::Error);
    });
}

/// To a socket instead of journald's, which a thread reads.
class Journal {
public:
    explicit Journal(const std::string& path)
        : m_socket(socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        if (bind(m_socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0)
            m_reader = std::thread([this] {
                char buffer[4096];
                while (recv(m_socket, buffer, sizeof buffer, 0) > 0) { }
            });
    }
    Journal(const Journal&) = delete;
    Journal& operator=(const Journal&) = delete;
    ~Journal()
    {
        shutdown(m_socket, SHUT_RDWR);
        if (m_reader.joinable())
            m_reader.join();
        close(m_socket);
    }

private:
    int m_socket;
    std::thread m_reader;
};

void BookSystem(benchmark::State& state)
{
    std::unique_ptr<Journal> journal;
    measureBook(state, [&journal](const wchar_t* path) {
        const std::string socketPath{ZSpace::ZGStr<char>(path)};
        journal = std::make_unique<Journal>(socketPath);
        return ZSpace::makeRef<ZSpace::ZLogBookSystem>("bench", socketPath.c_str());
    });
}

void FrontEnd(benchmark::State& state)
{
    measure(
        state, [](const fs::path& folder) { CNSInitLog(CNSLogFlagFile, 0, "bench", folder.c_str()); },
        [](const char* text) { CNSLog("%s", text); }, [] { CNSDisableFileLogging(); });
}

void FrontEndFinishedText(benchmark::State& state)
{
    measure(
        state, [](const fs::path& folder) { CNSInitLog(CNSLogFlagFile, 0, "bench", folder.c_str()); },
        [](const char* text) { CNSLogMsg(text); }, [] { CNSDisableFileLogging(); });
}

std::shared_ptr<spdlog::logger> g_spdlog;

void Spdlog(benchmark::State& state)
{
    measure(
        state,
        [](const fs::path& folder) {
            g_spdlog = std::make_shared<spdlog::logger>(
                "bench", std::make_shared<spdlog::sinks::basic_file_sink_mt>((folder / "spdlog").string()));
            g_spdlog->set_pattern("%Y-%m-%dT%H:%M:%S.%e Thread[%t]:\t%v", spdlog::pattern_time_type::utc);
            g_spdlog->flush_on(spdlog::level::trace);
        },
        [](const char* text) { g_spdlog->info("{}", text); }, [] { g_spdlog.reset(); });
}

void Glog(benchmark::State& state)
{
    measure(
        state,
        [](const fs::path& folder) {
            FLAGS_logbuflevel = google::GLOG_INFO - 1; // unbuffered
            if (!google::IsGoogleLoggingInitialized())
                google::InitGoogleLogging("bench");
            google::SetLogDestination(google::INFO, (folder / "glog").c_str());
        },
        [](const char* text) { LOG(INFO) << text; }, [] { google::SetLogDestination(google::INFO, ""); });
}

std::FILE* g_stream = nullptr;

void PrintAndFlush(benchmark::State& state)
{
    measure(
        state, [](const fs::path& folder) { g_stream = std::fopen((folder / "stdio").c_str(), "ae"); },
        [](const char* text) {
            thread_local const unsigned int thread = static_cast<unsigned int>(syscall(SYS_gettid));
            timespec now{};
            clock_gettime(CLOCK_REALTIME, &now);
            tm fields{};
            gmtime_r(&now.tv_sec, &fields);
            std::fprintf(g_stream, "%04d-%02d-%02dT%02d:%02d:%02d.%03d Thread[%x]:\t%s\n",
                fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min,
                fields.tm_sec, static_cast<int>(now.tv_nsec / 1'000'000), thread, text);
            std::fflush(g_stream);
        },
        [] { std::fclose(g_stream); });
}

void lengthsAndFolders(benchmark::internal::Benchmark* benchmark)
{
    for (const int folder : {0, 1}) {
        for (const int length : {60, 200})
            benchmark->Args({length, folder});
    }
    benchmark->ArgNames({"bytes", "shm"})->Threads(1)->Threads(2)->UseRealTime();
}

BENCHMARK(Baseline)->Apply(lengthsAndFolders);
BENCHMARK(Book)->Apply(lengthsAndFolders);
BENCHMARK(BookRolling)->Apply(lengthsAndFolders);
BENCHMARK(BookJson)->Apply(lengthsAndFolders);
BENCHMARK(BookFilter)->Apply(lengthsAndFolders);
BENCHMARK(BookFilterRefusing)->Apply(lengthsAndFolders);
BENCHMARK(BookSystem)->Apply(lengthsAndFolders);
BENCHMARK(FrontEnd)->Apply(lengthsAndFolders);
BENCHMARK(FrontEndFinishedText)->Apply(lengthsAndFolders);
BENCHMARK(Spdlog)->Apply(lengthsAndFolders);
BENCHMARK(PrintAndFlush)->Apply(lengthsAndFolders);
BENCHMARK(Glog)->Apply(lengthsAndFolders);

} // namespace
