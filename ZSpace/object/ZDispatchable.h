// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZArray.h"
#include "ZSpace/core/ZList.h"
#include "ZSpace/core/ZMap.h"
#include "ZSpace/core/ZReference.h"
#include "ZSpace/core/ZThreadLock.h"
#include "ZSpace/string/ZGStr.h"
#include "ZSpace/value/TZValue.h"

#include <pthread.h>

namespace ZSpace {

/// A method that can be invoked by its name: an entry of a `ZDispatchable`'s table.
template <typename Lock>
class ZDispatchMethod {
public:
    using Value = TZValueBase<ZTypeId>;

    ZDispatchMethod() noexcept = default;
    ZDispatchMethod(const ZDispatchMethod&) = delete; // one table owns it
    ZDispatchMethod& operator=(const ZDispatchMethod&) = delete;

    [[nodiscard]] virtual ZGStr<char> Name() const = 0;
    virtual ~ZDispatchMethod();
    virtual Value invoke(ZList<Value>& args) = 0;
};

/// An object with a table of methods, and the count of the handles on it.
///
/// A derived class registers its methods when it is made:
///
///     registerMethod(new PrintMethod(*this));
///
/// Registering and destruction hold the object's lock; looking up and invoking do not, so methods are
/// registered before other threads see the object.
template <typename Lock>
class ZDispatchable : public TZReferenceable<TZRefCounter<int>> {
public:
    using Method = ZDispatchMethod<Lock>;
    using Value = TZValueBase<ZTypeId>;

    ZDispatchable(const ZDispatchable&) = delete; // methods belong to one object
    ZDispatchable& operator=(const ZDispatchable&) = delete;
    /// Disposes of the methods from the last to the first, holding the lock.
    virtual ~ZDispatchable();

    /// Invokes the method registered last if `name` is its name. The search goes on upwards from there, and
    /// past the end there is again only the last method: for any other name it practically never ends.
    /// @throws ZInvalidOperationException if there are no methods.
    virtual Value invokeByName(const char* name, ZList<Value>& args);

    /// The number of methods.
    virtual long InvokableMethods() const;

    /// A negative index counts from the end; before the first means the first, past the last the last. Null
    /// when there are no methods.
    virtual Method* InvokableMethod(long index) const;

protected:
    ZDispatchable() noexcept = default;

    /// Takes `method` over, to be disposed of by `delete`. Null is ignored. Ends the process where memory is
    /// wanting.
    void registerMethod(Method* method) noexcept;

private:
    [[nodiscard]] Method* methodAt(long index) const noexcept;

    ZArray<void*> m_methods;
    ZList<ZPair<ZGStr<char>, void*>> m_attachments; // kept by name beside the methods; nothing adds any yet
    mutable Lock m_lock;
};

extern template class ZDispatchMethod<ZThreadLock_T<pthread_mutex_t>>;
extern template class ZDispatchable<ZThreadLock_T<pthread_mutex_t>>;

} // namespace ZSpace
