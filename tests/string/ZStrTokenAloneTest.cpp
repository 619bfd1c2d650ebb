// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZStrToken.h" // and no other header of the layer

#include <gtest/gtest.h>

#include <string>

using namespace ZSpace;

namespace {

TEST(ZStrTokenAlone, TheHeaderSufficesForEverythingThatReturnsNoOtherString)
{
    const ZStrToken<char> text("-12;0aFF;x");

    EXPECT_TRUE(text == "-12;0aFF;x" && text != "-12" && text < "." && text > "" && !ZStrToken<char>());
    EXPECT_EQ(text.compare("-12"), 7);
    EXPECT_EQ(text.compareIgnoreCase("-12;0AFF;X", 10), 0);
    EXPECT_TRUE(text.isLike(text));
    EXPECT_EQ(text.indexOf(';'), 3);
    EXPECT_EQ(text.indexOf(ZStrToken<char>(";x"), 2), 8);
    EXPECT_EQ(text.lastIndexOf(';'), 8);
    EXPECT_EQ(text.count(';') + text.count("F", 1), 4);
    EXPECT_EQ(text.s_verify('-') + text.s_verify(ZStrToken<char>("-12")), 1 + 3);
    EXPECT_EQ(text.toInt32() + text.right(1).toInt8(), -12);
    EXPECT_EQ(text.subString(1, 1).toUInt64(), 1U);
    EXPECT_EQ(text.toDouble() + text.toSingle(), -24);
    EXPECT_EQ(text(4, 4).hexToUInt16(), 0x0AFF);
    EXPECT_TRUE(text.right(1).isAlpha() && text.left(3).isNumeric());
    EXPECT_EQ(text.at(0), text[0]);
    EXPECT_EQ(text.split(';').Count(), 0);
    unsigned char bytes[2];
    EXPECT_EQ(text(4, 4).hexTo(bytes, 2), 2);
    EXPECT_EQ(bytes[1], 0xFF);
    EXPECT_EQ(std::string(static_cast<const char*>(text)), "-12;0aFF;x");
}

} // namespace
