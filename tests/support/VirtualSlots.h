// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace ZSpace::Testing {

/// The place of a virtual function in its class's table, counted from 0; a virtual destructor takes two.
/// Reads how the hosts' common C++ ABI keeps pointers to members: the offset in the table, plus one.
template <typename Member>
[[nodiscard]] std::size_t virtualSlotOf(Member function)
{
    std::uintptr_t offset = 0;
    static_assert(sizeof function == 2 * sizeof offset);
    std::memcpy(&offset, &function, sizeof offset);
    return (offset - 1) / sizeof(void*);
}

} // namespace ZSpace::Testing
