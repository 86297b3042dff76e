// SPDX-License-Identifier: GPL-3.0-or-later
#include "weft/lazy.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QThread>

#include <chrono>

namespace weft {

namespace internal {

bool object_value_lazy::isDone() const
{
    std::lock_guard guard(m_mutex);
    return m_isDone;
}

Any object_value_lazy::wait()
{
    std::unique_lock lock(m_mutex);
    if (m_isRunning && m_runner == std::this_thread::get_id())
        return {};
    if (m_isRunning) {
        const bool isMain =
            QCoreApplication::instance() && QThread::currentThread() == QCoreApplication::instance()->thread();
        while (!m_isDone) {
            if (!isMain) {
                m_ended.wait(lock);
                continue;
            }
            m_ended.wait_for(lock, std::chrono::milliseconds(5));
            lock.unlock();
            QCoreApplication::processEvents(QEventLoop::AllEvents);
            lock.lock();
        }
    }
    if (!m_isDone) {
        m_isRunning = true;
        m_runner = std::this_thread::get_id();
        const std::function<Any()> body = std::move(m_body);
        m_body = nullptr;
        lock.unlock();
        Any value;
        std::exception_ptr error;
        try {
            value = body ? body() : Any();
        } catch (...) {
            error = std::current_exception();
        }
        lock.lock();
        m_value = value;
        m_error = error;
        m_isDone = true;
        m_isRunning = false;
        m_ended.notify_all();
    }
    if (m_error)
        std::rethrow_exception(m_error);
    return m_value;
}

} // namespace internal

Lazy_Generic::Lazy_Generic(const Type& result, std::function<Any()> body)
    : m_any(Any::adopt(new internal::object_value_lazy(result, std::move(body))))
{
}

std::optional<Lazy_Generic> Lazy_Generic::cast(const Any& any)
{
    return any.as<internal::object_value_lazy>() ? std::optional(Lazy_Generic(any)) : std::nullopt;
}

std::optional<Lazy_Generic> Lazy_Generic::castInstance(const Type& result) const
{
    const Type own = content().result();
    return own.kind() == Type::Kind::Any || own == result ? std::optional(*this) : std::nullopt;
}

} // namespace weft
