// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZReference.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/value/TZBinary.h"
#include "ZSpace/value/ZBitField.h"
#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"
#include "ZSpace/value/ZTypeId.h"

#include <concepts>
#include <utility>

namespace ZSpace::detail {

/// A kind whose content cell is one object of type `T`.
template <typename T, ZTypeId tag>
struct CellKind {
    using Type = T;
    static constexpr ZTypeId s_tag = tag;
};

template <typename... Kinds>
struct CellKinds : Kinds... {
};

/// The list of these kinds. The contents of structures, memory blocks and arrays vary in size.
// clang-format off
using AllCellKinds = CellKinds<CellKind<bool, ZTypeId_bool>, CellKind<unsigned char, ZTypeId_unsigned_char>,
    CellKind<signed char, ZTypeId_signed_char>, CellKind<unsigned short, ZTypeId_unsigned_short>,
    CellKind<short, ZTypeId_short>, CellKind<unsigned int, ZTypeId_unsigned_int>, CellKind<int, ZTypeId_int>,
    CellKind<unsigned long long, ZTypeId_unsigned_long_long>, CellKind<long long, ZTypeId_long_long>,
    CellKind<float, ZTypeId_float>, CellKind<double, ZTypeId_double>, CellKind<char, ZTypeId_char>,
    CellKind<wchar_t, ZTypeId_wchar_t>, CellKind<const char*, ZTypeId_cstring>,
    CellKind<const wchar_t*, ZTypeId_wcstring>, CellKind<ZGStr<char>, ZTypeId_string>,
    CellKind<ZGStr<wchar_t>, ZTypeId_wstring>, CellKind<TZBinary<unsigned char>, ZTypeId_binary>,
    CellKind<ZBITFIELD, ZTypeId_bitfield>, CellKind<ZTime, ZTypeId_time>, CellKind<ZGUID, ZTypeId_guid>,
    CellKind<ZReference<ZObject>, ZTypeId_reference>, CellKind<void*, ZTypeId_pointer>>;
// clang-format on

// Template argument deduction picks the one base class that matches.
template <typename T, ZTypeId tag>
CellKind<T, tag> cellKindOfType(const CellKind<T, tag>*);
template <ZTypeId tag, typename T>
CellKind<T, tag> cellKindOfTag(const CellKind<T, tag>*);

/// The types of content cells.
template <typename T>
concept CellType = requires(const AllCellKinds* all)
{
    cellKindOfType<T>(all);
};

template <CellType T>
inline constexpr ZTypeId s_typeIdOf =
    decltype(cellKindOfType<T>(static_cast<const AllCellKinds*>(nullptr)))::s_tag;

template <ZTypeId tag>
using CellOf = typename decltype(cellKindOfTag<tag>(static_cast<const AllCellKinds*>(nullptr)))::Type;

template <typename T>
inline constexpr bool s_isString = std::same_as<T, ZGStr<char>> || std::same_as<T, ZGStr<wchar_t>>;

/// Returns a copy, which is a null string if the source is empty.
template <typename T>
[[nodiscard]] ZGStr<T> copyOfString(const ZGStr<T>& string)
{
    return string.isEmpty() ? ZGStr<T>() : ZGStr<T>(string);
}

/// Allocates the cell of a new value. An empty string is stored as a null string.
template <CellType T, typename Source>
[[nodiscard]] T* newCell(Source&& source)
{
    if constexpr (s_isString<T>) {
        if (source.isEmpty())
            return new T();
    }
    return new T(std::forward<Source>(source));
}

} // namespace ZSpace::detail
