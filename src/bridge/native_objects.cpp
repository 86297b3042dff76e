// SPDX-License-Identifier: GPL-3.0-or-later
#include "bridge/natives.h"

#include "bridge/class_writer.h"
#include "bridge_handles.h"

#include <QMetaMethod>
#include <QRegularExpression>
#include <QWidget>

namespace weft::qt::details {

namespace {

/// What QObject keeps to those that derive from it.
struct Access : ::QObject
{
    using ::QObject::isSignalConnected;
    using ::QObject::receivers;
    using ::QObject::sender;
    using ::QObject::senderSignalIndex;
};

bool IsHelper(::QObject* object)
{
    return dynamic_cast<qsignal_proxy*>(object) || dynamic_cast<qobject_event_filter*>(object);
}

} // namespace

void set_parent(::QObject& object, ::QObject* parent)
{
    for (const ::QObject* above = parent; above; above = above->parent())
        if (above == &object)
            throw internal::bad_argument(QObject::typeMask(), create_qobject_instance(parent, {}),
                                         "An object cannot own itself.");
    auto* widget = qobject_cast<::QWidget*>(&object);
    if (!widget)
        return object.setParent(parent);
    auto* parentWidget = qobject_cast<::QWidget*>(parent);
    if (parent && !parentWidget)
        throw internal::bad_argument(QWidget::typeMask(), create_qobject_instance(parent, {}));
    widget->setParent(parentWidget);
}

int receivers(const ::QObject& object, const QString& signal)
{
    const signal_ref found = make_signal(const_cast<::QObject&>(object), signal);
    int (::QObject::*count)(const char*) const = &Access::receivers;
    return (object.*count)(QByteArray("2" + found.signal.methodSignature()).constData());
}

bool is_signal_connected(const ::QObject& object, const Any& signal)
{
    bool (::QObject::*connected)(const ::QMetaMethod&) const = &Access::isSignalConnected;
    if (const auto name = cast_string(signal))
        return (object.*connected)(make_signal(const_cast<::QObject&>(object), name->ToQString()).signal);
    return (object.*connected)(argument<::QMetaMethod>::from(signal));
}

Any find_children(const ::QObject& object, const Any& name, Qt::FindChildOptions options)
{
    QList<::QObject*> found;
    if (name.isNone())
        found = object.findChildren<::QObject*>(QString(), options);
    else if (const auto text = cast_string(name))
        found = object.findChildren<::QObject*>(text->ToQString(), options);
    else
        found = object.findChildren<::QObject*>(argument<::QRegularExpression>::from(name), options);
    found.removeIf([](::QObject* one) { return IsHelper(one); });
    return result(found);
}

Any children(const ::QObject& object)
{
    QList<::QObject*> found = object.children();
    found.removeIf([](::QObject* one) { return IsHelper(one); });
    return result(found);
}

int sender_signal_index(const ::QObject& object)
{
    int (::QObject::*index)() const = &Access::senderSignalIndex;
    return (object.*index)();
}

Any sender(const ::QObject& object)
{
    ::QObject* (::QObject::*get)() const = &Access::sender;
    return result((object.*get)());
}

bool disconnect_any(const Any& connectionOrSender, const Any& receiver, const std::optional<QString>& method)
{
    if (Class_Generic::of(connectionOrSender).isDerivedFrom(QMetaObjectConnection::getClass()))
        return ::QObject::disconnect(argument<::QMetaObject::Connection>::from(connectionOrSender));
    return disconnect_objects(argument<::QObject>::from(connectionOrSender), receiver, method);
}

void detach(const Any& self)
{
    qobject_argument(self, ::QObject::staticMetaObject);
    self.setFieldValue(owned_field(), false);
}

} // namespace weft::qt::details
