// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZSpace::Testing {

/// The place of a virtual function in the table of the class that the pointer names.
///
/// A pointer to a virtual member function holds the distance from the start of the table, plus one.
template <typename Function>
[[nodiscard]] std::size_t slotOf(Function function)
{
    static_assert(sizeof function == 2 * sizeof(std::uintptr_t));
    std::uintptr_t word;
    std::memcpy(&word, &function, sizeof word);
    return (word - 1) / sizeof(void*);
}

} // namespace ZSpace::Testing
