// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/database_model.h"

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/model_object.h"

namespace HF {

I_LDatabaseModel::~I_LDatabaseModel() = default;

QString I_LDatabaseModel::CheckProperty(const rc::Ref<const I_LSchemaObject>&, const rc::Ptr<I_LDatabase>&, int,
                                        const LVariant&) const
{
    return QString();
}

void I_LDatabaseModel::CreateProperties(LHasProperties::Properties&) const {}

QList<LQueryNode> I_LDatabaseModel::GetQueryNodes(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind,
                                                  int property, const LVariant& value) const
{
    return {MakeNode(object, kind, property, value)};
}

bool I_LDatabaseModel::IsTransactable(const rc::Ref<const I_LSchemaObject>&) const
{
    return true;
}

void I_LDatabaseModel::UpdatePropertiesFlags(const rc::Ref<I_LSchemaObject>&, const rc::Ptr<I_LDatabase>&) const {}

LLazy<bool, true> I_LDatabaseModel::PostApplyChanges(const rc::Ref<I_LSchemaObject>&) const
{
    return true;
}

bool I_LDatabaseModel::IsRebuildRequired(const rc::Ref<const I_LSchemaObject>&) const
{
    return false;
}

LLazy<QString, false> I_LDatabaseModel::GetItemInfo(const rc::Ref<const I_LSchemaObject>&) const
{
    return QString();
}

LLazy<QString, false> I_LDatabaseModel::GetItemTip(const rc::Ref<const I_LSchemaObject>&) const
{
    return QString();
}

QMap<int, int> I_LDatabaseModel::GetPropertiesGroups() const
{
    return {};
}

bool I_LDatabaseModel::IsSqlProperty(int) const
{
    return false;
}

bool I_LDatabaseModel::IsRecreatingProperty(const rc::Ref<const I_LSchemaObject>&, int) const
{
    return false;
}

LVariant I_LDatabaseModel::ShowPropertyEditor(const rc::Ref<I_LSchemaObject>&, int, const rc::Ptr<I_LDatabase>&,
                                              QPoint) const
{
    return LVariant::Empty();
}

void I_LDatabaseModel::UpdateDependentProperties(const rc::Ref<I_LSchemaObject>&, int) const {}

QList<LQueryNode> I_LDatabaseModel::GetChangeNodes(const rc::Ref<const I_LModelObject>&) const
{
    return {};
}

QStringList I_LDatabaseModel::GetChangeProblems(const rc::Ref<const I_LModelObject>&) const
{
    return {};
}

QStringList I_LDatabaseModel::GetChangeWarnings(const rc::Ref<const I_LModelObject>&) const
{
    return {};
}

QList<LQueryNode> I_LDatabaseModel::GetChangeNodesOf(const RcList<I_LModelObject>& objects) const
{
    QList<LQueryNode> nodes;
    for (const rc::Ref<I_LModelObject>& object : objects)
        nodes += GetChangeNodes(object);
    return nodes;
}

std::pair<QStringList, QStringList> I_LDatabaseModel::GetChangeFrame(const rc::Ref<I_LDatabase>&) const
{
    return {};
}

LQueryNode I_LDatabaseModel::MakeNode(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                                      const LVariant& value)
{
    LQueryNode node;
    node.object = rc::Weak<const I_LSchemaObject>(object);
    node.property = property;
    node.kind = kind;
    node.value = value;
    return node;
}

I_LDatabaseModel* LDatabaseEngine::DummyModel()
{
    static I_LDatabaseModel model;
    return &model;
}

} // namespace HF
