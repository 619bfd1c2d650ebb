// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZGUID.h"

#include "tests/support/AllocationFaults.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <iomanip>
#include <new>
#include <ostream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <unordered_set>
#include <vector>

namespace ZSpace {

void PrintTo(const ZGUID& guid, std::ostream* out)
{
    *out << static_cast<const char*>(guid.toCString());
}

} // namespace ZSpace

namespace ZSpace::Testing {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;

static_assert(sizeof(ZGUID) == 16 && alignof(ZGUID) == 4);
static_assert(std::is_trivially_copyable_v<ZGUID>);
static_assert(std::is_same_v<decltype(ZGUID().toCString()), ZGStr<char>>);
static_assert(std::is_same_v<decltype(ZGUID().toWString()), ZGStr<wchar_t>>);
static_assert(std::is_same_v<decltype(ZGUID().toString()), ZMStr<wchar_t>>);

using Bytes = std::array<unsigned char, 16>;

Bytes bytesOf(const ZGUID& guid)
{
    Bytes bytes;
    std::memcpy(bytes.data(), &guid, bytes.size());
    return bytes;
}

ZGUID guidOf(const Bytes& bytes)
{
    ZGUID guid;
    std::memcpy(&guid, bytes.data(), bytes.size());
    return guid;
}

std::string textOf(const ZGUID& guid)
{
    return static_cast<const char*>(guid.toCString());
}

class RandomGuids {
public:
    ZGUID next()
    {
        Bytes bytes;
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(m_random());
        return guidOf(bytes);
    }

private:
    std::mt19937 m_random{5381};
};

const ZGUID s_sample(0x00112233, 0x4455, 0x6677, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF);

// Layout and construction

TEST(ZGUIDTest, IsStoredAsLittleEndianNumbersFollowedByBytes)
{
    EXPECT_THAT(bytesOf(s_sample),
        ElementsAre(
            0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF));
    EXPECT_EQ(s_sample.data1, 0x00112233u);
    EXPECT_EQ(s_sample.data2, 0x4455);
    EXPECT_EQ(s_sample.data3, 0x6677);
    EXPECT_THAT(s_sample.data4, ElementsAre(0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF));
}

TEST(ZGUIDTest, StartsClearedAndPrintsZeros)
{
    const ZGUID guid;
    EXPECT_THAT(bytesOf(guid), Each(0));
    EXPECT_TRUE(guid.isCleared());
    EXPECT_TRUE(!guid);
    EXPECT_EQ(textOf(guid), "{00000000-0000-0000-0000-000000000000}");
    ZGUID cleared(s_sample);
    EXPECT_FALSE(!cleared);
    cleared.clear();
    EXPECT_THAT(bytesOf(cleared), Each(0));
}

TEST(ZGUIDTest, FourthNumberIsStoredLowByteFirst)
{
    const ZGUID guid(1, 2, 3, 0x1234, 5, 6, 7, 8, 9, 10);
    EXPECT_THAT(guid.data4, ElementsAre(0x34, 0x12, 5, 6, 7, 8, 9, 10));
    EXPECT_EQ(textOf(guid), "{00000001-0002-0003-3412-05060708090a}");
}

TEST(ZGUIDTest, CopiesSixCharactersOfAStringUnchanged)
{
    const auto lastBytes = [](const char* text) {
        const ZGUID guid(1, 2, 3, 0x1234, text);
        EXPECT_EQ(guid.data1, 1u);
        EXPECT_EQ(guid.data4[0], 0x34);
        EXPECT_EQ(guid.data4[1], 0x12);
        return std::vector<int>(guid.data4 + 2, guid.data4 + 8);
    };
    EXPECT_THAT(lastBytes("abcdef"), ElementsAre('a', 'b', 'c', 'd', 'e', 'f'));
    EXPECT_THAT(lastBytes("abcdefgh"), ElementsAre('a', 'b', 'c', 'd', 'e', 'f'));
    EXPECT_THAT(lastBytes("12345"), ElementsAre('1', '2', '3', '4', '5', 0));
    EXPECT_THAT(lastBytes("1234"), Each(0));
    EXPECT_THAT(lastBytes(""), Each(0));
    EXPECT_THAT(lastBytes(nullptr), Each(0));
}

TEST(ZGUIDTest, ConstructionFromCharactersWritesOnlyTheObject)
{
    alignas(ZGUID) std::array<unsigned char, sizeof(ZGUID) + 1> memory{};
    memory.back() = 0xEE;
    const auto* guid = new (memory.data()) ZGUID(1, 2, 3, 4, "abcdefgh");
    EXPECT_EQ(guid->data4[7], 'f');
    EXPECT_EQ(memory.back(), 0xEE);
}

TEST(ZGUIDTest, AssignsFromAnotherAndFromAPointer)
{
    ZGUID guid;
    EXPECT_EQ(&(guid = s_sample), &guid);
    EXPECT_EQ(guid, s_sample);
    const ZGUID& self = guid;
    guid = self;
    guid = &guid;
    EXPECT_EQ(guid, s_sample);
    guid.clear();
    EXPECT_EQ(&(guid = &s_sample), &guid);
    EXPECT_EQ(guid, s_sample);
    guid = static_cast<const ZGUID*>(nullptr);
    EXPECT_EQ(guid, s_sample);
}

// Comparison

TEST(ZGUIDTest, EqualityComparesEveryByte)
{
    EXPECT_TRUE(s_sample == guidOf(bytesOf(s_sample)));
    EXPECT_TRUE(s_sample == &s_sample);
    EXPECT_FALSE(s_sample == static_cast<const ZGUID*>(nullptr));
    for (std::size_t i = 0; i < 16; ++i) {
        Bytes bytes = bytesOf(s_sample);
        bytes[i] ^= 1;
        const ZGUID other = guidOf(bytes);
        EXPECT_TRUE(s_sample != other) << i;
        EXPECT_FALSE(s_sample == other) << i;
        EXPECT_FALSE(s_sample == &other) << i;
    }
}

TEST(ZGUIDTest, OrderFollowsTheBytesInMemory)
{
    const ZGUID one(1, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    const ZGUID twoHundredFiftySix(0x100, 0, 0, 0, 0, 0, 0, 0, 0, 0);
    EXPECT_TRUE(one > twoHundredFiftySix);
    EXPECT_TRUE(twoHundredFiftySix < one);
    EXPECT_FALSE(one < one);
    EXPECT_FALSE(one > one);
}

TEST(ZGUIDTest, OrderComparesBytesAsSigned)
{
    for (std::size_t i = 0; i < 16; ++i) {
        Bytes negative{};
        Bytes positive{};
        negative[i] = 0x80;
        positive[i] = 0x7F;
        EXPECT_TRUE(guidOf(negative) < guidOf(positive)) << i;
        EXPECT_TRUE(guidOf(negative) < ZGUID()) << i;
        EXPECT_TRUE(guidOf(positive) > ZGUID()) << i;
    }
}

TEST(ZGUIDTest, OrderIsLexicographicOverSignedBytes)
{
    RandomGuids guids;
    std::mt19937 random(7);
    for (int i = 0; i < 5000; ++i) {
        const ZGUID a = guids.next();
        Bytes other = bytesOf(a);
        other[random() % 16] = static_cast<unsigned char>(random());
        const ZGUID b = i % 2 == 0 ? guidOf(other) : guids.next();
        const auto isLess = [](unsigned char x, unsigned char y) {
            return static_cast<signed char>(x) < static_cast<signed char>(y);
        };
        const Bytes x = bytesOf(a);
        const Bytes y = bytesOf(b);
        ASSERT_EQ(a < b, std::lexicographical_compare(x.begin(), x.end(), y.begin(), y.end(), isLess));
        ASSERT_EQ(a > b, b < a);
        ASSERT_EQ(a == b, !(a < b) && !(b < a));
    }
}

TEST(ZGUIDTest, CountsAsClearedIfItsPartsAddUpToZero)
{
    EXPECT_TRUE(ZGUID(0xFFFFFFFF, 1, 0, 0, 0, 0, 0, 0, 0, 0).isCleared());
    EXPECT_TRUE(!ZGUID(0xFFFFFFFF, 0, 1, 0, 0, 0, 0, 0, 0, 0));
    EXPECT_TRUE(!ZGUID(0xFFFFFF00, 0, 0, 0x0100, 0, 0, 0, 0, 0, 0)); // bytes 0 and 1 count as one number
    EXPECT_TRUE(!ZGUID(0u - 21, 0, 0, 0, 1, 2, 3, 4, 5, 6));
    EXPECT_TRUE(!ZGUID(0u - 3 * 0xFFFF - 6 * 0xFF, 0xFFFF, 0xFFFF, 0xFFFF, 255, 255, 255, 255, 255, 255));
    EXPECT_FALSE(!ZGUID(0xFFFFFFFF, 0, 0, 0, 0, 0, 0, 0, 0, 0));
    for (std::size_t i = 0; i < 16; ++i) {
        Bytes bytes{};
        bytes[i] = 1;
        EXPECT_FALSE(guidOf(bytes).isCleared()) << i;
    }
}

// Text

TEST(ZGUIDTest, TextForms)
{
    const char* text = "{00112233-4455-6677-8899-aabbccddeeff}";
    EXPECT_STREQ(s_sample.toCString(), text);
    EXPECT_STREQ(s_sample.toWString(), L"{00112233-4455-6677-8899-aabbccddeeff}");
    EXPECT_STREQ(s_sample.toString(), L"{00112233-4455-6677-8899-aabbccddeeff}");
    const ZGStr<char> narrow = s_sample;
    const ZGStr<wchar_t> wide = s_sample;
    const ZMStr<wchar_t> built = s_sample;
    EXPECT_STREQ(narrow, text);
    EXPECT_EQ(wide, built);
    EXPECT_EQ(built.Length(), ZGUID::s_textLength);
    EXPECT_EQ(built.Capacity(), 41);
    char bare[ZGUID::s_textLength];
    s_sample.writeText(bare);
    EXPECT_EQ(std::string(bare, sizeof bare), text);
}

TEST(ZGUIDTest, TextFormsAllocateOnlyTheirResult)
{
    const auto countOf = [](auto make) {
        const long before = allocationsMade();
        make();
        return allocationsMade() - before;
    };
    EXPECT_EQ(countOf([] { return s_sample.toCString(); }), 1);
    EXPECT_EQ(countOf([] { return s_sample.toWString(); }), 1);
    EXPECT_EQ(countOf([] { return s_sample.toString(); }), 1);
    EXPECT_EQ(countOf([] { return ZGUID("{00112233-4455-6677-8899-aabbccddeeff}"); }), 0);
    EXPECT_EQ(countOf([] { return ZGUID(L"{00112233-4455-6677-8899-aabbccddeeff}"); }), 0);
    EXPECT_EQ(failEachAllocation([] { std::ignore = s_sample.toCString(); }), 1);
    EXPECT_EQ(failEachAllocation([] { std::ignore = s_sample.toString(); }), 1);
}

TEST(ZGUIDTest, ParsesItsOwnTextInEveryForm)
{
    RandomGuids guids;
    for (int i = 0; i < 2000; ++i) {
        const ZGUID guid = guids.next();
        const std::string text = textOf(guid);
        std::string upper = text;
        std::transform(upper.begin(), upper.end(), upper.begin(),
            [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
        const std::string bare = text.substr(1, 36);
        const std::wstring wide(text.begin(), text.end());
        ASSERT_EQ(ZGUID(text.c_str()), guid);
        ASSERT_EQ(ZGUID(upper.c_str()), guid);
        ASSERT_EQ(ZGUID(bare.c_str()), guid);
        ASSERT_EQ(ZGUID(wide.c_str()), guid);
        ZGUID assigned;
        EXPECT_EQ(&(assigned = guid.toCString()), &assigned);
        ASSERT_EQ(assigned, guid);
        EXPECT_EQ(&(assigned = guid.toString()), &assigned);
        ASSERT_EQ(assigned, guid);
    }
}

struct Parsed {
    const char* text;
    const char* result;
};

TEST(ZGUIDTest, ParsesMalformedText)
{
    const Parsed table[]{
        // Not five groups.
        {"", "{00000000-0000-0000-0000-000000000000}"},
        {"{", "{00000000-0000-0000-0000-000000000000}"},
        {"{}", "{00000000-0000-0000-0000-000000000000}"},
        {"{1234}", "{00000000-0000-0000-0000-000000000000}"},
        {"a-b-c-d", "{00000000-0000-0000-0000-000000000000}"},
        {"a-b-c-d-e-f", "{00000000-0000-0000-0000-000000000000}"},
        {"00112233445566778899aabbccddeeff", "{00000000-0000-0000-0000-000000000000}"},
        // An opening brace removes the last character, whatever that is.
        {"{00112233-4455-6677-8899-aabbccddeeff", "{00112233-4455-6677-8899-aabbccddee00}"},
        {"{00112233-4455-6677-8899-aabbccddeeffx", "{00112233-4455-6677-8899-aabbccddeeff}"},
        {"00112233-4455-6677-8899-aabbccddeeff}", "{00112233-4455-6677-8899-aabbccddeeff}"},
        {" {00112233-4455-6677-8899-aabbccddeeff}", "{00001122-4455-6677-8899-aabbccddeeff}"},
        // Characters that are not digits, groups that are too short or too long.
        {"0011223g-44x5-6-7-aabbccddeeff", "{00112230-4405-6000-0000-aabbccddeeff}"},
        {"12-3-4-5-6", "{12000000-3000-4000-0000-000000000000}"},
        {"----", "{00000000-0000-0000-0000-000000000000}"},
        {"-2-3-4455-66", "{00000000-2000-3000-4455-660000000000}"},
        {"1--3-445566-", "{10000000-0000-3000-4455-000000000000}"},
        {"{10203040-1020-3010-2030-102030405060}", "{10203040-1020-3010-2030-102030405060}"},
        {"001122334-44556-66778-88999-aabbccddeeff0", "{00112233-4455-6677-8899-aabbccddeeff}"},
        {"00112233-4455-6677-889-aabbccd", "{00112233-4455-6677-8800-aabbcc000000}"},
        // As long as the usual forms, or a little longer, but with one group more.
        {"00112233-4455-6677-8899-aabbccddee-f", "{00000000-0000-0000-0000-000000000000}"},
        {"00112233-4455-6677-8899-aabbccddeeff-1", "{00000000-0000-0000-0000-000000000000}"},
        {"00112233-4455-6677-8899-aabbccddeeff-123", "{00000000-0000-0000-0000-000000000000}"},
        {"{00112233-4455-6677-8899-aabbccddeeff-}", "{00000000-0000-0000-0000-000000000000}"},
    };
    for (const Parsed& row : table) {
        EXPECT_EQ(textOf(ZGUID(row.text)), row.result) << row.text;
        EXPECT_EQ(textOf(ZGUID(ZGStr<wchar_t>(row.text))), row.result) << row.text;
    }
}

/// The longer token has the same groups but is parsed by the general code.
template <typename T>
void expectSameAsLongerToken(std::basic_string<T> text, std::size_t position, int c)
{
    text[position] = static_cast<T>(c);
    const ZGUID before(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11);
    ZGUID usual(before);
    usual = ZStrToken<T>(text.data(), 38);
    ZGUID general(before);
    general = ZStrToken<T>(text.data(), 39);
    ASSERT_EQ(usual, general) << position << " " << c;
}

TEST(ZGUIDTest, AnyCharacterInAnyPlaceIsParsedByTheSameRules)
{
    for (std::size_t position = 0; position < 37; ++position) {
        for (int c = 0; c < 0x180; ++c) {
            expectSameAsLongerToken<char>("{00112233-4455-6677-8899-aabbccddeeff}}", position, c & 0xFF);
            expectSameAsLongerToken<wchar_t>(L"{00112233-4455-6677-8899-aabbccddeeff}}", position, c);
        }
    }
}

TEST(ZGUIDTest, BytesThatTheTextDoesNotSupplyAreKept)
{
    ZGUID guid(s_sample);
    guid = "1-2-3-4-567";
    EXPECT_EQ(textOf(guid), "{10000000-2000-3000-8899-56bbccddeeff}");
    guid = L"1-2-3-123-";
    EXPECT_EQ(textOf(guid), "{10000000-2000-3000-1299-56bbccddeeff}");
    guid = "a-b-c-d";
    EXPECT_EQ(textOf(guid), "{00000000-0000-0000-0000-000000000000}");
}

TEST(ZGUIDTest, ALongLastGroupStopsAtTheEndOfTheGuid)
{
    struct {
        ZGUID guid;
        unsigned char after[4]{1, 2, 3, 4};
    } memory;
    new (&memory.guid) ZGUID(1, 2, 3, 4, "abcdefgh");
    EXPECT_THAT(memory.after, ElementsAre(1, 2, 3, 4));
    memory.guid = "1-2-3-4444-00112233445566778899";
    EXPECT_EQ(textOf(memory.guid), "{10000000-2000-3000-4444-001122334455}");
    memory.guid = L"1-2-3-4444-556677889900aabbccdd";
    EXPECT_EQ(textOf(memory.guid), "{10000000-2000-3000-4444-556677889900}");
    EXPECT_THAT(memory.after, ElementsAre(1, 2, 3, 4));
}

TEST(ZGUIDTest, WideDigitsAreNotNarrowed)
{
    EXPECT_EQ(textOf(ZGUID(L"\x0131\x0132-2-3-4-5")), "{00000000-2000-3000-0000-000000000000}");
    EXPECT_EQ(textOf(ZGUID(L"1-2-3-4\x012D"
                           L"5")),
        "{00000000-0000-0000-0000-000000000000}");
}

TEST(ZGUIDTest, ParsingStopsAtTheEndOfTheToken)
{
    const char* text = "{00112233-4455-6677-8899-aabbccddeeff}-";
    EXPECT_EQ(ZGUID(ZStrToken<char>(text, 38)), s_sample);
    EXPECT_EQ(ZGUID(ZStrToken<char>(text + 1, 36)), s_sample);
    EXPECT_TRUE(!ZGUID(ZStrToken<char>(text, 1)));
    EXPECT_TRUE(!ZGUID(ZStrToken<char>(text, 0)));
    EXPECT_TRUE(!ZGUID(ZStrToken<char>()));
    EXPECT_TRUE(!ZGUID(ZStrToken<wchar_t>(nullptr, 0)));
    // A zero ends the token.
    EXPECT_EQ(textOf(ZGUID(ZStrToken<char>("1-2-3-4-5\0-6", 12))), "{10000000-2000-3000-0000-000000000000}");
    EXPECT_EQ(textOf(ZGUID(ZStrToken<char>("1-2-3-4\0-5", 10))), "{00000000-0000-0000-0000-000000000000}");
}

TEST(ZGUIDTest, StreamsWriteTheTextForm)
{
    std::ostringstream narrow;
    narrow << s_sample << '|' << std::setw(40) << s_sample;
    EXPECT_EQ(
        narrow.str(), "{00112233-4455-6677-8899-aabbccddeeff}|  {00112233-4455-6677-8899-aabbccddeeff}");
    std::wostringstream wide;
    wide << s_sample;
    EXPECT_EQ(wide.str(), L"{00112233-4455-6677-8899-aabbccddeeff}");
}

TEST(ZGUIDTest, HashesSpreadOverAllBits)
{
    RandomGuids guids;
    std::unordered_set<ZGUID> set;
    std::unordered_set<std::size_t> low;
    std::unordered_set<std::size_t> high;
    for (int i = 0; i < 2000; ++i) {
        const ZGUID guid = guids.next();
        EXPECT_EQ(std::hash<ZGUID>()(guid), std::hash<ZGUID>()(guidOf(bytesOf(guid))));
        set.insert(guid);
        low.insert(std::hash<ZGUID>()(guid) & 0xFFFFFF);
        high.insert(std::hash<ZGUID>()(guid) >> 40);
    }
    EXPECT_EQ(set.size(), 2000u);
    EXPECT_GE(low.size(), 1995u);
    EXPECT_GE(high.size(), 1995u);
    std::unordered_set<std::size_t> neighbors;
    for (unsigned int i = 0; i < 1000; ++i)
        neighbors.insert(std::hash<ZGUID>()(ZGUID(i, 0, 0, 0, 0, 0, 0, 0, 0, 0)) & 0xFFFF);
    EXPECT_GE(neighbors.size(), 950u);
}

// Generation

TEST(ZGUIDTest, GeneratesFromTheLowBytesOfRand)
{
    ZGUID guid;
    guid.generate(); // seeds rand()
    EXPECT_TRUE(randInitialized);
    std::srand(1234);
    guid.generate();
    std::srand(1234);
    Bytes expected;
    for (unsigned char& byte : expected)
        byte = static_cast<unsigned char>(std::rand() & 0xFF);
    EXPECT_EQ(bytesOf(guid), expected);
}

TEST(ZGUIDTest, SeedsRandOnceWithTheSeconds)
{
    const std::time_t before = std::time(nullptr);
    randInitialized = false;
    ZGUID first;
    first.generate();
    ZGUID second;
    second.generate();
    const std::time_t after = std::time(nullptr);
    bool isSeededByClock = false;
    for (std::time_t seed = before; seed <= after; ++seed) {
        std::srand(static_cast<unsigned int>(seed));
        ZGUID expected;
        expected.generate();
        ZGUID next;
        next.generate();
        isSeededByClock |= first == expected && second == next;
    }
    EXPECT_TRUE(isSeededByClock);
}

TEST(ZGUIDTest, GeneratesDifferentValues)
{
    std::set<std::string> texts;
    for (int i = 0; i < 1000; ++i) {
        ZGUID guid;
        guid.generate();
        texts.insert(textOf(guid));
    }
    EXPECT_EQ(texts.size(), 1000u);
}

TEST(ZGUIDTest, ThreadsGenerateConcurrently)
{
    randInitialized = false;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([] {
            for (int i = 0; i < 100; ++i)
                ZGUID().generate();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_TRUE(randInitialized);
}

} // namespace
} // namespace ZSpace::Testing
