// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"
#include "hf/cursor.h"
#include "hf/query_result.h"

#include <QHash>

namespace HF {

class LConnectionDatabasesList;
class LRecentsList;

/// A node under which the databases of one engine and workspace hang.
class HF_EXPORT I_LConnection : public I_LSchemaObject
{
public:
    virtual const LDatabaseEngine& get_Engine() const = 0;
    virtual LLazy<bool, false> get_IsConnected() const = 0;
    virtual int get_Capabilities() const = 0;
    virtual rc::Ref<I_LConnectionHandler> get_ConnectionHandler() const = 0;
    virtual const LConnectionParameters& get_ConnectionParameters() const = 0;
    virtual QStringList get_FileExtensions() const = 0;
    virtual bool get_IsFileBased() const = 0;
    virtual bool get_IsLocal() const = 0;
    virtual QString get_LiteralQuote() const = 0;
    virtual rc::Ptr<LRecentsList> get_RecentDatabases() const = 0;
    /// 10000 * major + 100 * minor + patch; 0 when unknown.
    virtual LLazy<int, false> get_Version() const = 0;
    virtual rc::Ptr<I_LConnectionFactory> get_Factory() const = 0;
    virtual RcList<I_LDatabase> get_Databases() const = 0;
    /// The one that was chosen last, the first open one otherwise.
    virtual rc::Ptr<I_LDatabase> get_ActiveDatabase() const = 0;
    virtual void put_ActiveDatabase(const rc::Ptr<I_LDatabase>& database) = 0;
    virtual LLazy<rc::Ptr<I_LDatabase>, true> CreateDatabase(const QString& name,
                                                             const QHash<QString, QVariant>& options) = 0;
    virtual bool CanOpenPath(const QString& path) const = 0;
    /// The open database of a location. Two names of one file are one location;
    /// each in-memory database but a named shared one is its own.
    virtual LLazy<rc::Ptr<I_LDatabase>, false> FindDatabase(const QString& location) const = 0;
    /// Finds or opens; null when that fails (the error is in the log).
    virtual LLazy<rc::Ptr<I_LDatabase>, true> OpenDatabase(const QString& location) = 0;
    virtual void Close() = 0;
};

/// Base of connections.
class HF_EXPORT LConnection : public I_LConnection
{
public:
    /// The factory is handed on, never asked of the handler: a connection is made
    /// while the factory's singleton is still being built.
    LConnection(const rc::Ref<LConnectionFactory>& factory, const rc::Ref<I_LConnectionHandler>& handler);
    ~LConnection() override;

    int get_ObjectType() const override { return TYPE_CONNECTION; }
    QString get_ObjectTypeName() const override;
    rc::Ptr<I_LConnection> get_Connection() const override;
    const LDatabaseEngine* get_DatabaseEngine() const override { return &get_Engine(); }
    bool get_IsFileBased() const override { return true; }
    rc::Ptr<I_LConnectionFactory> get_Factory() const override { return m_factory; }
    RcList<I_LDatabase> get_Databases() const override;
    rc::Ptr<I_LDatabase> get_ActiveDatabase() const override;
    void put_ActiveDatabase(const rc::Ptr<I_LDatabase>& database) override;
    LLazy<rc::Ptr<I_LDatabase>, false> FindDatabase(const QString& location) const override;
    LLazy<rc::Ptr<I_LDatabase>, true> OpenDatabase(const QString& location) override;
    /// Asks for a file; null when cancelled. Main thread.
    rc::Ptr<I_LDatabase> OpenDatabaseDialog();
    void Close() override;
    rc::Ptr<LAction> get_Action(const QString& id) const override;

    // Relays to the active database; empty results without one.
    QList<LQueryResult> SqlQuery(const QString& text, int flags, const RcList<I_LSqlValue>& binds, int location,
                                 int lockType, int direction);
    bool SqlExecute(const QString& text);
    rc::Ptr<I_LCursor> SqlSelect(const QString& text, int flags, const RcList<I_LSqlValue>& binds, int location,
                                 int lockType, int direction);

    static rc::Ref<LAction> ActionOpenDatabase();
    static rc::Ref<LAction> ActionLoadDump();
    static rc::Ref<LAction> ActionOpenPreferences();

protected:
    rc::Ptr<LConnectionDatabasesList> m_databases; ///< set by the derived constructor

private:
    rc::Ref<LConnectionFactory> m_factory;
    mutable std::mutex m_activeMutex;
    rc::Weak<I_LDatabase> m_activeDatabase;
};

} // namespace HF
