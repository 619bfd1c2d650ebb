// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// A conversion built from the input, with any flags, width, precision and length, in the plain form and in
// the one with positions: both must print what the C library prints.

#include "ZSpace/platform/Foundation.h"
#include "fuzz/FuzzText.h"

#include <array>
#include <cstdarg>
#include <cstring>
#include <string_view>

using namespace ZSpaceFuzz;
namespace NS = ZSpace::NS;

namespace {

std::string byFramework(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const NS::AutoreleasePool pool;
    std::string text = NS::String::stringWithFormat(NS::String(format).native(), arguments).UTF8String();
    va_end(arguments);
    return text;
}

std::string byCLibrary(const char* format, ...)
{
    static std::array<char, 1 << 16> s_buffer;
    std::va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-diagnostic-format-nonliteral): that is what is tested
    const int length = std::vsnprintf(s_buffer.data(), s_buffer.size(), format, arguments);
    va_end(arguments);
    require(length >= 0 && length < static_cast<int>(s_buffer.size()), "the C library prints it");
    return s_buffer.data();
}

constexpr int s_most = 80; // of widths and precisions

/// A width or a precision: none, written out, or taken from an argument.
struct Number {
    explicit Number(Input& input)
        : kind(static_cast<Kind>(input.byte() % 3))
        , value(input.byte() % (2 * s_most) - s_most)
    {
    }

    [[nodiscard]] std::string written(const char* start, const char* position) const
    {
        switch (kind) {
        case Kind::Written:
            return start + std::to_string(value < 0 ? -value : value);
        case Kind::Argument:
            return std::string(start) + "*" + position;
        default:
            return {};
        }
    }

    enum class Kind : std::uint8_t { None, Written, Argument } kind;
    int value;
};

/// The two forms of one conversion; both take the width, the precision and the value, in this order, even if
/// they do not use all of them.
class Formats {
public:
    explicit Formats(Input& input)
        : m_before(plainText(input))
        , m_flags(flags(input))
        , m_width(input)
        , m_precision(input)
        , m_after(plainText(input))
    {
    }

    template <typename Value>
    void compare(const char* conversion, Value value) const
    {
        comparePositions(conversion, value);
        comparePlain(conversion, value);
    }

private:
    static std::string plainText(Input& input)
    {
        std::string text = input.text(6);
        for (char& c : text)
            c = static_cast<char>('a' + static_cast<unsigned char>(c) % 26);
        return text;
    }

    static std::string flags(Input& input)
    {
        std::string flags;
        const std::uint8_t wanted = input.byte();
        for (unsigned i = 0; i < 5; ++i) {
            if (wanted & (1U << i))
                flags += "-+ #0"[i];
        }
        return flags;
    }

    // With positions, every argument must be used, so the width and the precision are always taken. A
    // negative width by position would meet a bug of glibc's, which puts the flag 0 after the number.
    template <typename Value>
    void comparePositions(const char* conversion, Value value) const
    {
        const std::string format =
            m_before + "%2$d%%%3$" + m_flags + "*1$.*2$" + conversion + m_after + "%1$d";
        check(format, std::abs(m_width.value), m_precision.value, value);
    }

    template <typename Value>
    void comparePlain(const char* conversion, Value value) const
    {
        const std::string format = m_before + "%" + m_flags + m_width.written("", "")
            + m_precision.written(".", "") + conversion + "%%" + m_after;
        const bool takesWidth = m_width.kind == Number::Kind::Argument;
        const bool takesPrecision = m_precision.kind == Number::Kind::Argument;
        if (takesWidth && takesPrecision)
            check(format, m_width.value, m_precision.value, value);
        else if (takesWidth)
            check(format, m_width.value, value);
        else if (takesPrecision)
            check(format, m_precision.value, value);
        else
            check(format, value);
    }

    template <typename... Values>
    static void check(const std::string& format, Values... values)
    {
        const std::string printed = byFramework(format.c_str(), values...);
        const std::string expected = byCLibrary(format.c_str(), values...);
        if (printed != expected)
            std::fprintf(stderr, "printed \"%s\", expected \"%s\"\n", printed.c_str(), expected.c_str());
        require(printed == expected, format.c_str());
    }

    std::string m_before;
    std::string m_flags;
    Number m_width;
    Number m_precision;
    std::string m_after;
};

unsigned long long bitsFrom(Input& input)
{
    unsigned long long bits = 0;
    for (unsigned shift = 0; shift < 64; shift += 8)
        bits |= static_cast<unsigned long long>(input.byte()) << shift;
    return bits;
}

void compareInteger(const Formats& formats, Input& input, const char* type)
{
    const unsigned long long bits = bitsFrom(input);
    switch (input.byte() % 8) {
    case 0:
        return formats.compare(type, static_cast<int>(bits));
    case 1:
        return formats.compare((std::string("hh") + type).c_str(), static_cast<int>(bits));
    case 2:
        return formats.compare((std::string("h") + type).c_str(), static_cast<int>(bits));
    case 3:
        return formats.compare((std::string("l") + type).c_str(), static_cast<long>(bits));
    case 4:
        return formats.compare((std::string("ll") + type).c_str(), static_cast<long long>(bits));
    case 5:
        return formats.compare((std::string("j") + type).c_str(), static_cast<std::intmax_t>(bits));
    case 6:
        return formats.compare((std::string("z") + type).c_str(), static_cast<std::size_t>(bits));
    default:
        return formats.compare((std::string("t") + type).c_str(), static_cast<std::ptrdiff_t>(bits));
    }
}

void compareReal(const Formats& formats, Input& input, const char* type)
{
    const unsigned long long bits = bitsFrom(input);
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    if (input.byte() % 2)
        return formats.compare(type, value);
    formats.compare((std::string("L") + type).c_str(), static_cast<long double>(value));
}

void compareText(const Formats& formats, Input& input)
{
    std::string text = input.text(100);
    for (char& c : text)
        c = static_cast<char>(' ' + static_cast<unsigned char>(c) % ('~' - ' '));
    formats.compare("s", text.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const Formats formats(input);
    constexpr std::string_view s_types = "diouxXcspfFeEgGaA";
    const std::string type(1, s_types[input.byte() % s_types.size()]);
    if (std::strchr("diouxX", type[0]))
        compareInteger(formats, input, type.c_str());
    else if (type == "c")
        formats.compare("c", 1 + input.byte() % 126);
    else if (type == "s")
        compareText(formats, input);
    else if (type == "p")
        formats.compare("p", static_cast<const void*>(data));
    else
        compareReal(formats, input, type.c_str());
    return 0;
}
