// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Streams and the file toolbox, compared in the same run with the minimum that any program must do for the
// same work ("Bare": C library or system calls) and with the standard library ("Std"). Files are in a private
// directory below TMPDIR.

#include "ZSpace/stream/ZIOGFile.h"
#include "ZSpace/system/TZSysFile.h"

#include <benchmark/benchmark.h>

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
#include <unistd.h>
#include <vector>

namespace {

using namespace ZSpace;

namespace fs = std::filesystem;

/// The directory of this run.
class Directory {
public:
    Directory()
    {
        std::string name = (fs::temp_directory_path() / "zspace-bench-XXXXXX").string();
        if (!mkdtemp(name.data()))
            std::abort();
        m_path = name;
    }
    Directory(const Directory&) = delete;
    Directory& operator=(const Directory&) = delete;
    ~Directory() { fs::remove_all(m_path); }

    [[nodiscard]] std::string file(const char* name) const { return (m_path / name).string(); }

    /// A file of `size` bytes.
    [[nodiscard]] std::string fileOf(std::size_t size) const
    {
        std::ofstream(file("source"), std::ios::binary) << std::string(size, 'x');
        return file("source");
    }

    /// A directory of `entries` files, created on first use.
    [[nodiscard]] std::string directoryOf(long entries) const
    {
        const fs::path path = m_path / std::to_string(entries);
        if (fs::create_directory(path)) {
            for (long i = 0; i < entries; ++i)
                std::ofstream(path / ("some file of the directory " + std::to_string(i)));
        }
        return path.string();
    }

private:
    fs::path m_path;
};

const Directory s_directory;

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
    file.open(s_directory.file("lines").c_str(), ZIOGFile<>::ModeWrite);
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())); });
    file.close();
}
BENCHMARK(line);

void lineBare(benchmark::State& state)
{
    FILE* file = fopen(s_directory.file("lines").c_str(), "w");
    writeLines(state, [&] { fwrite(s_line.data(), 1, s_line.size(), file); });
    fclose(file);
}
BENCHMARK(lineBare);

void lineStd(benchmark::State& state)
{
    std::fstream file(s_directory.file("lines"), std::ios::out | std::ios::binary);
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())); });
}
BENCHMARK(lineStd);

// Lines that reach the system one at a time

void lineThrough(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_directory.file("lines").c_str(), ZIOGFile<>::ModeAppend);
    file.writeThrough();
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())); });
    file.close();
    fs::remove(s_directory.file("lines"));
}
BENCHMARK(lineThrough);

void lineThroughFlush(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_directory.file("lines").c_str(), ZIOGFile<>::ModeAppend);
    writeLines(state, [&] {
        file.write(s_line.data(), static_cast<long>(s_line.size()));
        file.flush();
    });
    file.close();
    fs::remove(s_directory.file("lines"));
}
BENCHMARK(lineThroughFlush);

void lineThroughBare(benchmark::State& state)
{
    const int file = open(s_directory.file("lines").c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    writeLines(state, [&] { benchmark::DoNotOptimize(write(file, s_line.data(), s_line.size())); });
    close(file);
    fs::remove(s_directory.file("lines"));
}
BENCHMARK(lineThroughBare);

void lineThroughStd(benchmark::State& state)
{
    std::fstream file(s_directory.file("lines"), std::ios::out | std::ios::app | std::ios::binary);
    writeLines(state, [&] { file.write(s_line.data(), static_cast<long>(s_line.size())).flush(); });
    fs::remove(s_directory.file("lines"));
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
    file.open(s_directory.fileOf(s_fileSize).c_str(), ZIOGFile<>::ModeRead);
    readFile(
        state, [&] { file.moveBegin(); }, [&](char* piece, long size) { return file.read(piece, size); });
    file.close();
}
BENCHMARK(reading)->Arg(64)->Arg(4096);

void readingBare(benchmark::State& state)
{
    FILE* file = fopen(s_directory.fileOf(s_fileSize).c_str(), "r");
    readFile(
        state, [&] { rewind(file); },
        [&](char* piece, long size) { return fread(piece, 1, static_cast<std::size_t>(size), file); });
    fclose(file);
}
BENCHMARK(readingBare)->Arg(64)->Arg(4096);

void readingStd(benchmark::State& state)
{
    std::fstream file(s_directory.fileOf(s_fileSize), std::ios::in | std::ios::binary);
    readFile(
        state,
        [&] {
            file.clear();
            file.seekg(0);
        },
        [&](char* piece, long size) { return file.read(piece, size).gcount(); });
}
BENCHMARK(readingStd)->Arg(64)->Arg(4096);

// A read on another thread, waited for

void readLater(benchmark::State& state)
{
    ZIOGFile<> file;
    file.open(s_directory.fileOf(4096).c_str(), ZIOGFile<>::ModeRead);
    const auto callback = zMakeDelegate<ZIOGFile<>::ReadCallback>(
        [](ZStreamAsync<>*, int, long, char const* bytes, long) { benchmark::DoNotOptimize(bytes); });
    for (auto _ : state) {
        file.readAsync(callback->clone(), 100);
        file.waitForRead();
    }
    file.close();
}
BENCHMARK(readLater)->UseRealTime();

void readLaterBare(benchmark::State& state)
{
    FILE* const file = fopen(s_directory.fileOf(4096).c_str(), "r");
    for (auto _ : state) {
        pthread_t thread;
        pthread_create(
            &thread, nullptr,
            [](void* argument) -> void* {
                const auto buffer = std::make_unique<char[]>(100);
                benchmark::DoNotOptimize(fread(buffer.get(), 1, 100, static_cast<FILE*>(argument)));
                return nullptr;
            },
            file);
        pthread_join(thread, nullptr);
    }
    fclose(file);
}
BENCHMARK(readLaterBare)->UseRealTime();

// Copying a file

template <typename Copy>
void copyFile(benchmark::State& state, Copy copy)
{
    const std::string from = s_directory.fileOf(static_cast<std::size_t>(state.range(0)));
    const std::string to = s_directory.file("target");
    for (auto _ : state)
        copy(from.c_str(), to.c_str());
    state.SetBytesProcessed(state.iterations() * state.range(0));
}

void copying(benchmark::State& state)
{
    copyFile(state, [](const char* from, const char* to) { TZSysFile<char>::copyFile(from, to); });
}
BENCHMARK(copying)->Arg(4096)->Arg(100'000)->Arg(64L << 20);

void copyingBare(benchmark::State& state)
{
    copyFile(state, [](const char* from, const char* to) {
        const int source = open(from, O_RDONLY | O_CLOEXEC);
        const int target = open(to, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
        char block[4096];
        for (ssize_t got = 0; (got = read(source, block, sizeof block)) > 0;)
            benchmark::DoNotOptimize(write(target, block, static_cast<std::size_t>(got)));
        close(target);
        close(source);
    });
}
BENCHMARK(copyingBare)->Arg(4096)->Arg(100'000)->Arg(64L << 20);

void copyingStd(benchmark::State& state)
{
    copyFile(state, [](const char* from, const char* to) {
        fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    });
}
BENCHMARK(copyingStd)->Arg(4096)->Arg(100'000)->Arg(64L << 20);

// Listing the names in a directory

void names(benchmark::State& state)
{
    const std::string path = s_directory.directoryOf(state.range(0));
    for (auto _ : state) {
        ZList<ZMStr<char>> list;
        TZSysFile<char>::readDirectory(path.c_str(), list);
        benchmark::DoNotOptimize(list.Count());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(names)->Arg(10)->Arg(10'000);

/// What a list stores of an entry, by pointer.
struct Kept {
    std::unique_ptr<char, decltype(&std::free)> text{nullptr, &std::free};
    long length = 0;
    bool isDirectory = false;
};

void namesBare(benchmark::State& state)
{
    const std::string path = s_directory.directoryOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::unique_ptr<Kept>> list;
        DIR* directory = opendir(path.c_str());
        while (const dirent* entry = readdir(directory)) {
            if (!strcmp(entry->d_name, ".") || !strcmp(entry->d_name, "..")
                || !strcmp(entry->d_name, ".DS_Store"))
                continue;
            auto kept = std::make_unique<Kept>();
            kept->text.reset(strdup(entry->d_name));
            list.push_back(std::move(kept));
        }
        closedir(directory);
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(namesBare)->Arg(10)->Arg(10'000);

void namesStd(benchmark::State& state)
{
    const std::string path = s_directory.directoryOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::string> list;
        for (const fs::directory_entry& entry : fs::directory_iterator(path))
            list.push_back(entry.path().filename().string());
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(namesStd)->Arg(10)->Arg(10'000);

// Listing the entries of a directory: path and kind

void entries(benchmark::State& state)
{
    const std::string path = s_directory.directoryOf(state.range(0));
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
    const std::string path = s_directory.directoryOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::unique_ptr<Kept>> list;
        DIR* directory = opendir(path.c_str());
        while (const dirent* entry = readdir(directory)) {
            auto kept = std::make_unique<Kept>();
            const std::size_t length = path.size() + 1 + strlen(entry->d_name);
            kept->text.reset(static_cast<char*>(malloc(length + 1)));
            kept->length = static_cast<long>(length);
            memcpy(kept->text.get(), path.data(), path.size());
            kept->text.get()[path.size()] = '/';
            strcpy(kept->text.get() + path.size() + 1, entry->d_name);
            kept->isDirectory = entry->d_type == DT_DIR;
            list.push_back(std::move(kept));
        }
        closedir(directory);
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(entriesBare)->Arg(10)->Arg(10'000);

void entriesStd(benchmark::State& state)
{
    const std::string path = s_directory.directoryOf(state.range(0));
    for (auto _ : state) {
        std::vector<std::pair<std::string, bool>> list;
        for (const fs::directory_entry& entry : fs::directory_iterator(path))
            list.emplace_back(entry.path().string(), entry.is_directory());
        benchmark::DoNotOptimize(list.size());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(entriesStd)->Arg(10)->Arg(10'000);

} // namespace
