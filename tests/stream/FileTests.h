// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/stream/ZIOGFile.h"
#include "tests/support/StreamTests.h"

#include <string>

namespace ZSpace::Testing {

using File = ZIOGFile<>;

/// A test with a directory of its own and a stream that is closed at its end.
class ZIOGFileTest : public DirectoryTest {
protected:
    ~ZIOGFileTest() override { m_file.close(); }

    File m_file;
};

inline std::string readAll(File& file)
{
    std::string content(1 << 16, '\0');
    const long got = file.read(content.data(), static_cast<long>(content.size()));
    return got < 0 ? "(failed)" : content.substr(0, static_cast<std::size_t>(got));
}

} // namespace ZSpace::Testing
