// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/sequence_model.h"

#include "hf/cursor.h"
#include "hf/engine.h"
#include "hf/model_object.h"
#include "hf/sql_text.h"
#include "model/scoped_value.h"
#include "model/text_helpers.h"

#include <QObject>
#include <QRegularExpression>

namespace {

constexpr int GroupProperties[] = {PROP_SEQ_START, PROP_SEQ_INCREMENT, PROP_SEQ_LAST_VALUE, PROP_SEQ_MIN,
                                   PROP_SEQ_MAX,   PROP_SEQ_CYCLE,     PROP_TEMPORARY};

/// Fills the node with the statement that makes the sequence.
void SequenceScript(const rc::Ref<const HF::I_LSchemaObject>& object, bool orReplace, HF::LQueryNode& node)
{
    QString text = QLatin1String("CREATE ") + (orReplace ? QLatin1String("OR REPLACE ") : QLatin1String());
    if (object->GetBool(PROP_TEMPORARY))
        text += QLatin1String("TEMPORARY ");
    text += QLatin1String("SEQUENCE ") + object->get_NameForQuery(true) + u'\n';
    const auto clause = [&](const char* word, long value, bool wanted) {
        if (wanted)
            text += QLatin1String(word) + u' ' + QString::number(value) + u'\n';
    };
    const long increment = object->GetLong(PROP_SEQ_INCREMENT);
    const long minimum = object->GetLong(PROP_SEQ_MIN);
    const long maximum = object->GetLong(PROP_SEQ_MAX);
    const long start = object->GetLong(PROP_SEQ_START);
    const long last = object->GetLong(PROP_SEQ_LAST_VALUE);
    clause("INCREMENT", increment, increment != 0 && increment != 1);
    clause("MINVALUE", minimum, minimum != 0);
    clause("MAXVALUE", maximum, maximum != 0);
    clause("START", start, start != 0);
    if (object->GetBool(PROP_SEQ_CYCLE))
        text += QLatin1String("CYCLE");
    node.sql = text;

    const HF::LDatabaseEngine& engine = *object->get_DatabaseEngine();
    const auto nested = [&](int property, const QString& value) {
        node.children += engine.GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, property, value);
    };
    if (start != last && last > minimum)
        nested(PROP_SEQ_LAST_VALUE, QString::number(last));
    if (const QString comment = object->GetString(PROP_COMMENT); !comment.isEmpty())
        nested(PROP_COMMENT, comment);
}

} // namespace

void orbDuckDB_ModelSequence::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Sequence");
        const QString settings = QString::fromLatin1(HF::CATEGORY_SETTINGS);
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 420);
        HF::AddPropertyTo(made, title, PROP_OBJECT_ID, HF::LVariant::EmptyLong(), 16777249);
        HF::AddPropertyTo(made, title, PROP_SCHEMA_NAME, HF::LVariant::EmptyString(), 33);
        HF::AddPropertyTo(made, title, PROP_COMMENT, HF::LVariant::EmptyString(), 40);
        for (const int property : {PROP_SEQ_START, PROP_SEQ_LAST_VALUE})
            HF::AddPropertyTo(made, settings, property, HF::LVariant::EmptyLong(), 420);
        HF::AddPropertyTo(made, settings, PROP_SEQ_INCREMENT, 1, 420);
        for (const int property : {PROP_SEQ_MIN, PROP_SEQ_MAX})
            HF::AddPropertyTo(made, settings, property, HF::LVariant::EmptyLong(), 420);
        for (const int property : {PROP_SEQ_CYCLE, PROP_TEMPORARY})
            HF::AddPropertyTo(made, settings, property, HF::LVariant::EmptyBool(), 420);
        return made;
    }();
    list.AssignProperties(properties);
}

QMap<int, int> orbDuckDB_ModelSequence::GetPropertiesGroups() const
{
    static const QMap<int, int> groups = [] {
        QMap<int, int> made;
        for (const int property : GroupProperties)
            made.insert(property, 1);
        return made;
    }();
    return groups;
}

QList<HF::LQueryNode> orbDuckDB_ModelSequence::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                             HF::ELQueryKind kind, int property,
                                                             const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const QString name = object->get_NameForQuery(true);
    switch (kind) {
    case HF::KIND_ALTER_GROUP: SequenceScript(object, true, node); break;
    case HF::KIND_CREATE: SequenceScript(object, false, node); break;
    case HF::KIND_DROP: node.sql = QLatin1String("DROP SEQUENCE ") + name + QLatin1String(" CASCADE;"); break;
    case HF::KIND_CHANGE_PROPERTY:
        if (property == PROP_COMMENT) {
            const QString text = value.ToString();
            node.sql = QLatin1String("COMMENT ON SEQUENCE ") + name + QLatin1String(" IS ")
                       + HF::QuoteText(text, rc::Ptr<const HF::LTreeItem>(object)) + u';';
        } else if (property != PROP_SEQ_LAST_VALUE && GetPropertiesGroups().contains(property)) {
            const orbDuckDB_ScopedValue pending(object, property, value);
            SequenceScript(object, true, node);
        }
        break;
    default: break;
    }
    return {node};
}

QStringList orbDuckDB_ModelSequence::GetChangeProblems(const rc::Ref<const HF::I_LModelObject>& object) const
{
    QStringList problems = LDatabaseModelSequence::GetChangeProblems(object);
    if (object->IsMarkedDropped())
        return problems;
    if (object->IsPropertyChanged(PROP_NAME))
        problems.append(QObject::tr("The engine cannot rename the sequence \"%1\".").arg(object->get_Name()));
    if (object->IsPropertyChanged(PROP_SEQ_LAST_VALUE))
        problems.append(
            QObject::tr("The engine cannot set the last value of the sequence \"%1\".").arg(object->get_Name()));
    return problems;
}

namespace {

QStringList Texts(const rc::Ref<HF::I_LDatabase>& database, const QString& query)
{
    QStringList texts;
    const rc::Ptr<HF::I_LCursor> cursor =
        database->SqlSelect(query, HF::QUERY_BACKGROUND | HF::QUERY_SILENT_ERROR, {}, HF::CURSOR_CLIENT,
                            HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord())
        texts.append(cursor->get_Column(0)->get_String());
    return texts;
}

/// Whether an expression takes a value of a sequence, by the name that it gives. A name without
/// a schema means one of the path.
bool UsesSequence(const QString& expression, const QString& schema, const QString& name, const QStringList& path)
{
    static const QRegularExpression call(QStringLiteral("nextval\\('((?:[^']|'')*)'\\)"));
    static const QRegularExpression part(QStringLiteral("\"((?:[^\"]|\"\")*)\"|([^\".]+)"));
    for (auto calls = call.globalMatch(expression); calls.hasNext();) {
        const QString argument = calls.next().captured(1).replace(QLatin1String("''"), QLatin1String("'"));
        QStringList names;
        for (auto parts = part.globalMatch(argument); parts.hasNext();) {
            const QRegularExpressionMatch one = parts.next();
            names.append(one.captured(2).isEmpty() ? one.captured(1).replace(QLatin1String("\"\""), QLatin1String("\""))
                                                   : one.captured(2));
        }
        if (names.isEmpty() || names.last().compare(name, Qt::CaseInsensitive) != 0)
            continue;
        if (names.size() == 1 ? schema == QLatin1String("main") || path.contains(schema)
                              : names[names.size() - 2].compare(schema, Qt::CaseInsensitive) == 0)
            return true;
    }
    return false;
}

} // namespace

QStringList orbDuckDB_ModelSequence::GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const
{
    const rc::Ptr<HF::I_LDatabase> database = object->get_Database();
    if (!database || object->Evaluate(HF::EVAL_JUST_CREATED).ToBool())
        return {};
    const QString name = object->get_Name();
    if (!object->IsMarkedDropped()) {
        for (const int property : object->get_ChangedProperties())
            if (GetPropertiesGroups().contains(property))
                return {QObject::tr("The sequence \"%1\" is made anew and begins at its start value.").arg(name)};
        return {};
    }
    return SequenceDropWarnings(object);
}

QStringList SequenceDropWarnings(const rc::Ref<const HF::I_LSchemaObject>& object, const QString& exceptIn)
{
    const rc::Ptr<HF::I_LDatabase> database = object->get_Database();
    if (!database)
        return {};
    const QString name = object->get_Name();
    const QString elsewhere =
        exceptIn.isEmpty() ? QString() : QLatin1String(" AND schema_name <> ") + QuoteStringLiteral(exceptIn);
    // CASCADE takes along what uses the sequence, and the engine says nothing of it.
    const QString users = QStringLiteral("FROM duckdb_dependencies() d JOIN duckdb_tables() t ON t.table_oid = d.refobjid "
                                         "WHERE d.objid = %1").arg(object->GetLong(PROP_OBJECT_ID));
    QStringList warnings;
    if (const QStringList tables = Texts(rc::Ref(database), QLatin1String("SELECT t.schema_name || '.' || t.table_name ")
                                                                + users + elsewhere + QLatin1String(" ORDER BY 1"));
        !tables.isEmpty())
        warnings.append(QObject::tr("Dropping the sequence \"%1\" drops the tables that use it, with their rows: %2")
                            .arg(name, tables.join(QLatin1String(", "))));
    // It forgets who uses it when the file is closed: then the tables stay, with defaults that fail.
    QStringList columns;
    for (const QString& column :
         Texts(rc::Ref(database),
               QLatin1String("SELECT column_default || chr(10) || schema_name || '.' || table_name || '.' || column_name "
                             "FROM duckdb_columns() WHERE NOT internal AND contains( column_default, 'nextval(' ) AND "
                             "table_oid NOT IN ( SELECT t.table_oid ")
                   + users + QLatin1String(" )") + elsewhere + QLatin1String(" ORDER BY 1")))
        if (UsesSequence(column.section(u'\n', 0, 0), object->GetString(PROP_SCHEMA_NAME), name,
                         database->GetStringList(PROP_SEARCH_PATH)))
            columns.append(column.section(u'\n', 1));
    if (!columns.isEmpty())
        warnings.append(QObject::tr("Without the sequence \"%1\" the defaults of these columns fail: %2")
                            .arg(name, columns.join(QLatin1String(", "))));
    return warnings;
}
