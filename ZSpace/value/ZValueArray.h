// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/value/TZValue.h"

namespace ZSpace {

/// A value that is a list of values, which it owns.
///
///     ZValueArrayBase numbers(ZTypeId_int);
///     numbers.ArrayAdd(TZValueBase<ZTypeId>(std::in_place, 42));
///
/// The items lie on the heap one by one and are held in a block of pointers that ends with null; counting
/// walks it, and each item added moves to a block that is longer by one. Arrays of values stay short. Items
/// of another kind than the array's are taken as they are.
///
/// An index at or past the number of items throws `ZOutOfBoundsException`. Want of memory is passed on and
/// leaves the array as it was.
class ZValueArrayBase : public TZValueBase<ZTypeId> {
    using Value = TZValueBase<ZTypeId>;

public:
    explicit ZValueArrayBase(ZTypeId item);
    ZValueArrayBase(const ZValueArrayBase&) = default;
    ZValueArrayBase(ZValueArrayBase&&) noexcept = default;
    ~ZValueArrayBase() override;

    [[nodiscard]] ZValueArrayBase* clone() const override;

    ZValueArrayBase& operator=(const ZValueArrayBase&) = default;
    ZValueArrayBase& operator=(ZValueArrayBase&&) noexcept = default;

    [[nodiscard]] unsigned int ArrayItemCount() const noexcept;
    Value& ArrayItem(unsigned int index);
    // NOLINTNEXTLINE(modernize-use-nodiscard): the check alone may be what is asked for
    const Value& ArrayItem(unsigned int index) const;
    /// Puts a copy of `value` in the place of an item.
    void ArrayItem(unsigned int index, const Value& value);

    /// Takes `value` over, also where that fails. Null is ignored.
    void ArrayAdd(Value* value);
    /// Adds a copy; `value` may be an item of this array.
    void ArrayAdd(const Value& value);

    void ArrayRemove(unsigned int index);
    void ArrayClear() noexcept;

    /// The kind of the items.
    [[nodiscard]] ZTypeId ArrayType() const noexcept { return m_type & ~ZTypeId_array; }
    /// The size of an item's content in bytes.
    [[nodiscard]] unsigned int ArrayItemSize() const noexcept { return m_size; }

    /// As many items, and each equal to its counterpart.
    bool operator==(const ZValueArrayBase& other) const;
    using Value::operator==;

private:
    /// Null also where the value has been cleared or given another kind through its base.
    [[nodiscard]] Value** items() const noexcept
    {
        return m_type & ZTypeId_array ? static_cast<Value**>(m_content) : nullptr;
    }
    [[nodiscard]] Value*& slot(unsigned int index) const;
};

static_assert(sizeof(ZValueArrayBase) == sizeof(TZValueBase<ZTypeId>));

} // namespace ZSpace
