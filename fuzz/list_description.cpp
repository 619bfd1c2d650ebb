// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Prints lists of arbitrary strings. Reading the printed form must return the strings.

#include "ZSpace/platform/portable/ObjectsPortable.h"
#include "fuzz/FuzzText.h"

#include <string>
#include <vector>

using namespace ZSpaceFuzz;
namespace NS = ZSpace::NS;

namespace {

/// Reads one item at `at` and moves `at` past it.
std::string readItem(const std::string& text, std::size_t& at)
{
    std::string item;
    if (text[at] != '"') {
        for (; text[at] != ',' && text[at] != ')'; ++at) {
            const char c = text[at];
            require(std::isalnum(static_cast<unsigned char>(c))
                    || std::string("_$/:.").find(c) != std::string::npos,
                "only plain characters stand without quotes");
            item += c;
        }
        require(!item.empty(), "an empty item has quotes");
        return item;
    }
    for (++at; text[at] != '"'; ++at) {
        require(text[at] != '\n', "a list is one line");
        if (text[at] != '\\') {
            item += text[at];
            continue;
        }
        ++at;
        item += text[at] == 'n' ? '\n' : text[at];
    }
    ++at;
    return item;
}

std::vector<std::string> readList(const std::string& text)
{
    require(text.size() >= 2 && text.front() == '(' && text.back() == ')', "a list has parentheses");
    std::vector<std::string> items;
    for (std::size_t at = 1; at < text.size() - 1;) {
        if (!items.empty()) {
            require(text.compare(at, 2, ", ") == 0, "items are separated");
            at += 2;
        }
        items.push_back(readItem(text, at));
    }
    return items;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    std::vector<std::string> strings;
    std::vector<NS::String> items;
    for (int count = input.byte() % 8; count > 0; --count) {
        strings.emplace_back(input.text(30).c_str()); // up to the first zero
        items.emplace_back(strings.back());
    }
    const NS::Array array = NS::Array::arrayWithObjects(items.data(), items.size());
    require(readList(array.native()->description()) == strings, "the same strings");
    return 0;
}
