// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/model_object.h"

#include <functional>

namespace HF {

/// What pending changes come to.
struct HF_EXPORT LDesignPlan
{
    QStringList statements; ///< all that runs, in its order, single statements without semicolons
    QStringList warnings;   ///< what would be lost
    QStringList problems;   ///< why it cannot be done; nothing runs while there is one
    bool inTransaction = false; ///< the statements run as one; otherwise there is one of them at most
    QStringList afterwards; ///< statements that take part in no transaction
};

/// How each statement of a plan fared.
struct HF_EXPORT LDesignReport
{
    enum State { Done, Failed, NotRun, TakenBack };
    struct Step
    {
        QString statement;
        State state = NotRun;
    };

    bool success = false;
    QString error; ///< the engine's text, or the problems; empty after success
    QList<Step> steps;
    QStringList warnings;
};

/// Pending changes of one database: a tree of model objects over its catalogue.
///
/// Nothing reaches the database before Apply, which does all of it or nothing.
/// An edit that was applied is over: later changes want a new LDesign. Main
/// thread, or one thread at a time.
class HF_EXPORT LDesign : public rc::RefCounted
{
public:
    explicit LDesign(const rc::Ref<I_LDatabase>& database);
    ~LDesign() override;

    /// The database itself; its schemas and all else are below it.
    const rc::Ref<LModelObject>& get_Root() const { return m_root; }
    rc::Ptr<I_LDatabase> get_Database() const { return m_root->get_Database(); }
    /// The model object of an object of the catalogue; null when it is none of this database.
    rc::Ptr<LModelObject> ModelOf(const rc::Ref<const LTreeItem>& object) const;
    /// Foreign keys of a table, and those that point to it.
    std::vector<rc::Ref<LModelObject>> LinksOf(const rc::Ref<LModelObject>& table) const;

    /// A new object below another one. A table takes columns, generated columns,
    /// indexes, uniques and checks; a link of a table goes to its schema, with the
    /// table set. Null where the kind does not fit.
    rc::Ptr<LModelObject> Create(const rc::Ref<LModelObject>& parent, ELObjectType type, const QString& name);
    /// Why the value cannot be; empty after the change. "Unique" and "Indexed" of a
    /// column come and go with a constraint or an index of it.
    QString Change(const rc::Ref<LModelObject>& object, int property, const LVariant& value);
    /// Marks an object to go; one that was created here is forgotten at once.
    void Drop(const rc::Ref<LModelObject>& object);
    bool HasChanges() const { return m_root->HasChanges(); }
    void Revert() { m_root->Revert(); }

    /// May ask the database for what would be lost. Unless `checked`, there are only the
    /// statements, and the database is asked nothing.
    LDesignPlan get_Plan(bool checked = true) const;
    /// Runs the plan. After a failure everything is as before, and the session is in
    /// no transaction; the error log has the engine's text. After success the
    /// database is flushed and the lists of the catalogue that changed are read anew.
    /// `step` is told of each statement before it runs and stops the change by false.
    LDesignReport Apply(const std::function<bool(const QString& statement)>& step = {});

private:
    QString ChangeFlag(const rc::Ref<LModelObject>& field, int property, bool on);

    rc::Ref<LModelObject> m_root;
};

/// A value for a property, of the type that the property has.
HF_EXPORT LVariant ValueFor(const LProperty& property, const QVariant& value);

} // namespace HF
