// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/class.h"

#include <QMetaObject>
#include <QObject>
#include <QPointer>

namespace weft::qt::details {

// The fields of an object.
const method_ident& owned_field();   ///< "_owned": a script made the native object
const method_ident& qobject_field(); ///< "_qobject": a QPointer to it

/// The runtime object of a native one: the one that it has already, or a new
/// one of its nearest bound class, which is `cls` or derives from it. None for null.
/// The runtime object does not own the native one. Thread of the object.
Any create_qobject_instance(::QObject* object, const Class_Generic& cls);

/// Ties a fresh runtime object to the native one that it was made for, and
/// owns it.
void adopt_qobject(const Any& self, ::QObject* object);

/// The runtime object of a native one that a function hands to its caller: owns
/// it, unless a script's object has it already.
Any create_owned_instance(::QObject* object);

/// The native object; throws bad_argument for another value, a native object of
/// another class, and for one that is gone.
::QObject* qobject_argument(const Any& any, const ::QMetaObject& wanted);
/// Null for anything but a living object.
::QObject* qobject_of(const Any& any);

/// Makes the class known as the one of a native class.
void register_object_class(const ::QMetaObject& meta, const Class_Generic& cls);
/// The nearest bound class; empty when there is none.
Class_Generic class_of_meta_object(const ::QMetaObject& meta);

/// What runs when a runtime object goes: the native one that it owns is deleted
/// from the event loop.
void finalize_qobject(const Any& self);

/// The class that a native meta-enum becomes.
Class_Generic create_qobject_enum(const QMetaEnum& meta);
/// The enum behind a class of the runtime; the class itself when it is none.
Class_Generic create_qobject_enum(const Class_Generic& cls);

} // namespace weft::qt::details
