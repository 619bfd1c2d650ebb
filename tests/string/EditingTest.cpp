// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename S>
class Editing : public ::testing::Test {
};
TYPED_TEST_SUITE(Editing, OwningClasses, TypeNames);

TYPED_TEST(Editing, TrimmingRemovesBlanksAndControlCharacters)
{
    using T = typename CharOf<TypeParam>::type;
    const char* const padded = " \t\r\n\x01 a b \x1F\x0B ";
    TypeParam both(lit<T>(padded));
    EXPECT_EQ(both.trim(), 10);
    EXPECT_EQ(str(both), "a b");
    TypeParam leading(lit<T>(padded));
    EXPECT_EQ(leading.lTrim(), 6);
    EXPECT_EQ(str(leading), "a b \x1F\x0B ");
    TypeParam trailing(lit<T>(padded));
    EXPECT_EQ(trailing.rTrim(), 4);
    EXPECT_EQ(str(trailing), " \t\r\n\x01 a b");
}

TYPED_TEST(Editing, TrimmingRemovesCharacter32ButNot33)
{
    using T = typename CharOf<TypeParam>::type;
    TypeParam text(lit<T>(" !a!\x7F "));
    EXPECT_EQ(text.trim(), 2);
    EXPECT_EQ(str(text), "!a!\x7F");
}

TYPED_TEST(Editing, TrimmingBlanksOnlyLeavesNothing)
{
    using T = typename CharOf<TypeParam>::type;
    TypeParam a(lit<T>("   "));
    TypeParam b(lit<T>("   "));
    TypeParam c(lit<T>("   "));
    EXPECT_EQ(a.trim() + b.lTrim() + c.rTrim(), 9);
    EXPECT_TRUE(a.isEmpty() && b.isEmpty() && c.isEmpty());
    EXPECT_EQ(a.trim() + a.lTrim() + a.rTrim(), 0);
    EXPECT_EQ(TypeParam().trim() + TypeParam().lTrim() + TypeParam().rTrim(), 0);
    TypeParam none(lit<T>("abc"));
    EXPECT_EQ(none.trim() + none.lTrim() + none.rTrim(), 0);
    EXPECT_EQ(str(none), "abc");
}

TEST(EditingNarrow, TrimmingRemovesBytesFrom0x80AtEitherEnd)
{
    ZGStr<char> latin("caf\xE9");
    EXPECT_EQ(latin.rTrim(), 1);
    EXPECT_EQ(str(latin), "caf");
    ZGStr<char> utf8("\xC3\xA9t\xC3\xA9");
    EXPECT_EQ(utf8.trim(), 4);
    EXPECT_EQ(str(utf8), "t");
    ZMStr<char> built("\x80x\xFFy\xFF");
    EXPECT_EQ(built.trim(), 2);
    EXPECT_EQ(str(built), "x\xFFy");
}

TEST(EditingWide, TrimmingLeavesAccentedLetters)
{
    ZGStr<wchar_t> text(L" \u00E9t\u00E9\u20AC ");
    EXPECT_EQ(text.trim(), 2);
    EXPECT_EQ(text, L"\u00E9t\u00E9\u20AC");
    const wchar_t negative[]{L'a', static_cast<wchar_t>(-5), 0};
    ZGStr<wchar_t> odd(negative);
    EXPECT_EQ(odd.trim(), 1);
}

TYPED_TEST(Editing, CaseChangesMapPlainLettersOnly)
{
    using T = typename CharOf<TypeParam>::type;
    const char* const mixed = "@AMZ[`amz{ 19\xC9\xE9";
    TypeParam text(lit<T>(mixed));
    EXPECT_EQ(str(text.toLower()), "@amz[`amz{ 19\xC9\xE9");
    text = lit<T>(mixed);
    EXPECT_EQ(str(text.toUpper()), "@AMZ[`AMZ{ 19\xC9\xE9");
    const std::string longText(100, 'Q');
    TypeParam many(lit<T>(longText));
    EXPECT_EQ(str(many.toLower()), std::string(100, 'q'));
    EXPECT_EQ(str(many.toUpper()), longText);
    EXPECT_EQ(str(TypeParam().toLower()) + str(TypeParam().toUpper()), "");
}

TYPED_TEST(Editing, ReversingReversesTheOrderOfTheCharacters)
{
    using T = typename CharOf<TypeParam>::type;
    TypeParam even(lit<T>("abcd"));
    TypeParam odd(lit<T>("abc"));
    TypeParam one(lit<T>("a"));
    EXPECT_EQ(str(even.reverse()) + str(odd.reverse()) + str(one.reverse()), "dcbacbaa");
    EXPECT_EQ(str(TypeParam().reverse()), "");
}

TYPED_TEST(Editing, ReplacingACharacterChangesEachOfThem)
{
    using T = typename CharOf<TypeParam>::type;
    TypeParam text(lit<T>("10:20:30"));
    EXPECT_EQ(str(text.replace(T(':'), T('-'))), "10-20-30");
    EXPECT_EQ(str(text.replace(T('x'), T('y'))), "10-20-30");
    EXPECT_EQ(str(TypeParam().replace(T('x'), T('y'))), "");
}

TYPED_TEST(Editing, ReplacingATextMayGrowAndShrinkIt)
{
    using T = typename CharOf<TypeParam>::type;
    struct Row {
        const char *text, *what, *with, *result;
    };
    const Row rows[]{{"a-b-c", "-", "--", "a--b--c"}, {"a--b--c", "--", "-", "a-b-c"}, {"aaa", "a", "", ""},
        {"aaaa", "aa", "b", "bb"}, {"aaaaa", "aa", "b", "bba"}, {"abc", "abc", "xyz", "xyz"},
        {"abc", "x", "y", "abc"}, {"abc", "", "y", "abc"}, {"abcabc", "c", "-end", "ab-endab-end"},
        {"", "a", "b", ""}, {"ab", "abc", "x", "ab"}, {"aXbX", "X", "X", "aXbX"}};
    for (const Row& row : rows) {
        TypeParam text(lit<T>(row.text));
        EXPECT_EQ(str(text.replace(lit<T>(row.what), lit<T>(row.with))), row.result) << row.text;
        EXPECT_EQ(text, lit<T>(row.result));
    }
    EXPECT_EQ(str(TypeParam().replace(lit<T>("a"), lit<T>("b"))), "");
}

TYPED_TEST(Editing, ReplacingStopsAtTheGivenNumber)
{
    using T = typename CharOf<TypeParam>::type;
    const auto replaced = [](long max) {
        TypeParam text(lit<T>("a.b.c.d"));
        return str(text.replace(lit<T>("."), lit<T>("::"), max));
    };
    EXPECT_EQ(replaced(1), "a::b.c.d");
    EXPECT_EQ(replaced(2), "a::b::c.d");
    EXPECT_EQ(replaced(3), "a::b::c::d");
    EXPECT_EQ(replaced(9), "a::b::c::d");
    EXPECT_EQ(replaced(0), "a::b::c::d");
    EXPECT_EQ(replaced(-1), "a::b::c::d");
}

TYPED_TEST(Editing, ReplaceExReturnsTheNumberOfReplacements)
{
    using T = typename CharOf<TypeParam>::type;
    TypeParam text(lit<T>("a.b.c.d"));
    EXPECT_EQ(text.replaceEx(lit<T>("."), lit<T>("-"), 2), 2);
    EXPECT_EQ(str(text), "a-b-c.d");
    EXPECT_EQ(text.replaceEx(lit<T>("-"), lit<T>("")), 2);
    EXPECT_EQ(str(text), "abc.d");
    EXPECT_EQ(text.replaceEx(lit<T>("x"), lit<T>("")), 0);
    EXPECT_EQ(str(text), "abc.d");
}

TYPED_TEST(Editing, AReplacementMayBePartOfTheTextItself)
{
    using T = typename CharOf<TypeParam>::type;
    TypeParam text(lit<T>("ab-"));
    text.replace(text.right(1), text.left(2));
    EXPECT_EQ(str(text), "abab");
    text.replace(text, text);
    EXPECT_EQ(str(text), "abab");
    text.replace(text.left(1), text);
    EXPECT_EQ(str(text), "ababbababb");
}

TYPED_TEST(Editing, SplittingCutsAtEverySeparator)
{
    using T = typename CharOf<TypeParam>::type;
    const auto split = [](const char* text) { return listed(TypeParam(lit<T>(text)).split(T(','), -1)); };
    EXPECT_EQ(split("a,,b,"), (Texts{"a", "", "b", ""}));
    EXPECT_EQ(split(",a"), (Texts{"", "a"}));
    EXPECT_EQ(split(","), (Texts{"", ""}));
    EXPECT_EQ(split("abc"), (Texts{"abc"}));
    EXPECT_EQ(split(""), (Texts{""}));
    EXPECT_EQ(listed(TypeParam().split(T(','))), (Texts{""}));
}

TYPED_TEST(Editing, SplittingWithALimitKeepsTheRestWhole)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("a,,b,"));
    EXPECT_EQ(listed(text.split(T(','), 1)), (Texts{"a,,b,"}));
    EXPECT_EQ(listed(text.split(T(','), 2)), (Texts{"a", ",b,"}));
    EXPECT_EQ(listed(text.split(T(','), 3)), (Texts{"a", "", "b,"}));
    EXPECT_EQ(listed(text.split(T(','), 4)), (Texts{"a", "", "b", ""}));
    EXPECT_EQ(listed(text.split(T(','), 5)), (Texts{"a", "", "b", ""}));
    EXPECT_EQ(listed(text.split(T(','), 0)), (Texts{"a", "", "b", ""}));
    EXPECT_EQ(listed(text.split(lit<T>(","), 2)), (Texts{"a", ",b,"}));
}

TYPED_TEST(Editing, ASeparatorMayHaveManyCharacters)
{
    using T = typename CharOf<TypeParam>::type;
    const auto split = [](const char* text, const char* separator, long max = -1) {
        return listed(TypeParam(lit<T>(text)).split(lit<T>(separator), max));
    };
    EXPECT_EQ(split("a::b::c", "::"), (Texts{"a", "b", "c"}));
    EXPECT_EQ(split("a:::b", "::"), (Texts{"a", ":b"}));
    EXPECT_EQ(split("::a::", "::"), (Texts{"", "a", ""}));
    EXPECT_EQ(split("::::", "::"), (Texts{"", "", ""}));
    EXPECT_EQ(split("a::b::c", "::", 2), (Texts{"a", "b::c"}));
    EXPECT_EQ(split("a", "abc"), (Texts{"a"}));
    EXPECT_EQ(split("", "::"), (Texts{""}));
}

TYPED_TEST(Editing, AnEmptySeparatorReturnsNoPieces)
{
    using T = typename CharOf<TypeParam>::type;
    EXPECT_EQ(TypeParam(lit<T>("abc")).split(lit<T>(""), -1).Count(), 0);
    EXPECT_EQ(TypeParam(lit<T>("abc")).split(ZStrToken<T>(), 2).Count(), 0);
    EXPECT_EQ(TypeParam().split(lit<T>("")).Count(), 0);
}

template <typename T>
class EditingStatics : public ::testing::Test {
protected:
    /// The result of an operation on a copy of bare characters.
    template <typename Operation>
    static std::string edited(const char* text, Operation operation)
    {
        std::basic_string<T> characters = wider<T>(text);
        operation(characters.data(), static_cast<long>(characters.size()));
        return str(static_cast<const T*>(characters.data()));
    }
};
TYPED_TEST_SUITE(EditingStatics, Widths, TypeNames);

TYPED_TEST(EditingStatics, EditingInPlaceWorksOnBareCharacters)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(this->edited(" a ", [](T* text, long n) { EXPECT_EQ(S::trim(text, n), 2); }), "a");
    EXPECT_EQ(this->edited(" a ", [](T* text, long n) { EXPECT_EQ(S::lTrim(text, n), 1); }), "a ");
    EXPECT_EQ(this->edited(" a ", [](T* text, long n) { EXPECT_EQ(S::rTrim(text, n), 1); }), " a");
    EXPECT_EQ(this->edited("aBc", [](T* text, long n) { S::toLower(text, n); }), "abc");
    EXPECT_EQ(this->edited("aBc", [](T* text, long n) { S::toUpper(text, n - 1); }), "ABc");
    EXPECT_EQ(this->edited("abc", [](T* text, long n) { S::reverse(text, n); }), "cba");
    EXPECT_EQ(this->edited("a:b:", [](T* text, long n) { S::replace(text, n, T(':'), T('.')); }), "a.b.");
}

TYPED_TEST(EditingStatics, SingleCharactersAreMappedAndSwapped)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(S::toLower(T('A')), T('a'));
    EXPECT_EQ(S::toLower(T('a')), T('a'));
    EXPECT_EQ(S::toLower(T('[')), T('['));
    EXPECT_EQ(S::toUpper(T('z')), T('Z'));
    EXPECT_EQ(S::toUpper(T('{')), T('{'));
    T a = 'a';
    T b = 'b';
    S::swap(a, b);
    EXPECT_EQ(a, T('b'));
    EXPECT_EQ(b, T('a'));
}

TYPED_TEST(EditingStatics, ReplacingReturnsANewArray)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(taken(S::replace(lit<T>("a.b.c"), 5, lit<T>("."), 1, lit<T>("::"), 2, -1)), "a::b::c");
    EXPECT_EQ(taken(S::replace(lit<T>("a.b.c"), 5, lit<T>("."), 1, lit<T>("::"), 2, 1)), "a::b.c");
    EXPECT_EQ(taken(S::replace(lit<T>("a.b.c"), 3, lit<T>("."), 1, lit<T>("::"), 1, 0)), "a:b");
    EXPECT_EQ(taken(S::replace(lit<T>("abc"), 3, lit<T>("x"), 1, lit<T>("y"), 1, -1)), "abc");
    EXPECT_EQ(taken(S::replace(lit<T>("abc"), 3, nullptr, 0, nullptr, 0, -1)), "abc");
    EXPECT_EQ(taken(S::replace(lit<T>("abc"), 3, lit<T>("b"), 1, nullptr, -1, -1)), "ac");
    EXPECT_EQ(taken(S::replace(nullptr, -1, lit<T>("b"), 1, lit<T>("c"), 1, -1)), "");
}

TYPED_TEST(EditingStatics, SplittingBareCharactersReturnsStrings)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(listed(S::split(lit<T>("a--b--c"), lit<T>("--"), -1)), (Texts{"a", "b", "c"}));
    EXPECT_EQ(listed(S::split(lit<T>("a--b--c"), lit<T>("--"), 2)), (Texts{"a", "b--c"}));
    EXPECT_EQ(listed(S::split(lit<T>("a,b,c"), 3, lit<T>(","), -1)), (Texts{"a", "b"}));
    EXPECT_EQ(listed(S::split(lit<T>("a,b,c"), 4, T(','), -1)), (Texts{"a", "b", ""}));
    EXPECT_EQ(listed(S::split(nullptr, lit<T>(","), -1)), (Texts{""}));
    EXPECT_EQ(listed(S::split(lit<T>("abc"), -1, lit<T>(","), -1)), (Texts{""}));
    std::basic_string<T> writable = wider<T>("a,b");
    EXPECT_EQ(listed(S::split(writable.data(), lit<T>(","), -1)), (Texts{"a", "b"}));
    EXPECT_EQ(writable, wider<T>("a,b"));
}

TYPED_TEST(EditingStatics, SplittingInPlaceWritesZerosOverTheSeparators)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    std::basic_string<T> text = wider<T>("a--b----c");
    T* pieces[9]{};
    ASSERT_EQ(S::splitTo(pieces, 9, text.data(), lit<T>("--")), 4);
    EXPECT_EQ(str<T>(pieces[0]) + "|" + str<T>(pieces[1]) + "|" + str<T>(pieces[2]) + "|" + str<T>(pieces[3]),
        "a|b||c");
    EXPECT_EQ(pieces[1], text.data() + 3);
    EXPECT_EQ(text, wider<T>(std::string_view("a\0\0b\0\0\0\0c", 9)));
}

TYPED_TEST(EditingStatics, SplittingInPlaceStopsAtTheCapacity)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    std::basic_string<T> text = wider<T>("a,b,c");
    T* pieces[2]{};
    ASSERT_EQ(S::splitTo(pieces, 2, text.data(), lit<T>(",")), 2);
    EXPECT_EQ(str<T>(pieces[0]) + "|" + str<T>(pieces[1]), "a|b,c");
    EXPECT_EQ(S::splitTo(pieces, 0, text.data(), lit<T>(",")), 0);
    EXPECT_EQ(S::splitTo(pieces, 2, text.data(), lit<T>("")), 0);
    EXPECT_EQ(S::splitTo(pieces, 2, text.data(), nullptr), 0);
    EXPECT_EQ(S::splitTo(pieces, 2, nullptr, lit<T>(",")), 0);
    std::basic_string<T> empty;
    ASSERT_EQ(S::splitTo(pieces, 2, empty.data(), lit<T>(",")), 1);
    EXPECT_EQ(pieces[0], empty.data());
}

template <typename T>
class SliceEditing : public ::testing::Test {
};
TYPED_TEST_SUITE(SliceEditing, Widths, TypeNames);

TYPED_TEST(SliceEditing, RemovingNothingFromASliceWritesNothing)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    auto text = wider<T>("abcdef");
    EXPECT_EQ(S::removeSubString(text.data(), 3, 3, 5), 0);
    EXPECT_EQ(S::removeSubString(text.data(), 3, 1, 0), 0);
    EXPECT_EQ(S::trim(text.data(), 3) + S::lTrim(text.data(), 3) + S::rTrim(text.data(), 3), 0);
    EXPECT_EQ(str(text.c_str()), "abcdef");
}

TYPED_TEST(SliceEditing, RemovingFromASliceEndsItWithinItsLength)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    auto text = wider<T>("abcdef");
    EXPECT_EQ(S::removeSubString(text.data(), 3, 0, 1), 1);
    EXPECT_EQ(text, wider<T>(std::string_view("bc\0def", 6)));
    auto blank = wider<T>(" a def");
    EXPECT_EQ(S::trim(blank.data(), 3), 2);
    EXPECT_EQ(blank, wider<T>(std::string_view("a\0\0def", 6)));
}

} // namespace
