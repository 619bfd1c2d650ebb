// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Splits strings at arbitrary separators: joining the pieces must restore the string, only the last piece may
// contain a separator, and all ways to split must return the same pieces.

#include "fuzz/FuzzText.h"

#include <algorithm>
#include <vector>

using namespace ZSpace;
using namespace ZSpaceFuzz;

namespace {

std::vector<std::string> splitByHand(const std::string& text, const std::string& separator, long max)
{
    std::vector<std::string> pieces;
    std::size_t start = 0;
    while (max < 1 || static_cast<long>(pieces.size()) + 1 < max) {
        const std::size_t hit = text.find(separator, start);
        if (hit == std::string::npos)
            break;
        pieces.push_back(text.substr(start, hit - start));
        start = hit + separator.size();
    }
    pieces.push_back(text.substr(start));
    return pieces;
}

template <typename T>
void split(const std::string& text, const std::string& separator, long max)
{
    const Characters<T> characters(text);
    const Characters<T> separators(separator);
    const ZStrToken<T> cut = separators.view();
    const auto pieces = ZMStr<T>(characters.view()).split(cut, max);
    if (separator.empty()) {
        require(pieces.Count() == 0, "no separator, no pieces");
        return;
    }
    const auto expected = splitByHand(text, separator, max);
    require(pieces.Count() == static_cast<long>(expected.size()), "as many pieces as by hand");
    for (long i = 0; i < pieces.Count(); ++i)
        require(bytesOf<T>(pieces[i]) == expected[static_cast<std::size_t>(i)], "each piece as by hand");

    const ZGStr<T> string(characters.view());
    require(string.split(cut, max).Count() == pieces.Count(), "strings split like builders");
    if (cut.Length() == 1) {
        require(string.split(*cut, max).Count() == pieces.Count(), "a character splits like a text of it");
    }

    const ZGStr<T> ended(cut);
    std::vector<T*> places(static_cast<std::size_t>(pieces.Count()) + 1);
    ZGStr<T> writable(string);
    T* array = const_cast<T*>(static_cast<const T*>(writable));
    const long capacity = max < 1 ? static_cast<long>(places.size()) : max;
    require(
        ZGStr<T>::splitTo(places.data(), std::min(capacity, static_cast<long>(places.size())), array, ended)
            == pieces.Count(),
        "in place there are as many");
    for (long i = 0; i < pieces.Count(); ++i)
        require(
            pieces[i] == static_cast<const T*>(places[static_cast<std::size_t>(i)]), "and they are the same");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const long max = input.byte() % 8 - 1;
    std::string separator = input.text(4);
    std::string text = input.rest();
    std::erase(separator, '\0'); // strings end with a zero
    std::erase(text, '\0');
    split<char>(text, separator, max);
    split<wchar_t>(text, separator, max);
    return 0;
}
