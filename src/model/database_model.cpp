// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/database_model.h"

#include "model/hidden_names.h"
#include "model/text_helpers.h"

#include "engine/engine_version.h"
#include "hf/model_object.h"
#include "hf/open_transaction.h"
#include "hf/sql_text.h"

#include <QActionGroup>
#include <QMenu>

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

HF::LVariant orbDuckDB_ModelDatabase::ShowPropertyEditor(const rc::Ref<HF::I_LSchemaObject>& object, int property,
                                                         const rc::Ptr<HF::I_LDatabase>& database,
                                                         QPoint position) const
{
    if (property != PROP_SEARCH_PATH || !database)
        return {};
    QStringList chosen = object->GetStringList(PROP_SEARCH_PATH);
    QStringList others;
    for (const QString& name : database->get_ChildObjectsNames(HF::TYPE_SCHEMA))
        if (!chosen.contains(name))
            others.append(name);

    QMenu menu;
    QActionGroup group(&menu);
    group.setExclusive(false);
    QAction* const all = menu.addAction(QObject::tr("Select All Schemas"));
    QAction* const none = menu.addAction(QObject::tr("Deselect All Schemas"));
    all->setEnabled(!others.isEmpty());
    none->setEnabled(!chosen.isEmpty());
    menu.addSeparator();
    const auto addNames = [&](const QStringList& names, bool checked) {
        for (const QString& name : names) {
            QAction* const action = menu.addAction(QString(name).replace(u'&', QLatin1String("&&")));
            action->setData(name);
            action->setCheckable(true);
            action->setChecked(checked);
            group.addAction(action);
        }
    };
    addNames(chosen, true);
    if (!chosen.isEmpty())
        menu.addSeparator();
    addNames(others, false);

    QObject::connect(&group, &QActionGroup::triggered, &menu, [&chosen](QAction* action) {
        const QString name = action->data().toString();
        if (!action->isChecked())
            chosen.removeAll(name);
        else if (!chosen.contains(name))
            chosen.append(name);
    });
    QObject::connect(all, &QAction::triggered, &menu, [&chosen, &others] { chosen += others; });
    QObject::connect(none, &QAction::triggered, &menu, [&chosen] { chosen.clear(); });
    menu.exec(position);
    return chosen;
}

QStringList orbDuckDB_ModelDatabase::GetChangeProblems(const rc::Ref<const HF::I_LModelObject>& object) const
{
    QStringList problems = LDatabaseModelObject::GetChangeProblems(object);
    const rc::Ptr<HF::I_LDatabase> database = object->get_Database();
    if (!database)
        return problems;
    if (database->get_IsReadOnly().Force())
        problems.append(QObject::tr("The database is open for reading only."));
    if (HF::IsInTransaction(rc::Ref(database)))
        problems.append(QObject::tr("A transaction is open in this session; end it first."));
    if (const auto* const root = dynamic_cast<const HF::LModelObject*>(object.get()))
        problems += HiddenNameProblems(*root);
    return problems;
}

std::pair<QStringList, QStringList>
orbDuckDB_ModelDatabase::GetChangeFrame(const rc::Ref<HF::I_LDatabase>& database) const
{
    QStringList before;
    QStringList after;
    const auto whileChanging = [&](const QString& setting, const QString& value) {
        const std::optional<QString> now =
            HF::EvaluateSQL(database, QStringLiteral("SELECT current_setting('%1')").arg(setting));
        if (!now || *now == value)
            return;
        before.append(QStringLiteral("SET %1='%2'").arg(setting, value));
        after.append(QStringLiteral("SET %1=%2").arg(setting, QuoteStringLiteral(*now)));
    };
    whileChanging(QStringLiteral("checkpoint_threshold"), QStringLiteral("1B"));
    // Rows that others point to must come before them.
    whileChanging(QStringLiteral("preserve_insertion_order"), QStringLiteral("true"));
    if (EngineVersionNumber() >= 10500)
        whileChanging(QStringLiteral("auto_checkpoint_skip_wal_threshold"), QStringLiteral("0"));
    return {before, after};
}
