// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZGStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <climits>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename S>
class Parts : public ::testing::Test {
};
TYPED_TEST_SUITE(Parts, AllClasses, TypeNames);

TYPED_TEST(Parts, LeftAndRightReturnAtMostTheWholeString)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcde"));
    EXPECT_EQ(str(text.left(2)), "ab");
    EXPECT_EQ(str(text.left(5)), "abcde");
    EXPECT_EQ(str(text.left(6)), "abcde");
    EXPECT_EQ(str(text.left(LONG_MAX)), "abcde");
    EXPECT_EQ(str(text.left(0)), "");
    EXPECT_EQ(str(text.left(-1)), "");
    EXPECT_EQ(str(text.right(2)), "de");
    EXPECT_EQ(str(text.right(6)), "abcde");
    EXPECT_EQ(str(text.right(0)), "");
    EXPECT_EQ(str(text.right(-1)), "");
    EXPECT_EQ(str(TypeParam().left(2)) + str(TypeParam().right(2)), "");
}

TYPED_TEST(Parts, ASubStringIsClampedAtBothEnds)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcde"));
    EXPECT_EQ(str(text.subString(1, 3)), "bcd");
    EXPECT_EQ(str(text.subString(0, 5)), "abcde");
    EXPECT_EQ(str(text.subString(3, 9)), "de");
    EXPECT_EQ(str(text.subString(3, LONG_MAX)), "de");
    EXPECT_EQ(str(text.subString(5, 1)), "");
    EXPECT_EQ(str(text.subString(9, 1)), "");
    EXPECT_EQ(str(text.subString(2, 0)), "");
    EXPECT_EQ(str(text.subString(2, -1)), "cde");
    EXPECT_EQ(str(text.subString(2)), "cde");
    EXPECT_EQ(str(text.subString(-2, 1)), "d");
    EXPECT_EQ(str(text.subString(-2, -1)), "de");
    EXPECT_EQ(str(text.subString(-9, 2)), "ab");
    EXPECT_EQ(str(text.subString(LONG_MIN, LONG_MIN)), "abcde");
    EXPECT_EQ(str(TypeParam().subString(0, 3)), "");
}

TYPED_TEST(Parts, TheCallOperatorReturnsASubString)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcde"));
    EXPECT_EQ(str(text(1, 3)), "bcd");
    EXPECT_EQ(str(text(-2, -1)), "de");
    EXPECT_EQ(str(text(9, 1)), "");
}

TYPED_TEST(Parts, ASubStringViewsTheCharactersOfTheString)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcde"));
    const T* characters = text;
    EXPECT_EQ(static_cast<const T*>(text.left(2)), characters);
    EXPECT_EQ(static_cast<const T*>(text.right(2)), characters + 3);
    EXPECT_EQ(static_cast<const T*>(text.subString(1, 2)), characters + 1);
    EXPECT_EQ(static_cast<const T*>(text(4, 1)), characters + 4);
}

TYPED_TEST(Parts, NothingHereThrows)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcde"));
    static_assert(noexcept(text.left(1))&& noexcept(text.right(1)));
    static_assert(noexcept(text.subString(1, 1))&& noexcept(text(1, 1)));
}

template <typename T>
class PartsStatics : public ::testing::Test {
};
TYPED_TEST_SUITE(PartsStatics, Widths, TypeNames);

TYPED_TEST(PartsStatics, TheyReturnSubStringsOfBareCharacters)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* text = lit<T>("abcdeX");
    EXPECT_EQ(str(S::left(text, 5, 2)), "ab");
    EXPECT_EQ(str(S::left(text, 5, 9)), "abcde");
    EXPECT_EQ(str(S::right(text, 5, 2)), "de");
    EXPECT_EQ(str(S::subString(text, 5, 1, 2)), "bc");
    EXPECT_EQ(str(S::subString(text, 5, -2, -1)), "de");
    EXPECT_EQ(str(S::left(nullptr, -1, 2)) + str(S::right(nullptr, -1, 2)), "");
    EXPECT_EQ(str(S::subString(nullptr, -1, 0, 2)), "");
}

template <typename S>
class Removing : public ::testing::Test {
};
TYPED_TEST_SUITE(Removing, OwningClasses, TypeNames);

TYPED_TEST(Removing, TheSubStringIsRemovedAndTheRestMovesUp)
{
    using T = typename CharOf<TypeParam>::type;
    struct Row {
        long start, count, removed;
        const char* rest;
    };
    const Row rows[]{{1, 3, 3, "ae"}, {0, 2, 2, "cde"}, {3, 9, 2, "abc"}, {2, -1, 3, "ab"},
        {-2, 1, 1, "abce"}, {-9, 2, 2, "cde"}, {5, 1, 0, "abcde"}, {9, 9, 0, "abcde"}, {2, 0, 0, "abcde"},
        {0, -1, 5, ""}};
    for (const Row& row : rows) {
        TypeParam text(lit<T>("abcde"));
        EXPECT_EQ(text.remove(row.start, row.count), row.removed);
        EXPECT_EQ(str(text), row.rest);
        EXPECT_EQ(static_cast<const T*>(text)[5 - row.removed], T(0));
    }
    TypeParam text(lit<T>("abcde"));
    EXPECT_EQ(text.remove(2), 3);
    EXPECT_EQ(str(text), "ab");
    EXPECT_EQ(TypeParam().remove(0, 1), 0);
}

TYPED_TEST(Removing, TheStaticTwinWorksOnBareCharacters)
{
    using T = typename CharOf<TypeParam>::type;
    std::basic_string<T> text = wider<T>("abcde");
    EXPECT_EQ(ZGStr<T>::removeSubString(text.data(), 5, 1, 2), 2);
    EXPECT_EQ(str(static_cast<const T*>(text.data())), "ade");
    EXPECT_EQ(ZGStr<T>::removeSubString(nullptr, 0, 1, 2), 0);
}

} // namespace
