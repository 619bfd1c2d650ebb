// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <type_traits>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

/// The same string through each way that a class has: `append`, `<<` and, for strings, `valueOf`.
template <typename S, typename Number>
std::string printed(Number number)
{
    S appended;
    appended.appendValueOf(number, false);
    S shifted;
    shifted << number;
    EXPECT_EQ(str(appended), str(shifted));
    using T = typename CharOf<S>::type;
    EXPECT_EQ(str(appended), str(ZGStr<T>::valueOf(number, false)));
    EXPECT_EQ(str(appended), str(ZGStr<T>::valueOf(number)));
    return str(appended);
}

template <typename S, typename Number>
std::string printedUnlessZero(Number number)
{
    using T = typename CharOf<S>::type;
    S appended;
    appended.appendValueOf(number, true);
    EXPECT_EQ(str(appended), str(ZGStr<T>::valueOf(number, true)));
    return str(appended);
}

template <typename S>
class NumberOutput : public ::testing::Test {
};
TYPED_TEST_SUITE(NumberOutput, OwningClasses, TypeNames);

TYPED_TEST(NumberOutput, IntegersPrintInDecimal)
{
    using S = TypeParam;
    EXPECT_EQ(printed<S>(0), "0");
    EXPECT_EQ(printed<S>(7), "7");
    EXPECT_EQ(printed<S>(-15), "-15");
    EXPECT_EQ(printed<S>(1234567890), "1234567890");
    EXPECT_EQ(printed<S>(static_cast<signed char>(-128)), "-128");
    EXPECT_EQ(printed<S>(static_cast<unsigned char>(255)), "255");
    EXPECT_EQ(printed<S>(static_cast<short>(-32768)), "-32768");
    EXPECT_EQ(printed<S>(static_cast<unsigned short>(65535)), "65535");
    EXPECT_EQ(printed<S>(INT_MIN), "-2147483648");
    EXPECT_EQ(printed<S>(UINT_MAX), "4294967295");
    EXPECT_EQ(printed<S>(LONG_MIN), "-9223372036854775808");
    EXPECT_EQ(printed<S>(ULONG_MAX), "18446744073709551615");
    EXPECT_EQ(printed<S>(LLONG_MIN), "-9223372036854775808");
    EXPECT_EQ(printed<S>(LLONG_MAX), "9223372036854775807");
    EXPECT_EQ(printed<S>(ULLONG_MAX), "18446744073709551615");
}

TYPED_TEST(NumberOutput, EveryNumberOfDigitsIsRight)
{
    unsigned long long power = 1;
    for (int digits = 1; digits <= 20; ++digits, power *= 10) {
        for (const unsigned long long number : {power - 1, power, power + 1})
            EXPECT_EQ(printed<TypeParam>(number), std::to_string(number));
    }
    for (int number = 0; number < 1100; ++number)
        ASSERT_EQ(printed<TypeParam>(number), std::to_string(number));
}

TYPED_TEST(NumberOutput, NumbersAllOverTheirRangesAreRight)
{
    for (unsigned long long number = 0; number <= UINT_MAX;
         number += 262'139) // a prime number: all last digits
        ASSERT_EQ(printed<TypeParam>(number), std::to_string(number));
    const unsigned long long block = 100'000'000; // digits are written in blocks of eight
    for (const unsigned long long start :
        {block * UINT_MAX, block * (1ULL << 32), block * block, block * block * 100}) {
        for (unsigned long long number = start - 300; number < start + 300; ++number)
            ASSERT_EQ(printed<TypeParam>(number), std::to_string(number));
    }
}

TYPED_TEST(NumberOutput, ABuilderWithRoomTakesTheSameDigits)
{
    using T = typename CharOf<TypeParam>::type;
    for (const long long number :
        {0LL, 7LL, -7LL, 42LL, -100LL, 4294967295LL, 4294967296LL, LLONG_MIN, LLONG_MAX}) {
        for (long room = 1; room < 45; ++room) {
            ZMStr<T> text(room);
            text << "ab" << number << number;
            ASSERT_EQ(str(text), "ab" + std::to_string(number) + std::to_string(number)) << room;
        }
    }
}

TYPED_TEST(NumberOutput, ZeroPrintsAsNothingOnRequest)
{
    using S = TypeParam;
    EXPECT_EQ(printedUnlessZero<S>(0), "");
    EXPECT_EQ(printedUnlessZero<S>(0ULL), "");
    EXPECT_EQ(printedUnlessZero<S>(static_cast<signed char>(0)), "");
    EXPECT_EQ(printedUnlessZero<S>(false), "");
    EXPECT_EQ(printedUnlessZero<S>(0.0), "");
    EXPECT_EQ(printedUnlessZero<S>(-0.0), "");
    EXPECT_EQ(printedUnlessZero<S>(0.0F), "");
    EXPECT_EQ(printedUnlessZero<S>(-15), "-15");
    EXPECT_EQ(printedUnlessZero<S>(true), "1");
    EXPECT_EQ(printedUnlessZero<S>(0.5), "0.5");
    EXPECT_EQ(printedUnlessZero<S>(10), "10");
}

TYPED_TEST(NumberOutput, BoolsPrintAsDigits)
{
    EXPECT_EQ(printed<TypeParam>(true), "1");
    EXPECT_EQ(printed<TypeParam>(false), "0");
}

TYPED_TEST(NumberOutput, RealNumbersPrintTheirFractionToTheEnd)
{
    using S = TypeParam;
    EXPECT_EQ(printed<S>(2.0), "2");
    EXPECT_EQ(printed<S>(2.5), "2.5");
    EXPECT_EQ(printed<S>(-2.5), "-2.5");
    EXPECT_EQ(printed<S>(0.1), "0.1");
    EXPECT_EQ(printed<S>(0.5), "0.5");
    EXPECT_EQ(printed<S>(-0.5), "-0.5");
    EXPECT_EQ(printed<S>(0.0625), "0.0625");
    EXPECT_EQ(printed<S>(100.0), "100");
    EXPECT_EQ(printed<S>(1000000.125), "1000000.125");
    EXPECT_EQ(printed<S>(-1e15), "-1000000000000000");
    EXPECT_EQ(printed<S>(0.0), "0");
    EXPECT_EQ(printed<S>(-0.0), "0");
    EXPECT_EQ(printed<S>(2.5F), "2.5");
    EXPECT_EQ(printed<S>(-0.25F), "-0.25");
}

TYPED_TEST(NumberOutput, ARealNumberEndsAtFortyOneCharacters)
{
    using S = TypeParam;
    EXPECT_EQ(printed<S>(1e-300), std::string("0.").append(39, '0'));
    EXPECT_EQ(printed<S>(-1e-300), std::string("-0.").append(38, '0'));
    EXPECT_EQ(printed<S>(std::ldexp(1.0, -60)).size(), 41U);
    EXPECT_EQ(printed<S>(std::ldexp(1.0, -40)), "0.000000000000909494701772928237915039062");
    EXPECT_EQ(printed<S>(-std::ldexp(1.0, -40)), "-0.00000000000090949470177292823791503906");
    EXPECT_EQ(
        printed<S>(std::ldexp(1.0, -39)), "0.000000000001818989403545856475830078125"); // fits to the digit
}

TYPED_TEST(NumberOutput, RealNumbersBeyond64BitsSaturate)
{
    using S = TypeParam;
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(printed<S>(9223372036854774784.0), "9223372036854774784");
    EXPECT_EQ(printed<S>(9223372036854775808.0), "9223372036854775807");
    EXPECT_EQ(printed<S>(-9223372036854775808.0), "-9223372036854775808");
    EXPECT_EQ(printed<S>(-9223372036854777856.0), "-9223372036854775808");
    EXPECT_EQ(printed<S>(1e300), "9223372036854775807");
    EXPECT_EQ(printed<S>(infinity), "9223372036854775807");
    EXPECT_EQ(printed<S>(-infinity), "-9223372036854775808");
    EXPECT_EQ(printed<S>(std::numeric_limits<double>::quiet_NaN()), "0");
    EXPECT_EQ(printed<S>(std::numeric_limits<float>::quiet_NaN()), "0");
    EXPECT_EQ(printed<S>(1e30F), "9223372036854775807");
}

TYPED_TEST(NumberOutput, ManyNumbersFollowEachOther)
{
    TypeParam text;
    std::string expected;
    for (int i = -500; i < 500; i += 7) {
        text << i << ';';
        expected += std::to_string(i) + ";";
    }
    EXPECT_EQ(str(text), expected);
}

template <typename S, typename Number>
std::string hexOf(Number number)
{
    using T = typename CharOf<S>::type;
    S text;
    text.appendHexOf(number);
    EXPECT_EQ(str(text), str(ZGStr<T>::hexOf(number)));
    return str(text);
}

TYPED_TEST(NumberOutput, HexadecimalHasTheFullWidthOfTheType)
{
    using S = TypeParam;
    EXPECT_EQ(hexOf<S>(static_cast<unsigned short>(0x0A1F)), "0a1f");
    EXPECT_EQ(hexOf<S>(static_cast<unsigned char>(7)), "07");
    EXPECT_EQ(hexOf<S>(0xDEADBEEFU), "deadbeef");
    EXPECT_EQ(hexOf<S>(0x0123456789ABCDEFULL), "0123456789abcdef");
    EXPECT_EQ(hexOf<S>(0UL), "0000000000000000");
    EXPECT_EQ(hexOf<S>(5), "00000005");
    EXPECT_EQ(hexOf<S>('a'), "61");
}

TYPED_TEST(NumberOutput, HexadecimalOfSignedTypesShowsTheirBits)
{
    using S = TypeParam;
    EXPECT_EQ(hexOf<S>(static_cast<signed char>(-1)), "ff");
    EXPECT_EQ(hexOf<S>(static_cast<signed char>(0x1F)), "1f");
    EXPECT_EQ(hexOf<S>(static_cast<short>(-2)), "fffe");
    EXPECT_EQ(hexOf<S>(-3), "fffffffd");
    EXPECT_EQ(hexOf<S>(-4LL), "fffffffffffffffc");
    EXPECT_EQ(hexOf<S>(-4L), "fffffffffffffffc");
    EXPECT_EQ(hexOf<S>(INT_MIN), "80000000");
}

TYPED_TEST(NumberOutput, BytesPrintInTheOrderOfMemory)
{
    using T = typename CharOf<TypeParam>::type;
    const unsigned char bytes[]{0x00, 0x1F, 0xA0, 0xFF};
    TypeParam text(lit<T>("x"));
    text.appendHexOf(bytes, 4);
    EXPECT_EQ(str(text), "x001fa0ff");
    text.appendHexOf(bytes, 0).appendHexOf(bytes, -1).appendHexOf(nullptr, 4);
    EXPECT_EQ(str(text), "x001fa0ff");
    EXPECT_EQ(str(ZGStr<T>::hexOf(bytes, 2)), "001f");
    EXPECT_EQ(str(ZGStr<T>::hexOf(bytes, 0)), "");
    EXPECT_EQ(str(ZGStr<T>::hexOf("ab", 2)), "6162");
}

TYPED_TEST(NumberOutput, AllBytesHaveTheirTwoDigits)
{
    TypeParam text;
    std::string expected;
    for (int byte = 0; byte < 256; ++byte) {
        char digits[3];
        std::snprintf(digits, sizeof digits, "%02x", byte);
        expected += digits;
        text.appendHexOf(static_cast<unsigned char>(byte));
    }
    EXPECT_EQ(str(text), expected);
}

template <typename T>
class NumberOutputStatics : public ::testing::Test {
};
TYPED_TEST_SUITE(NumberOutputStatics, Widths, TypeNames);

TYPED_TEST(NumberOutputStatics, HexadecimalIsWrittenIntoACallersArray)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    T text[17];
    EXPECT_EQ(S::hexOf(text, static_cast<unsigned char>(0xA)), 2);
    EXPECT_EQ(str(static_cast<const T*>(text)), "0a");
    EXPECT_EQ(S::hexOf(text, static_cast<unsigned short>(0x0A1F)), 4);
    EXPECT_EQ(str(static_cast<const T*>(text)), "0a1f");
    EXPECT_EQ(S::hexOf(text, 0xAU), 8);
    EXPECT_EQ(str(static_cast<const T*>(text)), "0000000a");
    EXPECT_EQ(S::hexOf(text, 0xAULL), 16);
    EXPECT_EQ(str(static_cast<const T*>(text)), "000000000000000a");
    const unsigned char bytes[]{0xAB, 0xCD};
    EXPECT_EQ(S::hexOf(text, bytes, 2), 4);
    EXPECT_EQ(str(static_cast<const T*>(text)), "abcd");
    EXPECT_EQ(S::hexOf(text, bytes, -1), 0);
    EXPECT_EQ(str(static_cast<const T*>(text)), "");
}

TYPED_TEST(NumberOutputStatics, HexadecimalOfBytesEndsAfterTwoDigitsEach)
{
    using T = TypeParam;
    const unsigned char bytes[]{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20};
    const std::string digits = "0102030405";
    for (long n = 0; n <= 5; ++n) {
        std::basic_string<T> array(50, T('#'));
        EXPECT_EQ(ZGStr<T>::hexOf(array.data(), bytes, n), 2 * n);
        const auto length = static_cast<std::size_t>(2 * n);
        EXPECT_EQ(
            array, wider<T>(digits.substr(0, length)) + T(0) + std::basic_string<T>(49 - length, T('#')));
    }
}

TYPED_TEST(NumberOutputStatics, AnIntegerAfterAWritableArrayIsTheNumberToPrint)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    T text[17];
    EXPECT_EQ(S::hexOf(text, 0x0A), 8);
    EXPECT_EQ(S::hexOf(text, std::uint64_t{0x0A}), 16);
    EXPECT_EQ(str(static_cast<const T*>(text)), "000000000000000a");
    static_assert(!requires { S::hexOf(text, true); });
}

TYPED_TEST(NumberOutputStatics, TheBytesOfCharactersArePassedAsVoidPointers)
{
    using S = ZGStr<TypeParam>;
    using Other = std::conditional_t<std::is_same_v<TypeParam, char>, wchar_t, char>;
    char characters[] = "ab";
    const void* const bytes = characters;
    EXPECT_EQ(str(S::hexOf(bytes, 2)), "6162");
    EXPECT_EQ(str(S::hexOf(bytes, static_cast<long>(sizeof characters))), "616200");
    EXPECT_EQ(str(S::hexOf("ab", 2L)), "6162");
    Other other[]{Other('a'), Other(0)};
    EXPECT_EQ(str(S::hexOf(other, 1)), "61");
}

TYPED_TEST(NumberOutputStatics, ADigitIsItsHexadecimalCharacter)
{
    using T = TypeParam;
    const std::string digits = "0123456789abcdef";
    for (unsigned char value = 0; value < 16; ++value)
        EXPECT_EQ(ZGStr<T>::digitOf(value), static_cast<T>(digits[value]));
}

TYPED_TEST(NumberOutputStatics, TextAndCharactersHaveValuesToo)
{
    using S = ZGStr<TypeParam>;
    EXPECT_EQ(str(S::valueOf("narrow")), "narrow");
    EXPECT_EQ(str(S::valueOf("narrow", 3)), "nar");
    EXPECT_EQ(str(S::valueOf(L"wide")), "wide");
    EXPECT_EQ(str(S::valueOf(L"wide", 2)), "wi");
    EXPECT_EQ(str(S::valueOf('x')) + str(S::valueOf(L'y')), "xy");
    EXPECT_EQ(str(S::valueOf(static_cast<const char*>(nullptr))), "");
    EXPECT_EQ(str(S::valueOf(static_cast<const wchar_t*>(nullptr), 3)), "");
    EXPECT_EQ(str(S::valueOf("narrow", 0)) + str(S::valueOf(L"wide", -1)), "");
    EXPECT_EQ(
        str(S::valueOf(reinterpret_cast<const unsigned char*>(std::uintptr_t{0xBEEF}))), "000000000000beef");
}

TYPED_TEST(NumberOutputStatics, AnEmptyValueIsStillAString)
{
    using S = ZGStr<TypeParam>;
    EXPECT_NE(static_cast<const TypeParam*>(S::valueOf(0, true)), nullptr);
    EXPECT_TRUE(S::valueOf(0, true).isEmpty());
    EXPECT_TRUE(S::hexOf("", 0).isEmpty());
}

TEST(WidthConversion, NarrowingKeepsTheLowEightBits)
{
    EXPECT_EQ(ZGStr<char>::valueOf(L"\u20AC"), "\xAC");
    EXPECT_EQ(ZGStr<char>::valueOf(L"\u00E9\u0416\U0001F600z"), "\xE9\x16\x00z"); // cut at the zero
    EXPECT_EQ(ZGStr<char>::valueOf(L'\u20AC'), "\xAC");
    ZMStr<char> built;
    built << L"\u0416" << ZGStr<wchar_t>(L"\u20AC");
    EXPECT_EQ(built, "\x16\xAC");
}

TEST(WidthConversion, WideningAddsZeroBits)
{
    EXPECT_EQ(ZGStr<wchar_t>::valueOf("\xE9"), L"\u00E9");
    EXPECT_EQ(ZGStr<wchar_t>::valueOf("\xFF\x80\x7F"), L"\u00FF\u0080\u007F");
    EXPECT_EQ(ZGStr<wchar_t>::valueOf('\xE9'), L"\u00E9");
    ZMStr<wchar_t> built;
    built << "\xC3\xA9" << ZStrToken<char>("\xE9xyz", 1);
    EXPECT_EQ(built, L"\u00C3\u00A9\u00E9"); // bytes of UTF-8 stay bytes
}

TEST(WidthConversion, EveryByteSurvivesTheRoundTrip)
{
    std::string bytes;
    for (int byte = 1; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));
    const ZGStr<wchar_t> wide(bytes.c_str());
    EXPECT_EQ(wide.length(), 255);
    for (int byte = 1; byte < 256; ++byte)
        EXPECT_EQ(wide[byte - 1], static_cast<wchar_t>(byte));
    EXPECT_EQ(str(ZGStr<char>(wide)), bytes);
}

} // namespace
