// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

/// What a column asks of the models, which stand above it: they fill this in
/// when the plug-in loads. A null pointer answers "not possible".
struct orbDuckDB_StructureMakers
{
    /// The text that rebuilds the table with the column being unique by itself, or with
    /// no unique that holds it. Empty when nothing has to change.
    QString (*uniqueScript)(const rc::Ref<HF::I_LTable>& table, const QString& field, bool unique) = nullptr;
    /// Removes several columns in one go; false when that failed, which has been reported.
    bool (*dropFields)(const rc::Ref<HF::I_LTable>& table, const QStringList& names, int type) = nullptr;
};

orbDuckDB_StructureMakers& StructureMakers();
