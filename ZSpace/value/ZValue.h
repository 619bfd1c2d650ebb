// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/TZValue.h"

#include <type_traits>
#include <utility>

namespace ZSpace {

namespace detail {

/// Whether a `ZValue` of type `T` can use a cell: same types, or pointers that differ in `const` alone.
template <typename T, typename Cell>
inline constexpr bool s_fitsCell = std::is_same_v<T, Cell>;

template <typename T, typename Pointee>
inline constexpr bool s_fitsCell<T*, Pointee*> =
    std::conjunction_v<std::is_same<std::remove_cv_t<T>, std::remove_cv_t<Pointee>>,
        std::is_convertible<T*, Pointee*>>;

} // namespace detail

/// A value whose kind is fixed by its type: `ZValue<int, ZTypeId_int>(42)`.
///
/// Available for every kind whose content is one object. C strings may be held as `char*` or `const char*`.
template <typename T, ZTypeId tag>
class ZValue : public TZValueBase<ZTypeId> {
    using Base = TZValueBase<ZTypeId>;
    using Cell = detail::CellOf<tag>;
    static_assert(detail::s_fitsCell<T, Cell>, "the tag belongs to another type");

public:
    /// A value of this type.
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

    /// Returns `T()` if the value was cleared, or changed to another kind through its base.
    T Value() const;
    /// Replaces the value.
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

/// Two sets of kinds whose numbers are comparable with each other.
struct MixedKinds {
    ZTypeId first;
    ZTypeId second; ///< a set of tags
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

/// Compares numbers of different kinds. The second number is converted to the type of the first if that type
/// is `double` or `float` (but not from `unsigned long long`) or a wider integer, or if both are bytes.
/// Conversion to an integer is modulo its width: `unsigned char` 200 equals `signed char` -56. All other
/// pairs are unequal.
template <typename A, ZTypeId a, typename B, ZTypeId b>
requires(a != b) bool operator==(const ZValue<A, a>& first, const ZValue<B, b>& second)
{
    if constexpr (detail::compareAlthoughDifferent(a, b))
        return first.Value() == static_cast<A>(second.Value());
    else
        return false;
}

} // namespace ZSpace
