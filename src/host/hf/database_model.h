// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/has_properties.h"
#include "hf/query_node.h"
#include "hf/rc_list.h"

#include <QMap>
#include <QPoint>

namespace HF {

class I_LDatabase;
class I_LModelObject;
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

    /// What the pending changes of a model object and of what is part of it come to,
    /// in the order in which it must run; an object that is to be created or dropped
    /// gives its creation or its end.
    virtual QList<LQueryNode> GetChangeNodes(const rc::Ref<const I_LModelObject>& object) const;
    /// Why the pending changes of a model object cannot be made, one text a reason.
    virtual QStringList GetChangeProblems(const rc::Ref<const I_LModelObject>& object) const;
    /// What the pending changes of a model object would lose: rows, values, other
    /// objects. May ask the database.
    virtual QStringList GetChangeWarnings(const rc::Ref<const I_LModelObject>& object) const;
    /// What the pending changes of several objects of the kind come to, in the order
    /// in which they must run. The base takes one after the other.
    virtual QList<LQueryNode> GetChangeNodesOf(const RcList<I_LModelObject>& objects) const;
    /// Statements of a database that run before the transaction of a structure
    /// change, and after it however it ended; failures of theirs change nothing.
    virtual std::pair<QStringList, QStringList> GetChangeFrame(const rc::Ref<I_LDatabase>& database) const;

    /// One node with the arguments of a request and no statement.
    static LQueryNode MakeNode(const rc::Ref<const I_LSchemaObject>& object, ELQueryKind kind, int property,
                               const LVariant& value);
};

} // namespace HF
