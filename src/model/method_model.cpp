// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/method_model.h"

#include "model/column_model.h"
#include "model/column_text.h"

#include <QObject>

void orbDuckDB_ModelMethod::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Method");
        const QString settings = QString::fromLatin1(HF::CATEGORY_SETTINGS);
        const QString flags = QString::fromLatin1(HF::CATEGORY_FLAGS);
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 420);
        HF::AddPropertyTo(made, title, PROP_FIELD_POSITION, HF::LVariant::EmptyLong(), 33);
        HF::AddPropertyTo(made, title, PROP_COMMENT, HF::LVariant::EmptyString(), 40);
        HF::AddPropertyTo(made, settings, PROP_TYPE_NAME, HF::LVariant::EmptyString(), 2101280);
        HF::AddPropertyTo(made, settings, PROP_METHOD_EXPRESSION, HF::LVariant::EmptyString(), 164);
        ColumnModel::AddTypeProperties(made);
        HF::AddPropertyTo(made, flags, PROP_INDEXED, HF::LVariant::EmptyBool(), 128);
        HF::AddPropertyTo(made, flags, PROP_UNIQUE, HF::LVariant::EmptyBool(), 128);
        return made;
    }();
    list.AssignProperties(properties);
}

QMap<int, int> orbDuckDB_ModelMethod::GetPropertiesGroups() const
{
    return ColumnModel::PropertiesGroups();
}

bool orbDuckDB_ModelMethod::IsRecreatingProperty(const rc::Ref<const HF::I_LSchemaObject>&, int property) const
{
    return property == PROP_NAME || property == PROP_METHOD_EXPRESSION;
}

QString orbDuckDB_ModelMethod::CheckProperty(const rc::Ref<const HF::I_LSchemaObject>&, const rc::Ptr<HF::I_LDatabase>&,
                                             int property, const HF::LVariant& value) const
{
    return property == PROP_METHOD_EXPRESSION && value.ToString().isEmpty() ? QObject::tr("Method cannot be empty!")
                                                                            : QString();
}

QList<HF::LQueryNode> orbDuckDB_ModelMethod::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                           HF::ELQueryKind kind, int property,
                                                           const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const rc::Ptr<HF::I_LSchemaObject> table = TableOfColumn(object);
    if (!table)
        return {node};
    if (kind == HF::KIND_ALTER_GROUP)
        node.sql = ChangeTypeStatement(object);
    else if (kind == HF::KIND_CHANGE_PROPERTY)
        node.sql = ColumnModel::ChangeStatement(object, property, value);
    else if (kind == HF::KIND_DROP)
        node.sql = QLatin1String("ALTER TABLE ") + table->get_NameForQuery(true) + QLatin1String(" DROP ")
                   + object->get_NameQuoted();
    return {node};
}

HF::LVariant orbDuckDB_ModelMethod::ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                                       const rc::Ptr<HF::I_LDatabase>&, QPoint position) const
{
    return property == PROP_TYPE_NAME ? ColumnModel::ShowTypeEditor(object, position) : HF::LVariant::Empty();
}

void orbDuckDB_ModelMethod::UpdatePropertiesFlags(const rc::Ref<HF::I_LSchemaObject>& object,
                                                  const rc::Ptr<HF::I_LDatabase>& database) const
{
    ColumnModel::UpdateFlags(object, database);
}

void orbDuckDB_ModelMethod::UpdateDependentProperties(const rc::Ref<HF::I_LSchemaObject>& object, int property) const
{
    ColumnModel::UpdateDependent(object, property);
}
