// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/design.h"

#include <QJsonArray>

namespace orbis {

/// Puts the changes of a file into a design, one after the other:
///
///     {"op":"create","kind":"table","schema":"main","name":"t","properties":{"Comment":"x"},
///      "children":[{"kind":"field","name":"a","properties":{"Type":"Integer"}}]}
///     {"op":"create","kind":"field","table":"t","name":"b","properties":{"47":"Date"}}
///     {"op":"change","object":"field:main.t.a","property":47,"value":"BigInt"}
///     {"op":"drop","object":"unique:main.t.unique_a_b"}
///
/// Properties are named by number or by name; a schema that is not named is main.
/// Empty when all went in; otherwise what is wrong, and with which entry.
QString ReadChanges(const rc::Ref<HF::LDesign>& design, const QJsonArray& changes);

} // namespace orbis
