// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/schema_item_list.h"

#include <QHash>

namespace HF {

class I_LDatabaseModel;

/// An object of the catalogue, or one that is to be, with changes that nobody
/// has applied yet. Property 26 is the pending name; get_Name and what is made
/// of it are the name that the database knows.
class HF_EXPORT I_LModelObject : public I_LSchemaObject
{
public:
    /// The object that it stands for; null for one that was created here.
    virtual rc::Ptr<I_LSchemaObject> get_Source() const = 0;
    /// The value before the first change; the present one of an unchanged
    /// property, empty on an object that was created here.
    virtual LVariant get_OriginalValue(int id) const = 0;
    virtual bool IsPropertyChanged(int id) const = 0;
    /// Properties that differ from the database, in the order of the list.
    virtual QList<int> get_ChangedProperties() const = 0;
    virtual bool IsMarkedDropped() const = 0;
    virtual void MarkDropped(bool dropped) = 0;
    /// Notes the present value as the original one, before an assignment that is an edit.
    virtual void KeepOriginal(int id) = 0;
    /// While a property is being changed for a moment (a statement is made of the
    /// new value), assignments to it are no edits.
    virtual void MarkPropertyChanging(int id, bool changing) = 0;
};

/// Model object over a catalogue object or over nothing. The children are
/// model objects of the source's children, made when a list is first asked for.
///
/// Changes come through ProcessProperty; they touch neither the source nor the
/// database. Held by its parent's list, the root by LDesign. Main thread, or one
/// thread at a time.
class HF_EXPORT LModelObject final : public I_LModelObject
{
public:
    LModelObject(const rc::Ref<I_LDatabase>& database, const rc::Ptr<LModelObject>& parent, ELObjectType type,
                 const rc::Ptr<I_LSchemaObject>& source, const QString& name);
    ~LModelObject() override;

    /// With its child lists.
    static rc::Ref<LModelObject> Make(const rc::Ref<I_LDatabase>& database, const rc::Ptr<LModelObject>& parent,
                                      ELObjectType type, const rc::Ptr<I_LSchemaObject>& source,
                                      const QString& name = {});

    int get_ObjectType() const override { return m_type; }
    QString get_ObjectTypeName() const override;
    LLazy<QString, false> get_Icon() const override;
    LLazy<QString, false> get_Info() const override;
    rc::Ptr<I_LDatabase> get_Database() const override { return m_database.lock(); }
    rc::Ptr<I_LConnection> get_Connection() const override;
    const LDatabaseEngine* get_DatabaseEngine() const override;
    bool get_IsSystem() const override;
    LVariant Evaluate(int what) const override;

    void AssignName(const QString& name) override;
    LLazy<bool, true> ProcessProperty(int id, const LVariant& value) override;
    LLazy<bool, true> ApplyPropertyValue(int, const LVariant&) override { return true; }
    LLazy<bool, true> UpdatePropertyImpl(int id) override;
    LLazy<bool, true> ReloadProperties() override { return true; }
    LLazy<bool, true> Drop() override;
    void NotifyPropertyChanged(int id) override;

    rc::Ptr<I_LSchemaObject> get_Source() const override { return m_source; }
    LVariant get_OriginalValue(int id) const override;
    bool IsPropertyChanged(int id) const override;
    QList<int> get_ChangedProperties() const override;
    bool IsMarkedDropped() const override { return m_dropped; }
    void MarkDropped(bool dropped) override;
    void KeepOriginal(int id) override;
    void MarkPropertyChanging(int id, bool changing) override;

    bool IsJustCreated() const { return !m_source; }
    /// Created, marked dropped or with a changed property; its children are not looked at.
    bool HasOwnChanges() const;
    /// The same with everything below it that has been looked at.
    bool HasChanges() const;
    /// The engine's model of the kind.
    const I_LDatabaseModel& Model() const;
    rc::Ptr<LModelObject> get_ParentModel() const;
    /// Children of a kind; reads the list.
    std::vector<rc::Ref<LModelObject>> get_Models(int type) const;
    /// Children of a kind that somebody has asked for, and no others.
    std::vector<rc::Ref<LModelObject>> get_ModelsNow(int type) const;
    rc::Ptr<LModelObject> get_Model(int type, const QString& name) const;
    /// A new child; the object's kind must have such children.
    rc::Ref<LModelObject> CreateChild(ELObjectType type, const QString& name);
    /// Takes a created child away again.
    void Forget(const rc::Ref<LModelObject>& child);
    /// Takes all changes back, below it as well.
    void Revert();

private:
    rc::Weak<I_LDatabase> m_database;
    rc::Ptr<I_LSchemaObject> m_source;
    ELObjectType m_type;
    bool m_dropped = false;
    bool m_silent = false;                 ///< while it reads its source
    mutable std::recursive_mutex m_editMutex;
    QHash<int, LVariant> m_originals;      ///< of the properties that were touched
    QList<int> m_changing;
};

/// While it lives, property 26 of a model object reads the name that the
/// database knows, so that statements find the object.
class HF_EXPORT LCommittedName
{
public:
    explicit LCommittedName(const rc::Ref<const I_LSchemaObject>& object);
    ~LCommittedName();
    LCommittedName(const LCommittedName&) = delete;
    LCommittedName& operator=(const LCommittedName&) = delete;

private:
    rc::Ptr<LModelObject> m_object;
    LVariant m_pending;
};

} // namespace HF
