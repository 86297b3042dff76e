// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/design.h"

#include <QMap>
#include <QObject>

#include <atomic>
#include <memory>

/// The object that is to be designed.
struct DesignTarget
{
    HF::ELObjectType type = HF::TYPE_TABLE; ///< database, schema, table, view, function or sequence
    QString schema;                         ///< of the kinds below a schema
    QString name;                           ///< empty: it is to be created
    /// The one in the catalogue, where the name does not tell it from others.
    rc::Ptr<HF::I_LSchemaObject> source;

    /// The target that stands for an object of the catalogue: of a part its table. Of
    /// kind TYPE_NONE where there is nothing to design.
    static DesignTarget Of(const rc::Ptr<HF::LTreeItem>& item);
};

/// Pending changes of one object and of what is part of it: the edits that a person
/// makes, the statements they come to, their application. Main thread; what takes
/// time runs on a worker, and nothing may be edited meanwhile (IsBusy).
class DesignSession : public QObject
{
    Q_OBJECT

public:
    using Object = rc::Ref<HF::LModelObject>;
    using Objects = std::vector<Object>;

    DesignSession(const rc::Ref<HF::I_LDatabase>& database, const DesignTarget& target, QObject* parent = nullptr);
    ~DesignSession() override;

    /// Reads the object with its parts; Opened tells the end. Pending edits are gone.
    void Open();
    bool IsBusy() const { return m_busy; }
    const DesignTarget& get_Target() const { return m_target; }
    rc::Ptr<HF::I_LDatabase> get_Database() const { return m_database.lock(); }
    /// Null before it has been read, and when that failed.
    const rc::Ptr<HF::LModelObject>& get_Object() const { return m_object; }
    /// Parts of a kind, in the order of the table; foreign keys from and to it.
    Objects Parts(int kind) const;
    bool IsIncoming(const HF::LModelObject& link) const;
    /// The tables of the schema, for foreign keys.
    QStringList TableNames() const;
    /// Types to choose from; an empty one is a separator.
    QStringList TypeNames() const;
    /// Columns of a table of the schema under the names they are to have.
    QStringList ColumnNames(const QString& table) const;

    /// Changes a property; the reason when the value was refused. Changed follows.
    QString Set(const Object& object, int property, const HF::LVariant& value);
    /// The same for text that is being typed: a refused one counts as a problem.
    void SetDraft(const Object& object, int property, const QString& text);
    bool HasDraft(int property) const { return m_drafts.contains(property); }
    /// The type of a column as a person writes it.
    QString SetType(const Object& column, const QString& text);
    /// Columns of the primary key under the names they are to have.
    QStringList KeyColumns() const;
    void SetKeyColumn(const Object& column, bool on);
    /// Whether a unique constraint of this column alone is to be.
    bool IsUniqueColumn(const HF::LModelObject& column) const;
    /// Adds or drops it; the reason when that cannot be.
    QString SetUniqueColumn(const Object& column, bool on);
    rc::Ptr<HF::LModelObject> Add(HF::ELObjectType kind);
    /// Marks a part as dropped or takes the mark back; what was added is gone at once.
    void ToggleDropped(const Object& part);
    void Revert();

    bool HasChanges() const;
    /// What the edits come to, as far as it can be told without the database.
    HF::LDesignPlan Preview() const;
    /// The same with it, from a worker; `done` is called on the main thread.
    void ReadPlan(std::function<void(const HF::LDesignPlan&)> done);
    /// Runs the statements; Applied tells the end. After a failure the edits are
    /// still pending, after success the object is read anew.
    void Apply();
    /// Ends Apply before its next statement; everything is taken back then.
    void Stop() { m_stop->store(true); }

signals:
    void BusyChanged(bool busy);
    void Opened(const QString& problem);
    void Changed();
    void Applied(const HF::LDesignReport& report);

private:
    struct Reading
    {
        rc::Ptr<HF::LDesign> design;
        rc::Ptr<HF::LModelObject> object;
        QString problem;
    };

    static Reading Read(const rc::Ref<HF::I_LDatabase>& database, const DesignTarget& target);
    void SetBusy(bool busy);
    void RenameInLists(const QString& from, const QString& to);
    QString FreeName(HF::ELObjectType kind) const;
    Objects UniquesOf(const HF::LModelObject& column) const;

    rc::Weak<HF::I_LDatabase> m_database;
    DesignTarget m_target;
    rc::Ptr<HF::LDesign> m_design;
    rc::Ptr<HF::LModelObject> m_object;
    QMap<int, QString> m_drafts; ///< why the text typed for a property cannot be
    bool m_busy = false;
    std::shared_ptr<std::atomic<bool>> m_stop = std::make_shared<std::atomic<bool>>(false);
};
