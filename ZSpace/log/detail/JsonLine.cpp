// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/JsonLine.h"

#include "ZSpace/log/ZLogLevel.h"
#include "ZSpace/value/TZBinary.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

namespace ZSpace::detail {

namespace {

constexpr char32_t s_replacement = 0xFFFD;

void append(LogLine& line, const char* text)
{
    line.append(text, static_cast<long>(std::strlen(text)));
}

bool isScalar(char32_t c) noexcept
{
    return c < 0xD800 || (c > 0xDFFF && c <= 0x10FFFF);
}

void appendUtf8(LogLine& line, char32_t c)
{
    const auto tail = [c](int shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80) {
        line.append(static_cast<char>(c));
    } else if (c < 0x800) {
        const char bytes[]{static_cast<char>(0xC0 | c >> 6), tail(0)};
        line.append(bytes, sizeof bytes);
    } else if (c < 0x10000) {
        const char bytes[]{static_cast<char>(0xE0 | c >> 12), tail(6), tail(0)};
        line.append(bytes, sizeof bytes);
    } else {
        const char bytes[]{static_cast<char>(0xF0 | c >> 18), tail(12), tail(6), tail(0)};
        line.append(bytes, sizeof bytes);
    }
}

/// One character of a JSON string.
void appendCharacter(LogLine& line, char32_t c)
{
    if (c == '"' || c == '\\') {
        line.append('\\');
        line.append(static_cast<char>(c));
    } else if (c < 0x20 || c == 0x7F) {
        char escaped[8];
        std::snprintf(escaped, sizeof escaped, "\\u%04x", static_cast<unsigned int>(c));
        append(line, escaped);
    } else {
        appendUtf8(line, isScalar(c) ? c : s_replacement);
    }
}

/// Decodes the character at `bytes`, which ends at a zero.
/// @return its length; 1 for a byte that begins no valid character, and `c` is then U+FFFD.
long decode(const char* bytes, char32_t& c) noexcept
{
    const auto byteAt = [bytes](long i) { return static_cast<unsigned char>(bytes[i]); };
    const unsigned char first = byteAt(0);
    const long length = first < 0x80 ? 1
        : first < 0xC2               ? 0
        : first < 0xE0               ? 2
        : first < 0xF0               ? 3
        : first < 0xF5               ? 4
                                     : 0;
    constexpr char32_t smallest[]{0, 0, 0x80, 0x800, 0x10000};
    c = length > 1 ? first & (0x7F >> length) : first;
    for (long i = 1; i < length; ++i) {
        if ((byteAt(i) & 0xC0) != 0x80) {
            c = s_replacement;
            return 1;
        }
        c = c << 6 | (byteAt(i) & 0x3F);
    }
    if (length == 0 || c < smallest[length] || !isScalar(c)) {
        c = s_replacement;
        return 1;
    }
    return length;
}

void appendString(LogLine& line, const char* text)
{
    line.append('"');
    while (*text) {
        char32_t c = 0;
        text += decode(text, c);
        appendCharacter(line, c);
    }
    line.append('"');
}

void appendString(LogLine& line, const wchar_t* text)
{
    line.append('"');
    for (; *text; ++text)
        appendCharacter(line, static_cast<char32_t>(*text));
    line.append('"');
}

/// A null pointer means no value for a C string, and an empty string for a `ZGStr`.
template <typename T>
void appendCString(LogLine& line, const T* text)
{
    if (text)
        appendString(line, text);
    else
        append(line, "null");
}

template <typename T>
void appendOwned(LogLine& line, const T* text)
{
    if (text)
        appendString(line, text);
    else
        append(line, "\"\"");
}

void appendReal(LogLine& line, double number, const char* format)
{
    if (!std::isfinite(number))
        return append(line, "null");
    char digits[40];
    std::snprintf(digits, sizeof digits, format, number);
    for (char* c = digits; *c; ++c) {
        if (!std::strchr("0123456789+-eE", *c))
            *c = '.'; // the locale's decimal point may be another character
    }
    append(line, digits);
}

void appendBase64(LogLine& line, const TZBinary<unsigned char>& bytes)
{
    constexpr const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    const long long length = bytes.Data() ? bytes.Length() : 0;
    line.append('"');
    for (long long i = 0; i < length; i += 3) {
        const long long count = std::min(length - i, 3LL);
        unsigned int bits = 0;
        for (long long k = 0; k < 3; ++k)
            bits = bits << 8 | (k < count ? bytes.Data()[i + k] : 0U);
        for (long long k = 0; k < 4; ++k)
            line.append(k <= count ? alphabet[bits >> (18 - 6 * k) & 0x3F] : '=');
    }
    line.append('"');
}

template <typename T>
const T& contentOf(const TZValueBase<ZTypeId>& value) noexcept
{
    return *static_cast<const T*>(value.Content());
}

constexpr ZTypeId s_integers = ZTypeId_unsigned_char | ZTypeId_signed_char | ZTypeId_unsigned_short
    | ZTypeId_short | ZTypeId_unsigned_int | ZTypeId_int | ZTypeId_unsigned_long_long | ZTypeId_long_long;
constexpr ZTypeId s_quoted = ZTypeId_time | ZTypeId_guid | ZTypeId_pointer;

void appendContent(LogLine& line, const ZLogRecord::Item& item)
{
    const TZValueBase<ZTypeId>& value = *item;
    if (value.Type() & ZTypeId_array)
        return append(line, "null");
    if (value.Type() & s_integers)
        return line.append(item);
    if (value.Type() & s_quoted) {
        line.append('"');
        line.append(item);
        return line.append('"');
    }
    switch (value.Type()) {
    case ZTypeId_bool:
        return append(line, contentOf<bool>(value) ? "true" : "false");
    case ZTypeId_float:
        return appendReal(line, static_cast<double>(contentOf<float>(value)), "%.9g");
    case ZTypeId_double:
        return appendReal(line, contentOf<double>(value), "%.17g");
    case ZTypeId_char: {
        const char text[]{contentOf<char>(value), '\0'};
        return appendString(line, text);
    }
    case ZTypeId_wchar_t: {
        const wchar_t text[]{contentOf<wchar_t>(value), L'\0'};
        return appendString(line, text);
    }
    case ZTypeId_cstring:
        return appendCString(line, contentOf<const char*>(value));
    case ZTypeId_wcstring:
        return appendCString(line, contentOf<const wchar_t*>(value));
    case ZTypeId_string:
        return appendOwned(line, static_cast<const char*>(contentOf<ZGStr<char>>(value)));
    case ZTypeId_wstring:
        return appendOwned(line, static_cast<const wchar_t*>(contentOf<ZGStr<wchar_t>>(value)));
    case ZTypeId_binary:
        return appendBase64(line, contentOf<TZBinary<unsigned char>>(value));
    default:
        return append(line, "null");
    }
}

void appendValue(LogLine& line, const ZLogRecord::Item& item)
{
    const ZGStr<char>& name = item->Name();
    if (name.isEmpty())
        return appendContent(line, item);
    line.append('{');
    appendString(line, static_cast<const char*>(name));
    line.append(':');
    appendContent(line, item);
    line.append('}');
}

} // namespace

void appendJson(LogLine& line, const ZLogRecord& record)
{
    constexpr long timeLength = 23;
    constexpr long threadBegin = timeLength + 8; // " Thread["
    const ZStrToken<char> prefix = linePrefix();
    append(line, R"({"time":")");
    line.append(prefix, timeLength);
    append(line, R"(Z","thread":")");
    line.append(static_cast<const char*>(prefix) + threadBegin, prefix.Length() - threadBegin - 2); // "]:"
    line.append('"');
    ZLogLevel level{};
    const bool hasLevel = getLevel(record, level);
    if (hasLevel) {
        append(line, R"(,"level":")");
        append(line, nameOf(level));
        line.append('"');
    }
    append(line, ",\"values\":[");
    bool isFirst = true;
    auto item = record.begin();
    if (hasLevel)
        ++item;
    for (; item != record.end(); ++item) {
        if (!isFirst)
            line.append(',');
        isFirst = false;
        appendValue(line, *item);
    }
    append(line, "]}\n");
}

} // namespace ZSpace::detail
