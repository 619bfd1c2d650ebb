// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZGStr.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <type_traits>
#include <utility>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class ZGStrTest : public ::testing::Test {
protected:
    /// The first `n` characters at the pointer, including zeros.
    static std::basic_string<T> raw(const ZGStr<T>& text, std::size_t n)
    {
        return std::basic_string<T>(static_cast<const T*>(text), n);
    }
};
TYPED_TEST_SUITE(ZGStrTest, Widths, TypeNames);

TYPED_TEST(ZGStrTest, AStringIsOnePointer)
{
    using S = ZGStr<TypeParam>;
    static_assert(sizeof(S) == sizeof(void*) && alignof(S) == alignof(void*));
    static_assert(std::is_standard_layout_v<S>);
    const S text(lit<TypeParam>("abc"));
    const TypeParam* held = nullptr;
    std::memcpy(&held, &text, sizeof held);
    EXPECT_EQ(held, static_cast<const TypeParam*>(text));
}

TYPED_TEST(ZGStrTest, ADefaultStringIsANullPointer)
{
    const ZGStr<TypeParam> text;
    EXPECT_EQ(static_cast<const TypeParam*>(text), nullptr);
    EXPECT_TRUE(text.isEmpty());
    EXPECT_EQ(text.length(), 0);
}

TYPED_TEST(ZGStrTest, AStringAssignedAnEmptyTextIsEmpty)
{
    using T = TypeParam;
    ZGStr<T> text;
    text = lit<T>("");
    EXPECT_TRUE(text.isEmpty() && !text);
    EXPECT_NE(static_cast<const T*>(text), nullptr);
    EXPECT_EQ(text.length(), 0);
    EXPECT_EQ(text, ZGStr<T>());
}

TYPED_TEST(ZGStrTest, IsConstructedFromEveryKindOfText)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(str(S(lit<T>("abc"))), "abc");
    EXPECT_EQ(str(S(lit<T>("abc"), 2)), "ab");
    EXPECT_EQ(str(S(ZStrToken<T>(lit<T>("abc"), 1))), "a");
    EXPECT_EQ(str(S(S(lit<T>("abc")))), "abc");
    EXPECT_EQ(str(S(ZMStr<T>(lit<T>("abc")))), "abc");
    EXPECT_TRUE(S(static_cast<const T*>(nullptr)).isEmpty());
    EXPECT_TRUE(S(nullptr, 3).isEmpty());
    EXPECT_TRUE(S(ZStrToken<T>()).isEmpty() && S(ZMStr<T>()).isEmpty() && S(S()).isEmpty());
}

TYPED_TEST(ZGStrTest, CopiesAreDeep)
{
    using T = TypeParam;
    ZGStr<T> original(lit<T>("abc"));
    ZGStr<T> copy(original);
    ZGStr<T> assigned;
    assigned = original;
    EXPECT_NE(static_cast<const T*>(copy), static_cast<const T*>(original));
    EXPECT_NE(static_cast<const T*>(assigned), static_cast<const T*>(original));
    original[0] = 'x';
    EXPECT_EQ(str(original) + str(copy) + str(assigned), "xbcabcabc");
}

TYPED_TEST(ZGStrTest, CopyingAnEmptyStringStillAllocatesAnArray)
{
    using T = TypeParam;
    const ZGStr<T> none;
    const ZGStr<T> copy(none); // NOLINT(performance-unnecessary-copy-initialization)
    EXPECT_NE(static_cast<const T*>(copy), nullptr);
    EXPECT_TRUE(copy.isEmpty());
}

TYPED_TEST(ZGStrTest, MovingTransfersTheArray)
{
    using T = TypeParam;
    ZGStr<T> source(lit<T>("abc"));
    const T* array = source;
    ZGStr<T> target(std::move(source));
    EXPECT_EQ(static_cast<const T*>(target), array);
    ZGStr<T> assigned(lit<T>("old"));
    assigned = std::move(target);
    EXPECT_EQ(static_cast<const T*>(assigned), array);
    EXPECT_TRUE(source.isEmpty() && target.isEmpty()); // NOLINT(bugprone-use-after-move)
    static_assert(
        std::is_nothrow_move_constructible_v<ZGStr<T>> && std::is_nothrow_move_assignable_v<ZGStr<T>>);
}

TYPED_TEST(ZGStrTest, AnExplicitLengthTestsOnlyTheFirstCharacter)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* zeroFirst = lit<T>(std::string_view("\0ab", 3));
    const T* zeroWithin = lit<T>(std::string_view("a\0b", 3));
    EXPECT_EQ(taken(S::copy(zeroFirst, 3)), "");
    T* copied = S::copy(zeroWithin, 3);
    EXPECT_EQ(std::basic_string<T>(copied, 4), wider<T>(std::string_view("a\0b\0", 4)));
    EXPECT_EQ(S::length(copied), 1);
    S::release(copied);

    for (const S& text : {S(zeroWithin, 3), S(ZStrToken<T>(zeroWithin, 3)), S(ZMStr<T>(zeroWithin, 3)),
             S().assign(zeroWithin, 3), S().assign(ZStrToken<T>(zeroWithin, 3))}) {
        EXPECT_EQ(str(text), "a");
    }
    EXPECT_EQ(this->raw(S(zeroWithin, 3), 4), wider<T>(std::string_view("a\0b\0", 4)));
    EXPECT_TRUE(S(zeroFirst, 3).isEmpty() && S(ZStrToken<T>(zeroFirst, 3)).isEmpty());
    EXPECT_TRUE(S().assign(zeroFirst, 3).isEmpty());
}

TYPED_TEST(ZGStrTest, ALengthBelowOneMakesTheEmptyString)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(taken(S::copy(lit<T>("abc"), 0)) + taken(S::copy(lit<T>("abc"), -1)), "");
    EXPECT_TRUE(S(lit<T>("abc"), 0).isEmpty() && S(lit<T>("abc"), LONG_MIN).isEmpty());
    EXPECT_TRUE(S(lit<T>("abc")).assign(lit<T>("x"), 0).isEmpty());
}

TYPED_TEST(ZGStrTest, StaticMakersReturnArraysToRelease)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_EQ(taken(S::copy(lit<T>("abc"))), "abc");
    EXPECT_EQ(taken(S::copy(nullptr)), "");
    EXPECT_EQ(taken(S::copy(nullptr, 4)), "");
    EXPECT_EQ(taken(S::clone(lit<T>("abc"))), "abc");
    EXPECT_EQ(taken(S::clone(lit<T>("abc"), 2)), "ab");
    EXPECT_EQ(taken(S(lit<T>("abc")).clone()), "abc");
    EXPECT_EQ(taken(S().clone()), "");
    EXPECT_EQ(taken(S::create(3, T('x'))), "xxx");
    EXPECT_EQ(taken(S::create(0, T('x'))) + taken(S::create(-3, T('x'))), "");
    S::release(nullptr);
}

TYPED_TEST(ZGStrTest, CreatingWritesAZeroAtBothEnds)
{
    using T = TypeParam;
    T* made = ZGStr<T>::create(5);
    EXPECT_EQ(made[0], T(0));
    EXPECT_EQ(made[5], T(0));
    made[6] = 'x'; // the spare element
    ZGStr<T>::release(made);
    T* none = ZGStr<T>::create(-5);
    EXPECT_EQ(none[0], T(0));
    none[1] = 'x';
    ZGStr<T>::release(none);
}

TYPED_TEST(ZGStrTest, AssigningToItselfChangesNothing)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    const ZGStr<T>& same = text;
    text = same;
    EXPECT_EQ(str(text), "abc");
    text = static_cast<const T*>(text);
    EXPECT_EQ(str(text), "abc");
    text = text.right(2);
    EXPECT_EQ(str(text), "bc");
    text.assign(text, 1);
    EXPECT_EQ(str(text), "b");
}

TYPED_TEST(ZGStrTest, SwappingExchangesAndClearingFrees)
{
    using T = TypeParam;
    ZGStr<T> a(lit<T>("a"));
    ZGStr<T> b;
    a.swap(b);
    EXPECT_EQ(str(a) + "|" + str(b), "|a");
    EXPECT_EQ(static_cast<const T*>(a), nullptr);
    b.clear();
    EXPECT_EQ(static_cast<const T*>(b), nullptr);
    b.clear();
    EXPECT_TRUE(b.isEmpty());
}

TYPED_TEST(ZGStrTest, GettingABufferDiscardsTheText)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    T* buffer = text.getBuffer(5);
    EXPECT_EQ(buffer, static_cast<const T*>(text));
    EXPECT_EQ(buffer[0], T(0));
    EXPECT_EQ(buffer[5], T(0));
    EXPECT_TRUE(text.isEmpty());
    for (int i = 0; i < 5; ++i)
        buffer[i] = static_cast<T>('v' + i);
    EXPECT_EQ(str(text), "vwxyz");
    EXPECT_EQ(text.getBuffer(0), buffer);
    EXPECT_EQ(text.getBuffer(-1), buffer);
    EXPECT_EQ(str(text), "vwxyz");
    EXPECT_EQ(ZGStr<T>().getBuffer(0), nullptr);
    EXPECT_NE(ZGStr<T>().getBuffer(1), nullptr);
    EXPECT_NE(text.getBuffer(1), nullptr);
    EXPECT_TRUE(text.isEmpty());
}

TYPED_TEST(ZGStrTest, AppendingFewerThanOneCharacterDoesNothing)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    const T* array = text;
    text.append(lit<T>("x"), 0).append(lit<T>("x"), -1).append(lit<T>("")).append(nullptr, 3);
    text.append(ZStrToken<T>()).append(ZStrToken<T>(lit<T>("x"), -1));
    text += lit<T>("");
    EXPECT_EQ(static_cast<const T*>(text), array);
    EXPECT_EQ(str(text), "abc");
    ZGStr<T> none;
    none.append(lit<T>(""));
    EXPECT_EQ(static_cast<const T*>(none), nullptr);
}

TYPED_TEST(ZGStrTest, AppendingItselfDoublesTheText)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    text.append(text);
    EXPECT_EQ(str(text), "abcabc");
    text += text.left(1);
    text.append(text[1]);
    EXPECT_EQ(str(text), "abcabcab");
    text << text;
    EXPECT_EQ(str(text), "abcabcababcabcab");
}

TYPED_TEST(ZGStrTest, ConcatenatingLeavesBothTextsUnchanged)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const S a(lit<T>("ab"));
    const S b(lit<T>("cd"));
    EXPECT_EQ(str(a + b) + str(a.concat(b)) + str(a) + str(b), "abcdabcdabcd");
    EXPECT_EQ(str(S() + S()) + str(S() + a) + str(a + S()), "abab");
    EXPECT_EQ(taken(S::concat(lit<T>("abc"), 2, lit<T>("def"), 1)), "abd");
    EXPECT_EQ(taken(S::concat(lit<T>("abc"), lit<T>("def"))), "abcdef");
    EXPECT_EQ(taken(S::concat(nullptr, lit<T>("def"))), "def");
    EXPECT_EQ(taken(S::concat(lit<T>("abc"), nullptr)), "abc");
    EXPECT_EQ(taken(S::concat(nullptr, nullptr)), "");
    EXPECT_EQ(taken(S::concat(lit<T>("abc"), -1, nullptr, 5)), "");
}

TYPED_TEST(ZGStrTest, JoiningReplacesTheTextWithoutSeparators)
{
    using T = TypeParam;
    const T* texts[]{lit<T>("a"), lit<T>(""), lit<T>("bc"), nullptr, lit<T>("d")};
    ZGStr<T> text(lit<T>("old"));
    EXPECT_EQ(str(text.join(texts, 3)), "abc");
    EXPECT_EQ(str(text.join(texts)), "abc");
    EXPECT_EQ(str(text.join(texts, 5)), "abcd"); // null counts as empty
    EXPECT_EQ(str(text.join(texts, 0)), "");
    EXPECT_EQ(str(text.join(texts, -1)), "");
    EXPECT_EQ(str(text.join(nullptr)), "");
    text = lit<T>("xy");
    const T* own[]{text, text, nullptr};
    EXPECT_EQ(str(text.join(own)), "xyxy");
}

TYPED_TEST(ZGStrTest, JoiningFromATextKeepsIt)
{
    using T = TypeParam;
    const T* texts[]{lit<T>("b"), lit<T>("c"), nullptr};
    ZGStr<T> text(lit<T>("a"));
    EXPECT_EQ(str(text.joinFrom(texts, 2)), "abc");
    EXPECT_EQ(str(text.joinFrom(texts)), "abcbc");
    EXPECT_EQ(str(ZGStr<T>().joinFrom(texts)), "bc");
    EXPECT_EQ(str(ZGStr<T>(lit<T>("")).joinFrom(texts)), "bc");
    EXPECT_EQ(taken(ZGStr<T>::joinFrom(lit<T>("xyz"), 2, texts, 2)), "xybc");
    EXPECT_EQ(taken(ZGStr<T>::joinFrom(nullptr, 2, texts, 1)), "b");
}

TYPED_TEST(ZGStrTest, IndicesCountFromBothEnds)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    EXPECT_EQ(text.at(0), T('a'));
    EXPECT_EQ(text.at(2), T('c'));
    EXPECT_EQ(text.at(-1), T('c'));
    EXPECT_EQ(text.at(-3), T('a'));
    EXPECT_EQ(ZGStr<T>::charAt(lit<T>("abc"), -2), T('b'));
    text.at(-1) = 'x';
    text[0] = 'y';
    EXPECT_EQ(str(text), "ybx");
    EXPECT_EQ(std::as_const(text).at(1), T('b'));
}

TYPED_TEST(ZGStrTest, IndicesOutsideTheTextThrow)
{
    using T = TypeParam;
    ZGStr<T> text(lit<T>("abc"));
    const auto fails = [](auto access) {
        try {
            access();
        } catch (ZException& e) {
            EXPECT_STREQ(e.what(), "Index out of range");
            EXPECT_EQ(e.code(), 0U);
            EXPECT_EQ(e.where(), nullptr);
            return true;
        }
        return false;
    };
    for (const long index : {3L, -4L, 4L, 99L, -99L, LONG_MAX, LONG_MIN}) {
        EXPECT_TRUE(fails([&] { text.at(index); })) << index;
        EXPECT_TRUE(fails([&] { std::as_const(text).at(index); })) << index;
        EXPECT_TRUE(fails([&] { text[index]; })) << index;
        EXPECT_TRUE(fails([&] { std::as_const(text)[index]; })) << index;
        EXPECT_TRUE(fails([&] { ZGStr<T>::charAt(lit<T>("abc"), index); })) << index;
    }
    EXPECT_TRUE(fails([] { ZGStr<T>().at(0); }));
    EXPECT_TRUE(fails([] { ZGStr<T>().at(-1); }));
    EXPECT_TRUE(fails([] { ZGStr<T>(lit<T>("")).at(0); }));
    EXPECT_TRUE(fails([] { ZGStr<T>::charAt(static_cast<const T*>(nullptr), 0); }));
    static_assert(std::is_base_of_v<std::exception, ZException>);
}

TYPED_TEST(ZGStrTest, LengthsAreCounted)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    S text(lit<T>("abcdef"));
    EXPECT_EQ(text.length(), 6);
    text[2] = 0;
    EXPECT_EQ(text.length(), 2);
    EXPECT_EQ(S::length(lit<T>("abc")), 3);
    EXPECT_EQ(S::length(nullptr), 0);
    EXPECT_EQ(S::length(lit<T>("abc"), 2), 2);
    EXPECT_EQ(S::length(lit<T>("abc"), 9), 3);
    EXPECT_EQ(S::length(lit<T>("abc"), 0), 0);
    EXPECT_EQ(S::length(lit<T>("abc"), -1), 3);
    EXPECT_EQ(S::length(nullptr, 9), 0);
}

TYPED_TEST(ZGStrTest, TheLineBreakIsCarriageReturnAndLineFeed)
{
    ZGStr<TypeParam> text(lit<TypeParam>("a"));
    text << ZGStr<TypeParam>::s_lineBreak;
    EXPECT_EQ(str(text), "a\r\n");
}

TYPED_TEST(ZGStrTest, OperationsThatTerminateAreNoexcept)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    S s;
    const T* p = nullptr;
    static_assert(noexcept(s.append(p))&& noexcept(s.append(p, 1L))&& noexcept(s += p)&& noexcept(s + p));
    static_assert(noexcept(s.concat(p))&& noexcept(S::concat(p, p))&& noexcept(S::concat(p, 1L, p, 1L)));
    static_assert(noexcept(s.join(&p, 1L))&& noexcept(s << p)&& noexcept(s << 1)&& noexcept(s << 1.5));
    static_assert(noexcept(s.appendValueOf(1, true))&& noexcept(s.appendValueOf(1.5, true)));
    static_assert(noexcept(s.appendValueOf(true, true))&& noexcept(s.appendHexOf(1)));
    static_assert(noexcept(S::valueOf(1, true))&& noexcept(S::hexOf(1))&& noexcept(S::hexOf(p, 1L)));
    static_assert(!noexcept(S(p)) && !noexcept(s = p) && !noexcept(S::copy(p)) && !noexcept(s.getBuffer(1L)));
}

} // namespace
