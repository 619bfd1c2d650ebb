// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Searches and replaces arbitrary substrings and compares the results with the standard library.

#include "fuzz/FuzzText.h"

#include <algorithm>

using namespace ZSpace;
using namespace ZSpaceFuzz;

namespace {

std::string replaceByHand(std::string text, const std::string& what, const std::string& with, long max)
{
    std::size_t at = 0;
    for (long hits = 0; !what.empty() && (max < 1 || hits < max); ++hits) {
        at = text.find(what, at);
        if (at == std::string::npos)
            break;
        text.replace(at, what.size(), with);
        at += with.size();
    }
    return text;
}

long asIndex(std::size_t position)
{
    return position == std::string::npos ? -1 : static_cast<long>(position);
}

template <typename T>
void replace(const std::string& text, const std::string& what, const std::string& with, long max)
{
    const Characters<T> characters(text);
    const Characters<T> whats(what);
    const Characters<T> withs(with);
    const ZStrToken<T> view = characters.view();

    const std::string expected = replaceByHand(text, what, with, max);
    ZMStr<T> builder(view);
    builder.replace(whats.view(), withs.view(), max);
    require(bytesOf<T>(builder) == expected, "a builder as by hand");
    ZGStr<T> string(view);
    string.replace(whats.view(), withs.view(), max);
    require(bytesOf<T>(string) == expected, "a string as by hand");

    require(
        view.indexOf(whats.view()) == (what.empty() ? -1 : asIndex(text.find(what))), "the first occurrence");
    require(view.lastIndexOf(whats.view()) == (what.empty() ? -1 : asIndex(text.rfind(what))),
        "the last occurrence");
    require(view.s_verify(withs.view())
            == (with.empty() && !text.empty() ? 0 : asIndex(text.find_first_not_of(with))),
        "the first character outside of a set");

    ZMStr<T> inserted(view);
    const long at = max + 1;
    inserted.insert(withs.view(), at);
    std::string insertedByHand = text;
    const bool appends = std::min(asIndex(text.size()), at) + 1 == asIndex(text.size());
    insertedByHand.insert(appends ? text.size() : std::min(text.size(), static_cast<std::size_t>(at)), with);
    require(bytesOf<T>(inserted) == insertedByHand, "inserting as by hand");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const long max = input.byte() % 8 - 1;
    std::string what = input.text(4);
    std::string with = input.text(6);
    std::string text = input.rest();
    std::erase(what, '\0'); // strings end with a zero
    std::erase(with, '\0');
    std::erase(text, '\0');
    replace<char>(text, what, with, max);
    replace<wchar_t>(text, what, with, max);
    return 0;
}
