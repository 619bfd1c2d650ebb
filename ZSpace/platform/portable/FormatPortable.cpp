// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/platform/portable/FormatPortable.h"

#include "ZSpace/platform/portable/ObjectsPortable.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <vector>

namespace ZSpace::Host {

namespace {

/// The type of an argument after the default promotions.
enum class ArgumentKind : unsigned char {
    Int,
    Long,
    LongLong,
    IntMax,
    Size,
    PtrDiff,
    Double,
    LongDouble,
    Pointer
};

union Argument {
    int asInt;
    long asLong;
    long long asLongLong;
    std::intmax_t asIntMax;
    std::size_t asSize;
    std::ptrdiff_t asPtrDiff;
    double asDouble;
    long double asLongDouble;
    const void* asPointer;
};

constexpr int s_noArgument = -1;
// Far more than any caller passes; keeps a malformed format from requiring gigabytes of arguments.
constexpr int s_maxArguments = 256;
// For widths, and for precisions that lengthen the output.
constexpr int s_maxFill = 1'000'000;

/// A width or precision: absent, part of the format, or the value of an argument (`*`).
struct Number {
    bool isGiven = false;
    int value = 0;
    int argument = s_noArgument;
};

/// One conversion, and the literal characters before it.
struct Conversion {
    const char* literalBegin = nullptr;
    const char* literalEnd = nullptr;
    std::string flags;
    Number width;
    Number precision;
    std::string length;
    char type = 0; // 0: only the literal
    int argument = s_noArgument;
};

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Splits a format into conversions and determines the kind of every argument.
class FormatParser {
public:
    explicit FormatParser(const char* format)
        : m_next(format)
    {
    }

    std::vector<Conversion> conversions()
    {
        std::vector<Conversion> result;
        while (*m_next)
            result.push_back(readConversion());
        return result;
    }

    [[nodiscard]] const std::vector<ArgumentKind>& kinds() const { return m_kinds; }

private:
    Conversion readConversion()
    {
        Conversion conversion;
        conversion.literalBegin = m_next;
        conversion.literalEnd = std::strchr(m_next, '%');
        if (!conversion.literalEnd) {
            conversion.literalEnd = m_next = m_next + std::strlen(m_next);
            return conversion;
        }
        m_next = conversion.literalEnd + 1;
        if (*m_next == '%') {
            conversion.literalEnd = m_next++; // includes the first of the two percent signs
            return conversion;
        }
        const char* const start = m_next;
        if (!readSpecification(conversion)) {
            conversion.type = 0;
            conversion.literalEnd = m_next = start; // not a conversion: prints the percent sign
        }
        return conversion;
    }

    bool readSpecification(Conversion& conversion)
    {
        const int position = readPosition();
        while (*m_next && std::strchr("-+ #0'", *m_next))
            conversion.flags += *m_next++;
        readNumber(conversion.width);
        if (*m_next == '.') {
            ++m_next;
            readNumber(conversion.precision);
            conversion.precision.isGiven = true;
        }
        while (*m_next && std::strchr("hlqjztL", *m_next))
            conversion.length += *m_next++;
        if (!*m_next || !std::strchr("diouxXeEfFgGaAcCsSpn@m", *m_next))
            return false;
        conversion.type = *m_next++;
        if (conversion.type != 'm')
            conversion.argument = registerArgument(position, kindOf(conversion));
        return true;
    }

    /// Reads a position such as `2$`.
    /// @return the position; 0, without reading anything, if there is none.
    int readPosition()
    {
        const char* end = m_next;
        int position = 0;
        for (; isDigit(*end); ++end)
            position = std::min(position * 10 + (*end - '0'), s_maxArguments + 1);
        if (*end != '$')
            return 0;
        m_next = end + 1;
        return position;
    }

    void readNumber(Number& number)
    {
        if (*m_next == '*') {
            ++m_next;
            number.isGiven = true;
            number.argument = registerArgument(readPosition(), ArgumentKind::Int);
            return;
        }
        while (isDigit(*m_next)) {
            number.isGiven = true;
            constexpr int max = std::numeric_limits<int>::max();
            const int digit = *m_next++ - '0';
            number.value = number.value > (max - digit) / 10 ? max : number.value * 10 + digit;
        }
    }

    /// Registers the argument at `position` (1 is the first; 0 the next one in order).
    /// @return its index.
    int registerArgument(int position, ArgumentKind kind)
    {
        const int index = position > 0 ? position - 1 : m_nextArgument++;
        if (index >= s_maxArguments)
            return s_noArgument;
        const auto slot = static_cast<std::size_t>(index);
        if (slot >= m_kinds.size())
            m_kinds.resize(slot + 1, ArgumentKind::Int);
        m_kinds[slot] = kind;
        return index;
    }

    static ArgumentKind kindOf(const Conversion& conversion)
    {
        const std::string& length = conversion.length;
        if (std::strchr("sSpn@", conversion.type))
            return ArgumentKind::Pointer;
        if (std::strchr("eEfFgGaA", conversion.type))
            return length == "L" ? ArgumentKind::LongDouble : ArgumentKind::Double;
        if (std::strchr("cC", conversion.type))
            return ArgumentKind::Int;
        if (length == "l")
            return ArgumentKind::Long;
        if (length == "ll" || length == "q" || length == "L")
            return ArgumentKind::LongLong;
        if (length == "j")
            return ArgumentKind::IntMax;
        if (length == "z")
            return ArgumentKind::Size;
        if (length == "t")
            return ArgumentKind::PtrDiff;
        return ArgumentKind::Int;
    }

    const char* m_next;
    int m_nextArgument = 0;
    std::vector<ArgumentKind> m_kinds;
};

/// Reads every argument, in the order in which they were passed.
std::vector<Argument> readArguments(const std::vector<ArgumentKind>& kinds, std::va_list list)
{
    std::vector<Argument> arguments(kinds.size());
    std::va_list rest;
    va_copy(rest, list);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        Argument& argument = arguments[i];
        switch (kinds[i]) {
        case ArgumentKind::Int:
            argument.asInt = va_arg(rest, int);
            break;
        case ArgumentKind::Long:
            argument.asLong = va_arg(rest, long);
            break;
        case ArgumentKind::LongLong:
            argument.asLongLong = va_arg(rest, long long);
            break;
        case ArgumentKind::IntMax:
            argument.asIntMax = va_arg(rest, std::intmax_t);
            break;
        case ArgumentKind::Size:
            argument.asSize = va_arg(rest, std::size_t);
            break;
        case ArgumentKind::PtrDiff:
            argument.asPtrDiff = va_arg(rest, std::ptrdiff_t);
            break;
        case ArgumentKind::Double:
            argument.asDouble = va_arg(rest, double);
            break;
        case ArgumentKind::LongDouble:
            argument.asLongDouble = va_arg(rest, long double);
            break;
        case ArgumentKind::Pointer:
            argument.asPointer = va_arg(rest, const void*);
            break;
        }
    }
    va_end(rest);
    return arguments;
}

/// Appends U+FFFD for anything that is not a character, including lone surrogates.
void appendCodePoint(std::string& out, std::uint32_t c)
{
    if ((c >= 0xD800 && c < 0xE000) || c > 0x10FFFF)
        c = 0xFFFD;
    const auto byte = [&out](std::uint32_t bits) { out += static_cast<char>(bits); };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6));
        byte(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    } else {
        byte(0xF0 | ((c >> 18) & 0x07));
        byte(0x80 | ((c >> 12) & 0x3F));
        byte(0x80 | ((c >> 6) & 0x3F));
        byte(0x80 | (c & 0x3F));
    }
}

/// The first `limit` units of a wide string as UTF-8 (negative: all of them).
std::string fromWide(const wchar_t* text, int limit)
{
    std::string out;
    for (int i = 0; (limit < 0 || i < limit) && text[i]; ++i)
        appendCodePoint(out, static_cast<std::uint32_t>(text[i]));
    return out;
}

bool isHighSurrogate(char16_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool isLowSurrogate(char16_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

/// The first `limit` units of a UTF-16 string as UTF-8 (negative: all of them).
std::string fromUtf16(const char16_t* text, int limit)
{
    std::string out;
    for (int i = 0; (limit < 0 || i < limit) && text[i]; ++i) {
        const char16_t unit = text[i];
        const bool isPair =
            isHighSurrogate(unit) && (limit < 0 || i + 1 < limit) && isLowSurrogate(text[i + 1]);
        if (isPair) {
            appendCodePoint(out, 0x10000U + ((unit - 0xD800U) << 10) + (text[i + 1] - 0xDC00U));
            ++i;
        } else {
            appendCodePoint(out, unit);
        }
    }
    return out;
}

/// Prints one conversion after the other.
class FormatPrinter {
public:
    FormatPrinter(const std::vector<Argument>& arguments, int errorNumber)
        : m_arguments(arguments)
        , m_errorNumber(errorNumber)
    {
    }

    /// @return false if the conversion could not be printed; nothing may be printed after it.
    [[nodiscard]] bool print(const Conversion& conversion)
    {
        m_out.append(conversion.literalBegin, conversion.literalEnd);
        if (conversion.type == 0)
            return true;
        m_flags = conversion.flags;
        m_width = std::clamp(valueOf(conversion.width), -s_maxFill, s_maxFill);
        if (m_width < 0) { // a negative argument means the minus flag and the magnitude
            m_flags += '-';
            m_width = -m_width;
        }
        m_precision = conversion.precision.isGiven ? valueOf(conversion.precision) : -1;
        printValue(conversion);
        return !m_hasFailed;
    }

    [[nodiscard]] std::string take() { return std::move(m_out); }

private:
    [[nodiscard]] int valueOf(const Number& number) const
    {
        if (!number.isGiven || number.argument == s_noArgument)
            return number.value;
        return m_arguments[static_cast<std::size_t>(number.argument)].asInt;
    }

    void printValue(const Conversion& conversion)
    {
        if (conversion.type == 'm')
            return printPadded(std::strerror(m_errorNumber));
        if (conversion.argument == s_noArgument)
            return;
        const Argument& argument = m_arguments[static_cast<std::size_t>(conversion.argument)];
        switch (conversion.type) {
        case '@':
            return printObject(argument.asPointer);
        case 's':
            return printString(conversion, argument.asPointer);
        case 'S':
            return printWideString(static_cast<const char16_t*>(argument.asPointer), fromUtf16);
        case 'c':
            return printCharacter(conversion, argument.asInt);
        case 'C':
            return printUnit(static_cast<char16_t>(argument.asInt));
        case 'p':
            return printNumber(conversion, argument.asPointer);
        case 'n':
            return;
        default:
            return printNumber(conversion, argument);
        }
    }

    void printObject(const void* object)
    {
        printPadded(object ? static_cast<const NSObject*>(object)->description() : "(null)");
    }

    void printString(const Conversion& conversion, const void* string)
    {
        if (conversion.length == "l")
            return printWideString(static_cast<const wchar_t*>(string), fromWide);
        if (!string)
            return printPadded("(null)");
        const auto* const bytes = static_cast<const char*>(string);
        const std::size_t length =
            m_precision < 0 ? std::strlen(bytes) : strnlen(bytes, static_cast<std::size_t>(m_precision));
        printPadded({bytes, length});
    }

    template <typename Unit>
    void printWideString(const Unit* string, std::string (*convert)(const Unit*, int))
    {
        const std::string utf8 = string ? convert(string, m_precision) : "(null)";
        m_precision = -1; // counts units, not bytes
        printPadded(utf8);
    }

    void printCharacter(const Conversion& conversion, int character)
    {
        m_precision = -1;
        std::string string;
        if (conversion.length == "l")
            appendCodePoint(string, static_cast<std::uint32_t>(character));
        else
            string += static_cast<char>(character);
        printPadded(string);
    }

    void printUnit(char16_t unit)
    {
        m_precision = -1;
        std::string string;
        appendCodePoint(string, unit);
        printPadded(string);
    }

    /// Prints the string, truncated to the precision and padded with spaces to the width.
    void printPadded(const std::string& string)
    {
        const std::size_t length =
            m_precision < 0 ? string.size() : std::min(string.size(), static_cast<std::size_t>(m_precision));
        const auto width = static_cast<std::size_t>(m_width);
        const std::size_t padding = width > length ? width - length : 0;
        const bool padsRight = m_flags.find('-') != std::string::npos;
        if (!padsRight)
            m_out.append(padding, ' ');
        m_out.append(string, 0, length);
        if (padsRight)
            m_out.append(padding, ' ');
    }

    void printNumber(const Conversion& conversion, const Argument& argument)
    {
        if (std::strchr("eEfFgGaA", conversion.type)) {
            return conversion.length == "L" ? printNumber(conversion, argument.asLongDouble)
                                            : printNumber(conversion, argument.asDouble);
        }
        const std::string& length = conversion.length;
        if (length == "l")
            return printNumber(conversion, argument.asLong);
        if (length == "ll" || length == "q" || length == "L")
            return printNumber(conversion, argument.asLongLong);
        if (length == "j")
            return printNumber(conversion, argument.asIntMax);
        if (length == "z")
            return printNumber(conversion, argument.asSize);
        if (length == "t")
            return printNumber(conversion, argument.asPtrDiff);
        return printNumber(conversion, argument.asInt);
    }

    /// Formats one number with the C library.
    template <typename Value>
    void printNumber(const Conversion& conversion, Value value)
    {
        const std::string format = "%" + m_flags + "*.*" + conversion.length + conversion.type;
        const int precision = std::min(m_precision, s_maxFill);
        std::array<char, 128> buffer{};
        const int length =
            std::snprintf(buffer.data(), buffer.size(), format.c_str(), m_width, precision, value);
        if (length < 0) {
            m_hasFailed = true;
            return;
        }
        const auto size = static_cast<std::size_t>(length);
        if (size < buffer.size()) {
            m_out.append(buffer.data(), size);
            return;
        }
        const std::size_t before = m_out.size();
        m_out.resize(before + size + 1); // for the terminator
        std::snprintf(m_out.data() + before, size + 1, format.c_str(), m_width, precision, value);
        m_out.resize(before + size);
    }

    const std::vector<Argument>& m_arguments;
    int m_errorNumber; // for `%m`
    std::string m_out;
    std::string m_flags;
    int m_width = 0;
    int m_precision = -1; // negative: none
    bool m_hasFailed = false;
};

} // namespace

std::string formatWithObjects(const char* format, std::va_list arguments)
{
    const int errorNumber = errno; // for `%m`, before anything here changes it
    FormatParser parser(format);
    const std::vector<Conversion> conversions = parser.conversions();
    const std::vector<Argument> values = readArguments(parser.kinds(), arguments);
    FormatPrinter printer(values, errorNumber);
    for (const Conversion& conversion : conversions) {
        if (!printer.print(conversion))
            break;
    }
    return printer.take();
}

} // namespace ZSpace::Host
