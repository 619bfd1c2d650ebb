// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/core/ZException.h"
#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <cstdint>
#include <string>

// Every overload set with every integer type. `int64_t` and `size_t` are different types on different hosts: a call
// must compile and mean the same whichever of `long` and `long long` they are.

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

enum Unscoped { Two = 2, Beyond = 99 };
enum UnscopedByte : unsigned char { ByteTwo = 2 };
struct ConvertsToInt {
    operator int() const { return 2; } // NOLINT(google-explicit-constructor)
};

template <typename I>
class IntegerTypes : public ::testing::Test {
protected:
    /// The hexadecimal digits of a 2 of this type.
    static std::string hexOfTwo()
    {
        const std::size_t digits = 2
            * (std::is_same_v<I, Unscoped>            ? sizeof(int)
                    : std::is_same_v<I, UnscopedByte> ? sizeof(int)
                                                      : sizeof(I));
        return std::string(digits - 1, '0') + "2";
    }
};
using Integers = ::testing::Types<signed char, short, int, long, long long, unsigned char, unsigned short,
    unsigned int, unsigned long, unsigned long long, std::int8_t, std::int16_t, std::int32_t, std::int64_t,
    std::uint8_t, std::uint16_t, std::uint32_t, std::uint64_t, std::size_t, std::ptrdiff_t, std::intmax_t,
    std::uintmax_t, std::uintptr_t, Unscoped, UnscopedByte>;
TYPED_TEST_SUITE(IntegerTypes, Integers);

template <typename I, template <typename> class S, typename T>
void expectOutput(const std::string& hex)
{
    constexpr I two = static_cast<I>(2);
    S<T> out;
    out << two;
    out.appendValueOf(two).appendValueOf(two, true).appendValueOf(two, false).appendHexOf(two);
    EXPECT_EQ(str(out), "2222" + hex);
}

TYPED_TEST(IntegerTypes, PrintInDecimalAndHexadecimal)
{
    using I = TypeParam;
    constexpr I two = static_cast<I>(2);
    const std::string hex = this->hexOfTwo();
    expectOutput<I, ZGStr, char>(hex);
    expectOutput<I, ZGStr, wchar_t>(hex);
    expectOutput<I, ZMStr, char>(hex);
    expectOutput<I, ZMStr, wchar_t>(hex);
    EXPECT_EQ(str(ZGStr<char>::valueOf(two)) + str(ZGStr<wchar_t>::valueOf(two, true)), "22");
    EXPECT_EQ(str(ZGStr<char>::hexOf(two)) + str(ZGStr<wchar_t>::hexOf(two)), hex + hex);
    ZMStr<char> padded;
    padded.appendValueOf(two, 3).appendValueOf(2, two).appendValueOf(two, two, true);
    EXPECT_EQ(str(padded), "0020202");
}

TYPED_TEST(IntegerTypes, PrintIntoAnArrayOfTheSameWidth)
{
    constexpr TypeParam two = static_cast<TypeParam>(2);
    char narrow[20] = "untouched";
    wchar_t wide[20] = L"untouched";
    EXPECT_EQ(ZGStr<char>::hexOf(narrow, two), static_cast<long>(this->hexOfTwo().size()));
    EXPECT_EQ(ZGStr<wchar_t>::hexOf(wide, two), static_cast<long>(this->hexOfTwo().size()));
    EXPECT_EQ(str(static_cast<const char*>(narrow)), this->hexOfTwo());
    EXPECT_EQ(str(static_cast<const wchar_t*>(wide)), this->hexOfTwo());
}

TYPED_TEST(IntegerTypes, CountTheBytesAtAConstantPointer)
{
    constexpr TypeParam two = static_cast<TypeParam>(2);
    const unsigned char bytes[]{0x0A, 0x1F, 0xFF};
    const void* const address = bytes;
    const char constant[]{'a', 'b', 'c'};
    EXPECT_EQ(str(ZGStr<char>::hexOf(bytes, two)), "0a1f");
    EXPECT_EQ(str(ZGStr<wchar_t>::hexOf(address, two)), "0a1f");
    EXPECT_EQ(str(ZGStr<char>::hexOf(constant, two)), "6162");
    EXPECT_EQ(str(ZGStr<wchar_t>::hexOf(constant, two)), "6162");
}

template <typename I, typename S>
void expectIndices(S&& text)
{
    EXPECT_EQ(text[static_cast<I>(2)], 'c');
    EXPECT_THROW(text[static_cast<I>(99)], ZException);
}

TYPED_TEST(IntegerTypes, AreCheckedAsIndices)
{
    using I = TypeParam;
    ZGStr<char> string("abc");
    ZMStr<wchar_t> builder(L"abc");
    const ZGStr<wchar_t> constString(L"abc");
    const ZMStr<char> constBuilder("abc");
    expectIndices<I>(string);
    expectIndices<I>(constString);
    expectIndices<I>(builder);
    expectIndices<I>(constBuilder);
    expectIndices<I>(ZStrToken<char>("abc"));
    expectIndices<I>(ZStrToken<wchar_t>(L"abc"));
}

TYPED_TEST(IntegerTypes, AreCapacities)
{
    EXPECT_EQ(ZMStr<char>(static_cast<TypeParam>(2)).Capacity(), 3);
    EXPECT_EQ(ZMStr<wchar_t>(static_cast<TypeParam>(2)).Capacity(), 3);
}

template <typename S>
class Indices : public ::testing::Test {
};
TYPED_TEST_SUITE(Indices, AllClasses, TypeNames);

TYPED_TEST(Indices, OfEveryKindAreChecked)
{
    const auto* abc = lit<typename CharOf<TypeParam>::type>("abc");
    const TypeParam text(abc);
    EXPECT_EQ(text[Two], 'c');
    EXPECT_EQ(text[ByteTwo], 'c');
    EXPECT_EQ(text[ConvertsToInt()], 'c');
    EXPECT_EQ(text['\1'], 'b');
    EXPECT_EQ(text[true], 'b');
    EXPECT_THROW(text[Beyond], ZException);
    EXPECT_THROW(text['\3'], ZException);
    EXPECT_THROW(text[ULONG_MAX], ZException); // not -1
    EXPECT_THROW(text[ULLONG_MAX - 1], ZException);
    EXPECT_THROW(text[static_cast<unsigned long>(LONG_MAX) + 1], ZException);
    static_assert(!requires { text[1.0]; });
    static_assert(!requires { text[1.0F]; });
}

} // namespace
