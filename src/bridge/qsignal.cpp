// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/qsignal.h"

#include "bridge/convert.h"
#include "bridge/event_ref.h"
#include "bridge/meta_method.h"
#include "bridge_handles.h"
#include "weft/errors.h"

#include <algorithm>

namespace weft::qt {

namespace {

/// Ids of a proxy's only slot stand behind those of QObject.
int SlotIndex()
{
    return ::QObject::staticMetaObject.methodCount();
}

constexpr int MaxSignalArguments = 11;

} // namespace

qsignal_proxy::qsignal_proxy(::QObject* sender, const ::QMetaMethod& signal, const I_Invokable_Generic& function)
    : ::QObject(sender), m_signal(signal), m_function(function)
{
}

::QMetaObject::Connection qsignal_proxy::connect(Qt::ConnectionType type)
{
    return ::QMetaObject::connect(parent(), m_signal.methodIndex(), this, SlotIndex(), type);
}

bool qsignal_proxy::isFor(const ::QMetaMethod& signal, const Any& function) const
{
    return m_signal == signal && m_function.any() == function;
}

int qsignal_proxy::qt_metacall(::QMetaObject::Call call, int id, void** arguments)
{
    id = ::QObject::qt_metacall(call, id, arguments);
    if (id < 0 || call != ::QMetaObject::InvokeMetaMethod)
        return id;
    const int count = std::min(m_signal.parameterCount(), m_function.parameterCount());
    if (count > MaxSignalArguments)
        return id - 1;
    try {
        const details::event_scope events;
        std::vector<Any> values;
        for (int i = 0; i < count; ++i)
            values.push_back(details::from_meta_type(m_signal.parameterMetaType(i), arguments[i + 1]));
        const I_Invokable_Generic function = m_function; // it may disconnect itself
        function.invoke(values);
    } catch (...) {
        internal::report_error(String(QString::fromLatin1(m_signal.name())), internal::current_exception_text());
    }
    return id - 1;
}

qobject_event_filter::qobject_event_filter(::QObject* watched, const I_Invokable_Generic& function)
    : ::QObject(watched), m_function(function)
{
}

bool qobject_event_filter::eventFilter(::QObject* object, ::QEvent* event)
{
    try {
        const details::event_scope events;
        const std::vector<Any> arguments{details::create_qobject_instance(object, {}), details::event_to_any(event)};
        Any result = m_function.invoke(arguments);
        if (const auto lazy = Lazy_Generic::cast(result)) {
            const auto typed = lazy->castInstance(Boolean::typeMask());
            if (!typed)
                throw internal::bad_argument(Boolean::typeMask(), result);
            result = typed->wait();
        }
        return details::boolean_argument(result);
    } catch (...) {
        internal::report_error("eventFilter", internal::current_exception_text());
    }
    return false;
}

namespace details {

::QMetaMethod find_signal(const ::QMetaObject& meta, const char* nameOrSignature)
{
    const QByteArray wanted(nameOrSignature);
    if (wanted.contains('(')) {
        const int index = meta.indexOfSignal(::QMetaObject::normalizedSignature(nameOrSignature).constData());
        return index < 0 ? ::QMetaMethod() : meta.method(index);
    }
    ::QMetaMethod found;
    for (int i = 0; i < meta.methodCount(); ++i) {
        const ::QMetaMethod method = meta.method(i);
        if (method.methodType() == ::QMetaMethod::Signal && method.name() == wanted &&
            (!found.isValid() || method.parameterCount() > found.parameterCount()))
            found = method;
    }
    return found;
}

namespace {

class signal_getter final : public internal::object_value_closure_base
{
public:
    explicit signal_getter(const ::QMetaMethod& signal) : object_value_closure_base(1), m_signal(signal) {}

protected:
    Any call(std::span<const Any> arguments) override
    {
        return QSignal(signal_ref{qobject_argument(arguments[0], *m_signal.enclosingMetaObject()), m_signal}).any();
    }

private:
    const ::QMetaMethod m_signal;
};

::QObject& Living(const signal_ref& signal)
{
    if (!signal.object)
        throw internal::bad_argument(QSignal::typeMask(), {}, "The sender of the signal is gone.");
    return *signal.object;
}

QList<qsignal_proxy*> Proxies(::QObject& sender)
{
    QList<qsignal_proxy*> found;
    for (::QObject* child : sender.children())
        if (auto* proxy = dynamic_cast<qsignal_proxy*>(child))
            found.append(proxy);
    return found;
}

/// A proxy may be the one that is calling: it goes later, and is deaf at once.
template <typename Test>
bool RemoveProxies(::QObject& sender, Test&& test)
{
    bool any = false;
    for (qsignal_proxy* proxy : Proxies(sender))
        if (test(*proxy)) {
            ::QObject::disconnect(&sender, nullptr, proxy, nullptr);
            proxy->setParent(nullptr);
            proxy->deleteLater();
            any = true;
        }
    return any;
}

Qt::ConnectionType ConnectionType(int type)
{
    if (type < Qt::AutoConnection || (type & ~Qt::UniqueConnection) > Qt::BlockingQueuedConnection)
        throw internal::bad_argument(Integer::typeMask(), type, "There is no such connection type.");
    return static_cast<Qt::ConnectionType>(type);
}

} // namespace

internal::object_value_function* make_signal_getter(const ::QMetaMethod& signal)
{
    return new signal_getter(signal);
}

signal_ref make_signal(::QObject& object, const QString& signature)
{
    const ::QMetaMethod signal = find_signal(*object.metaObject(), signature.toLatin1().constData());
    if (!signal.isValid())
        throw internal::bad_argument(string_type(), String(signature),
                                     QStringLiteral("%1 has no signal \"%2\".")
                                         .arg(QLatin1String(object.metaObject()->className()), signature));
    return {&object, signal};
}

::QMetaObject::Connection connect_signal(const signal_ref& signal, const I_Invokable_Generic& function, int type)
{
    ::QObject& sender = Living(signal);
    const Qt::ConnectionType kind = ConnectionType(type);
    if (type & Qt::UniqueConnection)
        for (const qsignal_proxy* proxy : Proxies(sender))
            if (proxy->isFor(signal.signal, function))
                return {};
    auto* proxy = new qsignal_proxy(&sender, signal.signal, function);
    const ::QMetaObject::Connection connection = proxy->connect(kind);
    if (!connection)
        delete proxy;
    return connection;
}

bool disconnect_signal(const signal_ref& signal, const Any& function)
{
    I_Invokable_Generic::cast(function);
    return RemoveProxies(Living(signal),
                         [&](const qsignal_proxy& proxy) { return proxy.isFor(signal.signal, function); });
}

bool disconnect_all(const signal_ref& signal)
{
    return RemoveProxies(Living(signal), [&](const qsignal_proxy& proxy) { return proxy.isFor(signal.signal); });
}

void emit_signal(const signal_ref& signal, const QList<Any>& arguments)
{
    ::QObject& sender = Living(signal);
    if (arguments.size() != signal.signal.parameterCount())
        throw internal::bad_argument(Type::basic(Type::Kind::List), {},
                                     QStringLiteral("\"%1\" has %2 arguments, %3 given.")
                                         .arg(QLatin1String(signal.signal.name()))
                                         .arg(signal.signal.parameterCount())
                                         .arg(arguments.size()));
    invoke_meta_method(sender, signal.signal, std::span(arguments.constData(), static_cast<std::size_t>(arguments.size())));
}

void install_filter(::QObject& object, const Any& filter)
{
    if (filter.object() && filter.object()->as_function())
        object.installEventFilter(new qobject_event_filter(&object, I_Invokable_Generic::cast(filter)));
    else
        object.installEventFilter(&argument<::QObject>::from(filter));
}

void remove_filter(::QObject& object, const Any& filter)
{
    if (!filter.object() || !filter.object()->as_function())
        return object.removeEventFilter(&argument<::QObject>::from(filter));
    const QList<::QObject*> children = object.children();
    for (::QObject* child : children)
        if (auto* one = dynamic_cast<qobject_event_filter*>(child); one && one->function() == filter) {
            object.removeEventFilter(one);
            one->deleteLater();
        }
}

::QMetaObject::Connection connect_objects(::QObject& sender, const QString& signalName, const Any& receiver,
                                        const Any& method, int type)
{
    const signal_ref signal = make_signal(sender, signalName);
    if (method.object() && method.object()->as_function())
        return connect_signal(signal, I_Invokable_Generic::cast(method), type);
    const QString name = string_argument(method);
    ::QObject& target = argument<::QObject>::from(receiver);
    const Class_Generic cls = Class_Generic::of(receiver);
    if (const class_entry* own = cls.findOverride(method_ident_untyped(name.section(u'(', 0, 0)))) {
        const WeakRef_Generic weak(receiver);
        const I_Invokable_Generic function = I_Invokable_Generic::cast(own->function);
        const int takes = std::max(0, function.parameterCount() - 1);
        std::vector<Signature::parameter> parameters(static_cast<std::size_t>(takes));
        QStringList names;
        for (int i = 0; i < takes; ++i)
            names.append(QStringLiteral("a%1").arg(i));
        return connect_signal(signal,
                              I_Invokable_Generic::make(name, Signature(String(names.join(QLatin1String(", ")))),
                                                        [weak, function](std::span<const Any> arguments) -> Any {
                                                            const Any self = weak.lock();
                                                            if (self.isNone())
                                                                return {};
                                                            std::vector<Any> all{self};
                                                            all.insert(all.end(), arguments.begin(), arguments.end());
                                                            return function.invoke(all);
                                                        }),
                              type);
    }
    const ::QMetaObject& meta = *target.metaObject();
    int index = -1;
    for (int i = 0; i < meta.methodCount() && index < 0; ++i) {
        const ::QMetaMethod candidate = meta.method(i);
        const bool isNamed = name.contains(u'(')
                                 ? candidate.methodSignature() ==
                                       ::QMetaObject::normalizedSignature(name.toLatin1().constData())
                                 : candidate.name() == name.toLatin1() &&
                                       ::QMetaObject::checkConnectArgs(signal.signal, candidate);
        if (isNamed)
            index = i;
    }
    if (index < 0 || !::QMetaObject::checkConnectArgs(signal.signal, meta.method(index)))
        throw internal::bad_argument(
            string_type(), method,
            QStringLiteral("%1 has no method \"%2\" for the signal \"%3\".")
                .arg(QLatin1String(meta.className()), name, QLatin1String(signal.signal.methodSignature())));
    return ::QObject::connect(&sender, signal.signal, &target, meta.method(index), ConnectionType(type));
}

bool disconnect_objects(::QObject& sender, const Any& receiver, const std::optional<QString>& method)
{
    if (receiver.object() && receiver.object()->as_function())
        return RemoveProxies(sender, [&](const qsignal_proxy& proxy) { return proxy.isFor(proxy.signal(), receiver); });
    ::QObject* target = argument<::QObject*>::from(receiver);
    if (!method)
        return ::QObject::disconnect(&sender, nullptr, target, nullptr);
    const QByteArray name = method->toLatin1();
    bool any = false;
    const ::QMetaObject& meta = target ? *target->metaObject() : *sender.metaObject();
    for (int i = 0; target && i < meta.methodCount(); ++i)
        if (meta.method(i).name() == name || meta.method(i).methodSignature() == name)
            for (int s = 0; s < sender.metaObject()->methodCount(); ++s)
                if (sender.metaObject()->method(s).methodType() == ::QMetaMethod::Signal)
                    any = ::QMetaObject::disconnect(&sender, s, target, i) || any;
    return any;
}

} // namespace details
} // namespace weft::qt
