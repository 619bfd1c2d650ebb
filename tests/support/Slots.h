// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZSpace::Testing {

/// The index of a virtual function in its class's table, counted from 0; a virtual destructor takes two
/// slots.
///
/// In the hosts' common C++ ABI, a pointer to a virtual member function holds the offset in the table, plus
/// one on x86-64.
template <typename Function>
[[nodiscard]] std::size_t slotOf(Function function)
{
    static_assert(sizeof function == 2 * sizeof(std::uintptr_t));
    std::uintptr_t word;
    std::memcpy(&word, &function, sizeof word);
    return word / sizeof(void*);
}

} // namespace ZSpace::Testing
