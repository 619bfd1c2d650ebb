// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#include "ZSpace/system/ZSysInfo.h"

namespace ZSpace {

namespace {

// The `ObjectType` of the variant's first alternative.
constexpr unsigned int s_firstType = 2;

template <typename Content>
ZRef<ZSysInfoObject> created(const wchar_t* key, const wchar_t* name, const Content& content)
{
    return ZRef<ZSysInfoObject>(new ZSysInfoObject(key, name, content));
}

} // namespace

ZSysInfoObject::ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ValueHandle& value)
    : m_key(key)
    , m_name(name)
    , m_type(s_firstType)
    , m_content(value)
{
}

ZSysInfoObject::ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ValueList& values)
    : m_key(key)
    , m_name(name)
    , m_type(s_firstType + 1)
    , m_content(values)
{
}

ZSysInfoObject::ZSysInfoObject(const wchar_t* key, const wchar_t* name, void* native)
    : m_key(key)
    , m_name(name)
    , m_type(s_firstType + 2)
    , m_content(native)
{
}

ZSysInfoObject::ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ZSysInfoKeyMap& keys)
    : m_key(key)
    , m_name(name)
    , m_type(s_firstType + 3)
    , m_content(keys)
{
}

TZValueBase<ZTypeId> ZSysInfoObject::Value() const
{
    const auto* const value = std::get_if<ValueHandle>(&m_content);
    return value ? **value : TZValueBase<ZTypeId>();
}

ZList<TZValueBase<ZTypeId>> ZSysInfoObject::Values() const
{
    ZList<TZValueBase<ZTypeId>> copies;
    if (const auto* const values = std::get_if<ValueList>(&m_content)) {
        for (const ValueHandle& value : *values)
            copies.add(*value);
    }
    return copies;
}

void* ZSysInfoObject::NativeValue() const noexcept
{
    auto* const* const native = std::get_if<void*>(&m_content);
    return native ? *native : nullptr;
}

ZSysInfoKeyMap ZSysInfoObject::KeyMap() const
{
    const auto* const keys = std::get_if<ZSysInfoKeyMap>(&m_content);
    return keys ? *keys : ZSysInfoKeyMap();
}

ZSysInfoProvider::~ZSysInfoProvider() = default;

ZRef<ZSysInfoObject> ZSysInfoProvider::createObject(
    const wchar_t* key, const wchar_t* name, const ZSysInfoObject::ValueHandle& value)
{
    return created(key, name, value);
}

ZRef<ZSysInfoObject> ZSysInfoProvider::createObject(
    const wchar_t* key, const wchar_t* name, const ZSysInfoObject::ValueList& values)
{
    return created(key, name, values);
}

ZRef<ZSysInfoObject> ZSysInfoProvider::createObject(const wchar_t* key, const wchar_t* name, void* native)
{
    return created(key, name, native);
}

ZRef<ZSysInfoObject> ZSysInfoProvider::createObject(
    const wchar_t* key, const wchar_t* name, const ZSysInfoKeyMap& keys)
{
    return created(key, name, keys);
}

void ZSysInfo::addProvider(ZSysInfoProvider* provider)
{
    if (provider)
        m_providers.add(ZRef<ZSysInfoProvider>(provider));
}

void ZSysInfo::addProvider(const ZRef<ZSysInfoProvider>& provider)
{
    m_providers.add(provider);
}

ZSysInfoKeyMap ZSysInfo::getLoadedProviders() const
{
    ZSysInfoKeyMap loaded;
    for (const ZRef<ZSysInfoProvider>& provider : m_providers) {
        const wchar_t* const key = provider->Key();
        const wchar_t* const name = provider->Name();
        if (key && name)
            loaded.add(key, name);
    }
    return loaded;
}

ZRef<ZSysInfoObject> ZSysInfo::getObject(const wchar_t* key) const
{
    for (const ZRef<ZSysInfoProvider>& provider : m_providers) {
        ZRef<ZSysInfoObject> answer;
        if (provider->getObject(key, answer) == 0)
            return answer;
    }
    return {};
}

} // namespace ZSpace
