// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/ZValueArray.h"

#include "ZSpace/core/ZException.h"
#include "ZSpace/value/detail/ValueItems.h"
#include "ZSpace/value/detail/ValueKind.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <utility>

namespace ZSpace {

namespace {

/// The size of the cell that `createType` allocates for a kind.
unsigned int cellSizeOf(ZTypeId item) noexcept
{
    const detail::ValueKind* kind = detail::kindOf(item);
    return kind && kind->create ? kind->size : 0;
}

} // namespace

ZValueArrayBase::ZValueArrayBase(ZTypeId item)
    : TZValueBase<ZTypeId>(item | ZTypeId_array, cellSizeOf(item), nullptr)
{
}

ZValueArrayBase::~ZValueArrayBase() = default;

ZValueArrayBase* ZValueArrayBase::clone() const
{
    return new ZValueArrayBase(*this);
}

unsigned int ZValueArrayBase::ArrayItemCount() const noexcept
{
    return static_cast<unsigned int>(detail::countItems(items()));
}

TZValueBase<ZTypeId>*& ZValueArrayBase::slot(unsigned long long index) const
{
    if (index >= detail::countItems(items()))
        throw ZOutOfBoundsException();
    return items()[index];
}

TZValueBase<ZTypeId>& ZValueArrayBase::ArrayItem(unsigned long long index)
{
    return *slot(index);
}

const TZValueBase<ZTypeId>& ZValueArrayBase::ArrayItem(unsigned long long index) const
{
    return *slot(index);
}

void ZValueArrayBase::ArrayItem(unsigned long long index, const Value& value)
{
    Value*& item = slot(index);
    delete std::exchange(item, value.clone()); // the old item is destroyed last: it may be `value`
}

void ZValueArrayBase::ArrayAdd(Value* value)
{
    if (!value)
        return;
    const std::size_t count = detail::countItems(items());
    if (value == this || std::find(items(), items() + count, value) != items() + count)
        return ArrayAdd(*value);
    std::unique_ptr<Value> added(value);
    auto** grown = new Value*[count + 2];
    std::copy_n(items(), count, grown);
    grown[count] = added.release();
    grown[count + 1] = nullptr;
    if (!(m_type & ZTypeId_array)) {
        clear(m_type); // was changed to another kind through its base
        m_type = ZTypeId_array;
    }
    delete[] items();
    m_content = grown;
}

void ZValueArrayBase::ArrayAdd(const Value& value)
{
    ArrayAdd(value.clone());
}

void ZValueArrayBase::ArrayRemove(unsigned long long index)
{
    Value** item = &slot(index);
    const Value* removed = *item;
    for (; *item; ++item)
        *item = item[1];
    delete removed;
}

void ZValueArrayBase::ArrayClear() noexcept
{
    if (Value** old = items()) {
        m_content = nullptr;
        detail::freeItems(old);
    }
}

bool ZValueArrayBase::operator==(const ZValueArrayBase& other) const
{
    return detail::areEqualItems(items(), other.items());
}

} // namespace ZSpace
