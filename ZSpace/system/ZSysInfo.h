// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/core/ZRef.h"
#include "ZSpace/value/TZValue.h"

#include <variant>

namespace ZSpace {

/// Maps keys to display names. Both are string literals, which are compared by address.
using ZSysInfoKeyMap = ZMap<const wchar_t*, const wchar_t*>;

/// One named fact about the system: a value, a list of values, a native pointer or a map of further keys.
///
/// Key and name must be string literals; they are not copied. The content is shared with the handles passed
/// to the constructor. Reading it as another kind returns an empty result.
class ZSysInfoObject {
public:
    /// A shared value.
    using ValueHandle = ZRef<TZValueBase<ZTypeId>>;
    /// Several shared values.
    using ValueList = ZList<ZRef<TZValueBase<ZTypeId>>>;

    /// An object with one value.
    ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ValueHandle& value);
    /// An object with a list of values.
    ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ValueList& values);
    /// An object with a native pointer.
    ZSysInfoObject(const wchar_t* key, const wchar_t* name, void* native);
    /// An object with further objects by key.
    ZSysInfoObject(const wchar_t* key, const wchar_t* name, const ZSysInfoKeyMap& keys);

    /// The key; referenced, never copied.
    [[nodiscard]] const wchar_t* Key() const noexcept { return m_key; }
    /// The display name; referenced, never copied.
    [[nodiscard]] const wchar_t* Name() const noexcept { return m_name; }
    /// 2 for a value, 3 for a list of values, 4 for a native pointer, 5 for a map of keys.
    [[nodiscard]] unsigned int ObjectType() const noexcept { return m_type; }

    /// A copy of the value; the none value for another kind. An empty handle aborts after a report through
    /// `z_dbg_error`.
    [[nodiscard]] TZValueBase<ZTypeId> Value() const;
    /// Copies of the values in order.
    [[nodiscard]] ZList<TZValueBase<ZTypeId>> Values() const;
    /// The pointer, which is not owned; null for another kind.
    [[nodiscard]] void* NativeValue() const noexcept;
    /// A copy of the map.
    [[nodiscard]] ZSysInfoKeyMap KeyMap() const;

private:
    const wchar_t* m_key;
    const wchar_t* m_name;
    unsigned int m_type;
    std::variant<ValueHandle, ValueList, void*, ZSysInfoKeyMap> m_content; // in the order of the types
};

/// A source of facts.
class ZSysInfoProvider {
public:
    ZSysInfoProvider() = default;
    ZSysInfoProvider(const ZSysInfoProvider&) = delete; // providers are shared, not copied
    ZSysInfoProvider& operator=(const ZSysInfoProvider&) = delete;
    virtual ~ZSysInfoProvider();

    /// The key of this provider's facts.
    [[nodiscard]] virtual const wchar_t* Key() const = 0;
    /// The display name of this provider's facts.
    [[nodiscard]] virtual const wchar_t* Name() const = 0;
    /// Updates cached facts.
    virtual void refreshInfo() = 0;
    /// Drops cached facts.
    virtual void releaseInfo() = 0;
    /// Adds every key that `getObject` knows.
    virtual void getKeys(ZSysInfoKeyMap& keys) const = 0;
    /// Looks up the fact with this key.
    /// @return 0 if it exists, otherwise another status.
    virtual unsigned int getObject(const wchar_t* key, ZRef<ZSysInfoObject>& out) = 0;

protected:
    /// Creates an object; see its constructors.
    static ZRef<ZSysInfoObject> createObject(
        const wchar_t* key, const wchar_t* name, const ZSysInfoObject::ValueHandle& value);
    /// Creates an object; see its constructors.
    static ZRef<ZSysInfoObject> createObject(
        const wchar_t* key, const wchar_t* name, const ZSysInfoObject::ValueList& values);
    /// Creates an object; see its constructors.
    static ZRef<ZSysInfoObject> createObject(const wchar_t* key, const wchar_t* name, void* native);
    /// Creates an object; see its constructors.
    static ZRef<ZSysInfoObject> createObject(
        const wchar_t* key, const wchar_t* name, const ZSysInfoKeyMap& keys);
};

/// The providers of a program, queried in the order in which they were added.
class ZSysInfo {
public:
    /// Adopts the provider; null is ignored.
    void addProvider(ZSysInfoProvider* provider);
    void addProvider(const ZRef<ZSysInfoProvider>& provider);
    /// The key and name of each provider that has both.
    [[nodiscard]] ZSysInfoKeyMap getLoadedProviders() const;
    /// The fact of the first provider that knows the key; an empty handle if none does.
    [[nodiscard]] ZRef<ZSysInfoObject> getObject(const wchar_t* key) const;

private:
    ZList<ZRef<ZSysInfoProvider>> m_providers;
};

} // namespace ZSpace
