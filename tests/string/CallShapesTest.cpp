// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>

// The ways in which callers write calls. Half of each test is that these compile without a cast, on every
// compiler.

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

long viewedLength(ZStrToken<char> text)
{
    return text.Length();
}
std::string copied(const ZGStr<char>& text)
{
    return str(text);
}
std::string built(const ZMStr<char>& text)
{
    return str(text);
}

enum Unscoped { Three = 3 };

TEST(StringCallShapes, LiteralsAreComparedDirectly)
{
    const ZGStr<char> s("abc");
    const ZMStr<char> m("abc");
    const ZStrToken<char> t("abc");

    EXPECT_TRUE(s == "abc" && "abc" == s && m == "abc" && "abc" == m && t == "abc" && "abc" == t);
    EXPECT_TRUE(s != "abd" && "abd" != s && m != "abd" && "abd" != m && t != "abd" && "abd" != t);
    EXPECT_TRUE(s < "abd" && "abd" > s && m < "abd" && "abd" > m && t < "abd" && "abd" > t);
    EXPECT_TRUE(s > "abb" && "abb" < s && m > "abb" && "abb" < m && t > "abb" && "abb" < t);
    EXPECT_TRUE(s <= "abc" && s >= "abc" && "abc" <= m && t >= "abc");
    EXPECT_FALSE(s < "abc" || s > "abc" || m < "abc" || t > "abc");
}

TEST(StringCallShapes, TheThreeClassesAreComparedWithEachOther)
{
    const ZGStr<char> s("abc");
    const ZMStr<char> m("abc");
    const ZStrToken<char> t("abc");
    const ZGStr<char> s2("abd");
    const ZMStr<char> m2("abd");
    const ZStrToken<char> t2("abd");

    EXPECT_TRUE(s == s && s == m && s == t && m == s && m == m && m == t && t == s && t == m && t == t);
    EXPECT_TRUE(
        s != s2 && s != m2 && s != t2 && m != s2 && m != m2 && m != t2 && t != s2 && t != m2 && t != t2);
    EXPECT_TRUE(s < s2 && s < m2 && s < t2 && m < s2 && m < m2 && m < t2 && t < s2 && t < m2 && t < t2);
    EXPECT_TRUE(s2 > s && s2 > m && s2 > t && m2 > s && m2 > m && m2 > t && t2 > s && t2 > m && t2 > t);
}

TEST(StringCallShapes, EverythingConvertsToTheRequestedType)
{
    const ZGStr<char> s("abc");
    const ZMStr<char> m("abcd");
    const ZStrToken<char> t("ab", 1);
    const char* pointer = s;
    const char* buffer = m;
    const char* viewed = t;

    EXPECT_STREQ(pointer, "abc");
    EXPECT_STREQ(buffer, "abcd");
    EXPECT_EQ(*viewed, 'a');
    EXPECT_EQ(viewedLength("ab") + viewedLength(s) + viewedLength(m) + viewedLength(t), 2 + 3 + 4 + 1);
    EXPECT_EQ(copied("x") + copied(s) + copied(m) + copied(t), "xabcabcda");
    EXPECT_EQ(built("x") + built(s) + built(m) + built(t), "xabcabcda");
}

TEST(StringCallShapes, EveryKindOfTextIsAssigned)
{
    ZGStr<char> s = "x";
    ZMStr<char> m = "x";
    ZStrToken<char> t = "x";
    const ZGStr<char> s2("string");
    const ZMStr<char> m2("builder");
    const ZStrToken<char> t2("view");

    EXPECT_EQ(str(s = "pointer"), "pointer");
    EXPECT_EQ(str(s = s2), "string");
    EXPECT_EQ(str(s = m2), "builder");
    EXPECT_EQ(str(s = t2), "view");
    EXPECT_EQ(str(m = "pointer"), "pointer");
    EXPECT_EQ(str(m = s2), "string");
    EXPECT_EQ(str(m = m2), "builder");
    EXPECT_EQ(str(m = t2), "view");
    EXPECT_EQ(str(t = "pointer"), "pointer");
    EXPECT_EQ(str(t = s2), "string");
    EXPECT_EQ(str(t = m2), "builder");
    EXPECT_EQ(str(t = t2), "view");
    EXPECT_EQ(str(s = nullptr), "");
    EXPECT_EQ(str(m = nullptr), "");
    EXPECT_EQ(str(t = nullptr), "");
}

template <typename S>
class OutputShapes : public ::testing::Test {
};
TYPED_TEST_SUITE(OutputShapes, OwningClasses, TypeNames);

TYPED_TEST(OutputShapes, ChainsTakeEveryKindOfTextAndNumber)
{
    using T = typename CharOf<TypeParam>::type;
    using U = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;
    const ZGStr<T> s(lit<T>("s"));
    const ZMStr<T> m(lit<T>("m"));
    const ZStrToken<T> t(lit<T>("t"));
    const ZGStr<U> otherS(lit<U>("S"));
    const ZMStr<U> otherM(lit<U>("M"));
    const ZStrToken<U> otherT(lit<U>("T"));
    char array[] = "v";

    TypeParam out;
    out << "a" << L"w" << 'c' << L'd' << array << s << m << t << otherS << otherM << otherT << out;
    EXPECT_EQ(str(out), "awcdvsmtSMTawcdvsmtSMT");
}

TYPED_TEST(OutputShapes, EveryIntegerTypeIsANumber)
{
    TypeParam out;
    out << 1 << 2U << 3L << 4UL << 5LL << 6ULL << short(7) << static_cast<unsigned short>(8) << Three;
    out << static_cast<signed char>(9) << static_cast<unsigned char>(10) << std::size_t{11}
        << std::ptrdiff_t{12};
    out << std::int64_t{13} << std::uint64_t{14} << std::int32_t{15} << std::uint8_t{16} << -17;
    EXPECT_EQ(str(out),
        "12345678"
        "3"
        "910111213141516-17");
}

TYPED_TEST(OutputShapes, BoolsAndFloatingPointNumbersPrintAsDigits)
{
    TypeParam out;
    out << true << false << 2.5 << 0.25F << 2.0 << 0;
    EXPECT_EQ(str(out), "102.50.2520");
}

TYPED_TEST(OutputShapes, BytesPrintTheirAddress)
{
    TypeParam out;
    const auto* address = reinterpret_cast<const unsigned char*>(std::uintptr_t{0x12AB});
    out << address;
    EXPECT_EQ(str(out), "00000000000012ab");
    out.appendValueOf(const_cast<unsigned char*>(address));
    EXPECT_EQ(str(out), "00000000000012ab00000000000012ab");
}

TYPED_TEST(OutputShapes, TextIsAddedInEveryForm)
{
    using T = typename CharOf<TypeParam>::type;
    const ZGStr<T> s(lit<T>("s"));
    const ZMStr<T> m(lit<T>("m"));
    TypeParam out(lit<T>("a"));

    out += lit<T>("b");
    out += T('c');
    out += s;
    out += m;
    out += s.left(1);
    EXPECT_EQ(str(out), "abcsms");
    EXPECT_EQ(str(out + lit<T>("x") + T('y') + s + m), "abcsmsxysm");
    EXPECT_EQ(str(out.concat(s)), "abcsmss");
    EXPECT_EQ(str(out.append(lit<T>("12"), 1).append(s).append(T('!')).append(lit<T>("-"))), "abcsms1s!-");
}

TEST(StringCallShapes, IndicesMayBeOfEveryIntegerType)
{
    ZGStr<char> s("abc");
    ZMStr<char> m("abc");
    const ZStrToken<char> t("abc");
    const long l = 1;
    const std::size_t z = 1;
    const unsigned u = 1;

    EXPECT_EQ(s[1], 'b');
    EXPECT_EQ(s[l], 'b');
    EXPECT_EQ(s[z], 'b');
    EXPECT_EQ(m[1], 'b');
    EXPECT_EQ(m[u], 'b');
    EXPECT_EQ(m[z], 'b');
    EXPECT_EQ(t[1], 'b');
    EXPECT_EQ(t[l], 'b');
    EXPECT_EQ(t[z], 'b');
    s[0] = m[0] = 'x';
    EXPECT_EQ(str(s) + str(m), "xbcxbc");
    EXPECT_EQ(std::as_const(s)[-1], 'c');
    EXPECT_EQ(std::as_const(m)[-1], 'c');
}

TYPED_TEST(OutputShapes, SeparatorsAreCharactersTextsAndStrings)
{
    using T = typename CharOf<TypeParam>::type;
    const TypeParam text(lit<T>("a,b"));
    const ZGStr<T> s(lit<T>(","));
    const ZMStr<T> m(lit<T>(","));

    EXPECT_EQ(text.split(T(','), -1).Count(), 2);
    EXPECT_EQ(text.split(T(',')).Count(), 2);
    EXPECT_EQ(text.split(lit<T>(","), -1).Count(), 2);
    EXPECT_EQ(text.split(s, -1).Count(), 2);
    EXPECT_EQ(text.split(m, -1).Count(), 2);
    EXPECT_EQ(text.split(s.left(1)).Count(), 2);
}

TEST(StringCallShapes, NarrowLiteralsAreArguments)
{
    ZGStr<char> s("a,b");
    EXPECT_EQ(s.split(',', -1).Count(), 2);
    EXPECT_EQ(s.split("ab", -1).Count(), 1);
    EXPECT_EQ(s.indexOf('a'), 0);
    EXPECT_EQ(s.indexOf("b", 0), 2);
    EXPECT_EQ(s.lastIndexOf(','), 1);
    EXPECT_EQ(s.count("a"), 1);
    EXPECT_EQ(s.at(0), 'a');
    EXPECT_EQ(str(s.replace(",", "; ").replace('a', 'A')), "A; b");
    ZGStr<wchar_t> wide(L"x:y");
    EXPECT_EQ(str(wide.replace(':', '-') << "!" << L'?'), "x-y!?");
    EXPECT_EQ(wide.split('-').Count(), 2);
}

TYPED_TEST(OutputShapes, TextOfTheOtherWidthIsAcceptedOnlyOnRequest)
{
    using T = typename CharOf<TypeParam>::type;
    using U = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;
    EXPECT_EQ(str(TypeParam(lit<U>("ab"))), "ab");
    EXPECT_EQ(str(TypeParam(lit<U>("abc"), 2)), "ab");
    EXPECT_EQ(str(TypeParam(ZGStr<U>(lit<U>("ab")))), "ab");
    EXPECT_EQ(str(TypeParam(ZMStr<U>(lit<U>("ab")))), "ab");
    EXPECT_EQ(str(TypeParam(ZStrToken<U>(lit<U>("ab")))), "ab");
    static_assert(!std::is_convertible_v<const U*, TypeParam>);
    static_assert(!std::is_convertible_v<ZGStr<U>, TypeParam>);
    TypeParam assigned; // like `<<`, an assignment names its target
    EXPECT_EQ(str(assigned = lit<U>("ab")), "ab");
}

TEST(StringCallShapes, ZeroIsACapacityAndNullIsAnEmptyString)
{
    const ZMStr<char> reserved(0);
    const ZMStr<char> fromNull(nullptr);
    const ZGStr<char> stringFromNull(nullptr);
    EXPECT_NE(static_cast<const char*>(reserved), nullptr);
    EXPECT_EQ(static_cast<const char*>(fromNull), nullptr);
    EXPECT_TRUE(stringFromNull.isEmpty());
    static_assert(!std::is_convertible_v<int, ZMStr<char>>);
}

template <typename S, typename A>
concept Appendable = requires(S text, A argument)
{
    text.append(argument);
};
template <typename S, typename A>
concept ManyAppendable = requires(S text, A argument)
{
    text.append(argument, 3L);
};
template <typename S, typename A>
concept PlusAssignable = requires(S text, A argument)
{
    text += argument;
};
template <typename S, typename A>
concept Addable = requires(S text, A argument)
{
    text + argument;
};

TYPED_TEST(OutputShapes, OnlyACharacterOfTheSameWidthIsACharacter)
{
    using T = typename CharOf<TypeParam>::type;
    using U = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;
    static_assert(Appendable<TypeParam, T> && PlusAssignable<TypeParam, T> && Addable<TypeParam, T>);
    const auto isRefused = []<typename A>(A) {
        return !Appendable<TypeParam,
                   A> && !ManyAppendable<TypeParam, A> && !PlusAssignable<TypeParam, A> && !Addable<TypeParam, A>;
    };
    EXPECT_TRUE(isRefused(65) && isRefused(65U) && isRefused(65L) && isRefused(65ULL) && isRefused(true));
    EXPECT_TRUE(isRefused(static_cast<signed char>(65)) && isRefused(static_cast<unsigned char>(65)));
    EXPECT_TRUE(isRefused(static_cast<short>(65)) && isRefused(Three) && isRefused(6.5) && isRefused(U('A')));
    static_assert(!requires(TypeParam s) { s += 0; });
    static_assert(!requires(TypeParam s) { s + 0; });
    static_assert(!requires(TypeParam s) { s.append(0); });
    static_assert(!std::is_convertible_v<int, TypeParam> && !std::is_convertible_v<T, TypeParam>);
    static_assert(!std::is_assignable_v<TypeParam&, int> && !std::is_assignable_v<TypeParam&, T>);
}

} // namespace
