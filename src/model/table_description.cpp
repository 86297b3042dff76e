// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/table_description.h"

#include "engine/engine_interfaces.h"
#include "hf/database.h"
#include "hf/engine.h"
#include "hf/model_kinds.h"
#include "hf/model_object.h"
#include "hf/virtual_link.h"
#include "model/column_text.h"
#include "model/empty_enum.h"
#include "model/sql_tokens.h"
#include "model/text_helpers.h"

namespace {

using Object = rc::Ref<const HF::I_LSchemaObject>;

const HF::I_LModelObject* AsModel(const Object& object)
{
    return dynamic_cast<const HF::I_LModelObject*>(object.get());
}

bool SameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

RcList<HF::I_LSchemaObject> ChildrenOf(const Object& table, int type)
{
    return table->get_ChildObjects(type).Force();
}

/// Columns that change their names: the old one in lower case -> the new one.
using Renames = QHash<QString, QString>;

Renames RenamedColumns(const Object& table)
{
    Renames renames;
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const rc::Ref<HF::I_LSchemaObject>& column : ChildrenOf(table, type)) {
            const HF::I_LModelObject* const model = AsModel(column);
            if (model && !model->IsMarkedDropped() && model->IsPropertyChanged(PROP_NAME))
                renames.insert(column->get_Name().toLower(), column->GetString(PROP_NAME));
        }
    return renames;
}

/// What somebody edited names the columns as they are to be; what nobody touched
/// names them as they were.
bool IsOfOldNames(const Object& object, int property)
{
    const HF::I_LModelObject* const model = AsModel(object);
    return model && !model->Evaluate(HF::EVAL_JUST_CREATED).ToBool() && !model->IsPropertyChanged(property);
}

QStringList Columns(const Object& object, int property, const Renames& renames)
{
    QStringList names = object->GetStringList(property);
    if (!renames.isEmpty() && IsOfOldNames(object, property))
        for (QString& name : names)
            name = renames.value(name.toLower(), name);
    return names;
}

QString Expression(const Object& object, int property, const Renames& renames)
{
    const QString text = object->GetString(property);
    return IsOfOldNames(object, property) ? SqlTokens::Rename(text, renames) : text;
}

bool TakesCollation(const QString& typeText)
{
    return SameName(typeText, QStringLiteral("VarChar")) || SameName(typeText, QStringLiteral("Text"))
           || SameName(typeText, QStringLiteral("String"));
}

/// Whether the type is the one that the database has.
bool HasOwnType(const Object& field)
{
    const HF::I_LModelObject* const model = AsModel(field);
    return !model
        || !(model->IsPropertyChanged(PROP_TYPE_NAME) || model->IsPropertyChanged(PROP_ELEMENT_TYPE)
             || model->IsPropertyChanged(PROP_ARRAY_SIZE) || model->IsPropertyChanged(PROP_TYPE_ARGUMENTS));
}

FieldDescription DescribeField(const Object& field, const QHash<QString, QString>& collations, const Renames& renames)
{
    FieldDescription description;
    if (const HF::I_LModelObject* const model = AsModel(field)) {
        description.isNew = !field->Evaluate(HF::EVAL_EXISTS).ToBool();
        description.oldName = model->get_OriginalValue(PROP_NAME).ToString();
    }
    description.notNull = !field->GetBool(PROP_NULLABLE);
    description.comment = field->GetString(PROP_COMMENT);
    description.name = field->GetString(PROP_NAME);
    description.typeText = FieldTypeText(field);
    if (field->get_ObjectType() == HF::TYPE_METHOD) {
        const QString text = Expression(field, PROP_METHOD_EXPRESSION, renames);
        const bool fromEngine = !AsModel(field) || IsOfOldNames(field, PROP_METHOD_EXPRESSION);
        description.generatedExpression = fromEngine ? SqlTokens::WithoutCast(text) : text;
        // The engine cannot keep a generated column whose type has an enum written out inside, nor one whose type
        // goes with the session; the cast names it.
        if (fromEngine && HasOwnType(field)
            && (description.typeText.contains(QLatin1String("ENUM(")) || EmptyEnum::Named(description.typeText) != description.typeText))
            if (const QString type = SqlTokens::TypeOfCast(text); !type.isEmpty())
                description.typeText = type;
    } else {
        if (HasOwnType(field)) // a type that a user asks for must have values
            description.typeText = EmptyEnum::Named(description.typeText);
        description.defaultText = field->GetString(PROP_DEFAULT);
        description.collation = field->GetString(PROP_COLLATION);
        if (!description.isNew && description.collation.isEmpty() && TakesCollation(description.typeText))
            description.collation = collations.value(field->get_Name().toLower());
    }
    return description;
}

IndexDescription DescribeIndexOf(const Object& index, const Renames& renames)
{
    IndexDescription description;
    description.connection = index->get_Connection();
    description.unique = index->GetBool(PROP_UNIQUE);
    description.name = index->GetString(PROP_NAME);
    description.comment = index->GetString(PROP_COMMENT);
    description.columns = index->GetStringList(PROP_COLUMNS);
    const rc::Ptr<HF::I_LSchemaObject> table = HF::LDatabaseModelIndex::GetParentTable(index);
    if (!table)
        return description;
    const Object known{rc::Ref<HF::I_LSchemaObject>(table)};
    description.schema = SchemaNameOf(known);
    description.table = table->get_Name();
    QStringList oldNames;
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const rc::Ref<HF::I_LSchemaObject>& column : ChildrenOf(known, type)) {
            description.tableColumns.append(column->GetString(PROP_NAME));
            oldNames.append(column->get_Name());
        }
    if (!renames.isEmpty() && IsOfOldNames(index, PROP_COLUMNS))
        for (QString& item : description.columns) {
            if (oldNames.contains(item, Qt::CaseInsensitive))
                item = renames.value(item.toLower(), item);
            else
                item = SqlTokens::Rename(item, renames);
        }
    return description;
}

/// The engine looks for a name without its schema along the search path; main stands at its end.
bool IsSchemaNeeded(const Object& table, const QString& schema)
{
    if (schema.isEmpty())
        return false;
    if (schema != QLatin1String("main"))
        return true;
    const rc::Ptr<HF::I_LDatabase> database = table->get_Database();
    if (!database)
        return false;
    const QStringList path = database->GetStringList(PROP_SEARCH_PATH);
    return !path.isEmpty() && path.first() != schema;
}

} // namespace

QList<LinkDescription> orbDuckDB_DescTable::OwnLinks() const
{
    QList<LinkDescription> own;
    for (const LinkDescription& link : links)
        if (SameName(link.table, name))
            own.append(link);
    return own;
}

orbDuckDB_ChildFilter::orbDuckDB_ChildFilter(const Object& table)
{
    const HF::LVariant exists = table->Evaluate(HF::EVAL_EXISTS);
    if (table->Evaluate(HF::EVAL_JUST_CREATED).ToBool())
        m_all = !table->Evaluate(HF::EVAL_MARKED_DROPPED).ToBool();
    else
        m_all = !exists.IsEmpty() && !exists.ToBool();
}

bool orbDuckDB_ChildFilter::Passes(const Object& child) const
{
    if (child->Evaluate(HF::EVAL_MARKED_DROPPED).ToBool())
        return false;
    return m_all || child->Evaluate(HF::EVAL_JUST_CREATED).ToBool() || child->Evaluate(HF::EVAL_EXISTS).ToBool();
}

LinkDescription DescribeLink(const Object& link)
{
    LinkDescription description;
    description.columns = link->GetStringList(PROP_LINK_COLUMNS);
    description.parentColumns = link->GetStringList(PROP_KEY_COLUMNS);
    description.name = link->get_Name();
    description.table = link->GetString(PROP_LINK_TABLE);
    description.parentTable = link->GetString(PROP_LINK_PARENT_TABLE);
    return description;
}

IndexDescription DescribeIndex(const Object& index)
{
    const rc::Ptr<HF::I_LSchemaObject> table = HF::LDatabaseModelIndex::GetParentTable(index);
    return DescribeIndexOf(index, table ? RenamedColumns(rc::Ref<HF::I_LSchemaObject>(table)) : Renames());
}

QString UnreadParts(const HF::I_LSchemaObject& table)
{
    const auto parent = rc::cast<HF::I_LSchemaObject>(table.get_ParentObject());
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD, HF::TYPE_CHECK, HF::TYPE_INDEX, HF::TYPE_UNIQUE, HF::TYPE_LINK}) {
        rc::Ptr<HF::LSchemaItemList> list = table.get_ChildList(type);
        if (!list && parent)
            list = parent->get_ChildList(type);
        if (list && !list->BuildList())
            return QObject::tr("%1 could not be read").arg(QObject::tr("The list \"%1\" of \"%2\"").arg(list->get_ListInfo().word, table.get_Name()));
    }
    return {};
}

bool IsOfTwin(const HF::I_LSchemaObject& link, const HF::I_LSchemaObject& table)
{
    return !link.Evaluate(HF::EVAL_JUST_CREATED).ToBool() && link.GetBool(PROP_TEMPORARY) != table.GetBool(PROP_TEMPORARY);
}

RcList<HF::I_LSchemaObject> LinksOfTable(const Object& table)
{
    RcList<HF::I_LSchemaObject> all;
    if (table->HasChildList(HF::TYPE_LINK)) {
        all = ChildrenOf(table, HF::TYPE_LINK);
    } else if (const auto parent = rc::cast<HF::LDatabaseObject_Impl>(table->get_ParentObject())) {
        all = parent->get_ChildObjects(HF::TYPE_LINK).Force();
    }
    const QString name = table->get_Name();
    all.removeIf([&](const rc::Ref<HF::I_LSchemaObject>& link) {
        return dynamic_cast<const HF::LVirtualLink*>(link.get()) || IsOfTwin(*link, *table)
               || (!SameName(link->GetString(PROP_LINK_TABLE), name)
                   && !SameName(link->GetString(PROP_LINK_PARENT_TABLE), name));
    });
    return all;
}

orbDuckDB_DescTable DescribeTable(const Object& table)
{
    orbDuckDB_DescTable description;
    description.connection = table->get_Connection();
    description.comment = table->GetString(PROP_COMMENT);
    description.name = table->get_Name();
    description.schema = SchemaNameOf(table);
    description.temporary = table->GetBool(PROP_TEMPORARY);
    description.schemaNeeded = IsSchemaNeeded(table, description.schema);

    const orbDuckDB_ChildFilter filter(table);
    const Renames renames = RenamedColumns(table);
    description.primaryKey = Columns(table, PROP_KEY_COLUMNS, renames);
    const QHash<QString, QString> collations = SqlTokens::Collations(table->GetString(PROP_SQL_TEXT));
    for (const int type : {HF::TYPE_FIELD, HF::TYPE_METHOD})
        for (const rc::Ref<HF::I_LSchemaObject>& field : ChildrenOf(table, type))
            if (filter.Passes(field))
                description.fields.append(DescribeField(field, collations, renames));
    for (const rc::Ref<HF::I_LSchemaObject>& check : ChildrenOf(table, HF::TYPE_CHECK))
        if (filter.Passes(check))
            description.checks.append({Expression(check, PROP_CHECK_EXPRESSION, renames), check->get_Name()});
    for (const rc::Ref<HF::I_LSchemaObject>& index : ChildrenOf(table, HF::TYPE_INDEX))
        if (filter.Passes(index))
            description.indexes.append(DescribeIndexOf(index, renames));
    for (const rc::Ref<HF::I_LSchemaObject>& unique : ChildrenOf(table, HF::TYPE_UNIQUE))
        if (filter.Passes(unique))
            description.uniques.append({Columns(unique, PROP_COLUMNS, renames), unique->get_Name()});
    for (const rc::Ref<HF::I_LSchemaObject>& link : LinksOfTable(table)) {
        if (!filter.Passes(link))
            continue;
        LinkDescription described = DescribeLink(link);
        if (SameName(described.table, description.name))
            described.columns = Columns(link, PROP_LINK_COLUMNS, renames);
        if (SameName(described.parentTable, description.name))
            described.parentColumns = Columns(link, PROP_KEY_COLUMNS, renames);
        description.links.append(described);
    }
    return description;
}
