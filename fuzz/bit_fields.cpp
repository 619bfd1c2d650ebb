// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

// Runs arbitrary sequences of operations on bit fields and on plain byte arrays next to a reference, which is a
// vector of bits.

#include "ZSpace/core/ZException.h"
#include "ZSpace/value/ZBitField.h"
#include "fuzz/FuzzText.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace {

using namespace ZSpace;
using ZSpaceFuzz::Input;
using ZSpaceFuzz::require;

using Bits = std::vector<bool>;

constexpr std::size_t s_longest = 300;

ZBITFIELD fieldOf(const Bits& bits)
{
    ZBITFIELD field(static_cast<int>(bits.size()));
    field.clear();
    for (std::size_t i = 0; i < bits.size(); ++i)
        field.set(static_cast<long long>(i), bits[i]);
    return field;
}

Bits readBits(Input& input)
{
    Bits bits(input.byte() % 40);
    for (std::size_t i = 0; i < bits.size(); ++i)
        bits[i] = input.byte() & 1;
    return bits;
}

void requireSame(const ZBITFIELD& field, const Bits& bits)
{
    std::string text;
    for (const bool bit : bits)
        text += bit ? '1' : '0';
    require(field.Length() == static_cast<int>(bits.size()), "length");
    require(text == static_cast<const char*>(field.toCString()), "text");
    require(std::wstring(text.begin(), text.end()) == static_cast<const wchar_t*>(field.toWString()),
        "wide text");
    require(field == fieldOf(bits) && field == ZBITFIELD(field), "equality");
}

/// Runs an operation, which must throw exactly if `throws` is true.
template <typename Operation>
void runChecked(bool throws, Operation operation)
{
    bool threw = false;
    try {
        operation();
    } catch (const ZXCOutOfBounds&) {
        threw = true;
    }
    require(threw == throws, "range check");
}

/// Copies and ORs a run of bits between arrays of exactly the size they need.
void checkArrays(Input& input)
{
    const Bits source = readBits(input);
    Bits target = readBits(input);
    if (source.size() > target.size())
        return;
    const std::size_t at = input.byte() % (target.size() - source.size() + 1);
    const bool isOr = input.byte() & 1;
    const auto arrayOf = [](const Bits& bits) {
        const int length = static_cast<int>(bits.size());
        std::unique_ptr<unsigned char[]> bytes(ZBITFIELD::create(length));
        ZBITFIELD::clear(bytes.get(), length);
        for (int i = 0; i < length; ++i)
            ZBITFIELD::bit(bytes.get(), i, bits[static_cast<std::size_t>(i)]);
        return bytes;
    };
    const auto from = arrayOf(source);
    const auto to = arrayOf(target);
    const int n = static_cast<int>(source.size());
    if (isOr)
        ZBITFIELD::bitOr(to.get(), static_cast<int>(at), from.get(), n);
    else
        ZBITFIELD::bit(to.get(), static_cast<int>(at), from.get(), n);
    for (std::size_t i = 0; i < source.size(); ++i)
        target[at + i] = source[i] || (isOr && target[at + i]);
    const auto expected = arrayOf(target);
    require(ZBITFIELD::equals(to.get(), expected.get(), static_cast<int>(target.size())), "arrays");
}

void runOne(Input& input, ZBITFIELD& field, Bits& bits)
{
    const long long index = static_cast<signed char>(input.byte());
    const bool isInside = index >= 0 && index < static_cast<long long>(bits.size());
    const auto position = static_cast<std::size_t>(isInside ? index : 0);
    switch (input.byte() % 8) {
    case 0: {
        const bool value = input.byte() & 1;
        runChecked(!isInside, [&] { field.set(index, value); });
        if (isInside)
            bits[position] = value;
        break;
    }
    case 1:
        runChecked(!isInside, [&] { require(field.get(index) == bits[position], "bit"); });
        break;
    case 2: {
        const int count = static_cast<signed char>(input.byte());
        const bool fits = count <= 0 || (index >= 0 && index + count <= static_cast<long long>(bits.size()));
        runChecked(!fits, [&] { field = ZBITFIELD(field, static_cast<int>(index), count); });
        if (fits && count > 0)
            bits = Bits(bits.begin() + index, bits.begin() + index + count);
        else if (fits)
            bits.clear();
        break;
    }
    case 3: {
        const Bits added = input.byte() & 1 ? bits : readBits(input);
        field += added == bits ? field : fieldOf(added);
        bits.insert(bits.end(), added.begin(), added.end());
        break;
    }
    case 4: {
        const Bits other = readBits(input);
        field = field | fieldOf(other);
        for (std::size_t i = 0; i < std::min(bits.size(), other.size()); ++i)
            bits[i] = bits[i] || other[i];
        break;
    }
    case 5: {
        const Bits other = input.byte() & 1 ? bits : readBits(input);
        long long fitting = 0;
        while (fitting < static_cast<long long>(other.size()) && index + fitting >= 0
            && index + fitting < static_cast<long long>(bits.size()))
            ++fitting;
        const bool throws = fitting < static_cast<long long>(other.size());
        runChecked(throws, [&] { field.set(index, other == bits ? field : fieldOf(other)); });
        for (long long i = 0; i < fitting; ++i)
            bits[static_cast<std::size_t>(index + i)] = other[static_cast<std::size_t>(i)];
        break;
    }
    case 6:
        field.clear();
        bits.assign(bits.size(), false);
        break;
    default:
        checkArrays(input);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Input input(data, size);
    Bits bits = readBits(input);
    ZBITFIELD field = fieldOf(bits);
    for (int step = 0; step < 64 && bits.size() < s_longest; ++step) {
        runOne(input, field, bits);
        requireSame(field, bits);
    }
    return 0;
}
