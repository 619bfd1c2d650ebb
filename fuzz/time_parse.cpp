// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Parses arbitrary input as a time. The result must be in range, survive printing and parsing as well as
// packing and unpacking, and be the same for wide input. A straightforward reference parser decides whether
// the input is a time.

#include "ZSpace/value/ZTime.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

using namespace ZSpace;

void check(bool holds)
{
    if (!holds)
        std::abort();
}

bool isSame(const ZTime& a, const ZTime& b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> pieces(1);
    for (const char c : text) {
        if (c == separator)
            pieces.emplace_back();
        else
            pieces.back() += c;
    }
    return pieces;
}

bool isTime(const std::string& text)
{
    const auto halves = split(text, 'T');
    return halves.size() == 2 && split(halves[0], '-').size() == 3 && split(halves[1], ':').size() == 3;
}

void checkRange(const ZTime& time)
{
    check(time.Year() >= 1600 && time.Year() <= 3000);
    check(time.Month() >= 1 && time.Month() <= 12);
    check(time.Day() >= 1 && time.Day() <= 31);
    check(time.Hour() <= 23 && time.Minute() <= 59 && time.Second() <= 59);
    check(time.MilliSeconds() == 0);
}

void checkRoundTrips(const ZTime& time)
{
    check(isSame(ZTime(static_cast<const char*>(time.toCString())), time));
    check(isSame(ZTime(static_cast<const char*>(time.toCStringEx())), time));
    check(isSame(ZTime(static_cast<const wchar_t*>(time.toWString())), time));
    check(isSame(ZTime(static_cast<unsigned long long>(time)), time));
    check(time.toCString().Length() == 19 && time.toCStringEx().Length() == 23);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::string text(bytes.c_str()); // up to the first zero

    const ZTime before(2024, 3, 5, 7, 8, 9, 42);
    ZTime time(before);
    time = text.c_str();
    if (isTime(text)) {
        checkRange(time);
        checkRoundTrips(time);
        check(isSame(ZTime(text.c_str()), time));
    } else {
        check(isSame(time, before));
        check(ZTime(text.c_str()).isCleared());
    }

    ZTime wide(before);
    wide = ZGStr<wchar_t>(text.c_str());
    check(isSame(wide, time));
    return 0;
}
