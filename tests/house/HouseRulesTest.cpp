// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The rules of the house, read off the sources themselves: which floor may include which, and what may stand
// where.

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace ZSpace::Testing {
namespace {

namespace fs = std::filesystem;

/// The floors from the ground up. `core` has three: what stands on nothing, what needs strings and values,
/// and what needs files. A file's floor is the first row that its path begins with.
struct Floor {
    const char* name;
    std::vector<std::string> paths;
};
const std::vector<Floor>& floors()
{
    static const std::vector<Floor> table{
        {"platform", {"platform/"}},
        {"core (system)", {"core/ZSysInfo"}},
        {"core (services)", {"core/ZObject.", "core/ZDispatchable.", "core/ZAppContext.", "core/ZLibrary."}},
        {"core (ground)", {"core/"}},
        {"string", {"string/"}},
        {"value", {"value/"}},
        {"stream", {"stream/"}},
        {"log", {"log/"}},
        {"app", {"app/"}},
    };
    return table;
}
const std::vector<std::string>& order()
{
    static const std::vector<std::string> names{"platform", "core (ground)", "string", "value",
        "core (services)", "stream", "core (system)", "log", "app"};
    return names;
}

std::string floorOf(const std::string& file)
{
    for (const Floor& floor : floors()) {
        for (const std::string& path : floor.paths) {
            if (file.starts_with(path))
                return floor.name;
        }
    }
    return {};
}

long heightOf(const std::string& floor)
{
    return std::find(order().begin(), order().end(), floor) - order().begin();
}

struct Source {
    std::string name; // from the project's root
    std::string text;
};

/// Every source of the product, by folders from the root.
std::vector<Source> sourcesOf(const std::vector<std::string>& folders)
{
    std::vector<Source> sources;
    const fs::path root = ZSPACE_SOURCE_DIR;
    for (const std::string& folder : folders) {
        for (const auto& entry : fs::recursive_directory_iterator(root / folder)) {
            const std::string extension = entry.path().extension().string();
            if (entry.is_regular_file() && (extension == ".h" || extension == ".cpp" || extension == ".mm"))
                sources.push_back({fs::relative(entry.path(), root).string(), contentOf(entry.path())});
        }
    }
    return sources;
}

const std::vector<std::string> s_product{"platform", "core", "string", "value", "stream", "log", "app"};
const std::vector<std::string> s_everything{"platform", "core", "string", "value", "stream", "log", "app",
    "tests", "bench", "fuzz", "examples", "cmake"};

std::vector<std::string> quotedIncludes(const std::string& text)
{
    static const std::regex pattern("(^|\n)[ \t]*#[ \t]*(?:include|import)[ \t]*\"([^\"]+)\"");
    std::vector<std::string> includes;
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it)
        includes.push_back((*it)[2]);
    return includes;
}

TEST(House, AFloorIncludesOnlyItselfAndFloorsBelowIt)
{
    for (const Source& source : sourcesOf(s_product)) {
        const std::string floor = floorOf(source.name);
        ASSERT_FALSE(floor.empty()) << source.name << " stands on no floor";
        for (const std::string& include : quotedIncludes(source.text)) {
            const std::string target = floorOf(include);
            EXPECT_LE(heightOf(target), heightOf(floor))
                << source.name << " includes " << include << ": " << floor << " stands below " << target;
        }
    }
}

TEST(House, IncludesStartAtTheRootAndExist)
{
    for (const Source& source : sourcesOf(s_everything)) {
        for (const std::string& include : quotedIncludes(source.text)) {
            EXPECT_TRUE(fs::exists(fs::path(ZSPACE_SOURCE_DIR) / include))
                << source.name << " includes " << include << ", which is no path from the project's root";
        }
    }
}

/// Walks the includes depth first and tells the first way that leads back to where it began.
class CircleSearch {
public:
    explicit CircleSearch(const std::vector<Source>& sources)
    {
        for (const Source& source : sources)
            m_includes[source.name] = quotedIncludes(source.text);
    }

    std::string find()
    {
        for (const auto& [file, ignored] : m_includes) {
            if (std::string circle = walk(file); !circle.empty())
                return circle;
        }
        return {};
    }

private:
    std::string walk(const std::string& file)
    {
        if (m_finished.contains(file))
            return {};
        if (!m_open.insert(file).second)
            return file;
        for (const std::string& include : m_includes[file]) {
            if (const std::string circle = walk(include); !circle.empty())
                return file + " > " + circle;
        }
        m_open.erase(file);
        m_finished.insert(file);
        return {};
    }

    std::map<std::string, std::vector<std::string>> m_includes;
    std::set<std::string> m_open;
    std::set<std::string> m_finished;
};

TEST(House, NoIncludesGoInCircles)
{
    EXPECT_EQ(CircleSearch(sourcesOf(s_product)).find(), "");
}

TEST(House, HostSwitchesStandInPlatformOnly)
{
    const std::regex pattern("__APPLE__|__linux__|__OBJC__|__GNUSTEP__|__FreeBSD__|_WIN32");
    for (const Source& source : sourcesOf({"core", "string", "value", "stream", "log", "app"}))
        EXPECT_FALSE(std::regex_search(source.text, pattern)) << source.name << " asks for the host";
}

TEST(House, LinuxOnlyCallsStandInLinuxFilesOnly)
{
    const std::regex pattern(
        "\\b(accept4|pipe2|dup3|gettid|eventfd|inotify_\\w+|epoll_\\w+|renameat2|secure_getenv|"
        "posix_fallocate|sem_init|sem_timedwait|pthread_mutex_timedlock|pthread_condattr_setclock|"
        "pthread_setattr_default_np|pthread_getattr_np|pthread_barrier_\\w+|pthread_spin_\\w+|clock_"
        "nanosleep|"
        "timer_create|sigtimedwait|sigwaitinfo|sigqueue|program_invocation_\\w+|memrchr|mempcpy|wmempcpy|"
        "getrandom|memfd_create|copy_file_range|execvpe|SOCK_CLOEXEC|O_TMPFILE|CLOCK_\\w+_COARSE)\\b|\"/"
        "proc");
    for (const Source& source : sourcesOf(s_product)) {
        const bool mayCall = source.name.find("Linux") != std::string::npos;
        EXPECT_TRUE(mayCall || !std::regex_search(source.text, pattern))
            << source.name << " calls what only Linux has";
    }
}

TEST(House, CallsThatCameAfterMacOS1013StandInLinuxFilesOnly)
{
    const std::regex pattern("\\b(aligned_alloc|timespec_get|preadv|pwritev|mkfifoat|mknodat|strchrnul|"
                             "posix_spawn_file_actions_add(f?)chdir\\w*)\\b");
    for (const Source& source : sourcesOf(s_product)) {
        const bool mayCall = source.name.find("Linux") != std::string::npos;
        EXPECT_TRUE(mayCall || !std::regex_search(source.text, pattern))
            << source.name << " calls what the oldest macOS lacks";
    }
}

TEST(House, TheProductUsesNoLibraryThatOldSystemsLack)
{
    const std::regex pattern(
        "#include <(filesystem|format|print|latch|semaphore|barrier|stop_token|source_location|syncstream|"
        "memory_resource)>|std::jthread|\\.notify_(one|all)\\(|std::from_chars");
    for (const Source& source : sourcesOf(s_product))
        EXPECT_FALSE(std::regex_search(source.text, pattern))
            << source.name << " uses a library part that came late";
}

// std::filesystem, which came with macOS 10.15, sets how old a system the tests run on.
TEST(House, TheTestsUseNoLibraryThatCameAfterTheFileSystem)
{
    const std::regex pattern("#include <(format|print|latch|semaphore|barrier|stop_token|source_location|"
                             "syncstream|memory_resource)>|std::jthread");
    for (const Source& source : sourcesOf({"tests", "fuzz", "examples"})) {
        const bool namesThem = source.name == "tests/house/HouseRulesTest.cpp";
        EXPECT_TRUE(namesThem || !std::regex_search(source.text, pattern))
            << source.name << " uses a library part that came late";
    }
}

TEST(House, EveryFileBeginsWithItsLicence)
{
    for (const Source& source : sourcesOf(s_everything)) {
        EXPECT_TRUE(source.text.starts_with("// SPDX-FileCopyrightText: 2026 The ZSpace authors\n"
                                            "// SPDX-License-Identifier: MIT\n"))
            << source.name;
    }
}

TEST(House, EveryHeaderIsGuardedOnce)
{
    for (const Source& source : sourcesOf(s_everything)) {
        const bool isGuarded = source.text.find("\n#pragma once\n") != std::string::npos;
        EXPECT_EQ(isGuarded, source.name.ends_with(".h")) << source.name;
    }
}

TEST(House, NoTwoFileNamesDifferInCaseOnly)
{
    std::map<std::string, std::string> seen;
    for (const Source& source : sourcesOf(s_everything)) {
        std::string folded = source.name;
        std::transform(
            folded.begin(), folded.end(), folded.begin(), [](unsigned char c) { return std::tolower(c); });
        const auto [entry, isNew] = seen.emplace(folded, source.name);
        EXPECT_TRUE(isNew) << entry->second << " and " << source.name;
    }
}

} // namespace
} // namespace ZSpace::Testing
