// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/database_model.h"

#include "model/text_helpers.h"

#include <QObject>

void orbDuckDB_ModelDatabase::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Database");
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 135);
        HF::AddPropertyTo(made, title, PROP_PATH, HF::LVariant::EmptyString(), 131461);
        HF::AddPropertyTo(made, title, PROP_SEARCH_PATH, HF::LVariant::EmptyStringList(), 2109440);
        for (const int count : {104, 112, int(PROP_COUNT_SCHEMAS)})
            HF::AddPropertyTo(made, HF::CATEGORY_INFORMATION, count, HF::LVariant::EmptyLong(), 1);
        return made;
    }();
    list.AssignProperties(properties);
}

QList<HF::LQueryNode> orbDuckDB_ModelDatabase::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                             HF::ELQueryKind kind, int property,
                                                             const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    if (kind == HF::KIND_CHANGE_PROPERTY && property == PROP_SEARCH_PATH)
        node.sql = QStringLiteral("SET search_path=%1;").arg(QuoteStringLiteral(value.ToStringList().join(u',')));
    return {node};
}
