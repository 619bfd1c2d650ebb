// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/system/TZSysFile.h"
#include "tests/support/StreamTests.h"
#include "tests/support/Widths.h"

#include <gtest/gtest.h>

#include <ctime>
#include <fcntl.h>
#include <ostream>
#include <set>
#include <string>
#include <sys/stat.h>
#include <type_traits>
#include <vector>

namespace ZSpace {

/// For failure messages.
inline void PrintTo(const ZTime& time, std::ostream* out)
{
    *out << static_cast<const char*>(time.toCStringEx());
}

} // namespace ZSpace

namespace ZSpace::Testing {

/// The string as bytes; every wide character must be a byte.
template <typename T>
std::string bytesOf(const ZMStr<T>& string)
{
    std::string bytes;
    for (long i = 0; i < string.Length(); ++i) {
        EXPECT_LE(static_cast<std::make_unsigned_t<T>>(string[i]), 0xFFu);
        bytes += static_cast<char>(string[i]);
    }
    return bytes;
}

/// Sets the access and modification times of a file.
inline void setTimes(const std::string& path, time_t accessed, time_t modified)
{
    const timespec times[]{{accessed, 999'999'999}, {modified, 500'000'000}};
    ASSERT_EQ(utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

template <typename T>
std::vector<std::string> bytesOf(const ZList<ZMStr<T>>& strings)
{
    std::vector<std::string> all;
    for (const auto& string : strings)
        all.push_back(bytesOf(string));
    return all;
}

/// Converts arguments and results of one width.
template <typename T>
class SysFileTest : public DirectoryTest {
protected:
    using Entry = TZSysFile<T>;
    using Names = ZList<ZMStr<T>>;
    using Entries = ZList<Entry>;

    /// The string in this width.
    static std::basic_string<T> text(const std::string& bytes)
    {
        if constexpr (std::is_same_v<T, char>)
            return bytes;
        else
            return widened(bytes);
    }

    [[nodiscard]] std::basic_string<T> path(const std::string& name) const { return text(pathOf(name)); }

    [[nodiscard]] static Entry entryOf(const std::string& path, ZTRISTATE directory = ZTRISTATE::Unknown)
    {
        return Entry(text(path).c_str(), directory, 0, -1, ZTime(), ZTime(), ZTime());
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
