// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/detail/ValueItems.h"

#include "ZSpace/value/ZValueArray.h"

#include <memory>
#include <typeinfo>
#include <utility>
#include <vector>

// Nesting may be deeper than the stack allows, so nothing here recurses into nested arrays.

namespace ZSpace::detail {

/// Access to the contents of nested arrays.
struct ValueNesting {
    using Value = TZValueBase<ZTypeId>;

    /// Whether a value is an array of one of the two classes that this file can take apart.
    static bool isArray(const Value& value) noexcept
    {
        return value.m_type & ZTypeId_array
            && (typeid(value) == typeid(ZValueArrayBase) || typeid(value) == typeid(Value));
    }

    static ValueItem* itemsOf(const Value& value) noexcept
    {
        return static_cast<ValueItem*>(value.m_content);
    }

    /// Removes the content of `item` and stores `index` in it, for the way back from its items.
    static ValueItem* detachItems(Value& item, std::size_t index) noexcept
    {
        item.m_size = static_cast<unsigned int>(index);
        return static_cast<ValueItem*>(std::exchange(item.m_content, nullptr));
    }

    static std::size_t indexOf(const Value& item) noexcept { return item.m_size; }

    /// A copy of an array without its items.
    static std::unique_ptr<Value> copyWithoutItems(const Value& array);

    static void setItems(Value& array, ValueItem* items) noexcept { array.m_content = items; }
};

std::unique_ptr<ValueNesting::Value> ValueNesting::copyWithoutItems(const Value& array)
{
    std::unique_ptr<Value> copy;
    if (typeid(array) == typeid(ZValueArrayBase))
        copy = std::make_unique<ZValueArrayBase>(ZTypeId_none);
    else
        copy = std::make_unique<Value>();
    copy->m_type = array.m_type;
    copy->m_size = array.m_size;
    copy->Name(array.Name());
    return copy;
}

std::size_t countItems(const ValueItem* items) noexcept
{
    std::size_t count = 0;
    while (items && items[count])
        ++count;
    return count;
}

namespace {

struct ItemsDeleter {
    void operator()(ValueItem* items) const noexcept { freeItems(items); }
};

using OwnedItems = std::unique_ptr<ValueItem[], ItemsDeleter>;

/// Nested arrays whose copies still lack their items.
struct PendingCopy {
    const TZValueBase<ZTypeId>* from;
    TZValueBase<ZTypeId>* to;
};

OwnedItems copyOneLevel(const ValueItem* items, std::vector<PendingCopy>& pending)
{
    const std::size_t count = countItems(items);
    if (count == 0)
        return nullptr;
    // Value-initialized, so that the block can be freed if cloning an item throws.
    OwnedItems copies(new ValueItem[count + 1]());
    for (std::size_t i = 0; i < count; ++i) {
        if (!ValueNesting::isArray(*items[i])) {
            copies[i] = items[i]->clone();
            continue;
        }
        copies[i] = ValueNesting::copyWithoutItems(*items[i]).release();
        if (ValueNesting::itemsOf(*items[i]))
            pending.push_back({items[i], copies[i]});
    }
    return copies;
}

} // namespace

ValueItem* copyItems(const ValueItem* items)
{
    std::vector<PendingCopy> pending;
    OwnedItems copies = copyOneLevel(items, pending);
    while (!pending.empty()) {
        const PendingCopy next = pending.back();
        pending.pop_back();
        ValueNesting::setItems(*next.to, copyOneLevel(ValueNesting::itemsOf(*next.from), pending).release());
    }
    return copies.release();
}

// Destroys depth first, from the last item to the first, without allocating. The slot after the current item
// is free: it holds the address of the slot of the item that owns this block; null for the root.
void freeItems(ValueItem* items) noexcept
{
    if (!items)
        return;
    ValueItem* slot = items + countItems(items);
    for (;;) {
        if (slot != items) {
            --slot;
            ValueItem* nested = nullptr;
            if (ValueNesting::isArray(**slot))
                nested = ValueNesting::detachItems(**slot, static_cast<std::size_t>(slot - items));
            if (nested) {
                ValueItem* end = nested + countItems(nested);
                *end = reinterpret_cast<ValueItem>(slot);
                items = nested;
                slot = end;
                continue;
            }
        } else {
            slot = reinterpret_cast<ValueItem*>(*slot);
            delete[] items;
            if (!slot)
                return;
            items = slot - ValueNesting::indexOf(**slot);
        }
        delete std::exchange(*slot, slot[1]);
    }
}

namespace {

struct PendingComparison {
    const ValueItem* a;
    const ValueItem* b;
};

bool areEqualOnOneLevel(PendingComparison arrays, std::vector<PendingComparison>& pending)
{
    const std::size_t count = countItems(arrays.a);
    if (count != countItems(arrays.b))
        return false;
    for (std::size_t i = 0; i < count; ++i) {
        const auto* a = arrays.a[i];
        const auto* b = arrays.b[i];
        if (a->Type() & ZTypeId_array && a->Type() == b->Type())
            pending.push_back({ValueNesting::itemsOf(*a), ValueNesting::itemsOf(*b)});
        else if (!(*a == *b))
            return false;
    }
    return true;
}

} // namespace

bool areEqualItems(const ValueItem* a, const ValueItem* b)
{
    std::vector<PendingComparison> pending;
    PendingComparison next{a, b};
    while (areEqualOnOneLevel(next, pending)) {
        if (pending.empty())
            return true;
        next = pending.back();
        pending.pop_back();
    }
    return false;
}

} // namespace ZSpace::detail
