// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/log/detail/BoundedText.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace ZSpace::detail {

namespace {

/// A conversion inside a format: from its "%" to its conversion character.
struct Conversion {
    const char* begin;
    const char* character; // at the terminator if the format ends too early
};

/// The first character at or after `string` that is not in `set`.
const char* skip(const char* string, const char* set) noexcept
{
    while (*string && std::strchr(set, *string))
        ++string;
    return string;
}

/// The first conversion at or after `format`; its `begin` is null if there is none.
Conversion nextConversion(const char* format) noexcept
{
    const char* const percent = std::strchr(format, '%');
    if (!percent)
        return {nullptr, nullptr};
    // Argument positions, flags, width, precision and length modifiers.
    return {percent, skip(percent + 1, "0123456789$*.-+ #'IhlqLjzZt")};
}

/// The replacement for a `%n`: for its argument and for each "*" in it, a string conversion of at most 0
/// characters, which never reads the string.
std::string replacementOf(const Conversion& conversion)
{
    constexpr const char* empty = "%.0s";
    std::string replacement;
    const char* const afterPercent = conversion.begin + 1;
    const char* const afterNumber = skip(afterPercent, "0123456789");
    if (*afterNumber == '$')
        return std::string(conversion.begin, afterNumber + 1) + ".0s";
    for (auto stars = std::count(afterPercent, conversion.character, '*'); stars > 0; --stars)
        replacement += empty;
    return replacement + empty;
}

/// The first `%n` at or after `format`; its `begin` is null if there is none.
Conversion firstStore(const char* format) noexcept
{
    Conversion conversion = nextConversion(format);
    while (conversion.begin && *conversion.character != 'n') {
        if (!*conversion.character)
            return {nullptr, nullptr};
        conversion = nextConversion(conversion.character + 1);
    }
    return conversion;
}

} // namespace

StorelessFormat::StorelessFormat(const char* format)
    : m_format(format)
{
    Conversion store = firstStore(format);
    if (!store.begin)
        return;
    const char* rest = format;
    for (; store.begin; store = firstStore(rest)) {
        m_rewritten.append(rest, store.begin).append(replacementOf(store));
        rest = store.character + 1;
    }
    m_format = m_rewritten.append(rest).c_str();
}

void formatBounded(char* to, std::size_t size, const char* format, std::va_list arguments)
{
    to[0] = to[size - 1] = '\0';
    if (!format)
        return;
    const StorelessFormat storeless(format);
    std::va_list again;
    va_copy(again, arguments);
    if (std::vsnprintf(to, size, storeless.get(), arguments) < 0) {
        // C libraries differ in whether they terminate what they had formatted, so the second try starts with
        // zeros.
        std::memset(to, 0, size);
        static_cast<void>(std::vsnprintf(to, size, storeless.get(), again));
    }
    va_end(again);
}

} // namespace ZSpace::detail
