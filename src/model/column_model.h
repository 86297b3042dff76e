// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_kinds.h"

/// What the models of plain and generated columns share. The functions have the
/// signatures of the operations that they stand for.
namespace ColumnModel {

/// The parts of a type, which one statement changes together.
QMap<int, int> PropertiesGroups();
bool IsTypeProperty(int property);
void AddTypeProperties(QList<HF::LProperty>& list);
/// The statement of a property that both kinds of column change alike; empty for others.
QString ChangeStatement(const rc::Ref<const HF::I_LSchemaObject>& field, int property, const HF::LVariant& value);
HF::LVariant ShowTypeEditor(const rc::Ref<HF::I_LSchemaObject>& object, QPoint position);
/// Hides what the type has no use for.
void UpdateFlags(const rc::Ref<HF::I_LSchemaObject>& object, const rc::Ptr<HF::I_LDatabase>& database);
void UpdateDependent(const rc::Ref<HF::I_LSchemaObject>& object, int property);

} // namespace ColumnModel
