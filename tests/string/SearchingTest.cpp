// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "ZSpace/string/ZStrToken.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename S>
class Searching : public ::testing::Test {
};
TYPED_TEST_SUITE(Searching, AllClasses, TypeNames);

TYPED_TEST(Searching, TheFirstCharacterAtOrAfterAPositionIsFound)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcabc"));
    EXPECT_EQ(text.indexOf(T('a')), 0);
    EXPECT_EQ(text.indexOf(T('a'), 0), 0);
    EXPECT_EQ(text.indexOf(T('a'), 1), 3);
    EXPECT_EQ(text.indexOf(T('c'), 5), 5);
    EXPECT_EQ(text.indexOf(T('a'), 4), -1);
    EXPECT_EQ(text.indexOf(T('a'), 6), -1);
    EXPECT_EQ(text.indexOf(T('a'), LONG_MAX), -1);
    EXPECT_EQ(text.indexOf(T('x')), -1);
    EXPECT_EQ(text.indexOf(T(0)), -1);
    EXPECT_EQ(TypeParam().indexOf(T('a')), -1);
}

TYPED_TEST(Searching, ANegativePositionCountsFromTheEnd)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcabc"));
    EXPECT_EQ(text.indexOf(T('a'), -3), 3);
    EXPECT_EQ(text.indexOf(T('a'), -2), -1);
    EXPECT_EQ(text.indexOf(T('a'), -99), 0);
    EXPECT_EQ(text.indexOf(T('a'), LONG_MIN), 0);
    EXPECT_EQ(text.indexOf(view<T>("bc"), -2), 4);
    EXPECT_EQ(text.indexOf(view<T>("bc"), -99), 1);
}

TYPED_TEST(Searching, TheFirstTextAtOrAfterAPositionIsFound)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcabcab"));
    EXPECT_EQ(text.indexOf(lit<T>("abc")), 0);
    EXPECT_EQ(text.indexOf(view<T>("abc"), 1), 3);
    EXPECT_EQ(text.indexOf(view<T>("abc"), 4), -1);
    EXPECT_EQ(text.indexOf(view<T>("ab"), 4), 6);
    EXPECT_EQ(text.indexOf(view<T>("b"), 5), 7);
    EXPECT_EQ(text.indexOf(lit<T>("abcabcab")), 0);
    EXPECT_EQ(text.indexOf(lit<T>("abcabcabc")), -1);
    EXPECT_EQ(text.indexOf(lit<T>("acb")), -1);
    EXPECT_EQ(text.indexOf(view<T>("ab"), 8), -1);
    EXPECT_EQ(text.indexOf(view<T>("ab"), LONG_MAX), -1);
    EXPECT_EQ(text.indexOf(text, 0), 0);
    EXPECT_EQ(TypeParam().indexOf(lit<T>("a")), -1);
}

TYPED_TEST(Searching, AnEmptyTextIsFoundNowhere)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abc"));
    EXPECT_EQ(text.indexOf(lit<T>("")), -1);
    EXPECT_EQ(text.indexOf(ZStrToken<T>()), -1);
    EXPECT_EQ(text.lastIndexOf(lit<T>("")), -1);
    EXPECT_EQ(text.lastIndexOf(ZStrToken<T>(lit<T>("a"), -1)), -1);
    EXPECT_EQ(text.count(lit<T>("")), 0);
    EXPECT_EQ(text.count(ZStrToken<T>()), 0);
    EXPECT_EQ(TypeParam().indexOf(lit<T>("")), -1);
}

TYPED_TEST(Searching, TheLastCharacterAtOrBeforeAPositionIsFound)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcabc"));
    EXPECT_EQ(text.lastIndexOf(T('a')), 3);
    EXPECT_EQ(text.lastIndexOf(T('a'), 3), 3);
    EXPECT_EQ(text.lastIndexOf(T('a'), 2), 0);
    EXPECT_EQ(text.lastIndexOf(T('a'), 0), 0);
    EXPECT_EQ(text.lastIndexOf(T('b'), 0), -1);
    EXPECT_EQ(text.lastIndexOf(T('c'), 99), 5);
    EXPECT_EQ(text.lastIndexOf(T('c'), -1), 5);
    EXPECT_EQ(text.lastIndexOf(T('c'), -2), 2);
    EXPECT_EQ(text.lastIndexOf(T('a'), -6), 0);
    EXPECT_EQ(text.lastIndexOf(T('a'), -7), -1);
    EXPECT_EQ(text.lastIndexOf(T('a'), -99), -1);
    EXPECT_EQ(text.lastIndexOf(T('x')), -1);
    EXPECT_EQ(TypeParam().lastIndexOf(T('a')), -1);
    EXPECT_EQ(TypeParam().lastIndexOf(T('a'), -5), -1);
}

TYPED_TEST(Searching, TheLastTextThatStartsAtOrBeforeAPositionIsFound)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abcabcab"));
    EXPECT_EQ(text.lastIndexOf(lit<T>("abc")), 3);
    EXPECT_EQ(text.lastIndexOf(view<T>("abc"), 3), 3);
    EXPECT_EQ(text.lastIndexOf(view<T>("abc"), 2), 0);
    EXPECT_EQ(text.lastIndexOf(lit<T>("ab")), 6);
    EXPECT_EQ(text.lastIndexOf(view<T>("ab"), 5), 3);
    EXPECT_EQ(text.lastIndexOf(view<T>("ab"), -1), 6);
    EXPECT_EQ(text.lastIndexOf(view<T>("ab"), -3), 3);
    EXPECT_EQ(text.lastIndexOf(view<T>("ab"), -9), -1);
    EXPECT_EQ(text.lastIndexOf(view<T>("b"), 6), 4);
    EXPECT_EQ(text.lastIndexOf(view<T>("bc"), 0), -1);
    EXPECT_EQ(text.lastIndexOf(lit<T>("abcabcabc")), -1);
    EXPECT_EQ(TypeParam().lastIndexOf(lit<T>("a")), -1);
}

TYPED_TEST(Searching, LongTextsAreSearchedToTheEnd)
{
    using T = typename CharOf<TypeParam>::type;
    for (long n = 0; n < 200; ++n) {
        const std::string padding(static_cast<std::size_t>(n), '.');
        const TypeParam ahead(lit<T>(padding + "needle"));
        EXPECT_EQ(ahead.indexOf(lit<T>("needle")), n);
        EXPECT_EQ(ahead.indexOf(T('n')), n);
        EXPECT_EQ(ahead.lastIndexOf(lit<T>("needle")), n);
        EXPECT_EQ(ahead.s_verify(T('.')), n);
        const TypeParam behind(lit<T>("needle" + padding));
        EXPECT_EQ(behind.lastIndexOf(lit<T>("needle")), 0);
        EXPECT_EQ(behind.lastIndexOf(T('n')), 0);
        EXPECT_EQ(behind.indexOf(view<T>("needle"), 1), -1);
    }
}

TYPED_TEST(Searching, EqualFirstAndLastCharactersAloneAreNoMatch)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("axxb ayyb azzb axxb ayyb azzb axxb ayyb azzb ayzb"));
    EXPECT_EQ(text.indexOf(lit<T>("ayzb")), 45);
    EXPECT_EQ(text.indexOf(lit<T>("azyb")), -1);
    EXPECT_EQ(text.lastIndexOf(lit<T>("axxb")), 30);
    EXPECT_EQ(text.lastIndexOf(lit<T>("azyb")), -1);
}

TYPED_TEST(Searching, OccurrencesAreCountedWithoutOverlap)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("aaaaa"));
    EXPECT_EQ(text.count(T('a')), 5);
    EXPECT_EQ(text.count(T('b')), 0);
    EXPECT_EQ(text.count(lit<T>("a")), 5);
    EXPECT_EQ(text.count(lit<T>("aa")), 2);
    EXPECT_EQ(text.count(lit<T>("aaa")), 1);
    EXPECT_EQ(text.count(lit<T>("aaaaaa")), 0);
    EXPECT_EQ(TypeParam(lit<T>("abaabaab")).count(lit<T>("ab")), 3);
    EXPECT_EQ(TypeParam().count(T('a')), 0);
    EXPECT_EQ(TypeParam().count(lit<T>("a")), 0);
}

TYPED_TEST(Searching, CharactersAreCountedInTextsOfEveryLength)
{
    using T = typename CharOf<TypeParam>::type;
    for (const long n :
        {1L, 7L, 31L, 32L, 33L, 63L, 64L, 65L, 8159L, 8160L, 8161L, 8191L, 8192L, 8193L, 20'000L}) {
        std::string characters(static_cast<std::size_t>(n), 'a');
        EXPECT_EQ(TypeParam(lit<T>(characters)).count(T('a')), n);
        EXPECT_EQ(TypeParam(lit<T>(characters)).count(T('b')), 0) << n;
        characters.front() = 'b';
        characters.back() = 'b';
        EXPECT_EQ(TypeParam(lit<T>(characters)).count(T('b')), std::min(n, 2L)) << n;
    }
}

TYPED_TEST(Searching, VerifyingFindsTheFirstCharacterThatDiffers)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("aab"));
    EXPECT_EQ(text.s_verify(T('a')), 2);
    EXPECT_EQ(text.s_verify(T('a'), 2), 2);
    EXPECT_EQ(text.s_verify(T('b')), 0);
    EXPECT_EQ(text.s_verify(T('b'), 1), 1);
    EXPECT_EQ(text.s_verify(T('b'), 2), -1);
    EXPECT_EQ(text.s_verify(T('b'), 3), -1);
    EXPECT_EQ(text.s_verify(T('a'), 99), -1);
    EXPECT_EQ(text.s_verify(T('b'), -1), -1);
    EXPECT_EQ(text.s_verify(T('b'), -2), 1);
    EXPECT_EQ(text.s_verify(T('b'), -99), 0);
    EXPECT_EQ(TypeParam().s_verify(T('a')), -1);
}

TYPED_TEST(Searching, VerifyingWithASetFindsTheFirstCharacterThatIsNotInIt)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("0129a3"));
    EXPECT_EQ(text.s_verify(lit<T>("0123456789")), 4);
    EXPECT_EQ(text.s_verify(view<T>("0123456789"), 4), 4);
    EXPECT_EQ(text.s_verify(view<T>("0123456789"), 5), -1);
    EXPECT_EQ(text.s_verify(view<T>("0123456789"), -1), -1);
    EXPECT_EQ(text.s_verify(view<T>("0123456789"), -2), 4);
    EXPECT_EQ(text.s_verify(view<T>("0123456789"), 6), -1);
    EXPECT_EQ(text.s_verify(lit<T>("a9321 0")), -1);
    EXPECT_EQ(text.s_verify(lit<T>("0123456789"), 2, 0), 2);
    EXPECT_EQ(text.s_verify(lit<T>("12"), 2, 1), 3);
}

TYPED_TEST(Searching, AnEmptySetFailsAtOnceAndAnEmptyTextNever)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("abc"));
    EXPECT_EQ(text.s_verify(lit<T>("")), 0);
    EXPECT_EQ(text.s_verify(ZStrToken<T>(), 0), 0);
    EXPECT_EQ(text.s_verify(lit<T>("abc"), 0, 0), 0);
    EXPECT_EQ(TypeParam().s_verify(lit<T>("abc")), -1);
    EXPECT_EQ(TypeParam().s_verify(lit<T>("")), -1);
}

TEST(SearchingWide, SetsHoldUnitsBeyondTheFirst256)
{
    const ZGStr<wchar_t> text(L"\u20AC\u00E9\u0416x");
    EXPECT_EQ(text.s_verify(L"\u0416\u20AC\u00E9"), 3);
    EXPECT_EQ(text.s_verify(L"\u20AC\u00E9"), 2);
    EXPECT_EQ(text.s_verify(L"\u04AC\u00E9"), 0); // the low byte of the first unit alone would fit
}

TEST(SearchingWide, SetsHoldTheUnitsAroundTheFirst256)
{
    const ZGStr<wchar_t> text(L"\u0101\u0100\u00FFx");
    EXPECT_EQ(text.s_verify(L"\u00FF\u0100\u0101"), 3);
    EXPECT_EQ(text.s_verify(L"\u0100\u0101"), 2);
    EXPECT_EQ(text.s_verify(L"\u00FF\u0101"), 1);
    EXPECT_EQ(text.s_verify(L"\u00FF\u0100"), 0);
}

TEST(SearchingNarrow, SetsHoldBytesFrom0x80)
{
    EXPECT_EQ(ZGStr<char>("\xE9\x80x").s_verify("\x80\xE9"), 2);
}

template <typename T>
class SearchingStatics : public ::testing::Test {
};
TYPED_TEST_SUITE(SearchingStatics, Widths, TypeNames);

TYPED_TEST(SearchingStatics, TheyReadTheGivenLengthOnly)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* text = lit<T>("abcabc");
    EXPECT_EQ(S::indexOf(text, 6, T('c'), 0), 2);
    EXPECT_EQ(S::indexOf(text, 2, T('c'), 0), -1);
    EXPECT_EQ(S::indexOf(text, 6, T('c')), 2);
    EXPECT_EQ(S::indexOf(text, 6, lit<T>("ca")), 2);
    EXPECT_EQ(S::lastIndexOf(text, 6, T('c')), S::lastIndexOf(text, 6, T('c'), 5));
    EXPECT_EQ(S::lastIndexOf(text, 6, lit<T>("ab")), 3);
    EXPECT_EQ(S::indexOf(text, 6, lit<T>("ca"), 0), 2);
    EXPECT_EQ(S::indexOf(text, 3, lit<T>("ca"), 0), -1);
    EXPECT_EQ(S::lastIndexOf(text, 5, T('c'), 9), 2);
    EXPECT_EQ(S::lastIndexOf(text, 5, lit<T>("ab"), 9), 3);
    EXPECT_EQ(S::lastIndexOf(text, 4, lit<T>("ab"), 9), 0);
    EXPECT_EQ(S::count(text, 6, T('a')), 2);
    EXPECT_EQ(S::count(text, 3, T('a')), 1);
    EXPECT_EQ(S::count(text, 6, lit<T>("bc")), 2);
    EXPECT_EQ(S::count(text, 5, lit<T>("bc")), 1);
    EXPECT_EQ(S::s_verify(text, 6, T('a'), 0), 1);
    EXPECT_EQ(S::s_verify(text, 1, T('a'), 0), -1);
    EXPECT_EQ(S::s_verify(text, 6, lit<T>("ab"), 0), 2);
    EXPECT_EQ(S::s_verify(text, 6, lit<T>("abc"), 2, 0), 2);
    EXPECT_EQ(S::s_verify(text, 2, lit<T>("ab"), 0), -1);
}

TYPED_TEST(SearchingStatics, NothingIsFoundInNull)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    for (const long length : {0L, -1L}) {
        EXPECT_EQ(S::indexOf(nullptr, length, T('c'), 0), -1);
        EXPECT_EQ(S::indexOf(nullptr, length, lit<T>("c"), 0), -1);
        EXPECT_EQ(S::indexOf(nullptr, length, lit<T>("cd"), -1), -1);
        EXPECT_EQ(S::lastIndexOf(nullptr, length, T('c'), 0), -1);
        EXPECT_EQ(S::lastIndexOf(nullptr, length, lit<T>("c"), -1), -1);
        EXPECT_EQ(S::count(nullptr, length, T('c')), 0);
        EXPECT_EQ(S::count(nullptr, length, lit<T>("cd")), 0);
        EXPECT_EQ(S::s_verify(nullptr, length, T('c'), 0), -1);
        EXPECT_EQ(S::s_verify(nullptr, length, lit<T>("cd"), -1), -1);
        EXPECT_EQ(S::stripIndexOf(nullptr, length, lit<T>("cd")), 0);
    }
}

TYPED_TEST(SearchingStatics, StrippingCountsTheLeadingRun)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(S::stripIndexOf(lit<T>("  \tab "), 6, lit<T>(" \t")), 3);
    EXPECT_EQ(S::stripIndexOf(lit<T>("ab"), 2, lit<T>(" \t")), 0);
    EXPECT_EQ(S::stripIndexOf(lit<T>("   "), 3, lit<T>(" ")), 3);
    EXPECT_EQ(S::stripIndexOf(lit<T>("   "), 2, lit<T>(" ")), 2);
    EXPECT_EQ(S::stripIndexOf(lit<T>("ab"), 2, lit<T>("")), 0);
    EXPECT_EQ(S::stripIndexOf(lit<T>("ab"), 2, nullptr), 0);
}

template <typename T>
class SearchingTokens : public ::testing::Test {
};
TYPED_TEST_SUITE(SearchingTokens, Widths, TypeNames);

TYPED_TEST(SearchingTokens, APointerAndALengthServeAsText)
{
    using T = TypeParam;
    const ZStrToken<T> view(lit<T>("abcabcX"), 6);
    EXPECT_EQ(view.indexOf(lit<T>("bcX"), 2, 0), 1);
    EXPECT_EQ(view.indexOf(lit<T>("bcX"), 2, 2), 4);
    EXPECT_EQ(view.indexOf(lit<T>("bcX"), 3, 0), -1);
    EXPECT_EQ(view.lastIndexOf(lit<T>("bcX"), 2, 9), 4);
    EXPECT_EQ(view.lastIndexOf(lit<T>("bcX"), 2, 3), 1);
    EXPECT_EQ(view.count(lit<T>("bcX"), 2), 2);
    EXPECT_EQ(view.s_verify(lit<T>("abc"), 2, 0), 2);
    EXPECT_EQ(view.indexOf(T('X')), -1);
}

template <typename T>
class SearchArguments : public ::testing::Test {
};
TYPED_TEST_SUITE(SearchArguments, Widths, TypeNames);

TYPED_TEST(SearchArguments, ANumberAfterAPointerIsWhereTheSearchStarts)
{
    using T = TypeParam;
    const ZStrToken<T> token(lit<T>("abcabc"));
    EXPECT_EQ(token.indexOf(lit<T>("bc"), 2), 4);
    EXPECT_EQ(token.lastIndexOf(lit<T>("bc"), 3), 1);
    EXPECT_EQ(token.s_verify(lit<T>("abc"), 2), -1);
    EXPECT_EQ(ZGStr<T>(token).indexOf(lit<T>("bc"), 2), 4);
    EXPECT_EQ(ZMStr<T>(token).indexOf(lit<T>("bc"), 2), 4);
}

TYPED_TEST(SearchArguments, APointerAndALengthAreFollowedByWhereTheSearchStarts)
{
    using T = TypeParam;
    const T* what = lit<T>("bcx");
    const ZStrToken<T> token(lit<T>("abcabc"));
    EXPECT_EQ(token.indexOf(what, 2, 2), 4);
    EXPECT_EQ(token.lastIndexOf(what, 2, 3), 1);
    EXPECT_EQ(token.count(what, 2), 2);
    EXPECT_EQ(token.s_verify(lit<T>("abx"), 2, 3), 5);
}

TYPED_TEST(SearchArguments, StaticVerifyingStartsAtTheFirstCharacter)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(S::s_verify(lit<T>("aab"), 3, T('a')), 2);
    EXPECT_EQ(S::s_verify(lit<T>("aab"), 3, lit<T>("ab")), -1);
    EXPECT_EQ(S::s_verify(lit<T>("aab"), 3, lit<T>("a")), 2);
    EXPECT_EQ(S::s_verify(lit<T>("aab"), 3, lit<T>("ab"), 1, 0), 2);
}

} // namespace
