// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// What the rows of the table do not show of the strings, next to the standard library, {fmt} and Abseil.

#include "ZSpace/string/ZMStr.h"

#include <benchmark/benchmark.h>

#include <absl/strings/escaping.h>
#include <absl/strings/match.h>
#include <algorithm>
#include <array>
#include <cstdint>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace ZSpace;

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
