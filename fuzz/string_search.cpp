// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Searches from arbitrary positions, forwards and backwards, compared with the standard library, and splits there.

#include "fuzz/FuzzText.h"

#include <algorithm>

using namespace ZSpace;
using namespace ZSpaceFuzz;

namespace {

long asIndex(std::size_t position)
{
    return position == std::string::npos ? -1 : static_cast<long>(position);
}

template <typename T>
void search(const std::string& text, const std::string& what, long from)
{
    const Characters<T> characters(text);
    const Characters<T> whats(what);
    const ZStrToken<T> view = characters.view();
    const auto length = static_cast<long>(text.size());
    const long start = from < 0 ? from + length : from; // negative ones count from the end

    const long forwards = what.empty() || start > length
        ? -1
        : asIndex(text.find(what, static_cast<std::size_t>(std::max(start, 0L))));
    require(view.indexOf(whats.view(), from) == forwards, "the next occurrence");
    const long backwards =
        what.empty() || start < 0 ? -1 : asIndex(text.rfind(what, static_cast<std::size_t>(start)));
    require(view.lastIndexOf(whats.view(), from) == backwards, "the occurrence before");

    const ZGStr<T> string(view);
    require(string.indexOf(whats.view(), from) == forwards, "a string finds the next occurrence, too");
    require(string.lastIndexOf(whats.view(), from) == backwards, "a string finds the occurrence before, too");
    const ZMStr<T> builder(view);
    require(builder.indexOf(whats.view(), from) == forwards, "a builder finds the next occurrence, too");
    require(
        builder.lastIndexOf(whats.view(), from) == backwards, "a builder finds the occurrence before, too");

    if (what.size() == 1) {
        const T c = *whats.view();
        require(view.indexOf(c, from) == forwards, "the next character");
        require(view.lastIndexOf(c, from) == backwards, "the character before");
    }
}

/// The substrings before and after any position make up the whole.
template <typename T>
void cut(const std::string& text, long at)
{
    const Characters<T> characters(text);
    const ZStrToken<T> view = characters.view();
    const long position = std::clamp(at, 0L, static_cast<long>(text.size()));
    const std::string joined =
        bytesOf<T>(view.left(position)) + bytesOf<T>(view.right(view.Length() - position));
    require(joined == text, "the parts make up the whole");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    const long from = static_cast<signed char>(input.byte());
    std::string what = input.text(4);
    std::string text = input.rest();
    std::erase(what, '\0'); // strings end with a zero
    std::erase(text, '\0');
    search<char>(text, what, from);
    search<wchar_t>(text, what, from);
    cut<char>(text, from);
    cut<wchar_t>(text, from);
    return 0;
}
