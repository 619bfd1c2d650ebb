// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Which layer may include which, and what a layer may know of those above it.

#include "tests/layers/Sources.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>

namespace ZSpace::Testing {
namespace {

/// The layers, lowest first: each is the directory of that name below `ZSpace/`. A layer includes itself and the layers
/// before it in this table.
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

/// These include any layer, and no layer includes them.
const std::string s_program = "app/";
const std::string s_bridges = "ZSpace/interop/";
const std::set<std::string> s_umbrella{"ZSpace/ZSpace.h"};

/// This includes nothing, and any layer may include it.
const std::string s_version = "ZSpace/Version.h";

bool standsAboveTheLayers(const std::string& file)
{
    return file.starts_with(s_program) || file.starts_with(s_bridges) || s_umbrella.contains(file);
}

/// The layer of a file or of an included path; empty if it belongs to none.
std::string layerOf(const std::string& file)
{
    static const std::regex pattern("^ZSpace/([a-z]+)/.*");
    std::smatch match;
    return std::regex_match(file, match, pattern) ? match[1].str() : std::string();
}

/// Counted from the lowest; -1 for a name that is not a layer.
long heightOf(const std::string& layer)
{
    const auto found = std::find(s_layers.begin(), s_layers.end(), layer);
    return found == s_layers.end() ? -1 : found - s_layers.begin();
}

TEST(Layers, ALayerIncludesOnlyItselfAndLayersBelowIt)
{
    for (const Source& source : sourcesOf({"ZSpace"})) {
        if (standsAboveTheLayers(source.name) || source.name == s_version)
            continue;
        const std::string layer = layerOf(source.name);
        ASSERT_GE(heightOf(layer), 0) << source.name << " belongs to no layer";
        for (const std::string& include : quotedIncludes(source)) {
            if (include == s_version)
                continue;
            const std::string target = layerOf(include);
            ASSERT_GE(heightOf(target), 0)
                << source.name << " includes " << include << ", which is in no layer";
            EXPECT_LE(heightOf(target), heightOf(layer))
                << source.name << " includes " << include << ": " << layer << " is below " << target;
        }
    }
}

TEST(Layers, TheProgramAndTheUmbrellaHeaderIncludeOnlyPublicHeaders)
{
    for (const Source& source : sourcesOf(s_product)) {
        if (!standsAboveTheLayers(source.name))
            continue;
        for (const std::string& include : quotedIncludes(source)) {
            const bool isPublic =
                include.starts_with("ZSpace/") && include.find("/detail/") == std::string::npos;
            EXPECT_TRUE(isPublic) << source.name << " includes " << include;
        }
    }
}

TEST(Layers, TheUmbrellaHeaderIncludesEveryPublicHeaderOfTheFramework)
{
    std::set<std::string> included;
    std::set<std::string> headers{s_version};
    for (const Source& source : sourcesOf({"ZSpace"})) {
        if (s_umbrella.contains(source.name)) {
            for (const std::string& include : quotedIncludes(source))
                included.insert(include);
        } else if (source.name.ends_with(".h") && source.name.find("/detail/") == std::string::npos
            && heightOf(layerOf(source.name)) > heightOf("platform")) {
            headers.insert(source.name);
        }
    }
    EXPECT_EQ(included, headers);
}

/// The classes that are defined in headers, each with the lowest layer that defines one of its name.
std::map<std::string, long> definedClasses(const std::vector<Source>& sources)
{
    static const std::regex pattern("(?:^|\n)(?:class|struct) (\\w+)[^;{()]*\\{");
    std::map<std::string, long> classes;
    for (const Source& source : sources) {
        const long height = heightOf(layerOf(source.name));
        if (height < 0 || !source.name.ends_with(".h"))
            continue;
        for (std::sregex_iterator it(source.code.begin(), source.code.end(), pattern), end; it != end; ++it) {
            const auto [entry, isNew] = classes.emplace((*it)[1], height);
            entry->second = std::min(entry->second, height);
        }
    }
    return classes;
}

// A handle of core/ tests whether its value is a ZObject, and ZObject is in a layer above. A declaration is enough,
// since the handle's templates need the class only where they are used.
TEST(Layers, OnlyZReferenceDeclaresAClassOfALayerAbove)
{
    static const std::regex declaration("(?:^|\n)[ \t]*(?:class|struct) (\\w+);");
    const std::vector<Source> sources = sourcesOf({"ZSpace"});
    const std::map<std::string, long> classes = definedClasses(sources);
    std::set<std::string> found;
    for (const Source& source : sources) {
        const long height = heightOf(layerOf(source.name));
        for (std::sregex_iterator it(source.code.begin(), source.code.end(), declaration), end; it != end;
             ++it) {
            const auto defined = classes.find((*it)[1]);
            if (height >= 0 && defined != classes.end() && defined->second > height)
                found.insert(source.name + " declares " + defined->first);
        }
    }
    EXPECT_EQ(found, std::set<std::string>{"ZSpace/core/ZReference.h declares ZObject"});
}

/// Searches the includes depth first for the first path that leads back to a file on it.
class CycleSearch {
public:
    explicit CycleSearch(const std::vector<Source>& sources)
    {
        for (const Source& source : sources)
            m_includes[source.name] = quotedIncludes(source);
    }

    std::string find()
    {
        for (const auto& [file, ignored] : m_includes) {
            if (std::string cycle = visit(file); !cycle.empty())
                return cycle;
        }
        return {};
    }

private:
    std::string visit(const std::string& file)
    {
        if (m_finished.contains(file))
            return {};
        if (!m_open.insert(file).second)
            return file;
        for (const std::string& include : m_includes[file]) {
            if (const std::string cycle = visit(include); !cycle.empty())
                return file + " > " + cycle;
        }
        m_open.erase(file);
        m_finished.insert(file);
        return {};
    }

    std::map<std::string, std::vector<std::string>> m_includes;
    std::set<std::string> m_open;
    std::set<std::string> m_finished;
};

TEST(Layers, NoIncludesFormACycle)
{
    EXPECT_EQ(CycleSearch(sourcesOf(s_product)).find(), "");
}

} // namespace
} // namespace ZSpace::Testing
