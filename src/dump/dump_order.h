// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/schema_object.h"

#include <QList>
#include <QSet>
#include <QString>

/// One object that a dump creates, with the text that creates it.
struct orbDuckDB_DumpObject
{
    HF::ELObjectType type = HF::TYPE_NONE;
    QString schema;
    QString name;
    QString text;
    rc::Ptr<HF::I_LSchemaObject> object;
    QList<QString> parents; ///< tables of the same schema that foreign keys lead to
};

/// What a statement as the engine prints it may refer to, in lower case:
/// schema, line feed and name, the schema empty where there is none.
struct orbDuckDB_References
{
    QSet<QString> relations; ///< what stands where a table may stand
    QSet<QString> calls;     ///< what is called
    QSet<QString> quoted;    ///< what stands in strings, where query() may find relations
    QSet<QString> words;     ///< unqualified names of any kind, and what single strings hold
};

orbDuckDB_References ReferencesOf(const QString& text);

/// Puts each object behind those that it needs, and changes the order no more
/// than that takes. Objects that need one another stay as they stand.
QList<orbDuckDB_DumpObject> SortByUse(const QList<orbDuckDB_DumpObject>& objects);
