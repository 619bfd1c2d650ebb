// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/log/ZLogBookFile.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <map>
#include <new>
#include <string>
#include <sys/mman.h>

/// Loads that are too heavy for the tests of every build, and the checks that nothing is lost under them.
namespace ZSpace::Soak {

/// Durations and sizes.
struct Scale {
    std::chrono::seconds storm; ///< the time of each flood and storm
    long divisor; ///< of the numbers of elements and characters
    std::filesystem::path directory; ///< for files of hundreds of megabytes
};

/// The result of a load; "nothing" in `lost` is a success.
struct Result {
    std::string load;
    std::string result;
    std::string lost;
};

inline constexpr const char* s_nothing = "nothing";

/// Memory that a process shares with its later children, so that what they have acknowledged survives their death.
template <typename T>
class Shared {
public:
    Shared()
        : m_value(
            new (mmap(nullptr, sizeof(T), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0)) T())
    {
    }
    Shared(const Shared&) = delete; // one owner per mapping
    Shared& operator=(const Shared&) = delete;
    ~Shared() { munmap(m_value, sizeof(T)); }

    T& operator*() const { return *m_value; }
    T* operator->() const { return m_value; }

private:
    T* m_value;
};

/// What a report holds of the lines that `logNumbered` has written.
struct Lines {
    long whole = 0;
    long broken = 0; ///< those that are not as they were logged
    long disordered = 0; ///< complete ones that do not follow their writer's previous one
    std::map<std::string, long> next; ///< of each writer: the number after its last line
};

/// Logs the line with this number of a writer, whose name has no blanks.
void logNumbered(ZLogBook& book, const std::string& writer, long number);
/// Reads a report of such lines. Numbers may be missing before a line only if `mayHaveGaps`.
[[nodiscard]] Lines readNumbered(const std::filesystem::path& file, bool mayHaveGaps = false);

[[nodiscard]] ZRef<ZLogBook> openBook(const std::filesystem::path& file);

/// "12,345,678"
[[nodiscard]] std::string grouped(long number);

// The loads.
[[nodiscard]] Result flood(const Scale& scale);
[[nodiscard]] Result forkStorm(const Scale& scale);
[[nodiscard]] Result killStorm(const Scale& scale);
[[nodiscard]] Result fullDiskStorm(const Scale& scale);
[[nodiscard]] Result longTrail(const Scale& scale);
[[nodiscard]] Result longList(const Scale& scale);
[[nodiscard]] Result longStrings(const Scale& scale);
[[nodiscard]] Result longLine(const Scale& scale);

} // namespace ZSpace::Soak
