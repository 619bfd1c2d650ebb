// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/object/ZObject.h"
#include "ZSpace/value/ZValueArray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace ZSpace {

using Value = TZValueBase<ZTypeId>;
using Structure = TZValueStructureBase<ZTypeId, char>;

inline void PrintTo(const Value& value, std::ostream* out)
{
    *out << std::hex << "kind 0x" << value.Type() << std::dec << " of " << value.Size()
         << " bytes: " << static_cast<const char*>(value.toCString());
}

} // namespace ZSpace

namespace ZSpace::Testing {

/// An object that counts its live instances.
class CountedObject : public ZObject {
public:
    static inline int s_alive = 0;

    CountedObject() { ++s_alive; }
    ~CountedObject() override { --s_alive; }
};

using StructureOwner = std::unique_ptr<Structure, void (*)(Structure*)>;

inline StructureOwner structureOf(const char* name, const std::vector<Value>& members)
{
    return {Structure::create(name, members.data(), static_cast<unsigned int>(members.size())),
        &Structure::release};
}

inline Value arrayOf(ZTypeId item, const std::vector<Value>& items)
{
    ZValueArrayBase array(item);
    for (const Value& each : items)
        array.ArrayAdd(each);
    return array;
}

/// A kind of value with two unequal examples.
struct SampleKind {
    const char* name;
    ZTypeId tag;
    unsigned int size;
    Value sample;
    const char* text; ///< of the sample
    Value other;
    bool equalsItself = true;
};

/// An owning binary with these bytes.
inline TZBinary<unsigned char> ownedBytes(std::initializer_list<unsigned char> bytes)
{
    auto* data = new unsigned char[bytes.size()];
    std::copy(bytes.begin(), bytes.end(), data);
    return {data, static_cast<long long>(bytes.size()), true};
}

/// All kinds in the order of their tags, and tag 0.
inline std::vector<SampleKind> everyKind()
{
    constexpr auto cell = std::in_place;
    static const char* const text = "text";
    static const wchar_t* const wide = L"wide";
    static unsigned char there[2];
    const unsigned char bits = 5;
    const ZTime time(2024, 3, 5, 7, 8, 9, 42);
    const ZGUID guid(1, 2, 3, 4, 5, 6, 7, 8, 9, 10);
    const Value one(cell, 1);
    const Value two(cell, 2);
    return {
        {"bool", 0x2, 1, Value(cell, true), "1", Value(cell, false)},
        {"unsigned char", 0x4, 1, Value(cell, static_cast<unsigned char>(255)), "255",
            Value(cell, static_cast<unsigned char>(1))},
        {"signed char", 0x8, 1, Value(cell, static_cast<signed char>(-128)), "-128",
            Value(cell, static_cast<signed char>(1))},
        {"unsigned short", 0x10, 2, Value(cell, static_cast<unsigned short>(65535)), "65535",
            Value(cell, static_cast<unsigned short>(1))},
        {"short", 0x20, 2, Value(cell, static_cast<short>(-32768)), "-32768",
            Value(cell, static_cast<short>(1))},
        {"unsigned int", 0x40, 4, Value(cell, 4294967295u), "4294967295", Value(cell, 1u)},
        {"int", 0x80, 4, Value(cell, -2147483647 - 1), "-2147483648", one},
        {"unsigned long long", 0x100, 8, Value(cell, ~0ULL), "18446744073709551615", Value(cell, 1ULL)},
        {"long long", 0x200, 8, Value(cell, -9223372036854775807LL - 1), "-9223372036854775808",
            Value(cell, 1LL)},
        {"float", 0x1000, 4, Value(cell, 2.5f), "2.5", Value(cell, 1.0f)},
        {"double", 0x2000, 8, Value(cell, -0.125), "-0.125", Value(cell, 1.0)},
        {"char", 0x10000, 1, Value(cell, 'x'), "x", Value(cell, 'y')},
        {"wchar_t", 0x20000, 4, Value(cell, L'x'), "x", Value(cell, L'y')},
        {"C string", 0x40000, 8, Value(cell, text), "text", Value(cell, text + 1)},
        {"wide C string", 0x80000, 8, Value(cell, wide), "wide", Value(cell, wide + 1)},
        {"string", 0x100000, 8, Value(ZGStr<char>("owned")), "owned", Value(ZGStr<char>("other"))},
        {"wide string", 0x200000, 8, Value(ZGStr<wchar_t>(L"owned")), "owned",
            Value(ZGStr<wchar_t>(L"other"))},
        {"binary", 0x400000, 24, Value(cell, ownedBytes({0x0A, 0xFF})), "0aff",
            Value(cell, ownedBytes({0x0A, 0xFE}))},
        {"bit field", 0x800000, 16, Value(cell, ZBITFIELD(&bits, 3)), "", Value(cell, ZBITFIELD(&bits, 2)),
            false},
        {"time", 0x1000000, 10, Value(cell, time), "2024-03-05T07:08:09", Value(cell, ZTime(false))},
        {"identifier", 0x2000000, 16, Value(cell, guid), "{00000001-0002-0003-0400-05060708090a}",
            Value(cell, ZGUID())},
        {"structure", 0x4000000, 82, Value(*structureOf("point", {one, two})), "",
            Value(*structureOf("point", {one, one}))},
        {"reference", 0x8000000, 16, Value(ZReference<ZObject>(new CountedObject)), "",
            Value(ZReference<ZObject>())},
        {"pointer", 0x10000000, 8, Value(cell, reinterpret_cast<void*>(0x0123456789ABCDEF)),
            "0123456789abcdef", Value(cell, static_cast<void*>(there))},
        {"memory block", 0x20000000, 3, Value("abc", 3), "", Value("abd", 3)},
        {"array", 0x80000080, 4, arrayOf(0x80, {one, two}), "", arrayOf(0x80, {one})},
        {"no value", 0, 0, Value(), "", Value(cell, 0)},
    };
}

[[nodiscard]] inline std::string textOf(const Value& value)
{
    return static_cast<const char*>(value.toCString());
}

[[nodiscard]] inline std::string appendedTextOf(const Value& value)
{
    ZMStr<char> text("> ");
    value.appendTo(text);
    EXPECT_EQ(text.Length(), static_cast<long>(std::strlen(text)));
    return std::string(text).substr(2);
}

/// The content of a value, as an object of its type.
template <typename T>
[[nodiscard]] const T& contentOf(const TZType<ZTypeId>& value)
{
    return *static_cast<const T*>(value.Content());
}

} // namespace ZSpace::Testing
