// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Strings and numbers next to the minimum of code that does the same work: each `<row>` has a `<row>_baseline`, written
// by hand, in the same run. A baseline has the same ownership, terminators and growth as ours. What other libraries need
// is called `<row>_<library>`. Run with --benchmark_enable_random_interleaving=true --benchmark_repetitions=9 to
// interleave them.

#include "ZSpace/string/ZMStr.h"
#include "bench/Opaque.h"

#include <benchmark/benchmark.h>

#include <absl/strings/numbers.h>
#include <absl/strings/str_cat.h>
#include <absl/strings/str_replace.h>
#include <absl/strings/str_split.h>
#include <absl/strings/string_view.h>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <iterator>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace {

using namespace ZSpace;

/// Abseil may have been built with a view of its own.
absl::string_view viewed(std::string_view text)
{
    return {text.data(), text.size()};
}

/// A builder written by hand, which grows as ours does.
class Buffer {
public:
    explicit Buffer(long capacity)
        : m_text(new char[static_cast<std::size_t>(capacity) + 1])
        , m_capacity(capacity)
    {
    }

    /// The end, with space for `n` more characters and a terminator.
    char* extended(long n)
    {
        if (m_length + n >= m_capacity) [[unlikely]]
            grow(n);
        return m_text.get() + m_length;
    }
    void setEnd(const char* end)
    {
        m_length = end - m_text.get();
        m_text[static_cast<std::size_t>(m_length)] = 0;
    }
    /// Ends the text after `n` characters more.
    void extend(long n) { setEnd(m_text.get() + m_length + n); }
    void append(std::string_view text)
    {
        std::memcpy(extended(static_cast<long>(text.size())), text.data(), text.size());
        extend(static_cast<long>(text.size()));
    }
    void append(char c)
    {
        *extended(1) = c;
        extend(1);
    }
    void clear()
    {
        m_length = 0;
        m_text[0] = 0;
    }
    [[nodiscard]] const char* data() const { return m_text.get(); }

private:
    void grow(long n)
    {
        const long capacity = m_capacity + m_capacity / 2 + n + 1;
        std::unique_ptr<char[]> grown(new char[static_cast<std::size_t>(capacity) + 1]);
        std::memcpy(grown.get(), m_text.get(), static_cast<std::size_t>(m_length));
        m_text = std::move(grown);
        m_capacity = capacity;
    }

    std::unique_ptr<char[]> m_text;
    long m_capacity;
    long m_length = 0;
};

// 1,000 short texts, and 1,000 characters, in a builder that grows and in one whose capacity suffices

constexpr std::string_view s_shortText = "some text";
constexpr long s_appends = 1000;
constexpr long s_sufficient = 10 * s_appends;

void appendTextsTo(ZMStr<char>& text)
{
    for (long i = 0; i < s_appends; ++i)
        text.append(s_shortText.data(), opaque(static_cast<long>(s_shortText.size())));
    benchmark::DoNotOptimize(text.data());
}

template <typename Builder>
void appendTextsTo(Builder& text)
{
    for (long i = 0; i < s_appends; ++i)
        text.append(std::string_view(s_shortText.data(), opaque(s_shortText.size())));
    benchmark::DoNotOptimize(text.data());
}

void builderTexts(benchmark::State& state)
{
    for (auto _ : state) {
        ZMStr<char> text;
        appendTextsTo(*opaque(&text));
    }
}
BENCHMARK(builderTexts);

void builderTexts_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        Buffer text(0);
        appendTextsTo(*opaque(&text));
    }
}
BENCHMARK(builderTexts_baseline);

template <typename Builder>
void builderTexts(benchmark::State& state)
{
    for (auto _ : state) {
        Builder text;
        appendTextsTo(*opaque(&text));
    }
}
BENCHMARK(builderTexts<std::string>)->Name("builderTexts_std");
BENCHMARK(builderTexts<fmt::memory_buffer>)->Name("builderTexts_fmt");

void builderTextsReserved(benchmark::State& state)
{
    for (auto _ : state) {
        ZMStr<char> text(s_sufficient);
        appendTextsTo(*opaque(&text));
    }
}
BENCHMARK(builderTextsReserved);

void builderTextsReserved_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        Buffer text(s_sufficient);
        appendTextsTo(*opaque(&text));
    }
}
BENCHMARK(builderTextsReserved_baseline);

template <typename Builder>
void builderTextsReserved(benchmark::State& state)
{
    for (auto _ : state) {
        Builder text;
        text.reserve(s_sufficient);
        appendTextsTo(*opaque(&text));
    }
}
BENCHMARK(builderTextsReserved<std::string>)->Name("builderTextsReserved_std");
BENCHMARK(builderTextsReserved<fmt::memory_buffer>)->Name("builderTextsReserved_fmt");

template <typename Builder>
void appendCharactersTo(Builder& text)
{
    for (long i = 0; i < s_appends; ++i)
        text.append(opaque('x'));
    benchmark::DoNotOptimize(text.data());
}

void builderCharacters(benchmark::State& state)
{
    for (auto _ : state) {
        ZMStr<char> text;
        appendCharactersTo(*opaque(&text));
    }
}
BENCHMARK(builderCharacters);

void builderCharacters_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        Buffer text(0);
        appendCharactersTo(*opaque(&text));
    }
}
BENCHMARK(builderCharacters_baseline);

void builderCharactersReserved(benchmark::State& state)
{
    for (auto _ : state) {
        ZMStr<char> text(s_sufficient);
        appendCharactersTo(*opaque(&text));
    }
}
BENCHMARK(builderCharactersReserved);

void builderCharactersReserved_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        Buffer text(s_sufficient);
        appendCharactersTo(*opaque(&text));
    }
}
BENCHMARK(builderCharactersReserved_baseline);

// One log line, 2024-03-05 [123] text: value, in a builder that grows and in one whose capacity suffices

constexpr std::array<std::array<char, 2>, 100> s_pairs = [] {
    std::array<std::array<char, 2>, 100> pairs{};
    for (unsigned i = 0; i < 100; ++i)
        pairs[i] = {static_cast<char>('0' + i / 10), static_cast<char>('0' + i % 10)};
    return pairs;
}();

inline void putPair(char* to, unsigned number)
{
    std::memcpy(to, s_pairs[number].data(), 2);
}

constexpr auto s_powersOfTen = [] {
    std::array<std::uint64_t, 20> powers{};
    std::uint64_t power = 1;
    for (auto& each : powers) {
        each = power;
        power *= 10;
    }
    return powers;
}();

inline int digitsOf(std::uint64_t number)
{
    const int guess = static_cast<int>(std::bit_width(number | 1)) * 1233 >> 12;
    return guess + ((number | 1) >= s_powersOfTen[static_cast<std::size_t>(guess)]);
}

/// Two digits per division, from the last one on.
template <std::unsigned_integral Number>
inline char* putDigits(char* to, Number number)
{
    char* const end = to + digitsOf(number);
    char* at = end;
    for (; number >= 100; number /= 100)
        putPair(at -= 2, static_cast<unsigned>(number % 100));
    if (number >= 10)
        putPair(at - 2, static_cast<unsigned>(number));
    else
        at[-1] = static_cast<char>('0' + number);
    return end;
}

template <std::signed_integral Number>
inline char* putInteger(char* to, Number number)
{
    auto magnitude = static_cast<std::make_unsigned_t<Number>>(number);
    if (number < 0) {
        *to++ = '-';
        magnitude = 0 - magnitude;
    }
    return putDigits(to, magnitude);
}

constexpr std::string_view s_lineText = "] the text of the line: ";

void buildLine(ZMStr<char>& line, int number)
{
    line.appendValueOf(opaque(2024), 4)
        .append('-')
        .appendValueOf(opaque(3), 2)
        .append('-')
        .appendValueOf(opaque(5), 2);
    line << " [" << number;
    line.append(s_lineText) << opaque(42) << '\n';
    benchmark::DoNotOptimize(line.data());
}

void appendPair(Buffer& line, int number)
{
    putPair(line.extended(2), static_cast<unsigned>(number));
    line.extend(2);
}

void appendInteger(Buffer& line, int number)
{
    line.setEnd(putInteger(line.extended(12), number));
}

/// The pieces come one by one, as they do to any builder.
void buildLine(Buffer& line, int number)
{
    const int year = opaque(2024);
    appendPair(line, year / 100);
    appendPair(line, year % 100);
    line.append('-');
    appendPair(line, opaque(3));
    line.append('-');
    appendPair(line, opaque(5));
    line.append(" [");
    appendInteger(line, number);
    line.append(s_lineText);
    appendInteger(line, opaque(42));
    line.append('\n');
    benchmark::DoNotOptimize(line.data());
}

void buildLine(fmt::memory_buffer& line, int number)
{
    fmt::format_to(std::back_inserter(line), FMT_COMPILE("{:04}-{:02}-{:02} [{}{}{}\n"), opaque(2024),
        opaque(3), opaque(5), number, s_lineText, opaque(42));
    benchmark::DoNotOptimize(line.data());
}

void buildLine(std::string& line, int number)
{
    absl::StrAppend(
        &line, absl::Dec(opaque(2024), absl::kZeroPad4), "-", absl::Dec(opaque(3), absl::kZeroPad2), "-");
    absl::StrAppend(&line, absl::Dec(opaque(5), absl::kZeroPad2), " [", number, viewed(s_lineText));
    absl::StrAppend(&line, opaque(42), "\n");
    benchmark::DoNotOptimize(line.data());
}

void builderLine(benchmark::State& state)
{
    int i = 0;
    for (auto _ : state) {
        ZMStr<char> line;
        buildLine(*opaque(&line), ++i);
    }
}
BENCHMARK(builderLine);

void builderLine_baseline(benchmark::State& state)
{
    int i = 0;
    for (auto _ : state) {
        Buffer line(0);
        buildLine(*opaque(&line), ++i);
    }
}
BENCHMARK(builderLine_baseline);

template <typename Builder>
void builderLine(benchmark::State& state)
{
    int i = 0;
    for (auto _ : state) {
        Builder line;
        buildLine(*opaque(&line), ++i);
    }
}
BENCHMARK(builderLine<fmt::memory_buffer>)->Name("builderLine_fmt");
BENCHMARK(builderLine<std::string>)->Name("builderLine_absl");

void builderLineReserved(benchmark::State& state)
{
    ZMStr<char> line(200);
    int i = 0;
    for (auto _ : state) {
        line.remove(0);
        buildLine(*opaque(&line), ++i);
    }
}
BENCHMARK(builderLineReserved);

void builderLineReserved_baseline(benchmark::State& state)
{
    Buffer line(200);
    int i = 0;
    for (auto _ : state) {
        line.clear();
        buildLine(*opaque(&line), ++i);
    }
}
BENCHMARK(builderLineReserved_baseline);

template <typename Builder>
void builderLineReserved(benchmark::State& state)
{
    Builder line;
    line.reserve(200);
    int i = 0;
    for (auto _ : state) {
        line.clear();
        buildLine(*opaque(&line), ++i);
    }
}
BENCHMARK(builderLineReserved<fmt::memory_buffer>)->Name("builderLineReserved_fmt");
BENCHMARK(builderLineReserved<std::string>)->Name("builderLineReserved_absl");

// Integers of every length to text: 1,024 of them in a builder, and one as a new string

template <typename Number>
const std::vector<Number>& numbers()
{
    static const std::vector<Number> all = [] {
        std::mt19937_64 random(1);
        std::vector<Number> made(1024);
        for (Number& number : made)
            number = static_cast<Number>(static_cast<Number>(random()) >> random() % (8 * sizeof number));
        return made;
    }();
    return all;
}

template <typename Number>
void integersToBuilder(benchmark::State& state)
{
    ZMStr<char> text(40 * 1024L);
    for (auto _ : state) {
        text.remove(0);
        for (const Number number : numbers<Number>())
            text << number;
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(integersToBuilder<int>)->Name("int32ToBuilder");
BENCHMARK(integersToBuilder<long long>)->Name("int64ToBuilder");

template <typename Number>
void integersToBuilder_baseline(benchmark::State& state)
{
    Buffer text(40 * 1024L);
    for (auto _ : state) {
        text.clear();
        for (const Number number : numbers<Number>())
            text.setEnd(putInteger(text.extended(21), number));
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(integersToBuilder_baseline<int>)->Name("int32ToBuilder_baseline");
BENCHMARK(integersToBuilder_baseline<long long>)->Name("int64ToBuilder_baseline");

template <typename Number>
void integersToBuilder_fmt(benchmark::State& state)
{
    fmt::memory_buffer text;
    text.reserve(40 * 1024);
    for (auto _ : state) {
        text.clear();
        for (const Number number : numbers<Number>()) {
            const fmt::format_int digits(number);
            text.append(digits.data(), digits.data() + digits.size());
        }
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(integersToBuilder_fmt<int>)->Name("int32ToBuilder_fmt");
BENCHMARK(integersToBuilder_fmt<long long>)->Name("int64ToBuilder_fmt");

template <typename Number>
void integersToBuilder_absl(benchmark::State& state)
{
    std::string text;
    text.reserve(40 * 1024);
    for (auto _ : state) {
        text.clear();
        for (const Number number : numbers<Number>())
            absl::StrAppend(&text, number);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(integersToBuilder_absl<int>)->Name("int32ToBuilder_absl");
BENCHMARK(integersToBuilder_absl<long long>)->Name("int64ToBuilder_absl");

/// Into an array, without a builder's checks.
template <typename Number>
void integersToBuilder_to_chars(benchmark::State& state)
{
    std::string text(40 * 1024, '\0');
    for (auto _ : state) {
        char* to = text.data();
        for (const Number number : numbers<Number>())
            to = std::to_chars(to, text.data() + text.size(), number).ptr;
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(integersToBuilder_to_chars<int>)->Name("int32ToBuilder_to_chars");
BENCHMARK(integersToBuilder_to_chars<long long>)->Name("int64ToBuilder_to_chars");

template <typename Number>
void integersToStrings(benchmark::State& state)
{
    for (auto _ : state) {
        for (const Number number : numbers<Number>())
            benchmark::DoNotOptimize(ZGStr<char>::valueOf(number));
    }
}
BENCHMARK(integersToStrings<int>)->Name("int32ToString");
BENCHMARK(integersToStrings<long long>)->Name("int64ToString");

template <typename Number>
void integersToStrings_baseline(benchmark::State& state)
{
    for (auto _ : state) {
        for (const Number number : numbers<Number>()) {
            std::unique_ptr<char[]> text(new char[24]);
            *putInteger(text.get(), number) = 0;
            benchmark::DoNotOptimize(text);
        }
    }
}
BENCHMARK(integersToStrings_baseline<int>)->Name("int32ToString_baseline");
BENCHMARK(integersToStrings_baseline<long long>)->Name("int64ToString_baseline");

template <typename Number>
void integersToStrings_fmt(benchmark::State& state)
{
    for (auto _ : state) {
        for (const Number number : numbers<Number>())
            benchmark::DoNotOptimize(fmt::format_int(number).str());
    }
}
BENCHMARK(integersToStrings_fmt<int>)->Name("int32ToString_fmt");
BENCHMARK(integersToStrings_fmt<long long>)->Name("int64ToString_fmt");

template <typename Number>
void integersToStrings_std(benchmark::State& state)
{
    for (auto _ : state) {
        for (const Number number : numbers<Number>())
            benchmark::DoNotOptimize(std::to_string(number));
    }
}
BENCHMARK(integersToStrings_std<int>)->Name("int32ToString_std");
BENCHMARK(integersToStrings_std<long long>)->Name("int64ToString_std");

// Text to numbers

/// Texts of numbers, at one address each.
template <typename Number>
std::vector<std::string> numberTexts()
{
    std::vector<std::string> texts;
    for (const Number number : numbers<Number>())
        texts.push_back(std::to_string(number));
    return texts;
}

template <typename Number>
void textToIntegers(benchmark::State& state)
{
    const auto texts = numberTexts<Number>();
    for (auto _ : state) {
        for (const std::string& text : texts) {
            const auto length = static_cast<long>(text.size());
            if constexpr (sizeof(Number) == sizeof(int))
                benchmark::DoNotOptimize(ZGStr<char>::toInt32(text.data(), length));
            else
                benchmark::DoNotOptimize(ZGStr<char>::toInt64(text.data(), length));
        }
    }
}
BENCHMARK(textToIntegers<int>)->Name("textToInt32");
BENCHMARK(textToIntegers<long long>)->Name("textToInt64");

template <typename Number>
void textToIntegers_baseline(benchmark::State& state)
{
    const auto texts = numberTexts<Number>();
    for (auto _ : state) {
        for (const std::string& text : texts) {
            const char* at = text.data();
            const char* const end = at + text.size();
            const bool isNegative = at != end && *at == '-';
            at += isNegative;
            std::make_unsigned_t<Number> number = 0;
            for (unsigned digit = 0; at != end && (digit = static_cast<unsigned>(*at - '0')) < 10; ++at)
                number = number * 10 + digit;
            benchmark::DoNotOptimize(static_cast<Number>(isNegative ? 0 - number : number));
        }
    }
}
BENCHMARK(textToIntegers_baseline<int>)->Name("textToInt32_baseline");
BENCHMARK(textToIntegers_baseline<long long>)->Name("textToInt64_baseline");

/// What the standard library reads from each text.
template <typename Number>
void readByStandard(benchmark::State& state, const std::vector<std::string>& texts)
{
    for (auto _ : state) {
        for (const std::string& text : texts) {
            Number number{};
            std::from_chars(text.data(), text.data() + text.size(), number);
            benchmark::DoNotOptimize(number);
        }
    }
}

template <typename Number>
void textToIntegers_from_chars(benchmark::State& state)
{
    readByStandard<Number>(state, numberTexts<Number>());
}
BENCHMARK(textToIntegers_from_chars<int>)->Name("textToInt32_from_chars");
BENCHMARK(textToIntegers_from_chars<long long>)->Name("textToInt64_from_chars");

template <typename Number>
void textToIntegers_absl(benchmark::State& state)
{
    const auto texts = numberTexts<Number>();
    for (auto _ : state) {
        for (const std::string& text : texts) {
            Number number{};
            benchmark::DoNotOptimize(absl::SimpleAtoi(text, &number));
            benchmark::DoNotOptimize(number);
        }
    }
}
BENCHMARK(textToIntegers_absl<int>)->Name("textToInt32_absl");
BENCHMARK(textToIntegers_absl<long long>)->Name("textToInt64_absl");

/// Numbers with one to six digits on each side of the point.
std::vector<double> reals()
{
    std::mt19937 random(1);
    std::vector<double> all(1024);
    for (double& number : all) {
        const auto whole = static_cast<double>(random() % 1'000'000 >> random() % 16);
        number = whole + static_cast<double>(random() % 1'000'000) / 1'000'000;
    }
    return all;
}

std::vector<std::string> realTexts()
{
    std::vector<std::string> texts;
    for (const double number : reals()) {
        std::array<char, 64> text{};
        texts.emplace_back(text.data(),
            std::to_chars(text.data(), text.data() + text.size(), number, std::chars_format::fixed).ptr);
    }
    return texts;
}

void textToDouble(benchmark::State& state)
{
    const auto texts = realTexts();
    for (auto _ : state) {
        for (const std::string& text : texts)
            benchmark::DoNotOptimize(ZGStr<char>::toDouble(text.data(), static_cast<long>(text.size())));
    }
}
BENCHMARK(textToDouble);

/// The digits are added up in double arithmetic, each divided by its power of ten.
double readReal(const char* at, const char* end)
{
    const bool isNegative = at != end && *at == '-';
    at += isNegative;
    double value = 0;
    unsigned digit = 0;
    for (; at != end && (digit = static_cast<unsigned>(*at - '0')) < 10; ++at)
        value = value * 10 + digit;
    if (at != end && *at == '.') {
        double power = 1;
        for (++at; at != end && (digit = static_cast<unsigned>(*at - '0')) < 10; ++at)
            value += digit / (power *= 10);
    }
    return isNegative ? -value : value;
}

void textToDouble_baseline(benchmark::State& state)
{
    const auto texts = realTexts();
    for (auto _ : state) {
        for (const std::string& text : texts)
            benchmark::DoNotOptimize(readReal(text.data(), text.data() + text.size()));
    }
}
BENCHMARK(textToDouble_baseline);

void textToDouble_from_chars(benchmark::State& state)
{
    readByStandard<double>(state, realTexts());
}
BENCHMARK(textToDouble_from_chars);

void doubleToText(benchmark::State& state)
{
    const auto all = reals();
    ZMStr<char> text(50 * 1024L);
    for (auto _ : state) {
        text.remove(0);
        for (const double number : all)
            text << number;
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(doubleToText);

/// One digit for each multiplication by ten, until nothing remains: the digits of double arithmetic.
char* putReal(char* to, double number)
{
    if (number < 0)
        *to++ = '-';
    number = std::fabs(number);
    const auto whole = static_cast<std::uint64_t>(number);
    const char* const limit = to + 41;
    to = putDigits(to, whole);
    double fraction = number - static_cast<double>(whole);
    if (fraction != 0)
        *to++ = '.';
    for (; fraction != 0 && to < limit; fraction -= static_cast<int>(fraction)) {
        fraction *= 10;
        *to++ = static_cast<char>('0' + static_cast<int>(fraction));
    }
    return to;
}

void doubleToText_baseline(benchmark::State& state)
{
    const auto all = reals();
    Buffer text(50 * 1024L);
    for (auto _ : state) {
        text.clear();
        for (const double number : all)
            text.setEnd(putReal(text.extended(42), number));
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(doubleToText_baseline);

/// The shortest digits that read back as the same number.
void doubleToText_fmt(benchmark::State& state)
{
    const auto all = reals();
    fmt::memory_buffer text;
    text.reserve(50 * 1024);
    for (auto _ : state) {
        text.clear();
        for (const double number : all)
            fmt::format_to(std::back_inserter(text), FMT_COMPILE("{}"), number);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(doubleToText_fmt);

/// Six digits.
void doubleToText_absl(benchmark::State& state)
{
    const auto all = reals();
    std::string text;
    text.reserve(50 * 1024);
    for (auto _ : state) {
        text.clear();
        for (const double number : all)
            absl::StrAppend(&text, number);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(doubleToText_absl);

// Searching 4 KiB of words, with the match at their end

std::string words(long n)
{
    std::mt19937 random(1);
    std::string text;
    while (static_cast<long>(text.size()) < n)
        text.push_back(random() % 6 == 0 ? ' ' : static_cast<char>('a' + random() % 26));
    return text;
}

constexpr long s_searched = 4096;
constexpr std::string_view s_needle = "needle!";

void findCharacter(benchmark::State& state)
{
    const ZMStr<char> text(words(s_searched).append("!"));
    for (auto _ : state)
        benchmark::DoNotOptimize(text.indexOf(opaque('!')));
}
BENCHMARK(findCharacter);

void findCharacter_baseline(benchmark::State& state)
{
    const std::string text = words(s_searched).append("!");
    for (auto _ : state) {
        const void* hit = std::memchr(text.data(), opaque('!'), text.size());
        benchmark::DoNotOptimize(hit ? static_cast<const char*>(hit) - text.data() : -1);
    }
}
BENCHMARK(findCharacter_baseline);

void findCharacter_std(benchmark::State& state)
{
    const std::string text = words(s_searched).append("!");
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(opaque('!')));
}
BENCHMARK(findCharacter_std);

void findText(benchmark::State& state)
{
    const ZMStr<char> text(words(s_searched).append(s_needle));
    for (auto _ : state)
        benchmark::DoNotOptimize(text.indexOf(opaque(s_needle)));
}
BENCHMARK(findText);

/// The first character of the needle, then the rest.
const char* searched(const char* from, const char* end, std::string_view what)
{
    const auto rest = static_cast<std::ptrdiff_t>(what.size());
    while (end - from >= rest) {
        const void* hit = std::memchr(from, what[0], static_cast<std::size_t>(end - from - rest + 1));
        if (!hit)
            break;
        from = static_cast<const char*>(hit);
        if (std::memcmp(from, what.data(), what.size()) == 0)
            return from;
        ++from;
    }
    return nullptr;
}

void findText_baseline(benchmark::State& state)
{
    const std::string text = words(s_searched).append(s_needle);
    for (auto _ : state) {
        const char* hit = searched(text.data(), text.data() + text.size(), opaque(s_needle));
        benchmark::DoNotOptimize(hit ? hit - text.data() : -1);
    }
}
BENCHMARK(findText_baseline);

void findText_std(benchmark::State& state)
{
    const std::string text = words(s_searched).append(s_needle);
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(opaque(s_needle)));
}
BENCHMARK(findText_std);

void findText_memmem(benchmark::State& state)
{
    const std::string text = words(s_searched).append(s_needle);
    for (auto _ : state) {
        const std::string_view sought = opaque(s_needle);
        benchmark::DoNotOptimize(memmem(text.data(), text.size(), sought.data(), sought.size()));
    }
}
BENCHMARK(findText_memmem);

// Replacing all of 100 commas by a longer text, into a new array

/// Numbers, separated by commas.
std::string list(long pieces)
{
    std::string text;
    for (long i = 0; i < pieces; ++i)
        text.append(i > 0 ? "," : "").append(std::to_string(i * 7919));
    return text;
}

constexpr std::string_view s_replacement = ", ";

template <long whatLength>
void replaceAll(benchmark::State& state)
{
    const std::string text = list(100);
    const char* const what = whatLength == 1 ? "," : "0,";
    for (auto _ : state) {
        char* made = ZGStr<char>::replace(text.data(), static_cast<long>(text.size()), opaque(what),
            whatLength, s_replacement.data(), static_cast<long>(s_replacement.size()));
        benchmark::DoNotOptimize(made);
        ZGStr<char>::release(made);
    }
}
BENCHMARK(replaceAll<1>)->Name("replaceAll");
BENCHMARK(replaceAll<2>)->Name("replaceAllTexts");

/// Counts the hits first, so that the result is allocated once.
template <std::size_t whatLength>
void replaceAll_baseline(benchmark::State& state)
{
    const std::string text = list(100);
    const std::string_view what = whatLength == 1 ? "," : "0,";
    const char* const end = text.data() + text.size();
    for (auto _ : state) {
        const std::string_view sought = opaque(what);
        std::size_t hits = 0;
        for (const char* at = text.data(); (at = searched(at, end, sought)); at += whatLength)
            ++hits;
        const std::size_t length = text.size() + hits * (s_replacement.size() - whatLength);
        std::unique_ptr<char[]> made(new char[length + 1]);
        char* to = made.get();
        const char* from = text.data();
        for (const char* hit = from; (hit = searched(from, end, sought)); from = hit + whatLength) {
            std::memcpy(to, from, static_cast<std::size_t>(hit - from));
            to += hit - from;
            std::memcpy(to, s_replacement.data(), s_replacement.size());
            to += s_replacement.size();
        }
        std::memcpy(to, from, static_cast<std::size_t>(end - from));
        made[length] = 0;
        benchmark::DoNotOptimize(made);
    }
}
BENCHMARK(replaceAll_baseline<1>)->Name("replaceAll_baseline");
BENCHMARK(replaceAll_baseline<2>)->Name("replaceAllTexts_baseline");

void replaceAll_absl(benchmark::State& state)
{
    const std::string text = list(100);
    for (auto _ : state)
        benchmark::DoNotOptimize(absl::StrReplaceAll(text, {{opaque(","), viewed(s_replacement)}}));
}
BENCHMARK(replaceAll_absl);

// Splitting at commas; each piece is an owned string

void splitInto(benchmark::State& state)
{
    const ZGStr<char> text(list(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(text.split(opaque(',')).Count());
}
BENCHMARK(splitInto)->Arg(5)->Arg(1000)->Arg(100'000)->Arg(1'000'000);

void splitInto_baseline(benchmark::State& state)
{
    const std::string text = list(state.range(0));
    for (auto _ : state) {
        const char separator = opaque(',');
        const char* from = text.c_str();
        const char* const end = from + std::strlen(from);
        std::size_t count = 1;
        for (const char* at = from; at != end; ++at)
            count += *at == separator;
        std::unique_ptr<std::unique_ptr<char[]>[]> pieces(new std::unique_ptr<char[]>[count]);
        for (std::size_t i = 0; i < count; ++i) {
            const void* hit = std::memchr(from, separator, static_cast<std::size_t>(end - from));
            const char* const stop = hit ? static_cast<const char*>(hit) : end;
            const auto length = static_cast<std::size_t>(stop - from);
            pieces[i].reset(new char[length + 1]);
            std::memcpy(pieces[i].get(), from, length);
            pieces[i][length] = 0;
            from = stop + 1;
        }
        benchmark::DoNotOptimize(pieces);
    }
}
BENCHMARK(splitInto_baseline)->Arg(5)->Arg(1000)->Arg(100'000)->Arg(1'000'000);

void splitInto_absl(benchmark::State& state)
{
    const std::string text = list(state.range(0));
    for (auto _ : state) {
        const std::vector<std::string> pieces = absl::StrSplit(text, opaque(','));
        benchmark::DoNotOptimize(pieces.data());
    }
}
BENCHMARK(splitInto_absl)->Arg(5)->Arg(1000)->Arg(100'000)->Arg(1'000'000);

// Lengths and conversions of 4 KiB

void lengthNarrow(benchmark::State& state)
{
    const ZGStr<char> text(words(s_searched));
    for (auto _ : state)
        benchmark::DoNotOptimize(ZGStr<char>::length(opaque(text.data())));
}
BENCHMARK(lengthNarrow);

void lengthNarrow_baseline(benchmark::State& state)
{
    const std::string text = words(s_searched);
    for (auto _ : state)
        benchmark::DoNotOptimize(std::strlen(opaque(text.data())));
}
BENCHMARK(lengthNarrow_baseline);

std::wstring wideWords(long n)
{
    const std::string narrow = words(n);
    return {narrow.begin(), narrow.end()};
}

void lengthWide(benchmark::State& state)
{
    const ZGStr<wchar_t> text(wideWords(s_searched));
    for (auto _ : state)
        benchmark::DoNotOptimize(ZGStr<wchar_t>::length(opaque(text.data())));
}
BENCHMARK(lengthWide);

void lengthWide_baseline(benchmark::State& state)
{
    const std::wstring text = wideWords(s_searched);
    for (auto _ : state)
        benchmark::DoNotOptimize(std::wcslen(opaque(text.data())));
}
BENCHMARK(lengthWide_baseline);

void narrowing(benchmark::State& state)
{
    const std::wstring wide = wideWords(s_searched);
    ZMStr<char> text(s_searched + 10);
    for (auto _ : state) {
        text.remove(0);
        text.appendValueOf(opaque(wide.data()), s_searched);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(narrowing);

/// Each unit by itself; compilers vectorize this.
template <typename To, typename From>
void convert(benchmark::State& state, const From* from)
{
    std::vector<To> text(s_searched + 1);
    for (auto _ : state) {
        To* __restrict to = opaque(text.data());
        const From* __restrict units = opaque(from);
        for (long i = 0; i < s_searched; ++i)
            to[i] = static_cast<To>(static_cast<std::make_unsigned_t<From>>(units[i]));
        to[s_searched] = 0;
        benchmark::DoNotOptimize(to);
        benchmark::ClobberMemory();
    }
}

void narrowing_baseline(benchmark::State& state)
{
    convert<char>(state, wideWords(s_searched).c_str());
}
BENCHMARK(narrowing_baseline);

void widening(benchmark::State& state)
{
    const std::string narrow = words(s_searched);
    ZMStr<wchar_t> text(s_searched + 10);
    for (auto _ : state) {
        text.remove(0);
        text.appendValueOf(opaque(narrow.data()), s_searched);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(widening);

void widening_baseline(benchmark::State& state)
{
    convert<wchar_t>(state, words(s_searched).c_str());
}
BENCHMARK(widening_baseline);

} // namespace
