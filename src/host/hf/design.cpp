// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/design.h"

#include "hf/database_model.h"
#include "hf/engine.h"

#include <QObject>

namespace HF {

namespace {

bool SameName(const QString& one, const QString& other)
{
    return one.compare(other, Qt::CaseInsensitive) == 0;
}

} // namespace

LVariant ValueFor(const LProperty& property, const QVariant& value)
{
    switch (property.value.get_Type()) {
    case LVariant::Bool: return value.toBool();
    case LVariant::Long:
    case LVariant::ULong: return long(value.toLongLong());
    case LVariant::StringList: return value.toStringList();
    case LVariant::String: return value.toString();
    default: return LVariant::FromQVariant(value);
    }
}

LDesign::LDesign(const rc::Ref<I_LDatabase>& database)
    : m_root(LModelObject::Make(database, nullptr, TYPE_DATABASE, rc::Ptr<I_LSchemaObject>(database)))
{
}

LDesign::~LDesign()
{
    m_root->DropChildLists();
}

rc::Ptr<LModelObject> LDesign::ModelOf(const rc::Ref<const LTreeItem>& object) const
{
    const auto* const source = dynamic_cast<const I_LSchemaObject*>(object.get());
    if (!source)
        return nullptr;
    if (m_root->get_Source().get() == source)
        return rc::Ptr<LModelObject>(m_root);
    const rc::Ptr<LTreeItem> above = source->get_ParentObject();
    const rc::Ptr<LModelObject> parent = above ? ModelOf(rc::Ref<const LTreeItem>(*above)) : nullptr;
    if (!parent)
        return nullptr;
    for (const rc::Ref<LModelObject>& child : parent->get_Models(source->get_ObjectType()))
        if (child->get_Source().get() == source)
            return rc::Ptr<LModelObject>(child);
    // The lists have been read anew since: a name says as much.
    return parent->get_Model(source->get_ObjectType(), source->get_Name());
}

std::vector<rc::Ref<LModelObject>> LDesign::LinksOf(const rc::Ref<LModelObject>& table) const
{
    std::vector<rc::Ref<LModelObject>> links;
    if (const auto schema = table->get_ParentModel())
        for (const rc::Ref<LModelObject>& link : schema->get_Models(TYPE_LINK))
            if (SameName(link->GetString(PROP_LINK_TABLE), table->get_Name())
                || SameName(link->GetString(PROP_LINK_PARENT_TABLE), table->get_Name()))
                links.push_back(link);
    return links;
}

rc::Ptr<LModelObject> LDesign::Create(const rc::Ref<LModelObject>& parent, ELObjectType type, const QString& name)
{
    if (type == TYPE_LINK && parent->get_ObjectType() == TYPE_TABLE) {
        const rc::Ptr<LModelObject> schema = parent->get_ParentModel();
        if (!schema)
            return nullptr;
        const rc::Ref<LModelObject> link = schema->CreateChild(type, name);
        link->ProcessProperty(PROP_LINK_TABLE, parent->get_Name()).Force();
        return rc::Ptr<LModelObject>(link);
    }
    if (!parent->HasChildList(type))
        return nullptr;
    const rc::Ref<LModelObject> child = parent->CreateChild(type, name);
    // As in SQL, a column takes nulls unless somebody says otherwise.
    if (type == TYPE_FIELD)
        child->AssignPropertyValueSilent(PROP_NULLABLE, true);
    return rc::Ptr<LModelObject>(child);
}

QString LDesign::ChangeFlag(const rc::Ref<LModelObject>& field, int property, bool on)
{
    const rc::Ptr<LModelObject> table = field->get_ParentModel();
    const QString name = field->GetString(PROP_NAME);
    const ELObjectType type = property == PROP_UNIQUE ? TYPE_UNIQUE : TYPE_INDEX;
    bool found = false;
    for (const rc::Ref<LModelObject>& holder : table->get_Models(type)) {
        if (holder->IsMarkedDropped()
            || !holder->GetStringList(PROP_COLUMNS).contains(name, Qt::CaseInsensitive))
            continue;
        found = true;
        if (on)
            continue;
        if (type == TYPE_INDEX && holder->GetBool(PROP_UNIQUE))
            return QObject::tr("You need to reset \"Unique\" flag first!");
        Drop(holder);
    }
    if (on && !found) {
        const QString made = type == TYPE_UNIQUE ? QLatin1String("unique_") + name
                                                 : table->GetString(PROP_NAME) + u'_' + name + QLatin1String("_idx");
        const rc::Ref<LModelObject> holder = table->CreateChild(type, made);
        holder->ProcessProperty(PROP_COLUMNS, QStringList{name}).Force();
    }
    field->AssignPropertyValue(property, on);
    return QString();
}

QString LDesign::Change(const rc::Ref<LModelObject>& object, int property, const LVariant& value)
{
    const QString problem = object->Model().CheckProperty(object, get_Database(), property, value);
    if (!problem.isEmpty())
        return problem;
    if (property == PROP_NAME && value.ToString().isEmpty())
        return QObject::tr("The name cannot be empty!");
    const QList<LProperty> known = object->get_Properties();
    const auto declared = std::find_if(known.begin(), known.end(), [&](const LProperty& each) { return each.id == property; });
    if (declared == known.end())
        return QObject::tr("There is no property %1 here.").arg(property);
    const bool isField = object->get_ObjectType() == TYPE_FIELD || object->get_ObjectType() == TYPE_METHOD;
    if (isField && (property == PROP_UNIQUE || property == PROP_INDEXED) && object->get_ParentModel())
        return ChangeFlag(object, property, value.ToBool());
    object->ProcessProperty(property, value).Force();
    return QString();
}

void LDesign::Drop(const rc::Ref<LModelObject>& object)
{
    const rc::Ptr<LModelObject> parent = object->get_ParentModel();
    if (object->get_ObjectType() == TYPE_TABLE && object->IsJustCreated())
        for (const rc::Ref<LModelObject>& link : LinksOf(object))
            if (link->IsJustCreated() && parent)
                parent->Forget(link);
    if (object->IsJustCreated() && parent)
        parent->Forget(object);
    else
        object->MarkDropped(true);
}

} // namespace HF
