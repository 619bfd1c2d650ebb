// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"

#include "ZSpace/core/ZException.h"
#include "tests/string/StringTestSupport.h"
#include "tests/support/AllocationFaults.h"
#include "tests/support/Probes.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <type_traits>
#include <utility>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class ZMStrTest : public ::testing::Test {
};
TYPED_TEST_SUITE(ZMStrTest, Widths, TypeNames);

TYPED_TEST(ZMStrTest, ABuilderIsBufferCapacityAndLength)
{
    using T = TypeParam;
    static_assert(sizeof(ZMStr<T>) == 24 && std::is_standard_layout_v<ZMStr<T>>);
    const ZMStr<T> builder(lit<T>("abc"));
    EXPECT_EQ(wordAt(&builder, 0), asWord(static_cast<const T*>(builder)));
    EXPECT_EQ(wordAt(&builder, 1), 4U);
    EXPECT_EQ(wordAt(&builder, 2), 3U);
}

TYPED_TEST(ZMStrTest, ADefaultBuilderHasNothing)
{
    const ZMStr<TypeParam> builder;
    EXPECT_EQ(static_cast<const TypeParam*>(builder), nullptr);
    EXPECT_EQ(builder.Capacity(), 0);
    EXPECT_EQ(builder.Length(), 0);
    EXPECT_TRUE(builder.isEmpty() && !builder);
}

TYPED_TEST(ZMStrTest, ACapacityIsReservedWithoutText)
{
    using T = TypeParam;
    const ZMStr<T> builder(40);
    EXPECT_EQ(builder.Capacity(), 41);
    EXPECT_EQ(builder.Length(), 0);
    EXPECT_EQ(static_cast<const T*>(builder)[0], T(0));
    EXPECT_EQ(ZMStr<T>(0).Capacity(), 1);
    EXPECT_EQ(ZMStr<T>(-7).Capacity(), 1);
    EXPECT_EQ(ZMStr<T>(5L).Capacity(), 6);
    EXPECT_EQ(ZMStr<T>(std::size_t{5}).Capacity(), 6);
}

TYPED_TEST(ZMStrTest, ThirtyEightCharactersFitIntoForty)
{
    using T = TypeParam;
    ZMStr<T> builder(40);
    const T* buffer = builder;
    for (int i = 0; i < 38; ++i)
        builder.append(T('x'));
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 41);
    ZMStr<T> atOnce(40);
    buffer = atOnce;
    atOnce.append(lit<T>(std::string(38, 'x')));
    EXPECT_EQ(static_cast<const T*>(atOnce), buffer);
    EXPECT_EQ(atOnce.append(T('x')).Capacity(), 41);
    EXPECT_EQ(atOnce.append(T('x')).Capacity(), 41 + 1 + 20 + 1);
    EXPECT_EQ(atOnce.Length(), 40);
}

TYPED_TEST(ZMStrTest, CopiesHaveNoSpareCapacity)
{
    using T = TypeParam;
    ZMStr<T> roomy(40);
    roomy << lit<T>("abc");
    for (const ZMStr<T>& copy : {ZMStr<T>(lit<T>("abc")), ZMStr<T>(lit<T>("abcd"), 3), ZMStr<T>(roomy),
             ZMStr<T>(ZStrToken<T>(lit<T>("abc"))), ZMStr<T>(ZGStr<T>(lit<T>("abc")))}) {
        EXPECT_EQ(str(copy), "abc");
        EXPECT_EQ(copy.Length(), 3);
        EXPECT_EQ(copy.Capacity(), 4);
        EXPECT_NE(static_cast<const T*>(copy), static_cast<const T*>(roomy));
    }
}

TYPED_TEST(ZMStrTest, ACopyOfAnEmptyStringHasACapacityOfOneAndNoBuffer)
{
    using T = TypeParam;
    const T* zeroFirst = lit<T>(std::string_view("\0ab", 3));
    for (const ZMStr<T>& copy :
        {ZMStr<T>(static_cast<const T*>(nullptr)), ZMStr<T>(lit<T>("")), ZMStr<T>(lit<T>("abc"), 0),
            ZMStr<T>(lit<T>("abc"), -1), ZMStr<T>(nullptr, 3), ZMStr<T>(ZStrToken<T>()), ZMStr<T>(ZGStr<T>()),
            ZMStr<T>(ZMStr<T>(40).append(lit<T>(""))), ZMStr<T>(zeroFirst, 3)}) {
        EXPECT_EQ(static_cast<const T*>(copy), nullptr);
        EXPECT_EQ(copy.Capacity(), 1);
        EXPECT_EQ(copy.Length(), 0);
    }
}

TYPED_TEST(ZMStrTest, ZerosWithinAGivenLengthAreKept)
{
    using T = TypeParam;
    const ZMStr<T> builder(lit<T>(std::string_view("a\0b", 3)), 3);
    EXPECT_EQ(builder.Length(), 3);
    EXPECT_EQ(str(builder), std::string("a\0b", 3));
    EXPECT_EQ(str(ZMStr<T>(builder)), std::string("a\0b", 3));
}

TYPED_TEST(ZMStrTest, CopiesOfABuilderKeepAZeroAtTheStart)
{
    using T = TypeParam;
    using Other = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;
    const std::string content("\0a\0", 3);
    ZMStr<T> builder;
    builder.append(lit<T>(content), 3);
    EXPECT_EQ(str(ZMStr<T>(builder)), content);
    EXPECT_EQ(ZMStr<T>(builder).Capacity(), 4);
    EXPECT_EQ(str(ZMStr<Other>(builder)), content);
    ZMStr<T> assigned(lit<T>("old"));
    EXPECT_EQ(str(assigned = builder), content);
    EXPECT_EQ(str(builder.concat(builder)), content + content);
    EXPECT_EQ(str(builder(0, 3).toUpper()), std::string("\0A\0", 3));
    EXPECT_EQ(str(builder(0, 3).toLower()), content);
    EXPECT_EQ(listed(builder.split(T('x'))), (Texts{content}));
    EXPECT_EQ(listed(builder.split(T('a'))), (Texts{std::string(1, '\0'), std::string(1, '\0')}));
    T* const cloned = builder.clone();
    EXPECT_EQ(std::basic_string<T>(cloned, 4), wider<T>(std::string_view("\0a\0\0", 4)));
    ZGStr<T>::release(cloned);
}

TYPED_TEST(ZMStrTest, CharactersOfEitherWidthThatStartWithAZeroAreEmpty)
{
    using T = TypeParam;
    using Other = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;
    const Other* other = lit<Other>(std::string_view("\0ab", 3));
    for (const ZMStr<T>& builder : {ZMStr<T>(other, 3), ZMStr<T>(ZStrToken<Other>(other, 3)), ZMStr<T>(other),
             ZMStr<T>(other, -1), ZMStr<T>(static_cast<const Other*>(nullptr)), ZMStr<T>(ZGStr<Other>()),
             ZMStr<T>(ZMStr<Other>()), ZMStr<T>(ZStrToken<Other>())}) {
        EXPECT_EQ(static_cast<const T*>(builder), nullptr);
        EXPECT_EQ(builder.Capacity(), 1);
        EXPECT_EQ(builder.Length(), 0);
    }
    EXPECT_EQ(ZMStr<T>(lit<Other>("abc")).Capacity(), 4);
    EXPECT_TRUE(ZGStr<T>(other, 3).isEmpty() && ZGStr<T>(ZStrToken<Other>(other, 3)).isEmpty());
}

TYPED_TEST(ZMStrTest, MovingTransfersTheBuffer)
{
    using T = TypeParam;
    ZMStr<T> source(40);
    source << lit<T>("abc");
    const T* buffer = source;
    ZMStr<T> target(std::move(source));
    ZMStr<T> assigned(lit<T>("old"));
    assigned = std::move(target);
    EXPECT_EQ(static_cast<const T*>(assigned), buffer);
    EXPECT_EQ(assigned.Capacity(), 41);
    EXPECT_EQ(str(assigned), "abc");
    EXPECT_EQ(target.Capacity() + target.Length() + source.Capacity() + source.Length(), 0); // NOLINT
}

// Conversions

TYPED_TEST(ZMStrTest, AssigningCopiesEveryKindOfText)
{
    using T = TypeParam;
    auto builder = builderOf<T>("old text", 20);
    const T* buffer = builder;
    EXPECT_EQ(str(builder = lit<T>("p")), "p");
    EXPECT_EQ(str(builder = lit<T>("pointer")), "pointer");
    EXPECT_EQ(str(builder = ZGStr<T>(lit<T>("string"))), "string");
    EXPECT_EQ(str(builder = ZStrToken<T>(lit<T>("tokens"), 5)), "token");
    const ZMStr<T> other(lit<T>("builder"));
    EXPECT_EQ(str(builder = other), "builder");
    EXPECT_EQ(str(builder.assign(lit<T>("abc"), 2)), "ab");
    EXPECT_EQ(str(builder.assign(ZStrToken<T>(lit<T>("xyz")))), "xyz");
    EXPECT_EQ(str(builder.assign(lit<T>("abc"), 0)), "");
    EXPECT_EQ(builder.Length(), 0);
    EXPECT_EQ(str(builder.assign(lit<T>(std::string_view("\0b", 2)), 2)), "");
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 20);
    ZMStr<T> none;
    none = lit<T>("");
    EXPECT_EQ(static_cast<const T*>(none), nullptr);
}

TYPED_TEST(ZMStrTest, AssigningItselfOrAPartOfItWorks)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abcdef"));
    const ZMStr<T>& same = builder;
    builder = same;
    EXPECT_EQ(str(builder), "abcdef");
    EXPECT_EQ(builder.Capacity(), 7);
    builder = builder.right(4);
    EXPECT_EQ(str(builder), "cdef");
    builder = ZMStr<T>(lit<T>("abc")); // exactly full, so that assigning moves
    builder = static_cast<const T*>(builder);
    EXPECT_EQ(str(builder), "abc");
}

TYPED_TEST(ZMStrTest, AppendingFewerThanOneCharacterDoesNothing)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    builder.append(lit<T>("x"), 0).append(lit<T>("x"), -1).append(lit<T>("")).append(nullptr, 3);
    builder.append(T('x'), 0).append(T('x'), -1).append(ZStrToken<T>());
    EXPECT_EQ(str(builder), "abc");
    EXPECT_EQ(builder.Capacity(), 4);
}

TYPED_TEST(ZMStrTest, AppendingItselfDoublesTheText)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    builder.append(builder);
    EXPECT_EQ(str(builder), "abcabc");
    builder.alloc(100);
    builder += builder;
    EXPECT_EQ(str(builder), "abcabcabcabc");
    ZMStr<T> full(lit<T>("xyz"));
    full.append(full[1]);
    full.append(full.at(-1), 5);
    EXPECT_EQ(str(full), "xyzyyyyyy");
    full.append(full.subString(1, 2));
    EXPECT_EQ(str(full), "xyzyyyyyyyz");
}

TYPED_TEST(ZMStrTest, ManyCopiesOfACharacterAreAppended)
{
    using T = TypeParam;
    ZMStr<T> builder;
    EXPECT_EQ(str(builder.append(T('a'), 3).append(T('b'), 1)), "aaab");
    EXPECT_EQ(builder.append(T('c'), 1000).Length(), 1004);
    EXPECT_EQ(builder.count(T('c')), 1000);
}

TYPED_TEST(ZMStrTest, ConcatenatingLeavesTheBuilderUnchanged)
{
    using T = TypeParam;
    const ZMStr<T> a(lit<T>("ab"));
    EXPECT_EQ(str(a + lit<T>("cd")) + str(a.concat(a)) + str(a), "abcdababab");
    EXPECT_EQ(str(ZMStr<T>() + ZMStr<T>()) + str(ZMStr<T>() + a), "ab");
    EXPECT_EQ(str(a + ZStrToken<T>(lit<T>("x"), -1)), "ab");
}

TYPED_TEST(ZMStrTest, StandardStringsPrecedeABuilder)
{
    using T = TypeParam;
    EXPECT_EQ(str(wider<T>("ab") + ZMStr<T>(lit<T>("cd"))), "abcd");
    EXPECT_EQ(str(lit<T>("ab") + ZMStr<T>(lit<T>("cd"))), "abcd");
    EXPECT_EQ(str(T('b') + ZMStr<T>(lit<T>("cd"))), "bcd");
}

TYPED_TEST(ZMStrTest, JoiningReplacesTheText)
{
    using T = TypeParam;
    const ZMStr<T> texts[]{
        ZMStr<T>(lit<T>("a")), ZMStr<T>(4), ZMStr<T>(lit<T>("bc")), ZMStr<T>(), ZMStr<T>(lit<T>("d"))};
    ZMStr<T> builder(lit<T>("old"));
    EXPECT_EQ(str(builder.join(texts, 3)), "abc");
    EXPECT_EQ(str(builder.join(texts)), "abc"); // ends at the one without a buffer
    EXPECT_EQ(str(builder.join(texts, 5)), "abcd");
    EXPECT_EQ(str(builder.join(texts, 0)), "");
    EXPECT_EQ(str(builder.join(nullptr)), "");
    ZMStr<T> own[]{ZMStr<T>(lit<T>("x")), ZMStr<T>(lit<T>("y"))};
    EXPECT_EQ(str(own[1].join(own, 2)), "xy");
}

TYPED_TEST(ZMStrTest, ACloneIsABareArray)
{
    using T = TypeParam;
    EXPECT_EQ(taken(ZMStr<T>(lit<T>("abc")).clone()), "abc");
    EXPECT_EQ(taken(ZMStr<T>().clone()), "");
}

TYPED_TEST(ZMStrTest, AStringCopiesTheBuildersText)
{
    using T = TypeParam;
    ZMStr<T> builder(24);
    builder << lit<T>("abc") << 1;
    EXPECT_EQ(str(ZGStr<T>(builder)), "abc1");
    ZGStr<T> text;
    text = builder;
    EXPECT_EQ(str(text), "abc1");
}

// Access

TYPED_TEST(ZMStrTest, IndicesCountFromBothEnds)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    EXPECT_EQ(builder.at(0), T('a'));
    EXPECT_EQ(builder.at(-1), T('c'));
    EXPECT_EQ(builder[-3], T('a'));
    builder.at(-1) = 'x';
    builder[0] = 'y';
    EXPECT_EQ(str(builder), "ybx");
    EXPECT_EQ(std::as_const(builder).at(1), T('b'));
    EXPECT_EQ(std::as_const(builder)[-1], T('x'));
}

TYPED_TEST(ZMStrTest, IndicesOutsideTheTextThrow)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>("abc"));
    const auto code = [](auto access) {
        try {
            access();
        } catch (ZException& e) {
            EXPECT_STREQ(e.what(), "Index out of range");
            return static_cast<int>(e.code());
        }
        return -1;
    };
    EXPECT_EQ(code([&] { builder.at(-4); }), 1);
    EXPECT_EQ(code([&] { builder.at(LONG_MIN); }), 1);
    EXPECT_EQ(code([&] { std::as_const(builder).at(-4); }), 1);
    EXPECT_EQ(code([&] { builder[-4]; }), 1);
    EXPECT_EQ(code([&] { builder.at(3); }), 0);
    EXPECT_EQ(code([&] { builder.at(LONG_MAX); }), 0);
    EXPECT_EQ(code([&] { std::as_const(builder)[3]; }), 0);
    EXPECT_EQ(code([] { ZMStr<T>().at(-1); }), 1);
    EXPECT_EQ(code([] { ZMStr<T>().at(0); }), 0);
    EXPECT_EQ(code([] { ZMStr<T>(9).at(0); }), 0);
}

TYPED_TEST(ZMStrTest, AnIndexIsTestedAgainstTheCharactersBeforeTheFirstZero)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>(std::string_view("a\0b", 3)), 3);
    EXPECT_EQ(builder.at(0), T('a'));
    EXPECT_THROW(builder.at(1), ZException);
    EXPECT_THROW(builder.at(2), ZException);
    EXPECT_THROW(builder.at(-1), ZException); // 2 from the front
    EXPECT_EQ(builder.at(-3), T('a'));
}

// The stored length

TYPED_TEST(ZMStrTest, EditingInPlaceKeepsTheStoredLength)
{
    using T = TypeParam;
    auto builder = builderOf<T>("  abcdef  ", 20);
    const T* buffer = builder;
    builder.lTrim();
    EXPECT_EQ(builder.Length(), 8);
    builder.rTrim();
    EXPECT_EQ(builder.Length(), 6);
    builder.remove(1, 2);
    EXPECT_EQ(builder.Length(), 4);
    builder.reverse().toUpper();
    EXPECT_EQ(str(builder), "FEDA");
    builder.append(T(' ')).trim();
    EXPECT_EQ(builder.Length(), 4);
    EXPECT_EQ(static_cast<const T*>(builder), buffer);
    EXPECT_EQ(builder.Capacity(), 20);
    builder.replace(lit<T>("E"), lit<T>("eee"));
    EXPECT_EQ(builder.Length(), 6);
    EXPECT_EQ(str(static_cast<const T*>(builder)), "FeeeDA");
    builder << 1;
    EXPECT_EQ(str(builder), "FeeeDA1");
}

TYPED_TEST(ZMStrTest, QueriesUseTheStoredLengthPastZeros)
{
    using T = TypeParam;
    ZMStr<T> builder(lit<T>(std::string_view("a\0b", 3)), 3);
    EXPECT_EQ(builder.indexOf(T('b')), 2);
    EXPECT_EQ(builder.count(T(0)), 1);
    EXPECT_EQ(builder.compare(lit<T>("a")), 2);
    builder.append(T('c'));
    EXPECT_EQ(builder.Length(), 4);
    EXPECT_EQ(str(builder.reverse()), std::string("cb\0a", 4));
}

TYPED_TEST(ZMStrTest, PiecesAreBuilders)
{
    using T = TypeParam;
    const ZMStr<T> builder(lit<T>("a,,bc"));
    const auto pieces = builder.split(T(','), -1);
    static_assert(
        std::is_same_v<decltype(builder.split(T(','), -1)), ZArray<ZMStr<T>, ZAllocation<ZMStr<T>>>>);
    ASSERT_EQ(pieces.Count(), 3);
    EXPECT_EQ(pieces[2].Capacity(), 3);
    EXPECT_EQ(static_cast<const T*>(pieces[1]), nullptr);
    EXPECT_EQ(pieces[1].Capacity(), 1);
}

TYPED_TEST(ZMStrTest, OperationsThatTerminateAreNoexcept)
{
    using T = TypeParam;
    ZMStr<T> m;
    const T* p = nullptr;
    static_assert(noexcept(m.append(p))&& noexcept(m.append(p, 1L))&& noexcept(m.append(T('x'), 1L)));
    static_assert(noexcept(m += p)&& noexcept(m + p)&& noexcept(m.concat(p))&& noexcept(m.join(&m, 1L)));
    static_assert(noexcept(m << p)&& noexcept(m << 1)&& noexcept(m << 1.5)&& noexcept(m.appendHexOf(1)));
    static_assert(noexcept(m.appendValueOf(1, 2, true))&& noexcept(m.appendValueOf(1.5, true)));
    static_assert(
        noexcept(m.insert(p, 1L, 1L))&& noexcept(m.fill(T('x'), 1L, 1L))&& noexcept(m.lFill(T('x'), 1L)));
    static_assert(
        !noexcept(ZMStr<T>(40)) && !noexcept(m.alloc(1)) && !noexcept(m = p) && !noexcept(m.getBuffer(1)));
}

} // namespace
