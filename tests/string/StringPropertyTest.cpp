// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/string/ZMStr.h"
#include "tests/string/StringTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <ios>
#include <random>
#include <string>
#include <type_traits>

using namespace ZSpace;
using namespace ZSpace::Testing;

// Random strings, checked against code that is as simple as possible. The seeds are fixed, so that failures
// can be reproduced.

namespace {

template <typename T>
class StringProperty : public ::testing::Test {
protected:
    using Text = std::basic_string<T>;

    /// A string over a small alphabet, so that substrings repeat.
    Text randomText(long longest)
    {
        Text text(static_cast<std::size_t>(randomNumber(0, longest)), T('a'));
        for (T& c : text)
            c = static_cast<T>('a' + randomNumber(0, 2));
        return text;
    }
    /// A string of any characters but zero.
    Text randomCharacters(long longest)
    {
        Text text(static_cast<std::size_t>(randomNumber(0, longest)), T('a'));
        for (T& c : text)
            c = static_cast<T>(randomNumber(1, 255));
        return text;
    }
    long randomNumber(long lowest, long highest)
    {
        return std::uniform_int_distribution<long>(lowest, highest)(m_random);
    }
    /// Every magnitude is equally likely.
    std::uint64_t randomBits() { return m_random() >> randomNumber(0, 63); }

    static ZStrToken<T> view(const Text& text)
    {
        return ZStrToken<T>(text.data(), static_cast<long>(text.size()));
    }

    std::mt19937_64 m_random{20240305};
};
TYPED_TEST_SUITE(StringProperty, Widths, TypeNames);

/// Converts an index of the standard library.
long indexOf(std::size_t position)
{
    return position == std::string::npos ? -1 : static_cast<long>(position);
}

TYPED_TEST(StringProperty, SearchingFindsWhatTheStandardLibraryFinds)
{
    using T = TypeParam;
    for (int round = 0; round < 3000; ++round) {
        const auto text = this->randomText(120);
        auto what = this->randomText(4);
        what.push_back(T('b'));
        const auto from = static_cast<std::size_t>(this->randomNumber(0, 130));
        const ZMStr<T> builder(this->view(text));
        EXPECT_EQ(builder.indexOf(this->view(what), static_cast<long>(from)), indexOf(text.find(what, from)));
        EXPECT_EQ(builder.indexOf(what[0], static_cast<long>(from)), indexOf(text.find(what[0], from)));
        EXPECT_EQ(
            builder.lastIndexOf(this->view(what), static_cast<long>(from)), indexOf(text.rfind(what, from)));
        EXPECT_EQ(builder.lastIndexOf(what[0], static_cast<long>(from)), indexOf(text.rfind(what[0], from)));
        EXPECT_EQ(builder.s_verify(what[0], static_cast<long>(from)),
            indexOf(text.find_first_not_of(what[0], from)));
        EXPECT_EQ(builder.s_verify(this->view(what), static_cast<long>(from)),
            indexOf(text.find_first_not_of(what, from)));

        long occurrences = 0;
        for (std::size_t at = 0; (at = text.find(what, at)) != text.npos; at += what.size())
            ++occurrences;
        EXPECT_EQ(builder.count(this->view(what)), occurrences);
        EXPECT_EQ(builder.count(T('a')), std::count(text.begin(), text.end(), T('a')));
    }
}

TYPED_TEST(StringProperty, ComparingGoesCharacterByCharacter)
{
    using T = TypeParam;
    using Signed = std::make_signed_t<T>;
    const auto folded = [](T c) { return c >= T('A') && c <= T('Z') ? static_cast<T>(c + 32) : c; };
    const auto compared = [](const auto& a, const auto& b, auto fold) {
        const std::size_t n = std::min(a.size(), b.size());
        for (std::size_t i = 0; i < n; ++i) {
            const auto x = static_cast<Signed>(fold(a[i]));
            const auto y = static_cast<Signed>(fold(b[i]));
            if (x != y)
                return x < y ? -1L : 1L;
        }
        return static_cast<long>(a.size()) - static_cast<long>(b.size());
    };
    for (int round = 0; round < 3000; ++round) {
        const auto a = this->randomCharacters(80);
        auto b = a.substr(0, static_cast<std::size_t>(this->randomNumber(0, 80)));
        b += this->randomCharacters(3);
        EXPECT_EQ(this->view(a).compare(this->view(b)), compared(a, b, [](T c) { return c; }));
        EXPECT_EQ(this->view(a).compareIgnoreCase(this->view(b)), compared(a, b, folded));
        EXPECT_EQ(this->view(a).isLike(this->view(b)), a == b);
        EXPECT_EQ(ZGStr<T>(a.c_str()) == b.c_str(), a == b);
        EXPECT_EQ(ZGStr<T>(a.c_str()) < b.c_str(), compared(a, b, [](T c) { return c; }) < 0);
    }
}

TYPED_TEST(StringProperty, SplitPiecesJoinToTheTextAgain)
{
    using T = TypeParam;
    for (int round = 0; round < 1000; ++round) {
        const auto text = this->randomText(60);
        auto separator = this->randomText(2);
        separator.push_back(T('c'));
        const long max = this->randomNumber(-1, 5);
        const auto pieces = ZGStr<T>(this->view(text)).split(this->view(separator), max);
        const auto builders = ZMStr<T>(this->view(text)).split(this->view(separator), max);
        EXPECT_EQ(listed(pieces), listed(builders));

        ZMStr<T> joined;
        for (long i = 0; i < pieces.Count(); ++i) {
            if (i > 0)
                joined << this->view(separator);
            joined << pieces[i];
            if (i + 1 < pieces.Count()) {
                EXPECT_EQ(pieces[i].indexOf(this->view(separator)), -1);
            }
        }
        EXPECT_TRUE(joined == this->view(text));
        const long whole = joined.count(this->view(separator)) + 1;
        EXPECT_EQ(pieces.Count(), max < 1 ? whole : std::min(max, whole));
    }
}

TYPED_TEST(StringProperty, SplittingInPlaceYieldsTheSamePieces)
{
    using T = TypeParam;
    for (int round = 0; round < 500; ++round) {
        auto text = this->randomText(60);
        auto separator = this->randomText(2);
        separator.push_back(T('c'));
        const long capacity = this->randomNumber(1, 8);
        const auto pieces = ZGStr<T>(text.c_str()).split(separator.c_str(), capacity);
        T* places[8]{};
        ASSERT_EQ(ZGStr<T>::splitTo(places, capacity, text.data(), separator.c_str()), pieces.Count());
        for (long i = 0; i < pieces.Count(); ++i)
            EXPECT_EQ(pieces[i], static_cast<const T*>(places[i]));
    }
}

TYPED_TEST(StringProperty, ReplacingIsSplittingAndJoining)
{
    using T = TypeParam;
    for (int round = 0; round < 1000; ++round) {
        const auto text = this->randomText(60);
        auto what = this->randomText(2);
        what.push_back(T('b'));
        const auto with = this->randomText(4);
        const long max = this->randomNumber(-1, 4);

        auto expected = text;
        std::size_t at = 0;
        for (long hits = 0; (max < 1 || hits < max) && (at = expected.find(what, at)) != expected.npos;
             ++hits) {
            expected.replace(at, what.size(), with);
            at += with.size();
        }
        ZGStr<T> string(text.c_str());
        ZMStr<T> builder(text.c_str());
        EXPECT_EQ(string.replace(this->view(what), this->view(with), max), expected.c_str());
        EXPECT_EQ(builder.replace(this->view(what), this->view(with), max), expected.c_str());
        EXPECT_EQ(builder.Length(), static_cast<long>(expected.size()));
    }
}

TYPED_TEST(StringProperty, IntegersSurviveTheRoundTrip)
{
    using T = TypeParam;
    for (int round = 0; round < 5000; ++round) {
        const std::uint64_t bits = this->randomBits();
        const auto number = static_cast<long long>(bits) * (round % 2 == 0 ? 1 : -1);
        const auto printed = ZGStr<T>::valueOf(number);
        EXPECT_EQ(str(printed), std::to_string(number));
        EXPECT_EQ(printed.toInt64(), number);
        EXPECT_EQ(printed.toInt32(), static_cast<int>(number));
        EXPECT_EQ(printed.toInt8(), static_cast<signed char>(number));
        const auto unsignedPrinted = ZGStr<T>::valueOf(static_cast<unsigned long long>(bits));
        EXPECT_EQ(str(unsignedPrinted), std::to_string(bits));
        EXPECT_EQ(unsignedPrinted.toUInt64(), bits);
        EXPECT_EQ(unsignedPrinted.toUInt16(), static_cast<unsigned short>(bits));
        EXPECT_EQ(ZGStr<T>::hexOf(bits).hexToUInt64(), bits);
        EXPECT_EQ(ZGStr<T>::hexOf(static_cast<unsigned short>(bits)).hexToUInt16(),
            static_cast<unsigned short>(bits));
    }
}

TYPED_TEST(StringProperty, BytesSurviveTheRoundTrip)
{
    using T = TypeParam;
    for (int round = 0; round < 300; ++round) {
        unsigned char bytes[40];
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(this->randomNumber(0, 255));
        const long n = this->randomNumber(0, 40);
        unsigned char read[40]{};
        EXPECT_EQ(ZGStr<T>::hexOf(bytes, n).hexTo(read, 40), n);
        EXPECT_EQ(std::memcmp(bytes, read, static_cast<std::size_t>(n)), 0);
        ZGStr<T> upper = ZGStr<T>::hexOf(bytes, n);
        EXPECT_EQ(upper.toUpper().hexTo(read, 40), n);
        EXPECT_EQ(std::memcmp(bytes, read, static_cast<std::size_t>(n)), 0);
    }
}

TYPED_TEST(StringProperty, FractionsOfPowersOfTwoPrintExactly)
{
    using T = TypeParam;
    for (int round = 0; round < 3000; ++round) {
        // Up to 20 bits of fraction are 20 decimal places, which double arithmetic computes exactly.
        const double number = static_cast<double>(this->randomNumber(-(1L << 40), 1L << 40))
            / static_cast<double>(1L << this->randomNumber(0, 12));
        char expected[64];
        std::snprintf(expected, sizeof expected, "%.12f", number);
        std::string trimmed = expected;
        trimmed.erase(trimmed.find_last_not_of('0') + 1);
        if (trimmed.back() == '.')
            trimmed.pop_back();
        EXPECT_EQ(str(ZGStr<T>::valueOf(number)), trimmed == "-0" ? "0" : trimmed);
        EXPECT_DOUBLE_EQ(ZGStr<T>::valueOf(number).toDouble(), number);
    }
}

/// The fraction digit by digit, as the output is defined.
std::string printedByDigits(double value)
{
    const auto whole = static_cast<long long>(value);
    double fraction = std::fabs(value - static_cast<double>(whole));
    std::string digits = std::to_string(whole);
    if (whole == 0 && value < 0 && fraction != 0)
        digits.insert(0, "-");
    if (fraction != 0)
        digits += '.';
    while (fraction != 0 && digits.size() < 41) {
        double digit = 0;
        fraction = std::modf(fraction * 10, &digit);
        digits += static_cast<char>('0' + static_cast<int>(digit));
    }
    return digits;
}

TYPED_TEST(StringProperty, FloatingPointNumbersHaveTheDigitsOfDoubleArithmetic)
{
    using T = TypeParam;
    for (int round = 0; round < 60000; ++round) {
        const auto mantissa = static_cast<double>(this->randomBits() >> 11);
        const double number = round % 3 == 0
            ? static_cast<double>(this->randomNumber(-9999999, 9999999)) / 1000
            : round % 3 == 1 ? std::ldexp(mantissa, -static_cast<int>(this->randomNumber(0, 130)))
                             : std::ldexp(mantissa, -static_cast<int>(this->randomNumber(0, 1127)));
        ASSERT_EQ(str(ZGStr<T>::valueOf(number)), printedByDigits(number)) << std::hexfloat << number;
    }
}

/// The definition of reading: every digit of the fraction divided by its power of ten.
double readByDigits(const std::string& text)
{
    double value = 0;
    double power = 0;
    for (const char c : text) {
        if (c == '.')
            power = 1;
        else if (power == 0)
            value = value * 10 + (c - '0');
        else
            value += (c - '0') / (power *= 10);
    }
    return value;
}

TYPED_TEST(StringProperty, FloatingPointNumbersAreReadDigitByDigit)
{
    using T = TypeParam;
    for (int round = 0; round < 20000; ++round) {
        std::string text;
        for (long n = this->randomNumber(0, 25); n > 0; --n)
            text += static_cast<char>(this->randomNumber('0', '9'));
        text += '.';
        for (long n = this->randomNumber(0, 30); n > 0; --n)
            text += static_cast<char>(this->randomNumber('0', '9'));
        const auto characters = wider<T>(text);
        ASSERT_EQ(this->view(characters).toDouble(), readByDigits(text)) << text;
    }
}

TYPED_TEST(StringProperty, ReadingStopsAtTheFirstCharacterThatIsNoDigit)
{
    using T = TypeParam;
    for (int round = 0; round < 20000; ++round) {
        auto text = wider<T>("123456789012345678901234");
        const auto at = static_cast<std::size_t>(this->randomNumber(0, 23));
        const auto other = static_cast<T>(this->randomNumber(1, 255));
        if (other >= T('0') && other <= T('9'))
            continue;
        text[at] = other;
        unsigned long long expected = 0;
        for (std::size_t i = 0; i < at; ++i)
            expected = expected * 10 + static_cast<unsigned>(text[i] - T('0'));
        ASSERT_EQ(this->view(text).toUInt64(), expected) << at << ' ' << static_cast<int>(other);
    }
}

TYPED_TEST(StringProperty, BuildersAndStringsGrowToTheSameText)
{
    using T = TypeParam;
    for (int round = 0; round < 100; ++round) {
        ZMStr<T> builder;
        ZGStr<T> string;
        std::basic_string<T> expected;
        for (int step = 0; step < 40; ++step) {
            const auto piece = this->randomText(9);
            const auto n = static_cast<std::size_t>(this->randomNumber(0, 9));
            switch (this->randomNumber(0, 4)) {
            case 0:
                builder << this->view(piece);
                string << this->view(piece);
                expected += piece;
                break;
            case 1:
                builder.append(T('x'), static_cast<long>(n));
                for (std::size_t i = 0; i < n; ++i)
                    string.append(T('x'));
                expected.append(n, T('x'));
                break;
            case 2:
                builder << static_cast<int>(n);
                string << static_cast<int>(n);
                expected += wider<T>(std::to_string(n));
                break;
            case 3:
                builder.remove(static_cast<long>(n), 2);
                string.remove(static_cast<long>(n), 2);
                if (n < expected.size())
                    expected.erase(n, 2);
                break;
            default:
                if (n + 1 != expected.size()) {
                    builder.insert(this->view(piece), static_cast<long>(n));
                    const ZGStr<T> tail(string.subString(static_cast<long>(n)));
                    string = string.left(static_cast<long>(n));
                    string << this->view(piece) << tail;
                    expected.insert(std::min(n, expected.size()), piece);
                }
            }
            ASSERT_TRUE(builder == this->view(expected));
            ASSERT_TRUE(string == this->view(expected));
            ASSERT_LE(builder.Length(), builder.Capacity());
            ASSERT_EQ(ZGStr<T>::length(builder), builder.Length());
        }
    }
}

TYPED_TEST(StringProperty, TrimmingRemovesEveryCharacterBelow33)
{
    using T = TypeParam;
    using Signed = std::make_signed_t<T>;
    const auto isBlank = [](T c) { return static_cast<Signed>(c) < 33; };
    for (int round = 0; round < 2000; ++round) {
        auto text = this->randomCharacters(6);
        ZGStr<T> string(text.c_str());
        ZMStr<T> builder(text.c_str());
        const auto first = std::find_if_not(text.begin(), text.end(), isBlank);
        const auto last = std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), isBlank).base();
        const std::basic_string<T> kept(first, last);
        EXPECT_EQ(string.trim(), static_cast<long>(text.size() - kept.size()));
        EXPECT_EQ(builder.trim(), static_cast<long>(text.size() - kept.size()));
        EXPECT_EQ(string, kept.c_str());
        EXPECT_EQ(builder, kept.c_str());
    }
}

} // namespace
