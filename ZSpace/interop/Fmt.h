// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"

#include <cstddef>

#if __has_include(<fmt/format.h>)
#include <fmt/format.h>

/// {fmt} formats times and GUIDs in their text forms, with the format specifications of strings:
///
///     fmt::format("{} {:>40}", ZTime(true), guid)
///
/// The library itself does not depend on {fmt}. Without it this header declares nothing.
template <ZSpace::detail::StrChar T>
struct fmt::formatter<ZSpace::ZTime, T> : fmt::formatter<fmt::basic_string_view<T>, T> {
    template <typename Context>
    auto format(const ZSpace::ZTime& time, Context& context) const
    {
        T text[ZSpace::ZTime::s_textCapacity];
        const auto length = static_cast<std::size_t>(time.writeText(text));
        return fmt::formatter<fmt::basic_string_view<T>, T>::format({text, length}, context);
    }
};

template <ZSpace::detail::StrChar T>
struct fmt::formatter<ZSpace::ZGUID, T> : fmt::formatter<fmt::basic_string_view<T>, T> {
    template <typename Context>
    auto format(const ZSpace::ZGUID& guid, Context& context) const
    {
        T text[ZSpace::ZGUID::s_textLength];
        guid.writeText(text);
        constexpr auto length = static_cast<std::size_t>(ZSpace::ZGUID::s_textLength);
        return fmt::formatter<fmt::basic_string_view<T>, T>::format({text, length}, context);
    }
};

#endif
