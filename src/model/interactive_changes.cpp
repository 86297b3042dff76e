// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/interactive_changes.h"

#include "hf/design.h"
#include "hf/log.h"
#include "model/table_script.h"

#include <QObject>

QString UniqueFieldScript(const rc::Ref<HF::I_LTable>& table, const QString& field, bool unique)
{
    if (const QString unread = UnreadParts(*table); !unread.isEmpty()) {
        HF::LogError(unread);
        return {};
    }
    orbDuckDB_DescTable description = DescribeTable(table);
    const auto holds = [&](const UniqueDescription& one) { return one.columns.contains(field, Qt::CaseInsensitive); };
    if (!unique)
        description.uniques.removeIf(holds);
    else if (std::none_of(description.uniques.begin(), description.uniques.end(), holds))
        description.uniques.append({{field}, QString()});
    // A table of somebody's with the usual name must not be in the way.
    const auto schema = rc::cast<HF::I_LSchemaObject>(table->get_ParentObject());
    const auto isTaken = [&](const QString& name) {
        return schema && schema->get_ChildObjectsNames(HF::TYPE_TABLE).contains(name, Qt::CaseInsensitive);
    };
    if (!isTaken(TemporaryTableName))
        return RebuildScript(description);
    QString copy = TemporaryTableName;
    for (int number = 2; isTaken(copy); ++number)
        copy = TemporaryTableName + u'_' + QString::number(number);
    return TakeOutScript(description, copy) + PutBackScript(description, description.name, copy);
}

bool DropFields(const rc::Ref<HF::I_LTable>& table, const QStringList& names, int type)
{
    const rc::Ptr<HF::I_LDatabase> database = table->get_Database();
    if (!database)
        return false;
    const auto design = rc::make<HF::LDesign>(rc::Ref(database));
    const rc::Ptr<HF::LModelObject> model = design->ModelOf(table);
    if (!model)
        return false;
    for (const QString& name : names)
        if (const auto field = model->get_Model(type, name))
            design->Drop(rc::Ref(field));
    const HF::LDesignReport report = design->Apply();
    // What the engine says has been told; what stood against it before has not.
    if (!report.success && !std::any_of(report.steps.begin(), report.steps.end(), [](const auto& step) {
            return step.state == HF::LDesignReport::Failed;
        }))
        HF::LogError(report.error);
    return report.success;
}
