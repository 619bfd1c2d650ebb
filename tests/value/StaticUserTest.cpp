// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

TEST(StaticUserTest, ValuesWorkBeforeMainAndAfterIt)
{
    // A helper program with a static object that uses them in its constructor and destructor.
    FILE* program = popen(ZSPACE_BINARY_DIR "/tests/value/value_static_user", "r");
    ASSERT_TRUE(program);
    std::string output(1000, '\0');
    output.resize(std::fread(output.data(), 1, output.size(), program));
    EXPECT_EQ(pclose(program), 0);
    EXPECT_EQ(output, "before main: fine\nin main: fine\nafter main: fine\n");
}

} // namespace
