// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/has_properties.h"
#include "hf/query_node.h"
#include "hf/rc_list.h"

#include <QMap>
#include <QPoint>

namespace HF {

class I_LDatabase;
class I_LSchemaObject;

/// Turns requests on an object into statements; one stateless object a kind.
/// It never runs SQL.
class HF_EXPORT I_LDatabaseModel
{
public:
    virtual ~I_LDatabaseModel();

    /// An error text, empty when the value is acceptable.
    virtual QString CheckProperty(const rc::Ref<const I_LSchemaObject>& object, const rc::Ptr<I_LDatabase>& database,
                                  int property, const LVariant& value) const;
    /// Fills the object's property list.
    virtual void CreateProperties(LHasProperties::Properties& list) const;
    virtual QList<LQueryNode> GetQueryNodes(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                                            const LVariant& value) const;
    virtual bool IsTransactable(const rc::Ref<const I_LSchemaObject>& object) const;
    virtual void UpdatePropertiesFlags(const rc::Ref<I_LSchemaObject>& object,
                                       const rc::Ptr<I_LDatabase>& database) const;
    virtual LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const;
    /// Whether pending changes need the owning table to be made anew.
    virtual bool IsRebuildRequired(const rc::Ref<const I_LSchemaObject>& object) const;
    virtual LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const;
    virtual LLazy<QString, false> GetItemTip(const rc::Ref<const I_LSchemaObject>& object) const;
    /// Property number -> group; one statement applies a whole group.
    virtual QMap<int, int> GetPropertiesGroups() const;
    /// The property holds SQL text.
    virtual bool IsSqlProperty(int property) const;
    /// A change of the property drops the object and creates it.
    virtual bool IsRecreatingProperty(const rc::Ref<const I_LSchemaObject>& object, int property) const;
    /// Lets the user choose a value; the empty variant when there is nothing to choose. Main thread.
    virtual LVariant ShowPropertyEditor(const rc::Ref<I_LSchemaObject>& object, int property,
                                        const rc::Ptr<I_LDatabase>& database, QPoint position) const;
    /// Property -1 means all.
    virtual void UpdateDependentProperties(const rc::Ref<I_LSchemaObject>& object, int property) const;

protected:
    /// One node with the arguments of a request and no statement.
    static LQueryNode MakeNode(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                               const LVariant& value);
};

} // namespace HF
