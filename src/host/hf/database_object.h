// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/action.h"
#include "hf/has_properties.h"
#include "hf/tree_item.h"

#include <QPoint>
#include <QStringList>

namespace HF {

class I_LConnection;
class I_LCursor;
class I_LDatabase;
class I_LField;
class I_LSchemaObject;
class LDatabaseEngine;
class LDatabaseObject_Impl;
class LSchemaItemList;

/// Description of a script object's watchers; the runtime for scripts hangs
/// itself in here. Without one nothing is watched.
class HF_EXPORT I_LScriptWatcher
{
public:
    virtual ~I_LScriptWatcher() = default;
    virtual void Notify(int event, const QVariant& argument) = 0;
};

/// Property handling, child lists and external properties of database objects.
///
/// External properties are kept in the settings store, by database and object,
/// for what the engine has no place for. Any thread, but for what makes widgets.
class HF_EXPORT LDatabaseObject_Impl : public LTreeItem, public LHasProperties
{
public:
    ~LDatabaseObject_Impl() override;

    // Tree
    bool get_CanHasChildren() const override;
    QString get_NameQuoted() const override { return get_NameForQuery(false); }
    QMenu* get_Menu() override;
    rc::Ptr<LAction> get_Action(const QString& id) const override;

    /// Name as a statement writes it, quoted where needed; with `qualified` the
    /// schema stands in front (not for temporary objects).
    virtual QString get_NameForQuery(bool qualified) const;
    virtual rc::Ptr<I_LDatabase> get_Database() const;
    virtual rc::Ptr<I_LConnection> get_Connection() const;
    virtual const LDatabaseEngine* get_DatabaseEngine() const;
    virtual bool IsChildrenOrderFixed() const { return false; }
    virtual int get_DefaultChildListType() const { return 0; }
    /// Marked while the object goes: its database is closing.
    virtual bool get_IsClosing() const;

    RcList<LTreeItem> get_Children() const override;
    /// Also takes a child out of the child list that it stands in.
    void DeleteChild(const rc::Ref<LTreeItem>& child) override;
    void Detach() override;

    // Child lists
    /// Adds a list; made by the object's constructor or factory, in tree order.
    void AddChildList(const rc::Ref<LSchemaItemList>& list);
    QList<int> get_ChildListsTypes() const;
    QList<rc::Ref<LSchemaItemList>> get_ChildLists() const;
    rc::Ptr<LSchemaItemList> get_ChildList(int type) const;
    bool HasChildList(int type) const;
    /// True when the list of the type has been read and is not empty.
    bool HasChildObjects(int type) const;
    /// The items of the list of that type, built when they are not yet.
    LLazy<RcList<I_LSchemaObject>, false> get_ChildObjects(int type) const;
    LLazy<rc::Ptr<I_LSchemaObject>, false> get_ChildObject(int type, const QString& name) const;
    QStringList get_ChildObjectsNames(int type) const;
    /// Rebuilds the list of the type, at once.
    virtual bool UpdateChildObjects(int type);
    void DropChildLists();

    // Properties
    LProperty get_Property(int id) const override;
    void AssignName(const QString& name) override;
    void NotifyPropertyChanged(int id) override;
    void NotifyPropertyChangedLater(int id) override;
    LLazy<bool, true> ProcessProperty(int id, const LVariant& value) override;

    /// The user's change of a property in the database itself. The base asks the
    /// engine's model of the object for statements of KIND_CHANGE_PROPERTY, runs
    /// them and answers whether they went through.
    virtual LLazy<bool, true> ApplyPropertyValue(int id, const LVariant& value);
    /// Reads a property that costs a query of its own.
    virtual LLazy<bool, true> UpdatePropertyImpl(int id);
    /// The same unless it has been read.
    LLazy<bool, true> UpdatePropertyIfNeed(int id);
    virtual LLazy<bool, true> ReloadProperties();
    /// Opens an editor for one property; the new value or the empty variant.
    virtual LVariant ShowPropertyEditor(int id, QPoint at, bool modal);
    LLazy<bool, true> Rename(const QString& name);
    /// Drops the object in the database (the model's KIND_DROP).
    virtual LLazy<bool, true> Drop();
    /// Fills the properties from the current row of a catalogue query.
    virtual void FromQuery(const rc::Ref<const I_LCursor>& cursor);
    /// Copies one column into one property. A missing column leaves it alone; a
    /// null gives the empty value of the column's kind.
    void ReadProperty(const rc::Ref<const I_LCursor>& cursor, int id, const char* column);
    /// A column by name, null when there is none. While a list reads its rows the
    /// look-up is done once for all of them, so FromQuery should use this.
    static rc::Ptr<I_LField> FindColumn(const rc::Ref<const I_LCursor>& cursor, const char* column);
    /// The text of a column; empty when it is missing or null.
    static QString ReadText(const rc::Ref<const I_LCursor>& cursor, const char* column);

    // External properties, under "External/", the database's key, the object's key.
    // An object without a database has none.
    virtual QVariant get_ExternalProperty(const QString& name, const QVariant& otherwise = {}) const;
    virtual LLazy<bool, true> put_ExternalProperty(const QString& name, const QVariant& value);
    virtual bool HasExternalProperty(const QString& name) const;
    /// With an empty name removes all of the object.
    virtual void RemoveExternalProperty(const QString& name);

    // Script objects
    void SetScriptWatcher(std::shared_ptr<I_LScriptWatcher> watcher);
    void NotifyScriptWatchers(int event, const QVariant& argument = {}) const;

    /// Key of the group in which the object's external properties stand: the
    /// database's key, then kinds and names down to the object. Empty without a database.
    virtual QString ExternalKey() const;

protected:
    LDatabaseObject_Impl() = default;
    void Destroy() override;
    bool DeclareProperties(Properties& properties) const override;

    std::vector<rc::Ref<LSchemaItemList>> m_childLists; ///< guarded by m_treeMutex

private:
    LLazy<bool, true> RunModel(ELQueryKind kind, int id, const LVariant& value);
    QString ExternalPropertyKey(const QString& name) const;

    std::shared_ptr<I_LScriptWatcher> m_scriptWatcher;
};

} // namespace HF
