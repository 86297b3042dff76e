// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/link_model.h"

#include "hf/engine.h"
#include "model/table_script.h"
#include "model/text_helpers.h"

#include <QObject>

namespace {

/// The table that the foreign key stands in; null when there is none of that name.
rc::Ptr<HF::I_LSchemaObject> TableOfLink(const rc::Ref<const HF::I_LSchemaObject>& link)
{
    rc::Ptr<HF::LTreeItem> owner = link->get_ParentObject();
    if (owner && owner->get_ObjectType() == HF::TYPE_TABLE)
        owner = owner->get_ParentObject();
    const auto schema = rc::cast<HF::I_LSchemaObject>(owner);
    return schema ? schema->get_ChildObject(HF::TYPE_TABLE, link->GetString(PROP_LINK_TABLE)).Force() : nullptr;
}

} // namespace

void orbDuckDB_ModelLink::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Link");
        const QString settings = QString::fromLatin1(HF::CATEGORY_SETTINGS);
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 135);
        HF::AddPropertyTo(made, title, PROP_SCHEMA_NAME, HF::LVariant::EmptyString(), 33);
        HF::AddPropertyTo(made, settings, PROP_TYPE_NAME, QStringLiteral("Foreign Key"), 1041);
        HF::AddPropertyTo(made, settings, PROP_LINK_CARDINALITY,
                          QStringList{QStringLiteral("ONE to ONE"), QStringLiteral("ONE to MANY")}, 129);
        for (const int property :
             {PROP_LINK_PARENT_SCHEMA, PROP_LINK_SCHEMA, PROP_LINK_PARENT_TABLE, PROP_LINK_TABLE})
            HF::AddPropertyTo(made, settings, property, HF::LVariant::EmptyString(), 161);
        for (const int property : {PROP_KEY_COLUMNS, PROP_LINK_COLUMNS})
            HF::AddPropertyTo(made, settings, property, HF::LVariant::EmptyStringList(), 8225);
        return made;
    }();
    list.AssignProperties(properties);
}

QList<HF::LQueryNode> orbDuckDB_ModelLink::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                         HF::ELQueryKind kind, int property,
                                                         const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    if (kind == HF::KIND_CHANGE_PROPERTY) {
        switch (property) {
        case PROP_KEY_COLUMNS:
        case PROP_LINK_CARDINALITY:
        case PROP_LINK_COLUMNS:
        case PROP_LINK_TABLE:
        case PROP_LINK_PARENT_TABLE:
            node.sql = QLatin1String("\n-- ") + QObject::tr("Property will be changed on update table.");
            break;
        default: break;
        }
        return {node};
    }
    if (kind != HF::KIND_CREATE && kind != HF::KIND_DROP && kind != HF::KIND_REBUILD)
        return {node};
    const rc::Ptr<HF::I_LSchemaObject> found = TableOfLink(object);
    if (!found)
        return kind == HF::KIND_REBUILD ? QList<HF::LQueryNode>() : QList<HF::LQueryNode>{node};
    const rc::Ref<HF::I_LSchemaObject> table(found);
    if (kind == HF::KIND_REBUILD)
        return object->get_DatabaseEngine()->GetQueryNodes(table, HF::KIND_REBUILD, -1, HF::LVariant());

    orbDuckDB_DescTable description = DescribeTable(table);
    const LinkDescription link = DescribeLink(object);
    const bool known = description.links.contains(link);
    if (kind == HF::KIND_DROP) {
        if (!known)
            return {node};
        description.links.removeOne(link);
    } else if (!known) {
        if (link.columns.isEmpty() || link.parentColumns.isEmpty() || link.table.isEmpty()
            || link.parentTable.isEmpty())
            return {node};
        description.links.append(link);
    }
    node.sql = WrapSingleOperation(RebuildScript(description));
    return {node};
}

void orbDuckDB_ModelLink::UpdatePropertiesFlags(const rc::Ref<HF::I_LSchemaObject>& object,
                                                const rc::Ptr<HF::I_LDatabase>&) const
{
    if (object->Evaluate(HF::EVAL_EXISTS).ToBool())
        return;
    for (const int property : {PROP_LINK_CARDINALITY, PROP_LINK_COLUMNS, PROP_KEY_COLUMNS, PROP_LINK_TABLE,
                               PROP_LINK_PARENT_TABLE, PROP_LINK_SCHEMA, PROP_LINK_PARENT_SCHEMA})
        object->SetPropertyFlag(property, HF::PROPERTY_READONLY, false);
}
