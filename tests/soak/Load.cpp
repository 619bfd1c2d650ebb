// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "tests/soak/Load.h"

#include <charconv>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <string_view>

namespace ZSpace::Soak {

namespace {

constexpr std::size_t s_prefixTime = std::string_view("2026-03-04T05:06:07.089 Thread[").size();

/// The writer and the number of a whole line.
struct Parsed {
    std::string_view writer;
    long number;
};

/// Splits "2026-03-04T05:06:07.089 Thread[1a03]:\twriter number end".
bool parse(std::string_view line, Parsed& parsed)
{
    const std::size_t tab = line.find("]:\t");
    constexpr std::string_view s_end = " end";
    if (tab == std::string_view::npos || tab < s_prefixTime || line[s_prefixTime - 1] != '['
        || line.rfind("]:\t") != tab || !line.ends_with(s_end))
        return false;
    const std::string_view text = line.substr(tab + 3, line.size() - tab - 3 - s_end.size());
    const std::size_t blank = text.find(' ');
    if (blank == std::string_view::npos)
        return false;
    parsed.writer = text.substr(0, blank);
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data() + blank + 1, end, parsed.number);
    return error == std::errc() && stop == end;
}

} // namespace

void logNumbered(ZLogBook& book, const std::string& writer, long number)
{
    char text[100];
    std::snprintf(text, sizeof text, "%s %ld end", writer.c_str(), number);
    book.add(ZLogRecord() << text);
}

Lines readNumbered(const std::filesystem::path& file, bool mayHaveGaps)
{
    Lines lines;
    std::ifstream stream(file, std::ios::binary);
    for (std::string line; std::getline(stream, line);) {
        Parsed parsed{};
        if (line.empty() || line == "\r")
            continue; // between sessions
        if (!parse(line, parsed) || stream.eof()) { // without its line feed
            ++lines.broken;
            continue;
        }
        ++lines.whole;
        long& next = lines.next[std::string(parsed.writer)];
        lines.disordered += mayHaveGaps ? parsed.number < next : parsed.number != next;
        next = parsed.number + 1;
    }
    return lines;
}

ZRef<ZLogBook> openBook(const std::filesystem::path& file)
{
    const std::string narrow = file.string();
    return ZRef<ZLogBook>(new ZLogBookFile(std::wstring(narrow.begin(), narrow.end()).c_str()));
}

std::string grouped(long number)
{
    const std::string digits = std::to_string(number);
    std::string result;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        if (i > 0 && (digits.size() - i) % 3 == 0)
            result += ',';
        result += digits[i];
    }
    return result;
}

} // namespace ZSpace::Soak
