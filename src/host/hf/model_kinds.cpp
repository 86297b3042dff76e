// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/model_kinds.h"

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/model_object.h"

#include <QMenu>

namespace HF {

const char* const CATEGORY_SETTINGS = "Settings";
const char* const CATEGORY_FLAGS = "Flags";

namespace {

/// A list that its owner has read is read anew.
bool Reload(const rc::Ptr<LDatabaseObject_Impl>& owner, int type)
{
    const rc::Ptr<LSchemaItemList> list = owner ? owner->get_ChildList(type) : nullptr;
    return !list || !list->IsBuilt() || list->ReloadObjects();
}

rc::Ptr<I_LSchemaObject> ParentOf(const rc::Ptr<I_LSchemaObject>& object)
{
    return object ? rc::cast<I_LSchemaObject>(object->get_ParentObject()) : nullptr;
}

/// A check mark for each name of a table's columns; the names in the order in which they were chosen.
LVariant SelectColumns(const rc::Ptr<I_LSchemaObject>& table, QStringList chosen, QPoint position)
{
    if (!table)
        return LVariant::Empty();
    QMenu menu;
    QStringList names = chosen;
    for (const int type : {TYPE_FIELD, TYPE_METHOD})
        for (const rc::Ref<I_LSchemaObject>& column : table->get_ChildObjects(type).Force())
            if (const QString name = column->GetString(PROP_NAME); !names.contains(name))
                names.append(name);
    for (const QString& name : names) {
        QAction* const action = menu.addAction(QString(name).replace(u'&', QLatin1String("&&")));
        action->setCheckable(true);
        action->setChecked(chosen.contains(name));
        QObject::connect(action, &QAction::toggled, &menu, [&chosen, name](bool on) {
            if (on)
                chosen.append(name);
            else
                chosen.removeAll(name);
        });
    }
    menu.exec(position);
    return chosen;
}

QString ColumnsInfo(const rc::Ref<const I_LSchemaObject>& object)
{
    return u'(' + object->GetStringList(PROP_COLUMNS).join(QLatin1String(", ")) + u')';
}

} // namespace

LVariant SelectFromList(QPoint position, const QStringList& list, const QString& current)
{
    QMenu menu;
    QAction* active = nullptr;
    for (const QString& text : list) {
        if (text.isEmpty()) {
            menu.addSeparator();
            continue;
        }
        QAction* const action = menu.addAction(QString(text).replace(u'&', QLatin1String("&&")));
        action->setData(text);
        action->setCheckable(true);
        action->setChecked(text.compare(current, Qt::CaseInsensitive) == 0);
        if (action->isChecked())
            active = action;
    }
    const QAction* const chosen = menu.exec(position, active);
    return chosen ? LVariant(chosen->data().toString()) : LVariant::Empty();
}

// Helpers of all kinds

void LDatabaseModelObject::UpdatePropertyValue(const rc::Ref<I_LSchemaObject>& object, int property,
                                               const LVariant& value)
{
    if (const auto model = rc::cast<I_LModelObject>(object))
        model->KeepOriginal(property);
    object->AssignPropertyValue(property, value);
}

Qt::CaseSensitivity LDatabaseModelObject::GetCaseSensitivity(const rc::Ref<const I_LSchemaObject>& object)
{
    const LDatabaseEngine* const engine = object->get_DatabaseEngine();
    return engine && engine->GetCaseSensitivity(object) == CASE_SENSITIVE ? Qt::CaseSensitive : Qt::CaseInsensitive;
}

rc::Ptr<I_LSchemaObject> LDatabaseModelObject::CatalogObject(const rc::Ref<I_LSchemaObject>& object)
{
    const auto model = rc::cast<I_LModelObject>(object);
    return model ? model->get_Source() : rc::Ptr<I_LSchemaObject>(object);
}

void LDatabaseModelObject::RefreshLists(const rc::Ptr<LTreeItem>& owner, std::initializer_list<int> types)
{
    const auto object = rc::cast<LDatabaseObject_Impl>(owner);
    for (const int type : types)
        Reload(object, type);
}

QList<LQueryNode> LDatabaseModelObject::NodesOf(const rc::Ref<const I_LModelObject>& object, ELQueryKind kind,
                                                int property, const LVariant& value) const
{
    const LCommittedName committed(object);
    return GetQueryNodes(object, kind, property, value);
}

bool LDatabaseModelObject::IsDerivedProperty(int) const
{
    return false;
}

// What changes come to

QList<LQueryNode> LDatabaseModelObject::GetChangeNodes(const rc::Ref<const I_LModelObject>& object) const
{
    const bool created = object->Evaluate(EVAL_JUST_CREATED).ToBool();
    if (object->IsMarkedDropped())
        return created ? QList<LQueryNode>() : NodesOf(object, KIND_DROP);
    if (created)
        return GetQueryNodes(object, KIND_CREATE, -1, LVariant());

    // A property whose change makes the object anew stands for all others of its kind.
    const QList<int> changed = object->get_ChangedProperties();
    const QMap<int, int> groups = GetPropertiesGroups();
    QList<LQueryNode> nodes;
    QList<int> groupsDone;
    for (const int property : changed) {
        if (property == PROP_NAME || IsDerivedProperty(property))
            continue;
        if (const auto group = groups.constFind(property); group != groups.constEnd()) {
            if (!groupsDone.contains(*group))
                nodes += NodesOf(object, KIND_ALTER_GROUP);
            groupsDone.append(*group);
            continue;
        }
        const bool recreates = IsRecreatingProperty(object, PROP_NAME) && changed.contains(PROP_NAME);
        if (!recreates || !IsSqlProperty(property))
            nodes += NodesOf(object, KIND_CHANGE_PROPERTY, property, object->get_Property(property).value);
    }
    if (changed.contains(PROP_NAME))
        nodes += NodesOf(object, KIND_CHANGE_PROPERTY, PROP_NAME, object->GetString(PROP_NAME));
    return nodes;
}

QStringList LDatabaseModelObject::GetChangeProblems(const rc::Ref<const I_LModelObject>& object) const
{
    QStringList problems;
    if (object->IsMarkedDropped())
        return problems;
    for (const LProperty& property : object->get_Properties()) {
        if (!object->IsPropertyChanged(property.id) && !object->Evaluate(EVAL_JUST_CREATED).ToBool())
            continue;
        const QString problem = CheckProperty(object, object->get_Database(), property.id, property.value);
        if (!problem.isEmpty())
            problems.append(problem);
    }
    return problems;
}

// Kinds

LLazy<bool, true> LDatabaseModelTable::PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const
{
    if (const rc::Ptr<I_LSchemaObject> table = CatalogObject(object))
        RefreshLists(table->get_ParentObject(), {TYPE_TABLE, TYPE_LINK});
    return true;
}

LLazy<QString, false> LDatabaseModelField::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    return object->GetString(PROP_TYPE_NAME);
}

LLazy<QString, false> LDatabaseModelField::GetItemTip(const rc::Ref<const I_LSchemaObject>& object) const
{
    return object->GetString(PROP_COMMENT);
}

LLazy<bool, true> LDatabaseModelField::PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const
{
    const rc::Ptr<I_LSchemaObject> table = ParentOf(CatalogObject(object));
    RefreshLists(table, {TYPE_FIELD, TYPE_METHOD, TYPE_INDEX, TYPE_UNIQUE, TYPE_CHECK});
    RefreshLists(ParentOf(table), {TYPE_LINK});
    return true;
}

bool LDatabaseModelField::IsDerivedProperty(int property) const
{
    return property == PROP_UNIQUE || property == PROP_INDEXED;
}

LLazy<QString, false> LDatabaseModelMethod::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    return object->GetString(PROP_METHOD_EXPRESSION);
}

QList<LQueryNode> LDatabaseModelIndex::GetChangeNodes(const rc::Ref<const I_LModelObject>& object) const
{
    if (object->Evaluate(EVAL_JUST_CREATED).ToBool() || object->IsMarkedDropped())
        return LDatabaseModelObject::GetChangeNodes(object);
    // It is made anew once, whatever of it changed, with all that it is to be.
    for (const int property : {int(PROP_NAME), int(PROP_COLUMNS), int(PROP_UNIQUE)})
        if (object->IsPropertyChanged(property))
            return NodesOf(object, KIND_CHANGE_PROPERTY, property, object->get_Property(property).value);
    return LDatabaseModelObject::GetChangeNodes(object);
}

LLazy<QString, false> LDatabaseModelIndex::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    return ColumnsInfo(object);
}

LLazy<bool, true> LDatabaseModelIndex::PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const
{
    RefreshLists(ParentOf(CatalogObject(object)), {TYPE_INDEX, TYPE_FIELD});
    return true;
}

LVariant LDatabaseModelIndex::ShowPropertyEditor(const rc::Ref<I_LSchemaObject>& object, int property,
                                                 const rc::Ptr<I_LDatabase>&, QPoint position) const
{
    if (property != PROP_COLUMNS)
        return LVariant::Empty();
    return SelectColumns(GetParentTable(object), object->GetStringList(PROP_COLUMNS), position);
}

rc::Ptr<I_LSchemaObject> LDatabaseModelIndex::GetParentTable(const rc::Ref<const I_LSchemaObject>& object)
{
    const rc::Ptr<LTreeItem> parent = object->get_ParentObject();
    return parent && parent->get_ObjectType() == TYPE_TABLE ? rc::cast<I_LSchemaObject>(parent) : nullptr;
}

QString LDatabaseModelUnique::CheckProperty(const rc::Ref<const I_LSchemaObject>&, const rc::Ptr<I_LDatabase>&,
                                            int property, const LVariant& value) const
{
    return property == PROP_COLUMNS && value.ToStringList().isEmpty()
               ? QObject::tr("A unique needs at least one column!")
               : QString();
}

LLazy<QString, false> LDatabaseModelUnique::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    return ColumnsInfo(object);
}

LLazy<bool, true> LDatabaseModelUnique::PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const
{
    RefreshLists(ParentOf(CatalogObject(object)), {TYPE_UNIQUE, TYPE_FIELD});
    return true;
}

LVariant LDatabaseModelUnique::ShowPropertyEditor(const rc::Ref<I_LSchemaObject>& object, int property,
                                                  const rc::Ptr<I_LDatabase>&, QPoint position) const
{
    if (property != PROP_COLUMNS)
        return LVariant::Empty();
    return SelectColumns(rc::cast<I_LSchemaObject>(object->get_ParentObject()), object->GetStringList(PROP_COLUMNS),
                         position);
}

QString LDatabaseModelCheck::CheckProperty(const rc::Ref<const I_LSchemaObject>&, const rc::Ptr<I_LDatabase>&,
                                           int property, const LVariant& value) const
{
    return property == PROP_CHECK_EXPRESSION && value.ToString().trimmed().isEmpty()
               ? QObject::tr("A check needs an expression!")
               : QString();
}

LLazy<QString, false> LDatabaseModelCheck::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    return object->GetString(PROP_CHECK_EXPRESSION);
}

QString LDatabaseModelLink::CheckProperty(const rc::Ref<const I_LSchemaObject>&, const rc::Ptr<I_LDatabase>&,
                                          int property, const LVariant& value) const
{
    switch (property) {
    case PROP_LINK_COLUMNS:
    case PROP_KEY_COLUMNS:
        return value.ToStringList().isEmpty() ? QObject::tr("A link needs columns on both sides!") : QString();
    case PROP_LINK_TABLE:
    case PROP_LINK_PARENT_TABLE:
        return value.ToString().isEmpty() ? QObject::tr("A link needs two tables!") : QString();
    default: return QString();
    }
}

LLazy<QString, false> LDatabaseModelLink::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    return QStringLiteral("%1(%2) -> %3(%4)")
        .arg(object->GetString(PROP_LINK_TABLE), object->GetStringList(PROP_LINK_COLUMNS).join(QLatin1String(", ")),
             object->GetString(PROP_LINK_PARENT_TABLE),
             object->GetStringList(PROP_KEY_COLUMNS).join(QLatin1String(", ")));
}

LLazy<bool, true> LDatabaseModelLink::PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const
{
    if (const rc::Ptr<I_LSchemaObject> link = CatalogObject(object))
        RefreshLists(link->get_ParentObject(), {TYPE_LINK, TYPE_TABLE});
    return true;
}

QString LDatabaseModelView::CheckProperty(const rc::Ref<const I_LSchemaObject>&, const rc::Ptr<I_LDatabase>&,
                                          int property, const LVariant& value) const
{
    return property == PROP_DEFINITION && value.ToString().trimmed().isEmpty() ? QObject::tr("A view needs a query!")
                                                                               : QString();
}

LLazy<bool, true> LDatabaseModelView::PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const
{
    if (const rc::Ptr<I_LSchemaObject> view = CatalogObject(object))
        RefreshLists(view->get_ParentObject(), {TYPE_VIEW});
    return true;
}

LLazy<QString, false> LDatabaseModelFunction::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    const long count = object->GetLong(PROP_FUNCTION_ARG_COUNT);
    return count > 0 ? QObject::tr("%n arguments", "", int(count)) : QString();
}

LLazy<QString, false> LDatabaseModelSequence::GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const
{
    return object->GetString(PROP_SEQ_LAST_VALUE);
}

} // namespace HF
