// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Records: the kind of each value, order, clamping and sharing.

#include "ZSpace/log/ZLogRecord.h"

#include "tests/support/AllocationFaults.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace ZSpace::Testing {
namespace {

template <typename T>
void expectItem(const T& value, unsigned int tag, unsigned int size)
{
    ZLogRecord added;
    added.add(value);
    ZLogRecord shifted;
    shifted << value;
    for (const ZLogRecord* record : {&added, &shifted}) {
        ASSERT_EQ(record->Count(), 1);
        const auto item = record->itemAt(0);
        EXPECT_EQ(static_cast<unsigned int>(item->Type()), tag);
        EXPECT_EQ(item->Size(), size);
        EXPECT_NE(item->Content(), nullptr);
        EXPECT_TRUE(item->Name().isEmpty());
    }
}

TEST(ZLogRecord, EachKindHasItsTagAndSize)
{
    expectItem(true, 0x2, 1);
    expectItem(static_cast<unsigned char>(1), 0x4, 1);
    expectItem(static_cast<signed char>(1), 0x8, 1);
    expectItem(static_cast<unsigned short>(1), 0x10, 2);
    expectItem(static_cast<short>(1), 0x20, 2);
    expectItem(1U, 0x40, 4);
    expectItem(5, 0x80, 4);
    expectItem(5ULL, 0x100, 8);
    expectItem(5LL, 0x200, 8);
    expectItem('c', 0x10000, 1);
    expectItem(L'c', 0x20000, 4);
    expectItem(static_cast<const char*>("text"), 0x40000, 8);
    expectItem(static_cast<const wchar_t*>(L"text"), 0x80000, 8);
    expectItem(ZGStr<char>("text"), 0x100000, 8);
    expectItem(ZGStr<wchar_t>(L"text"), 0x200000, 8);
    expectItem(ZTime(true), 0x1000000, 10);
    expectItem(ZGUID(), 0x2000000, 16);
}

TEST(ZLogRecord, ATypedValueIsCopiedWithItsKindAndName)
{
    TZValueBase<ZTypeId> value(ZGStr<char>("text"));
    value.Name(ZGStr<char>("name"));
    expectItem(TZValueBase<ZTypeId>(ZGStr<char>("text")), 0x100000, 8);
    ZLogRecord record;
    record << value;
    EXPECT_TRUE(record.itemAt(0)->Name() == "name");
    EXPECT_NE(record.itemAt(0)->Content(), value.Content());
}

TEST(ZLogRecord, LongsAreStoredAsLongLongs)
{
    expectItem(5L, 0x200, 8);
    expectItem(5UL, 0x100, 8);
    expectItem(std::size_t{5}, 0x100, 8);
}

TEST(ZLogRecord, FloatingPointNumbersAreStored)
{
    expectItem(2.5F, 0x1000, 4);
    expectItem(2.5, 0x2000, 8);
}

enum Unscoped { Unscoped_value = 3 };
enum Unsigned : unsigned int { Unsigned_value = 5 };

TEST(ZLogRecord, OtherTypesArePromotedAndConverted)
{
    expectItem(Unscoped_value, 0x80, 4);
    expectItem(Unsigned_value, 0x40, 4);
    expectItem(u'c', 0x80, 4);
    expectItem(U'c', 0x40, 4);
    ZLogRecord record;
    record << Unscoped_value << Unsigned_value << u'c';
    record.add(Unscoped_value);
    EXPECT_TRUE(record.itemAt(0)->toCString() == "3");
    EXPECT_TRUE(record.itemAt(1)->toCString() == "5");
    EXPECT_TRUE(record.itemAt(2)->toCString() == "99");
    EXPECT_TRUE(record.itemAt(3)->toCString() == "3");

    struct Number {
        operator int() const { return 6; } // NOLINT(google-explicit-constructor): what is tested
    };
    expectItem(Number(), 0x80, 4);
    char characters[] = "text";
    expectItem(static_cast<char*>(characters), 0x40000, 8);
    struct {
        unsigned int three : 3;
    } bits{5};
    record << bits.three;
    EXPECT_TRUE(record.itemAt(-1)->toCString() == "5");
}

TEST(ZLogRecord, LiteralsMayBeAdded)
{
    ZLogRecord record;
    record.add("narrow").add(L"wide") << "more" << 42;
    ASSERT_EQ(record.Count(), 4);
    EXPECT_EQ(static_cast<unsigned int>(record.itemAt(0)->Type()), 0x40000U);
    EXPECT_EQ(static_cast<unsigned int>(record.itemAt(1)->Type()), 0x80000U);
    EXPECT_TRUE(record.itemAt(2)->toCString() == "more");
    EXPECT_TRUE(record.itemAt(3)->toCString() == "42");
}

TEST(ZLogRecord, OnlyThePointerOfACStringIsStored)
{
    char text[] = "before";
    ZLogRecord record;
    record << static_cast<const char*>(text);
    text[0] = 'B';
    EXPECT_TRUE(record.itemAt(0)->toCString() == "Before");
}

TEST(ZLogRecord, AStringIsCopied)
{
    ZGStr<char> text("before");
    ZLogRecord record;
    record << text;
    text = "after";
    EXPECT_TRUE(record.itemAt(0)->toCString() == "before");
}

TEST(ZLogRecord, AnEmptyStringIsANullStringOfItsKind)
{
    ZLogRecord record;
    record.add(ZGStr<char>()).add(ZGStr<wchar_t>(L""));
    EXPECT_EQ(static_cast<unsigned int>(record.itemAt(0)->Type()), 0x100000U);
    EXPECT_EQ(static_cast<unsigned int>(record.itemAt(1)->Type()), 0x200000U);
    for (long i = 0; i < 2; ++i)
        EXPECT_EQ(*static_cast<void* const*>(record.itemAt(i)->Content()), nullptr);
}

TEST(ZLogRecord, ABuilderOrAViewBecomesAString)
{
    ZLogRecord record;
    record << ZMStr<char>("narrow") << ZMStr<wchar_t>(L"wide");
    record << ZStrToken<char>("narrower", 6) << ZStrToken<wchar_t>(L"wider", 4);
    for (const long i : {0L, 2L}) {
        EXPECT_EQ(static_cast<unsigned int>(record.itemAt(i)->Type()), 0x100000U);
        EXPECT_EQ(static_cast<unsigned int>(record.itemAt(i + 1)->Type()), 0x200000U);
        EXPECT_TRUE(record.itemAt(i)->toCString() == "narrow");
        EXPECT_TRUE(record.itemAt(i + 1)->toCString() == "wide");
    }
}

template <typename T>
concept Addable = requires(ZLogRecord& record, const T& value)
{
    record.add(value);
};
static_assert(!Addable<ZMStr<char>> && !Addable<ZMStr<wchar_t>> && !Addable<ZStrToken<char>>);
static_assert(!Addable<void*> && !Addable<unsigned char*> && !Addable<int*>);
static_assert(Addable<char*> && Addable<ZGStr<char>>);

ZLogRecord numbers(int count)
{
    ZLogRecord record;
    for (int i = 0; i < count; ++i)
        record << i;
    return record;
}

int numberAt(const ZLogRecord& record, long index)
{
    return record.itemAt(index)->toCString().toInt32();
}

TEST(ZLogRecord, IndicesCountFromBothEndsAndAreClamped)
{
    const ZLogRecord record = numbers(4);
    EXPECT_EQ(numberAt(record, 0), 0);
    EXPECT_EQ(numberAt(record, 3), 3);
    EXPECT_EQ(numberAt(record, -1), 3);
    EXPECT_EQ(numberAt(record, -4), 0);
    EXPECT_EQ(numberAt(record, 4), 3);
    EXPECT_EQ(numberAt(record, 1000), 3);
    EXPECT_EQ(numberAt(record, -5), 0);
    EXPECT_EQ(numberAt(record, -4 - 5), 0);
}

TEST(ZLogRecord, AnItemIsANewReference)
{
    const ZLogRecord record = numbers(1);
    const auto first = record.itemAt(0);
    EXPECT_EQ(first.RefCount(), 2);
    const auto second = record.itemAt(0);
    EXPECT_EQ(first.RefCount(), 3);
    EXPECT_EQ(first.get(), second.get());
}

TEST(ZLogRecord, CopiesShareTheirValues)
{
    ZLogRecord record = numbers(3);
    const ZLogRecord copy(record);
    ZLogRecord assigned = numbers(5);
    assigned = record;
    ASSERT_EQ(copy.Count(), 3);
    ASSERT_EQ(assigned.Count(), 3);
    for (long i = 0; i < 3; ++i) {
        EXPECT_EQ(copy.itemAt(i).get(), record.itemAt(i).get());
        EXPECT_EQ(assigned.itemAt(i).get(), record.itemAt(i).get());
    }
    record << 4;
    EXPECT_EQ(copy.Count(), 3);
}

TEST(ZLogRecord, ACopyOutlivesItsSource)
{
    ZLogRecord copy;
    {
        const ZLogRecord source = numbers(3);
        copy = source;
    }
    EXPECT_EQ(numberAt(copy, 2), 2);
    EXPECT_EQ(copy.itemAt(0).RefCount(), 2);
}

TEST(ZLogRecord, SelfAssignmentEmptiesIt)
{
    ZLogRecord record = numbers(3);
    const ZLogRecord& self = record;
    record = self;
    EXPECT_EQ(record.Count(), 0);
}

TEST(ZLogRecord, ContainsNothingButItsList)
{
    static_assert(sizeof(ZLogRecord) == 24 && sizeof(ZLogRecord) == sizeof(ZList<ZLogRecord::Item>));
    static_assert(!std::is_polymorphic_v<ZLogRecord>);
    EXPECT_EQ(ZLogRecord().Count(), 0);
}

TEST(ZLogRecord, SharedValuesMayBeReleasedByManyThreads)
{
    const ZLogRecord record = numbers(50);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([copy = record]() mutable {
            for (int n = 0; n < 20; ++n) {
                ZLogRecord another(copy);
                another << n;
            }
            copy = ZLogRecord();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(record.itemAt(0).RefCount(), 2);
}

} // namespace
} // namespace ZSpace::Testing
