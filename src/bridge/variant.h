// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "weft/any.h"

#include <QVariant>

namespace weft {

/// The value of a variant: numbers, texts and lists as the runtime's own, none
/// for an empty one, and a qt.QVariant object for everything else.
Any to_any(const QVariant& variant);

/// The variant for a value. What has no native form stands in it as it is.
/// Throws what a lazy inside throws.
QVariant to_qvariant(const Any& any);

} // namespace weft

Q_DECLARE_METATYPE(weft::Any)
