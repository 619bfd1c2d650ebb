// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"
#include "tests/value/Values.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <utility>

namespace ZSpace::Testing {
namespace {

constexpr auto s_cell = std::in_place;

// Strings

TEST(StringValueTest, HoldsACopyOfTheString)
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

TEST(StringValueTest, EmptyStringIsStoredAsNullInEveryCopy)
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

TEST(StringValueTest, CStringsCompareByPointerAndStringsByValue)
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

TEST(StringValueTest, TextEndsAtTheFirstCharacterThatNarrowsToZero)
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
    expectText(Value(s_cell, static_cast<const wchar_t*>(L"\0z")), "");
    expectText(Value(ZGStr<wchar_t>(L"a\x100z")), "a");
    expectText(Value(s_cell, static_cast<const char*>(nullptr)), "");
    expectText(Value(s_cell, static_cast<const wchar_t*>(nullptr)), "");
}

// Numbers

TEST(NumberValueTest, FloatingPointNumbersCompareByValue)
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

TEST(BinaryValueTest, OwnedBytesAreCopiedAndBorrowedOnesShared)
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
    EXPECT_TRUE(owning == shared); // ownership does not matter
    const std::unique_ptr<Value> empty(Value::createType(0x400000));
    EXPECT_TRUE(*empty == Value(s_cell, TZBinary<unsigned char>(bytes, 0, false)));
    EXPECT_FALSE(*empty == shared);
}

TEST(BinaryValueTest, NullBytesPrintNothing)
{
    const Value value(s_cell, TZBinary<unsigned char>(nullptr, 3, false));
    EXPECT_EQ(textOf(value), "");
    EXPECT_EQ(appendedTextOf(value), "");
}

TEST(MemoryValueTest, ComparesByteByByte)
{
    EXPECT_TRUE(Value("a\0b", 3) == Value("a\0b", 3));
    EXPECT_FALSE(Value("a\0b", 3) == Value("a\0c", 3));
    EXPECT_FALSE(Value("a", 1) == Value("b", 1));
    EXPECT_FALSE(Value("ab", 1) == Value("ab", 2));
    EXPECT_TRUE(Value("", 0) == Value(nullptr, 0));
    EXPECT_TRUE(Value(nullptr, 3) == Value("\0\0\0", 3));
    const Value copy(Value(nullptr, 0));
    EXPECT_EQ(copy.Type(), 0x20000000u);
    EXPECT_EQ(copy.Size(), 0u);
}

// References

TEST(ReferenceValueTest, HoldsItsOwnHandle)
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

TEST(ReferenceValueTest, HasNoValueWhileTheObjectIsDestroyed)
{
    struct Observer : ZObject {
        ~Observer() override { *m_sawNoValue = m_value->Type() == 0 && !m_value->Content(); }
        const Value* m_value = nullptr;
        bool* m_sawNoValue = nullptr;
    };
    bool sawNoValue = false;
    auto* observer = new Observer;
    Value value{ZReference<ZObject>(observer)};
    observer->m_value = &value;
    observer->m_sawNoValue = &sawNoValue;
    value.clear(value.Type());
    EXPECT_TRUE(sawNoValue);
}

// Structures

TEST(StructureValueTest, BlockConsistsOfNameCountMembersAndTwoZeroBytes)
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

TEST(StructureValueTest, StructCopyCopiesEachMemberIntoOneBlock)
{
    Value named(ZGStr<char>("member"));
    named.Name("named");
    const auto structure = structureOf("outer", {named, Value(*structureOf("inner", {named}))});
    const StructureOwner copy(structure->StructCopy(), &Structure::release);
    EXPECT_STREQ(copy->Name(), "outer");
    EXPECT_EQ(copy->Count(), 2u);
    EXPECT_STREQ(copy->Member(0).Name(), "named");
    EXPECT_NE(copy->Member(0).Content(), structure->Member(0).Content());
    EXPECT_TRUE(*copy == *structure);
    copy->Member(0) = Value(s_cell, 1);
    EXPECT_FALSE(*copy == *structure);
    EXPECT_EQ(failEachAllocation([&] { Structure::release(structure->StructCopy()); }), 10);
}

TEST(StructureValueTest, EqualityIgnoresNames)
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

TEST(ReleaseContentTest, VisitsAllValuesAndChangesNone)
{
    const Value one(s_cell, 1);
    Value value(*structureOf("s", {one, arrayOf(128, {one, Value(*structureOf("t", {one}))})}));
    const Value before(value);
    Value::ReleaseContentOfValue(value);
    EXPECT_TRUE(value == before);
    Value array = arrayOf(128, {});
    Value::ReleaseContentOfValue(array);
    Value plain(one);
    Value::ReleaseContentOfValue(plain);
    EXPECT_TRUE(plain == one);
    const auto structure = structureOf("s", {one});
    Value::ReleaseContentOfStructure(*structure);
    EXPECT_TRUE(structure->Member(0) == one);
}

} // namespace
} // namespace ZSpace::Testing
