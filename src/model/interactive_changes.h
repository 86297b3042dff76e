// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

/// The statements that give a column a unique of its own, or take away every
/// unique that holds it, by making the table anew.
QString UniqueFieldScript(const rc::Ref<HF::I_LTable>& table, const QString& field, bool unique);

/// Drops several columns of a table in one go; false when that failed, which the
/// error log tells.
bool DropFields(const rc::Ref<HF::I_LTable>& table, const QStringList& names, int type);
