// SPDX-FileCopyrightText: 2026 The ZSpace authors
// SPDX-License-Identifier: MIT

#pragma once

#include "ZSpace/core/ZRef.h"

#include <memory>
#include <type_traits>
#include <utility>

namespace ZSpace {

/// The base of all delegates, whatever their signature.
template <typename T>
class ZDelegable_T {
public:
    // The order of the virtual functions is part of the interface, here and in `TZDelegate`.

    /// The number of arguments that a call takes.
    [[nodiscard]] virtual int ParamCount() const = 0;
    /// Whether there is nothing to call.
    [[nodiscard]] virtual bool operator!() const = 0;
    /// The object that calls go to. Not owned.
    [[nodiscard]] virtual void* Object() const = 0;
    virtual ~ZDelegable_T() = default;

protected:
    constexpr ZDelegable_T() noexcept = default;
    ZDelegable_T(const ZDelegable_T&) noexcept = default;
    ZDelegable_T& operator=(const ZDelegable_T&) noexcept = default;
};

extern template class ZDelegable_T<void>;

/// The base of `ZDelegate2` to `ZDelegate5`; `Self` is the derived class.
template <typename Self, typename R, typename... P>
class TZDelegate : public ZDelegable_T<void> {
public:
    /// The number of parameters.
    [[nodiscard]] int ParamCount() const override { return static_cast<int>(sizeof...(P)); }

    /// Calls the target.
    virtual R operator()(P... arguments) const = 0;
    /// A new delegate with the same target. The caller owns it.
    [[nodiscard]] virtual Self* clone() const = 0;
    [[nodiscard]] virtual bool operator==(const Self& other) const = 0;
    /// Whether calls go to `object`.
    [[nodiscard]] virtual bool operator==(void const* object) const = 0;
};

/// A callable object with two parameters that returns an `R`.
template <typename R, typename A1, typename A2>
class ZDelegate2 : public TZDelegate<ZDelegate2<R, A1, A2>, R, A1, A2> {
public:
    using TZDelegate<ZDelegate2, R, A1, A2>::operator==;
};

/// A callable object with three parameters that returns an `R`.
template <typename R, typename A1, typename A2, typename A3>
class ZDelegate3 : public TZDelegate<ZDelegate3<R, A1, A2, A3>, R, A1, A2, A3> {
public:
    using TZDelegate<ZDelegate3, R, A1, A2, A3>::operator==;
};

/// A callable object with four parameters that returns an `R`.
template <typename R, typename A1, typename A2, typename A3, typename A4>
class ZDelegate4 : public TZDelegate<ZDelegate4<R, A1, A2, A3, A4>, R, A1, A2, A3, A4> {
public:
    using TZDelegate<ZDelegate4, R, A1, A2, A3, A4>::operator==;
};

/// A callable object with five parameters that returns an `R`.
template <typename R, typename A1, typename A2, typename A3, typename A4, typename A5>
class ZDelegate5 : public TZDelegate<ZDelegate5<R, A1, A2, A3, A4, A5>, R, A1, A2, A3, A4, A5> {
public:
    using TZDelegate<ZDelegate5, R, A1, A2, A3, A4, A5>::operator==;
};

/// Binds a member function of two parameters to an object, which must outlive all calls.
///
///     ZDelegator2V<Door, int, bool> turn(&door, &Door::turn);
///     turn(90, true);
///
/// The function may be virtual and may be a member of any base of `Class`. An unbound delegate (`!turn`) must
/// not be called.
template <typename Class, typename A1, typename A2>
class ZDelegator2V : public ZDelegate2<void, A1, A2> {
public:
    /// A member function of two parameters.
    using Function = void (Class::*)(A1, A2);

    /// Binds a function to an object.
    ZDelegator2V(Class* object, Function function) noexcept
        : m_function(function)
        , m_object(object)
    {
    }

    [[nodiscard]] bool operator!() const override { return !m_function || !m_object; }
    [[nodiscard]] void* Object() const override { return m_object; }

    /// Calls the bound function.
    void operator()(A1 a1, A2 a2) const override
    {
        (m_object->*m_function)(std::forward<A1>(a1), std::forward<A2>(a2));
    }

    [[nodiscard]] ZDelegator2V* clone() const override { return new ZDelegator2V(*this); }

    /// True for a binder of the same class with the same function and object.
    [[nodiscard]] bool operator==(const ZDelegate2<void, A1, A2>& other) const override
    {
        const auto* binder = dynamic_cast<const ZDelegator2V*>(&other);
        return binder && *this == *binder;
    }
    [[nodiscard]] bool operator==(void const* object) const override { return m_object == object; }
    [[nodiscard]] bool operator==(const ZDelegator2V& other) const
    {
        return Object() == other.Object() && m_function == other.m_function;
    }

private:
    Function m_function; // two words: function address or vtable offset, then `this` adjustment
    Class* m_object;
};

namespace detail {

/// Calls a function object that is shared with its clones.
template <typename F, typename Self, typename R, typename... P>
class FunctionDelegate final : public Self {
public:
    /// Shares a callable object.
    explicit FunctionDelegate(ZRef<F> function) noexcept
        : m_function(std::move(function))
    {
    }

    [[nodiscard]] bool operator!() const override { return false; }
    /// The function object.
    [[nodiscard]] void* Object() const override { return m_function.get(); }
    /// Calls the function object.
    R operator()(P... arguments) const override
    {
        if constexpr (std::is_void_v<R>)
            static_cast<void>((*m_function)(std::forward<P>(arguments)...));
        else
            return (*m_function)(std::forward<P>(arguments)...);
    }
    /// A delegate that shares the function object.
    [[nodiscard]] FunctionDelegate* clone() const override { return new FunctionDelegate(*this); }
    [[nodiscard]] bool operator==(const Self& other) const override
    {
        const auto* clone = dynamic_cast<const FunctionDelegate*>(&other);
        return clone && clone->Object() == Object();
    }
    [[nodiscard]] bool operator==(void const* object) const override { return Object() == object; }

private:
    ZRef<F> m_function;
};

template <typename F, typename Self, typename R, typename... P>
std::unique_ptr<Self> makeDelegate(F&& function, const TZDelegate<Self, R, P...>*)
{
    using Stored = std::decay_t<F>;
    return std::make_unique<FunctionDelegate<Stored, Self, R, P...>>(
        ZRef<Stored>(new Stored(std::forward<F>(function))));
}

} // namespace detail

/// Creates a delegate from a lambda or another function object.
///
///     auto done = zMakeDelegate<ZDelegate2<void, Stream*, int>>([&](Stream*, int status) { ... });
///
/// The function object is moved, may be move-only, and is shared by all clones: they compare equal, and
/// `Object()` is its address. Objects captured by reference must outlive all calls.
template <typename Delegate, typename F>
[[nodiscard]] std::unique_ptr<Delegate> zMakeDelegate(F&& function)
{
    return detail::makeDelegate(std::forward<F>(function), static_cast<const Delegate*>(nullptr));
}

} // namespace ZSpace
