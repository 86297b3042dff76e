// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/field_base.h"

#include "data/queries.h"
#include "data/row_source.h"
#include "data/structure_makers.h"
#include "data/text_substitution.h"
#include "engine/engine_version.h"
#include "hf/action.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/log.h"
#include "hf/open_transaction.h"
#include "hf/services.h"
#include "hf/sql_text.h"
#include "hf/values.h"
#include "weft/prompter.h"

#include <QCoreApplication>
#include <QMenu>
#include <QObject>
#include <QRegularExpression>

namespace {

using BoolLazy = HF::LLazy<bool, true>;

/// DuckDB's numbers of nested types.
enum NestedType { Struct = 100, List = 101, Map = 102, Enum = 104, Union = 107, Array = 108, FirstNested = 100, LastNested = 108 };

QString ColumnText(const rc::Ref<const HF::I_LCursor>& cursor, const char* column)
{
    const rc::Ptr<HF::I_LField> field = cursor->get_Field(QString::fromLatin1(column));
    return field ? field->get_String() : QString();
}

/// The questions that DropSelection asks, for those who translate.
[[maybe_unused]] constexpr const char* DropQuestions[] = {
    QT_TRANSLATE_NOOP("QObject", "Do you really want to delete field \"%1\"?"),
    QT_TRANSLATE_NOOP("QObject", "Do you really want to delete method \"%1\"?"),
    QT_TRANSLATE_N_NOOP("QObject", "Do you really want to delete %n fields?"),
    QT_TRANSLATE_N_NOOP("QObject", "Do you really want to delete %n methods?"),
};

void DropSelection(const RcList<HF::LTreeItem>& items)
{
    if (items.isEmpty())
        return;
    const rc::Ref<HF::LTreeItem>& first = items.first();
    const QString word = first->get_ObjectTypeName().toLower();
    QString question;
    if (items.size() == 1) {
        const QByteArray source = QStringLiteral("Do you really want to delete %1 \"%2\"?").arg(word, QStringLiteral("%1")).toUtf8();
        question = QObject::tr(source.constData()).arg(first->get_Name());
    } else {
        const QByteArray source = QStringLiteral("Do you really want to delete %n %1?").arg(HF::PluralStr(word)).toUtf8();
        question = QObject::tr(source.constData(), nullptr, int(items.size()));
    }
    if (!weft::ask(question, QMessageBox::Yes))
        return;
    const rc::Ptr<HF::I_LTable> table = rc::cast<HF::I_LTable>(first->get_ParentObject());
    if (!table)
        return;
    const int type = first->get_ObjectType();
    if (type == HF::TYPE_FIELD && items.size() == table->get_FieldCount().Force()) {
        HF::Alert(QObject::tr("Cannot delete all fields from the table!"));
        return;
    }
    if (items.size() == 1) {
        if (const auto object = rc::cast<HF::LDatabaseObject_Impl>(first))
            object->Drop().Force();
        return;
    }
    QStringList names;
    for (const rc::Ref<HF::LTreeItem>& item : items)
        names.append(item->get_Name());
    if (StructureMakers().dropFields)
        StructureMakers().dropFields(rc::Ref<HF::I_LTable>(table), names, type);
}

} // namespace

orbDuckDB_StructureMakers& StructureMakers()
{
    static orbDuckDB_StructureMakers makers;
    return makers;
}

rc::Ptr<HF::I_LTable> orbDuckDB_FieldBase::OwnerTable() const
{
    return m_cursorMode ? nullptr : rc::cast<HF::I_LTable>(m_owner.lock());
}

bool orbDuckDB_FieldBase::IsOfView() const
{
    const rc::Ptr<HF::LTreeItem> parent = get_ParentObject();
    return parent && parent->get_ObjectType() == HF::TYPE_VIEW;
}

HF::LProperty orbDuckDB_FieldBase::get_Property(int id) const
{
    const rc::Ptr<HF::I_LSchemaObject> owner = m_owner.lock();
    if (const auto* source = dynamic_cast<const orb_I_RowSource*>(owner.get()))
        if (const rc::Ptr<HF::I_LTable> table = source->get_SourceTable())
            if (const rc::Ptr<HF::I_LField> field = table->get_Field(get_Name()))
                return field->get_Property(id);
    return LField::get_Property(id);
}

rc::Ptr<HF::I_LSqlValue> orbDuckDB_FieldBase::get_DefaultValue() const
{
    const QString text = GetString(PROP_DEFAULT);
    if (text.isEmpty())
        return nullptr;
    return rc::make<HF::LValueSqlExpression>(text);
}

QString orbDuckDB_FieldBase::get_NameForViews() const
{
    QStringList flags;
    if (GetBool(PROP_INDEXED))
        flags.append(QStringLiteral("I"));
    if (GetBool(PROP_UNIQUE))
        flags.append(QStringLiteral("U"));
    if (GetBoolOr(PROP_NULLABLE, false))
        flags.append(QStringLiteral("N"));
    if (flags.isEmpty())
        return get_Name();
    return QStringLiteral("%1 [%2]").arg(get_Name(), flags.join(u':'));
}

HF::LLazy<bool, false> orbDuckDB_FieldBase::IsPK() const
{
    const rc::Ptr<HF::I_LTable> table = OwnerTable();
    return table && table->GetStringList(PROP_KEY_COLUMNS).contains(get_Name());
}

QMenu* orbDuckDB_FieldBase::get_Menu()
{
    if (!IsOfView())
        return LField::get_Menu();
    auto* menu = new QMenu;
    const rc::Weak<HF::LTreeItem> parent(get_ParentObject());
    menu->addAction(HF::LoadCachedIcon(QStringLiteral(":/weft/icons/reload_thin.svg")), QObject::tr("Refresh"), menu,
                    [parent] {
                        if (const auto view = rc::cast<HF::I_LSchemaObject>(parent.lock()))
                            view->UpdateChildObjects(HF::TYPE_FIELD);
                    });
    return menu;
}

rc::Ptr<HF::LAction> orbDuckDB_FieldBase::get_Action(const QString& id) const
{
    if (id != QLatin1String(HF::DO_DROP_SELF))
        return LField::get_Action(id);
    static const rc::Ref<HF::LAction> action = rc::make<HF::LAction>(
        HF::DO_DROP_SELF, QObject::tr("Delete"),
        [](const RcList<HF::LTreeItem>& items, const QVariant&) { DropSelection(items); },
        HF::LAction::UpdateFunction(), QStringLiteral(":/weft/icons/trash.svg"));
    return action;
}

// Reading a row

void orbDuckDB_FieldBase::MarkAsOfView(int defaultProperty)
{
    SetPropertyFlagForAll(HF::PROPERTY_READONLY, true);
    for (const int id : {int(PROP_COMMENT), int(PROP_UNIQUE), int(PROP_INDEXED), defaultProperty})
        SetPropertyFlag(id, HF::PROPERTY_HIDDEN, true);
}

/// Takes the arguments of a nested type apart; the answer is its plain word.
QString orbDuckDB_FieldBase::ReadNestedType(const QString& typeText, int typeId)
{
    static const QHash<int, QString> words = {{Struct, QStringLiteral("Struct")},
                                              {Map, QStringLiteral("Map")},
                                              {Enum, QStringLiteral("Enum")},
                                              {Union, QStringLiteral("Union")}};
    const HF::LDatabaseEngine& engine = *get_DatabaseEngine();
    if (const auto word = words.constFind(typeId); word != words.constEnd()) {
        const qsizetype length = word->size();
        AssignPropertyValueSilent(PROP_TYPE_ARGUMENTS,
                                  typeText.mid(length + 1, typeText.size() - length - 2).trimmed());
        return *word;
    }
    if (typeId == List) {
        AssignPropertyValueSilent(PROP_ELEMENT_TYPE, engine.FormatFieldType(typeText.chopped(2)));
        return QStringLiteral("List");
    }
    if (typeId == Array) {
        const qsizetype bracket = typeText.lastIndexOf(u'[');
        int count = 0;
        QString element = typeText;
        if (bracket > 0) {
            count = typeText.mid(bracket + 1, typeText.size() - bracket - 2).trimmed().toInt();
            element = typeText.left(bracket);
        }
        AssignPropertyValueSilent(PROP_ARRAY_SIZE, count);
        AssignPropertyValueSilent(PROP_ELEMENT_TYPE, engine.FormatFieldType(element));
        return QStringLiteral("Array");
    }
    return typeText;
}

void orbDuckDB_FieldBase::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    QString type = ColumnText(cursor, "data_type");
    // A list or array of decimals begins the same way.
    if (type.startsWith(QLatin1String("DECIMAL(")) && type.endsWith(u')')) {
        type = QStringLiteral("Decimal");
        ReadProperty(cursor, PROP_PRECISION, "numeric_precision");
        ReadProperty(cursor, PROP_SCALE, "numeric_scale");
    }
    const HF::LDatabaseEngine& engine = *get_DatabaseEngine();
    if (engine.GetFieldTypeByName(type) == HF::FIELD_UNKNOWN) {
        const int typeId = ColumnText(cursor, "data_type_id").toInt();
        if (typeId >= FirstNested && typeId <= LastNested)
            type = ReadNestedType(type, typeId);
    }
    AssignPropertyValueSilent(PROP_TYPE_NAME, engine.FormatFieldType(type));
    m_fieldType = engine.GetFieldTypeByName(type);
    if (IsOfView()) {
        MarkAsOfView(PROP_DEFAULT);
        return;
    }
    ReadProperty(cursor, PROP_FIELD_POSITION, "column_index");
    ReadProperty(cursor, PROP_COMMENT, "comment");
}

// Indexed and unique

BoolLazy orbDuckDB_FieldBase::UpdatePropertyImpl(int id)
{
    const rc::Ptr<HF::LTreeItem> table = get_ParentObject();
    if ((id != PROP_UNIQUE && id != PROP_INDEXED) || !table || table->get_ObjectType() != HF::TYPE_TABLE)
        return LField::UpdatePropertyImpl(id);
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return false;
    const rc::Ptr<HF::I_LConnection> connection = get_Connection();
    const HF::LDatabaseEngine& engine = *get_DatabaseEngine();
    const auto asInIndex = [&](const QString& name) {
        // The engine quotes more in its own texts than a statement needs: letters beyond ASCII, a "$".
        static const QRegularExpression plain(QStringLiteral("^[A-Za-z_][A-Za-z0-9_]*$"));
        if (!plain.match(name).hasMatch())
            return u'"' + QString(name).replace(u'"', QLatin1String("\"\"")) + u'"';
        return engine.IsNeedQuote(name, connection).Force() ? engine.QuoteName(name, connection) : name;
    };
    rc::Ptr<HF::LTreeItem> schema = table->get_ParentObject();
    while (schema && schema->get_ObjectType() != HF::TYPE_SCHEMA)
        schema = schema->get_ParentObject();
    const QString tableName = table->get_Name();
    const QString indexOn = asInIndex(tableName) + u'(' + asInIndex(get_Name()) + u')';
    QString query = EngineVersionNumber() >= 10100 ? queries::FieldFlagsSince101() : queries::FieldFlags();
    const auto owner = rc::cast<HF::I_LSchemaObject>(table);
    query.replace(QLatin1String("$CATALOG"), owner && owner->GetBool(PROP_TEMPORARY) ? QLatin1String("'temp'")
                                                                                      : QLatin1String("current_catalog()"));
    const QString text = SubstituteLiterals(query, {{QStringLiteral("PPNAME"), schema ? schema->get_Name() : QString()},
                                                    {QStringLiteral("PNAME"), tableName},
                                                    {QStringLiteral("NAME"), get_Name()},
                                                    {QStringLiteral("INDEX_ON"), indexOn}});
    bool indexed = false;
    bool unique = false;
    if (const rc::Ptr<HF::I_LCursor> cursor = database->SelectCatalog(text)) {
        const rc::Ptr<HF::I_LField> flag = cursor->get_Field(0);
        for (bool more = cursor->FirstRecord(); more && !unique; more = cursor->NextRecord()) {
            indexed = true;
            unique = flag && flag->get_String() == QLatin1String("true");
        }
    }
    AssignPropertyValue(PROP_INDEXED, indexed);
    AssignPropertyValue(PROP_UNIQUE, unique);
    return true;
}

BoolLazy orbDuckDB_FieldBase::ApplyPropertyValue(int id, const HF::LVariant& value)
{
    switch (id) {
    case PROP_INDEXED: return value.ToBool() ? CreateIndex() : DropIndexes();
    case PROP_UNIQUE: return ChangeUnique(value.ToBool());
    case PROP_COMMENT: put_ExternalProperty(QStringLiteral("comment"), value.ToQVariant()).Force(); return true;
    default: return LField::ApplyPropertyValue(id, value);
    }
}

RcList<HF::I_LSchemaObject> orbDuckDB_FieldBase::IndexesWithField() const
{
    RcList<HF::I_LSchemaObject> result;
    if (const rc::Ptr<HF::I_LTable> table = OwnerTable())
        for (const rc::Ref<HF::I_LSchemaObject>& index : table->get_ChildObjects(HF::TYPE_INDEX).Force())
            if (index->GetStringList(PROP_COLUMNS).contains(get_Name()))
                result.append(index);
    return result;
}

BoolLazy orbDuckDB_FieldBase::CreateIndex()
{
    const rc::Ptr<HF::I_LTable> table = OwnerTable();
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!table || !database || !IndexesWithField().isEmpty())
        return false;
    const std::optional<QString> answer = HF::InputText(
        QObject::tr("Index Name:"), table->get_Name() + u'_' + get_Name() + QLatin1String("_idx"));
    if (!answer || answer->isEmpty())
        return false;
    const auto inner = [](QString name) { return name.replace(u'"', QLatin1String("\"\"")); };
    const bool ran = database->SqlExecute(QLatin1String("CREATE INDEX \"") + inner(*answer) + QLatin1String("\" ON \"")
                                          + inner(table->get_Name()) + QLatin1String("\"( \"") + inner(get_Name())
                                          + QLatin1String("\" );"));
    table->UpdateChildObjects(HF::TYPE_INDEX);
    const bool there = ran && table->get_ChildObject(HF::TYPE_INDEX, *answer).Force();
    ReloadProperties().Force();
    return there;
}

BoolLazy orbDuckDB_FieldBase::DropIndexes()
{
    if (!GetBool(PROP_INDEXED))
        return true;
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!database)
        return false;
    const RcList<HF::I_LSchemaObject> indexes = IndexesWithField();
    bool unique = indexes.isEmpty() && GetBool(PROP_UNIQUE);
    QStringList names;
    for (const rc::Ref<HF::I_LSchemaObject>& index : indexes) {
        unique = unique || index->GetBool(PROP_UNIQUE);
        names.append(index->get_Name());
    }
    if (unique) {
        HF::LogError(QObject::tr("You need to reset \"Unique\" flag first!"));
        return false;
    }
    if (names.isEmpty())
        return true;
    const QString question =
        names.size() == 1 ? QObject::tr("Do you really want to delete index \"%1\"?").arg(names.first())
                          : QObject::tr("Do you really want to delete indexes:\n%1?").arg(names.join(u'\n'));
    if (!weft::ask(question, QMessageBox::Yes))
        return false;
    bool dropped = true;
    for (const QString& name : names)
        dropped = database->SqlExecute(QLatin1String("DROP INDEX IF EXISTS ") + HF::QuoteName(name, rc::self(this)) + u';')
            && dropped;
    IndexesChanged();
    return dropped;
}

void orbDuckDB_FieldBase::IndexesChanged()
{
    if (const rc::Ptr<HF::I_LTable> table = OwnerTable()) {
        if (const auto schema = rc::cast<HF::I_LSchemaObject>(table->get_ParentObject()))
            schema->UpdateChildObjects(HF::TYPE_INDEX);
        table->UpdateChildObjects(HF::TYPE_INDEX);
    }
    ReloadProperties().Force();
}

BoolLazy orbDuckDB_FieldBase::ChangeUnique(bool unique)
{
    const rc::Ptr<HF::I_LTable> table = OwnerTable();
    const rc::Ptr<HF::I_LDatabase> database = get_Database();
    if (!table || !database || !StructureMakers().uniqueScript || HF::RefuseInTransaction(rc::Ref(database)))
        return false;
    const QString script = StructureMakers().uniqueScript(rc::Ref<HF::I_LTable>(table), get_Name(), unique);
    if (script.isEmpty())
        return false;
    const QList<HF::LQueryResult> results =
        database->SqlQuery(QLatin1String("BEGIN;\n") + script + QLatin1String("\nEND;\n"), HF::QUERY_SILENT_ERROR, {},
                           HF::CURSOR_CLIENT, HF::LOCK_OPTIMISTIC, HF::CURSOR_FORWARD);
    if (HF::IsQuerySuccess(results)) {
        database->Flush().Force(); // the log of a rebuild cannot always be replayed
        table->ReloadProperties().Force();
        ReloadProperties().Force();
    } else {
        HF::LogError(HF::GetQueryErrors(results).replace(QLatin1String("__orb_temp_table"), table->get_Name()));
    }
    return get_DatabaseEngine()->PostApplyChanges(rc::self<HF::I_LSchemaObject>(this)).Force();
}
