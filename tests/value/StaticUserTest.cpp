// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace {

TEST(StaticUserTest, ValuesWorkBeforeMainAndAfterIt)
{
    // A program of its own, whose static object uses them at both ends of its life.
    FILE* program = popen(ZSPACE_BINARY_DIR "/tests/value/value_static_user", "r");
    ASSERT_TRUE(program);
    std::string said(1000, '\0');
    said.resize(std::fread(said.data(), 1, said.size(), program));
    EXPECT_EQ(pclose(program), 0);
    EXPECT_EQ(said, "before main: fine\nin main: fine\nafter main: fine\n");
}

} // namespace
