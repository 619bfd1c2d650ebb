// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/value/TZValue.h"

#include <variant>

namespace ZSpace {

/// Keys and the names to show for them. Both are texts that live as long as the program and compare by
/// address.
using ZSysInfoKeyMap = ZMap<const wchar_t*, const wchar_t*>;

/// One named fact about the system: a value, a list of values, a native pointer or a map of further keys.
///
/// Key and name are static texts, never copied. What the fact holds is shared with the handles it was made
/// from. Asking for another kind than it holds gives an empty answer.
class ZSysInfoObject {
public:
    using ValueHandle = ZRef<TZValueBase<ZTypeId>>;
    using ValueList = ZList<ZRef<TZValueBase<ZTypeId>>>;

    ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ValueHandle& value);
    ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ValueList& values);
    ZSysInfoObject(const wchar_t* key, const wchar_t* name, void* native);
    ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ZSysInfoKeyMap& keys);

    [[nodiscard]] const wchar_t* Key() const noexcept { return m_key; }
    [[nodiscard]] const wchar_t* Name() const noexcept { return m_name; }
    /// 2 for a value, 3 for a list of values, 4 for a native pointer, 5 for a map of keys.
    [[nodiscard]] unsigned int ObjectType() const noexcept { return m_type; }

    /// A copy of the value; the empty value for another kind. An empty handle ends the process with a report.
    [[nodiscard]] TZValueBase<ZTypeId> Value() const;
    /// Copies of the values in order.
    [[nodiscard]] ZList<TZValueBase<ZTypeId>> Values() const;
    /// The pointer, which nobody here owns; null for another kind.
    [[nodiscard]] void* NativeValue() const noexcept;
    /// The map of keys.
    [[nodiscard]] ZSysInfoKeyMap KeyMap() const;

private:
    const wchar_t* m_key;
    const wchar_t* m_name;
    unsigned int m_type;
    std::variant<ValueHandle, ValueList, void*, ZSysInfoKeyMap> m_content; // in the order of the types
};

/// What answers for a family of facts.
class ZSysInfoProvider {
public:
    ZSysInfoProvider() = default;
    ZSysInfoProvider(const ZSysInfoProvider&) = delete; // providers are shared, not copied
    ZSysInfoProvider& operator=(const ZSysInfoProvider&) = delete;
    virtual ~ZSysInfoProvider();

    [[nodiscard]] virtual const wchar_t* Key() const = 0;
    [[nodiscard]] virtual const wchar_t* Name() const = 0;
    /// Looks at the system again.
    virtual void refreshInfo() = 0;
    /// Drops what was found.
    virtual void releaseInfo() = 0;
    /// Adds every key that `getObject` knows.
    virtual void getKeys(ZSysInfoKeyMap& keys) const = 0;
    /// The fact with this key.
    /// @return 0 when there is one; otherwise another status.
    virtual unsigned int getObject(const wchar_t* key, ZRef<ZSysInfoObject>& out) = 0;

protected:
    static ZRef<ZSysInfoObject> createObject(
        const wchar_t* key, const wchar_t* name, const ZSysInfoObject::ValueHandle& value);
    static ZRef<ZSysInfoObject> createObject(
        const wchar_t* key, const wchar_t* name, const ZSysInfoObject::ValueList& values);
    static ZRef<ZSysInfoObject> createObject(const wchar_t* key, const wchar_t* name, void* native);
    static ZRef<ZSysInfoObject> createObject(
        const wchar_t* key, const wchar_t* name, const ZSysInfoKeyMap& keys);
};

/// The providers of a program, asked in the order in which they were added.
class ZSysInfo {
public:
    /// Takes the provider over; null is ignored.
    void addProvider(ZSysInfoProvider* provider);
    void addProvider(const ZRef<ZSysInfoProvider>& provider);
    /// Key and name of each provider that has both.
    [[nodiscard]] ZSysInfoKeyMap getLoadedProviders() const;
    /// The first provider's answer; an empty handle when none has one.
    [[nodiscard]] ZRef<ZSysInfoObject> getObject(const wchar_t* key) const;

private:
    ZList<ZRef<ZSysInfoProvider>> m_providers;
};

} // namespace ZSpace
