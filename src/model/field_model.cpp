// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/field_model.h"

#include "hf/engine.h"
#include "hf/sql_text.h"
#include "model/column_model.h"
#include "model/column_text.h"
#include "model/text_helpers.h"

#include <QObject>

void orbDuckDB_ModelField::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Field");
        const QString settings = QString::fromLatin1(HF::CATEGORY_SETTINGS);
        const QString flags = QString::fromLatin1(HF::CATEGORY_FLAGS);
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 420);
        HF::AddPropertyTo(made, title, PROP_FIELD_POSITION, HF::LVariant::EmptyLong(), 33);
        HF::AddPropertyTo(made, title, PROP_COMMENT, HF::LVariant::EmptyString(), 40);
        HF::AddPropertyTo(made, settings, PROP_TYPE_NAME, HF::LVariant::EmptyString(), 2101280);
        HF::AddPropertyTo(made, settings, PROP_DEFAULT, HF::LVariant::EmptyString(), 164);
        ColumnModel::AddTypeProperties(made);
        HF::AddPropertyTo(made, flags, PROP_NULLABLE, HF::LVariant::EmptyBool(), 160);
        HF::AddPropertyTo(made, flags, PROP_INDEXED, HF::LVariant::EmptyBool(), 128);
        HF::AddPropertyTo(made, flags, PROP_UNIQUE, HF::LVariant::EmptyBool(), 128);
        return made;
    }();
    list.AssignProperties(properties);
}

QMap<int, int> orbDuckDB_ModelField::GetPropertiesGroups() const
{
    return ColumnModel::PropertiesGroups();
}

QString orbDuckDB_ModelField::CheckProperty(const rc::Ref<const HF::I_LSchemaObject>& object,
                                            const rc::Ptr<HF::I_LDatabase>&, int property,
                                            const HF::LVariant& value) const
{
    const rc::Ptr<HF::I_LSchemaObject> table = TableOfColumn(object);
    if (property == PROP_FIELD_KEY_FLAG && value.ToBool())
        return table ? QString() : QObject::tr("Undefined parent table");
    if (property != PROP_UNIQUE || value.ToBool() || !table)
        return QString();
    const QString name = object->get_Name();
    const QStringList alone{name};
    if (table->GetStringList(PROP_KEY_COLUMNS) == alone)
        return QString();
    const auto schema = rc::cast<HF::I_LSchemaObject>(table->get_ParentObject());
    if (!schema)
        return QString();
    for (const rc::Ref<HF::I_LSchemaObject>& link : schema->get_ChildObjects(HF::TYPE_LINK).Force())
        if (link->GetString(PROP_LINK_PARENT_TABLE) == table->get_Name() && link->GetStringList(PROP_KEY_COLUMNS) == alone)
            return QLatin1String("Field ") + HF::QuoteName(name, rc::Ptr<const HF::LTreeItem>(table))
                   + QLatin1String(" is used for link ") + link->get_NameForQuery(true)
                   + QLatin1String(" as key, remove it first");
    return QString();
}

QList<HF::LQueryNode> orbDuckDB_ModelField::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                          HF::ELQueryKind kind, int property,
                                                          const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const rc::Ptr<HF::I_LSchemaObject> table = TableOfColumn(object);
    if (!table)
        return {node};
    const QString alter = QLatin1String("ALTER TABLE ") + table->get_NameForQuery(true);
    const QString column = QLatin1String(" ALTER COLUMN ") + object->get_NameQuoted();
    const auto nested = [&](int id, const HF::LVariant& change) {
        node.children += object->get_DatabaseEngine()->GetQueryNodes(object, HF::KIND_CHANGE_PROPERTY, id, change);
    };
    switch (kind) {
    case HF::KIND_ALTER_GROUP: node.sql = ChangeTypeStatement(object); break;
    case HF::KIND_CHANGE_PROPERTY:
        if (property == PROP_DEFAULT) {
            const QString text = value.ToString();
            node.sql = alter + column
                       + (text.isEmpty() ? QStringLiteral(" DROP DEFAULT;")
                                         : QLatin1String(" SET DEFAULT ") + DefaultLiteral(text) + u';');
        } else if (property == PROP_NULLABLE) {
            node.sql = alter + column + (value.ToBool() ? QLatin1String(" DROP") : QLatin1String(" SET"))
                       + QLatin1String(" NOT NULL");
        } else {
            node.sql = ColumnModel::ChangeStatement(object, property, value);
        }
        break;
    case HF::KIND_CREATE:
        node.sql = alter + QLatin1String(" ADD COLUMN ") + ColumnDefinition(object, true) + u';';
        if (!object->GetBool(PROP_NULLABLE))
            nested(PROP_NULLABLE, false);
        if (const QString comment = object->GetString(PROP_COMMENT); !comment.isEmpty())
            nested(PROP_COMMENT, comment);
        break;
    case HF::KIND_DROP: node.sql = alter + QLatin1String(" DROP ") + object->get_NameQuoted(); break;
    default: break;
    }
    return {node};
}

HF::LVariant orbDuckDB_ModelField::ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                                      const rc::Ptr<HF::I_LDatabase>&, QPoint position) const
{
    return property == PROP_TYPE_NAME ? ColumnModel::ShowTypeEditor(object, position) : HF::LVariant::Empty();
}

void orbDuckDB_ModelField::UpdatePropertiesFlags(const rc::Ref<HF::I_LSchemaObject>& object,
                                                 const rc::Ptr<HF::I_LDatabase>& database) const
{
    ColumnModel::UpdateFlags(object, database);
}

void orbDuckDB_ModelField::UpdateDependentProperties(const rc::Ref<HF::I_LSchemaObject>& object, int property) const
{
    ColumnModel::UpdateDependent(object, property);
}
