// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/function.h"

#include <QMetaMethod>
#include <QObject>
#include <QPointer>

namespace weft::qt {

/// Calls a function of the runtime for a signal: with as many of its arguments
/// as the function takes, and not at all for twelve or more. Belongs to the
/// sender, and works on its thread.
class qsignal_proxy : public ::QObject
{
public:
    qsignal_proxy(::QObject* sender, const ::QMetaMethod& signal, const I_Invokable_Generic& function);
    /// Makes the connection; invalid when Qt refuses.
    ::QMetaObject::Connection connect(Qt::ConnectionType type);
    bool isFor(const ::QMetaMethod& signal, const Any& function) const;
    bool isFor(const ::QMetaMethod& signal) const { return m_signal == signal; }
    const ::QMetaMethod& signal() const { return m_signal; }
    int qt_metacall(::QMetaObject::Call call, int id, void** arguments) override;

private:
    const ::QMetaMethod m_signal;
    const I_Invokable_Generic m_function;
};

/// Asks a function of the runtime whether an event stops at an object. Belongs
/// to that object.
class qobject_event_filter : public ::QObject
{
public:
    qobject_event_filter(::QObject* watched, const I_Invokable_Generic& function);
    bool eventFilter(::QObject* object, ::QEvent* event) override;
    const Any& function() const { return m_function.any(); }

private:
    const I_Invokable_Generic m_function;
};

namespace details {

/// One signal of one object.
struct signal_ref
{
    QPointer<::QObject> object;
    ::QMetaMethod signal;
};

/// By name, where the one with the most parameters counts, or by signature.
/// Invalid when there is none.
::QMetaMethod find_signal(const ::QMetaObject& meta, const char* nameOrSignature);
/// Gives the signal of its receiver.
internal::object_value_function* make_signal_getter(const ::QMetaMethod& signal);

// What the classes QSignal and QObject do.
signal_ref make_signal(::QObject& object, const QString& signature);
::QMetaObject::Connection connect_signal(const signal_ref& signal, const I_Invokable_Generic& function, int type);
/// True when there was a connection.
bool disconnect_signal(const signal_ref& signal, const Any& function);
bool disconnect_all(const signal_ref& signal);
/// Sends the signal with these arguments.
void emit_signal(const signal_ref& signal, const QList<Any>& arguments);
void install_filter(::QObject& object, const Any& filter);
void remove_filter(::QObject& object, const Any& filter);
/// Connects to a method of the receiver: a slot or signal by name or signature,
/// a method of its runtime object by name, or a function.
::QMetaObject::Connection connect_objects(::QObject& sender, const QString& signal, const Any& receiver,
                                        const Any& method, int type);
bool disconnect_objects(::QObject& sender, const Any& receiver, const std::optional<QString>& method);

} // namespace details
} // namespace weft::qt
