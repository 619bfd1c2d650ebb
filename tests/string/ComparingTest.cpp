// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/ZStrToken.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <compare>
#include <string>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename S>
class Comparing : public ::testing::Test {
};
TYPED_TEST_SUITE(Comparing, AllClasses, TypeNames);

TYPED_TEST(Comparing, APrefixDiffersByTheLengths)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam ab(lit<T>("ab"));
    EXPECT_EQ(ab.compare(lit<T>("abcd")), -2);
    EXPECT_EQ(ab.compare(lit<T>("ab")), 0);
    EXPECT_EQ(ab.compare(lit<T>("")), 2);
    EXPECT_EQ(ab.compare(ZStrToken<T>()), 2);
    EXPECT_EQ(TypeParam(lit<T>("abcdefg")).compare(ab), 5);
    EXPECT_EQ(TypeParam().compare(lit<T>("abc")), -3);
    EXPECT_EQ(TypeParam().compare(TypeParam()), 0);
}

TYPED_TEST(Comparing, TheFirstDifferenceDecides)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz"));
    EXPECT_EQ(text.compare(lit<T>("abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyZ")), 1);
    EXPECT_EQ(text.compare(lit<T>("abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxz")), -1);
    EXPECT_EQ(text.compare(lit<T>("b")), -1);
    EXPECT_EQ(text.compare(lit<T>("Z and more, though this one is longer than the other text is")), 1);
}

TYPED_TEST(Comparing, TheFirstDifferenceIsFoundAtEveryPosition)
{
    using T = typename CharOf<TypeParam>::type;
    for (std::size_t at = 0; at < 600; at += 7) {
        std::string text(600, 'm');
        const TypeParam plain(lit<T>(text));
        text[at] = 'z';
        text.back() = 'a'; // a difference in the other direction
        EXPECT_EQ(plain.compare(lit<T>(text)), -1) << at;
        EXPECT_EQ(plain.compareIgnoreCase(lit<T>(text)), -1) << at;
        EXPECT_EQ(plain.compare(lit<T>(std::string(at, 'm'))), 600 - static_cast<long>(at));
    }
}

TYPED_TEST(Comparing, CharactersAreOrderedAsSignedNumbers)
{
    using T = typename CharOf<TypeParam>::type;
    const T negative[]{static_cast<T>(-128), 0};
    const TypeParam letter(lit<T>("a"));
    EXPECT_EQ(letter.compare(negative), 1);
    EXPECT_EQ(letter.compareIgnoreCase(negative), 1);
    EXPECT_EQ(TypeParam(negative).compare(letter), -1);
    EXPECT_TRUE(letter > negative);
    EXPECT_TRUE(negative < letter);
}

TEST(ComparingNarrow, BytesFrom0x80SortBeforeLetters)
{
    EXPECT_EQ(ZGStr<char>("a").compare("\x80"), 1);
    EXPECT_EQ(ZGStr<char>("\x80").compare("A"), -1);
    EXPECT_EQ(ZGStr<char>("\x80").compare("\xFF"), -1);
}

TEST(ComparingWide, UnitsFrom0x80SortAfterLetters)
{
    EXPECT_EQ(ZGStr<wchar_t>(L"a").compare(L"\u0080"), -1);
    EXPECT_EQ(ZGStr<wchar_t>(L"\u20AC").compare(L"\u00E9"), 1);
}

TYPED_TEST(Comparing, OnlyAToZAreFolded)
{
    using T = typename CharOf<TypeParam>::type;
    EXPECT_EQ(TypeParam(lit<T>("AbYZ")).compareIgnoreCase(lit<T>("aByz")), 0);
    EXPECT_EQ(TypeParam(lit<T>("ABC")).compareIgnoreCase(lit<T>("abcd")), -1);
    EXPECT_EQ(TypeParam(lit<T>("abd")).compareIgnoreCase(lit<T>("ABC")), 1);
    EXPECT_EQ(TypeParam(lit<T>("ABC")).compareIgnoreCase(lit<T>("abd")), -1);
    EXPECT_EQ(TypeParam(lit<T>("[")).compareIgnoreCase(lit<T>("{")), -1);
    EXPECT_EQ(TypeParam(lit<T>("@")).compareIgnoreCase(lit<T>("`")), -1);
    EXPECT_EQ(TypeParam(lit<T>("\xC9")).compareIgnoreCase(lit<T>("\xE9")), -1);
    EXPECT_EQ(TypeParam(lit<T>("_")).compareIgnoreCase(lit<T>("A")), -1); // "_" sorts between "Z" and "a"
}

TYPED_TEST(Comparing, StandardStringsAreOrderedToo)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abc"));
    EXPECT_EQ(text <=> wider<T>("ab"), std::weak_ordering::greater);
    EXPECT_EQ(text <=> wider<T>("abc"), std::weak_ordering::equivalent);
    EXPECT_EQ(text <=> wider<T>("abcd"), std::weak_ordering::less);
}

TYPED_TEST(Comparing, LikeMeansTheSameTextAndNoPattern)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abc"));
    EXPECT_TRUE(text.isLike(lit<T>("abc")));
    EXPECT_FALSE(text.isLike(lit<T>("ABC")));
    EXPECT_FALSE(text.isLike(lit<T>("ab")));
    EXPECT_FALSE(text.isLike(lit<T>("abcd")));
    EXPECT_FALSE(text.isLike(lit<T>("a*")));
    EXPECT_FALSE(text.isLike(lit<T>("a?c")));
    EXPECT_TRUE(TypeParam(lit<T>("a")).isLike(lit<T>("a")));
    EXPECT_FALSE(TypeParam(lit<T>("a")).isLike(lit<T>("b")));
    EXPECT_TRUE(TypeParam().isLike(lit<T>("")));
    EXPECT_TRUE(TypeParam().isLike(ZStrToken<T>(lit<T>("abc"), -1)));
}

TYPED_TEST(Comparing, EmptyTextsOfEveryKindAreEqual)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam none;
    const TypeParam empty(lit<T>(""));
    EXPECT_TRUE(none == empty && empty == none);
    EXPECT_TRUE(none == lit<T>("") && empty == lit<T>(""));
    EXPECT_TRUE(none == static_cast<const T*>(nullptr) && empty == static_cast<const T*>(nullptr));
    EXPECT_TRUE(none == ZGStr<T>() && none == ZMStr<T>() && none == ZStrToken<T>());
    EXPECT_TRUE(none == ZGStr<T>(lit<T>("")) && none == ZMStr<T>(40) && none == ZStrToken<T>(lit<T>("a"), 0));
    EXPECT_FALSE(none == lit<T>("a") || none == ZGStr<T>(lit<T>("a")) || none == ZMStr<T>(lit<T>("a")));
    EXPECT_FALSE(none < empty || none > empty);
    EXPECT_TRUE(none < lit<T>("a"));
}

TYPED_TEST(Comparing, ATokenIsComparedToItsEndAndNoFurther)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abc"));
    const ZStrToken<T> view(lit<T>("abcdef"), 3);
    EXPECT_TRUE(text == view && view == text);
    EXPECT_EQ(text.compare(view), 0);
    EXPECT_EQ(text.compare(ZStrToken<T>(lit<T>("abcdef"), 5)), -2);
    EXPECT_EQ(text.compareIgnoreCase(ZStrToken<T>(lit<T>("ABCDEF"), 2)), 1);
}

template <typename T>
class ComparingStatics : public ::testing::Test {
};
TYPED_TEST_SUITE(ComparingStatics, Widths, TypeNames);

TYPED_TEST(ComparingStatics, WithLengthsTheyReturnTheDifference)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(S::compare(lit<T>("abcd"), 4, lit<T>("ab"), 2), 2);
    EXPECT_EQ(S::compare(lit<T>("abcd"), 2, lit<T>("abxy"), 2), 0);
    EXPECT_EQ(S::compare(lit<T>("abcd"), 3, lit<T>("abxy"), 4), -1);
    EXPECT_EQ(S::compare(nullptr, 0, lit<T>("ab"), 2), -2);
    EXPECT_EQ(S::compare(nullptr, 0, nullptr, 0), 0);
    EXPECT_EQ(S::compareIgnoreCase(lit<T>("ABcd"), 4, lit<T>("abCD"), 4), 0);
    EXPECT_EQ(S::compareIgnoreCase(lit<T>("AB"), 2, lit<T>("abCD"), 4), -2);
    EXPECT_TRUE(S::isLike(lit<T>("abc"), 2, lit<T>("abd"), 2));
    EXPECT_FALSE(S::isLike(lit<T>("abc"), 3, lit<T>("abd"), 3));
    EXPECT_TRUE(S::isLike(lit<T>("abc"), 3, lit<T>("abc")));
    EXPECT_FALSE(S::isLike(lit<T>("abc"), 3, lit<T>("ab")));
}

TYPED_TEST(ComparingStatics, WithoutLengthsTheyReturnTheSign)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(S::compare(lit<T>("ab"), lit<T>("abcd")), -1);
    EXPECT_EQ(S::compare(lit<T>("abcd"), lit<T>("ab")), 1);
    EXPECT_EQ(S::compare(lit<T>("abcd"), lit<T>("abcd")), 0);
    EXPECT_EQ(S::compare(lit<T>("b"), lit<T>("abcd")), 1);
    EXPECT_EQ(S::compare(nullptr, lit<T>("")), 0);
    EXPECT_EQ(S::compare(lit<T>(""), nullptr), 0);
    EXPECT_EQ(S::compare(static_cast<const T*>(nullptr), nullptr), 0);
    EXPECT_EQ(S::compare(nullptr, lit<T>("abc")), -1);
    EXPECT_EQ(S::compare(lit<T>("abc"), nullptr), 1);
    EXPECT_EQ(S::compareIgnoreCase(lit<T>("AB"), lit<T>("abcd")), -1);
    EXPECT_EQ(S::compareIgnoreCase(lit<T>("ABCD"), lit<T>("abcd")), 0);
    EXPECT_EQ(S::compareIgnoreCase(nullptr, lit<T>("")), 0);
}

TYPED_TEST(ComparingStatics, ARangeComparesTheFirstCharactersOnly)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(S::compareRange(lit<T>("abcd"), lit<T>("abxy"), 2), 0);
    EXPECT_EQ(S::compareRange(lit<T>("abcd"), lit<T>("abxy"), 3), -1);
    EXPECT_EQ(S::compareRange(lit<T>("ab"), lit<T>("abxy"), 2), 0);
    EXPECT_EQ(S::compareRange(lit<T>("ab"), lit<T>("abxy"), 9), -1);
    EXPECT_EQ(S::compareRange(lit<T>("ab"), lit<T>("xy"), 0), 0);
    EXPECT_EQ(S::compareRange(nullptr, lit<T>("xy"), 2), -1);
    EXPECT_EQ(S::compareRangeIgnoreCase(lit<T>("ABcd"), lit<T>("abxy"), 2), 0);
    EXPECT_EQ(S::compareRangeIgnoreCase(lit<T>("ABXd"), lit<T>("abcy"), 3), 1);
}

TYPED_TEST(ComparingStatics, WhatPrecedesTheTextsDoesNotCount)
{
    using T = TypeParam;
    constexpr long n = 600;
    const std::basic_string<T> plain(2 * n, T('m'));
    for (long at = 0; at < n; at += 5) {
        std::basic_string<T> other(plain);
        other[static_cast<std::size_t>(n + at)] = T('z');
        ASSERT_EQ(ZGStr<T>::compare(plain.data() + n, n, other.data() + n, n), -1) << at;
        ASSERT_EQ(ZGStr<T>::compare(other.data() + n, n, plain.data() + n, n), 1) << at;
    }
}

template <typename T>
class TokenEquality : public ::testing::Test {
};
TYPED_TEST_SUITE(TokenEquality, Widths, TypeNames);

TYPED_TEST(TokenEquality, ViewsWithTheSamePointerAreEqualWhateverTheirLengths)
{
    using T = TypeParam;
    const T* text = lit<T>("abcdef");
    const ZStrToken<T> three(text, 3);
    const ZStrToken<T> five(text, 5);
    EXPECT_TRUE(three == five);
    EXPECT_FALSE(three != five);
    EXPECT_EQ(three.compare(five), -2);
    EXPECT_FALSE(three.isLike(five));
    EXPECT_TRUE(three == text);
    EXPECT_TRUE(three < five);
}

TYPED_TEST(TokenEquality, StringsAreComparedByTheirPointersToo)
{
    using T = TypeParam;
    const ZGStr<T> owned(lit<T>("abcdef"));
    const ZMStr<T> built(lit<T>("abcdef"));
    EXPECT_TRUE(owned.left(3) == owned);
    EXPECT_TRUE(built.left(3) == built);
    EXPECT_FALSE(owned == owned.left(3)); // a string compares the lengths
    EXPECT_FALSE(owned.left(3) == built);
}

TYPED_TEST(TokenEquality, ComparingWithAPointerAndALengthIsLikeComparingWithAToken)
{
    using T = TypeParam;
    const ZStrToken<T> view(lit<T>("abcdef"), 3);
    EXPECT_EQ(view.compare(lit<T>("abX"), 2), 1);
    EXPECT_EQ(view.compare(lit<T>("abc"), 3), 0);
    EXPECT_EQ(view.compare(nullptr, 0), 3);
    EXPECT_EQ(view.compare(lit<T>("abc"), -2), 5);
    EXPECT_EQ(view.compareIgnoreCase(lit<T>("ABC"), 3), 0);
    EXPECT_EQ(view.compareIgnoreCase(lit<T>("ABCDE"), 5), -2);
}

} // namespace
