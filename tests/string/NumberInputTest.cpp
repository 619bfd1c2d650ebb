// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZStrToken.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>
#include <string>
#include <string_view>
#include <vector>

using namespace ZSpace;
using namespace ZSpace::Testing;

namespace {

template <typename S>
class NumberInput : public ::testing::Test {
protected:
    static S text(std::string_view characters) { return S(lit<typename CharOf<S>::type>(characters)); }
};
TYPED_TEST_SUITE(NumberInput, AllClasses, TypeNames);

TYPED_TEST(NumberInput, DigitsAreReadUpToTheFirstOtherCharacter)
{
    EXPECT_EQ(this->text("42").toInt32(), 42);
    EXPECT_EQ(this->text("-12ab").toInt32(), -12);
    EXPECT_EQ(this->text("12-3").toInt32(), 12);
    EXPECT_EQ(this->text("09.042").toInt32(), 9);
    EXPECT_EQ(this->text("007").toInt32(), 7);
    EXPECT_EQ(this->text("x5").toInt32(), 0);
}

TYPED_TEST(NumberInput, OnlyAMinusMayPrecedeTheDigits)
{
    EXPECT_EQ(this->text(" 5").toInt32(), 0);
    EXPECT_EQ(this->text("+5").toInt32(), 0);
    EXPECT_EQ(this->text("--5").toInt32(), 0);
    EXPECT_EQ(this->text("-").toInt32(), 0);
    EXPECT_EQ(this->text("").toInt32(), 0);
    EXPECT_EQ(TypeParam().toInt64(), 0);
    EXPECT_EQ(this->text("-5").toUInt8(), 0);
    EXPECT_EQ(this->text("-5").toUInt16(), 0);
    EXPECT_EQ(this->text("-5").toUInt32(), 0U);
    EXPECT_EQ(this->text("-5").toUInt64(), 0U);
}

TYPED_TEST(NumberInput, EveryWidthHoldsItsExtremes)
{
    EXPECT_EQ(this->text("-128").toInt8(), -128);
    EXPECT_EQ(this->text("127").toInt8(), 127);
    EXPECT_EQ(this->text("-32768").toInt16(), -32768);
    EXPECT_EQ(this->text("-2147483648").toInt32(), INT_MIN);
    EXPECT_EQ(this->text("2147483647").toInt32(), INT_MAX);
    EXPECT_EQ(this->text("-9223372036854775808").toInt64(), LLONG_MIN);
    EXPECT_EQ(this->text("9223372036854775807").toInt64(), LLONG_MAX);
    EXPECT_EQ(this->text("255").toUInt8(), 255);
    EXPECT_EQ(this->text("65535").toUInt16(), 65535);
    EXPECT_EQ(this->text("4294967295").toUInt32(), UINT_MAX);
    EXPECT_EQ(this->text("18446744073709551615").toUInt64(), ULLONG_MAX);
}

TYPED_TEST(NumberInput, TooLargeANumberWrapsAround)
{
    EXPECT_EQ(this->text("300").toUInt8(), 44);
    EXPECT_EQ(this->text("128").toInt8(), -128);
    EXPECT_EQ(this->text("-129").toInt8(), 127);
    EXPECT_EQ(this->text("65536").toUInt16(), 0);
    EXPECT_EQ(this->text("32768").toInt16(), -32768);
    EXPECT_EQ(this->text("2147483648").toInt32(), INT_MIN);
    EXPECT_EQ(this->text("4294967297").toUInt32(), 1U);
    EXPECT_EQ(this->text("9223372036854775808").toInt64(), LLONG_MIN);
    EXPECT_EQ(this->text("18446744073709551617").toUInt64(), 1U);
}

TYPED_TEST(NumberInput, RealNumbersHaveAFractionAndNoExponent)
{
    EXPECT_EQ(this->text("2.5").toDouble(), 2.5);
    EXPECT_EQ(this->text("-2.5").toDouble(), -2.5);
    EXPECT_EQ(this->text("-0.5").toDouble(), -0.5);
    EXPECT_EQ(this->text(".5").toDouble(), 0.5);
    EXPECT_EQ(this->text("5.").toDouble(), 5.0);
    EXPECT_EQ(this->text("0.1").toDouble(), 0.1);
    EXPECT_EQ(this->text("1000000").toDouble(), 1e6);
    EXPECT_DOUBLE_EQ(this->text("3.14159").toDouble(), 3.14159);
    EXPECT_EQ(this->text("2.5").toSingle(), 2.5F);
    EXPECT_EQ(this->text("-0.25").toSingle(), -0.25F);
    EXPECT_FLOAT_EQ(this->text("3.14159").toSingle(), 3.14159F);
}

TYPED_TEST(NumberInput, ARealNumberEndsAtTheFirstCharacterThatDoesNotFit)
{
    EXPECT_EQ(this->text("2.5e3").toDouble(), 2.5);
    EXPECT_EQ(this->text("2.5.75").toDouble(), 2.5);
    EXPECT_EQ(this->text("2-5").toDouble(), 2.0);
    EXPECT_EQ(this->text("2.-5").toDouble(), 2.0);
    EXPECT_EQ(this->text(" 2").toDouble(), 0.0);
    EXPECT_EQ(this->text("+2").toDouble(), 0.0);
    EXPECT_EQ(this->text("--2").toDouble(), 0.0);
    EXPECT_EQ(this->text("").toDouble(), 0.0);
    EXPECT_EQ(this->text("-").toSingle(), 0.0F);
    EXPECT_EQ(this->text("0." + std::string(400, '0') + "1").toDouble(), 0.0);
    EXPECT_TRUE(std::isinf(this->text(std::string(400, '9')).toDouble()));
}

TYPED_TEST(NumberInput, EveryPlaceOfAFractionCounts)
{
    EXPECT_DOUBLE_EQ(this->text("0.0000000000000000000125").toDouble(), 1.25e-20);
    EXPECT_DOUBLE_EQ(this->text("0.000000000000000000000000125").toDouble(), 1.25e-25);
    EXPECT_DOUBLE_EQ(this->text("1234567890.0000000000000000000000125").toDouble(), 1234567890.0);
}

TYPED_TEST(NumberInput, HexadecimalReadsExactlyTheWidthOfTheType)
{
    EXPECT_EQ(this->text("1f2e").hexToUInt8(), 0x1F);
    EXPECT_EQ(this->text("0A1f99").hexToUInt16(), 0x0A1F);
    EXPECT_EQ(this->text("DEADbeef12").hexToUInt32(), 0xDEADBEEFU);
    EXPECT_EQ(this->text("0123456789aBcDeFff").hexToUInt64(), 0x0123456789ABCDEFULL);
}

TYPED_TEST(NumberInput, CharactersThatAreNoHexadecimalDigitsCountAsZero)
{
    EXPECT_EQ(this->text("g1").hexToUInt8(), 0x01);
    EXPECT_EQ(this->text("1:2/").hexToUInt16(), 0x1020);
    EXPECT_EQ(this->text("@`GG aF1").hexToUInt32(), 0x00000AF1U);
    EXPECT_EQ(this->text("x\xFF"
                         "1")
                  .hexToUInt16(),
        0x0010);
}

TYPED_TEST(NumberInput, MissingHexadecimalDigitsCountAsZeroAtTheirPlace)
{
    EXPECT_EQ(this->text("a").hexToUInt8(), 0xA0);
    EXPECT_EQ(this->text("12").hexToUInt16(), 0x1200);
    EXPECT_EQ(this->text("123").hexToUInt32(), 0x12300000U);
    EXPECT_EQ(this->text("").hexToUInt64(), 0U);
    EXPECT_EQ(TypeParam().hexToUInt32(), 0U);
}

TYPED_TEST(NumberInput, BytesAreFilledFromPairs)
{
    unsigned char bytes[4]{9, 9, 9, 9};
    EXPECT_EQ(this->text("0a1Fff").hexTo(bytes, 4), 3);
    EXPECT_EQ(bytes[0], 0x0A);
    EXPECT_EQ(bytes[1], 0x1F);
    EXPECT_EQ(bytes[2], 0xFF);
    EXPECT_EQ(bytes[3], 9);
    EXPECT_EQ(this->text("1234567").hexTo(bytes, 2), 2);
    EXPECT_EQ(bytes[1], 0x34);
    EXPECT_EQ(bytes[2], 0xFF);
    EXPECT_EQ(this->text("123").hexTo(bytes, 4), 1);
    EXPECT_EQ(this->text("zz").hexTo(bytes, 4), 1);
    EXPECT_EQ(bytes[0], 0);
    EXPECT_EQ(this->text("1").hexTo(bytes, 4), 0);
    EXPECT_EQ(this->text("12").hexTo(bytes, 0), 0);
    EXPECT_EQ(this->text("12").hexTo(bytes, -1), 0);
    EXPECT_EQ(this->text("").hexTo(nullptr, 0), 0);
}

TYPED_TEST(NumberInput, ClassificationLooksAtPlainCharactersOnly)
{
    EXPECT_TRUE(this->text("a1").isAlpha());
    EXPECT_TRUE(this->text("Z").isAlpha());
    EXPECT_FALSE(this->text("1a").isAlpha());
    EXPECT_FALSE(this->text("\xE9").isAlpha());
    EXPECT_FALSE(this->text("@").isAlpha() || this->text("[").isAlpha());
    EXPECT_FALSE(this->text("`").isAlpha() || this->text("{").isAlpha());
    EXPECT_FALSE(this->text("").isAlpha() || TypeParam().isAlpha());
    EXPECT_TRUE(this->text("0123456789").isNumeric());
    EXPECT_TRUE(this->text("-1.5").isNumeric());
    EXPECT_TRUE(this->text("1.-2-").isNumeric());
    EXPECT_TRUE(this->text("").isNumeric() && TypeParam().isNumeric());
    EXPECT_FALSE(
        this->text("1a").isNumeric() || this->text("+1").isNumeric() || this->text(" 1").isNumeric());
    EXPECT_FALSE(
        this->text("1/").isNumeric() || this->text("1:").isNumeric() || this->text("1,5").isNumeric());
}

TYPED_TEST(NumberInput, EmptinessCanBeQueriedInTwoWays)
{
    EXPECT_TRUE(TypeParam().isEmpty() && !TypeParam());
    EXPECT_TRUE(this->text("").isEmpty() && !this->text(""));
    EXPECT_FALSE(this->text("a").isEmpty() || !this->text("a"));
}

template <typename T>
class NumberInputStatics : public ::testing::Test {
};
TYPED_TEST_SUITE(NumberInputStatics, Widths, TypeNames);

TYPED_TEST(NumberInputStatics, TheyReadWithAndWithoutALength)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* text = lit<T>("-12345");
    EXPECT_EQ(S::toInt8(text, 3), -12);
    EXPECT_EQ(S::toInt16(text, 4), -123);
    EXPECT_EQ(S::toInt32(text, 5), -1234);
    EXPECT_EQ(S::toInt64(text, 6), -12345);
    EXPECT_EQ(S::toInt8(lit<T>("-1")), -1);
    EXPECT_EQ(S::toInt16(text), -12345);
    EXPECT_EQ(S::toInt32(text), -12345);
    EXPECT_EQ(S::toInt64(text), -12345);
    EXPECT_EQ(S::toUInt8(text + 1, 2), 12);
    EXPECT_EQ(S::toUInt16(text + 1, 3), 123);
    EXPECT_EQ(S::toUInt32(text + 1, 4), 1234U);
    EXPECT_EQ(S::toUInt64(text + 1, 5), 12345U);
    EXPECT_EQ(S::toUInt8(lit<T>("300")), 44);
    EXPECT_EQ(S::toUInt16(text + 1), 12345);
    EXPECT_EQ(S::toUInt32(text + 1), 12345U);
    EXPECT_EQ(S::toUInt64(text + 1), 12345U);
    EXPECT_EQ(S::toSingle(lit<T>("2.55"), 3), 2.5F);
    EXPECT_EQ(S::toDouble(lit<T>("2.55"), 3), 2.5);
    EXPECT_EQ(S::toSingle(lit<T>("2.5")), 2.5F);
    EXPECT_EQ(S::toDouble(lit<T>("2.5")), 2.5);
    EXPECT_DOUBLE_EQ(S::toDouble(lit<T>("0.0000000000000000000000012"), 26), 1e-24);
}

TYPED_TEST(NumberInputStatics, NullCountsAsZero)
{
    using S = ZGStr<TypeParam>;
    EXPECT_EQ(S::toInt32(nullptr) + S::toInt32(nullptr, 0) + S::toInt32(nullptr, -1), 0);
    EXPECT_EQ(S::toUInt64(nullptr), 0U);
    EXPECT_EQ(S::toDouble(nullptr), 0.0);
    EXPECT_EQ(S::hexToUInt64(nullptr), 0U);
    EXPECT_EQ(S::hexToUInt64(nullptr, -1), 0U);
    EXPECT_FALSE(S::isAlpha(nullptr) || S::isAlpha(nullptr, 0));
    EXPECT_TRUE(S::isNumeric(nullptr) && S::isNumeric(nullptr, 0) && S::isEmpty(nullptr));
}

TYPED_TEST(NumberInputStatics, HexadecimalReadsWithAndWithoutALength)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    const T* text = lit<T>("0123456789abcdef99");
    EXPECT_EQ(S::hexToUInt8(text), 0x01);
    EXPECT_EQ(S::hexToUInt16(text), 0x0123);
    EXPECT_EQ(S::hexToUInt32(text), 0x01234567U);
    EXPECT_EQ(S::hexToUInt64(text), 0x0123456789ABCDEFULL);
    EXPECT_EQ(S::hexToUInt8(text, 2), 0x01);
    EXPECT_EQ(S::hexToUInt16(text, 3), 0x0120);
    EXPECT_EQ(S::hexToUInt32(text, 4), 0x01230000U);
    EXPECT_EQ(S::hexToUInt64(text, 18), 0x0123456789ABCDEFULL);
    EXPECT_EQ(S::hexToUInt32(lit<T>("12")), 0x12000000U);
}

TYPED_TEST(NumberInputStatics, BytesAreFilledUpToTheTerminatorForALengthOfMinusOne)
{
    using T = TypeParam;
    unsigned char bytes[4]{};
    EXPECT_EQ(ZGStr<T>::hexTo(bytes, 4, lit<T>("010203"), -1), 3);
    EXPECT_EQ(bytes[2], 3);
    EXPECT_EQ(ZGStr<T>::hexTo(bytes, 4, lit<T>("a1b2c3"), 4), 2);
    EXPECT_EQ(bytes[1], 0xB2);
    EXPECT_EQ(bytes[2], 3);
    EXPECT_EQ(ZGStr<T>::hexTo(bytes, 4, nullptr, -1), 0);
    EXPECT_EQ(ZStrToken<T>(lit<T>("0102"), -1).hexTo(bytes, 4), 0); // a view without characters
}

TYPED_TEST(NumberInputStatics, EveryCharacterHasAHexadecimalValue)
{
    using T = TypeParam;
    for (int code = 0; code < 300; ++code) {
        int value = 0;
        if (code >= '0' && code <= '9')
            value = code - '0';
        else if (code >= 'a' && code <= 'f')
            value = code - 'a' + 10;
        else if (code >= 'A' && code <= 'F')
            value = code - 'A' + 10;
        if (code < 256 || sizeof(T) > 1) {
            EXPECT_EQ(ZGStr<T>::hexToNibble(static_cast<T>(code)), value) << code;
        }
    }
}

TYPED_TEST(NumberInputStatics, OnlyTenCharactersAreDigits)
{
    using T = TypeParam;
    for (int code = 0; code < 256; ++code)
        EXPECT_EQ(ZGStr<T>::isDigit(static_cast<T>(code)), code >= '0' && code <= '9') << code;
}

TYPED_TEST(NumberInputStatics, ClassificationOfBareCharactersTakesALength)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    EXPECT_TRUE(S::isAlpha(lit<T>("ab")) && S::isAlpha(lit<T>("ab"), 1));
    EXPECT_FALSE(S::isAlpha(lit<T>("ab"), 0) || S::isAlpha(lit<T>("1b")));
    EXPECT_TRUE(S::isNumeric(lit<T>("12x"), 2) && S::isNumeric(lit<T>("12")));
    EXPECT_FALSE(S::isNumeric(lit<T>("12x")) || S::isNumeric(lit<T>("12x"), 3));
    EXPECT_TRUE(S::isEmpty(lit<T>("")));
    EXPECT_FALSE(S::isEmpty(lit<T>("a")));
}

/// The value of the digits added up one by one, in double arithmetic.
double addedUp(std::string_view whole, std::string_view fraction)
{
    double value = 0;
    for (const char digit : whole)
        value = value * 10 + (digit - '0');
    double power = 1;
    for (const char digit : fraction)
        value += (digit - '0') / (power *= 10);
    return value;
}

std::string randomDigits(std::mt19937& random, std::size_t n)
{
    std::string digits;
    while (digits.size() < n)
        digits.push_back(static_cast<char>('0' + random() % 10));
    return digits;
}

TYPED_TEST(NumberInputStatics, RealsOfEveryLengthAreAddedUpDigitByDigit)
{
    std::mt19937 random(1);
    for (std::size_t n = 0; n < 27; ++n) {
        for (std::size_t m = 0; m < 27; ++m) {
            const std::string whole = randomDigits(random, n);
            const std::string fraction = randomDigits(random, m);
            const auto text = wider<TypeParam>(whole + "." + fraction);
            const auto length = static_cast<long>(text.size());
            EXPECT_EQ(ZGStr<TypeParam>::toDouble(text.c_str(), length), addedUp(whole, fraction))
                << whole << '.' << fraction;
        }
    }
}

TYPED_TEST(NumberInputStatics, DigitsEndAtEveryOtherCharacterAtEveryPlace)
{
    const std::string digits = "12345678901234567890";
    for (std::size_t at = 0; at < digits.size(); ++at) {
        const std::string before = digits.substr(0, at);
        const double whole = addedUp(before, "");
        const double fraction = addedUp("", before);
        const long long integer = before.empty() ? 0 : static_cast<long long>(std::stoull(before));
        for (int code = 0; code < 256; ++code) {
            if ((code >= '0' && code <= '9') || code == '.' || (at == 0 && code == '-'))
                continue;
            std::string text = digits;
            text[at] = static_cast<char>(code);
            const auto length = static_cast<long>(text.size());
            const auto units = wider<TypeParam>(text);
            EXPECT_EQ(ZGStr<TypeParam>::toInt64(units.c_str(), length), integer) << at << ' ' << code;
            EXPECT_EQ(ZGStr<TypeParam>::toDouble(units.c_str(), length), whole) << at << ' ' << code;
            const auto afterPoint = wider<TypeParam>("." + text);
            EXPECT_EQ(ZGStr<TypeParam>::toDouble(afterPoint.c_str(), length + 1), fraction)
                << at << ' ' << code;
        }
    }
}

TYPED_TEST(NumberInputStatics, NoCharacterAfterTheLengthIsRead)
{
    // Each array ends where the text does, so that sanitizers notice a read past it.
    const std::string digits = "12345678909876543210";
    for (std::size_t n = 1; n <= digits.size(); ++n) {
        const auto units = wider<TypeParam>(digits.substr(0, n));
        const std::vector<TypeParam> text(units.begin(), units.end());
        const auto length = static_cast<long>(n);
        EXPECT_EQ(ZGStr<TypeParam>::toUInt64(text.data(), length), std::stoull(digits.substr(0, n)));
        EXPECT_EQ(ZGStr<TypeParam>::toDouble(text.data(), length), addedUp(digits.substr(0, n), ""));
    }
}

TEST(NumberInputWide, UnitsBeyondABytesRangeAreNoDigits)
{
    EXPECT_EQ(ZGStr<wchar_t>(L"1\u0131"
                             L"2")
                  .toInt32(),
        1); // low byte 0x31, the digit 1
    EXPECT_EQ(ZGStr<wchar_t>(L"\u0131\u0132").hexToUInt8(), 0);
    EXPECT_FALSE(ZGStr<wchar_t>(L"\u0161").isAlpha()); // low byte 0x61, the letter a
    EXPECT_FALSE(ZGStr<wchar_t>(L"\u0131").isNumeric());
}

TYPED_TEST(NumberInputStatics, BlocksOfDigitsEndWithTheDigits)
{
    using T = TypeParam;
    using S = ZGStr<T>;
    for (const char other : {'/', ':', ';', '<', '=', '>', '?', '@', '\x06', '\xB6'}) {
        const std::string digits = "6789678";
        EXPECT_EQ(S::toInt32(lit<T>(digits + other)), 6789678) << other;
        EXPECT_EQ(S::toInt32(lit<T>("6" + (other + digits))), 6) << other;
    }
    EXPECT_EQ(S::toUInt64(lit<T>("999999991234567887654321") + 8, 16), 1234567887654321U);
}

TYPED_TEST(NumberInputStatics, AMinusAloneIsNegativeZero)
{
    using T = TypeParam;
    EXPECT_EQ(ZGStr<T>::toDouble(lit<T>("-")), 0.0);
    EXPECT_TRUE(std::signbit(ZGStr<T>::toDouble(lit<T>("-"))));
    EXPECT_FALSE(std::signbit(ZGStr<T>::toDouble(lit<T>(""))));
}

TEST(HexadecimalInput, ALengthOfZeroMeansNoDigits)
{
    unsigned char bytes[3]{7, 7, 7};
    EXPECT_EQ(ZGStr<char>::hexTo(bytes, 3, "0a1fff", 0), 0);
    EXPECT_EQ(ZGStr<wchar_t>::hexTo(bytes, 3, L"0a1fff", 0), 0);
    EXPECT_EQ(bytes[0], 7);
}

TEST(HexadecimalInput, EveryNegativeLengthMeansUpToTheTerminator)
{
    for (const long length : {-1L, -2L, -7L, LONG_MIN}) {
        unsigned char bytes[3]{};
        EXPECT_EQ(ZGStr<char>::hexTo(bytes, 3, "0a1fff", length), 3) << length;
        EXPECT_EQ(bytes[1], 0x1F);
        EXPECT_EQ(ZGStr<wchar_t>::hexTo(bytes, 2, L"AB", length), 1);
        EXPECT_EQ(bytes[0], 0xAB);
        EXPECT_EQ(ZGStr<char>::hexTo(bytes, 3, nullptr, length), 0);
    }
}

} // namespace
