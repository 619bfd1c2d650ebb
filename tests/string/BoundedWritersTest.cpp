// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZGStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename T>
class BoundedWriters : public ::testing::Test {
protected:
    /// Runs a writer on an array that holds `text`, with guards on both sides.
    /// @return the resulting string, and the writer's result.
    template <typename Writer>
    static std::string written(const char* text, long capacity, Writer write)
    {
        std::basic_string<T> array(40, T('#'));
        const std::basic_string<T> before = wider<T>(text);
        T* start = array.data() + 8;
        std::copy(before.begin(), before.end(), start);
        start[before.size()] = 0;
        const long result = write(start, capacity);
        const auto end = 8 + std::max(static_cast<long>(before.size()) + 1, capacity);
        EXPECT_EQ(array.substr(0, 8), std::basic_string<T>(8, T('#')));
        EXPECT_EQ(array.find_first_not_of(T('#'), static_cast<std::size_t>(end)), std::basic_string<T>::npos);
        return str(static_cast<const T*>(start)).append(" ").append(std::to_string(result));
    }
};
TYPED_TEST_SUITE(BoundedWriters, Widths, TypeNames);

TYPED_TEST(BoundedWriters, CopyingStopsAtTheCapacity)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const auto copied = [this](long capacity, long length) {
        return this->written(
            "?", capacity, [=](T* to, long n) { return S::copyTo(to, n, lit<T>("abcde"), length); });
    };
    EXPECT_EQ(copied(6, 5), "abcde 5");
    EXPECT_EQ(copied(5, 5), "abcd 4");
    EXPECT_EQ(copied(9, 2), "ab 2");
    EXPECT_EQ(copied(1, 5), " 0");
    EXPECT_EQ(copied(9, 0), " 0");
    EXPECT_EQ(copied(9, -1), " 0");
    EXPECT_EQ(copied(0, 5), "? 0");
    EXPECT_EQ(copied(-1, 5), "? 0");
    EXPECT_EQ(
        this->written("?", 4, [](T* to, long n) { return S::copyTo(to, n, lit<T>("abcde")); }), "abc 3");
    EXPECT_EQ(this->written("?", 4, [](T* to, long n) { return S::copyTo(to, n, nullptr); }), " 0");
    EXPECT_EQ(this->written("?", 4, [](T* to, long n) { return S::copyTo(to, n, nullptr, 3); }), " 0");
}

TYPED_TEST(BoundedWriters, CopyingInReverseStartsWithTheLast)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const auto copied = [this](long capacity, long length) {
        return this->written(
            "?", capacity, [=](T* to, long n) { return S::copyToRev(to, n, lit<T>("abcde"), length); });
    };
    EXPECT_EQ(copied(9, 5), "edcba 5");
    EXPECT_EQ(copied(9, 3), "cba 3");
    EXPECT_EQ(copied(3, 5), "ed 2");
    EXPECT_EQ(copied(1, 5), " 0");
    EXPECT_EQ(copied(0, 5), "? 0");
    EXPECT_EQ(copied(5, -1), " 0");
    EXPECT_EQ(this->written("?", 9, [](T* to, long n) { return S::copyToRev(to, n, lit<T>("ab")); }), "ba 2");
    EXPECT_EQ(this->written("?", 9, [](T* to, long n) { return S::copyToRev(to, n, nullptr); }), " 0");
}

TYPED_TEST(BoundedWriters, ConcatenatingAppendsAtTheEnd)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const auto added = [this](const char* text, long capacity) {
        return this->written(text, capacity, [](T* to, long n) { return S::concatTo(to, n, lit<T>("xyz")); });
    };
    EXPECT_EQ(added("ab", 9), "abxyz 3");
    EXPECT_EQ(added("ab", 5), "abxy 2");
    EXPECT_EQ(added("ab", 3), "ab 0");
    EXPECT_EQ(added("abcd", 3), "ab 0"); // a text that was too long is cut
    EXPECT_EQ(added("ab", 0), "ab 0");
    EXPECT_EQ(this->written("ab", 9, [](T* to, long n) { return S::concatTo(to, n, nullptr); }), "ab 0");
}

TYPED_TEST(BoundedWriters, ConcatenatingAtAPositionCutsTheTextThere)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const auto added = [this](long capacity, long at, long length) {
        return this->written(
            "abcd", capacity, [=](T* to, long n) { return S::concatTo(to, n, at, lit<T>("xyz"), length); });
    };
    EXPECT_EQ(added(9, 4, 3), "abcdxyz 3");
    EXPECT_EQ(added(9, 2, 2), "abxy 2");
    EXPECT_EQ(added(9, 0, 3), "xyz 3");
    EXPECT_EQ(added(9, -5, 3), "xyz 3");
    EXPECT_EQ(added(5, 3, 3), "abcx 1");
    EXPECT_EQ(added(5, 9, 3), "abcd 0");
    EXPECT_EQ(added(9, 8, 3), "abcd 0");
    EXPECT_EQ(added(9, 2, 0), "ab 0");
    EXPECT_EQ(added(0, 2, 3), "abcd 0");
}

TYPED_TEST(BoundedWriters, JoiningFillsUpToTheCapacity)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const auto joined = [this](long capacity, long count) {
        const T* texts[]{lit<T>("ab"), nullptr, lit<T>("cde")};
        return this->written("?", capacity, [&](T* to, long n) { return S::joinTo(to, n, texts, count); });
    };
    EXPECT_EQ(joined(9, 3), "abcde 5");
    EXPECT_EQ(joined(6, 3), "abcde 5");
    EXPECT_EQ(joined(5, 3), "abcd 4");
    EXPECT_EQ(joined(2, 3), "a 1");
    EXPECT_EQ(joined(9, 1), "ab 2");
    EXPECT_EQ(joined(9, 0), " 0");
    EXPECT_EQ(joined(0, 3), "? 0");
}

TYPED_TEST(BoundedWriters, FillingLeavesSpaceForTheTerminator)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const auto filled = [this](long capacity) {
        return this->written("?", capacity, [](T* to, long n) { return S::fill(to, n, T('x')); });
    };
    EXPECT_EQ(filled(4), "xxx 3");
    EXPECT_EQ(filled(1), " 0");
    EXPECT_EQ(filled(0), "? 0");
    EXPECT_EQ(filled(-1), "? 0");
}

TYPED_TEST(BoundedWriters, ConcatenatingPastTheTextLeavesTheGapUnchanged)
{
    using T = TypeParam;
    auto array = wider<T>(std::string_view("ab\0??????", 9));
    EXPECT_EQ(ZGStr<T>::concatTo(array.data(), 9, 5, lit<T>("xyz"), 2), 2);
    EXPECT_EQ(array, wider<T>(std::string_view("ab\0??xy\0?", 9)));
    EXPECT_EQ(ZGStr<T>::concatTo(array.data(), 9, 8, lit<T>("xyz"), 2), 0);
    EXPECT_EQ(array, wider<T>(std::string_view("ab\0??xy\0\0", 9)));
}

} // namespace
