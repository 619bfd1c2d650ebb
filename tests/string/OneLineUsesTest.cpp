// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/support/OneLineUses.h"

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iomanip>
#include <map>
#include <numeric>
#include <sstream>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

// What people write without looking anything up: that each line compiles is half of the test. The second half of the
// file lists what must not compile.

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

#define USE(expected, ...)                                                                                   \
    Use                                                                                                      \
    {                                                                                                        \
#__VA_ARGS__, [&]() -> std::string { __VA_ARGS__ }(), expected                                       \
    }

template <typename... Args>
std::string streamed(const Args&... args)
{
    std::ostringstream out;
    (out << ... << args);
    return out.str();
}

template <typename... Args>
std::wstring wideStreamed(const Args&... args)
{
    std::wostringstream out;
    (out << ... << args);
    return out.str();
}

std::string takesString(const std::string& text)
{
    return text;
}
std::string takesView(std::string_view text)
{
    return std::string(text);
}
std::string takesToken(ZStrToken<char> text)
{
    return std::string(text);
}
std::string takesOwned(const ZGStr<char>& text)
{
    return std::string(text);
}

TEST(OneLineUses, PrintToStreams)
{
    const ZGStr<char> s("abcdef");
    const ZMStr<char> m("builder");
    const ZStrToken<char> t = s.left(3);
    const ZGStr<wchar_t> w(L"w\u00E9");
    expectResults({
        USE("abc", return streamed(t);), USE("abcdef", return streamed(s);),
            USE("builder", return streamed(m);), USE("abc|builder", return streamed(t, '|', m);),
            USE("  abc|", return streamed(std::setw(5), t, '|');),
            USE("abc..|", return streamed(std::setfill('.'), std::left, std::setw(5), t, '|');),
            USE("", return streamed(ZGStr<char>());),
            USE("", return streamed(ZStrToken<char>(), ZMStr<char>(), ZStrToken<char>("x", -1));),
            USE("cd", return streamed(s.subString(2, 2));),
            USE(std::string("a\0b", 3), return streamed(ZMStr<char>("a\0b", 3));),
    });
    EXPECT_EQ(wideStreamed(w, t, s, m, w.left(1)), L"w\u00E9abcabcdefbuilderw");
    EXPECT_EQ(wideStreamed(ZGStr<char>("\xE9").left(1)), L"\u00E9"); // zero-extended
}

TEST(OneLineUses, ConvertToTheStandardLibrary)
{
    const ZGStr<char> s("abcdef");
    const ZMStr<char> m("builder");
    const ZStrToken<char> t = s.left(3);
    expectResults({
        USE("abc", return std::string(t);), USE("abc", return t;),
            USE("abc", std::string copy = t; return copy;), USE("abc", std::string copy{t}; return copy;),
            USE("abc", std::string copy; copy = std::string(t); return copy;),
            USE("abc", std::string_view view = t; return std::string(view);),
            USE("abc", std::string_view view; view = t; return std::string(view);),
            USE("abc", return takesString(t) + takesView(t).substr(3);),
            USE("xabc", return "x" + std::string(t);), USE("abcdef", return std::string(s);),
            USE("abcdef", std::string copy; copy = s; return copy;),
            USE("-abcdefbuilder", std::string copy = "-"; copy += s; copy += m; return copy;),
            USE("abcdef", return takesView(s);), USE("builder", return std::string(m);),
            USE("builder", std::string_view view(m); return std::string(view);),
            USE(std::string("a\0b", 3), return takesView(ZMStr<char>("a\0b", 3));),
            USE("", return takesView(ZGStr<char>()) + takesView(ZMStr<char>());),
            USE("", return std::string(ZStrToken<char>("x", -1));),
    });
    EXPECT_EQ(std::wstring(ZGStr<wchar_t>(L"wide").left(2)), L"wi");
}

TEST(OneLineUses, TakeStandardStringsAndViews)
{
    const std::string text = "text";
    const std::string_view view = std::string_view("a view").substr(2);
    ZGStr<char> s("abc");
    ZMStr<char> m("abc");
    expectResults({
        USE("text", ZGStr<char> made = text; return std::string(made);),
            USE("view", ZGStr<char> made(view); return std::string(made);),
            USE("text", ZMStr<char> made = text; return std::string(made);),
            USE("view", ZMStr<char> made{view}; return std::string(made);),
            USE("view", ZStrToken<char> made = view; return made;), USE("text", return takesToken(text);),
            USE("view", return takesToken(view);), USE("text", return takesOwned(text);),
            USE("text", s = text; return std::string(s);), USE("view", s = view; return std::string(s);),
            USE("text", m = text; return std::string(m);), USE("view", m = view; return std::string(m);),
            USE("viewtext", s = view; s += text; return std::string(s);),
            USE("viewtextview", m = view; m << text << view; return std::string(m);),
            USE("viewtext", return std::string(ZGStr<char>(view) + text);),
            USE("textview", return std::string(text + ZGStr<char>(view));),
            USE("viewtext", return std::string(ZMStr<char>(view) + text);),
            USE("textview", return std::string(text + ZMStr<char>(view));),
            USE("2", return std::to_string(ZGStr<char>("a text").indexOf(text));),
            USE("2", return std::to_string(ZGStr<char>("a,b").split(std::string(",")).Count());),
            USE("yes", return s == text || text == ZGStr<char>("text") ? "yes" : "no";),
            USE("yes", return view == ZGStr<char>("view") && ZMStr<char>("view") == view ? "yes" : "no";),
            USE("yes",
                return ZStrToken<char>("view") == view && text != ZStrToken<char>("x") ? "yes" : "no";),
            USE("yes", return ZGStr<char>("a") < text && text > ZMStr<char>("a") ? "yes" : "no";),
    });
    EXPECT_EQ(str(ZGStr<wchar_t>(std::wstring(L"wide")) += std::wstring_view(L"!")), "wide!");
    EXPECT_EQ(str(ZGStr<wchar_t>() << text << std::wstring(L"!")), "text!");
}

TEST(OneLineUses, PrependText)
{
    const ZGStr<char> s("abc");
    const ZMStr<char> m("abc");
    expectResults({
        USE("prefix abc", return std::string("prefix " + s);),
            USE("prefix abc", return std::string("prefix " + m);),
            USE("[abc]", return std::string('[' + s + ']');),
            USE("[abc]", return std::string('[' + m + ']');), USE("abcabc", return std::string(s + s);),
            USE("abcabc", return std::string(s + m);), USE("abcabc", return std::string(m + s);),
            USE("abcab", return std::string(s + s.left(2));), USE("abcd", return std::string(s + "d");),
    });
    EXPECT_EQ(str(L"wide " + ZGStr<wchar_t>(L"w")), "wide w");
}

TEST(OneLineUses, ConvertTheWidthByAssignmentAndPlus)
{
    ZGStr<wchar_t> wide;
    ZMStr<wchar_t> builder;
    ZGStr<char> narrow;
    wide = "narrow";
    EXPECT_EQ(wide, L"narrow");
    wide += " more";
    wide += ZGStr<char>(" text");
    wide += ZGStr<char>(" viewed").left(2);
    EXPECT_EQ(wide, L"narrow more text v");
    builder = "narrow";
    builder += ZMStr<char>("!");
    EXPECT_EQ(builder, L"narrow!");
    narrow = wide;
    narrow += L"?";
    EXPECT_EQ(narrow, "narrow more text v?");
    builder = std::string("std");
    EXPECT_EQ(builder, L"std");
    EXPECT_EQ(str(ZMStr<char>() << 2.5L << ZGStr<char>::valueOf(0.25L)), "2.50.25");
}

TEST(OneLineUses, WorkWithRangesAlgorithmsAndContainers)
{
    const ZGStr<char> s("banana");
    const ZMStr<char> m("banana");
    const ZStrToken<char> t = s.left(3);
    expectResults({
        USE(
            "b-a-n-", std::string out; for (const char c
                                            : t) {
                out += c;
                out += '-';
            } return out;),
            USE("3 3 1",
                return std::to_string(std::count(s.begin(), s.end(), 'a')) + ' '
                + std::to_string(std::count(m.begin(), m.end(), 'a')) + ' '
                + std::to_string(std::count(t.begin(), t.end(), 'a'));),
            USE("6 6 3",
                return std::to_string(s.size()) + ' ' + std::to_string(m.size()) + ' '
                + std::to_string(t.size());),
            USE("ban", return std::string(t.data(), t.size());),
            USE("banana", return std::string(s.begin(), s.end());),
            USE("n", return std::string(1, *std::max_element(m.begin(), m.end()));),
            USE("yes",
                return ZGStr<char>().empty() && ZMStr<char>().empty() && ZStrToken<char>().empty() ? "yes"
                                                                                                   : "no";),
            USE("no", return s.empty() || m.empty() || t.empty() ? "yes" : "no";),
            USE("0", return std::to_string(ZGStr<char>().size() + ZStrToken<char>("x", -1).size());),
            USE("1", std::unordered_set<ZGStr<char>> set; set.insert(s); set.insert(m);
                return std::to_string(set.size());),
            USE("7", std::unordered_map<ZGStr<char>, int> map; map["x"] = 7;
                return std::to_string(map["x"]);),
            USE("ab", std::map<ZGStr<char>, int> map; map["b"]; map["a"]; std::string keys;
                for (const auto& [key, value]
                     : map) keys += key;
                return keys;),
    });
    const std::hash<std::string_view> standard;
    EXPECT_EQ(std::hash<ZGStr<char>>()(s), standard("banana"));
    EXPECT_EQ(std::hash<ZMStr<char>>()(m), standard("banana"));
    EXPECT_EQ(std::hash<ZStrToken<char>>()(t), standard("ban"));
    EXPECT_EQ(std::hash<ZGStr<wchar_t>>()(L"w"), std::hash<std::wstring_view>()(L"w"));
}

// What must not compile

template <typename A, typename B>
concept Assignable = requires(A a, const B& b)
{
    a = b;
};
template <typename A, typename B>
concept PlusAssignable = requires(A a, const B& b)
{
    a += b;
};
template <typename A, typename B>
concept Addable = requires(const A& a, const B& b)
{
    a + b;
};
template <typename A, typename B>
concept Shiftable = requires(A& a, const B& b)
{
    a << b;
};
template <typename A, typename B>
concept Indexable = requires(const A& a, const B& b)
{
    a[b];
};
template <typename A, typename B>
concept Comparable = requires(const A& a, const B& b)
{
    a == b;
};

template <typename S>
class MustNotCompile : public ::testing::Test {
};
TYPED_TEST_SUITE(MustNotCompile, OwningClasses, TypeNames);

enum class Scoped { One };
enum Unscoped { One };

TYPED_TEST(MustNotCompile, WhatWouldTakeANumberForACharacter)
{
    using S = TypeParam;
    static_assert(!Addable<S, int> && !Addable<int, S> && !Addable<S, long> && !Addable<unsigned, S>);
    static_assert(!Addable<S, Unscoped> && !Addable<Unscoped, S> && !Addable<S, bool> && !Addable<bool, S>);
    static_assert(!Addable<S, double> && !Addable<double, S>);
    static_assert(!PlusAssignable<S, int> && !PlusAssignable<S, double> && !PlusAssignable<S, Unscoped>);
    static_assert(
        !Assignable<S, int> && !Assignable<S, double> && !Assignable<S, bool> && !Assignable<S, Unscoped>);
    static_assert(!std::is_convertible_v<int, S> && !std::is_convertible_v<Unscoped, S>);
}

TYPED_TEST(MustNotCompile, WhatHasNoSensibleMeaning)
{
    using S = TypeParam;
    static_assert(!Indexable<S, double> && !Indexable<S, float> && !Indexable<S, Scoped> && !Indexable<S, S>);
    static_assert(!Shiftable<S, Scoped> && !Shiftable<S, void*> && !Shiftable<S, S*>);
    static_assert(!Comparable<S, int> && !Comparable<S, double> && !Comparable<S, Scoped>);
    static_assert(!Assignable<const S, S> && !PlusAssignable<const S, S>);
}

TEST(MustNotCompileForTokens, WhatWouldTakeOnlyThePointer)
{
    static_assert(!Assignable<std::string, ZStrToken<char>> && !PlusAssignable<std::string, ZStrToken<char>>);
    static_assert(!Assignable<std::wstring, ZStrToken<wchar_t>>);
    static_assert(!Shiftable<std::ostream, ZGStr<wchar_t>> && !Shiftable<std::ostream, ZStrToken<wchar_t>>);
    static_assert(!Shiftable<std::ostream, ZMStr<wchar_t>>);
    static_assert(!Indexable<ZStrToken<char>, double> && !Indexable<ZStrToken<char>, Scoped>);
    static_assert(!Comparable<ZStrToken<char>, int> && !Comparable<ZGStr<char>, ZGStr<wchar_t>>);
    static_assert(!std::is_convertible_v<ZStrToken<wchar_t>, ZStrToken<char>>);
    static_assert(!std::is_convertible_v<ZGStr<wchar_t>, ZStrToken<char>>);
    static_assert(!std::is_convertible_v<std::wstring, ZGStr<char>>);
    static_assert(!std::is_convertible_v<ZGStr<wchar_t>, ZGStr<char>>);
}

} // namespace
