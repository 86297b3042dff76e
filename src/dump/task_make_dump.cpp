// SPDX-License-Identifier: GPL-3.0-or-later
#include "dump/task_make_dump.h"

#include "dump/sequence_text.h"
#include "hf/engine.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"
#include "hf/values.h"
#include "model/macro_text.h"
#include "model/table_script.h"
#include "model/text_helpers.h"
#include "nub/exception.h"

#include <algorithm>

namespace {

constexpr int Flags = HF::QUERY_NO_LOG | HF::QUERY_SILENT_ERROR;

QString Key(const QString& schema, const QString& name)
{
    return schema + u'\n' + name;
}

QString SchemaOf(const HF::I_LTable& table)
{
    return table.GetStringOr(PROP_SCHEMA_NAME, QString());
}

bool Holds(const QStringList& names, const QString& name)
{
    return names.contains(name, Qt::CaseInsensitive);
}

/// Columns stand where the engine has them, generated ones among the others.
void SortColumns(orbDuckDB_DescTable& description, const HF::I_LTable& table)
{
    QHash<QString, long> positions;
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const rc::Ref<HF::I_LSchemaObject>& column : table.get_ChildObjects(type).Force())
            positions.insert(column->get_Name(), column->GetLongOr(PROP_FIELD_POSITION, 0));
    std::stable_sort(description.fields.begin(), description.fields.end(),
                     [&](const FieldDescription& a, const FieldDescription& b) {
                         return positions.value(a.name) < positions.value(b.name);
                     });
}

/// What cannot be read must not look like what is not there.
template <class T> T Need(std::optional<T> read, const QString& what)
{
    if (!read)
        throw nub::xException(QObject::tr("%1 could not be read").arg(what).toUtf8().constData());
    return std::move(*read);
}

} // namespace

orbDuckDB_TaskMakeDump::orbDuckDB_TaskMakeDump(const orbDuckDB_DumpRequest& request)
    : LTask_DumpTablesToSQL(request.tables, request.path, request.data, request.encoding, request.options,
                            request.progress, {}),
      m_database(rc::cast<orbDuckDB_Database>(request.database)), Scope(request.scope),
      m_askedSchemas(request.schemas), SelectedNames(request.names)
{
    put_Title(request.title);
    // Whole schemas leave temporary tables out.
    m_hasTemporary = Scope >= orbDuckDB_DumpRequest::TablesOnly
        && std::any_of(Tables.begin(), Tables.end(), [](const auto& table) { return table->GetBoolOr(PROP_TEMPORARY, false); });
}

orbDuckDB_TaskMakeDump::~orbDuckDB_TaskMakeDump() = default;

void orbDuckDB_TaskMakeDump::Cancel()
{
    LTask_DumpTablesToSQL::Cancel();
    const std::lock_guard guard(m_sourceMutex);
    // What others run on the session of the tree is not this task's.
    if (m_source && IsCancelled() && m_source != m_database)
        m_source->InterruptSession();
}

QString orbDuckDB_TaskMakeDump::FormatBlobValue(const rc::Ref<HF::LValue>& value)
{
    if (value->get_IsNull())
        return QStringLiteral("NULL");
    const auto* const bytes = dynamic_cast<const HF::LValueByteArray*>(value.get());
    if (!bytes)
        return QStringLiteral("''");
    return QLatin1String("unhex( '") + QString::fromLatin1(bytes->get_Data().toHex()) + QLatin1String("' )");
}

orbDuckDB_TaskMakeDump::LiteralRows
orbDuckDB_TaskMakeDump::OpenRows(const QString& query, const std::function<bool(char32_t)>& canWrite)
{
    return m_source->SelectLiterals(query, canWrite);
}

bool orbDuckDB_TaskMakeDump::OpenSource()
{
    rc::Ptr<orbDuckDB_Database> source = m_hasTemporary ? rc::Ptr<orbDuckDB_Database>(m_database) : m_database->OpenFurther();
    if (!source) {
        Fail(QObject::tr("The database is not open"));
        return false;
    }
    {
        const std::lock_guard guard(m_sourceMutex);
        m_source = source;
    }
    // A user's own transaction sees one state as well.
    m_ownTransaction = HF::IsQuerySuccess(source->SqlQuery(QStringLiteral("BEGIN TRANSACTION"), Flags, {},
                                                           HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD));
    return true;
}

void orbDuckDB_TaskMakeDump::CloseSource()
{
    rc::Ptr<orbDuckDB_Database> source;
    {
        const std::lock_guard guard(m_sourceMutex);
        std::swap(source, m_source);
    }
    if (!source)
        return;
    if (m_ownTransaction)
        source->SqlQuery(QStringLiteral("ROLLBACK"), Flags, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    Schemas.clear();
    m_objects.clear();
    if (source != m_database) {
        Tables.clear();
        source->EndFurther();
    }
}

void orbDuckDB_TaskMakeDump::Perform()
{
    if (!OpenOutput())
        return;
    WriteHeader();
    try {
        if (OpenSource() && GatherSchemas() && GatherTables())
            WriteDump();
    } catch (...) {
        CloseSource();
        CloseOutput();
        throw;
    }
    CloseSource();
    CloseOutput();
}

void orbDuckDB_TaskMakeDump::WriteDump()
{
    if (HasRows())
        CountRows();
    const bool withSchemas = Scope < orbDuckDB_DumpRequest::TablesOnly;
    GatherObjects();
    if (HasStructure()) {
        if (Options.Clean)
            WriteDrops();
        if (withSchemas) {
            WriteSchemas();
            WriteTypes(false);
            WriteSequences();
        }
        WriteObjects();
    }
    if (HasRows())
        WriteRows();
    if (HasStructure())
        WriteIndexes();
    Write(PlainPath());
}

// What there is

void orbDuckDB_TaskMakeDump::NeedLists(HF::I_LSchemaObject& object, std::initializer_list<HF::ELObjectType> types) const
{
    for (const HF::ELObjectType type : types)
        if (const rc::Ptr<HF::LSchemaItemList> list = object.get_ChildList(type); list && !list->BuildList() && !IsCancelled())
            Need<int>(std::nullopt, QObject::tr("The list \"%1\" of \"%2\"").arg(list->get_ListInfo().word, object.get_Name()));
}

bool orbDuckDB_TaskMakeDump::GatherSchemas()
{
    if (Scope >= orbDuckDB_DumpRequest::TablesOnly)
        return true;
    QStringList asked;
    for (const rc::Ref<HF::I_LSchemaObject>& schema : m_askedSchemas)
        asked.append(schema->get_Name());
    NeedLists(*m_source, {HF::TYPE_SCHEMA});
    for (const rc::Ref<HF::I_LSchemaObject>& schema : m_source->get_ChildObjects(HF::TYPE_SCHEMA).Force())
        if (!schema->get_IsSystem() && (Scope == orbDuckDB_DumpRequest::WholeDatabase || asked.contains(schema->get_Name())))
            Schemas.append(schema);
    std::sort(Schemas.begin(), Schemas.end(), [](const auto& a, const auto& b) { return a->get_Name() < b->get_Name(); });
    if (Schemas.isEmpty())
        Fail(QObject::tr("The schemas of the database could not be read"));
    return !Schemas.isEmpty();
}

/// The tables as the transaction sees them.
bool orbDuckDB_TaskMakeDump::GatherTables()
{
    if (m_source == m_database) {
        std::sort(Tables.begin(), Tables.end(), [](const auto& a, const auto& b) { return a->get_Name() < b->get_Name(); });
        return true;
    }
    RcList<HF::I_LTable> tables;
    QMap<QString, QStringList> names;
    NeedLists(*m_source, {HF::TYPE_SCHEMA});
    for (const rc::Ref<HF::I_LSchemaObject>& each : m_source->get_ChildObjects(HF::TYPE_SCHEMA).Force()) {
        const auto schema = rc::cast<HF::I_LSchema>(each);
        const bool whole = std::any_of(Schemas.begin(), Schemas.end(), [&](const auto& s) { return s.get() == each.get(); });
        const QStringList wanted = SelectedNames.value(each->get_Name());
        if (!schema || each->get_IsSystem() || (!whole && wanted.isEmpty()))
            continue;
        NeedLists(*each, {HF::TYPE_TABLE, HF::TYPE_LINK});
        for (const rc::Ref<HF::I_LTable>& table : schema->get_Tables())
            if (whole ? !table->GetBoolOr(PROP_TEMPORARY, false) : wanted.contains(table->get_Name())) {
                tables.append(table);
                names[each->get_Name()].append(table->get_Name());
            }
        for (const QString& name : wanted)
            if (!whole && !names.value(each->get_Name()).contains(name)) {
                Fail(QObject::tr("There is no table \"%1\" any more").arg(each->get_Name() + u'.' + name));
                return false;
            }
    }
    std::sort(tables.begin(), tables.end(), [](const auto& a, const auto& b) {
        const int bySchema = SchemaOf(*a).compare(SchemaOf(*b));
        return bySchema ? bySchema < 0 : a->get_Name() < b->get_Name();
    });
    Tables = tables;
    SelectedNames = names;
    return true;
}

void orbDuckDB_TaskMakeDump::AddTable(const rc::Ref<HF::I_LTable>& table)
{
    if (const QString unread = UnreadParts(*table); !unread.isEmpty() && !IsCancelled())
        throw nub::xException(unread.toUtf8().constData());
    orbDuckDB_DescTable description = DescribeTable(rc::Ref<const HF::I_LSchemaObject>(table));
    const QString schema = SchemaOf(*table);
    // A key to a table outside the dump would lead nowhere.
    description.links.removeIf([&](const LinkDescription& link) {
        return !Holds(SelectedNames.value(schema), link.parentTable);
    });
    SortColumns(description, *table);
    orbDuckDB_DumpObject object{HF::TYPE_TABLE, schema, table->get_Name(),
                                WithoutOwnName(TableScript(description, description.name, SCRIPT_CREATE | SCRIPT_COMMENTS)),
                                table, {}};
    for (const LinkDescription& link : description.OwnLinks())
        object.parents.append(link.parentTable);
    m_objects.append(object);
    m_texts.insert(Key(schema, object.name), object.text);
}

/// One object for all overloads of a name.
void orbDuckDB_TaskMakeDump::AddMacros(const rc::Ref<HF::I_LSchemaObject>& schema)
{
    const MacroTexts texts = Need(ReadMacroTexts(rc::Ref<HF::I_LDatabase>(*m_source), schema->get_Name()),
                                  QObject::tr("The macros of \"%1\"").arg(schema->get_Name()));
    QSet<QPair<QString, bool>> done;
    QList<orbDuckDB_DumpObject> macros;
    for (const rc::Ref<HF::I_LSchemaObject>& function : schema->get_ChildObjects(HF::TYPE_FUNCTION).Force()) {
        const QPair<QString, bool> key(function->get_Name().toLower(),
                                       function->GetString(PROP_FUNCTION_TYPE) == u"table_macro");
        if (function->GetBoolOr(PROP_TEMPORARY, false) || done.contains(key))
            continue;
        done.insert(key);
        if (texts.contains(key))
            function->AssignPropertyValueSilent(PROP_DEFINITION, texts.value(key));
        macros.append({HF::TYPE_FUNCTION, schema->get_Name(), function->get_Name(), function->GetString(PROP_DEFINITION),
                       function, {}});
    }
    std::sort(macros.begin(), macros.end(), [](const auto& a, const auto& b) {
        return a.name != b.name ? a.name < b.name : a.text < b.text;
    });
    m_objects += macros;
}

/// In the order of the file as far as use allows: tables, views, macros.
void orbDuckDB_TaskMakeDump::GatherObjects()
{
    GatherNames();
    for (const rc::Ref<HF::I_LTable>& table : Tables)
        if (!IsCancelled())
            AddTable(table);
    for (const rc::Ref<HF::I_LSchemaObject>& schema : Schemas) {
        NeedLists(*schema, {HF::TYPE_VIEW, HF::TYPE_FUNCTION, HF::TYPE_SEQUENCE});
        QList<orbDuckDB_DumpObject> views;
        for (const rc::Ref<HF::I_LSchemaObject>& view : schema->get_ChildObjects(HF::TYPE_VIEW).Force())
            if (!view->GetBoolOr(PROP_TEMPORARY, false))
                views.append({HF::TYPE_VIEW, schema->get_Name(), view->get_Name(), view->GetString(PROP_DEFINITION), view, {}});
        std::sort(views.begin(), views.end(), [](const auto& a, const auto& b) { return a.name < b.name; });
        m_objects += views;
    }
    for (const rc::Ref<HF::I_LSchemaObject>& schema : Schemas)
        AddMacros(schema);
    m_objects = SortByUse(m_objects);
    RcList<HF::I_LTable> sorted;
    for (const orbDuckDB_DumpObject& object : m_objects)
        if (object.type == HF::TYPE_TABLE)
            sorted.append(rc::Ref<HF::I_LTable>(rc::cast<HF::I_LTable>(object.object)));
    Tables = sorted;
    FieldLists.clear();
    for (const rc::Ref<HF::I_LTable>& table : Tables) {
        QStringList fields;
        for (const rc::Ref<HF::I_LSchemaObject>& field : table->get_ChildObjects(HF::TYPE_FIELD).Force())
            fields.append(field->get_Name());
        FieldLists.append(fields);
    }
}

/// Names that a text may use: those of all schemas, since what is asked for may use the rest.
void orbDuckDB_TaskMakeDump::GatherNames()
{
    const auto read = [&](const QString& query, const auto& take) {
        const rc::Ptr<HF::I_LCursor> cursor =
            m_source->SqlSelect(query, Flags, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
        if (!cursor && !IsCancelled())
            Need<int>(std::nullopt, QObject::tr("The catalogue"));
        for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord())
            take(cursor->get_Field(0)->get_String(), cursor->get_Field(1)->get_String());
    };
    read(QStringLiteral("SELECT current_catalog(), NULL"), [&](const QString& name, const QString&) { m_ownName = name; });
    QStringList lists;
    for (const char* kind : {"table", "view", "function", "sequence", "type"})
        lists.append(QStringLiteral("SELECT lower( schema_name ), lower( %1_name ) FROM duckdb_%1s() WHERE database_name = "
                                    "current_catalog() AND NOT %2")
                         .arg(QLatin1String(kind), QLatin1String(kind) == QLatin1String("sequence") ? QStringLiteral("temporary")
                                                                                                    : QStringLiteral("internal")));
    read(lists.join(QLatin1String(" UNION ALL ")), [&](const QString& schema, const QString& name) {
        m_names[schema].insert(name);
        if (name == m_ownName.toLower())
            m_otherBearer = std::max(m_otherBearer, SqlTokens::OtherBearer::Column); // an object, or a column
    });
    read(QStringLiteral("SELECT 1, 0 FROM duckdb_columns() WHERE database_name = current_catalog() AND lower( column_name ) = lower( "
                        "current_catalog() ) UNION ALL SELECT 2, 0 FROM duckdb_schemas() WHERE database_name = current_catalog() "
                        "AND lower( schema_name ) = lower( current_catalog() )"),
         [&](const QString& kind, const QString&) {
             m_otherBearer = std::max(m_otherBearer, kind == u"2" ? SqlTokens::OtherBearer::Schema : SqlTokens::OtherBearer::Column);
         });
}

/// The dump is to go into databases of other names.
QString orbDuckDB_TaskMakeDump::WithoutOwnName(const QString& text) const
{
    return SqlTokens::WithoutCatalog(text, m_ownName, m_names, m_otherBearer);
}

/// The engine's own count is near enough for telling how far the dump is.
void orbDuckDB_TaskMakeDump::CountRows()
{
    const rc::Ptr<HF::I_LCursor> cursor = m_source->SqlSelect(
        QStringLiteral("SELECT schema_name, table_name, estimated_size FROM duckdb_tables() WHERE database_name IN ( "
                       "current_catalog(), 'temp' )"),
        Flags, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    QHash<QString, long> sizes;
    for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord())
        sizes.insert(Key(cursor->get_Field(0)->get_String(), cursor->get_Field(1)->get_String()),
                     cursor->get_Field(2)->get_String().toLong());
    long rows = 0;
    for (const rc::Ref<HF::I_LTable>& table : Tables)
        rows += sizes.value(Key(SchemaOf(*table), table->get_Name()));
    put_Counts(Tables.size(), rows);
}

// What is written

void orbDuckDB_TaskMakeDump::Write(QString text)
{
    HF::FinishQuery(text, 2);
    Output().Write(text);
    CheckOutput();
}

void orbDuckDB_TaskMakeDump::Write(const rc::Ref<HF::I_LSchemaObject>& object, HF::ELQueryKind kind)
{
    const QString text = object->get_DatabaseEngine()->GenerateQuery(rc::Ref<const HF::I_LSchemaObject>(object), kind, -1,
                                                                     HF::LVariant::Empty(), kind == HF::KIND_CREATE ? 4 : 0);
    if (kind != HF::KIND_CREATE || (object->get_ObjectType() != HF::TYPE_VIEW && object->get_ObjectType() != HF::TYPE_FUNCTION)) {
        Write(WithoutOwnName(text));
        return;
    }
    const QString shorter = WithoutOwnName(text);
    Write(SqlTokens::WithBareValues(shorter == text || object->get_ObjectType() != HF::TYPE_VIEW ? shorter
                                                                                                : WithColumnNames(shorter, *object)));
}

/// A column that has no name in the view's text goes by the expression's own words, which are others now.
QString orbDuckDB_TaskMakeDump::WithColumnNames(QString text, HF::I_LSchemaObject& view) const
{
    const QStringList columns = view.get_ChildObjectsNames(HF::TYPE_FIELD);
    const QList<SqlTokens::Name> names = SqlTokens::Names(text);
    qsizetype word = 0;
    while (word + 1 < names.size() && names[word].parts[0].text.compare(u"VIEW", Qt::CaseInsensitive) != 0)
        ++word;
    if (word + 1 >= names.size() || names[word + 1].isCall || columns.filter(m_ownName, Qt::CaseInsensitive).isEmpty())
        return text;
    QStringList quoted;
    for (const QString& column : columns)
        quoted.append(EngineQuoteName(column, rc::Ref<const HF::I_LSchemaObject>(rc::self<HF::I_LSchemaObject>(&view))));
    return text.insert(names[word + 1].parts.last().end, QLatin1String(" (") + quoted.join(QLatin1String(", ")) + u')');
}

void orbDuckDB_TaskMakeDump::WriteHeader()
{
    Output().Write(QStringLiteral("--\n-- Orbis Studio --\n-- DuckDB dump --\n"));
    Output().Write(QLatin1String("\n-- ") + QObject::tr("Application homepage:") + u' ' + QLatin1String(DumpHomepage));
    Output().Write(QStringLiteral("\n--\n\n"));
}

/// What is not in the dump must not go with what is.
QString orbDuckDB_TaskMakeDump::Cascade() const
{
    return Scope == orbDuckDB_DumpRequest::WholeDatabase ? QStringLiteral(" CASCADE") : QString();
}

void orbDuckDB_TaskMakeDump::WriteDrops()
{
    const auto dropAll = [this](HF::ELObjectType type) {
        for (qsizetype i = m_objects.size() - 1; i >= 0 && !IsCancelled(); --i)
            if (m_objects[i].type == type)
                Write(rc::Ref<HF::I_LSchemaObject>(m_objects[i].object), HF::KIND_DROP);
    };
    dropAll(HF::TYPE_TABLE);
    dropAll(HF::TYPE_VIEW);
    dropAll(HF::TYPE_FUNCTION);
    for (const rc::Ref<HF::I_LSchemaObject>& schema : Schemas)
        for (const rc::Ref<HF::I_LSchemaObject>& sequence : schema->get_ChildObjects(HF::TYPE_SEQUENCE).Force())
            if (!IsCancelled() && !sequence->GetBoolOr(PROP_TEMPORARY, false))
                // A first load finds nothing to drop.
                Write(QLatin1String("DROP SEQUENCE IF EXISTS ") + sequence->get_NameForQuery(true) + Cascade());
    WriteTypes(true);
    for (const rc::Ref<HF::I_LSchemaObject>& schema : Schemas)
        if (!IsCancelled() && schema->get_Name() != u"main" && !schema->get_IsSystem())
            Write(QLatin1String("DROP SCHEMA IF EXISTS ") + schema->get_NameQuoted() + Cascade());
}

void orbDuckDB_TaskMakeDump::WriteSchemas()
{
    for (const rc::Ref<HF::I_LSchemaObject>& schema : Schemas)
        if (!IsCancelled() && schema->get_Name() != u"main" && !schema->get_IsSystem())
            Write(schema, HF::KIND_CREATE);
}

void orbDuckDB_TaskMakeDump::WriteTypes(bool drop)
{
    QList<TypeText> types;
    for (const rc::Ref<HF::I_LSchemaObject>& schema : Schemas)
        types += Need(ReadTypeTexts(rc::Ref<HF::I_LDatabase>(*m_source), schema->get_Name()),
                      QObject::tr("The types of \"%1\"").arg(schema->get_Name()));
    // Others may be made of those without values.
    std::stable_partition(types.begin(), types.end(), [drop](const TypeText& type) { return type.hasNoValues != drop; });
    for (const TypeText& type : types)
        if (!IsCancelled())
            Write(drop ? type.drop : type.create);
}

void orbDuckDB_TaskMakeDump::WriteSequences()
{
    for (const rc::Ref<HF::I_LSchemaObject>& schema : Schemas) {
        RcList<HF::I_LSchemaObject> sequences = schema->get_ChildObjects(HF::TYPE_SEQUENCE).Force();
        std::sort(sequences.begin(), sequences.end(), [](const auto& a, const auto& b) { return a->get_Name() < b->get_Name(); });
        for (const rc::Ref<HF::I_LSchemaObject>& sequence : sequences) {
            if (IsCancelled() || sequence->GetBoolOr(PROP_TEMPORARY, false))
                continue;
            const QString advance = ContinueSequence(*sequence);
            Write(WithZeroBounds(sequence->get_DatabaseEngine()->GenerateQuery(
                                     rc::Ref<const HF::I_LSchemaObject>(sequence), HF::KIND_CREATE, -1, HF::LVariant::Empty(), 4),
                                 *sequence));
            if (!advance.isEmpty())
                Write(advance);
        }
    }
}

QString orbDuckDB_TaskMakeDump::PlainPath()
{
    if (m_path.isEmpty())
        return {};
    m_path.clear();
    return QStringLiteral("SET search_path = ''");
}

/// Names without a schema inside of a schema's objects are found only along the path.
void orbDuckDB_TaskMakeDump::UsePath(const QString& schema, const QString& text)
{
    const bool needed = schema != u"main" && !schema.isEmpty()
        && ReferencesOf(text).words.intersects(m_names.value(schema.toLower()));
    const QString path = needed ? QuoteIdent(schema) + QLatin1String(",main") : QString();
    if (path == m_path)
        return;
    m_path = path;
    Write(QLatin1String("SET search_path = ") + QuoteStringLiteral(path));
}

void orbDuckDB_TaskMakeDump::WriteObjects()
{
    for (const orbDuckDB_DumpObject& object : m_objects) {
        if (IsCancelled())
            return;
        if (object.type == HF::TYPE_VIEW)
            UsePath(QString(), QString()); // a view of main has no schema in front of its name
        else
            UsePath(object.schema, object.text);
        if (object.type == HF::TYPE_TABLE)
            Write(object.text);
        else
            Write(rc::Ref<HF::I_LSchemaObject>(object.object), HF::KIND_CREATE);
        if (object.type == HF::TYPE_VIEW)
            WriteColumnComments(object);
    }
}

/// The columns of views do not know their comments in the tree.
void orbDuckDB_TaskMakeDump::WriteColumnComments(const orbDuckDB_DumpObject& view)
{
    const rc::Ptr<HF::I_LCursor> cursor = m_source->SqlSelect(
        QStringLiteral("SELECT column_name, comment FROM duckdb_columns() WHERE database_name = current_catalog() AND "
                       "schema_name = %1 AND table_name = %2 AND comment IS NOT NULL ORDER BY column_index")
            .arg(QuoteStringLiteral(view.schema), QuoteStringLiteral(view.name)),
        Flags, {}, HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord())
        Write(CommentStatement(QStringLiteral("COLUMN"),
                               QualifiedName(view.schema, view.name) + u'.' + QuoteIdent(cursor->get_Field(0)->get_String()),
                               cursor->get_Field(1)->get_String()));
}

void orbDuckDB_TaskMakeDump::WriteRows()
{
    put_Counts(Tables.size(), get_RowCount());
    for (qsizetype i = 0; i < Tables.size() && !IsCancelled(); ++i) {
        const rc::Ref<HF::I_LTable>& table = Tables[i];
        if (Progress)
            Progress(i, -1, -1);
        // Defaults are looked at even where a value is given.
        UsePath(SchemaOf(*table), m_texts.value(Key(SchemaOf(*table), table->get_Name())));
        const QString name = TableNames.value(i);
        std::function<void(long, long)> progress;
        if (Progress)
            progress = [this, i](long done, long total) { Progress(i, done, total); };
        try {
            DumpTableRecords(table, name.isEmpty() ? table->get_Name() : name, FieldLists.value(i), Output(), progress);
        } catch (const nub::xException& failure) {
            const QString text = QualifiedTable(table, table->get_Name()) + QLatin1String(": ") + QString::fromUtf8(failure.what());
            throw nub::xException(text.toUtf8().constData());
        }
    }
}

void orbDuckDB_TaskMakeDump::WriteIndexes()
{
    for (const rc::Ref<HF::I_LTable>& table : Tables) {
        if (IsCancelled())
            return;
        RcList<HF::I_LSchemaObject> indexes = table->get_ChildObjects(HF::TYPE_INDEX).Force();
        std::sort(indexes.begin(), indexes.end(), [](const auto& a, const auto& b) { return a->get_Name() < b->get_Name(); });
        for (const rc::Ref<HF::I_LSchemaObject>& index : indexes) {
            UsePath(SchemaOf(*table), index->GetStringOr(PROP_SQL_TEXT, QString()));
            Write(index, HF::KIND_CREATE);
        }
    }
}

// Rows

/// Rows of a table that refers to itself: no row before those that it refers to,
/// nor in one statement with them, which is more than the engine can check.
HF::LRowsQuery orbDuckDB_TaskMakeDump::MakeRowsQuery(const rc::Ref<HF::I_LTable>& table, const QList<QString>& fields)
{
    const orbDuckDB_DescTable description = DescribeTable(rc::Ref<const HF::I_LSchemaObject>(table));
    QString name = table->get_NameForQuery(true);
    QString row = QStringLiteral("rowid");
    QString numbered; // where a column hides the engine's row number
    if (std::any_of(description.fields.begin(), description.fields.end(), [&](const FieldDescription& field) {
            return field.name.compare(row, Qt::CaseInsensitive) == 0;
        })) {
        row = QStringLiteral("orb_row");
        numbered = QLatin1String("orb_rows AS MATERIALIZED ( SELECT row_number() OVER () AS orb_row, * FROM ") + name
                   + QLatin1String(" ), ");
        name = QStringLiteral("orb_rows");
    }
    QStringList edges;
    for (const LinkDescription& link : description.OwnLinks()) {
        if (link.parentTable.compare(description.name, Qt::CaseInsensitive) != 0)
            continue;
        QStringList same;
        for (qsizetype i = 0; i < std::min(link.columns.size(), link.parentColumns.size()); ++i)
            same.append(QLatin1String("c.") + QuoteIdent(link.columns[i]) + QLatin1String(" = p.") + QuoteIdent(link.parentColumns[i]));
        edges.append(QStringLiteral("SELECT c.%3 AS c, p.%3 AS p FROM %1 c JOIN %1 p ON %2")
                         .arg(name, same.join(QLatin1String(" AND ")), row));
    }
    if (edges.isEmpty())
        return LTask_DumpTablesToSQL::MakeRowsQuery(table, fields);
    QStringList columns;
    for (const QString& field : fields)
        columns.append(QLatin1String("t.") + QuoteIdent(field));
    // From the rows that refer to no other one; a row that only a circle reaches comes with the first ones, and no
    // way is longer than there are ties.
    return {QStringLiteral("WITH RECURSIVE %4orb_edges AS MATERIALIZED ( SELECT * FROM ( %1 ) WHERE c <> p ), "
                           "orb_depths( r, d ) AS ( SELECT %5, 0 FROM %2 WHERE %5 NOT IN ( SELECT c FROM orb_edges ) UNION "
                           "SELECT e.c, d + 1 FROM orb_depths JOIN orb_edges e ON e.p = r WHERE d < ( SELECT count(*) FROM "
                           "orb_edges ) ) SELECT %3, coalesce( x.d, 0 ) FROM %2 t LEFT JOIN ( SELECT r, max(d) AS d FROM "
                           "orb_depths GROUP BY r ) x ON x.r = t.%5 ORDER BY coalesce( x.d, 0 ), t.%5")
                .arg(edges.join(QLatin1String(" UNION ALL ")), name, columns.join(QLatin1String(", ")), numbered, row),
            true};
}

/// The engine replaces by one key only, and knows no replacing without any.
HF::LInsertWords orbDuckDB_TaskMakeDump::MakeInsertWords(const rc::Ref<HF::I_LTable>& table)
{
    HF::LInsertWords words;
    if (!Options.Replace)
        return words;
    const orbDuckDB_DescTable description = DescribeTable(rc::Ref<const HF::I_LSchemaObject>(table));
    QList<QStringList> keys;
    if (!description.primaryKey.isEmpty())
        keys.append(description.primaryKey);
    for (const UniqueDescription& unique : description.uniques)
        keys.append(unique.columns);
    // Indexes that the dump makes itself come behind the rows.
    if (!HasStructure())
        for (const IndexDescription& index : description.indexes)
            if (index.unique)
                keys.append(index.columns);
    if (keys.size() == 1) {
        words.Head = QStringLiteral("INSERT OR REPLACE INTO ");
    } else if (keys.size() > 1) {
        QStringList key, others;
        for (const QString& column : keys.first())
            key.append(QuoteIdent(column));
        for (const FieldDescription& field : description.fields)
            if (!field.IsGenerated() && !Holds(keys.first(), field.name))
                others.append(QuoteIdent(field.name) + QLatin1String(" = excluded.") + QuoteIdent(field.name));
        words.Tail = QLatin1String("\nON CONFLICT ( ") + key.join(QLatin1String(", ")) + QLatin1String(" ) DO ")
            + (others.isEmpty() ? QStringLiteral("NOTHING") : QLatin1String("UPDATE SET ") + others.join(QLatin1String(", ")));
    }
    return words;
}
