// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <type_traits>

/// Hides a value from the optimizer. Unlike `benchmark::DoNotOptimize`, which lets g++ choose between a register and
/// memory and may then read the other one, it names the place.
template <typename T>
T opaque(T value)
{
    if constexpr (std::is_integral_v<T> || std::is_pointer_v<T>)
        asm volatile("" : "+r"(value) : : "memory");
    else
        asm volatile("" : "+m"(value) : : "memory");
    return value;
}
