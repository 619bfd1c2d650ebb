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
#include <type_traits>
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

/// The list of these kinds. Structures, memory blocks and arrays are missing because their contents vary in
/// size.
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

/// The cell type for a value that is constructed from a `T`; `void` if there is none.
template <typename T>
[[nodiscard]] constexpr auto cellFor() noexcept
{
    using Source = std::decay_t<T>;
    if constexpr (CellType<Source>)
        return std::type_identity<Source>();
    else if constexpr (std::is_same_v<Source, char*>)
        return std::type_identity<const char*>();
    else if constexpr (std::is_same_v<Source, wchar_t*>)
        return std::type_identity<const wchar_t*>();
    else if constexpr (std::is_same_v<Source, long>)
        return std::type_identity<long long>();
    else if constexpr (std::is_same_v<Source, unsigned long>)
        return std::type_identity<unsigned long long>();
    else if constexpr (std::is_enum_v<Source> && std::is_convertible_v<Source, long long>)
        return cellFor<decltype(+std::declval<Source>())>();
    else
        return std::type_identity<void>();
}

template <typename T>
using CellFor = typename decltype(cellFor<T>())::type;

template <typename T>
concept HasCell = !std::is_void_v<CellFor<T>>;

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
