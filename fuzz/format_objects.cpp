// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Formats with the conversions that the C library lacks, or that depend on its locale (`%@ %S %C %ls %lc %m %n`), with
// arbitrary flags, widths, precisions and characters between them, compared with a plain reference. Also removes `%n`
// from arbitrary strings.

#include "ZSpace/log/detail/BoundedText.h"
#include "ZSpace/platform/Foundation.h"
#include "fuzz/FuzzText.h"

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <string>

using namespace ZSpaceFuzz;
namespace NS = ZSpace::NS;

namespace {

std::string formatted(const char* format, ...)
{
    std::va_list arguments;
    va_start(arguments, format);
    const NS::AutoreleasePool pool;
    errno = ENOENT;
    std::string text = NS::String::stringWithFormat(NS::String(format).native(), arguments).UTF8String();
    va_end(arguments);
    return text;
}

std::string utf8Of(char32_t c)
{
    if ((c >= 0xD800 && c < 0xE000) || c > 0x10FFFF)
        c = 0xFFFD;
    const auto continuation = [c](unsigned shift) { return static_cast<char>(0x80 | (c >> shift & 0x3F)); };
    if (c < 0x80)
        return {static_cast<char>(c)};
    if (c < 0x800)
        return {static_cast<char>(0xC0 | c >> 6), continuation(0)};
    if (c < 0x10000)
        return {static_cast<char>(0xE0 | c >> 12), continuation(6), continuation(0)};
    return {static_cast<char>(0xF0 | c >> 18), continuation(12), continuation(6), continuation(0)};
}

/// The arguments of the conversions, the same for all in one format.
struct Values {
    explicit Values(Input& input)
        : object(input.text(20).c_str())
        , characters(input.text(10))
    {
        for (std::size_t i = 0; i + 1 < characters.size(); i += 2) {
            const auto unit = static_cast<char16_t>(static_cast<unsigned char>(characters[i]) << 8
                | static_cast<unsigned char>(characters[i + 1]));
            if (unit == 0)
                break;
            utf16 += unit;
            wide += static_cast<wchar_t>(unit) * 37; // beyond the last character, too
        }
    }

    std::string object;
    std::string characters;
    std::u16string utf16;
    std::wstring wide;
};

/// The first `most` units as UTF-8.
std::string fromUtf16(const std::u16string& units, std::size_t most)
{
    const std::u16string cut = units.substr(0, most);
    std::string result;
    for (std::size_t i = 0; i < cut.size(); ++i) {
        const bool isPair = i + 1 < cut.size() && cut[i] >= 0xD800 && cut[i] < 0xDC00 && cut[i + 1] >= 0xDC00
            && cut[i + 1] < 0xE000;
        result += utf8Of(isPair ? 0x10000 + ((cut[i] - 0xD800U) << 10) + (cut[i + 1] - 0xDC00U) : cut[i]);
        i += isPair;
    }
    return result;
}

std::string fromWide(const std::wstring& units, std::size_t most)
{
    std::string result;
    for (const wchar_t unit : units.substr(0, most))
        result += utf8Of(static_cast<char32_t>(unit));
    return result;
}

/// One conversion as written, and what it must print.
struct Piece {
    std::string written;
    std::string printed;
};

Piece readPiece(Input& input, const Values& values)
{
    const std::uint8_t shape = input.byte();
    const bool isLeft = shape & 1;
    const std::size_t width = shape & 2 ? input.byte() % 40 : 0;
    const bool hasPrecision = shape & 4;
    const std::size_t precision = hasPrecision ? input.byte() % 12 : std::string::npos;
    const std::string options = (isLeft ? "-" : "") + (width ? std::to_string(width) : "")
        + (hasPrecision ? "." + std::to_string(precision) : "");

    // By position, so that the pieces may come in any order and any number of times.
    struct Kind {
        const char* position;
        const char* conversion;
        std::string text;
    };
    const Kind kinds[]{
        {"1$", "@", values.object.substr(0, precision)},
        {"2$", "S", fromUtf16(values.utf16, precision)},
        {"3$", "C", utf8Of(values.utf16.empty() ? u'x' : values.utf16[0])},
        {"4$", "ls", fromWide(values.wide, precision)},
        {"5$", "lc", utf8Of(static_cast<char32_t>(values.wide.empty() ? L'x' : values.wide[0]))},
        {"6$", "n", ""},
        {"", "m", std::string(std::strerror(ENOENT)).substr(0, precision)},
        {"7$", "@", std::string("(null)").substr(0, precision)},
        {"7$", "S", "(null)"},
        {"7$", "ls", "(null)"},
        {"7$", "s", std::string("(null)").substr(0, precision)},
    };
    const Kind& kind = kinds[input.byte() % std::size(kinds)];
    std::string text = kind.text;
    const bool isPadded = std::strcmp(kind.conversion, "n") != 0;
    if (isPadded && text.size() < width)
        text.insert(isLeft ? text.size() : 0, width - text.size(), ' ');
    return {"%" + std::string(kind.position) + options + kind.conversion, text};
}

void checkPieces(Input& input)
{
    const Values values(input);
    std::string format;
    std::string expected;
    for (int pieces = input.byte() % 6; pieces > 0; --pieces) {
        std::string between = input.text(4);
        std::erase_if(between, [](char c) { return c == '\0' || c == '%'; });
        const Piece piece = readPiece(input, values);
        format += between + piece.written + "%%";
        expected += between + piece.printed + "%";
    }
    const NS::String object(values.object);
    int stored = 42;
    // NOLINTNEXTLINE(modernize-use-nullptr): an argument of an ellipsis
    const std::string printed = formatted(format.c_str(), object.native(), values.utf16.c_str(),
        static_cast<int>(values.utf16.empty() ? u'x' : values.utf16[0]), values.wide.c_str(),
        static_cast<wint_t>(values.wide.empty() ? L'x' : values.wide[0]), &stored,
        static_cast<const void*>(nullptr));
    if (printed != expected)
        std::fprintf(stderr, "printed \"%s\", expected \"%s\"\n", printed.c_str(), expected.c_str());
    require(printed == expected, format.c_str());
    require(stored == 42, "nothing is stored");
}

/// After `%n` has been removed, there is nothing left to remove.
void checkStores(const std::string& format)
{
    const ZSpace::detail::StorelessFormat once(format.c_str());
    const ZSpace::detail::StorelessFormat twice(once.get());
    require(once.get() == twice.get(), "a format without %n stays as it is");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    checkPieces(input);
    checkStores(std::string(reinterpret_cast<const char*>(data), size).c_str());
    return 0;
}
