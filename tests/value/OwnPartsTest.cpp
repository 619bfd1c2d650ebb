// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Every mutating operation with the object itself, or a part of it, as the argument. AddressSanitizer reports
// a part that is read after it was freed.

#include "ZSpace/core/ZException.h"
#include "tests/value/Values.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace ZSpace::Testing {
namespace {

constexpr auto s_cell = std::in_place;

/// Hides from the compiler that two references name one object.
template <typename T>
T& same(T& object)
{
    return object;
}

// TZBinary

template <typename T>
class BinaryOwnPartsTest : public testing::Test {
protected:
    static TZBinary<T> binaryOf(std::vector<int> numbers)
    {
        auto* data = new T[numbers.size()];
        for (std::size_t i = 0; i < numbers.size(); ++i)
            data[i] = static_cast<T>(numbers[i]);
        return TZBinary<T>(data, static_cast<long long>(numbers.size()), true);
    }

    static std::vector<int> numbersOf(const TZBinary<T>& binary)
    {
        return {binary.Data(), binary.Data() + binary.Length()};
    }

    TZBinary<T> m_binary = binaryOf({1, 2, 3, 4, 5});
    const std::vector<int> m_all{1, 2, 3, 4, 5};
};

using ElementTypes = testing::Types<unsigned char, short, long long>;
TYPED_TEST_SUITE(BinaryOwnPartsTest, ElementTypes);

TYPED_TEST(BinaryOwnPartsTest, AssigningAndMovingTheWholeToItselfHasNoEffect)
{
    this->m_binary = same(this->m_binary);
    EXPECT_EQ(this->numbersOf(this->m_binary), this->m_all);
    this->m_binary = std::move(same(this->m_binary));
    EXPECT_EQ(this->numbersOf(this->m_binary), this->m_all);
    EXPECT_TRUE(this->m_binary.Owns());
}

TYPED_TEST(BinaryOwnPartsTest, AssigningABorrowedPartKeepsThatPart)
{
    using Binary = TZBinary<TypeParam>;
    const Binary middle(this->m_binary.Data() + 1, 3, false);
    this->m_binary = middle;
    EXPECT_EQ(this->numbersOf(this->m_binary), (std::vector<int>{2, 3, 4}));
    EXPECT_TRUE(this->m_binary.Owns());
    this->m_binary = Binary(this->m_binary.Data() + 2, 1, false); // a move
    EXPECT_EQ(this->numbersOf(this->m_binary), (std::vector<int>{4}));
    EXPECT_TRUE(this->m_binary.Owns());
    this->m_binary = Binary(this->m_binary.Data(), 100, false); // longer than what is left
    EXPECT_EQ(this->numbersOf(this->m_binary), (std::vector<int>{4}));
}

TYPED_TEST(BinaryOwnPartsTest, AssigningTheEmptyPartAtTheEndBorrowsNothing)
{
    using Binary = TZBinary<TypeParam>;
    this->m_binary = Binary(this->m_binary.Data() + 5, 0, false);
    EXPECT_EQ(this->m_binary.Length(), 0);
    EXPECT_FALSE(this->m_binary.Owns());
}

TYPED_TEST(BinaryOwnPartsTest, BorrowersOfTheSameElementsCanBeAssignedToEachOther)
{
    using Binary = TZBinary<TypeParam>;
    Binary whole(this->m_binary.Data(), 5, false);
    whole = Binary(whole.Data() + 1, 2, false);
    EXPECT_EQ(this->numbersOf(whole), (std::vector<int>{2, 3}));
    EXPECT_FALSE(whole.Owns());
    EXPECT_EQ(this->numbersOf(this->m_binary), this->m_all);
}

// TZValueBase

TEST(ValueOwnPartsTest, AssigningAndMovingAValueToItselfHasNoEffect)
{
    for (SampleKind& kind : everyKind()) {
        kind.sample.Name("name");
        const void* content = kind.sample.Content();
        kind.sample = same(kind.sample);
        kind.sample = std::move(same(kind.sample));
        TZType<ZTypeId>& bare = kind.sample;
        bare = same(bare);
        bare = std::move(same(bare));
        EXPECT_EQ(kind.sample.Content(), content) << kind.name;
        EXPECT_EQ(kind.sample.Type(), kind.tag) << kind.name;
        EXPECT_EQ(textOf(kind.sample), kind.text) << kind.name;
        EXPECT_STREQ(kind.sample.Name(), "name");
    }
}

TEST(ValueOwnPartsTest, MembersAndItemsReplaceTheValueThatOwnsThem)
{
    const Value inner = arrayOf(ZTypeId_string, {Value(ZGStr<char>("inner"))});
    const auto memberOf = [](Value& value) -> Value& {
        return const_cast<Structure*>(static_cast<const Structure*>(value.Content()))->Member(0);
    };
    Value value(*structureOf("outer", {inner}));
    value = memberOf(value);
    EXPECT_TRUE(value == inner);
    value = Value(*structureOf("outer", {inner}));
    value = std::move(memberOf(value));
    EXPECT_TRUE(value == inner);
    value = *static_cast<Value* const*>(value.Content())[0];
    EXPECT_EQ(textOf(value), "inner");
    value = inner;
    value = std::move(*static_cast<Value* const*>(value.Content())[0]);
    EXPECT_EQ(textOf(value), "inner");
}

TEST(ValueOwnPartsTest, NamesAndContentsBecomeNamesAndContents)
{
    Value value(ZGStr<char>("content"));
    value.Name("name");
    value.Name(value.Name());
    EXPECT_STREQ(value.Name(), "name");
    value.Name(contentOf<ZGStr<char>>(value));
    EXPECT_STREQ(value.Name(), "content");
    value = Value(value.Name());
    EXPECT_EQ(textOf(value), "content");
    value = Value(contentOf<ZGStr<char>>(value));
    EXPECT_EQ(textOf(value), "content");
    value = Value(s_cell, contentOf<ZGStr<char>>(value));
    EXPECT_EQ(textOf(value), "content");
    Value memory("abcdef", 6);
    memory = Value(static_cast<const char*>(memory.Content()) + 2, 3);
    EXPECT_TRUE(memory == Value("cde", 3));
}

TEST(ValueOwnPartsTest, StructuresAreCreatedFromTheirOwnMembers)
{
    auto structure = structureOf("first", {Value(s_cell, 1), Value(ZGStr<char>("two"))});
    structure.reset(Structure::create(structure->Name(), &structure->Member(1), 1));
    EXPECT_STREQ(structure->Name(), "first");
    EXPECT_EQ(textOf(structure->Member(0)), "two");
    Value value(*structure);
    value = Value(*static_cast<const Structure*>(value.Content()));
    EXPECT_TRUE(value == Value(*structure));
}

// ZValueArrayBase

class ArrayOwnPartsTest : public testing::Test {
protected:
    static std::string textsOf(const ZValueArrayBase& array)
    {
        std::string texts;
        for (unsigned int i = 0; i < array.ArrayItemCount(); ++i)
            texts += textOf(array.ArrayItem(i)) + ' ';
        return texts;
    }

    ArrayOwnPartsTest()
    {
        for (const char* text : {"a", "b", "c"})
            m_array.ArrayAdd(Value(ZGStr<char>(text)));
    }

    ZValueArrayBase m_array{ZTypeId_string};
};

TEST_F(ArrayOwnPartsTest, AddsCopiesOfItsItemsAndOfItself)
{
    m_array.ArrayAdd(m_array.ArrayItem(0));
    EXPECT_EQ(textsOf(m_array), "a b c a ");
    m_array.ArrayAdd(static_cast<const Value&>(m_array));
    ASSERT_EQ(m_array.ArrayItemCount(), 5u);
    EXPECT_EQ(textsOf(dynamic_cast<const ZValueArrayBase&>(m_array.ArrayItem(4))), "a b c a ");
}

TEST_F(ArrayOwnPartsTest, AddsACopyOfAPointerThatItAlreadyOwns)
{
    m_array.ArrayAdd(&m_array.ArrayItem(2));
    EXPECT_EQ(textsOf(m_array), "a b c c ");
    EXPECT_NE(&m_array.ArrayItem(3), &m_array.ArrayItem(2));
    m_array.ArrayAdd(static_cast<Value*>(&m_array));
    EXPECT_EQ(m_array.ArrayItemCount(), 5u);
}

TEST_F(ArrayOwnPartsTest, ReplacesItemsByItemsAndByItself)
{
    m_array.ArrayItem(0, m_array.ArrayItem(0));
    m_array.ArrayItem(1, m_array.ArrayItem(2));
    EXPECT_EQ(textsOf(m_array), "a c c ");
    m_array.ArrayItem(2, m_array);
    EXPECT_EQ(textsOf(dynamic_cast<const ZValueArrayBase&>(m_array.ArrayItem(2))), "a c c ");
    const auto& nested = dynamic_cast<const ZValueArrayBase&>(m_array.ArrayItem(2));
    m_array.ArrayItem(2, nested.ArrayItem(1)); // an item of the item that is replaced
    EXPECT_EQ(textsOf(m_array), "a c c ");
    m_array.ArrayItem(0) = m_array.ArrayItem(1);
    m_array.ArrayItem(0) = m_array.ArrayItem(0);
    EXPECT_EQ(textsOf(m_array), "c c c ");
}

TEST_F(ArrayOwnPartsTest, IsAssignedItselfAndItsItems)
{
    m_array = same(m_array);
    m_array = std::move(same(m_array));
    EXPECT_EQ(textsOf(m_array), "a b c ");
    ZValueArrayBase outer(m_array.Type());
    outer.ArrayAdd(m_array);
    outer = dynamic_cast<const ZValueArrayBase&>(outer.ArrayItem(0));
    EXPECT_EQ(textsOf(outer), "a b c ");
    outer.ArrayAdd(m_array);
    outer = std::move(dynamic_cast<ZValueArrayBase&>(outer.ArrayItem(3)));
    EXPECT_EQ(textsOf(outer), "a b c ");
    Value& base = outer;
    base = outer.ArrayItem(1);
    EXPECT_EQ(textOf(outer), "b");
}

// ZBITFIELD

class BitFieldOwnPartsTest : public testing::Test {
protected:
    static std::string textOf(const ZBITFIELD& field) { return static_cast<const char*>(field.toCString()); }

    static const unsigned char* bytesOf(const ZBITFIELD& field)
    {
        return *reinterpret_cast<const unsigned char* const*>(&field);
    }

    BitFieldOwnPartsTest()
    {
        m_field.clear();
        for (const int i : {0, 1, 3, 6, 9})
            m_field.set(i, true);
    }

    ZBITFIELD m_field{10}; // 1101001001
};

TEST_F(BitFieldOwnPartsTest, AssigningAndMovingAFieldToItselfHasNoEffect)
{
    m_field = same(m_field);
    m_field = std::move(same(m_field));
    EXPECT_EQ(textOf(m_field), "1101001001");
}

TEST_F(BitFieldOwnPartsTest, IsAssignedItsOwnSlicesAndBytes)
{
    m_field = ZBITFIELD(m_field, 1, 8);
    EXPECT_EQ(textOf(m_field), "10100100");
    m_field = ZBITFIELD(bytesOf(m_field), 5);
    EXPECT_EQ(textOf(m_field), "10100");
}

TEST_F(BitFieldOwnPartsTest, OperatorsTakeTheFieldItself)
{
    EXPECT_EQ(textOf(m_field | m_field), "1101001001");
    EXPECT_EQ(textOf(m_field & m_field), "1101001001");
    m_field |= m_field;
    m_field &= m_field;
    EXPECT_EQ(textOf(m_field), "1101001001");
    m_field += m_field;
    EXPECT_EQ(textOf(m_field), "11010010011101001001");
}

TEST_F(BitFieldOwnPartsTest, CopiesItsOwnBitsAsTheyWere)
{
    m_field.set(0, same(m_field));
    EXPECT_EQ(textOf(m_field), "1101001001");
    EXPECT_THROW(m_field.set(2, same(m_field)), ZXCOutOfBounds); // does not fit
    EXPECT_EQ(textOf(m_field), "1111010010");
}

TEST_F(BitFieldOwnPartsTest, RunsOfBitsMayOverlapInEitherDirection)
{
    const std::string all = "110100100111001011110001";
    for (int from = 0; from < 16; from += 8) {
        for (int to = 0; to < 16; ++to) {
            ZBITFIELD field(24);
            for (int i = 0; i < 24; ++i)
                field.set(i, all[static_cast<std::size_t>(i)] == '1');
            auto* bytes = const_cast<unsigned char*>(bytesOf(field));
            ZBITFIELD::bit(bytes, to, bytes + from / 8, 8);
            std::string expected = all;
            expected.replace(static_cast<std::size_t>(to), 8, all.substr(static_cast<std::size_t>(from), 8));
            EXPECT_EQ(textOf(field), expected) << from << " to " << to;
        }
    }
}

} // namespace
} // namespace ZSpace::Testing
