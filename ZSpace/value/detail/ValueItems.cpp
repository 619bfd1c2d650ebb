// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/detail/ValueItems.h"

#include <algorithm>
#include <memory>

namespace ZSpace::detail {

std::size_t countItems(const ValueItem* items) noexcept
{
    std::size_t count = 0;
    while (items && items[count])
        ++count;
    return count;
}

ValueItem* copyItems(const ValueItem* items)
{
    const std::size_t count = countItems(items);
    if (count == 0)
        return nullptr;
    // Value-initialized, so that the block can be freed if cloning an item throws.
    std::unique_ptr<ValueItem[], decltype(&freeItems)> copies(new ValueItem[count + 1](), &freeItems);
    std::transform(items, items + count, copies.get(), [](ValueItem item) { return item->clone(); });
    return copies.release();
}

void freeItems(ValueItem* items) noexcept
{
    for (std::size_t i = countItems(items); i > 0; --i)
        delete items[i - 1];
    delete[] items;
}

bool areEqualItems(const ValueItem* a, const ValueItem* b)
{
    const std::size_t count = countItems(a);
    const auto areEqual = [](ValueItem x, ValueItem y) { return *x == *y; };
    return count == countItems(b) && std::equal(a, a + count, b, areEqual);
}

} // namespace ZSpace::detail
