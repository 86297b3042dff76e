// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "bridge/convert.h"
#include "bridge/hooks.h"
#include "weft/function.h"

#include <utility>

namespace weft::internal {

/// The receiver as the class that a member function belongs to.
template <typename C>
decltype(auto) self_cast(const Any& self)
{
    return qt::details::argument<std::remove_const_t<C>>::from(self);
}

/// The object whose override a call goes past, for hooks; null otherwise.
inline ::QObject* bypassed(const Any& self)
{
    return qt::details::qobject_of(self);
}

template <typename R, typename Call>
Any call_and_convert(Call&& call)
{
    if constexpr (std::is_void_v<R>) {
        call();
        return {};
    } else {
        return qt::details::result(call());
    }
}

/// Calls a member function. The arguments stand behind the receiver.
template <typename R, typename C, typename... Args>
struct function_from_method
{
    R (C::*method)(Args...);
    static constexpr int Count = sizeof...(Args) + 1;

    Any operator()(std::span<const Any> arguments) const
    {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            auto&& self = self_cast<C>(arguments[0]);
            return call_and_convert<R>(
                [&]() -> R { return (self.*method)(qt::details::arg<Args>(arguments[I + 1])...); });
        }(std::index_sequence_for<Args...>());
    }
};

template <typename R, typename C, typename... Args>
struct function_from_method_const
{
    R (C::*method)(Args...) const;
    static constexpr int Count = sizeof...(Args) + 1;

    Any operator()(std::span<const Any> arguments) const
    {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            const auto& self = self_cast<C>(arguments[0]);
            return call_and_convert<R>(
                [&]() -> R { return (self.*method)(qt::details::arg<Args>(arguments[I + 1])...); });
        }(std::index_sequence_for<Args...>());
    }
};

/// Calls a plain function, such as what a lambda in a class's table becomes: all
/// of one signature share their code.
template <typename R, typename... Args>
struct function_from_pointer
{
    R (*function)(Args...);
    static constexpr int Count = sizeof...(Args);

    Any operator()(std::span<const Any> arguments) const
    {
        return [&]<std::size_t... I>(std::index_sequence<I...>) {
            return call_and_convert<R>([&]() -> R { return function(qt::details::arg<Args>(arguments[I])...); });
        }(std::index_sequence_for<Args...>());
    }
};

/// Makes a callable a function of the runtime.
template <typename F>
class object_value_closure final : public object_value_closure_base
{
public:
    explicit object_value_closure(F function, qt::hook hook = qt::hook::none)
        : object_value_closure_base(F::Count), m_function(std::move(function)), m_hook(hook)
    {
    }

protected:
    Any call(std::span<const Any> arguments) override
    {
        // A call of what a script class may override means the native one.
        const qt::hook_bypass bypass(m_hook, m_hook == qt::hook::none ? nullptr : bypassed(arguments[0]));
        return m_function(arguments);
    }

private:
    const F m_function;
    const qt::hook m_hook;
};

// What the generated code calls.
template <typename R, typename C, typename... Args>
object_value_function* bind(R (C::*method)(Args...), qt::hook hook = qt::hook::none)
{
    return new object_value_closure(function_from_method<R, C, Args...>{method}, hook);
}
template <typename R, typename C, typename... Args>
object_value_function* bind(R (C::*method)(Args...) const, qt::hook hook = qt::hook::none)
{
    return new object_value_closure(function_from_method_const<R, C, Args...>{method}, hook);
}
template <typename R, typename... Args>
object_value_function* bind(R (*function)(Args...), qt::hook hook = qt::hook::none)
{
    return new object_value_closure(function_from_pointer<R, Args...>{function}, hook);
}

} // namespace weft::internal
