// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"
#include "weft/type.h"

#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <optional>
#include <thread>

namespace weft {

namespace internal {

/// The state of a deferred value.
class ORB_SHARED object_value_lazy final : public object_value
{
public:
    object_value_lazy(const Type& result, std::function<Any()> body) : m_result(result), m_body(std::move(body)) {}
    Type type() const override { return Type::lazy(m_result); }
    const Type& result() const { return m_result; }
    bool isDone() const;
    Any wait();

private:
    const Type m_result;
    mutable std::mutex m_mutex;
    std::condition_variable m_ended;
    std::function<Any()> m_body;
    bool m_isRunning = false;
    bool m_isDone = false;
    std::thread::id m_runner;
    Any m_value;
    std::exception_ptr m_error;
};

} // namespace internal

/// A value that is made when it is first waited for. Copies share it.
class ORB_SHARED Lazy_Generic
{
public:
    /// `result` is the type of the value; any when it is not known.
    Lazy_Generic(const Type& result, std::function<Any()> body);
    /// Nothing when the value is no lazy.
    static std::optional<Lazy_Generic> cast(const Any& any);
    /// Nothing when it is a lazy of another type. One of any type passes.
    std::optional<Lazy_Generic> castInstance(const Type& result) const;

    operator Any() const { return m_any; }
    bool isDone() const { return content().isDone(); }
    /// Runs the body on this thread, once, or waits until the thread that runs
    /// it has the value; the main thread keeps its events going meanwhile. What
    /// the body throws is thrown to everybody who waits. A body that waits for
    /// itself gets none.
    Any wait() const { return content().wait(); }

private:
    explicit Lazy_Generic(const Any& any) : m_any(any) {}
    internal::object_value_lazy& content() const { return *static_cast<internal::object_value_lazy*>(m_any.object()); }

    Any m_any;
};

} // namespace weft
