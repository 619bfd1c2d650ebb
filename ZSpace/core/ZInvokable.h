// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZDelegate.h"

#include <memory>
#include <utility>

namespace ZSpace {

/// A unit of work that stores everything it needs.
template <typename R>
class ZInvokable {
public:
    // The order of the virtual functions is part of the interface, here and in `ZExecutor`.

    /// Does the work.
    virtual R invoke() const = 0;
    virtual ~ZInvokable() = default;

protected:
    constexpr ZInvokable() noexcept = default;
    ZInvokable(const ZInvokable&) noexcept = default;
    ZInvokable& operator=(const ZInvokable&) noexcept = default;
};

/// A call stored together with its arguments, for later and possibly repeated execution.
template <typename R>
class ZExecutor : public ZInvokable<R> {
public:
    /// The same as `execute()`.
    R invoke() const override { return execute(); }

    /// The number of stored arguments.
    [[nodiscard]] virtual int ParamCount() const = 0;
    /// Does the work.
    virtual R execute() const = 0;
    /// A new executor for the same call. The caller owns it.
    [[nodiscard]] virtual ZExecutor* clone() const = 0;
};

extern template class ZInvokable<void>;
extern template class ZExecutor<void>;

/// Calls a binder with two stored arguments.
///
///     ZExecutor2V<int, bool> turn(new ZDelegator2V<Door, int, bool>(&door, &Door::turn), 90, true);
///     turn.invoke();
///
/// Owns the binder. The arguments are copied for each call.
template <typename D, typename A>
class ZExecutor2V : public ZExecutor<void> {
public:
    /// What is called.
    using Binder = ZDelegate2<void, D, A>;

    /// Adopts `binder`.
    ZExecutor2V(Binder* binder, D first, A second)
        : ZExecutor2V(std::unique_ptr<Binder>(binder), std::forward<D>(first), std::forward<A>(second))
    {
    }

    [[nodiscard]] int ParamCount() const override { return m_binder->ParamCount(); }
    /// Calls the binder with the two arguments.
    void execute() const override { (*m_binder)(m_first, m_second); }
    [[nodiscard]] ZExecutor2V* clone() const override
    {
        return new ZExecutor2V(std::unique_ptr<Binder>(m_binder->clone()), m_first, m_second);
    }

private:
    ZExecutor2V(std::unique_ptr<Binder> binder, D first, A second)
        : m_binder(std::move(binder))
        , m_first(std::forward<D>(first))
        , m_second(std::forward<A>(second))
    {
    }

    std::unique_ptr<Binder> m_binder;
    D m_first;
    A m_second;
};

} // namespace ZSpace
