// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZList.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

class ZListingTest : public testing::Test {
protected:
    ZListingTest()
    {
        for (int number : {5, 6, 5, 7, 6})
            m_list.add(number);
    }

    ZListing<int> m_list; // NOLINT(misc-non-private-member-variables-in-classes)
};

TEST_F(ZListingTest, FindsTheFirstMatchAtOrAfterStart)
{
    EXPECT_EQ(m_list.il_find(5), 0);
    EXPECT_EQ(m_list.il_find(5, 0), 0);
    EXPECT_EQ(m_list.il_find(5, 1), 2);
    EXPECT_EQ(m_list.il_find(5, 3), -1);
    EXPECT_EQ(m_list.il_find(6, 4), 4);
    EXPECT_EQ(m_list.il_find(8, 0), -1);
}

TEST_F(ZListingTest, NegativeStartSearchesTheLastElementsOnly)
{
    EXPECT_EQ(m_list.il_find(6, -1), 4);
    EXPECT_EQ(m_list.il_find(7, -1), -1);
    EXPECT_EQ(m_list.il_find(7, -2), 3);
    EXPECT_EQ(m_list.il_find(5, -5), 0);
    EXPECT_EQ(m_list.il_find(5, -6), 0);
    EXPECT_EQ(m_list.il_find(5, LONG_MIN), 0);
}

TEST_F(ZListingTest, StartAtOrPastTheEndFindsNothing)
{
    EXPECT_EQ(m_list.il_find(6, 5), -1);
    EXPECT_EQ(m_list.il_find(6, 6), -1);
    EXPECT_EQ(m_list.il_find(6, LONG_MAX), -1);
}

TEST_F(ZListingTest, UnsignedStartIsNeverNegative)
{
    EXPECT_EQ(m_list.il_find(6, 2u), 4);
    EXPECT_EQ(m_list.il_find(6, ULONG_MAX), -1);
    EXPECT_EQ(m_list.il_find(6, static_cast<unsigned long>(LONG_MAX) + 1), -1);
    EXPECT_EQ(m_list.il_find(6, static_cast<unsigned char>(255)), -1);
}

TEST_F(ZListingTest, FindsNothingInAnEmptyList)
{
    const ZListing<int> empty;
    for (long start : {-1L, 0L, 1L})
        EXPECT_EQ(empty.il_find(5, start), -1);
}

TEST_F(ZListingTest, IsCopiedLikeAList)
{
    const ZListing<int> copy(m_list);
    EXPECT_THAT(copy, ElementsAre(5, 6, 5, 7, 6));
    m_list = ZListing<int>();
    EXPECT_EQ(m_list.Count(), 0);
}

} // namespace
} // namespace ZSpace::Testing
