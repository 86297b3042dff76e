// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/database_model.h"

namespace HF {

/// Category titles of property sheets.
HF_EXPORT extern const char* const CATEGORY_SETTINGS;
HF_EXPORT extern const char* const CATEGORY_FLAGS;

/// Base of the models: helpers, and what a change comes to unless a kind knows
/// better. Stateless.
class HF_EXPORT LDatabaseModelObject : public I_LDatabaseModel
{
public:
    QList<LQueryNode> GetChangeNodes(const rc::Ref<const I_LModelObject>& object) const override;
    QStringList GetChangeProblems(const rc::Ref<const I_LModelObject>& object) const override;

    /// Writes a property that follows from another one; an edit on a model object.
    static void UpdatePropertyValue(const rc::Ref<I_LSchemaObject>& object, int property, const LVariant& value);

protected:
    /// Qt::CaseSensitive or not, as the engine compares names.
    static Qt::CaseSensitivity GetCaseSensitivity(const rc::Ref<const I_LSchemaObject>& object);
    /// Reads lists of an object anew that have been read before.
    static void RefreshLists(const rc::Ptr<LTreeItem>& owner, std::initializer_list<int> types);
    /// The object in the catalogue: the source of a model object, another object itself.
    static rc::Ptr<I_LSchemaObject> CatalogObject(const rc::Ref<I_LSchemaObject>& object);
    /// The nodes of one request under the object's committed name.
    QList<LQueryNode> NodesOf(const rc::Ref<const I_LModelObject>& object, ELQueryKind kind, int property = -1,
                              const LVariant& value = {}) const;
    /// The changed properties that have no statement of their own because others follow from them.
    virtual bool IsDerivedProperty(int property) const;
};

/// Base of the models of tables.
class HF_EXPORT LDatabaseModelTable : public LDatabaseModelObject
{
public:
    LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const override;
};

/// Base of the models of columns.
class HF_EXPORT LDatabaseModelField : public LDatabaseModelObject
{
public:
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
    LLazy<QString, false> GetItemTip(const rc::Ref<const I_LSchemaObject>& object) const override;
    LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const override;

protected:
    bool IsDerivedProperty(int property) const override;
};

/// Base of the models of generated columns.
class HF_EXPORT LDatabaseModelMethod : public LDatabaseModelField
{
public:
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
    LLazy<QString, false> GetItemTip(const rc::Ref<const I_LSchemaObject>&) const override { return QString(); }
};

/// Base of the models of indexes.
class HF_EXPORT LDatabaseModelIndex : public LDatabaseModelObject
{
public:
    QList<LQueryNode> GetChangeNodes(const rc::Ref<const I_LModelObject>& object) const override;
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
    LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const override;
    /// For the columns a menu of those of the table.
    LVariant ShowPropertyEditor(const rc::Ref<I_LSchemaObject>& object, int property,
                                const rc::Ptr<I_LDatabase>& database, QPoint position) const override;
    /// The table that the index belongs to; null when there is none.
    static rc::Ptr<I_LSchemaObject> GetParentTable(const rc::Ref<const I_LSchemaObject>& object);
};

/// Base of the models of unique constraints.
class HF_EXPORT LDatabaseModelUnique : public LDatabaseModelObject
{
public:
    QString CheckProperty(const rc::Ref<const I_LSchemaObject>& object, const rc::Ptr<I_LDatabase>& database,
                          int property, const LVariant& value) const override;
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
    LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const override;
    /// For the columns a menu of those of the table.
    LVariant ShowPropertyEditor(const rc::Ref<I_LSchemaObject>& object, int property,
                                const rc::Ptr<I_LDatabase>& database, QPoint position) const override;
};

/// Base of the models of check constraints.
class HF_EXPORT LDatabaseModelCheck : public LDatabaseModelObject
{
public:
    QString CheckProperty(const rc::Ref<const I_LSchemaObject>& object, const rc::Ptr<I_LDatabase>& database,
                          int property, const LVariant& value) const override;
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
};

/// Base of the models of foreign keys.
class HF_EXPORT LDatabaseModelLink : public LDatabaseModelObject
{
public:
    QString CheckProperty(const rc::Ref<const I_LSchemaObject>& object, const rc::Ptr<I_LDatabase>& database,
                          int property, const LVariant& value) const override;
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
    LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const override;
};

/// Base of the models of views.
class HF_EXPORT LDatabaseModelView : public LDatabaseModelObject
{
public:
    /// A view's text may not be empty.
    QString CheckProperty(const rc::Ref<const I_LSchemaObject>& object, const rc::Ptr<I_LDatabase>& database,
                          int property, const LVariant& value) const override;
    LLazy<bool, true> PostApplyChanges(const rc::Ref<I_LSchemaObject>& object) const override;
};

/// Base of the models of functions.
class HF_EXPORT LDatabaseModelFunction : public LDatabaseModelObject
{
public:
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
};

/// Base of the models of sequences.
class HF_EXPORT LDatabaseModelSequence : public LDatabaseModelObject
{
public:
    LLazy<QString, false> GetItemInfo(const rc::Ref<const I_LSchemaObject>& object) const override;
};

/// Lets the user choose one of a list, in a menu; an empty text is a separator.
/// The empty variant when nothing was chosen. Main thread.
HF_EXPORT LVariant SelectFromList(QPoint position, const QStringList& list, const QString& current);

} // namespace HF
