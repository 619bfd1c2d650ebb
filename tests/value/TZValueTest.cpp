// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZValue.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"
#include "tests/support/Slots.h"
#include "tests/value/Times.h"
#include "tests/value/Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

namespace ZSpace::Testing {
namespace {

constexpr auto s_cell = std::in_place;

static_assert(sizeof(TZType<ZTypeId>) == 24 && sizeof(Value) == 32);
static_assert(sizeof(ZTypeId) == 4 && std::is_unsigned_v<ZTypeId>);
static_assert(std::is_base_of_v<TZType<ZTypeId>, Value>);
static_assert(std::has_virtual_destructor_v<TZType<ZTypeId>>);
static_assert(std::is_nothrow_move_constructible_v<Value> && std::is_nothrow_move_assignable_v<Value>);

TEST(TZValueTest, FieldsAreContentTagSizeAndName)
{
    Value value(s_cell, 7);
    value.Name("n");
    EXPECT_EQ(wordAt(&value, 1), asWord(value.Content()));
    EXPECT_EQ(wordAt(&value, 2), 0x0000000400000080u);
    EXPECT_EQ(wordAt(&value, 3), asWord(static_cast<const char*>(value.Name())));
}

TEST(TZValueTest, VirtualOperationsAreTheDestructorsAndClone)
{
    EXPECT_EQ(slotOf(&TZType<ZTypeId>::clone), 2u);
    EXPECT_EQ(slotOf(&Value::clone), 2u);
    EXPECT_EQ(slotOf(&ZValueArrayBase::clone), 2u);
    EXPECT_EQ(slotOf(&ZValue<int, ZTypeId_int>::clone), 2u);
}

TEST(TZValueTest, DefaultHasTagZeroAndNoContent)
{
    const Value value;
    EXPECT_EQ(value.Type(), 0u);
    EXPECT_EQ(value.Size(), 0u);
    EXPECT_EQ(value.Content(), nullptr);
    EXPECT_TRUE(value.Name().isEmpty());
    EXPECT_TRUE(value == Value());
    EXPECT_STREQ(value.toCString(), "");
}

// Each kind

class EveryKindTest : public testing::Test {
protected:
    ~EveryKindTest() override
    {
        m_kinds.clear();
        EXPECT_EQ(CountedObject::s_alive, 0);
    }

    std::vector<SampleKind> m_kinds = everyKind();
};

TEST_F(EveryKindTest, HasItsTagAndSize)
{
    for (const SampleKind& kind : m_kinds) {
        EXPECT_EQ(kind.sample.Type(), kind.tag) << kind.name;
        EXPECT_EQ(kind.sample.Size(), kind.size) << kind.name;
        EXPECT_EQ(kind.sample.Content() != nullptr, kind.tag != 0) << kind.name;
        EXPECT_TRUE(kind.sample.Name().isEmpty()) << kind.name;
    }
}

TEST_F(EveryKindTest, PrintsItsText)
{
    for (const SampleKind& kind : m_kinds) {
        EXPECT_EQ(textOf(kind.sample), kind.text) << kind.name;
        EXPECT_EQ(appendedTextOf(kind.sample), kind.text) << kind.name;
    }
}

TEST_F(EveryKindTest, EqualsOnlyItselfAndItsCopies)
{
    for (const SampleKind& a : m_kinds) {
        EXPECT_EQ(a.sample == a.sample, a.equalsItself) << a.name;
        EXPECT_EQ(a.sample != a.sample, !a.equalsItself) << a.name;
        EXPECT_FALSE(a.sample == a.other) << a.name;
        EXPECT_FALSE(a.other == a.sample) << a.name;
        for (const SampleKind& b : m_kinds) {
            if (&a != &b) {
                EXPECT_FALSE(a.sample == b.sample) << a.name << ", " << b.name;
            }
        }
    }
}

TEST_F(EveryKindTest, EveryCopyHasItsOwnContent)
{
    for (SampleKind& kind : m_kinds) {
        kind.sample.Name("sample");
        const Value copy(kind.sample);
        const TZType<ZTypeId> bare(kind.sample);
        const std::unique_ptr<Value> clone(kind.sample.clone());
        const std::unique_ptr<TZType<ZTypeId>> bareClone(bare.clone());
        Value assigned(kind.other);
        EXPECT_EQ(&(assigned = kind.sample), &assigned);
        TZType<ZTypeId> bareAssigned(kind.other);
        EXPECT_EQ(&(bareAssigned = bare), &bareAssigned);
        const TZType<ZTypeId>* copies[]{&copy, &bare, clone.get(), bareClone.get(), &assigned, &bareAssigned};
        for (const TZType<ZTypeId>* each : copies) {
            EXPECT_EQ(each->Type(), kind.tag) << kind.name;
            EXPECT_EQ(each->Size(), kind.size) << kind.name;
            EXPECT_TRUE(!each->Content() || each->Content() != kind.sample.Content()) << kind.name;
        }
        EXPECT_EQ(copy == kind.sample, kind.equalsItself) << kind.name;
        EXPECT_EQ(*clone == kind.sample, kind.equalsItself) << kind.name;
        EXPECT_EQ(assigned == kind.sample, kind.equalsItself) << kind.name;
        EXPECT_EQ(textOf(copy), kind.text) << kind.name;
        EXPECT_STREQ(copy.Name(), "sample");
        EXPECT_STREQ(clone->Name(), "sample");
        EXPECT_TRUE(assigned.Name().isEmpty());
    }
}

TEST_F(EveryKindTest, SelfAssignmentHasNoEffect)
{
    for (SampleKind& kind : m_kinds) {
        const void* content = kind.sample.Content();
        const Value& self = kind.sample;
        kind.sample = self;
        EXPECT_EQ(kind.sample.Content(), content) << kind.name;
        EXPECT_EQ(textOf(kind.sample), kind.text) << kind.name;
    }
}

TEST_F(EveryKindTest, MovingTransfersTheContent)
{
    for (SampleKind& kind : m_kinds) {
        const void* content = kind.sample.Content();
        kind.sample.Name("sample");
        Value moved(std::move(kind.sample));
        EXPECT_EQ(moved.Content(), content) << kind.name;
        EXPECT_STREQ(moved.Name(), "sample");
        kind.other.Name("other");
        EXPECT_EQ(&(kind.other = std::move(moved)), &kind.other);
        EXPECT_EQ(kind.other.Content(), content) << kind.name;
        EXPECT_STREQ(kind.other.Name(), "other");
        EXPECT_EQ(moved.Type(), 0u); // NOLINT(bugprone-use-after-move): documented to hold no value
        EXPECT_EQ(moved.Content(), nullptr);
    }
}

TEST_F(EveryKindTest, ClearingFreesEverythingOwned)
{
    for (SampleKind& kind : m_kinds) {
        const long before = blocksAlive();
        {
            std::unique_ptr<Value> copy(kind.sample.clone());
            copy->clear(copy->Type());
            EXPECT_EQ(copy->Type(), 0u) << kind.name;
            EXPECT_EQ(copy->Size(), 0u) << kind.name;
            EXPECT_EQ(copy->Content(), nullptr) << kind.name;
            EXPECT_EQ(blocksAlive(), before + 1) << kind.name; // the value itself
            copy->clear(kind.tag);
            EXPECT_TRUE(*copy == Value()) << kind.name;
        }
        EXPECT_EQ(blocksAlive(), before) << kind.name;
    }
}

TEST_F(EveryKindTest, ClearingWithAnUnknownTagFreesNothing)
{
    for (const ZTypeId unknown : {0u, 1u, 3u, 0x400u, 0x800u, 0x4000u, 0x8000u, 0x40000000u, 0x82u}) {
        Value value(s_cell, 5);
        const auto* content = static_cast<const int*>(value.Content());
        value.clear(unknown);
        EXPECT_EQ(value.Content(), nullptr);
        EXPECT_EQ(value.Type(), 0u);
        EXPECT_EQ(value.Size(), 0u);
        EXPECT_EQ(*content, 5);
        delete content;
    }
}

TEST_F(EveryKindTest, FailedAllocationsLeakNothingAndLeaveTheTargetUnchanged)
{
    for (const SampleKind& kind : m_kinds) {
        const long needed = failEachAllocation([&] { Value{kind.sample}; });
        EXPECT_EQ(needed > 0, kind.tag != 0) << kind.name;
        EXPECT_EQ(failEachAllocation([&] { delete kind.sample.clone(); }), needed + 1) << kind.name;
        Value target(kind.other);
        for (long nth = 1; nth <= needed; ++nth) {
            const AllocationFault fault(nth);
            EXPECT_THROW(target = kind.sample, std::bad_alloc) << kind.name;
            EXPECT_EQ(target.Type(), kind.other.Type()) << kind.name;
            EXPECT_EQ(target.Size(), kind.other.Size()) << kind.name;
        }
    }
}

TEST(PlainValueTest, AllocatesOnlyItsCell)
{
    const auto countOf = [](const auto& cell) {
        const long before = allocationsMade();
        const Value value(s_cell, cell);
        return allocationsMade() - before;
    };
    EXPECT_EQ(countOf(true), 1);
    EXPECT_EQ(countOf(5), 1);
    EXPECT_EQ(countOf(5ULL), 1);
    EXPECT_EQ(countOf(2.5), 1);
    EXPECT_EQ(countOf('c'), 1);
    EXPECT_EQ(countOf(static_cast<const char*>("text")), 1);
    EXPECT_EQ(countOf(static_cast<const wchar_t*>(L"text")), 1);
    EXPECT_EQ(countOf(ZTime(false)), 1);
    EXPECT_EQ(countOf(ZGUID()), 1);
    EXPECT_EQ(countOf(ZGStr<char>()), 1);
    EXPECT_EQ(countOf(ZGStr<char>("text")), 2); // and its characters

    ZGStr<char> text("text");
    const char* characters = text;
    const Value value(s_cell, std::move(text)); // a moved string keeps its buffer
    EXPECT_EQ(static_cast<const char*>(contentOf<ZGStr<char>>(value)), characters);
}

TEST(PlainValueTest, ToCStringAllocatesOnlyItsResult)
{
    for (const SampleKind& kind : everyKind()) {
        const long before = allocationsMade();
        const ZGStr<char> text = kind.sample.toCString();
        EXPECT_EQ(allocationsMade() - before, 1) << kind.name;
        ZMStr<char> line(200);
        const long beforeAppending = allocationsMade();
        kind.sample.appendTo(line);
        EXPECT_EQ(allocationsMade(), beforeAppending) << kind.name;
    }
}

/// Adopts whatever a derived class may store.
struct AdoptingValue : Value {
    AdoptingValue(ZTypeId type, unsigned int size, void* content)
        : Value(type, size, content)
    {
    }
};

TEST(PlainValueTest, CopiesOfContentsThatAreMissingOrOfUnknownKindsHaveNone)
{
    int outside = 5;
    for (const AdoptingValue& value :
        {AdoptingValue(ZTypeId_int, 4, nullptr), AdoptingValue(0x82, 4, &outside)}) {
        const Value copy(value);
        EXPECT_EQ(copy.Type(), value.Type());
        EXPECT_EQ(copy.Size(), 4u);
        EXPECT_EQ(copy.Content(), nullptr);
    }
}

// Values made in place

template <typename T>
void expectInPlace(T&& source, ZTypeId tag, const char* text)
{
    const Value value(std::in_place, std::forward<T>(source));
    EXPECT_EQ(value.Type(), tag) << text;
    EXPECT_EQ(textOf(value), text);
}

TEST(PlainValueTest, EveryIntegerTypeHasAKind)
{
    expectInPlace(-5, ZTypeId_int, "-5");
    expectInPlace(-5L, ZTypeId_long_long, "-5");
    expectInPlace(-5LL, ZTypeId_long_long, "-5");
    expectInPlace(5u, ZTypeId_unsigned_int, "5");
    expectInPlace(5uL, ZTypeId_unsigned_long_long, "5");
    expectInPlace(5uLL, ZTypeId_unsigned_long_long, "5");
    expectInPlace(sizeof(int), ZTypeId_unsigned_long_long, "4");
    expectInPlace(std::int64_t{-5}, ZTypeId_long_long, "-5");
    expectInPlace(std::uint64_t{5}, ZTypeId_unsigned_long_long, "5");
    expectInPlace(std::int8_t{-5}, ZTypeId_signed_char, "-5");
    expectInPlace(std::uint16_t{5}, ZTypeId_unsigned_short, "5");
}

TEST(PlainValueTest, UnscopedEnumerationsAreInts)
{
    enum Plain { One = 1, Seven = 7 };
    enum class Scoped { One };
    expectInPlace(Seven, ZTypeId_int, "7");
    static_assert(!std::is_constructible_v<Value, std::in_place_t, Scoped>);
}

TEST(PlainValueTest, PointersToCharactersAndArraysAreCStrings)
{
    char characters[] = "text";
    wchar_t wide[] = L"wide";
    expectInPlace(characters, ZTypeId_cstring, "text");
    expectInPlace(wide, ZTypeId_wcstring, "wide");
    expectInPlace(static_cast<char*>(characters), ZTypeId_cstring, "text");
    expectInPlace(static_cast<wchar_t*>(wide), ZTypeId_wcstring, "wide");
    expectInPlace("literal", ZTypeId_cstring, "literal");
    const Value value(s_cell, characters);
    EXPECT_EQ(contentOf<const char*>(value), characters); // by pointer
    static_assert(!std::is_constructible_v<Value, std::in_place_t, int*>);
}

// createType

TEST(CreateTypeTest, CreatesTheInitialValueOfEachKind)
{
    struct Row {
        ZTypeId tag;
        unsigned int size;
        const char* text;
    };
    const Row table[]{
        {2, 1, "0"},
        {4, 1, "0"},
        {8, 1, "0"},
        {16, 2, "0"},
        {32, 2, "0"},
        {64, 4, "0"},
        {128, 4, "0"},
        {256, 8, "0"},
        {512, 8, "0"},
        {4096, 4, "0"},
        {8192, 8, "0"},
        {0x10000, 1, ""},
        {0x20000, 4, ""},
        {0x40000, 8, ""},
        {0x80000, 8, ""},
        {0x100000, 8, ""},
        {0x200000, 8, ""},
        {0x400000, 24, ""},
        {0x2000000, 16, "{00000000-0000-0000-0000-000000000000}"},
        {0x8000000, 16, ""},
        {0x10000000, 8, "0000000000000000"},
    };
    for (const Row& row : table) {
        const std::unique_ptr<Value> value(Value::createType(row.tag));
        EXPECT_EQ(value->Type(), row.tag);
        EXPECT_EQ(value->Size(), row.size) << row.tag;
        ASSERT_NE(value->Content(), nullptr) << row.tag;
        const std::size_t used = row.tag == 0x400000 ? 17 : row.size; // without the padding of a binary
        const std::string zeros(used, '\0');
        EXPECT_EQ(std::memcmp(value->Content(), zeros.data(), used), 0) << row.tag;
        EXPECT_EQ(textOf(*value), row.text) << row.tag;
        EXPECT_EQ(static_cast<const char*>(value->Name()), nullptr) << row.tag;
        const std::unique_ptr<Value> again(Value::createType(row.tag));
        EXPECT_TRUE(*value == *again) << row.tag;
    }
}

TEST(CreateTypeTest, TimeIsTheCurrentTime)
{
    const ZTime before(true);
    const std::unique_ptr<Value> value(Value::createType(0x1000000));
    const ZTime after(true);
    EXPECT_EQ(value->Type(), 0x1000000u);
    EXPECT_EQ(value->Size(), 10u);
    EXPECT_FALSE(contentOf<ZTime>(*value) < before);
    EXPECT_FALSE(contentOf<ZTime>(*value) > after);
}

TEST(CreateTypeTest, OtherTagsYieldNoValue)
{
    for (const ZTypeId tag : {0u, 1u, 3u, 0x400u, 0x800u, 0x4000u, 0x8000u, 0x800000u, 0x4000000u,
             0x20000000u, 0x40000000u, 0x80000000u, 0x80000080u, 0x82u, 0xFFFFFFFFu}) {
        const std::unique_ptr<Value> value(Value::createType(tag));
        EXPECT_EQ(value->Type(), 0u) << tag;
        EXPECT_EQ(value->Size(), 0u) << tag;
        EXPECT_EQ(value->Content(), nullptr) << tag;
    }
}

TEST(CreateTypeTest, FailedAllocationsLeakNothing)
{
    EXPECT_EQ(failEachAllocation([] { delete Value::createType(128); }), 2);
    EXPECT_EQ(failEachAllocation([] { delete Value::createType(0x100000); }), 2);
    EXPECT_EQ(failEachAllocation([] { delete Value::createType(0); }), 1);
}

// Names

TEST(NamedValueTest, EqualityIgnoresTheName)
{
    Value a(s_cell, 1);
    const Value b(s_cell, 1);
    a.Name("a");
    EXPECT_STREQ(a.Name(), "a");
    EXPECT_TRUE(a == b);
    a.Name(ZGStr<char>(""));
    EXPECT_EQ(static_cast<const char*>(a.Name()), nullptr);
}

TEST(NamedValueTest, CopiesOfUnnamedValuesHaveNoName)
{
    const Value value(s_cell, 1);
    const Value copy(value);
    const std::unique_ptr<Value> clone(value.clone());
    EXPECT_EQ(static_cast<const char*>(copy.Name()), nullptr);
    EXPECT_EQ(static_cast<const char*>(clone->Name()), nullptr);
}

TEST(NamedValueTest, FailedRenamingKeepsTheName)
{
    Value value(s_cell, 1);
    value.Name("name");
    const ZGStr<char> other("other");
    const AllocationFault fault(1);
    EXPECT_THROW(value.Name(other), std::bad_alloc);
    EXPECT_STREQ(value.Name(), "name");
}

TEST(NamedValueTest, FailedCopiesOfNamesLeakNothing)
{
    Value value(ZGStr<char>("content"));
    value.Name("name");
    EXPECT_EQ(failEachAllocation([&] { Value{value}; }), 3);
}

} // namespace
} // namespace ZSpace::Testing
