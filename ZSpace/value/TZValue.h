// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZReference.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/string/ZMStr.h"
#include "ZSpace/value/TZBinary.h"
#include "ZSpace/value/ZBitField.h"
#include "ZSpace/value/ZGUID.h"
#include "ZSpace/value/ZTime.h"
#include "ZSpace/value/ZTypeId.h"
#include "ZSpace/value/detail/ValueCells.h"

#include <type_traits>
#include <utility>

namespace ZSpace {

template <typename Id>
class TZValueBase;

/// A cell that holds one value of any kind and knows which: the tag, and a content that is allocated apart.
///
/// It owns its content and, where that is a string, a binary that owns its bytes, a structure or an array,
/// all that hangs on it. What C strings, addresses and other binaries point to stays the caller's. Copies are
/// deep and pass want of memory on. A value belongs to one thread at a time.
template <typename Id>
class TZType {
public:
    /// No value: tag 0, no content, size 0.
    constexpr TZType() noexcept = default;
    explicit TZType(ZReference<ZObject> object);
    TZType(const TZType& other);
    TZType(TZType&& other) noexcept { swap(other); }
    virtual ~TZType();

    /// A copy on the heap, of the same class.
    [[nodiscard]] virtual TZType* clone() const;

    /// After a failure the target is as it was.
    TZType& operator=(const TZType& other);
    TZType& operator=(TZType&& other) noexcept;

    /// Frees the content as one of the kind `tag`, which is to be the value's own. A tag that is unknown
    /// frees nothing. In every case there is no value afterwards.
    void clear(Id tag) noexcept;

    [[nodiscard]] Id Type() const noexcept { return m_type; }
    /// The size of the content in bytes.
    [[nodiscard]] unsigned int Size() const noexcept { return m_size; }
    /// The content, an object of the kind's type; null where there is none.
    [[nodiscard]] const void* Content() const noexcept { return m_content; }

protected:
    TZType(Id type, unsigned int size, void* content) noexcept
        : m_content(content)
        , m_type(type)
        , m_size(size)
    {
    }
    void swap(TZType& other) noexcept;

    void* m_content = nullptr;
    Id m_type = 0;
    unsigned int m_size = 0;
};

static_assert(sizeof(TZType<ZTypeId>) == 24);

/// The head of a structure of values: its name and how many members it has.
template <typename Char>
class TZStructuralBase {
public:
    TZStructuralBase(const TZStructuralBase&) = delete; // the members stand behind it, in the same block
    TZStructuralBase& operator=(const TZStructuralBase&) = delete;

    [[nodiscard]] const ZGStr<Char>& Name() const noexcept { return m_name; }
    [[nodiscard]] unsigned int Count() const noexcept { return m_count; }

protected:
    explicit TZStructuralBase(ZGStr<Char>&& name) noexcept
        : m_name(std::move(name))
    {
    }
    ~TZStructuralBase() = default;

    ZGStr<Char> m_name;
    unsigned int m_count = 0;
};

/// A structure of values in one block: the head, the members side by side, and two zero bytes.
///
///     auto* point = TZValueStructureBase<ZTypeId, char>::create("point", members, 2);
///     const TZValueBase<ZTypeId> value(*point);
///     TZValueStructureBase<ZTypeId, char>::release(point);
template <typename Id, typename Char>
class TZValueStructureBase : public TZStructuralBase<Char> {
public:
    /// A new block with copies of the name and of `count` members, the caller's to be freed with `release`.
    static TZValueStructureBase* create(
        const ZGStr<Char>& name, const TZValueBase<Id>* members, unsigned int count);
    /// Destroys the members from the last to the first and frees the block. Null is ignored.
    static void release(TZValueStructureBase* structure) noexcept;

    /// A new block with copies of everything, the caller's to be freed with `release`.
    [[nodiscard]] TZValueStructureBase* StructCopy() const;

    /// The size of the block in bytes.
    [[nodiscard]] unsigned int BlockSize() const noexcept;

    /// The index is not checked.
    [[nodiscard]] TZValueBase<Id>& Member(unsigned int index) noexcept;
    [[nodiscard]] const TZValueBase<Id>& Member(unsigned int index) const noexcept;

    /// Same number of members, and each equal to its counterpart.
    bool operator==(const TZValueStructureBase& other) const;

private:
    explicit TZValueStructureBase(ZGStr<Char>&& name) noexcept
        : TZStructuralBase<Char>(std::move(name))
    {
    }
    ~TZValueStructureBase() = default;
    void* placeOf(unsigned int index) noexcept;
};

/// A value with a name: what log records, arguments of invocations and system information are made of.
///
///     const TZValueBase<ZTypeId> greeting(ZGStr<char>("hello"));
///     const TZValueBase<ZTypeId> answer(std::in_place, 42);
///     line << answer.toCString();
///
/// Most values have no name. The name takes no part in equality, and assignment leaves the target's alone.
template <typename Id>
class TZValueBase : public TZType<Id> {
public:
    constexpr TZValueBase() noexcept = default;
    /// A string value. Empty strings are kept as null ones.
    TZValueBase(const ZGStr<char>& text)
        : TZValueBase(std::in_place, text)
    {
    }
    TZValueBase(const ZGStr<wchar_t>& text)
        : TZValueBase(std::in_place, text)
    {
    }
    /// A reference value.
    TZValueBase(ZReference<ZObject> object)
        : TZValueBase(std::in_place, std::move(object))
    {
    }
    /// The kind whose cell is just of the type of `value`: characters, C strings (of which the pointer is
    /// kept) and numbers of each width and sign are all told apart. Allocates the cell, and nothing else
    /// unless copying `value` does.
    template <typename T>
    requires detail::CellType<std::remove_cvref_t<T>>
    explicit TZValueBase(std::in_place_t, T&& value)
        : TZType<Id>(detail::s_typeIdOf<std::remove_cvref_t<T>>, sizeof(std::remove_cvref_t<T>),
            detail::newCell<std::remove_cvref_t<T>>(std::forward<T>(value)))
    {
    }
    /// A structure value with a copy of the whole structure.
    explicit TZValueBase(const TZValueStructureBase<Id, char>& structure);
    /// A memory block with a copy of `size` bytes.
    TZValueBase(const void* bytes, unsigned int size);
    TZValueBase(const TZValueBase& other);
    TZValueBase(TZValueBase&& other) noexcept = default;
    ~TZValueBase() override;

    [[nodiscard]] TZValueBase* clone() const override;

    /// Takes over the content and keeps the name. After a failure the target is as it was.
    TZValueBase& operator=(const TZValueBase& other);
    TZValueBase& operator=(TZValueBase&& other) noexcept;

    /// A new value of a kind, holding zero, null, the current time, an empty object or text. No value for the
    /// kinds that need more than that: bit fields, structures, memory blocks and arrays.
    static TZValueBase* createType(Id type);

    [[nodiscard]] const ZGStr<char>& Name() const noexcept { return m_name; }
    void Name(const ZGStr<char>& name) { m_name = detail::copyOfText(name); }

    /// Values of different kinds are never equal. Numbers, texts, times, identifiers and bytes are compared
    /// by value, C strings and addresses as pointers, references by their objects, structures and arrays item
    /// by item. Bit fields equal nothing, themselves included.
    bool operator==(const TZValueBase& other) const;

    /// The value as text; empty for bit fields, structures, references, memory blocks, arrays and no value.
    [[nodiscard]] ZGStr<char> toCString() const;
    /// Puts the same text behind another one, which takes no allocation where there is room.
    void appendTo(ZMStr<char>& text) const noexcept;

    /// Walk the members of a structure and the items of an array, down to the plain values, which have
    /// nothing to be released.
    static void ReleaseContentOfValue(TZValueBase& value) noexcept;
    static void ReleaseContentOfStructure(TZStructuralBase<char>& structure) noexcept;

protected:
    TZValueBase(Id type, unsigned int size, void* content) noexcept
        : TZType<Id>(type, size, content)
    {
    }

private:
    ZGStr<char> m_name;
};

static_assert(sizeof(TZValueBase<ZTypeId>) == 32);
static_assert(sizeof(TZValueStructureBase<ZTypeId, char>) == 16);

extern template class TZType<ZTypeId>;
extern template class TZValueBase<ZTypeId>;
extern template class TZValueStructureBase<ZTypeId, char>;

} // namespace ZSpace
