// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <string>
#include <utility>
#include <vector>

// Every operation that changes a string, with arguments that lie in the string itself. Sanitizers detect reads of the
// freed array; the results reveal reads of overwritten characters.

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename S>
class OwnParts : public ::testing::Test {
protected:
    using Char = typename CharOf<S>::type;
    using Change = std::function<void(S&)>;

    /// A string of exactly its length, so that growing reallocates, and for builders also one with spare
    /// capacity.
    static std::vector<S> holdersOf(const char* text)
    {
        std::vector<S> holders;
        holders.emplace_back(lit<Char>(text));
        if constexpr (std::is_same_v<S, ZMStr<Char>>) {
            holders.emplace_back(100);
            holders.back().append(lit<Char>(text));
        }
        return holders;
    }

    static void expectAfter(const char* expected, const Change& change)
    {
        for (S& holder : holdersOf("abcdef")) {
            change(holder);
            EXPECT_EQ(str(holder), expected);
        }
    }

    static const Char* pointerTo(const S& text, long at) { return static_cast<const Char*>(text) + at; }

    /// The hexadecimal digits of a run of the string's bytes.
    static std::string hexOf(const std::string& text)
    {
        std::string digits;
        for (const char c : text) {
            char unit[9];
            std::snprintf(
                unit, sizeof unit, sizeof(Char) == 1 ? "%02x" : "%02x000000", static_cast<unsigned>(c));
            digits += unit;
        }
        return digits;
    }
};
TYPED_TEST_SUITE(OwnParts, OwningClasses, TypeNames);

TYPED_TEST(OwnParts, AreAppended)
{
    using S = TypeParam;
    using T = typename CharOf<S>::type;
    this->expectAfter("abcdefabcdef", [](S& s) { s.append(s); });
    this->expectAfter("abcdefcdef", [&](S& s) { s.append(this->pointerTo(s, 2)); });
    this->expectAfter("abcdefcd", [&](S& s) { s.append(this->pointerTo(s, 2), 2); });
    this->expectAfter("abcdefef", [](S& s) { s.append(s.right(2)); });
    this->expectAfter("abcdeff", [](S& s) { s.append(s[5]); });
    this->expectAfter("abcdefabcdef", [](S& s) { s += s; });
    this->expectAfter("abcdefab", [](S& s) { s += s.left(2); });
    this->expectAfter("abcdefb", [](S& s) { s += s[1]; });
    this->expectAfter("abcdefabcdef", [](S& s) { s << s; });
    this->expectAfter("abcdefdef", [](S& s) { s << s.right(3); });
    this->expectAfter("abcdefc", [](S& s) { s << T(s[2]); });
    this->expectAfter("abcdefabcdef", [](S& s) { s = s + s; });
    this->expectAfter("abcdefbc", [](S& s) { s = s.concat(s.subString(1, 2)); });
    this->expectAfter("abcdefcd", [&](S& s) { s.appendValueOf(this->pointerTo(s, 2), 2); });
}

TYPED_TEST(OwnParts, AreAppendedUpToTheTerminator)
{
    using S = TypeParam;
    for (S& s : this->holdersOf("abc")) {
        s.append(this->pointerTo(s, 1), 3); // "bc" and the terminator
        EXPECT_EQ(std::string(str(s).c_str()), "abcbc");
        EXPECT_EQ(str(static_cast<const typename CharOf<S>::type*>(s) + 3), "bc");
    }
}

TYPED_TEST(OwnParts, AreAppendedAsHexadecimalBytes)
{
    using S = TypeParam;
    using T = typename CharOf<S>::type;
    constexpr long width = sizeof(T);
    this->expectAfter(("abcdef" + this->hexOf("abcdef")).c_str(),
        [&](S& s) { s.appendHexOf(this->pointerTo(s, 0), 6 * width); });
    this->expectAfter(("abcdef" + this->hexOf("ef")).c_str(),
        [&](S& s) { s.appendHexOf(this->pointerTo(s, 4), 2 * width); });
    this->expectAfter(("abcdef" + this->hexOf(std::string("ef\0", 3))).c_str(),
        [&](S& s) { s.appendHexOf(this->pointerTo(s, 4), 3 * width); });
}

TYPED_TEST(OwnParts, AreReadAsBytesOfTheOtherWidth)
{
    using S = TypeParam;
    using T = typename CharOf<S>::type;
    if constexpr (std::is_same_v<T, wchar_t>) {
        for (S& s : this->holdersOf("abc")) {
            s << reinterpret_cast<const char*>(this->pointerTo(s, 1));
            EXPECT_EQ(str(s), "abcb");
            s.appendValueOf(reinterpret_cast<const char*>(this->pointerTo(s, 0)), 5);
            EXPECT_EQ(str(s), std::string("abcba\0\0\0b", 9).substr(0, str(s).size()));
        }
    }
}

TYPED_TEST(OwnParts, AreAssigned)
{
    using S = TypeParam;
    this->expectAfter("abcdef", [](S& s) {
        const S& same = s;
        s = same;
    });
    this->expectAfter("abcdef", [](S& s) {
        S& same = s;
        s = std::move(same);
    });
    this->expectAfter("cdef", [&](S& s) { s = this->pointerTo(s, 2); });
    this->expectAfter("def", [](S& s) { s = s.right(3); });
    this->expectAfter("bcd", [&](S& s) { s.assign(this->pointerTo(s, 1), 3); });
    this->expectAfter("ab", [](S& s) { s.assign(s.left(2)); });
    this->expectAfter("abcdef", [](S& s) { s.swap(s); });
}

TYPED_TEST(OwnParts, AreReplaced)
{
    using S = TypeParam;
    this->expectAfter("abefef", [](S& s) { s.replace(s.subString(2, 2), s.right(2)); });
    this->expectAfter("abcdefbcdef", [](S& s) { s.replace(s.left(1), s); });
    this->expectAfter("abcdef", [](S& s) { s.replace(s, s); });
    this->expectAfter("fbcdef", [](S& s) { s.replace(s[0], s[5]); });
    this->expectAfter("cdef", [](S& s) { s.replaceEx(s.left(2), s.left(0)); });
}

TYPED_TEST(OwnParts, AreJoinedAndSplitAt)
{
    using S = TypeParam;
    using T = typename CharOf<S>::type;
    if constexpr (std::is_same_v<S, ZGStr<T>>) {
        this->expectAfter("abcdefcdef", [&](S& s) {
            const T* const texts[]{s, this->pointerTo(s, 2), nullptr};
            s.join(texts);
        });
        this->expectAfter("abcdeff", [&](S& s) {
            const T* const texts[]{this->pointerTo(s, 5), nullptr};
            s.joinFrom(texts);
        });
    } else {
        S texts[]{S(lit<T>("a")), S(lit<T>("b")), S(lit<T>("c"))};
        EXPECT_EQ(str(texts[1].join(texts, 3)), "abc");
    }
    const S s(lit<T>("a,b"));
    EXPECT_EQ(listed(s.split(s.subString(1, 1))), (Texts{"a", "b"}));
    EXPECT_EQ(listed(s.split(s[1])), (Texts{"a", "b"}));
}

TYPED_TEST(OwnParts, AreInsertedAndFilledWith)
{
    using S = TypeParam;
    using T = typename CharOf<S>::type;
    if constexpr (std::is_same_v<S, ZMStr<T>>) {
        this->expectAfter("abcdefabcdef", [](S& s) { s.insert(s, 0); });
        this->expectAfter("abcbcddef", [](S& s) { s.insert(s.subString(1, 3), 3); });
        this->expectAfter("abcdefef", [&](S& s) { s.insert(this->pointerTo(s, 4), 2, 6); });
        this->expectAfter("abcdefcccc", [](S& s) { s.append(s[2], 4); });
        this->expectAfter("bbbbabcdef", [](S& s) { s.lFill(s[1], 10); });
        this->expectAfter("abcdefffff", [](S& s) { s.rFill(s[5], 10); });
        this->expectAfter("abddddcdef", [](S& s) { s.fill(s[3], 10, 2); });
    }
}

} // namespace
