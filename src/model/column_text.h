// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

/// The type of a column as a statement writes it, from its properties.
QString FieldTypeText(const rc::Ref<const HF::I_LSchemaObject>& object);
/// Name, type, default and, unless left out, NOT NULL of a column.
QString ColumnDefinition(const rc::Ref<const HF::I_LSchemaObject>& object, bool omitNotNull);
/// ALTER TABLE ... ALTER COLUMN ... TYPE; empty for a column without a table.
QString ChangeTypeStatement(const rc::Ref<const HF::I_LSchemaObject>& field);
/// The table of a column; null when there is none.
rc::Ptr<HF::I_LSchemaObject> TableOfColumn(const rc::Ref<const HF::I_LSchemaObject>& field);
/// COMMENT ON COLUMN; empty for a column without a table.
QString ColumnCommentStatement(const rc::Ref<const HF::I_LSchemaObject>& field, const QString& comment);
