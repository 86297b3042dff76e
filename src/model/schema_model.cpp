// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/schema_model.h"

#include "hf/model_object.h"
#include "hf/sql_text.h"
#include "model/sequence_model.h"

#include <QObject>

void orbDuckDB_ModelSchema::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Schema");
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 135);
        HF::AddPropertyTo(made, title, PROP_OBJECT_ID, HF::LVariant::EmptyLong(), 16777217);
        for (const int count :
             {PROP_COUNT_FUNCTIONS, PROP_COUNT_LINKS, PROP_COUNT_TABLES, PROP_COUNT_VIEWS, PROP_COUNT_SEQUENCES})
            HF::AddPropertyTo(made, HF::CATEGORY_INFORMATION, count, HF::LVariant::EmptyLong(), 1);
        return made;
    }();
    list.AssignProperties(properties);
}

QList<HF::LQueryNode> orbDuckDB_ModelSchema::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                           HF::ELQueryKind kind, int property,
                                                           const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const QString name = object->get_NameQuoted();
    if (kind == HF::KIND_CREATE)
        node.sql = QStringLiteral("CREATE SCHEMA IF NOT EXISTS ") + name + QStringLiteral(";\n");
    else if (kind == HF::KIND_DROP)
        node.sql = QStringLiteral("DROP SCHEMA IF EXISTS ") + name + QStringLiteral(" CASCADE;");
    else if (kind == HF::KIND_CHANGE_PROPERTY && property == PROP_NAME)
        node.sql = QStringLiteral("ALTER SCHEMA ") + name + QStringLiteral(" RENAME TO ")
                   + HF::QuoteName(value.ToString(), rc::Ptr<const HF::LTreeItem>(object)) + u';';
    return {node};
}

QStringList orbDuckDB_ModelSchema::GetChangeWarnings(const rc::Ref<const HF::I_LModelObject>& object) const
{
    const auto* const schema = dynamic_cast<const HF::LModelObject*>(object.get());
    if (!schema || !schema->IsMarkedDropped() || schema->IsJustCreated())
        return {};
    QStringList names;
    for (const int type : {HF::TYPE_TABLE, HF::TYPE_VIEW, HF::TYPE_FUNCTION, HF::TYPE_SEQUENCE})
        for (const rc::Ref<HF::LModelObject>& child : schema->get_Models(type))
            names.append(child->get_Name());
    if (names.isEmpty())
        return {};
    QStringList warnings{QObject::tr("Dropping the schema \"%1\" drops everything in it: %2")
                             .arg(schema->get_Name(), names.join(QLatin1String(", ")))};
    // CASCADE goes on into other schemas.
    for (const rc::Ref<HF::LModelObject>& sequence : schema->get_Models(HF::TYPE_SEQUENCE))
        warnings += SequenceDropWarnings(rc::Ref<const HF::I_LSchemaObject>(sequence), schema->get_Name());
    return warnings;
}
