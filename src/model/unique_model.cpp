// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/unique_model.h"

#include "model/table_script.h"
#include "model/text_helpers.h"

#include <QObject>

void orbDuckDB_ModelUnique::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Unique");
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 135);
        HF::AddPropertyTo(made, QString::fromLatin1(HF::CATEGORY_SETTINGS), PROP_COLUMNS,
                          HF::LVariant::EmptyStringList(), 12328);
        return made;
    }();
    list.AssignProperties(properties);
}

QList<HF::LQueryNode> orbDuckDB_ModelUnique::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                           HF::ELQueryKind kind, int property,
                                                           const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const auto table = rc::cast<HF::I_LSchemaObject>(object->get_ParentObject());
    if (!table)
        return {node};
    const UniqueDescription own{object->GetStringList(PROP_COLUMNS), QString()};
    const auto describe = [&] { return DescribeTable(rc::Ref<HF::I_LSchemaObject>(table)); };
    if (kind == HF::KIND_CREATE) {
        node.sql = WrapSingleOperation(RebuildScript(describe()));
    } else if (kind == HF::KIND_DROP) {
        orbDuckDB_DescTable description = describe();
        if (description.uniques.removeOne(own))
            node.sql = WrapSingleOperation(RebuildScript(description));
    } else if (kind == HF::KIND_CHANGE_PROPERTY && property == PROP_COLUMNS) {
        orbDuckDB_DescTable description = describe();
        if (const qsizetype at = description.uniques.indexOf(own); at >= 0)
            description.uniques[at].columns = value.ToStringList();
        node.sql = WrapSingleOperation(RebuildScript(description));
    } else if (kind == HF::KIND_DEFINITION) {
        node.sql = UniqueText(object);
    }
    return {node};
}
