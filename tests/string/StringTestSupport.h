// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "tests/support/Widths.h"

#include <gtest/gtest.h>

#include <random>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

/// Lets tests that run over narrow and wide strings write their strings in one form.
namespace ZSpace::Testing {

/// A string of any of the string classes' characters: each byte becomes one, as in a widening conversion.
template <typename T>
std::basic_string<T> wider(std::string_view text)
{
    std::basic_string<T> result;
    for (const char c : text)
        result.push_back(static_cast<T>(static_cast<unsigned char>(c)));
    return result;
}

/// The same as a bare pointer that stays valid until the program ends.
template <typename T>
const T* lit(std::string_view text)
{
    static std::set<std::basic_string<T>> s_texts;
    return s_texts.insert(wider<T>(text)).first->c_str();
}

/// The same as a view, for calls in which a number after a pointer would be a length.
template <typename T>
ZSpace::ZStrToken<T> view(std::string_view text)
{
    return ZSpace::ZStrToken<T>(lit<T>(text), static_cast<long>(text.size()));
}

/// How a message shows a string: characters above 0xFF become "?".
template <typename T>
std::string shown(const T* text, long length)
{
    std::string result;
    for (long i = 0; i < length; ++i) {
        const auto unit = static_cast<std::make_unsigned_t<T>>(text[i]);
        result.push_back(unit < 256 ? static_cast<char>(unit) : '?');
    }
    return result;
}

template <typename T>
std::string str(ZSpace::ZStrToken<T> text)
{
    return shown<T>(text, text.Length());
}

template <typename T>
std::string str(const ZSpace::ZGStr<T>& text)
{
    return str(ZSpace::ZStrToken<T>(text));
}

template <typename T>
std::string str(const ZSpace::ZMStr<T>& text)
{
    return str(ZSpace::ZStrToken<T>(text));
}

template <typename T>
std::string str(const T* text)
{
    return text ? str(ZSpace::ZStrToken<T>(text)) : "(null)";
}

/// Converts an array that a static routine returned, and frees it.
template <typename T>
std::string taken(T* made)
{
    const std::string text = str(static_cast<const T*>(made));
    ZSpace::ZGStr<T>::release(made);
    return text;
}

template <typename Pieces>
std::vector<std::string> listed(const Pieces& pieces)
{
    std::vector<std::string> texts;
    for (const auto& piece : pieces)
        texts.push_back(str(piece));
    return texts;
}

using Texts = std::vector<std::string>;

/// A builder of the given capacity that holds a string.
template <typename T>
ZSpace::ZMStr<T> builderOf(const char* string, long capacity)
{
    ZSpace::ZMStr<T> builder(capacity - 1);
    builder.append(lit<T>(string));
    EXPECT_EQ(builder.Capacity(), capacity);
    return builder;
}

/// A string class and its characters, for suites that run over several classes.
template <typename S>
struct CharOf;
template <template <typename> class S, typename T>
struct CharOf<S<T>> {
    using type = T;
};

/// Readable names of type parameters.
class TypeNames {
public:
    template <typename S>
    static std::string GetName(int)
    {
        if constexpr (std::is_same_v<S, char> || std::is_same_v<S, wchar_t>) {
            return WidthNames::GetName<S>(0);
        } else {
            using T = typename CharOf<S>::type;
            return className<S, T>() + WidthNames::GetName<T>(0);
        }
    }

private:
    template <typename S, typename T>
    static std::string className()
    {
        if constexpr (std::is_same_v<S, ZSpace::ZGStr<T>>)
            return "ZGStr";
        else if constexpr (std::is_same_v<S, ZSpace::ZMStr<T>>)
            return "ZMStr";
        else
            return "ZStrToken";
    }
};

using OwningClasses = ::testing::Types<ZSpace::ZGStr<char>, ZSpace::ZGStr<wchar_t>, ZSpace::ZMStr<char>,
    ZSpace::ZMStr<wchar_t>>;
using AllClasses = ::testing::Types<ZSpace::ZGStr<char>, ZSpace::ZGStr<wchar_t>, ZSpace::ZMStr<char>,
    ZSpace::ZMStr<wchar_t>, ZSpace::ZStrToken<char>, ZSpace::ZStrToken<wchar_t>>;

} // namespace ZSpace::Testing
