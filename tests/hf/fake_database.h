// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/database_model.h"
#include "hf/engine.h"
#include "hf/schema_item_list.h"
#include "hf/values.h"
#include "uik/settings.h"

#include <QTemporaryDir>

#include <atomic>
#include <functional>
#include <map>

/// A database without an engine: queries are answered from a table of results,
/// statements are written down. Its catalogue has the shape of the real one:
/// database, schemas, tables with fields and links.
namespace fake {

using namespace HF;

/// What a query gives: names of columns, rows of values.
struct Rows
{
    QStringList columns;
    QList<QVariantList> rows;
};

class Column final : public LField
{
public:
    Column(const rc::Ptr<I_LSchemaObject>& cursor, const QString& name, int index, std::shared_ptr<const Rows> rows,
           std::shared_ptr<unsigned long> position)
        : LField(cursor, name), m_index(index), m_rows(std::move(rows)), m_position(std::move(position))
    {
    }
    rc::Ptr<I_LSqlValue> get_DefaultValue() const override { return nullptr; }
    LLazy<ELFieldType, false> get_Type() const override
    {
        for (const QVariantList& row : m_rows->rows)
            if (row[m_index].typeId() == QMetaType::Bool)
                return FIELD_BOOLEAN;
            else if (row[m_index].typeId() == QMetaType::Int)
                return FIELD_INTEGER;
        return FIELD_VARCHAR;
    }
    LLazy<bool, false> IsPK() const override { return false; }
    LLazy<bool, false> get_IsEncrypted() const override { return false; }
    bool get_IsDirty() const override { return false; }
    bool get_IsNull() const override { return !Cell().isValid(); }
    void SetNull() override {}
    bool get_IsReadOnly() const override { return true; }
    QString get_String(long) const override { return Cell().toString(); }
    void SetString(const QString&) override {}
    int Compare(const I_LField&) const override { return 0; }
    rc::Ptr<I_LSqlValue> get_Value(long) const override
    {
        const QVariant& cell = Cell();
        switch (cell.typeId()) {
        case QMetaType::Bool:
            return rc::make<LValueBoolean>(cell.toBool());
        case QMetaType::Int:
            return rc::make<LValueInt32>(cell.toInt());
        default:
            return rc::make<LValueString>(cell.toString(), !cell.isValid());
        }
    }
    void SetValue(const rc::Ptr<I_LSqlValue>&) override {}
    long get_Length() const override { return Cell().toString().size(); }
    QByteArray get_Data(long) const override { return Cell().toString().toUtf8(); }
    void SetData(const QByteArray&) override {}
    void Revert() override {}
    rc::Ptr<I_LSchemaObject> get_Owner() const override { return nullptr; }

private:
    const QVariant& Cell() const { return m_rows->rows[static_cast<qsizetype>(*m_position)][m_index]; }

    int m_index;
    std::shared_ptr<const Rows> m_rows;
    std::shared_ptr<unsigned long> m_position;
};

class Cursor final : public LCursor
{
public:
    Cursor(const QString& text, const Rows& rows) : LCursor(text, nullptr), m_rows(std::make_shared<Rows>(rows))
    {
        const rc::Ptr<I_LSchemaObject> self(this);
        for (int i = 0; i < rows.columns.size(); ++i)
            m_columns.append(rc::make<Column>(self, rows.columns[i], i, m_rows, m_position));
    }
    LLazy<int, false> get_FieldCount() const override { return static_cast<int>(m_columns.size()); }
    rc::Ptr<I_LField> get_Field(int index) const override { return m_columns[index]; }
    rc::Ptr<I_LField> get_Field(const QString& name) const override
    {
        ++s_lookups;
        for (const rc::Ref<Column>& column : m_columns)
            if (column->get_Name().compare(name, Qt::CaseInsensitive) == 0)
                return column;
        return nullptr;
    }
    void Flush() override {}
    unsigned long get_Position() const override { return *m_position; }
    LLazy<bool, true> put_Position(unsigned long position) override
    {
        *m_position = position;
        return true;
    }
    LLazy<bool, false> get_IsReadOnly() const override { return true; }
    void put_IsReadOnly(bool) override {}
    LLazy<unsigned long, false> get_RecordCount() const override
    {
        return static_cast<unsigned long>(m_rows->rows.size());
    }
    void DiscardChanges() override {}
    bool FirstRecord() const override
    {
        *m_position = 0;
        return !m_rows->rows.isEmpty();
    }
    bool NextRecord() const override { return ++*m_position < static_cast<unsigned long>(m_rows->rows.size()); }
    QString UpdateRecord() override { return QString(); }
    bool get_IsDirty() const override { return false; }
    bool get_IsComplete() const override { return true; }
    void SaveAllRecords() override {}

    /// Searches of columns by name, of all cursors.
    static inline std::atomic<int> s_lookups{0};

private:
    std::shared_ptr<Rows> m_rows;
    std::shared_ptr<unsigned long> m_position = std::make_shared<unsigned long>(0);
    RcList<Column> m_columns;
};

/// Makes "SET <property> = <value>" of any change but that of property 9.
class Model final : public I_LDatabaseModel
{
public:
    void CreateProperties(LHasProperties::Properties& list) const override
    {
        list.AssignProperties({LProperty("Table", PROP_NAME, LVariant::EmptyString(), 135),
                               LProperty("Table", PROP_TEMPORARY, LVariant::EmptyBool(), PROPERTY_READONLY),
                               LProperty("Table", PROP_PRECISION, LVariant(-1), 0)});
    }
    QList<LQueryNode> GetQueryNodes(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                                    const LVariant& value) const override
    {
        LQueryNode node = MakeNode(object, kind, property, value);
        if (kind == KIND_DROP)
            node.sql = "DROP " + object->get_Name();
        else if (property != PROP_COMMENT)
            node.sql = QStringLiteral("SET %1 = %2").arg(property).arg(value.ToString());
        if (property == PROP_COLUMNS)
            node.children = {MakeNode(object, kind, -1, {}), MakeNode(object, kind, -1, {})};
        if (property == PROP_COLUMNS)
            node.children[0].sql = "  ALSO; \n";
        return {node};
    }
};

class Engine final : public LDatabaseEngine
{
public:
    Engine() = default;
    I_LDatabaseModel* GetModel(ELObjectType) const override { return &s_model; }
    QStringList GetSearchPath(const rc::Ptr<I_LDatabase>&) const override { return {"second"}; }
    static inline Model s_model;
};

class Field final : public I_LSchemaObject
{
public:
    int get_ObjectType() const override { return TYPE_FIELD; }
    void FromQuery(const rc::Ref<const I_LCursor>& cursor) override
    {
        ReadProperty(cursor, PROP_FIELD_POSITION, "column_index");
    }
};

class Link final : public I_LSchemaObject
{
public:
    int get_ObjectType() const override { return TYPE_LINK; }
    void FromQuery(const rc::Ref<const I_LCursor>& cursor) override
    {
        ReadProperty(cursor, PROP_LINK_TABLE, "table_name");
        ReadProperty(cursor, PROP_LINK_PARENT_TABLE, "parent_name");
    }
};

template <class T>
rc::Ref<I_LSchemaObject> Make(const rc::Ref<I_LSchemaObject>& owner, const QString& name)
{
    const auto object = rc::make<T>();
    object->put_ParentObject(owner);
    object->AssignName(name.section("$$", 0, 0));
    return object;
}

class Table final : public I_LTable
{
public:
    int get_ObjectType() const override { return TYPE_TABLE; }
    void FromQuery(const rc::Ref<const I_LCursor>& cursor) override
    {
        if (get_Name() == "unreadable")
            throw std::runtime_error("a row that cannot be read");
        ReadProperty(cursor, PROP_OBJECT_ID, "table_oid");
        ReadProperty(cursor, PROP_COMMENT, "comment");
        ReadProperty(cursor, PROP_TEMPORARY, "temporary");
        ReadProperty(cursor, PROP_SQL_TEXT, "no such column");
    }
    LLazy<int, false> get_FieldCount() const override { return get_ChildList(TYPE_FIELD)->get_Count(); }
    rc::Ptr<I_LField> get_Field(int) const override { return nullptr; }
    rc::Ptr<I_LField> get_Field(const QString&) const override { return nullptr; }
    rc::Ptr<I_LSchema> get_Schema() const override { return rc::cast<I_LSchema>(get_ParentObject()); }
};

class Schema final : public I_LSchema
{
public:
    int get_ObjectType() const override { return TYPE_SCHEMA; }
};

inline rc::Ref<I_LSchemaObject> MakeTable(const rc::Ref<I_LSchemaObject>& owner, const QString& name)
{
    static const LSchemaItemListInfo fields{Make<Field>, "column_name", "", TYPE_FIELD, "field", PROP_COUNT_FIELDS,
                                            "FIELDS OF $PNAME.$NAME"};
    static const LSchemaItemListInfo links{Make<Link>, "name", "", TYPE_LINK, "link", PROP_COUNT_LINKS, ""};
    const rc::Ref<I_LSchemaObject> table = Make<Table>(owner, name);
    table->AddChildList(rc::make<LSortableDatabaseObjectList>(fields, table));
    const auto child = rc::make<LSchemaItemListChild>(links, table);
    table->AddChildList(child);
    if (const auto parent = rc::cast<LSchemaItemListParent>(owner->get_ChildList(TYPE_LINK)))
        parent->AddChildList(child, PROP_LINK_TABLE, PROP_LINK_PARENT_TABLE, QString());
    return table;
}

inline rc::Ref<I_LSchemaObject> MakeSchema(const rc::Ref<I_LSchemaObject>& owner, const QString& name)
{
    static const LSchemaItemListInfo tables{
        MakeTable, "table_name", ":/weft/icons/table.svg", TYPE_TABLE, "table", PROP_COUNT_TABLES, "TABLES OF $NAME"};
    static const LSchemaItemListInfo links{Make<Link>, "constraint_name", "", TYPE_LINK, "link", PROP_COUNT_LINKS,
                                           "never used",
                                           [](const rc::Ref<I_LSchemaObject>&) { return QString("LINKS OF $NAME"); }};
    const rc::Ref<I_LSchemaObject> schema = Make<Schema>(owner, name);
    schema->AddChildList(rc::make<LSchemaItemListParent>(links, schema));
    schema->AddChildList(rc::make<LSchemaItemList>(tables, schema));
    return schema;
}

class Database final : public I_LDatabase
{
public:
    explicit Database(const rc::Ptr<LTreeItem>& parent = {})
    {
        put_ParentObject(parent);
        AssignName("db");
        static const LSchemaItemListInfo schemas{MakeSchema, "schema_name", "", TYPE_SCHEMA, "schema",
                                                 PROP_COUNT_SCHEMAS, "SCHEMAS"};
        AddChildList(rc::make<LDatabaseSchemasList>(schemas, rc::Ref<I_LSchemaObject>(*this)));
        results["SCHEMAS"] = {{"oid", "schema_name"}, {{1, "main"}, {2, "second"}}};
        results["TABLES OF 'main'"] = {{"table_oid", "table_name", "comment", "temporary"},
                                       {{1, "t", "about t", false}, {2, "P", QVariant(), true}}};
        results["TABLES OF 'second'"] = {{"table_name"}, {{"only here"}, {"t"}}};
        results["FIELDS OF 'main'.'t'"] = {{"column_name", "column_index"}, {{"b", 2}, {"a", 1}}};
        results["LINKS OF 'main'"] = {{"constraint_name", "table_name", "parent_name", "constraint_name"},
                                      {{"engine 1", "t", "p", "link_p_t"}, {"engine 2", "P", "p", "link_p_p"}}};
        results["LINKS OF 'second'"] = {{"constraint_name", "table_name", "parent_name"}, {}};
    }

    rc::Ptr<I_LDatabase> get_Database() const override
    {
        auto* self = const_cast<Database*>(this);
        return self->TryAddStrong() ? rc::Ptr<I_LDatabase>(self, rc::impl::Adopt{}) : nullptr;
    }
    int get_ObjectType() const override { return TYPE_DATABASE; }
    const LDatabaseEngine* get_DatabaseEngine() const override { return &s_engine; }
    bool get_IsClosing() const override { return closing; }
    QString ExternalKey() const override { return "Databases/fake"; }
    QString get_Path() const override { return "fake"; }
    bool get_IsLocal() const override { return true; }
    LLazy<bool, true> get_IsReadOnly() const override { return false; }
    LLazy<bool, true> Open() override { return true; }
    LLazy<bool, true> Close() override
    {
        closing = true;
        if (const rc::Ptr<LTreeItem> parent = get_ParentObject())
            parent->DeleteChild(rc::Ref<LTreeItem>(*this));
        return true;
    }
    LLazy<void, true> Flush() override
    {
        Note("FLUSH");
        return {};
    }
    LLazy<bool, true> ThrowOut() override { return true; }
    rc::Ref<I_LSqlQuery> MakeSqlQuery() override { throw std::logic_error("not here"); }
    QList<LQueryResult> SqlQuery(const QString& text, int, const RcList<I_LSqlValue>&, int, int, int) override
    {
        Note(text);
        LQueryResult result;
        result.Status = fail && fail(text) ? LQueryResult::Failed : LQueryResult::Done;
        result.Error = result.Status ? QString() : QString("no");
        return {result};
    }
    rc::Ptr<I_LCursor> SqlSelect(const QString& text, int, const RcList<I_LSqlValue>&, int, int, int) override
    {
        if (whileSelecting)
            whileSelecting(text);
        Note(text);
        std::lock_guard guard(mutex);
        const auto found = results.find(text);
        if (found == results.end() || (fail && fail(text)))
            return nullptr;
        return rc::make<Cursor>(text, found->second);
    }
    bool SqlExecute(const QString&) override { return true; }
    LLazy<QList<LIdent>, false> get_Idents() override { return QList<LIdent>(); }
    LLazy<QList<LIdent>, false> get_SystemIdents() override { return QList<LIdent>(); }
    void InvalidateIdents() override {}
    void InvalidateSystemIdents() override {}
    void UpdateDefaultSchemasAction(QAction&) override {}

    void Note(const QString& text)
    {
        std::lock_guard guard(mutex);
        log.append(text);
    }
    /// What was asked since the last call.
    QStringList TakeLog()
    {
        std::lock_guard guard(mutex);
        return std::exchange(log, {});
    }
    rc::Ptr<I_LSchemaObject> Get(std::initializer_list<std::pair<int, const char*>> path)
    {
        rc::Ptr<I_LSchemaObject> object(this);
        for (const auto& [type, name] : path)
            if (object)
                object = object->get_ChildObject(type, name).Force();
        return object;
    }

    std::mutex mutex;
    std::map<QString, Rows> results;
    QStringList log;
    std::function<bool(const QString&)> fail;
    std::function<void(const QString&)> whileSelecting;
    std::atomic<bool> closing{false};
    static inline Engine s_engine;
};

/// Stands where a connection does: holds databases in a list without a query.
/// Brings a settings file of its own, so that the user's stays untouched.
class Root final : public I_LSchemaObject
{
public:
    Root()
    {
        uik::SetSettingsFile(m_folder.filePath("settings.ini"));
        static const LSchemaItemListInfo databases{nullptr, "", "", TYPE_DATABASE, "database", -1, ""};
        AddChildList(rc::make<LSchemaItemList>(databases, rc::Ref<I_LSchemaObject>(*this)));
    }
    rc::Ref<Database> Add()
    {
        const auto database = rc::make<Database>(rc::Ptr<LTreeItem>(this));
        get_ChildList(TYPE_DATABASE)->AddChildBack(database);
        return database;
    }

private:
    QTemporaryDir m_folder;
};

} // namespace fake
