// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/value/TZValue.h"

#include "ZSpace/value/detail/ValueItems.h"
#include "ZSpace/value/detail/ValueKind.h"

#include <cstddef>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

namespace ZSpace {

using detail::kindOf;
using detail::ValueContent;
using detail::ValueKind;

namespace {

template <typename Id>
ValueContent contentOf(const TZType<Id>& value) noexcept
{
    return {value.Content(), value.Size()};
}

template <typename Id>
void* copyOfContent(const TZType<Id>& value)
{
    const ValueKind* kind = kindOf(value.Type());
    return kind && value.Content() ? kind->copy(contentOf(value)) : nullptr;
}

} // namespace

// TZType

template <typename Id>
TZType<Id>::TZType(ZReference<ZObject> object)
    : TZType(ZTypeId_reference, sizeof object, new ZReference<ZObject>(std::move(object)))
{
}

template <typename Id>
TZType<Id>::TZType(const TZType& other)
    : TZType(other.m_type, other.m_size, copyOfContent(other))
{
}

template <typename Id>
TZType<Id>::~TZType()
{
    clear(m_type);
}

template <typename Id>
TZType<Id>* TZType<Id>::clone() const
{
    return new TZType(*this);
}

template <typename Id>
TZType<Id>& TZType<Id>::operator=(const TZType& other)
{
    // The old content is destroyed last: `other` may be an item of it.
    if (this != &other)
        TZType(other).swap(*this);
    return *this;
}

template <typename Id>
TZType<Id>& TZType<Id>::operator=(TZType&& other) noexcept
{
    TZType(std::move(other)).swap(*this);
    return *this;
}

template <typename Id>
void TZType<Id>::clear(Id tag) noexcept
{
    const ValueKind* kind = kindOf(tag);
    void* content = std::exchange(m_content, nullptr);
    m_type = ZTypeId_none;
    m_size = 0;
    if (kind && content)
        kind->destroy(content);
}

template <typename Id>
void TZType<Id>::swap(TZType& other) noexcept
{
    std::swap(m_content, other.m_content);
    std::swap(m_type, other.m_type);
    std::swap(m_size, other.m_size);
}

// TZValueStructureBase

namespace {

constexpr std::size_t s_structureEnd = 2; // zero bytes

template <typename Id>
std::size_t blockSize(std::size_t count) noexcept
{
    return sizeof(TZValueStructureBase<Id, char>) + count * sizeof(TZValueBase<Id>) + s_structureEnd;
}

} // namespace

template <typename Id, typename Char>
TZValueStructureBase<Id, Char>* TZValueStructureBase<Id, Char>::create(
    const ZGStr<Char>& name, const TZValueBase<Id>* members, unsigned int count)
{
    ZGStr<Char> ownName = detail::copyOfString(name);
    const std::size_t size = blockSize<Id>(count);
    void* block = std::memset(::operator new(size), 0, size);
    std::unique_ptr<TZValueStructureBase, decltype(&release)> structure(
        new (block) TZValueStructureBase(std::move(ownName)), &release);
    for (; structure->m_count < count; ++structure->m_count)
        new (structure->addressOf(structure->m_count)) TZValueBase<Id>(members[structure->m_count]);
    return structure.release();
}

template <typename Id, typename Char>
void TZValueStructureBase<Id, Char>::release(TZValueStructureBase* structure) noexcept
{
    if (!structure)
        return;
    for (unsigned int i = structure->m_count; i > 0; --i)
        std::destroy_at(&structure->Member(i - 1));
    structure->~TZValueStructureBase();
    ::operator delete(structure);
}

template <typename Id, typename Char>
TZValueStructureBase<Id, Char>* TZValueStructureBase<Id, Char>::StructCopy() const
{
    return create(this->m_name, this->m_count > 0 ? &Member(0) : nullptr, this->m_count);
}

template <typename Id, typename Char>
unsigned int TZValueStructureBase<Id, Char>::BlockSize() const noexcept
{
    return static_cast<unsigned int>(blockSize<Id>(this->m_count));
}

template <typename Id, typename Char>
void* TZValueStructureBase<Id, Char>::addressOf(unsigned int index) noexcept
{
    return reinterpret_cast<unsigned char*>(this + 1) + index * sizeof(TZValueBase<Id>);
}

template <typename Id, typename Char>
TZValueBase<Id>& TZValueStructureBase<Id, Char>::Member(unsigned int index) noexcept
{
    return *std::launder(static_cast<TZValueBase<Id>*>(addressOf(index)));
}

template <typename Id, typename Char>
const TZValueBase<Id>& TZValueStructureBase<Id, Char>::Member(unsigned int index) const noexcept
{
    return const_cast<TZValueStructureBase*>(this)->Member(index);
}

template <typename Id, typename Char>
bool TZValueStructureBase<Id, Char>::operator==(const TZValueStructureBase& other) const
{
    if (this->m_count != other.m_count)
        return false;
    for (unsigned int i = 0; i < this->m_count; ++i) {
        if (!(Member(i) == other.Member(i)))
            return false;
    }
    return true;
}

// TZValueBase

template <typename Id>
TZValueBase<Id>::TZValueBase(const TZValueStructureBase<Id, char>& structure)
    : TZType<Id>(ZTypeId_structure, structure.BlockSize(), structure.StructCopy())
{
}

template <typename Id>
TZValueBase<Id>::TZValueBase(const void* bytes, unsigned int size)
    : TZType<Id>(ZTypeId_memory, size, kindOf(ZTypeId_memory)->copy({bytes, size}))
{
}

template <typename Id>
TZValueBase<Id>::TZValueBase(const TZValueBase& other)
    : TZType<Id>(other)
    , m_name(detail::copyOfString(other.m_name))
{
}

template <typename Id>
TZValueBase<Id>::~TZValueBase() = default;

template <typename Id>
TZValueBase<Id>* TZValueBase<Id>::clone() const
{
    return new TZValueBase(*this);
}

template <typename Id>
TZValueBase<Id>& TZValueBase<Id>::operator=(const TZValueBase& other)
{
    TZType<Id>::operator=(other);
    return *this;
}

template <typename Id>
TZValueBase<Id>& TZValueBase<Id>::operator=(TZValueBase&& other) noexcept
{
    TZType<Id>::operator=(std::move(other));
    return *this;
}

template <typename Id>
TZValueBase<Id>* TZValueBase<Id>::createType(Id type)
{
    std::unique_ptr<TZValueBase> value(new TZValueBase());
    const ValueKind* kind = kindOf(type);
    if (kind && kind->create) {
        value->m_content = kind->create();
        value->m_type = type;
        value->m_size = kind->size;
    }
    return value.release();
}

template <typename Id>
bool TZValueBase<Id>::operator==(const TZValueBase& other) const
{
    if (this->m_type != other.m_type)
        return false;
    const ValueKind* kind = kindOf(this->m_type);
    return kind ? kind->areEqual(contentOf(*this), contentOf(other)) : this->m_type == ZTypeId_none;
}

template <typename Id>
ZGStr<char> TZValueBase<Id>::toCString() const
{
    ZGStr<char> string;
    if (const ValueKind* kind = kindOf(this->m_type))
        kind->print(string, this->m_content);
    if (!static_cast<const char*>(string))
        string = "";
    return string;
}

template <typename Id>
void TZValueBase<Id>::appendTo(ZMStr<char>& string) const noexcept
{
    if (const ValueKind* kind = kindOf(this->m_type))
        kind->printTo(string, this->m_content);
}

template class TZType<ZTypeId>;
template class TZValueBase<ZTypeId>;
template class TZValueStructureBase<ZTypeId, char>;

} // namespace ZSpace
