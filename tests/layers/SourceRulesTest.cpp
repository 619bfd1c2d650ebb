// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Rules that the sources themselves are checked for: which layer may include which, and what may be used
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

/// The layers, lowest first: each is the folder of its name below `ZSpace/`. A layer includes itself and
/// those above it in this table.
const std::vector<std::string> s_layers{
    "platform",
    "core",
    "string",
    "value",
    "object",
    "stream",
    "system",
    "log",
};

/// The layer of a file, or of an included path; empty for a file that belongs to none.
std::string layerOf(const std::string& file)
{
    static const std::regex pattern("^ZSpace/([a-z]+)/.*");
    std::smatch match;
    return std::regex_match(file, match, pattern) ? match[1].str() : std::string();
}

/// Counted from the bottom; -1 for a name that is not a layer.
long heightOf(const std::string& layer)
{
    const auto found = std::find(s_layers.begin(), s_layers.end(), layer);
    return found == s_layers.end() ? -1 : found - s_layers.begin();
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

const std::vector<std::string> s_product{"ZSpace", "app"};
const std::vector<std::string> s_everything{
    "ZSpace", "app", "tests", "bench", "fuzz", "examples", "packaging"};

std::vector<std::string> quotedIncludes(const std::string& text)
{
    static const std::regex pattern("(^|\n)[ \t]*#[ \t]*(?:include|import)[ \t]*\"([^\"]+)\"");
    std::vector<std::string> includes;
    for (std::sregex_iterator it(text.begin(), text.end(), pattern), end; it != end; ++it)
        includes.push_back((*it)[2]);
    return includes;
}

TEST(Layers, ALayerIncludesOnlyItselfAndLayersBelowIt)
{
    for (const Source& source : sourcesOf({"ZSpace"})) {
        if (source.name == "ZSpace/ZSpace.h" || source.name == "ZSpace/Version.h")
            continue; // above all layers: they belong to none
        const std::string layer = layerOf(source.name);
        ASSERT_GE(heightOf(layer), 0) << source.name << " belongs to no layer";
        for (const std::string& include : quotedIncludes(source.text)) {
            const std::string target = layerOf(include);
            ASSERT_GE(heightOf(target), 0)
                << source.name << " includes " << include << ", which is in no layer";
            EXPECT_LE(heightOf(target), heightOf(layer))
                << source.name << " includes " << include << ": " << layer << " is below " << target;
        }
    }
}

// A handle asks whether its value is a ZObject, and ZObject is in a layer above. Declaring it is enough,
// since the handle's templates look inside only where they are used.
TEST(Layers, OnlyZReferenceDeclaresAClassOfALayerAbove)
{
    const std::regex pattern("(^|\n)(class|struct) (ZObject|ZDispatchable|ZStream|ZIOGFile|ZLogBook)\\w*;");
    for (const Source& source :
        sourcesOf({"ZSpace/platform", "ZSpace/core", "ZSpace/string", "ZSpace/value"})) {
        const bool mayDeclare = source.name == "ZSpace/core/ZReference.h";
        EXPECT_TRUE(mayDeclare || !std::regex_search(source.text, pattern)) << source.name;
    }
}

TEST(SourceRules, IncludesStartAtTheRootAndExist)
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

TEST(SourceRules, NoIncludesGoInCircles)
{
    EXPECT_EQ(CircleSearch(sourcesOf(s_product)).find(), "");
}

TEST(SourceRules, HostSwitchesStandInPlatformOnly)
{
    const std::regex pattern("__APPLE__|__linux__|__OBJC__|__GNUSTEP__|__FreeBSD__|_WIN32");
    for (const Source& source : sourcesOf(s_product)) {
        const bool mayAsk = source.name.starts_with("ZSpace/platform/");
        EXPECT_TRUE(mayAsk || !std::regex_search(source.text, pattern))
            << source.name << " asks for the host";
    }
}

TEST(SourceRules, LinuxOnlyCallsStandInLinuxFilesOnly)
{
    const std::regex pattern(
        "\\b(accept4|pipe2|dup3|gettid|eventfd|inotify_\\w+|epoll_\\w+|renameat2|secure_getenv|"
        "posix_fallocate|sem_init|sem_timedwait|pthread_mutex_timedlock|pthread_condattr_setclock|"
        "pthread_setattr_default_np|pthread_getattr_np|pthread_barrier_\\w+|pthread_spin_\\w+|clock_"
        "nanosleep|"
        "timer_create|sigtimedwait|sigwaitinfo|sigqueue|program_invocation_\\w+|memrchr|mempcpy|wmempcpy|"
        "getrandom|memfd_create|copy_file_range|posix_spawn_file_actions_addclosefrom_np|closefrom|close_"
        "range|execvpe|SOCK_CLOEXEC|O_TMPFILE|CLOCK_\\w+_COARSE)\\b|\"/"
        "proc");
    for (const Source& source : sourcesOf(s_product)) {
        const bool mayCall = source.name.starts_with("ZSpace/platform/linux/");
        EXPECT_TRUE(mayCall || !std::regex_search(source.text, pattern))
            << source.name << " calls what only Linux has";
    }
}

TEST(SourceRules, CallsThatCameAfterMacOS1013StandInLinuxFilesOnly)
{
    const std::regex pattern("\\b(aligned_alloc|timespec_get|preadv|pwritev|mkfifoat|mknodat|strchrnul|"
                             "posix_spawn_file_actions_add(f?)chdir\\w*)\\b");
    for (const Source& source : sourcesOf(s_product)) {
        const bool mayCall = source.name.starts_with("ZSpace/platform/linux/");
        EXPECT_TRUE(mayCall || !std::regex_search(source.text, pattern))
            << source.name << " calls what the oldest macOS lacks";
    }
}

TEST(SourceRules, TheProductUsesNoLibraryThatOldSystemsLack)
{
    const std::regex pattern(
        "#include <(filesystem|format|print|latch|semaphore|barrier|stop_token|source_location|syncstream|"
        "memory_resource)>|std::jthread|\\.notify_(one|all)\\(|std::from_chars");
    for (const Source& source : sourcesOf(s_product))
        EXPECT_FALSE(std::regex_search(source.text, pattern))
            << source.name << " uses a library part that came late";
}

// std::filesystem, which came with macOS 10.15, sets how old a system the tests run on.
TEST(SourceRules, TheTestsUseNoLibraryThatCameAfterTheFileSystem)
{
    const std::regex pattern("#include <(format|print|latch|semaphore|barrier|stop_token|source_location|"
                             "syncstream|memory_resource)>|std::jthread");
    for (const Source& source : sourcesOf({"tests", "fuzz", "examples"})) {
        const bool namesThem = source.name == "tests/layers/SourceRulesTest.cpp";
        EXPECT_TRUE(namesThem || !std::regex_search(source.text, pattern))
            << source.name << " uses a library part that came late";
    }
}

TEST(SourceRules, EveryFileBeginsWithItsLicence)
{
    for (const Source& source : sourcesOf(s_everything)) {
        EXPECT_TRUE(source.text.starts_with("// SPDX-FileCopyrightText: 2026 The ZSpace authors\n"
                                            "// SPDX-License-Identifier: MIT\n"))
            << source.name;
    }
}

TEST(SourceRules, EveryHeaderIsGuardedOnce)
{
    for (const Source& source : sourcesOf(s_everything)) {
        const bool isGuarded = source.text.find("\n#pragma once\n") != std::string::npos;
        EXPECT_EQ(isGuarded, source.name.ends_with(".h")) << source.name;
    }
}

TEST(SourceRules, NoTwoFileNamesDifferInCaseOnly)
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
