// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/has_properties.h"
#include "hf/query_node.h"
#include "hf/rc_list.h"

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

protected:
    /// One node with the arguments of a request and no statement.
    static LQueryNode MakeNode(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                               const LVariant& value);
};

} // namespace HF
