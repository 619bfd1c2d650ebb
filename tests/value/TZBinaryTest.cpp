// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/TZBinary.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <type_traits>
#include <utility>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::ElementsAre;

using Binary = TZBinary<unsigned char>;

static_assert(sizeof(Binary) == 24);
static_assert(std::is_nothrow_move_constructible_v<Binary> && std::is_nothrow_move_assignable_v<Binary>);

std::vector<int> bytesOf(const Binary& binary)
{
    return {binary.Data(), binary.Data() + binary.Length()};
}

TEST(TZBinaryTest, HoldsDataLengthAndOwnership)
{
    unsigned char bytes[]{1, 2, 3};
    const Binary binary(bytes, 3, false);
    EXPECT_EQ(wordAt(&binary, 0), asWord(bytes));
    EXPECT_EQ(wordAt(&binary, 1), 3u);
    EXPECT_EQ(wordAt(&binary, 2) & 0xFF, 0u);
    EXPECT_EQ(binary.Data(), bytes);
    EXPECT_EQ(binary.Length(), 3);
    EXPECT_FALSE(binary.Owns());
    const Binary owning(new unsigned char[1]{9}, 1, true);
    EXPECT_EQ(wordAt(&owning, 2) & 0xFF, 1u);
    EXPECT_TRUE(owning.Owns());
}

TEST(TZBinaryTest, StartsEmpty)
{
    const Binary binary;
    EXPECT_EQ(binary.Data(), nullptr);
    EXPECT_EQ(binary.Length(), 0);
    EXPECT_FALSE(binary.Owns());
    EXPECT_TRUE(binary == Binary());
}

TEST(TZBinaryTest, CopiesOwnedBytesAndSharesBorrowedOnes)
{
    const Binary owning(new unsigned char[3]{1, 2, 3}, 3, true);
    const Binary copy(owning);
    EXPECT_NE(copy.Data(), owning.Data());
    EXPECT_TRUE(copy.Owns());
    EXPECT_THAT(bytesOf(copy), ElementsAre(1, 2, 3));
    unsigned char bytes[]{4};
    const Binary shared(bytes, 1, false);
    const Binary copyOfShared(shared);
    EXPECT_EQ(copyOfShared.Data(), bytes);
    EXPECT_FALSE(copyOfShared.Owns());
    Binary assigned(owning);
    EXPECT_EQ(&(assigned = shared), &assigned);
    EXPECT_EQ(assigned.Data(), bytes);
    assigned = owning;
    EXPECT_THAT(bytesOf(assigned), ElementsAre(1, 2, 3));
    const Binary& self = assigned;
    assigned = self;
    EXPECT_THAT(bytesOf(assigned), ElementsAre(1, 2, 3));
}

TEST(TZBinaryTest, CopiesOfOwnedEmptyBlocksAreNull)
{
    const Binary empty(new unsigned char[0], 0, true);
    const Binary copy(empty);
    EXPECT_EQ(copy.Data(), nullptr);
    EXPECT_EQ(copy.Length(), 0);
    EXPECT_TRUE(copy == empty);
    const Binary nothing(nullptr, 5, true);
    EXPECT_EQ(Binary(nothing).Data(), nullptr);
}

TEST(TZBinaryTest, SingleBytesAreCopied)
{
    const Binary owning(new unsigned char[1]{9}, 1, true);
    const Binary copy(owning);
    EXPECT_NE(copy.Data(), owning.Data());
    EXPECT_THAT(bytesOf(copy), ElementsAre(9));
}

TEST(TZBinaryTest, AnEmptyPartOfItselfIsBorrowed)
{
    Binary binary(new unsigned char[3]{1, 2, 3}, 3, true);
    binary = Binary(binary.Data() + 1, 0, false);
    EXPECT_EQ(binary.Length(), 0);
    EXPECT_FALSE(binary.Owns());
}

TEST(TZBinaryTest, ClearingFreesOnlyOwnedBytes)
{
    const long alive = blocksAlive();
    Binary owning(new unsigned char[3], 3, true);
    owning.clear();
    EXPECT_EQ(blocksAlive(), alive);
    EXPECT_EQ(owning.Data(), nullptr);
    EXPECT_EQ(owning.Length(), 0);
    EXPECT_FALSE(owning.Owns());
    unsigned char bytes[]{4};
    Binary shared(bytes, 1, false);
    shared.clear();
    EXPECT_EQ(shared.Data(), nullptr);
    EXPECT_EQ(bytes[0], 4);
}

TEST(TZBinaryTest, MovingTransfersTheBytes)
{
    auto* bytes = new unsigned char[2]{1, 2};
    Binary binary(bytes, 2, true);
    Binary moved(std::move(binary));
    EXPECT_EQ(moved.Data(), bytes);
    EXPECT_EQ(binary.Data(), nullptr); // NOLINT(bugprone-use-after-move): documented to be empty
    Binary target(new unsigned char[1], 1, true);
    EXPECT_EQ(&(target = std::move(moved)), &target);
    EXPECT_EQ(target.Data(), bytes);
}

TEST(TZBinaryTest, EqualityComparesLengthAndBytes)
{
    unsigned char a[]{1, 2, 3};
    unsigned char b[]{1, 2, 4};
    EXPECT_TRUE(Binary(a, 3, false) == Binary(a, 3, false));
    EXPECT_TRUE(Binary(a, 2, false) == Binary(b, 2, false));
    EXPECT_FALSE(Binary(a, 3, false) == Binary(b, 3, false));
    EXPECT_FALSE(Binary(a, 2, false) == Binary(a, 3, false));
    EXPECT_TRUE(Binary(a, 0, false) == Binary());
    EXPECT_FALSE(Binary(nullptr, 3, false) == Binary(a, 3, false));
}

TEST(TZBinaryTest, NegativeLengthsCountAsZero)
{
    unsigned char bytes[]{1};
    const Binary negative(bytes, -5, false);
    EXPECT_EQ(negative.Length(), 0);
    EXPECT_TRUE(negative == Binary());
    EXPECT_TRUE(Binary(negative) == negative);
    const Binary lowest(nullptr, std::numeric_limits<long long>::min(), true);
    EXPECT_EQ(Binary(lowest).Length(), 0);
}

TEST(TZBinaryTest, FailedCopyLeavesTheTargetUnchanged)
{
    const Binary owning(new unsigned char[3]{1, 2, 3}, 3, true);
    const auto copyIt = [&] {
        const Binary copy(owning);
        keep(&copy);
    };
    EXPECT_EQ(failEachAllocation(copyIt), 1);
    unsigned char bytes[]{4};
    Binary target(bytes, 1, false);
    const AllocationFault fault(1);
    EXPECT_THROW(target = owning, std::bad_alloc);
    EXPECT_EQ(target.Data(), bytes);
}

} // namespace
} // namespace ZSpace::Testing
