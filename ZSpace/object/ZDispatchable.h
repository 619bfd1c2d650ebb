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

/// A method that can be invoked by name: an entry of the method table of a `ZDispatchable`.
template <typename Lock>
class ZDispatchMethod {
public:
    /// An argument or a result.
    using Value = TZValueBase<ZTypeId>;

    ZDispatchMethod() noexcept = default;
    ZDispatchMethod(const ZDispatchMethod&) = delete; // has one owner
    ZDispatchMethod& operator=(const ZDispatchMethod&) = delete;

    /// The name by which the method is called.
    [[nodiscard]] virtual ZGStr<char> Name() const = 0;
    virtual ~ZDispatchMethod();
    /// Calls the method.
    virtual Value invoke(ZList<Value>& args) = 0;
};

/// An object with a method table and an intrusive reference count.
///
/// A derived class registers its methods in its constructor:
///
///     registerMethod(new PrintMethod(*this));
///
/// Registration and destruction hold the object's lock, lookup and invocation do not: register all methods
/// before sharing the object with other threads.
template <typename Lock>
class ZDispatchable : public TZReferenceable<TZRefCounter<int>> {
public:
    /// A method entry.
    using Method = ZDispatchMethod<Lock>;
    /// An argument or a result.
    using Value = TZValueBase<ZTypeId>;

    ZDispatchable(const ZDispatchable&) = delete; // methods are owned by one object
    ZDispatchable& operator=(const ZDispatchable&) = delete;
    /// Deletes the methods from last to first while holding the lock. If a method's destructor calls this
    /// object, it finds itself as the last method and none that has been deleted.
    virtual ~ZDispatchable();

    /// Invokes the method registered last if its name is `name`. Otherwise practically never returns: the
    /// search goes upwards from there, and every index past the end means the last method again.
    /// @throws ZInvalidOperationException if there are no methods.
    virtual Value invokeByName(const char* name, ZList<Value>& args);

    /// The number of methods.
    virtual long InvokableMethods() const;

    /// The method at `index`. A negative index counts from the end; then the index is clamped to the table.
    /// Null if there are no methods.
    virtual Method* InvokableMethod(long index) const;

protected:
    ZDispatchable() noexcept = default;

    /// Adopts `method`; frees it with `delete`. Null is ignored. Calls `std::terminate` if allocation fails.
    void registerMethod(Method* method) noexcept;

private:
    /// Removes entries without reallocation, so that destruction cannot fail.
    class MethodTable : public ZArray<void*> {
    public:
        void removeAt(long index) noexcept
        {
            ZMemory<void*>::copyTo(m_block + index, m_block + index + 1, m_count - index - 1);
            --m_count;
        }
    };

    [[nodiscard]] Method* methodAt(long index) const noexcept;

    MethodTable m_methods;
    ZList<ZPair<ZGStr<char>, void*>> m_attachments; // only for the layout; always empty
    mutable Lock m_lock;
};

extern template class ZDispatchMethod<ZThreadLock_T<pthread_mutex_t>>;
extern template class ZDispatchable<ZThreadLock_T<pthread_mutex_t>>;

} // namespace ZSpace
