// SPDX-License-Identifier: GPL-3.0-or-later
#include "catalog/check.h"

#include "catalog/column_text.h"
#include "catalog/list_infos.h"

rc::Ref<HF::I_LSchemaObject> MakeCheck(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    return rc::make<orbDuckDB_Check>(owner, name);
}

orbDuckDB_Check::orbDuckDB_Check(const rc::Ref<HF::I_LSchemaObject>& owner, const QString& name)
{
    put_ParentObject(owner);
    AssignName(name);
}

void orbDuckDB_Check::FromQuery(const rc::Ref<const HF::I_LCursor>& cursor)
{
    QString expression = ColumnText(cursor, "expression");
    if (expression.startsWith(u'(') && expression.endsWith(u')'))
        expression = expression.mid(1, expression.size() - 2).trimmed();
    AssignPropertyValueSilent(PROP_CHECK_EXPRESSION, expression);
}
