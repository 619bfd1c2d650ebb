// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Streams and the toolbox for files beside the same work done bare (the C library, system calls) and by the
// standard library, in the same run. Files lie in a folder of their own below TMPDIR.

#include "ZSpace/stream/ZIOGFile.h"
#include "ZSpace/system/TZSysFile.h"

#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <memory>
#include <pthread.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace {

using namespace ZSpace;

namespace fs = std::filesystem;

/// The folder of this run.
class Folder {
public:
    Folder()
    {
        std::string name = (fs::temp_directory_path() / "zspace-bench-XXXXXX").string();
        if (!mkdtemp(name.data()))
            std::abort();
        m_path = name;
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() { fs::remove_all(m_path); }

    [[nodiscard]] std::string file(const char* name) const { return (m_path / name).string(); }

    /// A file of that many bytes.
    [[nodiscard]] std::string fileOf(std::size_t size) const
    {
        std::ofstream(file("source"), std::ios::binary) << std::string(size, 'x');
        return file("source");
    }

    /// A folder of that many files; made once.
    [[nodiscard]] std::string folderOf(long entries) const
    {
        const fs::path path = m_path / std::to_string(entries);
        if (fs::create_directory(path)) {
            for (long i = 0; i < entries; ++i)
                std::ofstream(path / ("some file of the folder " + std::to_string(i)));
        }
        return path.string();
    }

private:
    fs::path m_path;
};

const Folder s_folder;

const std::string s_line = "2024-03-05T07:08:09.042 Thread[1a03]:\tone line of a report\n";

// Lines into the buffer of a file

template <typename Write>
void writeLines(benchmark::State& state, Write write)
{
    for (auto _ : state)
        write();
    state.SetBytesProcessed(state.iterations() * static_cast<long>(s_line.size()));
}

void line(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_folder.file("lines").c_str(), ZIOGFile<>::ModeWrite);
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())); });
    file.close();
}
BENCHMARK(line);

void lineBare(benchmark::State& state)
{
    FILE* file = fopen(s_folder.file("lines").c_str(), "w");
    writeLines(state, [&] { fwrite(s_line.data(), 1, s_line.size(), file); });
    fclose(file);
}
BENCHMARK(lineBare);

void lineStd(benchmark::State& state)
{
    std::fstream file(s_folder.file("lines"), std::ios::out | std::ios::binary);
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())); });
}
BENCHMARK(lineStd);

// Lines that reach the system one by one

void lineThrough(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_folder.file("lines").c_str(), ZIOGFile<>::ModeAppend);
    file.writeThrough();
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())); });
    file.close();
    fs::remove(s_folder.file("lines"));
}
BENCHMARK(lineThrough);

void lineThroughFlush(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_folder.file("lines").c_str(), ZIOGFile<>::ModeAppend);
    writeLines(state, [&] {
        file.write(s_line.data(), static_cast<long>(s_line.size()));
        file.flush();
    });
    file.close();
    fs::remove(s_folder.file("lines"));
}
BENCHMARK(lineThroughFlush);

void lineThroughBare(benchmark::State& state)
{
    const int file = open(s_folder.file("lines").c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    writeLines(state, [&] { benchmark::DoNotOptimize(write(file, s_line.data(), s_line.size())); });
    close(file);
    fs::remove(s_folder.file("lines"));
}
BENCHMARK(lineThroughBare);

void lineThroughStd(benchmark::State& state)
{
    std::fstream file(s_folder.file("lines"), std::ios::out | std::ios::app | std::ios::binary);
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())).flush(); });
    fs::remove(s_folder.file("lines"));
}
BENCHMARK(lineThroughStd);

// Reading a file of 1 MiB

constexpr long s_fileSize = 1L << 20;

/// Rewinds and reads pieces until there are no more.
template <typename Rewind, typename Read>
void readFile(benchmark::State& state, Rewind rewind, Read read)
{
    std::vector<char> piece(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        rewind();
        while (read(piece.data(), state.range(0)) > 0)
            benchmark::DoNotOptimize(piece.data());
    }
    state.SetBytesProcessed(state.iterations() * s_fileSize);
}

void reading(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_folder.fileOf(s_fileSize).c_str(), ZIOGFile<>::ModeRead);
    readFile(
        state, [&] { file.moveBegin(); }, [&](char* piece, long size) { return file.read(piece, size); });
    file.close();
}
BENCHMARK(reading)->Arg(64)->Arg(4096);

void readingBare(benchmark::State& state)
{
    FILE* file = fopen(s_folder.fileOf(s_fileSize).c_str(), "r");
    readFile(
        state, [&] { rewind(file); },
        [&](char* piece, long size) { return fread(piece, 1, static_cast<std::size_t>(size), file); });
    fclose(file);
}
BENCHMARK(readingBare)->Arg(64)->Arg(4096);

void readingStd(benchmark::State& state)
{
    std::fstream file(s_folder.fileOf(s_fileSize), std::ios::in | std::ios::binary);
    readFile(
        state,
        [&] {
            file.clear();
            file.seekg(0);
        },
        [&](char* piece, long size) { return file.read(piece, size).gcount(); });
}
BENCHMARK(readingStd)->Arg(64)->Arg(4096);

// A read on another thread, until it has been reported

void readLater(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_folder.fileOf(4096).c_str(), ZIOGFile<>::ModeRead);
    std::atomic<long> reports{0};
    const auto callback =
        zMakeDelegate<ZIOGFile<>::ReadCallback>([&](ZStreamAsync<>*, int, long, char const*, long) {
            ++reports;
            reports.notify_one();
        });
    long requests = 0;
    for (auto _ : state) {
        auto* each = callback->clone();
        while (!file.readAsync(each, 100)) { }
        reports.wait(requests++);
    }
    file.close();
}
BENCHMARK(readLater)->UseRealTime();

void readLaterBare(benchmark::State& state)
{
    struct Request {
        FILE* file;
        std::atomic<long> reports{0};
    };
    Request request{fopen(s_folder.fileOf(4096).c_str(), "r")};
    long requests = 0;
    for (auto _ : state) {
        pthread_t thread;
        pthread_create(
            &thread, nullptr,
            [](void* argument) -> void* {
                auto* same = static_cast<Request*>(argument);
                const auto buffer = std::make_unique<char[]>(100);
                benchmark::DoNotOptimize(fread(buffer.get(), 1, 100, same->file));
                ++same->reports;
                same->reports.notify_one();
                return nullptr;
            },
            &request);
        request.reports.wait(requests++);
        pthread_join(thread, nullptr);
    }
    fclose(request.file);
}
BENCHMARK(readLaterBare)->UseRealTime();

// Copying a file

template <typename Copy>
void copyFile(benchmark::State& state, Copy copy)
{
    const std::string from = s_folder.fileOf(static_cast<std::size_t>(state.range(0)));
    const std::string to = s_folder.file("target");
    for (auto _ : state)
        copy(from.c_str(), to.c_str());
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void copying(benchmark::State& state)
{
    copyFile(state, [](const char* from, const char* to) { TZSysFile<char>::copyFile(from, to); });
}
BENCHMARK(copying)->Arg(100)->Arg(100'000)->Arg(16'000'000);

void copyingBare(benchmark::State& state)
{
    copyFile(state, [](const char* from, const char* to) {
        FILE* source = fopen(from, "rb");
        FILE* target = fopen(to, "wb");
        char chunk[4096];
        while (const std::size_t got = fread(chunk, 1, sizeof chunk, source))
            fwrite(chunk, 1, got, target);
        fclose(target);
        fclose(source);
    });
}
BENCHMARK(copyingBare)->Arg(100)->Arg(100'000)->Arg(16'000'000);

void copyingStd(benchmark::State& state)
{
    copyFile(state, [](const char* from, const char* to) {
        fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    });
}
BENCHMARK(copyingStd)->Arg(100)->Arg(100'000)->Arg(16'000'000);

// Listing a folder: names

void names(benchmark::State& state)
{
    const std::string path = s_folder.folderOf(state.range(0));
    for (auto _ : state) {
        ZList<ZMStr<char>> list;
        TZSysFile<char>::readDirectory(path.c_str(), list);
        benchmark::DoNotOptimize(list.Count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(names)->Arg(10)->Arg(10'000);

/// What is kept of an entry, by pointer as in a list.
struct Kept {
    std::unique_ptr<char, decltype(&std::free)> text{nullptr, &std::free};
    long length = 0;
    bool isFolder = false;
};

void namesBare(benchmark::State& state)
{
    const std::string path = s_folder.folderOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::unique_ptr<Kept>> list;
        DIR* folder = opendir(path.c_str());
        while (const dirent* entry = readdir(folder)) {
            if (!strcmp(entry->d_name, ".") || !strcmp(entry->d_name, "..")
                || !strcmp(entry->d_name, ".DS_Store"))
                continue;
            auto kept = std::make_unique<Kept>();
            kept->text.reset(strdup(entry->d_name));
            list.push_back(std::move(kept));
        }
        closedir(folder);
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(namesBare)->Arg(10)->Arg(10'000);

void namesStd(benchmark::State& state)
{
    const std::string path = s_folder.folderOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::string> list;
        for (const fs::directory_entry& entry : fs::directory_iterator(path))
            list.push_back(entry.path().filename().string());
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(namesStd)->Arg(10)->Arg(10'000);

// Listing a folder: paths, and what is a folder

void entries(benchmark::State& state)
{
    const std::string path = s_folder.folderOf(state.range(0));
    for (auto _ : state) {
        ZList<TZSysFile<char>> list;
        TZSysFile<char>::readDirectory(path.c_str(), list);
        benchmark::DoNotOptimize(list.Count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(entries)->Arg(10)->Arg(10'000);

void entriesBare(benchmark::State& state)
{
    const std::string path = s_folder.folderOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::unique_ptr<Kept>> list;
        DIR* folder = opendir(path.c_str());
        while (const dirent* entry = readdir(folder)) {
            char whole[4096];
            const int length = snprintf(whole, sizeof whole, "%s/%s", path.c_str(), entry->d_name);
            struct stat status;
            auto kept = std::make_unique<Kept>();
            kept->text.reset(strdup(whole));
            kept->length = length;
            kept->isFolder = stat(whole, &status) == 0 && S_ISDIR(status.st_mode);
            list.push_back(std::move(kept));
        }
        closedir(folder);
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(entriesBare)->Arg(10)->Arg(10'000);

void entriesStd(benchmark::State& state)
{
    const std::string path = s_folder.folderOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::pair<std::string, bool>> list;
        for (const fs::directory_entry& entry : fs::directory_iterator(path))
            list.emplace_back(entry.path().string(), fs::is_directory(fs::status(entry.path())));
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(entriesStd)->Arg(10)->Arg(10'000);

} // namespace
