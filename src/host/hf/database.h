// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection.h"
#include "hf/dump.h"
#include "hf/sql_query.h"

class QAction;

namespace HF {

/// An open database: root of its catalogue, and a schema itself.
class HF_EXPORT I_LDatabase : public I_LSchema
{
public:
    virtual QString get_Path() const = 0;
    /// The catalogue in which the engine looks names up. May run a query.
    virtual QString get_CatalogName() const { return get_Name(); }
    virtual bool get_IsLocal() const = 0;
    virtual LLazy<bool, true> get_IsReadOnly() const = 0;
    virtual LLazy<bool, true> Open() = 0;
    virtual LLazy<bool, true> Close() = 0;
    virtual LLazy<void, true> Flush() = 0;
    virtual LLazy<bool, true> ThrowOut() = 0;
    virtual rc::Ref<I_LSqlQuery> MakeSqlQuery() = 0;
    /// Runs every statement of the text until one fails.
    virtual QList<LQueryResult> SqlQuery(const QString& text, int flags, const RcList<I_LSqlValue>& binds, int location,
                                         int lockType, int direction) = 0;
    /// The cursor of the last result that has one; null when the query failed or gave no rows.
    virtual rc::Ptr<I_LCursor> SqlSelect(const QString& text, int flags, const RcList<I_LSqlValue>& binds, int location,
                                         int lockType, int direction) = 0;
    /// The same for a query on the catalogue, in the background; an engine's database may know a way
    /// round what keeps one from running.
    virtual rc::Ptr<I_LCursor> SelectCatalog(const QString& text)
    {
        return SqlSelect(text, QUERY_BACKGROUND, {}, CURSOR_CLIENT, LOCK_OPTIMISTIC, CURSOR_FORWARD);
    }
    virtual bool SqlExecute(const QString& text) = 0;
    /// Names for completion, cached until invalidated.
    virtual LLazy<QList<LIdent>, false> get_Idents() = 0;
    virtual LLazy<QList<LIdent>, false> get_SystemIdents() = 0;
    virtual void InvalidateIdents() = 0;
    virtual void InvalidateSystemIdents() = 0;
    virtual void UpdateDefaultSchemasAction(QAction& action) = 0;
};

/// Base of databases.
class HF_EXPORT LDatabase : public I_LDatabase, public I_LObjectWithForeignChildren
{
public:
    ~LDatabase() override;

    int get_ObjectType() const override { return TYPE_DATABASE; }
    QString get_ObjectTypeName() const override;
    rc::Ptr<I_LDatabase> get_Database() const override;
    rc::Ptr<I_LConnection> get_Connection() const override { return m_connection; }
    const LDatabaseEngine* get_DatabaseEngine() const override;
    QString get_Path() const override { return m_path; }
    bool get_IsClosing() const override { return m_closing.load(); }
    bool IsForeignChild(const rc::Ref<const LTreeItem>& child) const override;
    rc::Ptr<LAction> get_Action(const QString& id) const override;
    QString ExternalKey() const override;
    rc::Ptr<I_LTable> get_Table(const QString& name) const override;
    RcList<I_LTable> get_Tables() const override;

    QList<LQueryResult> SqlQuery(const QString& text, int flags, const RcList<I_LSqlValue>& binds, int location,
                                 int lockType, int direction) override;
    rc::Ptr<I_LCursor> SqlSelect(const QString& text, int flags, const RcList<I_LSqlValue>& binds, int location,
                                 int lockType, int direction) override;
    bool SqlExecute(const QString& text) override;

    LLazy<QList<LIdent>, false> get_Idents() override;
    LLazy<QList<LIdent>, false> get_SystemIdents() override;
    void InvalidateIdents() override;
    void InvalidateSystemIdents() override;

    /// Puts the database in the connection's list of recent ones, if its path leads back to it.
    void AddToRecents();
    /// False when the path is only a name, as of a database in memory that was made under one.
    virtual bool CanBeOpenedAgain() const { return true; }
    /// Reads the virtual links of links lists that hang at the database itself.
    void InitVirtualLinks();
    /// Removes the settings kept for this database and all below it.
    void DeleteSettings();
    /// Forgets the idents and all catalogue objects.
    void DeleteSchemaCache();
    void UpdateDefaultSchemasAction(QAction& action) override {}
    /// The engine's options page for making a dump of a format, and for loading one;
    /// null where there is none. Owned by its later parent. Main thread.
    virtual QPointer<QWidget> CreateMakeDumpPage(int kind);
    virtual QPointer<QWidget> CreateLoadDumpPage(int kind);
    /// A task that loads a dump; null when the engine has none. `page` is the options page of the wizard.
    virtual rc::Ptr<LTask> LoadDump(const QString& path, const QString& encoding, QPointer<QWidget> page,
                                    LLoadProgress progress);
    virtual rc::Ptr<LTask> MakeDump(const QString& path, int kind, ELDumpData data, const QString& encoding,
                                    QPointer<QWidget> page, const RcList<LTreeItem>& selection, LDumpProgress progress);

    /// Actions that need windows do not show without them.
    static rc::Ref<LAction> ActionOpenQueryEditor();
    static rc::Ref<LAction> ActionOpenQueryBuilder();
    static rc::Ref<LAction> ActionClose();
    static rc::Ref<LAction> ActionSetupVirtualLinks();
    static rc::Ref<LAction> ActionDumpCreate();
    static rc::Ref<LAction> ActionDumpLoad();
    static rc::Ref<LAction> ActionDeletePhysically();

protected:
    LDatabase(const rc::Ref<I_LConnection>& connection, const QString& path);
    virtual LLazy<QList<LIdent>, false> FetchIdents() = 0;
    virtual LLazy<QList<LIdent>, false> FetchSystemIdents() = 0;
    void MarkClosing() { m_closing.store(true); }

private:
    rc::Ref<I_LConnection> m_connection;
    QString m_path;
    QString m_settingsKey;
    std::atomic<bool> m_closing{false};
    std::mutex m_identsMutex;
    std::optional<LLazy<QList<LIdent>, false>> m_idents;
    std::optional<LLazy<QList<LIdent>, false>> m_systemIdents;
};

} // namespace HF
