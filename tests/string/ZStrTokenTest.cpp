// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZStrToken.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"
#include "tests/support/AllocationFaults.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <type_traits>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class ZStrTokenTest : public ::testing::Test {
};
TYPED_TEST_SUITE(ZStrTokenTest, Widths, TypeNames);

TYPED_TEST(ZStrTokenTest, ATokenIsAPointerAndALength)
{
    using T = TypeParam;
    static_assert(sizeof(ZStrToken<T>) == 16 && std::is_standard_layout_v<ZStrToken<T>>);
    static_assert(
        std::is_trivially_copyable_v<ZStrToken<T>> && std::is_trivially_destructible_v<ZStrToken<T>>);
    const ZStrToken<T> view(lit<T>("abc"), 2);
    const T* pointer = nullptr;
    long length = 0;
    std::memcpy(&pointer, &view, sizeof pointer);
    std::memcpy(&length, reinterpret_cast<const char*>(&view) + sizeof pointer, sizeof length);
    EXPECT_EQ(pointer, lit<T>("abc"));
    EXPECT_EQ(length, 2);
}

TYPED_TEST(ZStrTokenTest, ItViewsEveryKindOfText)
{
    using T = TypeParam;
    using V = ZStrToken<T>;
    const ZGStr<T> string(lit<T>("string"));
    const ZMStr<T> builder(lit<T>("builder"));
    const T* text = lit<T>("text");

    EXPECT_EQ(V().Length(), 0);
    EXPECT_EQ(static_cast<const T*>(V()), nullptr);
    EXPECT_EQ(V(text).Length(), 4);
    EXPECT_EQ(static_cast<const T*>(V(text)), text);
    EXPECT_EQ(V(text, 2).Length(), 2);
    EXPECT_EQ(V(string).Length(), 6);
    EXPECT_EQ(static_cast<const T*>(V(string)), static_cast<const T*>(string));
    EXPECT_EQ(V(builder).Length(), 7);
    EXPECT_EQ(static_cast<const T*>(V(builder)), static_cast<const T*>(builder));
    EXPECT_EQ(V(static_cast<const T*>(nullptr)).Length(), 0);
    EXPECT_EQ(V(ZGStr<T>()).Length() + V(ZMStr<T>()).Length(), 0);
    V copy = V(text, 3);
    EXPECT_EQ(str(copy), "tex");
}

TYPED_TEST(ZStrTokenTest, ABuilderIsViewedInItsStoredLength)
{
    using T = TypeParam;
    const ZMStr<T> builder(lit<T>(std::string_view("a\0b", 3)), 3);
    EXPECT_EQ(ZStrToken<T>(builder).Length(), 3);
    EXPECT_EQ(ZStrToken<T>(ZGStr<T>(builder)).Length(), 1);
}

TYPED_TEST(ZStrTokenTest, AssigningTakesTheSameKindsOfText)
{
    using T = TypeParam;
    const ZGStr<T> string(lit<T>("string"));
    const ZMStr<T> builder(lit<T>("builder"));
    ZStrToken<T> view;
    EXPECT_EQ(str(view.assign(lit<T>("text"))), "text");
    EXPECT_EQ(str(view.assign(lit<T>("text"), 2)), "te");
    EXPECT_EQ(str(view.assign(string)), "string");
    EXPECT_EQ(str(view.assign(builder)), "builder");
    EXPECT_EQ(str(view.assign(ZStrToken<T>(lit<T>("view"), 1))), "v");
    EXPECT_EQ(str(view = lit<T>("text")), "text");
    EXPECT_EQ(str(view = string), "string");
    EXPECT_EQ(str(view = builder), "builder");
    EXPECT_EQ(static_cast<const T*>(view), static_cast<const T*>(builder));
}

TYPED_TEST(ZStrTokenTest, ANullTokenEqualsAnEmptyOne)
{
    using T = TypeParam;
    EXPECT_TRUE(ZStrToken<T>(static_cast<const T*>(nullptr)) == ZStrToken<T>(lit<T>("")));
    EXPECT_TRUE(!ZStrToken<T>() && !ZStrToken<T>(lit<T>("a"), 0) && !ZStrToken<T>(lit<T>("a"), -1));
    EXPECT_FALSE(!ZStrToken<T>(lit<T>("a")));
}

TYPED_TEST(ZStrTokenTest, IndicesCountFromTheFrontOnly)
{
    using T = TypeParam;
    const ZStrToken<T> view(lit<T>("abcd"), 3);
    EXPECT_EQ(view.at(0), T('a'));
    EXPECT_EQ(view.at(2), T('c'));
    EXPECT_EQ(view[1], T('b'));
    EXPECT_EQ(*view, T('a'));
    EXPECT_EQ(*ZStrToken<T>(), T(0));
    const auto fails = [](auto access) {
        try {
            access();
        } catch (ZException& e) {
            EXPECT_STREQ(e.what(), "Index out of Array");
            return true;
        }
        return false;
    };
    for (const long index : {3L, -1L, 99L, LONG_MAX, LONG_MIN}) {
        EXPECT_TRUE(fails([&] { view.at(index); })) << index;
        EXPECT_TRUE(fails([&] { view[index]; })) << index;
    }
    EXPECT_TRUE(fails([] { ZStrToken<T>().at(0); }));
}

TYPED_TEST(ZStrTokenTest, CaseChangesReturnANewBuilder)
{
    using T = TypeParam;
    const T* source = lit<T>("abcDEF");
    const ZStrToken<T> view(source, 3);
    const ZMStr<T> upper = view.toUpper();
    EXPECT_EQ(str(upper), "ABC");
    EXPECT_EQ(upper.Length(), 3);
    EXPECT_EQ(str(ZStrToken<T>(source + 2, 4).toLower()), "cdef");
    EXPECT_EQ(str(source), "abcDEF");
    EXPECT_EQ(str(view), "abc");
    EXPECT_TRUE(ZStrToken<T>().toUpper().isEmpty() && ZStrToken<T>().toLower().isEmpty());
}

TYPED_TEST(ZStrTokenTest, SplittingReturnsNoPieces)
{
    using T = TypeParam;
    const ZStrToken<T> view(lit<T>("a,b"));
    EXPECT_EQ(view.split(T(','), -1).Count(), 0);
    EXPECT_EQ(view.split(T(',')).Count(), 0);
    EXPECT_EQ(view.split(ZStrToken<T>(lit<T>(",")), 2).Count(), 0);
    EXPECT_EQ(view.split(lit<T>(","), 2).Count(), 0);
    static_assert(
        std::is_same_v<decltype(view.split(T(','))), ZArray<ZStrToken<T>, ZAllocation<ZStrToken<T>>>>);
}

TYPED_TEST(ZStrTokenTest, AViewNeverAllocates)
{
    using T = TypeParam;
    const T* text = lit<T>("-123,abc,ABC");
    const T* comma = lit<T>(",");
    const long before = allocationsMade();
    ZStrToken<T> view(text);
    const ZStrToken<T> part = view.subString(view.indexOf(comma) + 1, 3);
    keep(&part);
    const long sum = view.toInt32() + view.count(T(',')) + part.compareIgnoreCase(view.right(3))
        + view.split(T(',')).Count();
    view = part;
    EXPECT_EQ(allocationsMade(), before);
    EXPECT_EQ(sum, -123 + 2);
}

TYPED_TEST(ZStrTokenTest, AnEmptyViewIsNotRead)
{
    using T = TypeParam;
    const std::unique_ptr<T[]> nothing(new T[0]); // a sanitizer detects any read
    const ZStrToken<T> view(nothing.get(), 0);
    ZGStr<T> string(view);
    ZMStr<T> builder(view);
    string = view;
    builder = view;
    string << view;
    builder << view;
    string.replace(view, view);
    builder.insert(view, 0);
    EXPECT_TRUE(string.isEmpty() && builder.isEmpty() && view.toLower().isEmpty());
    EXPECT_TRUE(view == lit<T>("") && string == view && builder == view);
    EXPECT_EQ(view.toInt32() + view.compareIgnoreCase(view) + string.split(view).Count(), 0);
    EXPECT_EQ(*view, T(0));
    EXPECT_FALSE(view.isAlpha());
}

TYPED_TEST(ZStrTokenTest, ANegativeLengthIsAnEmptyView)
{
    using T = TypeParam;
    const ZStrToken<T> view(lit<T>("abc"), -2);
    EXPECT_EQ(view.Length(), -2);
    EXPECT_TRUE(view.isEmpty());
    EXPECT_EQ(view.compare(lit<T>("ab")), -4);
    EXPECT_EQ(view.indexOf(T('a')), -1);
    EXPECT_EQ(view.lastIndexOf(T('a')), -1);
    EXPECT_EQ(view.count(T('a')), 0);
    EXPECT_EQ(view.s_verify(T('b')), -1);
    EXPECT_EQ(str(view.left(2)) + str(view.right(2)) + str(view.subString(0, 2)), "");
    EXPECT_EQ(view.toInt32(), 0);
    EXPECT_FALSE(view.isAlpha());
    EXPECT_TRUE(view == lit<T>(""));
    EXPECT_TRUE(ZGStr<T>(view).isEmpty() && ZMStr<T>(view).isEmpty() && view.toUpper().isEmpty());
    EXPECT_EQ(listed(ZGStr<T>::split(view, view.Length(), T(','), -1)), (Texts{""}));
    EXPECT_EQ(str((ZMStr<T>(lit<T>("x")) << view) + view), "x");
}

} // namespace
