// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// The strings next to the standard library, {fmt} and Abseil, in the same run.

#include "ZSpace/string/ZMStr.h"

#include <benchmark/benchmark.h>

#include <absl/strings/escaping.h>
#include <absl/strings/match.h>
#include <absl/strings/numbers.h>
#include <absl/strings/str_cat.h>
#include <absl/strings/str_replace.h>
#include <absl/strings/str_split.h>
#include <absl/strings/string_view.h>
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace ZSpace;

/// Abseil may have been built with a view of its own.
absl::string_view viewed(std::string_view text)
{
    return {text.data(), text.size()};
}

// Appending

void appendCharacters(benchmark::State& state)
{
    for (auto _ : state) {
        ZMStr<char> text;
        for (long i = 0; i < state.range(0); ++i)
            text.append('x');
        benchmark::DoNotOptimize(static_cast<const char*>(text));
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(appendCharacters)->Arg(16)->Arg(1024);

void appendCharactersStd(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text;
        for (long i = 0; i < state.range(0); ++i)
            text.push_back('x');
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(appendCharactersStd)->Arg(16)->Arg(1024);

constexpr std::array<std::string_view, 4> s_pieces{
    "a", "few words", "and", "rather more of them, to a full line"};

void appendTexts(benchmark::State& state)
{
    for (auto _ : state) {
        ZMStr<char> text;
        for (int i = 0; i < 40; ++i) {
            const std::string_view piece = s_pieces[static_cast<std::size_t>(i % 4)];
            text.append(piece.data(), static_cast<long>(piece.size()));
        }
        benchmark::DoNotOptimize(static_cast<const char*>(text));
    }
}
BENCHMARK(appendTexts);

void appendTextsStd(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text;
        for (int i = 0; i < 40; ++i)
            text.append(s_pieces[static_cast<std::size_t>(i % 4)]);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(appendTextsStd);

void appendTextsAbseil(benchmark::State& state)
{
    for (auto _ : state) {
        std::string text;
        for (int i = 0; i < 40; ++i)
            absl::StrAppend(&text, viewed(s_pieces[static_cast<std::size_t>(i % 4)]));
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(appendTextsAbseil);

void appendTextsFmt(benchmark::State& state)
{
    for (auto _ : state) {
        fmt::memory_buffer text;
        for (int i = 0; i < 40; ++i)
            text.append(s_pieces[static_cast<std::size_t>(i % 4)]);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(appendTextsFmt);

// A log line: a time, a number, a string

void logLine(benchmark::State& state)
{
    ZMStr<char> line(200);
    int i = 0;
    for (auto _ : state) {
        line = "";
        line.appendValueOf(2024, 4).append('-').appendValueOf(3, 2).append('-').appendValueOf(5, 2);
        line << " [" << ++i << "] "
             << "the text of the line" << '\n';
        benchmark::DoNotOptimize(static_cast<const char*>(line));
    }
}
BENCHMARK(logLine);

void logLineFmt(benchmark::State& state)
{
    fmt::memory_buffer line;
    int i = 0;
    for (auto _ : state) {
        line.clear();
        fmt::format_to(std::back_inserter(line), FMT_COMPILE("{:04}-{:02}-{:02} [{}] {}\n"), 2024, 3, 5, ++i,
            "the text of the line");
        benchmark::DoNotOptimize(line.data());
    }
}
BENCHMARK(logLineFmt);

void logLineAbseil(benchmark::State& state)
{
    std::string line;
    int i = 0;
    for (auto _ : state) {
        line.clear();
        absl::StrAppend(&line, absl::Dec(2024, absl::kZeroPad4), "-", absl::Dec(3, absl::kZeroPad2), "-",
            absl::Dec(5, absl::kZeroPad2), " [", ++i, "] ", "the text of the line", "\n");
        benchmark::DoNotOptimize(line.data());
    }
}
BENCHMARK(logLineAbseil);

// Numbers

/// Numbers of every length, the same for all.
std::vector<long long> numbers()
{
    std::mt19937_64 random(1);
    std::vector<long long> all(1024);
    for (long long& number : all)
        number = static_cast<long long>(random() >> (random() % 64));
    return all;
}

// All of them in one builder, whose capacity suffices from the start.

constexpr long s_numbersRoom = 40 * 1024;

void integersToText(benchmark::State& state)
{
    const auto all = numbers();
    ZMStr<char> text(s_numbersRoom);
    for (auto _ : state) {
        text = "";
        for (const long long number : all)
            text << number;
        benchmark::DoNotOptimize(static_cast<const char*>(text));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}
BENCHMARK(integersToText);

void integersToTextWide(benchmark::State& state)
{
    const auto all = numbers();
    ZMStr<wchar_t> text(s_numbersRoom);
    for (auto _ : state) {
        text = L"";
        for (const long long number : all)
            text << number;
        benchmark::DoNotOptimize(static_cast<const wchar_t*>(text));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}
BENCHMARK(integersToTextWide);

void integersToTextStd(benchmark::State& state)
{
    const auto all = numbers();
    std::string text(s_numbersRoom, '\0');
    for (auto _ : state) {
        char* to = text.data();
        for (const long long number : all)
            to = std::to_chars(to, text.data() + text.size(), number).ptr;
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}
BENCHMARK(integersToTextStd);

void integersToTextFmt(benchmark::State& state)
{
    const auto all = numbers();
    fmt::memory_buffer text;
    text.reserve(s_numbersRoom);
    for (auto _ : state) {
        text.clear();
        for (const long long number : all) {
            const fmt::format_int digits(number);
            text.append(digits.data(), digits.data() + digits.size());
        }
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}
BENCHMARK(integersToTextFmt);

void integersToTextAbseil(benchmark::State& state)
{
    const auto all = numbers();
    std::string text;
    text.reserve(s_numbersRoom);
    for (auto _ : state) {
        text.clear();
        for (const long long number : all)
            absl::StrAppend(&text, number);
        benchmark::DoNotOptimize(text.data());
    }
    state.SetItemsProcessed(state.iterations() * static_cast<long>(all.size()));
}
BENCHMARK(integersToTextAbseil);

void integerToString(benchmark::State& state)
{
    const auto all = numbers();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(ZGStr<char>::valueOf(all[i++ % all.size()]));
}
BENCHMARK(integerToString);

void integerToStringStd(benchmark::State& state)
{
    const auto all = numbers();
    std::size_t i = 0;
    for (auto _ : state)
        benchmark::DoNotOptimize(std::to_string(all[i++ % all.size()]));
}
BENCHMARK(integerToStringStd);

/// Hundredths, as prices and times have them.
void realToText(benchmark::State& state)
{
    ZMStr<char> text(60);
    int i = 0;
    for (auto _ : state) {
        text = "";
        text << (i++ % 1000) * 0.25;
        benchmark::DoNotOptimize(static_cast<const char*>(text));
    }
}
BENCHMARK(realToText);

void realToTextStd(benchmark::State& state)
{
    std::array<char, 60> text{};
    int i = 0;
    for (auto _ : state) {
        std::to_chars(text.data(), text.data() + text.size(), (i++ % 1000) * 0.25);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(realToTextStd);

std::vector<std::string> numberTexts()
{
    std::vector<std::string> texts;
    for (const long long number : numbers())
        texts.push_back(std::to_string(number));
    return texts;
}

void textToInteger(benchmark::State& state)
{
    const auto texts = numberTexts();
    std::size_t i = 0;
    for (auto _ : state) {
        const std::string& text = texts[i++ % texts.size()];
        benchmark::DoNotOptimize(ZGStr<char>::toInt64(text.data(), static_cast<long>(text.size())));
    }
}
BENCHMARK(textToInteger);

void textToIntegerStd(benchmark::State& state)
{
    const auto texts = numberTexts();
    std::size_t i = 0;
    for (auto _ : state) {
        const std::string& text = texts[i++ % texts.size()];
        long long number = 0;
        std::from_chars(text.data(), text.data() + text.size(), number);
        benchmark::DoNotOptimize(number);
    }
}
BENCHMARK(textToIntegerStd);

void textToIntegerAbseil(benchmark::State& state)
{
    const auto texts = numberTexts();
    std::size_t i = 0;
    for (auto _ : state) {
        std::int64_t number = 0;
        benchmark::DoNotOptimize(absl::SimpleAtoi(texts[i++ % texts.size()], &number));
        benchmark::DoNotOptimize(number);
    }
}
BENCHMARK(textToIntegerAbseil);

// Hexadecimal

std::string bytes(long n)
{
    std::mt19937 random(1);
    std::string all(static_cast<std::size_t>(n), '\0');
    for (char& byte : all)
        byte = static_cast<char>(random());
    return all;
}

void bytesToHex(benchmark::State& state)
{
    const std::string data = bytes(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(ZGStr<char>::hexOf(data.data(), static_cast<long>(data.size())));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(bytesToHex)->Arg(16)->Arg(4096);

void bytesToHexAbseil(benchmark::State& state)
{
    const std::string data = bytes(state.range(0));
    for (auto _ : state)
        benchmark::DoNotOptimize(absl::BytesToHexString(data));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(bytesToHexAbseil)->Arg(16)->Arg(4096);

void hexToBytes(benchmark::State& state)
{
    const std::string data = bytes(state.range(0));
    const auto text = ZGStr<char>::hexOf(data.data(), static_cast<long>(data.size()));
    const ZStrToken<char> view(text);
    std::string read(data.size(), '\0');
    for (auto _ : state) {
        view.hexTo(read.data(), static_cast<long>(read.size()));
        benchmark::DoNotOptimize(read.data());
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(hexToBytes)->Arg(16)->Arg(4096);

void hexToBytesAbseil(benchmark::State& state)
{
    const std::string text = absl::BytesToHexString(bytes(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(absl::HexStringToBytes(text));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(hexToBytesAbseil)->Arg(16)->Arg(4096);

void numberToHex(benchmark::State& state)
{
    const auto all = numbers();
    ZMStr<char> text(40);
    std::size_t i = 0;
    for (auto _ : state) {
        text = "";
        text.appendHexOf(all[i++ % all.size()]);
        benchmark::DoNotOptimize(static_cast<const char*>(text));
    }
}
BENCHMARK(numberToHex);

void numberToHexFmt(benchmark::State& state)
{
    const auto all = numbers();
    std::array<char, 40> text{};
    std::size_t i = 0;
    for (auto _ : state) {
        fmt::format_to(
            text.data(), FMT_COMPILE("{:016x}"), static_cast<std::uint64_t>(all[i++ % all.size()]));
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(numberToHexFmt);

// Searching the words of a string, with the match at its end

std::string words(long n)
{
    std::mt19937 random(1);
    std::string text;
    while (static_cast<long>(text.size()) < n)
        text.push_back(random() % 6 == 0 ? ' ' : static_cast<char>('a' + random() % 26));
    return text;
}

constexpr std::string_view s_needle = "needle!";

void findText(benchmark::State& state)
{
    const std::string text = words(state.range(0)).append(s_needle);
    const ZStrToken<char> view(text.data(), static_cast<long>(text.size()));
    for (auto _ : state)
        benchmark::DoNotOptimize(view.indexOf(s_needle.data(), static_cast<long>(s_needle.size()), 0));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(findText)->Arg(40)->Arg(4096);

void findTextStd(benchmark::State& state)
{
    const std::string text = words(state.range(0)).append(s_needle);
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(s_needle));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(findTextStd)->Arg(40)->Arg(4096);

void findTextAbseil(benchmark::State& state)
{
    const std::string text = words(state.range(0)).append(s_needle);
    for (auto _ : state)
        benchmark::DoNotOptimize(absl::StrContains(text, viewed(s_needle)));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(findTextAbseil)->Arg(40)->Arg(4096);

void findTextMemmem(benchmark::State& state)
{
    const std::string text = words(state.range(0)).append(s_needle);
    for (auto _ : state)
        benchmark::DoNotOptimize(memmem(text.data(), text.size(), s_needle.data(), s_needle.size()));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(findTextMemmem)->Arg(40)->Arg(4096);

void findTextWide(benchmark::State& state)
{
    const std::string narrow = words(state.range(0)).append(s_needle);
    const std::wstring text(narrow.begin(), narrow.end());
    const ZStrToken<wchar_t> view(text.data(), static_cast<long>(text.size()));
    for (auto _ : state)
        benchmark::DoNotOptimize(view.indexOf(L"needle!", 7, 0));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 4);
}
BENCHMARK(findTextWide)->Arg(40)->Arg(4096);

void findTextWideStd(benchmark::State& state)
{
    const std::string narrow = words(state.range(0)).append(s_needle);
    const std::wstring text(narrow.begin(), narrow.end());
    for (auto _ : state)
        benchmark::DoNotOptimize(text.find(L"needle!"));
    state.SetBytesProcessed(state.iterations() * state.range(0) * 4);
}
BENCHMARK(findTextWideStd)->Arg(40)->Arg(4096);

void findLastCharacter(benchmark::State& state)
{
    const std::string text = std::string("/").append(words(state.range(0)));
    const ZStrToken<char> view(text.data(), static_cast<long>(text.size()));
    for (auto _ : state)
        benchmark::DoNotOptimize(view.lastIndexOf('/'));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(findLastCharacter)->Arg(40)->Arg(4096);

void findLastCharacterStd(benchmark::State& state)
{
    const std::string text = std::string("/").append(words(state.range(0)));
    for (auto _ : state)
        benchmark::DoNotOptimize(text.rfind('/'));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(findLastCharacterStd)->Arg(40)->Arg(4096);

// Splitting and replacing

std::string list(long pieces)
{
    std::string text;
    for (long i = 0; i < pieces; ++i)
        absl::StrAppend(&text, i > 0 ? "," : "", i * 7919);
    return text;
}

void splitText(benchmark::State& state)
{
    const ZGStr<char> text(list(state.range(0)).c_str());
    for (auto _ : state)
        benchmark::DoNotOptimize(text.split(',').Count());
    state.SetComplexityN(state.range(0));
}
BENCHMARK(splitText)->Arg(10)->Arg(1000)->Arg(10000)->Complexity(benchmark::oN);

void splitTextAbseil(benchmark::State& state)
{
    const std::string text = list(state.range(0));
    for (auto _ : state) {
        const std::vector<std::string> pieces = absl::StrSplit(text, ',');
        benchmark::DoNotOptimize(pieces.size());
    }
    state.SetComplexityN(state.range(0));
}
BENCHMARK(splitTextAbseil)->Arg(10)->Arg(1000)->Arg(10000)->Complexity(benchmark::oN);

void replaceText(benchmark::State& state)
{
    const std::string source = list(state.range(0));
    for (auto _ : state) {
        ZMStr<char> text(source.data(), static_cast<long>(source.size()));
        text.replace(",", ", ");
        benchmark::DoNotOptimize(static_cast<const char*>(text));
    }
}
BENCHMARK(replaceText)->Arg(10)->Arg(1000);

void replaceTextAbseil(benchmark::State& state)
{
    const std::string source = list(state.range(0));
    for (auto _ : state) {
        std::string text = source;
        absl::StrReplaceAll({{",", ", "}}, &text);
        benchmark::DoNotOptimize(text.data());
    }
}
BENCHMARK(replaceTextAbseil)->Arg(10)->Arg(1000);

// Comparing strings that differ in their last character

void compareTexts(benchmark::State& state)
{
    const std::string text = words(state.range(0));
    const ZMStr<char> a((text + "a").c_str());
    const ZMStr<char> b((text + "b").c_str());
    for (auto _ : state) {
        benchmark::ClobberMemory(); // or the comparison leaves the loop
        benchmark::DoNotOptimize(a.compare(b));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compareTexts)->Arg(7)->Arg(40)->Arg(4096);

void compareTextsStd(benchmark::State& state)
{
    const std::string text = words(state.range(0));
    const std::string a = text + "a";
    const std::string b = text + "b";
    for (auto _ : state) {
        benchmark::ClobberMemory(); // or the comparison leaves the loop
        benchmark::DoNotOptimize(a.compare(b));
    }
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compareTextsStd)->Arg(7)->Arg(40)->Arg(4096);

void compareTextsIgnoringCase(benchmark::State& state)
{
    const std::string text = words(state.range(0));
    const ZMStr<char> a(text.c_str());
    ZMStr<char> b(text.c_str());
    b.toUpper();
    for (auto _ : state)
        benchmark::DoNotOptimize(a.compareIgnoreCase(b));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compareTextsIgnoringCase)->Arg(40)->Arg(4096);

void compareTextsIgnoringCaseAbseil(benchmark::State& state)
{
    const std::string a = words(state.range(0));
    std::string b = a;
    std::transform(b.begin(), b.end(), b.begin(), [](char c) { return ZGStr<char>::toUpper(c); });
    for (auto _ : state)
        benchmark::DoNotOptimize(absl::EqualsIgnoreCase(a, b));
    state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(compareTextsIgnoringCaseAbseil)->Arg(40)->Arg(4096);

} // namespace
