// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/function.h"

#include <QMetaObject>

namespace weft::qt::details {

/// Calls a slot by Qt's own description of it; of several with one name the one
/// that takes as many arguments. Null when no type of theirs is known.
internal::object_value_function* make_meta_method(const ::QMetaObject& meta, const QByteArray& name);

/// Calls one method of Qt's description with converted arguments.
Any invoke_meta_method(::QObject& object, const ::QMetaMethod& method, std::span<const Any> arguments);

} // namespace weft::qt::details
