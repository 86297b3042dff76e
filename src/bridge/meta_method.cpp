// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/meta_method.h"

#include "bridge/convert.h"
#include "weft/errors.h"

#include <QMetaMethod>

#include <algorithm>

namespace weft::qt::details {

namespace {

constexpr int MaxArguments = 10;

bool IsCallable(const ::QMetaMethod& method)
{
    if (method.parameterCount() > MaxArguments)
        return false;
    for (int i = 0; i < method.parameterCount(); ++i)
        if (!method.parameterMetaType(i).isValid())
            return false;
    return true;
}

class meta_method final : public internal::object_value_closure_base
{
public:
    meta_method(const ::QMetaObject& meta, std::vector<QMetaMethod> overloads)
        : m_meta(meta), m_overloads(std::move(overloads))
    {
        for (const ::QMetaMethod& one : m_overloads) {
            m_least = std::min(m_least, one.parameterCount() + 1);
            m_most = std::max(m_most, one.parameterCount() + 1);
        }
        m_parameterCount = m_most;
    }

    Any invoke(std::span<const Any> arguments) override
    {
        const int given = static_cast<int>(arguments.size());
        const auto place = std::find_if(m_overloads.begin(), m_overloads.end(), [&](const ::QMetaMethod& one) {
            return one.parameterCount() + 1 == given;
        });
        if (place == m_overloads.end())
            throw Error(QStringLiteral("%1: %2 arguments expected, %3 given.")
                            .arg(name().ToQString(), m_least == m_most
                                                         ? QString::number(m_most - 1)
                                                         : QStringLiteral("%1 to %2").arg(m_least - 1).arg(m_most - 1))
                            .arg(given - 1));
        try {
            return invoke_meta_method(*qobject_argument(arguments[0], m_meta), *place, arguments.subspan(1));
        } catch (const internal::bad_argument& caught) {
            throw internal::bad_argument_error(name(), caught);
        }
    }

protected:
    Any call(std::span<const Any>) override { return {}; }

private:
    const ::QMetaObject& m_meta;
    const std::vector<QMetaMethod> m_overloads;
    int m_least = MaxArguments + 1, m_most = 0;
};

} // namespace

internal::object_value_function* make_meta_method(const ::QMetaObject& meta, const QByteArray& name)
{
    std::vector<QMetaMethod> overloads;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        const ::QMetaMethod method = meta.method(i);
        if (method.name() == name && method.access() == ::QMetaMethod::Public && IsCallable(method))
            overloads.push_back(method);
    }
    return overloads.empty() ? nullptr : new meta_method(meta, std::move(overloads));
}

Any invoke_meta_method(::QObject& object, const ::QMetaMethod& method, std::span<const Any> arguments)
{
    ::QVariant values[MaxArguments + 1];
    void* pointers[MaxArguments + 1] = {};
    const bool isVoid = method.returnMetaType().id() == QMetaType::Void || !method.returnMetaType().isValid();
    if (!isVoid) {
        values[0] = ::QVariant(method.returnMetaType());
        pointers[0] = values[0].data();
    }
    // A variant among the arguments stands for itself.
    const auto pointer = [](::QVariant& value, QMetaType type) {
        return type.id() == QMetaType::QVariant ? static_cast<void*>(&value) : value.data();
    };
    if (!isVoid)
        pointers[0] = pointer(values[0], method.returnMetaType());
    for (int i = 0; i < method.parameterCount(); ++i) {
        const QMetaType type = method.parameterMetaType(i);
        ::QVariant& value = values[i + 1];
        if (type.id() == QMetaType::QVariant) {
            value = to_qvariant(arguments[static_cast<std::size_t>(i)]);
        } else {
            value = ::QVariant(type);
            into_meta_type(arguments[static_cast<std::size_t>(i)], type, value.data());
        }
        pointers[i + 1] = pointer(value, type);
    }
    ::QMetaObject::metacall(&object, ::QMetaObject::InvokeMetaMethod, method.methodIndex(), pointers);
    return isVoid ? Any() : from_meta_type(method.returnMetaType(), pointers[0]);
}

} // namespace weft::qt::details
