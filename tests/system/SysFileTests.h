// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/system/TZSysFile.h"
#include "tests/support/StreamTests.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

namespace ZSpace {

/// For messages of failing tests.
inline void PrintTo(const ZTime& time, std::ostream* out)
{
    *out << static_cast<const char*>(time.toCStringEx());
}

} // namespace ZSpace

namespace ZSpace::Testing {

using Widths = testing::Types<char, wchar_t>;

struct WidthNames {
    template <typename T>
    static std::string GetName(int)
    {
        return std::is_same_v<T, char> ? "narrow" : "wide";
    }
};

/// The bytes of a text; in a wide one all units must be bytes.
template <typename T>
std::string bytesOf(const ZSpace::ZMStr<T>& text)
{
    std::string bytes;
    for (long i = 0; i < text.Length(); ++i) {
        EXPECT_LE(static_cast<std::make_unsigned_t<T>>(text[i]), 0xFFu);
        bytes += static_cast<char>(text[i]);
    }
    return bytes;
}

template <typename T>
std::vector<std::string> bytesOf(const ZSpace::ZList<ZSpace::ZMStr<T>>& texts)
{
    std::vector<std::string> all;
    for (const auto& text : texts)
        all.push_back(bytesOf(text));
    return all;
}

/// For one of the twins: what it is given and what it gives.
template <typename T>
class SysFileTest : public FolderTest {
protected:
    using Entry = ZSpace::TZSysFile<T>;
    using Names = ZSpace::ZList<ZSpace::ZMStr<T>>;
    using Entries = ZSpace::ZList<Entry>;

    /// The text as this twin takes it.
    static std::basic_string<T> text(const std::string& bytes)
    {
        if constexpr (std::is_same_v<T, char>)
            return bytes;
        else
            return widened(bytes);
    }

    [[nodiscard]] std::basic_string<T> path(const std::string& name) const { return text(pathOf(name)); }

    [[nodiscard]] static Entry entryOf(
        const std::string& path, ZSpace::ZTRISTATE directory = ZSpace::ZTRISTATE::Unknown)
    {
        return Entry(text(path).c_str(), directory, 0, -1, ZSpace::ZTime(), ZSpace::ZTime(), ZSpace::ZTime());
    }

    [[nodiscard]] static std::multiset<std::string> namesOf(const Entries& entries)
    {
        std::multiset<std::string> names;
        for (const Entry& entry : entries)
            names.insert(bytesOf(entry.Name()));
        return names;
    }
};

} // namespace ZSpace::Testing
