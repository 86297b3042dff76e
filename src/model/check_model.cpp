// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/check_model.h"

#include "model/table_script.h"
#include "model/text_helpers.h"

#include <QObject>

void orbDuckDB_ModelCheck::CreateProperties(HF::LHasProperties::Properties& list) const
{
    static const QList<HF::LProperty> properties = [] {
        const QString title = QObject::tr("DuckDB Check");
        QList<HF::LProperty> made;
        HF::AddPropertyTo(made, title, PROP_NAME, HF::LVariant::EmptyString(), 135);
        HF::AddPropertyTo(made, QString::fromLatin1(HF::CATEGORY_SETTINGS), PROP_CHECK_EXPRESSION,
                          HF::LVariant::EmptyString(), 428);
        return made;
    }();
    list.AssignProperties(properties);
}

QList<HF::LQueryNode> orbDuckDB_ModelCheck::GetQueryNodes(const rc::Ref<const HF::I_LSchemaObject>& object,
                                                          HF::ELQueryKind kind, int property,
                                                          const HF::LVariant& value) const
{
    HF::LQueryNode node = MakeNode(object, kind, property, value);
    const auto table = rc::cast<HF::I_LSchemaObject>(object->get_ParentObject());
    const bool changes = kind == HF::KIND_CHANGE_PROPERTY && property == PROP_CHECK_EXPRESSION;
    if (!table || !(changes || kind == HF::KIND_CREATE || kind == HF::KIND_DROP))
        return {node};
    const CheckDescription own{object->GetString(PROP_CHECK_EXPRESSION), object->get_Name()};
    orbDuckDB_DescTable description = DescribeTable(rc::Ref<HF::I_LSchemaObject>(table));
    const qsizetype at = description.checks.indexOf(own);
    if (kind == HF::KIND_CREATE) {
        if (at < 0 && !own.expression.isEmpty())
            description.checks.append(own);
    } else if (at < 0) {
        return {node};
    } else if (kind == HF::KIND_DROP) {
        description.checks.removeAt(at);
    } else {
        description.checks[at].expression = value.ToString();
    }
    node.sql = WrapSingleOperation(RebuildScript(description));
    return {node};
}
