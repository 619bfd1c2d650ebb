// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/string/ZMStr.h"
#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"

#include <cstddef>
#include <fmt/format.h>

/// @file
/// {fmt} formats the three string classes, and times and GUIDs in their text forms, with the format specifications
/// of strings:
///
///     fmt::print("{:>10} {}", text.left(4), ZTime(true));
///
/// No other header of the library includes this one.

/// @cond

template <ZSpace::detail::StrChar T>
struct fmt::formatter<ZSpace::ZStrToken<T>, T> : fmt::formatter<fmt::basic_string_view<T>, T> {
    /// Called by the formatting functions.
    template <typename Context>
    auto format(ZSpace::ZStrToken<T> text, Context& context) const
    {
        return fmt::formatter<fmt::basic_string_view<T>, T>::format({text.data(), text.size()}, context);
    }
};

/// Formats strings, as above.
template <ZSpace::detail::StrChar T>
struct fmt::formatter<ZSpace::ZGStr<T>, T> : fmt::formatter<ZSpace::ZStrToken<T>, T> {
};

/// Formats builders, as above.
template <ZSpace::detail::StrChar T>
struct fmt::formatter<ZSpace::ZMStr<T>, T> : fmt::formatter<ZSpace::ZStrToken<T>, T> {
};

/// Formats times, as above.
template <ZSpace::detail::StrChar T>
struct fmt::formatter<ZSpace::ZTime, T> : fmt::formatter<fmt::basic_string_view<T>, T> {
    /// Called by the formatting functions.
    template <typename Context>
    auto format(const ZSpace::ZTime& time, Context& context) const
    {
        T text[ZSpace::ZTime::s_textCapacity];
        const auto length = static_cast<std::size_t>(time.writeText(text));
        return fmt::formatter<fmt::basic_string_view<T>, T>::format({text, length}, context);
    }
};

/// Formats GUIDs, as above.
template <ZSpace::detail::StrChar T>
struct fmt::formatter<ZSpace::ZGUID, T> : fmt::formatter<fmt::basic_string_view<T>, T> {
    /// Called by the formatting functions.
    template <typename Context>
    auto format(const ZSpace::ZGUID& guid, Context& context) const
    {
        T text[ZSpace::ZGUID::s_textLength];
        guid.writeText(text);
        constexpr auto length = static_cast<std::size_t>(ZSpace::ZGUID::s_textLength);
        return fmt::formatter<fmt::basic_string_view<T>, T>::format({text, length}, context);
    }
};

/// @endcond
