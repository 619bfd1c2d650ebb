// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Builds lines of arbitrary records, as plain text and as JSON. The plain text must be that of the values, in order;
// the JSON must be one object on one line.

#include "ZSpace/log/detail/JsonLine.h"
#include "ZSpace/log/detail/LogLine.h"
#include "fuzz/FuzzText.h"

#include <cstring>
#include <deque>
#include <string>

namespace {

using namespace ZSpace;
using ZSpaceFuzz::Input;
using ZSpaceFuzz::require;

/// The strings that a record only points to.
struct Kept {
    std::deque<std::string> narrow;
    std::deque<std::wstring> wide;
};

std::wstring wideText(Input& input)
{
    std::wstring text;
    for (int count = input.byte() % 20; count > 0; --count)
        text += static_cast<wchar_t>(input.byte() << 13 | input.byte());
    return std::wstring(text.c_str());
}

void addValue(ZLogRecord& record, Input& input, Kept& kept)
{
    const std::uint8_t kind = input.byte() % 13;
    const long long number = (input.byte() * 256LL + input.byte()) * 65536 + input.byte();
    switch (kind) {
    case 0:
        record << static_cast<int>(number - 100);
        break;
    case 1:
        record << static_cast<unsigned int>(number);
        break;
    case 2:
        record << (number << 31) - 1;
        break;
    case 3:
        record << static_cast<unsigned long long>(number) * 0x9E3779B97F4A7C15;
        break;
    case 4:
        record << (number % 2 == 0);
        break;
    case 5:
        record << static_cast<double>(number) / 1024;
        break;
    case 6:
        record << static_cast<short>(number);
        break;
    case 7:
        record << kept.narrow.emplace_back(input.text(200).c_str()).c_str();
        break;
    case 8:
        record << ZGStr<char>(input.text(200).c_str());
        break;
    case 9:
        record << kept.wide.emplace_back(wideText(input)).c_str();
        break;
    case 10:
        record << ZGStr<wchar_t>(wideText(input).c_str());
        break;
    case 11:
        record << ZTime(2024, 3, 5, 7, 8, static_cast<unsigned char>(number % 60), 0);
        break;
    default:
        kept.narrow.emplace_back(
            static_cast<std::size_t>(number % 3000), static_cast<char>('a' + number % 26));
        record << kept.narrow.back().c_str(); // more than a line stores on the stack
    }
}

void checkPlain(const ZLogRecord& record)
{
    std::string expected;
    for (const ZLogRecord::Item& item : record) {
        const ZGStr<char> text = item->toCString();
        expected += std::string("\t") + (text.isEmpty() ? "" : static_cast<const char*>(text));
    }
    detail::LogLine line;
    line.appendRecord(record);
    const std::string text(line.data(), static_cast<std::size_t>(line.length()));
    const std::size_t prefix = text.find("]:") + 2;
    require(text.starts_with("20") && prefix < 50, "the prefix");
    require(text.substr(prefix) == expected + "\n", "each value behind a tab");
}

/// Parses objects, arrays and strings; checks only the characters of everything else.
void checkJson(const ZLogRecord& record)
{
    detail::LogLine line;
    detail::appendJson(line, record);
    const std::string text(line.data(), static_cast<std::size_t>(line.length()));
    require(text.starts_with("{\"time\":\"") && text.ends_with("}\n"), "an object and a line feed");
    std::string open;
    bool isInString = false;
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        const char c = text[i];
        require(static_cast<unsigned char>(c) >= 0x20, "no control character");
        if (isInString) {
            isInString = c != '"';
            if (c == '\\') {
                ++i;
                require(std::strchr("\"\\/bfnrtu", text[i]), "an escape");
            }
            continue;
        }
        isInString = c == '"';
        if (c == '{' || c == '[')
            open += c;
        if (c == '}' || c == ']') {
            require(!open.empty() && open.back() == (c == '}' ? '{' : '['), "brackets match");
            open.pop_back();
        }
        require(isInString || std::strchr("{}[]:,+-.eE0123456789truefalsnul", c),
            "a character outside of strings");
        require(!open.empty() || i + 2 == text.size(), "nothing follows the object");
    }
    require(open.empty() && !isInString, "everything is closed");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    Kept kept;
    ZLogRecord record;
    for (int count = input.byte() % 12; count > 0; --count)
        addValue(record, input, kept);
    checkPlain(record);
    checkJson(record);
    return 0;
}
