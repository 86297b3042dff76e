// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/table_description.h"

/// Parts of a table's script.
enum orbDuckDB_TableScriptPart : int {
    SCRIPT_DROP_OLD = 1,
    SCRIPT_CREATE = 4,
    SCRIPT_COPY_ROWS = 8,
    SCRIPT_INDEXES = 32,
    SCRIPT_COMMENTS = 64,
};

/// Name under which a table is built beside the one that it replaces.
extern const QString TemporaryTableName;

/// The statements of the parts (bits of orbDuckDB_TableScriptPart) for a table
/// called `newName`. Indexes go on that name when the table is being created,
/// and on the description's own otherwise.
QString TableScript(const orbDuckDB_DescTable& description, const QString& newName, int parts);

/// Makes the table anew under its name with everything that the description
/// says, its rows, comments and indexes. Not bracketed by a transaction, and
/// nothing but one makes it safe.
QString RebuildScript(const orbDuckDB_DescTable& description);
/// The same under another name in the same schema.
QString RebuildScript(const orbDuckDB_DescTable& description, const QString& finalName);

/// The two halves of a rebuild that lets the table go in between: rows and
/// nothing else stay, in a plain table called `copyName`.
QString TakeOutScript(const orbDuckDB_DescTable& description, const QString& copyName);
QString PutBackScript(const orbDuckDB_DescTable& description, const QString& finalName, const QString& copyName);

/// CREATE INDEX without its semicolon.
QString IndexText(const IndexDescription& description);
/// The index with its comment, each statement closed.
QString IndexScript(const IndexDescription& description);
/// UNIQUE( ... ) of a constraint object; empty without columns.
QString UniqueText(const rc::Ref<const HF::I_LSchemaObject>& object);
