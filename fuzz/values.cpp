// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Runs arbitrary sequences of operations on an array of values, which may contain arrays, next to a reference,
// which is a tree of vectors.

#include "ZSpace/core/ZException.h"
#include "ZSpace/value/ZValueArray.h"
#include "fuzz/FuzzText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace {

using namespace ZSpace;
using ZSpaceFuzz::Input;
using ZSpaceFuzz::require;

using Value = TZValueBase<ZTypeId>;

struct Node {
    ZTypeId type = ZTypeId_none;
    std::string text;
    std::vector<Node> items;

    bool operator==(const Node&) const = default;
};

constexpr int s_mostNodes = 500;

int countNodes(const Node& node)
{
    return std::accumulate(node.items.begin(), node.items.end(), 1,
        [](int count, const Node& item) { return count + countNodes(item); });
}

struct Pair {
    std::unique_ptr<Value> value;
    Node node;
};

template <typename T>
Pair pairOf(T cell, std::string text)
{
    auto value = std::make_unique<Value>(std::in_place, std::move(cell));
    const ZTypeId type = value->Type();
    return {std::move(value), {type, std::move(text), {}}};
}

Pair readValue(Input& input)
{
    const unsigned char byte = input.byte();
    switch (input.byte() % 7) {
    case 0:
        return pairOf(static_cast<int>(byte) - 100, std::to_string(byte - 100));
    case 1:
        return pairOf(static_cast<unsigned long long>(byte) << 50, std::to_string(1ULL * byte << 50));
    case 2: {
        const std::string text(input.text(20).c_str()); // up to the first zero
        return pairOf(ZGStr<char>(text.c_str()), text);
    }
    case 3: {
        constexpr char digits[] = "0123456789abcdef";
        auto* data = new unsigned char[2]{byte, input.byte()};
        const std::string text{
            digits[data[0] >> 4], digits[data[0] & 15], digits[data[1] >> 4], digits[data[1] & 15]};
        return pairOf(TZBinary<unsigned char>(data, 2, true), text);
    }
    case 4:
        return pairOf(ZTime(2024, 3, 5, 7, 8, byte % 60, 0),
            "2024-03-05T07:08:" + std::string(byte % 60 < 10 ? "0" : "") + std::to_string(byte % 60));
    case 5: {
        const ZTypeId type = byte & 1 ? ZTypeId_int : ZTypeId_string;
        return {std::make_unique<ZValueArrayBase>(type), {type | ZTypeId_array, "", {}}};
    }
    default:
        return {std::make_unique<Value>(), {}};
    }
}

void requireSame(const Value& value, const Node& node)
{
    require(value.Type() == node.type, "type");
    require(node.text == static_cast<const char*>(value.toCString()), "text");
    ZMStr<char> line("> ");
    value.appendTo(line);
    require("> " + node.text == static_cast<const char*>(line), "appended text");
    if (!(node.type & ZTypeId_array))
        return;
    const auto& array = dynamic_cast<const ZValueArrayBase&>(value);
    require(array.ArrayItemCount() == node.items.size(), "item count");
    for (std::size_t i = 0; i < node.items.size(); ++i)
        requireSame(array.ArrayItem(i), node.items[i]);
}

/// Follows a path from the root to an array, which may be the root itself.
std::pair<ZValueArrayBase*, Node*> chooseArray(Input& input, ZValueArrayBase& root, Node& rootNode)
{
    ZValueArrayBase* array = &root;
    Node* node = &rootNode;
    for (int depth = input.byte() % 8; depth > 0 && !node->items.empty(); --depth) {
        const std::size_t index = input.byte() % node->items.size();
        if (!(node->items[index].type & ZTypeId_array))
            break;
        array = &dynamic_cast<ZValueArrayBase&>(array->ArrayItem(index));
        node = &node->items[index];
    }
    return {array, node};
}

template <typename Operation>
bool runChecked(bool throws, Operation operation)
{
    bool threw = false;
    try {
        operation();
    } catch (const ZOutOfBoundsException&) {
        threw = true;
    }
    require(threw == throws, "range check");
    return !threw;
}

void runOne(Input& input, ZValueArrayBase& root, Node& rootNode)
{
    // Not a structured binding, which lambdas of clang 14 cannot capture.
    ZValueArrayBase* array = nullptr;
    Node* node = nullptr;
    std::tie(array, node) = chooseArray(input, root, rootNode);
    const std::size_t index = input.byte() % (node->items.size() + 1);
    const bool isInside = index < node->items.size();
    switch (input.byte() % 8) {
    case 0: {
        Pair added = readValue(input);
        array->ArrayAdd(added.value.release());
        node->items.push_back(std::move(added.node));
        break;
    }
    case 1: {
        Pair replacement = readValue(input);
        if (runChecked(!isInside, [&] { array->ArrayItem(index, *replacement.value); }))
            node->items[index] = std::move(replacement.node);
        break;
    }
    case 2:
        if (runChecked(!isInside, [&] { array->ArrayRemove(index); }))
            node->items.erase(node->items.begin() + static_cast<std::ptrdiff_t>(index));
        break;
    case 3: // a copy of an item
        if (runChecked(!isInside, [&] { array->ArrayAdd(&array->ArrayItem(index)); }))
            node->items.push_back(Node(node->items[index]));
        break;
    case 4: { // a copy of the array itself
        const Node copy = *node;
        array->ArrayAdd(static_cast<const Value&>(*array));
        node->items.push_back(copy);
        break;
    }
    case 5: { // an array is replaced by one of its items
        if (isInside && node->items[index].type & ZTypeId_array) {
            const Node copy = node->items[index];
            *array = dynamic_cast<const ZValueArrayBase&>(array->ArrayItem(index));
            *node = copy;
        }
        break;
    }
    case 6:
        array->ArrayClear();
        node->items.clear();
        break;
    default: {
        const ZValueArrayBase copy(root);
        requireSame(copy, rootNode);
        require(copy == root, "copies are equal");
        require((static_cast<const Value&>(*array) == root) == (*node == rootNode), "equality");
    }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    ZValueArrayBase root(ZTypeId_int);
    Node node{root.Type(), "", {}};
    for (int step = 0; step < 64 && countNodes(node) < s_mostNodes; ++step) {
        runOne(input, root, node);
        requireSame(root, node);
    }
    return 0;
}
