// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/TZValue.h"

#include <bit>
#include <iterator>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// A value of one kind, with its type: `ZValue<int, ZTypeId_int>(42)`.
///
/// Exists for every kind whose content is one object. C strings may be held as `char*` or `const char*`.
template <typename T, ZTypeId tag>
class ZValue : public TZValueBase<ZTypeId> {
    using Base = TZValueBase<ZTypeId>;
    using Cell = detail::CellOf<tag>;
    static_assert(
        std::is_same_v<T,
            Cell> || (std::is_pointer_v<T> && std::is_convertible_v<T, Cell> && std::is_same_v<std::remove_cv_t<std::remove_pointer_t<T>>, std::remove_cv_t<std::remove_pointer_t<Cell>>>),
        "the tag is that of another type");

public:
    explicit ZValue(const T& value = T())
        : Base(std::in_place, static_cast<const Cell&>(value))
    {
    }
    ZValue(const ZValue&) = default;
    ZValue(ZValue&&) noexcept = default;
    ~ZValue() override = default;

    [[nodiscard]] ZValue* clone() const override { return new ZValue(*this); }

    ZValue& operator=(const ZValue&) = default;
    ZValue& operator=(ZValue&&) noexcept = default;

    /// A default `T` where the value has been cleared or given another kind through its base.
    T Value() const;
    void Value(const T& value) { Base::operator=(Base(std::in_place, static_cast<const Cell&>(value))); }
};

template <typename T, ZTypeId tag>
T ZValue<T, tag>::Value() const
{
    if (m_type != tag)
        return T();
    const Cell& cell = *static_cast<const Cell*>(m_content);
    if constexpr (std::is_pointer_v<T>)
        return const_cast<T>(cell);
    else
        return cell;
}

namespace detail {

/// Kinds of numbers that compare although they are different.
struct MixedKinds {
    ZTypeId first;
    ZTypeId second; ///< any of these
};

inline constexpr ZTypeId s_charKinds = ZTypeId_signed_char | ZTypeId_unsigned_char;
inline constexpr ZTypeId s_upToShortKinds = s_charKinds | ZTypeId_short | ZTypeId_unsigned_short;
inline constexpr ZTypeId s_upToIntKinds = s_upToShortKinds | ZTypeId_int | ZTypeId_unsigned_int;

inline constexpr MixedKinds s_mixedKinds[]{
    {ZTypeId_double | ZTypeId_float, s_upToIntKinds | ZTypeId_long_long},
    {ZTypeId_unsigned_long_long | ZTypeId_long_long, s_upToIntKinds},
    {ZTypeId_unsigned_int | ZTypeId_int, s_upToShortKinds},
    {ZTypeId_unsigned_short | ZTypeId_short, s_charKinds},
    {ZTypeId_unsigned_char, ZTypeId_signed_char},
    {ZTypeId_signed_char, ZTypeId_unsigned_char},
};

[[nodiscard]] constexpr bool compareAlthoughDifferent(ZTypeId a, ZTypeId b) noexcept
{
    for (const MixedKinds& row : s_mixedKinds) {
        if ((row.first & a) && (row.second & b))
            return true;
    }
    return false;
}

} // namespace detail

/// Values of different kinds. Numbers compare in the type of the first one where it is `double` or `float`
/// (not with `unsigned long long`) or a wider integer, and the two kinds of bytes with each other. An integer
/// takes the other number modulo its own width: `unsigned char` 200 equals `signed char` -56. All other pairs
/// are different.
template <typename A, ZTypeId a, typename B, ZTypeId b>
requires(a != b) bool operator==(const ZValue<A, a>& first, const ZValue<B, b>& second)
{
    if constexpr (detail::compareAlthoughDifferent(a, b))
        return first.Value() == static_cast<A>(second.Value());
    else
        return false;
}

} // namespace ZSpace
