// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/detail/ValueKind.h"

#include "ZSpace/value/TZValue.h"
#include "ZSpace/value/detail/ValueItems.h"

#include <array>
#include <bit>
#include <concepts>
#include <cstddef>
#include <cstring>

namespace ZSpace::detail {

namespace {

// Most kinds use the function templates; the specializations and overloads are the exceptions.

template <typename T>
T* newInitialCell()
{
    return new T();
}

template <>
ZTime* newInitialCell()
{
    return new ZTime(true);
}

template <typename T>
bool areEqualCells(const T& a, const T& b)
{
    return a == b;
}

bool areEqualCells(const ZReference<ZObject>& a, const ZReference<ZObject>& b) noexcept
{
    return a.get() == b.get();
}

/// A bit field never equals a bit field, not even itself, and callers rely on it.
bool areEqualCells(const ZBITFIELD&, const ZBITFIELD&) noexcept
{
    return false;
}

/// Appends a value's string form to a `ZGStr` or `ZMStr`. A narrow string ends at its first zero, so a
/// character that is zero, or becomes zero by narrowing, ends the output.
template <typename Out>
struct Printer {
    template <typename Number>
    requires std::integral<Number> || std::floating_point<Number>
    void operator()(Number number) const noexcept { out.appendValueOf(number, false); }
    void operator()(char c) const noexcept
    {
        if (c)
            out.appendValueOf(&c, 1);
    }
    void operator()(wchar_t c) const noexcept { (*this)(static_cast<char>(c)); }
    void operator()(const char* text) const noexcept { out << text; }
    void operator()(const wchar_t* text) const noexcept
    {
        long n = 0;
        while (text && static_cast<char>(text[n]))
            ++n;
        out.appendValueOf(text, n);
    }
    void operator()(const ZGStr<char>& text) const noexcept { out << text; }
    void operator()(const ZGStr<wchar_t>& text) const noexcept { (*this)(static_cast<const wchar_t*>(text)); }
    void operator()(const TZBinary<unsigned char>& bytes) const noexcept
    {
        out.appendHexOf(bytes.Data(), static_cast<long>(bytes.Length()));
    }
    void operator()(const ZTime& time) const noexcept
    {
        char text[ZTime::s_textCapacity];
        out.append(text, time.writeText(text));
    }
    void operator()(const ZGUID& guid) const noexcept
    {
        char text[ZGUID::s_textLength];
        guid.writeText(text);
        out.append(text, ZGUID::s_textLength);
    }
    void operator()(const ZBITFIELD&) const noexcept { }
    void operator()(const ZReference<ZObject>&) const noexcept { }
    void operator()(const void* address) const noexcept
    {
        out.appendValueOf(static_cast<const unsigned char*>(address));
    }

    Out& out;
};

// The operations of the kinds whose content is one object.

template <typename T>
struct Cell {
    static const T& in(const void* content) noexcept { return *static_cast<const T*>(content); }

    static void* create() { return newInitialCell<T>(); }
    static void* copy(ValueContent content) { return newCell<T>(in(content.data)); }
    static void destroy(void* content) noexcept { delete static_cast<T*>(content); }
    static bool areEqual(ValueContent a, ValueContent b) { return areEqualCells(in(a.data), in(b.data)); }
    template <typename Out>
    static void print(Out& out, const void* content) noexcept
    {
        Printer<Out>{out}(in(content));
    }

    static constexpr ValueKind s_kind{
        sizeof(T),
        std::same_as<T, ZBITFIELD> ? nullptr : &create, // no default length
        &copy,
        &destroy,
        &areEqual,
        &print<ZGStr<char>>,
        &print<ZMStr<char>>,
    };
};

// The kinds whose content varies in size. They print nothing.

template <typename Out>
void printNothing(Out&, const void*) noexcept
{
}

struct Structure {
    using Block = TZValueStructureBase<ZTypeId, char>;

    static void* copy(ValueContent content) { return static_cast<const Block*>(content.data)->StructCopy(); }
    static void destroy(void* content) noexcept { Block::release(static_cast<Block*>(content)); }
    static bool areEqual(ValueContent a, ValueContent b)
    {
        return *static_cast<const Block*>(a.data) == *static_cast<const Block*>(b.data);
    }
};

struct Memory {
    static void* copy(ValueContent content)
    {
        auto* bytes = new unsigned char[content.size]();
        if (content.data)
            std::memcpy(bytes, content.data, content.size);
        return bytes;
    }
    static void destroy(void* content) noexcept { delete[] static_cast<unsigned char*>(content); }
    static bool areEqual(ValueContent a, ValueContent b) noexcept
    {
        return a.size == b.size && (a.size == 0 || std::memcmp(a.data, b.data, a.size) == 0);
    }
};

struct Items {
    static void* copy(ValueContent content) { return copyItems(static_cast<const ValueItem*>(content.data)); }
    static void destroy(void* content) noexcept { freeItems(static_cast<ValueItem*>(content)); }
    static bool areEqual(ValueContent a, ValueContent b)
    {
        return areEqualItems(static_cast<const ValueItem*>(a.data), static_cast<const ValueItem*>(b.data));
    }
};

template <typename Kind>
constexpr ValueKind s_variableKind{0, nullptr, &Kind::copy, &Kind::destroy, &Kind::areEqual,
    &printNothing<ZGStr<char>>, &printNothing<ZMStr<char>>};

// The kinds, indexed by the bit number of their tags.

using KindTable = std::array<const ValueKind*, 32>;

constexpr std::size_t bitOf(ZTypeId tag) noexcept
{
    return static_cast<std::size_t>(std::countr_zero(tag));
}

template <typename... Kinds>
constexpr KindTable tableOf(const CellKinds<Kinds...>*) noexcept
{
    KindTable table{};
    ((table[bitOf(Kinds::s_tag)] = &Cell<typename Kinds::Type>::s_kind), ...);
    table[bitOf(ZTypeId_structure)] = &s_variableKind<Structure>;
    table[bitOf(ZTypeId_memory)] = &s_variableKind<Memory>;
    table[bitOf(ZTypeId_array)] = &s_variableKind<Items>;
    return table;
}

constexpr KindTable s_kinds = tableOf(static_cast<const AllCellKinds*>(nullptr));

} // namespace

const ValueKind* kindOf(ZTypeId tag) noexcept
{
    if (tag & ZTypeId_array)
        return s_kinds[bitOf(ZTypeId_array)];
    const bool isOneKind = tag != 0 && (tag & (tag - 1)) == 0;
    return isOneKind ? s_kinds[bitOf(tag)] : nullptr;
}

} // namespace ZSpace::detail
