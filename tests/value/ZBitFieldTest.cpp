// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZBitField.h"

#include "ZSpace/core/ZException.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace ZSpace::Testing {
namespace {

using testing::Each;
using testing::ElementsAre;

using Array = std::unique_ptr<unsigned char[], void (*)(const unsigned char*)>;

static_assert(sizeof(ZBITFIELD) == 16);
static_assert(
    std::is_nothrow_move_constructible_v<ZBITFIELD> && std::is_nothrow_move_assignable_v<ZBITFIELD>);
static_assert(!std::is_convertible_v<int, ZBITFIELD>);
static_assert(ZBITFIELD::byteCount(10) == 2);

Array owned(unsigned char* bytes)
{
    return {bytes, &ZBITFIELD::release};
}

/// An array of exactly the bytes that n bits need, so that a sanitizer reports any access past its end.
Array exactArray(int n, unsigned char filling = 0)
{
    Array bytes = owned(ZBITFIELD::create(n));
    std::fill_n(bytes.get(), ZBITFIELD::byteCount(n), filling);
    return bytes;
}

ZBITFIELD fieldOf(const std::string& bits)
{
    ZBITFIELD field(static_cast<int>(bits.size()));
    field.clear();
    for (int i = 0; i < field.Length(); ++i)
        field.set(i, bits[static_cast<std::size_t>(i)] == '1');
    return field;
}

std::string textOf(const ZBITFIELD& field)
{
    return static_cast<const char*>(field.toCString());
}

std::string randomBits(std::mt19937& random, int n)
{
    std::string bits;
    for (int i = 0; i < n; ++i)
        bits += random() % 2 ? '1' : '0';
    return bits;
}

template <typename Operation>
void expectOutOfBounds(Operation operation)
{
    try {
        operation();
        FAIL() << "nothing was thrown";
    } catch (const ZXCOutOfBounds& error) {
        EXPECT_EQ(error.code(), 1026u);
        EXPECT_STREQ(error.what(), "Out of bounds");
        EXPECT_STREQ(error.where(), "ZBitField::get");
        EXPECT_EQ(error.why(), nullptr);
    }
}

// Construction and copying

TEST(ZBitFieldTest, IsAPointerToItsBytesFollowedByTheLength)
{
    ZBITFIELD field(10);
    field.clear();
    field.set(0, true);
    field.set(9, true);
    const auto* bytes = reinterpret_cast<const unsigned char*>(wordAt(&field, 0));
    EXPECT_EQ(bytes[0], 1);
    EXPECT_EQ(bytes[1], 2);
    EXPECT_EQ(wordAt(&field, 1) & 0xFFFFFFFF, 10u);
    EXPECT_EQ(field.Length(), 10);
}

TEST(ZBitFieldTest, NegativeLengthsCountAsZero)
{
    for (int n : {0, -1, INT_MIN}) {
        ZBITFIELD field(n);
        field.clear();
        EXPECT_EQ(field.Length(), 0);
        EXPECT_STREQ(field.toCString(), "");
        EXPECT_EQ(field, ZBITFIELD());
        expectOutOfBounds([&] { field.get(0); });
    }
}

TEST(ZBitFieldTest, CopiesAllBytesIncludingZeros)
{
    const unsigned char bytes[]{0, 0, 0x81};
    const ZBITFIELD field(bytes, 20);
    EXPECT_EQ(textOf(field), "00000000000000001000");
    const ZBITFIELD copy(field);
    EXPECT_EQ(copy, field);
    ZBITFIELD assigned(3);
    EXPECT_EQ(&(assigned = field), &assigned);
    EXPECT_EQ(assigned, field);
    const ZBITFIELD& self = assigned;
    assigned = self;
    EXPECT_EQ(assigned, field);
}

TEST(ZBitFieldTest, ReadsOnlyTheBytesThatTheBitsNeed)
{
    for (int n = 0; n <= 33; ++n) {
        const Array bytes = exactArray(n, 0xFF);
        const ZBITFIELD field(bytes.get(), n);
        EXPECT_EQ(textOf(field), std::string(static_cast<std::size_t>(n), '1'));
        const ZBITFIELD copy(field);
        EXPECT_TRUE(copy == field);
        EXPECT_TRUE(ZBITFIELD::equals(bytes.get(), bytes.get(), n));
        const Array copied = owned(ZBITFIELD::copy(bytes.get(), n));
        EXPECT_TRUE(ZBITFIELD::equals(bytes.get(), copied.get(), n));
        if (n % 8 == 0) {
            EXPECT_EQ(copied[static_cast<std::size_t>(n / 8)], 0);
        }
        ZBITFIELD::clear(bytes.get(), n);
        for (int i = 0; i < n; ++i)
            EXPECT_FALSE(ZBITFIELD::bit(bytes.get(), i));
    }
}

TEST(ZBitFieldTest, MovingLeavesAnEmptyField)
{
    ZBITFIELD field = fieldOf("1011");
    ZBITFIELD moved(std::move(field));
    EXPECT_EQ(textOf(moved), "1011");
    EXPECT_EQ(field.Length(), 0); // NOLINT(bugprone-use-after-move): documented to be empty
    field.clear();
    EXPECT_EQ(field, ZBITFIELD(field));
    EXPECT_EQ(textOf(field += moved), "1011");
    ZBITFIELD target(2);
    EXPECT_EQ(&(target = std::move(moved)), &target);
    EXPECT_EQ(textOf(target), "1011");
}

TEST(ZBitFieldTest, SlicesAreNewFields)
{
    const ZBITFIELD field = fieldOf("110100111010");
    EXPECT_EQ(textOf(ZBITFIELD(field, 0, 12)), "110100111010");
    EXPECT_EQ(textOf(ZBITFIELD(field, 1, 5)), "10100");
    EXPECT_EQ(textOf(ZBITFIELD(field, 11, 1)), "0");
    EXPECT_EQ(textOf(ZBITFIELD(field, 12, 0)), "");
    EXPECT_EQ(textOf(ZBITFIELD(field, 3, -1)), "");
    expectOutOfBounds([&] { ZBITFIELD(field, 11, 2); });
    expectOutOfBounds([&] { ZBITFIELD(field, -1, 2); });
    expectOutOfBounds([&] { ZBITFIELD(field, INT_MAX, 2); });
    expectOutOfBounds([&] { ZBITFIELD(field, INT_MAX, INT_MAX); });
    expectOutOfBounds([&] { ZBITFIELD(field, INT_MIN, INT_MAX); });
    const long made = allocationsMade();
    EXPECT_THROW(ZBITFIELD(field, 0, INT_MAX), ZXCOutOfBounds);
    EXPECT_LE(allocationsMade() - made, 1); // the exception's, if any; no bits
}

TEST(ZBitFieldTest, BitsPastTheEndOfASliceAreZero)
{
    const unsigned char bytes[]{0xFF, 0xFF};
    const ZBITFIELD field(bytes, 16);
    // Equality includes the bit after the last one.
    EXPECT_EQ(ZBITFIELD(field, 0, 5), fieldOf("11111"));
    EXPECT_EQ(ZBITFIELD(field, 3, 11), fieldOf("11111111111"));
}

TEST(ZBitFieldTest, SlicesOfOneBitAreCheckedToo)
{
    const ZBITFIELD field = fieldOf("101");
    EXPECT_EQ(textOf(ZBITFIELD(field, 2, 1)), "1");
    expectOutOfBounds([&] { ZBITFIELD(field, 3, 1); });
    expectOutOfBounds([&] { ZBITFIELD(field, -1, 1); });
}

TEST(ZBitFieldTest, ClearingSetsAllBitsToZero)
{
    ZBITFIELD field = fieldOf("11111111111");
    field.clear();
    EXPECT_EQ(textOf(field), "00000000000");
}

// Single bits

TEST(ZBitFieldTest, ReadsAndWritesBits)
{
    ZBITFIELD field(5);
    field.clear();
    EXPECT_EQ(textOf(field), "00000");
    field.set(0, true);
    EXPECT_EQ(textOf(field), "10000");
    field(4, true);
    EXPECT_EQ(&(field += 2), &field);
    EXPECT_EQ(textOf(field), "10101");
    EXPECT_EQ(&(field -= 0), &field);
    field(4, false);
    EXPECT_EQ(textOf(field), "00100");
    EXPECT_TRUE(field.get(2));
    EXPECT_TRUE(field[2]);
    EXPECT_TRUE(field(2));
    EXPECT_FALSE(field.get(0));
    EXPECT_FALSE(field[1]);
    EXPECT_FALSE(field(4));
}

TEST(ZBitFieldTest, IndicesOutsideThrow)
{
    ZBITFIELD field(10);
    field.clear();
    for (int i : {-1, 10, 15, 16, INT_MAX, INT_MIN}) {
        expectOutOfBounds([&] { field.get(i); });
        expectOutOfBounds([&] { field[i]; });
        expectOutOfBounds([&] { field(i); });
        expectOutOfBounds([&] { field.set(i, true); });
        expectOutOfBounds([&] { field(i, false); });
        expectOutOfBounds([&] { field += i; });
        expectOutOfBounds([&] { field -= i; });
    }
    EXPECT_EQ(textOf(field), "0000000000");
}

TEST(ZBitFieldTest, CopiesTheBitsOfAnotherFieldUpToTheFirstThatDoesNotFit)
{
    ZBITFIELD field = fieldOf("000000");
    field.set(2, fieldOf("101"));
    EXPECT_EQ(textOf(field), "001010");
    field.set(0, fieldOf("010101"));
    EXPECT_EQ(textOf(field), "010101");
    field.set(6, ZBITFIELD());
    expectOutOfBounds([&] { field.set(4, fieldOf("111")); });
    EXPECT_EQ(textOf(field), "010111"); // the bits that fit are written
    expectOutOfBounds([&] { field.set(-1, fieldOf("11")); });
    expectOutOfBounds([&] { field.set(INT_MAX, fieldOf("11")); });
    EXPECT_EQ(textOf(field), "010111");
}

TEST(ZBitFieldTest, IndicesAreNotNarrowed)
{
    ZBITFIELD field = fieldOf("11111");
    const long long wraps = 1LL << 32;
    expectOutOfBounds([&] { field.get(wraps); });
    expectOutOfBounds([&] { field[wraps]; });
    expectOutOfBounds([&] { field(wraps); });
    expectOutOfBounds([&] { field.set(wraps, false); });
    expectOutOfBounds([&] { field(wraps, false); });
    expectOutOfBounds([&] { field += wraps; });
    expectOutOfBounds([&] { field -= wraps; });
    expectOutOfBounds([&] { field.set(wraps, fieldOf("0")); });
    expectOutOfBounds([&] { field.set(LLONG_MAX, fieldOf("00")); });
    expectOutOfBounds([&] { field.get(static_cast<long long>(ULONG_MAX)); });
    EXPECT_EQ(textOf(field), "11111");
    enum Flag { Third = 2 };
    EXPECT_TRUE(field[Third]);
    EXPECT_TRUE(field[std::size_t{4}]);
}

// Whole fields

TEST(ZBitFieldTest, Concatenates)
{
    ZBITFIELD field = fieldOf("101");
    EXPECT_EQ(&(field += fieldOf("11")), &field);
    EXPECT_EQ(textOf(field), "10111");
    EXPECT_EQ(field.Length(), 5);
    field += field;
    EXPECT_EQ(textOf(field), "1011110111");
    field += ZBITFIELD();
    EXPECT_EQ(textOf(field), "1011110111");
    ZBITFIELD empty;
    empty += field;
    EXPECT_EQ(empty, field);
}

TEST(ZBitFieldTest, ConcatenatesLikeStrings)
{
    std::mt19937 random(11);
    for (int i = 0; i < 300; ++i) {
        const std::string a = randomBits(random, static_cast<int>(random() % 40));
        const std::string b = randomBits(random, static_cast<int>(random() % 40));
        ZBITFIELD field = fieldOf(a);
        field += fieldOf(b);
        ASSERT_EQ(textOf(field), a + b);
        ASSERT_EQ(field, fieldOf(a + b));
        const int length = field.Length();
        const int start = length ? static_cast<int>(random() % static_cast<unsigned>(length)) : 0;
        const ZBITFIELD slice(field, start, length - start);
        ASSERT_EQ(slice, fieldOf((a + b).substr(static_cast<std::size_t>(start))));
    }
}

TEST(ZBitFieldTest, BitsPastTheEndOfAConcatenationAreZero)
{
    const unsigned char bytes[]{0xFF};
    ZBITFIELD field(bytes, 3);
    field += ZBITFIELD(bytes, 2);
    EXPECT_EQ(field, fieldOf("11111"));
}

TEST(ZBitFieldTest, OrIgnoresBitsPastItsOwnLength)
{
    const ZBITFIELD a = fieldOf("1100");
    EXPECT_EQ(textOf(a | fieldOf("0110")), "1110");
    EXPECT_EQ(textOf(a | fieldOf("001")), "1110");
    EXPECT_EQ(textOf(a | fieldOf("000011111111")), "1100");
    EXPECT_EQ(textOf(a | fieldOf("001100000000")), "1111");
    EXPECT_EQ(textOf(a | ZBITFIELD()), "1100");
    EXPECT_EQ(textOf(a), "1100");
    EXPECT_EQ((a | fieldOf("11111")).Length(), 4);
    EXPECT_EQ(a | fieldOf("00001"), a); // nor are the unused bits of the last byte changed
}

TEST(ZBitFieldTest, OperatorsWithoutEffectLeaveTheFieldUnchanged)
{
    ZBITFIELD field = fieldOf("1100");
    const ZBITFIELD other = fieldOf("0011");
    EXPECT_EQ(textOf(field & other), "1100");
    EXPECT_EQ(&(field &= other), &field);
    EXPECT_EQ(&(field |= other), &field);
    EXPECT_EQ(&~field, &field);
    EXPECT_EQ(&~std::as_const(field), &field);
    field.invert();
    field.invert(1);
    field.invert(99);
    EXPECT_EQ(textOf(field), "1100");
}

TEST(ZBitFieldTest, EqualityIncludesTheBitAfterTheLast)
{
    const auto field = [](unsigned char byte, int n) { return ZBITFIELD(&byte, n); };
    EXPECT_TRUE(field(0x05, 4) == field(0x05, 4));
    EXPECT_FALSE(field(0x05, 4) == field(0x15, 4));
    EXPECT_TRUE(field(0x05, 4) != field(0x15, 4));
    EXPECT_TRUE(field(0x05, 4) == field(0x25, 4));
    EXPECT_FALSE(field(0x05, 4) != field(0x25, 4));
    EXPECT_FALSE(field(0x05, 4) == field(0x05, 5));
    EXPECT_FALSE(field(0x7F, 7) == field(0xFF, 7));
    const unsigned char a[]{1, 0};
    const unsigned char b[]{1, 1};
    EXPECT_TRUE(ZBITFIELD(a, 8) == ZBITFIELD(b, 8)); // but not the one in the next byte
    EXPECT_FALSE(ZBITFIELD(a, 9) == ZBITFIELD(b, 9));
}

TEST(ZBitFieldTest, PrintsBitZeroFirst)
{
    const ZBITFIELD field = fieldOf("1000000001");
    EXPECT_STREQ(field.toCString(), "1000000001");
    EXPECT_STREQ(field.toWString(), L"1000000001");
    const ZGStr<char> narrow = field;
    const ZGStr<wchar_t> wide = field;
    EXPECT_STREQ(narrow, "1000000001");
    EXPECT_STREQ(wide, L"1000000001");
}

// Plain byte arrays

TEST(ZBitFieldArrayTest, CopiesHaveAByteForTheBitAfterTheLast)
{
    const unsigned char bytes[]{0xFF, 0xFF, 0xFF};
    for (const auto& [bits, size] : {std::pair(-5, 1), {0, 1}, {7, 1}, {8, 2}, {15, 2}, {16, 3}, {17, 3}}) {
        const Array copied = owned(ZBITFIELD::copy(bytes, bits));
        EXPECT_EQ(lastAllocationSize(), static_cast<std::size_t>(size)) << bits;
    }
}

TEST(ZBitFieldArrayTest, EightBitsShareAByte)
{
    const std::pair<int, int> table[]{
        {INT_MIN, 0}, {-5, 0}, {0, 0}, {1, 1}, {2, 1}, {8, 1}, {9, 2}, {16, 2}, {17, 3}, {INT_MAX, 1 << 28}};
    for (const auto& [bits, bytes] : table)
        EXPECT_EQ(ZBITFIELD::byteCount(bits), bytes) << bits;
}

TEST(ZBitFieldArrayTest, WritingABitReturnsTheMask)
{
    const Array bytes = exactArray(16);
    EXPECT_EQ(ZBITFIELD::bit(bytes.get(), 3, true), 0x08);
    EXPECT_EQ(ZBITFIELD::bit(bytes.get(), 15, true), 0x80);
    EXPECT_EQ(bytes[0], 0x08);
    EXPECT_EQ(bytes[1], 0x80);
    EXPECT_TRUE(ZBITFIELD::bit(bytes.get(), 15));
    EXPECT_FALSE(ZBITFIELD::bit(bytes.get(), 14));
    EXPECT_EQ(ZBITFIELD::bit(bytes.get(), 15, false), 0x7F);
    EXPECT_EQ(ZBITFIELD::bit(bytes.get(), 0, false), 0xFE);
    EXPECT_EQ(bytes[0], 0x08);
    EXPECT_EQ(bytes[1], 0);
}

TEST(ZBitFieldArrayTest, OringABitReturnsItsNewValue)
{
    const Array bytes = exactArray(8);
    EXPECT_FALSE(ZBITFIELD::bitOr(bytes.get(), 2, false));
    EXPECT_TRUE(ZBITFIELD::bitOr(bytes.get(), 2, true));
    EXPECT_TRUE(ZBITFIELD::bitOr(bytes.get(), 2, false));
    EXPECT_EQ(bytes[0], 4);
}

TEST(ZBitFieldArrayTest, AndingHasNoEffect)
{
    const Array bytes = exactArray(8, 0x0F);
    const Array zeros = exactArray(8);
    EXPECT_TRUE(ZBITFIELD::bitAnd(bytes.get(), 3, false));
    EXPECT_FALSE(ZBITFIELD::bitAnd(bytes.get(), 4, true));
    ZBITFIELD::bitAnd(bytes.get(), 0, zeros.get(), 8);
    EXPECT_EQ(bytes[0], 0x0F);
}

TEST(ZBitFieldArrayTest, CopiesAndOrsRunsOfBits)
{
    std::mt19937 random(13);
    for (int round = 0; round < 300; ++round) {
        const int length = static_cast<int>(1 + random() % 40);
        const int n = static_cast<int>(random() % static_cast<unsigned>(length + 1));
        const int at = static_cast<int>(random() % static_cast<unsigned>(length - n + 1));
        const std::string target = randomBits(random, length);
        const std::string source = randomBits(random, n);
        const auto arrayOf = [](const std::string& bits) {
            Array bytes = exactArray(static_cast<int>(bits.size()));
            for (std::size_t i = 0; i < bits.size(); ++i)
                ZBITFIELD::bit(bytes.get(), static_cast<int>(i), bits[i] == '1');
            return bytes;
        };
        const Array from = arrayOf(source);
        const Array copied = arrayOf(target);
        const Array ored = arrayOf(target);
        ZBITFIELD::bit(copied.get(), at, from.get(), n);
        ZBITFIELD::bitOr(ored.get(), at, from.get(), n);
        for (int i = 0; i < length; ++i) {
            const bool old = target[static_cast<std::size_t>(i)] == '1';
            const bool isInside = i >= at && i < at + n;
            const bool given = isInside && source[static_cast<std::size_t>(i - at)] == '1';
            ASSERT_EQ(ZBITFIELD::bit(copied.get(), i), isInside ? given : old);
            ASSERT_EQ(ZBITFIELD::bit(ored.get(), i), old || given);
        }
    }
}

TEST(ZBitFieldArrayTest, CountsBelowOneHaveNoEffect)
{
    const Array bytes = exactArray(8, 0x55);
    for (int n : {0, -1, INT_MIN}) {
        ZBITFIELD::bit(bytes.get(), 0, nullptr, n);
        ZBITFIELD::bitOr(bytes.get(), 0, nullptr, n);
        ZBITFIELD::clear(bytes.get(), n);
        ZBITFIELD::clear(nullptr, n);
        EXPECT_TRUE(ZBITFIELD::equals(nullptr, nullptr, n));
        EXPECT_EQ(owned(ZBITFIELD::copy(bytes.get(), n))[0], 0);
        ZBITFIELD::release(ZBITFIELD::create(n));
    }
    ZBITFIELD::release(nullptr);
    EXPECT_EQ(bytes[0], 0x55);
}

TEST(ZBitFieldArrayTest, ClearsWholeBytes)
{
    const Array bytes = exactArray(24, 0xFF);
    ZBITFIELD::clear(bytes.get(), 9);
    EXPECT_EQ(bytes[0], 0);
    EXPECT_EQ(bytes[1], 0);
    EXPECT_EQ(bytes[2], 0xFF);
}

TEST(ZBitFieldArrayTest, EqualityIncludesOneBitPastTheEnd)
{
    for (int n = 1; n <= 24; ++n) {
        for (int differing = 0; differing < 8 * ZBITFIELD::byteCount(n); ++differing) {
            const Array a = exactArray(n, 0x5A);
            const Array b = exactArray(n, 0x5A);
            ZBITFIELD::bit(b.get(), differing, !ZBITFIELD::bit(b.get(), differing));
            EXPECT_EQ(ZBITFIELD::equals(a.get(), b.get(), n), differing > n) << n << ", bit " << differing;
        }
    }
}

// Failures

TEST(ZBitFieldTest, FailedAllocationsLeaveTheFieldUnchanged)
{
    const ZBITFIELD field = fieldOf("1011");
    EXPECT_EQ(failEachAllocation([&] { ZBITFIELD(100); }), 1);
    EXPECT_EQ(failEachAllocation([&] { ZBITFIELD{field}; }), 1);
    EXPECT_EQ(failEachAllocation([&] { ZBITFIELD(field, 1, 2); }), 1);
    EXPECT_EQ(failEachAllocation([&] { std::ignore = field | field; }), 1);
    EXPECT_EQ(failEachAllocation([&] { std::ignore = field & field; }), 1);
    EXPECT_GE(failEachAllocation([&] { std::ignore = field.toCString(); }), 1);
    EXPECT_GE(failEachAllocation([&] { std::ignore = field.toWString(); }), 1);
    EXPECT_EQ(failEachAllocation([&] { ZBITFIELD::release(ZBITFIELD::create(100)); }), 1);
    ZBITFIELD target = fieldOf("01");
    const AllocationFault fault(1, AllocationFault::Kind::Lasting);
    EXPECT_THROW(target = field, std::bad_alloc);
    EXPECT_THROW(target += field, std::bad_alloc);
    EXPECT_THROW(target += target, std::bad_alloc);
    EXPECT_THROW(target.set(0, target), std::bad_alloc);
    EXPECT_TRUE(target.get(1));
    EXPECT_EQ(target.Length(), 2);
}

} // namespace
} // namespace ZSpace::Testing
