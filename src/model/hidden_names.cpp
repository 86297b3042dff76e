// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/hidden_names.h"

#include "hf/cursor.h"
#include "hf/database.h"
#include "hf/sql_text.h"

#include <QObject>
#include <QSet>

namespace {

using Model = rc::Ref<HF::LModelObject>;

/// Names of temporary objects that share their names with those of a kind.
const char* TemporariesOf(int type)
{
    switch (type) {
    case HF::TYPE_TABLE:
    case HF::TYPE_VIEW:
        return "SELECT table_name FROM duckdb_tables() WHERE database_name = 'temp' UNION ALL "
               "SELECT view_name FROM duckdb_views() WHERE database_name = 'temp' AND NOT internal";
    case HF::TYPE_INDEX: return "SELECT index_name FROM duckdb_indexes() WHERE database_name = 'temp'";
    case HF::TYPE_SEQUENCE: return "SELECT sequence_name FROM duckdb_sequences() WHERE database_name = 'temp'";
    default: return "SELECT function_name FROM duckdb_functions() WHERE database_name = 'temp' AND NOT internal";
    }
}

QSet<QString> NamesOf(const rc::Ref<HF::I_LDatabase>& database, const char* query)
{
    QSet<QString> names;
    const rc::Ptr<HF::I_LCursor> cursor =
        database->SqlSelect(QString::fromLatin1(query), HF::QUERY_BACKGROUND | HF::QUERY_SILENT_ERROR, {},
                            HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord())
        names.insert(cursor->get_Column(0)->get_String().toLower());
    return names;
}

/// The tables that statements for the changed ones speak of: those that foreign keys tie to them as well.
QSet<QString> TouchedTables(const HF::LModelObject& schema)
{
    QSet<QString> touched;
    for (const Model& table : schema.get_ModelsNow(HF::TYPE_TABLE))
        if (table->HasChanges())
            touched.insert(table->get_Name().toLower());
    if (touched.isEmpty() && schema.get_ModelsNow(HF::TYPE_LINK).empty())
        return touched;
    const std::vector<Model> links = schema.get_Models(HF::TYPE_LINK);
    for (qsizetype before = -1; before != touched.size();) {
        before = touched.size();
        for (const Model& link : links) {
            const QString child = link->GetString(PROP_LINK_TABLE).toLower();
            const QString parent = link->GetString(PROP_LINK_PARENT_TABLE).toLower();
            if (link->HasOwnChanges() || touched.contains(child) || touched.contains(parent))
                touched << child << parent;
        }
    }
    return touched;
}

} // namespace

QStringList HiddenNameProblems(const HF::LModelObject& root)
{
    QStringList problems;
    const rc::Ptr<HF::I_LDatabase> database = root.get_Database();
    if (!database)
        return problems;
    for (const Model& schema : root.get_ModelsNow(HF::TYPE_SCHEMA)) {
        if (schema->get_Name() != QLatin1String("main"))
            continue;
        const auto add = [&](const QString& name) {
            const QString text =
                QObject::tr("A temporary object hides \"%1\" of main from the engine; rename or drop that one first.").arg(name);
            if (!problems.contains(text))
                problems.append(text);
        };
        // An alteration takes the indexes of its table down.
        const QSet<QString> indexes =
            schema->HasChanges() ? NamesOf(rc::Ref(database), TemporariesOf(HF::TYPE_INDEX)) : QSet<QString>();
        if (!indexes.isEmpty())
            for (const Model& table : schema->get_ModelsNow(HF::TYPE_TABLE))
                if (table->HasChanges() && !table->GetBool(PROP_TEMPORARY))
                    for (const Model& index : table->get_Models(HF::TYPE_INDEX))
                        if (indexes.contains(index->get_Name().toLower()))
                            add(index->get_Name());
        for (const int type : {HF::TYPE_TABLE, HF::TYPE_VIEW, HF::TYPE_SEQUENCE, HF::TYPE_FUNCTION}) {
            const QSet<QString> touched = type == HF::TYPE_TABLE ? TouchedTables(*schema) : QSet<QString>();
            std::optional<QSet<QString>> hiding;
            for (const Model& object : schema->get_ModelsNow(type)) {
                if (object->GetBool(PROP_TEMPORARY)
                    || (!object->HasChanges() && !touched.contains(object->get_Name().toLower())))
                    continue;
                if (!hiding)
                    hiding = NamesOf(rc::Ref(database), TemporariesOf(type));
                for (const QString& name : {object->get_Name(), object->GetString(PROP_NAME)})
                    if (hiding->contains(name.toLower()))
                        add(name);
            }
        }
    }
    return problems;
}
