// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstdint>

namespace ZSpace {

/// The kind of a typed value: one bit for each kind. `ZTypeId_array` is combined with the kind of the items.
using ZTypeId = std::uint32_t;

/// No value.
inline constexpr ZTypeId ZTypeId_none = 0;
/// `bool`.
inline constexpr ZTypeId ZTypeId_bool = 2;
/// `unsigned char`.
inline constexpr ZTypeId ZTypeId_unsigned_char = 4;
/// `signed char`.
inline constexpr ZTypeId ZTypeId_signed_char = 8;
/// `unsigned short`.
inline constexpr ZTypeId ZTypeId_unsigned_short = 16;
/// `short`.
inline constexpr ZTypeId ZTypeId_short = 32;
/// `unsigned int`.
inline constexpr ZTypeId ZTypeId_unsigned_int = 64;
/// `int`.
inline constexpr ZTypeId ZTypeId_int = 128;
/// `unsigned long long`.
inline constexpr ZTypeId ZTypeId_unsigned_long_long = 256;
/// `long long`.
inline constexpr ZTypeId ZTypeId_long_long = 512;
/// `float`.
inline constexpr ZTypeId ZTypeId_float = 0x1000;
/// `double`.
inline constexpr ZTypeId ZTypeId_double = 0x2000;
/// `char`.
inline constexpr ZTypeId ZTypeId_char = 0x10000;
/// `wchar_t`.
inline constexpr ZTypeId ZTypeId_wchar_t = 0x20000;
inline constexpr ZTypeId ZTypeId_cstring = 0x40000; ///< a pointer to characters, not owned
/// A pointer to wide characters, not copied.
inline constexpr ZTypeId ZTypeId_wcstring = 0x80000;
inline constexpr ZTypeId ZTypeId_string = 0x100000; ///< `ZGStr<char>`
inline constexpr ZTypeId ZTypeId_wstring = 0x200000; ///< `ZGStr<wchar_t>`
inline constexpr ZTypeId ZTypeId_binary = 0x400000; ///< `TZBinary<unsigned char>`
inline constexpr ZTypeId ZTypeId_bitfield = 0x800000; ///< `ZBITFIELD`
inline constexpr ZTypeId ZTypeId_time = 0x1000000; ///< `ZTime`
inline constexpr ZTypeId ZTypeId_guid = 0x2000000; ///< `ZGUID`
inline constexpr ZTypeId ZTypeId_structure = 0x4000000; ///< `TZValueStructureBase<ZTypeId, char>`
inline constexpr ZTypeId ZTypeId_reference = 0x8000000; ///< `ZReference<ZObject>`
inline constexpr ZTypeId ZTypeId_pointer = 0x10000000; ///< an address; what it points to is not owned
inline constexpr ZTypeId ZTypeId_memory = 0x20000000; ///< a block of bytes
inline constexpr ZTypeId ZTypeId_array = 0x80000000; ///< `ZValueArrayBase`

} // namespace ZSpace
