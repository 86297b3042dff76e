// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/main_thread.h"
#include "rc/ref.h"
#include "rc/spin_flag.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>
#include <type_traits>
#include <utility>

namespace HF {

/// Told by a body how far it is; given by whoever forces with progress.
class LProgress
{
public:
    virtual ~LProgress() = default;
    /// Any thread. `total` 0 means unknown.
    virtual void Report(long done, long total) = 0;
    virtual bool IsCancelled() const = 0;
};

namespace impl {

/// Stands for the value of a lazy without one.
struct Nothing {};

template <class T> using LazyValue = std::conditional_t<std::is_void_v<T>, Nothing, T>;

/// Room for a value that may not be there yet. A type without a default value
/// (rc::Ref) has none to give when its body failed: asking then throws.
template <class V> using LazyRoom = std::conditional_t<std::is_default_constructible_v<V>, V, std::optional<V>>;
template <class V> V LazyDefault()
{
    if constexpr (std::is_default_constructible_v<V>)
        return V();
    else
        throw std::logic_error("The value of a lazy is missing.");
}

/// What all copies of a lazy share. The mutex is held while the body runs, the
/// spin flag only between looking at the done flag and taking the mutex, so
/// that "somebody runs the body" and "the value is there" are told apart.
template <class T, bool RunAlways>
class LazyState final : public rc::RefCounted
{
public:
    using Value = LazyValue<T>;
    using Body = std::function<T(LProgress*)>;

    explicit LazyState(Value value) : m_value(std::move(value)), m_done(true) {}
    explicit LazyState(Body body) : m_body(std::move(body)) {}

    bool IsDone() const noexcept { return m_done.load(std::memory_order_acquire); }
    bool IsRequested() const noexcept { return m_requested.load(std::memory_order_relaxed); }

    Value Force(LProgress* progress)
    {
        if (IsDone())
            return Result();
        m_requested.store(true, std::memory_order_relaxed);
        m_spin.lock();
        if (IsDone()) {
            m_spin.unlock();
            return Result();
        }
        if (!m_mutex.try_lock()) {
            m_spin.unlock();
            return Wait();
        }
        m_spin.unlock();
        // The last runner may have finished between the look at the flag and
        // the mutex; its body is gone then.
        if (!IsDone())
            Run(progress);
        m_mutex.unlock();
        return Result();
    }

protected:
    void Destroy() override
    {
        if constexpr (RunAlways) {
            try {
                Force(nullptr);
            } catch (...) { // no value to give
            }
        }
    }

private:
    Value Wait()
    {
        if (m_runner.load(std::memory_order_acquire) == std::this_thread::get_id())
            return LazyDefault<Value>(); // a body that forces its own lazy must not deadlock
        if (!IsMainThread()) {
            m_mutex.lock();
        } else {
            while (!m_mutex.try_lock())
                LYield();
        }
        m_mutex.unlock();
        return IsDone() ? Result() : LazyDefault<Value>();
    }

    Value Result() const
    {
        if constexpr (std::is_default_constructible_v<Value>)
            return m_value;
        else
            return m_value ? *m_value : LazyDefault<Value>();
    }

    void Run(LProgress* progress)
    {
        m_runner.store(std::this_thread::get_id(), std::memory_order_release);
        try {
            if constexpr (std::is_void_v<T>)
                m_body(progress);
            else
                m_value = m_body(progress);
        } catch (...) {
            // Nobody is told: a body that has something to report does so itself.
        }
        try {
            m_body = nullptr; // what it captured goes with it
        } catch (...) {
        }
        m_done.store(true, std::memory_order_release);
        m_runner.store(std::thread::id(), std::memory_order_release);
    }

    rc::SpinFlag m_spin;
    std::mutex m_mutex;
    Body m_body;
    LazyRoom<Value> m_value{};
    std::atomic<bool> m_done{false};
    std::atomic<bool> m_requested{false};
    std::atomic<std::thread::id> m_runner{};
};

} // namespace impl

/// A deferred value. Copies share one state. The body runs once, on the thread
/// that forces first; it starts no thread. A body that nobody forced is dropped
/// unrun with RunAlways false; with true the drop of the last reference runs
/// it, on that thread. An exception out of a body is swallowed: the value stays
/// the default one.
///
/// Forcing while another thread runs the body waits for it; on the main thread
/// the event loop keeps turning meanwhile. Forcing from within the body answers
/// the default value at once.
template <class T, bool RunAlways>
class LLazy
{
    using State = impl::LazyState<T, RunAlways>;

public:
    using Value = impl::LazyValue<T>;

    /// Done, holding T().
    LLazy() requires std::is_default_constructible_v<Value> : m_state(rc::make<State>(Value())) {}
    /// Done, holding the value.
    LLazy(Value value) : m_state(rc::make<State>(std::move(value))) {}
    template <class U, class = std::enable_if_t<std::is_convertible_v<U, Value>
                                                && !std::is_same_v<std::decay_t<U>, Value>
                                                && !std::is_invocable_v<U>>>
    LLazy(U value) : m_state(rc::make<State>(Value(std::move(value)))) {}
    /// From a body; nothing runs yet.
    static LLazy FromBody(std::function<T()> body)
    {
        return LLazy(rc::make<State>(typename State::Body([body = std::move(body)](LProgress*) { return body(); })));
    }
    /// From a body that takes a progress object, which may be null.
    static LLazy FromProgressBody(std::function<T(LProgress*)> body)
    {
        return LLazy(rc::make<State>(typename State::Body(std::move(body))));
    }

    LLazy(const LLazy& other) : m_state(other.Share()) {}
    LLazy& operator=(const LLazy& other)
    {
        rc::Ref<State> fresh = other.Share();
        std::unique_lock guard(m_spin);
        rc::Ref<State> old = m_state;
        m_state = fresh;
        guard.unlock(); // the old state may run its body when it goes
        return *this;
    }

    /// Forces: runs the body or waits for it, and gives the value.
    Value Force(LProgress* progress = nullptr) const { return Share()->Force(progress); }
    /// True when the value is there; forcing will not wait.
    bool IsResolved() const { return Share()->IsDone(); }
    /// True when somebody asked for the value.
    bool IsRequested() const { return Share()->IsRequested(); }

    /// A lazy whose body forces this one and applies `function` to its value.
    template <class F>
    auto Map(F function) const
    {
        return MapAs<RunAlways>(std::move(function));
    }
    /// The same with the other kind of result.
    template <bool ResultRunsAlways, class F>
    auto MapAs(F function) const
    {
        if constexpr (std::is_void_v<T>) {
            using U = std::invoke_result_t<F>;
            return LLazy<U, ResultRunsAlways>::FromBody([source = *this, function = std::move(function)]() mutable {
                source.Force();
                return function();
            });
        } else {
            using U = std::invoke_result_t<F, Value>;
            return LLazy<U, ResultRunsAlways>::FromBody([source = *this, function = std::move(function)]() mutable {
                return function(source.Force());
            });
        }
    }

private:
    explicit LLazy(rc::Ref<State> state) : m_state(std::move(state)) {}

    rc::Ref<State> Share() const
    {
        std::lock_guard guard(m_spin);
        return m_state;
    }

    mutable rc::SpinFlag m_spin;
    rc::Ref<State> m_state;
};

} // namespace HF
