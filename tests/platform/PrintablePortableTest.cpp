// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Names that a caller chooses cannot forge lines or control a terminal.

#include "ZSpace/platform/portable/PrintablePortable.h"

#include <gtest/gtest.h>

#include <string>

namespace ZSpace::Testing {
namespace {

using Host::printableName;

TEST(PrintableName, KeepsPrintableAscii)
{
    EXPECT_EQ(printableName("a b-c_1.txt~"), "a b-c_1.txt~");
    EXPECT_EQ(printableName(""), "");
}

TEST(PrintableName, EscapesEverythingElse)
{
    EXPECT_EQ(
        printableName("a\nb\r\t\x1B[31m\x7F\xC3\xA9\\"), "a\\x0Ab\\x0D\\x09\\x1B[31m\\x7F\\xC3\\xA9\\\\");
}

TEST(PrintableName, IsBounded)
{
    EXPECT_EQ(printableName(std::string(64, 'a').c_str()), std::string(64, 'a'));
    EXPECT_EQ(printableName(std::string(65, 'a').c_str()), std::string(61, 'a') + "...");
    EXPECT_EQ(printableName(("b" + std::string(100, 'a')).c_str()), "b" + std::string(60, 'a') + "...");
    EXPECT_EQ(printableName(std::string(100'000, '\n').c_str()).size(), 63U); // complete escapes only
}

} // namespace
} // namespace ZSpace::Testing
