// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/TZValue.h"

#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"
#include "tests/support/VirtualSlots.h"
#include "tests/value/Times.h"
#include "tests/value/Values.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

namespace ZSpace {
namespace {

using ZSpace::Testing::AllocationFault;
using ZSpace::Testing::allocationsMade;
using ZSpace::Testing::asWord;
using ZSpace::Testing::blocksAlive;
using ZSpace::Testing::CountedObject;
using ZSpace::Testing::everyKind;
using ZSpace::Testing::failEachAllocation;
using ZSpace::Testing::ownedBytes;
using ZSpace::Testing::SampleKind;
using ZSpace::Testing::structureOf;
using ZSpace::Testing::virtualSlotOf;
using ZSpace::Testing::wordAt;

constexpr auto s_cell = std::in_place;

static_assert(sizeof(TZType<ZTypeId>) == 24 && sizeof(Value) == 32);
static_assert(sizeof(ZTypeId) == 4 && std::is_unsigned_v<ZTypeId>);
static_assert(std::is_base_of_v<TZType<ZTypeId>, Value>);
static_assert(std::has_virtual_destructor_v<TZType<ZTypeId>>);
static_assert(std::is_nothrow_move_constructible_v<Value> && std::is_nothrow_move_assignable_v<Value>);

std::string textOf(const Value& value)
{
    return static_cast<const char*>(value.toCString());
}

std::string appendedTextOf(const Value& value)
{
    ZMStr<char> text("> ");
    value.appendTo(text);
    EXPECT_EQ(text.Length(), static_cast<long>(std::strlen(text)));
    return std::string(text).substr(2);
}

template <typename T>
const T& contentOf(const TZType<ZTypeId>& value)
{
    return *static_cast<const T*>(value.Content());
}

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
    EXPECT_EQ(virtualSlotOf(&TZType<ZTypeId>::clone), 2u);
    EXPECT_EQ(virtualSlotOf(&Value::clone), 2u);
    EXPECT_EQ(virtualSlotOf(&ZValueArrayBase::clone), 2u);
}

TEST(TZValueTest, DefaultIsNoValue)
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

TEST_F(EveryKindTest, EqualsItselfItsCopiesAndNothingElse)
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

TEST_F(EveryKindTest, CopiesInEveryWayWithAContentOfTheirOwn)
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

TEST_F(EveryKindTest, AssigningToItselfChangesNothing)
{
    for (SampleKind& kind : m_kinds) {
        const void* content = kind.sample.Content();
        const Value& self = kind.sample;
        kind.sample = self;
        EXPECT_EQ(kind.sample.Content(), content) << kind.name;
        EXPECT_EQ(textOf(kind.sample), kind.text) << kind.name;
    }
}

TEST_F(EveryKindTest, MovesWithoutACopy)
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
        EXPECT_EQ(moved.Type(), 0u); // NOLINT(bugprone-use-after-move): no value is what is promised
        EXPECT_EQ(moved.Content(), nullptr);
    }
}

TEST_F(EveryKindTest, ClearingFreesAllThatTheValueOwns)
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

TEST_F(EveryKindTest, FailedAllocationsLeaveNothingBehindAndTheTargetAsItWas)
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

TEST(PlainValueTest, TakesOneAllocationForItsCell)
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
    const Value value(s_cell, std::move(text)); // or no characters, where they can be taken
    EXPECT_EQ(static_cast<const char*>(contentOf<ZGStr<char>>(value)), characters);
}

TEST(PlainValueTest, TextIsPrintedWithoutAnAllocationBeyondTheResult)
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

// Making values by their kind

TEST(CreateTypeTest, MakesTheFirstValueOfEachKind)
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
        const std::size_t used = row.tag == 0x400000 ? 17 : row.size; // a binary object ends with padding
        const std::string zeros(used, '\0');
        EXPECT_EQ(std::memcmp(value->Content(), zeros.data(), used), 0) << row.tag;
        EXPECT_EQ(textOf(*value), row.text) << row.tag;
        EXPECT_EQ(static_cast<const char*>(value->Name()), nullptr) << row.tag;
        const std::unique_ptr<Value> again(Value::createType(row.tag));
        EXPECT_TRUE(*value == *again) << row.tag;
    }
}

TEST(CreateTypeTest, TimeIsTheCurrentOne)
{
    const ZTime before(true);
    const std::unique_ptr<Value> value(Value::createType(0x1000000));
    const ZTime after(true);
    EXPECT_EQ(value->Type(), 0x1000000u);
    EXPECT_EQ(value->Size(), 10u);
    EXPECT_FALSE(contentOf<ZTime>(*value) < before);
    EXPECT_FALSE(contentOf<ZTime>(*value) > after);
}

TEST(CreateTypeTest, OtherTagsGiveNoValue)
{
    for (const ZTypeId tag : {0u, 1u, 3u, 0x400u, 0x800u, 0x4000u, 0x8000u, 0x800000u, 0x4000000u,
             0x20000000u, 0x40000000u, 0x80000000u, 0x80000080u, 0x82u, 0xFFFFFFFFu}) {
        const std::unique_ptr<Value> value(Value::createType(tag));
        EXPECT_EQ(value->Type(), 0u) << tag;
        EXPECT_EQ(value->Size(), 0u) << tag;
        EXPECT_EQ(value->Content(), nullptr) << tag;
    }
}

TEST(CreateTypeTest, FailedAllocationsLeaveNothingBehind)
{
    EXPECT_EQ(failEachAllocation([] { delete Value::createType(128); }), 2);
    EXPECT_EQ(failEachAllocation([] { delete Value::createType(0x100000); }), 2);
    EXPECT_EQ(failEachAllocation([] { delete Value::createType(0); }), 1);
}

// Strings

TEST(StringValueTest, HoldsACopyOfTheText)
{
    const ZGStr<char> text("text");
    const Value value(text);
    EXPECT_EQ(value.Type(), 0x100000u);
    EXPECT_EQ(value.Size(), 8u);
    EXPECT_STREQ(contentOf<ZGStr<char>>(value), "text");
    EXPECT_NE(static_cast<const char*>(contentOf<ZGStr<char>>(value)), static_cast<const char*>(text));
    EXPECT_EQ(static_cast<const char*>(value.Name()), nullptr);
    const Value wide(ZGStr<wchar_t>(L"text"));
    EXPECT_EQ(wide.Type(), 0x200000u);
    EXPECT_STREQ(contentOf<ZGStr<wchar_t>>(wide), L"text");
}

TEST(StringValueTest, EmptyTextIsANullStringInEveryCopy)
{
    for (const ZGStr<char>& empty : {ZGStr<char>(), ZGStr<char>("")}) {
        const Value value(empty);
        EXPECT_EQ(value.Type(), 0x100000u);
        EXPECT_EQ(static_cast<const char*>(contentOf<ZGStr<char>>(value)), nullptr);
        EXPECT_STREQ(value.toCString(), "");
        const Value copy(value);
        EXPECT_EQ(static_cast<const char*>(contentOf<ZGStr<char>>(copy)), nullptr);
        EXPECT_TRUE(copy == value);
    }
    const Value wide(ZGStr<wchar_t>(L""));
    EXPECT_EQ(wide.Type(), 0x200000u);
    EXPECT_EQ(static_cast<const wchar_t*>(contentOf<ZGStr<wchar_t>>(wide)), nullptr);
}

TEST(StringValueTest, CStringsCompareAsPointersAndStringsAsTexts)
{
    const char a[] = "same";
    const char b[] = "same";
    const wchar_t c[] = L"same";
    const wchar_t d[] = L"same";
    const auto pointer = [](auto* text) { return Value(s_cell, text); };
    EXPECT_FALSE(pointer(static_cast<const char*>(a)) == pointer(static_cast<const char*>(b)));
    EXPECT_TRUE(pointer(static_cast<const char*>(a)) == pointer(static_cast<const char*>(a)));
    EXPECT_FALSE(pointer(static_cast<const wchar_t*>(c)) == pointer(static_cast<const wchar_t*>(d)));
    EXPECT_TRUE(pointer(static_cast<const wchar_t*>(c)) == pointer(static_cast<const wchar_t*>(c)));
    EXPECT_TRUE(Value(ZGStr<char>(a)) == Value(ZGStr<char>(b)));
    EXPECT_TRUE(Value(ZGStr<wchar_t>(c)) == Value(ZGStr<wchar_t>(d)));
}

TEST(StringValueTest, TextEndsWhereANarrowStringWould)
{
    const auto expectText = [](const Value& value, const char* text) {
        EXPECT_EQ(textOf(value), text);
        EXPECT_EQ(appendedTextOf(value), text);
    };
    expectText(Value(s_cell, '\0'), "");
    expectText(Value(s_cell, L'\0'), "");
    expectText(Value(s_cell, L'\x100'), "");
    expectText(Value(s_cell, L'\x20AC'), "\xAC");
    expectText(Value(s_cell, static_cast<const wchar_t*>(L"a\x20AC\x100z")), "a\xAC");
    expectText(Value(ZGStr<wchar_t>(L"a\x100z")), "a");
    expectText(Value(s_cell, static_cast<const char*>(nullptr)), "");
    expectText(Value(s_cell, static_cast<const wchar_t*>(nullptr)), "");
}

// Numbers

TEST(NumberValueTest, FloatingPointNumbersCompareAsSuch)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(Value(s_cell, nan) == Value(s_cell, nan));
    EXPECT_TRUE(Value(s_cell, 0.0) == Value(s_cell, -0.0));
    EXPECT_TRUE(Value(s_cell, 0.0f) == Value(s_cell, -0.0f));
    EXPECT_FALSE(Value(s_cell, 1.0f) == Value(s_cell, 1.0));
}

TEST(NumberValueTest, ZeroPrintsAsZero)
{
    EXPECT_EQ(textOf(Value(s_cell, 0)), "0");
    EXPECT_EQ(textOf(Value(s_cell, false)), "0");
    EXPECT_EQ(textOf(Value(s_cell, 0.0)), "0");
    EXPECT_EQ(textOf(Value(s_cell, 0.1)), "0.1");
}

// Binaries and memory blocks

TEST(BinaryValueTest, OwnedBytesAreCopiedAndOthersShared)
{
    unsigned char bytes[]{1, 2, 3};
    const Value shared(s_cell, TZBinary<unsigned char>(bytes, 3, false));
    const Value copyOfShared(shared);
    EXPECT_EQ(contentOf<TZBinary<unsigned char>>(copyOfShared).Data(), bytes);
    const Value owning(s_cell, ownedBytes({1, 2, 3}));
    const Value copyOfOwning(owning);
    EXPECT_NE(contentOf<TZBinary<unsigned char>>(copyOfOwning).Data(),
        contentOf<TZBinary<unsigned char>>(owning).Data());
    EXPECT_TRUE(owning == copyOfOwning);
    EXPECT_TRUE(owning == shared); // who owns the bytes does not matter
    const std::unique_ptr<Value> empty(Value::createType(0x400000));
    EXPECT_TRUE(*empty == Value(s_cell, TZBinary<unsigned char>(bytes, 0, false)));
    EXPECT_FALSE(*empty == shared);
}

TEST(MemoryValueTest, ComparesByteByByte)
{
    EXPECT_TRUE(Value("a\0b", 3) == Value("a\0b", 3));
    EXPECT_FALSE(Value("a\0b", 3) == Value("a\0c", 3));
    EXPECT_FALSE(Value("ab", 1) == Value("ab", 2));
    EXPECT_TRUE(Value("", 0) == Value(nullptr, 0));
    const Value copy(Value(nullptr, 0));
    EXPECT_EQ(copy.Type(), 0x20000000u);
    EXPECT_EQ(copy.Size(), 0u);
}

// References

TEST(ReferenceValueTest, HoldsAHandleOfItsOwn)
{
    {
        const ZReference<ZObject> object(new CountedObject);
        const Value value(object);
        EXPECT_EQ(value.Type(), 0x8000000u);
        EXPECT_EQ(value.Size(), 16u);
        EXPECT_EQ(object.RefCount(), 2);
        const TZType<ZTypeId> bare(object);
        EXPECT_EQ(bare.Type(), 0x8000000u);
        EXPECT_EQ(bare.Size(), 16u);
        Value copy(value);
        EXPECT_EQ(object.RefCount(), 4);
        EXPECT_TRUE(copy == value);
        copy.clear(copy.Type());
        EXPECT_EQ(object.RefCount(), 3);
        EXPECT_FALSE(value == Value(ZReference<ZObject>(new CountedObject)));
        EXPECT_EQ(CountedObject::s_alive, 1);
    }
    EXPECT_EQ(CountedObject::s_alive, 0);
    EXPECT_TRUE(Value(ZReference<ZObject>()) == Value(ZReference<ZObject>()));
    EXPECT_EQ(failEachAllocation([] { Value{ZReference<ZObject>()}; }), 1);
    EXPECT_EQ(failEachAllocation([] { TZType<ZTypeId>{ZReference<ZObject>()}; }), 1);
}

TEST(ReferenceValueTest, ClearedWhileTheObjectLooksAtItHasNoValue)
{
    struct Onlooker : ZObject {
        ~Onlooker() override { *m_sawNoValue = m_value->Type() == 0 && !m_value->Content(); }
        const Value* m_value = nullptr;
        bool* m_sawNoValue = nullptr;
    };
    bool sawNoValue = false;
    auto* onlooker = new Onlooker;
    Value value{ZReference<ZObject>(onlooker)};
    onlooker->m_value = &value;
    onlooker->m_sawNoValue = &sawNoValue;
    value.clear(value.Type());
    EXPECT_TRUE(sawNoValue);
}

// Structures

TEST(StructureValueTest, BlockHoldsNameCountMembersAndTwoZeroBytes)
{
    const auto structure = structureOf("point", {Value(s_cell, 1), Value(ZGStr<char>("y"))});
    const auto* bytes = reinterpret_cast<const unsigned char*>(structure.get());
    EXPECT_EQ(wordAt(bytes, 0), asWord(static_cast<const char*>(structure->Name())));
    unsigned int count = 0;
    std::memcpy(&count, bytes + 8, sizeof count);
    EXPECT_EQ(count, 2u);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&structure->Member(0)), bytes + 16);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&structure->Member(1)), bytes + 16 + sizeof(Value));
    EXPECT_EQ(structure->BlockSize(), 2 * sizeof(Value) + 18);
    EXPECT_EQ(bytes[16 + 2 * sizeof(Value)], 0);
    EXPECT_EQ(bytes[16 + 2 * sizeof(Value) + 1], 0);
    EXPECT_STREQ(structure->Name(), "point");
    EXPECT_EQ(structure->Count(), 2u);
}

TEST(StructureValueTest, StructCopyIsOneBlockWithCopiesOfEachMember)
{
    Value named(ZGStr<char>("member"));
    named.Name("named");
    const auto structure = structureOf("outer", {named, Value(*structureOf("inner", {named}))});
    const ZSpace::Testing::StructureOwner copy(structure->StructCopy(), &Structure::release);
    EXPECT_STREQ(copy->Name(), "outer");
    EXPECT_EQ(copy->Count(), 2u);
    EXPECT_STREQ(copy->Member(0).Name(), "named");
    EXPECT_NE(copy->Member(0).Content(), structure->Member(0).Content());
    EXPECT_TRUE(*copy == *structure);
    copy->Member(0) = Value(s_cell, 1);
    EXPECT_FALSE(*copy == *structure);
    EXPECT_EQ(failEachAllocation([&] { Structure::release(structure->StructCopy()); }), 10);
}

TEST(StructureValueTest, EmptyStructuresAreEqualWhateverTheirNames)
{
    const auto a = structureOf("a", {});
    const auto b = structureOf("", {});
    EXPECT_EQ(static_cast<const char*>(b->Name()), nullptr);
    EXPECT_TRUE(*a == *b);
    EXPECT_TRUE(Value(*a) == Value(*b));
    EXPECT_FALSE(Value(*a) == Value(*structureOf("a", {Value()})));
    EXPECT_EQ(Value(*a).Size(), 18u);
    Structure::release(nullptr);
}

TEST(StructureValueTest, ReleasesMembersFromTheLastToTheFirst)
{
    struct Logger : ZObject {
        explicit Logger(std::string& log, char letter)
            : m_log(log)
            , m_letter(letter)
        {
        }
        ~Logger() override { m_log += m_letter; }
        std::string& m_log;
        char m_letter;
    };
    std::string log;
    {
        const Value value(*structureOf("s",
            {Value(ZReference<ZObject>(new Logger(log, 'a'))),
                Value(ZReference<ZObject>(new Logger(log, 'b')))}));
        EXPECT_EQ(log, "");
    }
    EXPECT_EQ(log, "ba");
}

TEST(ReleaseContentTest, WalksEverythingAndChangesNothing)
{
    const Value one(s_cell, 1);
    Value value(
        *structureOf("s", {one, ZSpace::Testing::arrayOf(128, {one, Value(*structureOf("t", {one}))})}));
    const Value before(value);
    Value::ReleaseContentOfValue(value);
    EXPECT_TRUE(value == before);
    Value array = ZSpace::Testing::arrayOf(128, {});
    Value::ReleaseContentOfValue(array);
    Value plain(one);
    Value::ReleaseContentOfValue(plain);
    EXPECT_TRUE(plain == one);
    const auto structure = structureOf("s", {one});
    Value::ReleaseContentOfStructure(*structure);
    EXPECT_TRUE(structure->Member(0) == one);
}

// Names

TEST(NamedValueTest, NameTakesNoPartInEquality)
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

TEST(NamedValueTest, FailedNamesLeaveNothingBehind)
{
    Value value(ZGStr<char>("content"));
    value.Name("name");
    EXPECT_EQ(failEachAllocation([&] { Value{value}; }), 3);
}

} // namespace
} // namespace ZSpace
