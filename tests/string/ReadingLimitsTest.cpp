// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <string_view>
#include <sys/mman.h>
#include <type_traits>
#include <unistd.h>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

/// Characters without a terminator at the very end of a page. The next page cannot be read, so that reading one character
/// too many crashes in every build.
template <typename T>
class CharsAtPageEnd {
public:
    explicit CharsAtPageEnd(std::string_view text)
    {
        void* const pages =
            mmap(nullptr, 2 * m_pageSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
        if (pages == MAP_FAILED)
            throw std::bad_alloc();
        m_pages = static_cast<unsigned char*>(pages);
        EXPECT_EQ(mprotect(m_pages + m_pageSize, m_pageSize, PROT_NONE), 0);
        const auto chars = wider<T>(text);
        m_text = reinterpret_cast<T*>(m_pages + m_pageSize) - chars.size();
        std::copy(chars.begin(), chars.end(), m_text);
    }
    CharsAtPageEnd(const CharsAtPageEnd&) = delete;
    CharsAtPageEnd& operator=(const CharsAtPageEnd&) = delete;
    ~CharsAtPageEnd() { munmap(m_pages, 2 * m_pageSize); }

    operator const T*() const noexcept { return m_text; }

private:
    std::size_t m_pageSize = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    unsigned char* m_pages = nullptr;
    T* m_text = nullptr;
};

template <typename T>
class ReadingLimits : public ::testing::Test {
};
TYPED_TEST_SUITE(ReadingLimits, Widths, TypeNames);

TYPED_TEST(ReadingLimits, HexadecimalNumbersEndWithTheirLastDigit)
{
    using S = ZGStr<TypeParam>;
    using Chars = CharsAtPageEnd<TypeParam>;
    EXPECT_EQ(S::hexToUInt8(Chars("1f")), 0x1F);
    EXPECT_EQ(S::hexToUInt16(Chars("1f2e")), 0x1F2E);
    EXPECT_EQ(S::hexToUInt32(Chars("1f2e3d4c")), 0x1F2E3D4CU);
    EXPECT_EQ(S::hexToUInt64(Chars("1f2e3d4c5b6a7988")), 0x1F2E3D4C5B6A7988U);
}

TYPED_TEST(ReadingLimits, NothingIsReadForALengthOfZero)
{
    using T = TypeParam;
    const CharsAtPageEnd<T> nothing("");
    EXPECT_TRUE(ZGStr<T>(nothing, 0).isEmpty() && ZMStr<T>(nothing, 0).isEmpty());
    EXPECT_EQ(taken(ZGStr<T>::copy(nothing, 0)), "");
    EXPECT_EQ(str(ZMStr<T>(lit<T>("a")).append(nothing, 0).insert(nothing, 0, 0)), "a");
    EXPECT_EQ(str(ZGStr<T>(lit<T>("a")).append(nothing, 0)), "a");
    EXPECT_EQ(ZGStr<T>::compare(nothing, 0, nothing, 0), 0);
}

TYPED_TEST(ReadingLimits, ConversionsEndWithTheLastCharacter)
{
    using T = TypeParam;
    using Other = std::conditional_t<std::is_same_v<T, char>, wchar_t, char>;
    const CharsAtPageEnd<Other> text("abc");
    EXPECT_EQ(str(ZGStr<T>::valueOf(static_cast<const Other*>(text), 3)), "abc");
    EXPECT_EQ(str(ZMStr<T>().appendValueOf(static_cast<const Other*>(text), 3)), "abc");
}

TYPED_TEST(ReadingLimits, RangesEndWithTheirLastCharacter)
{
    using S = ZGStr<TypeParam>;
    const CharsAtPageEnd<TypeParam> text("abc");
    EXPECT_EQ(S::compareRange(text, lit<TypeParam>("abd"), 3), -1);
    EXPECT_EQ(S::compareRangeIgnoreCase(lit<TypeParam>("ABC"), text, 3), 0);
    EXPECT_EQ(str(S(text, 3)), "abc");
    EXPECT_EQ(S::indexOf(text, 3, lit<TypeParam>("cd"), 0), -1);
    EXPECT_EQ(S::toInt32(text, 3), 0);
}

TYPED_TEST(ReadingLimits, SearchesEndWithTheLastCharacter)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const CharsAtPageEnd<T> text("aaaa");
    for (long from = 0; from < 4; ++from) {
        EXPECT_EQ(S::s_verify(text, 4, T('a'), from), -1);
        EXPECT_EQ(S::s_verify(text, 4, lit<T>("ba"), from), -1);
        EXPECT_EQ(S::indexOf(text, 4, T('b'), from), -1);
        EXPECT_EQ(S::indexOf(text, 4, lit<T>("ab"), from), -1);
        EXPECT_EQ(S::lastIndexOf(text, 4, T('b'), from), -1);
        EXPECT_EQ(S::lastIndexOf(text, 4, lit<T>("ab"), from), -1);
    }
    EXPECT_EQ(S::count(text, 4, T('a')) + S::count(text, 4, lit<T>("aa")), 4 + 2);
    EXPECT_EQ(S::stripIndexOf(text, 4, lit<T>("a")), 4);
}

} // namespace
