// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/connection_factory.h"
#include "hf/database.h"
#include "hf/database_object.h"
#include "hf/task.h"

#include <QJSValue>
#include <QObject>
#include <QPointer>

#include <atomic>
#include <mutex>
#include <vector>

namespace orbis {

class ScriptBridge;

/// The databases of a script: what `db` does. Opened ones are closed with it.
/// Main thread, but for Stop; statements run on a worker while events go on.
class ScriptDatabases : public QObject
{
    Q_OBJECT

public:
    ScriptDatabases(ScriptBridge& bridge, const rc::Ref<HF::I_LConnectionFactory>& factory);
    ~ScriptDatabases() override;

    void SetCurrent(const rc::Ptr<HF::I_LDatabase>& database) { m_current = database; }
    /// Makes the two known as the globals `connection` and `database`.
    void SetConnected(const rc::Ptr<HF::I_LConnection>& connection, const rc::Ptr<HF::I_LDatabase>& database);
    /// Ends the statement that runs. Any thread.
    void Stop();

    Q_INVOKABLE QJSValue open(const QString& location, bool readOnly);
    Q_INVOKABLE QJSValue create(const QString& location);
    Q_INVOKABLE QJSValue current();
    Q_INVOKABLE QJSValue connections();

    /// All rows of the last result that has some; throws std::runtime_error with
    /// the engine's text.
    QJSValue Query(const rc::Ref<HF::I_LDatabase>& database, const QString& sql, const QJSValue& binds, bool rows);
    /// Runs a task of the host to its end; throws into the script when it failed.
    QJSValue RunTask(const rc::Ptr<HF::LTask>& task);
    ScriptBridge& get_Bridge() const { return m_bridge; }
    QJSValue Fail(const QString& message);
    QJSValue Wrap(const rc::Ref<HF::I_LDatabase>& database);
    /// Closes a database that the script opened; a script leaves the program's own
    /// open. False when that failed.
    bool Close(const rc::Ref<HF::I_LDatabase>& database);
    /// The program or the script has it open.
    bool IsOpen(const rc::Ptr<HF::I_LDatabase>& database) const;

private:
    static bool CloseNow(const rc::Ref<HF::I_LDatabase>& database);

    ScriptBridge& m_bridge;
    const rc::Ref<HF::I_LConnectionFactory> m_factory;
    rc::Ptr<HF::I_LDatabase> m_current;
    std::vector<rc::Ref<HF::I_LDatabase>> m_opened;
    std::mutex m_mutex;
    rc::Ptr<HF::I_LSqlQuery> m_running;
    rc::Ptr<HF::LTask> m_task;
};

/// One database in a script.
class ScriptDatabase : public QObject
{
    Q_OBJECT

public:
    ScriptDatabase(ScriptDatabases& owner, const rc::Ref<HF::I_LDatabase>& database);

    Q_INVOKABLE QString name() const;
    Q_INVOKABLE QString path() const;
    Q_INVOKABLE bool isOpen() const { return m_owner && m_owner->IsOpen(rc::Ptr<HF::I_LDatabase>(m_database)); }
    Q_INVOKABLE QJSValue connection();
    Q_INVOKABLE QJSValue query(const QString& sql, const QJSValue& binds);
    Q_INVOKABLE QJSValue execute(const QString& sql, const QJSValue& binds);
    Q_INVOKABLE QJSValue node();
    /// Options: `data` is "both", "structure" or "data", `encoding` a name.
    Q_INVOKABLE QJSValue dump(const QString& file, const QJSValue& options);
    Q_INVOKABLE QJSValue load(const QString& file, const QJSValue& options);
    Q_INVOKABLE bool close();

private:
    /// False after telling the script that the database is closed.
    bool Living();

    QPointer<ScriptDatabases> m_owner;
    const rc::Ref<HF::I_LDatabase> m_database;
};

/// A connection and what is open in it.
class ScriptConnection : public QObject
{
    Q_OBJECT

public:
    ScriptConnection(ScriptDatabases& owner, const rc::Ref<HF::I_LConnection>& connection);
    Q_INVOKABLE QString name() const;
    Q_INVOKABLE QJSValue databases();

private:
    QPointer<ScriptDatabases> m_owner;
    rc::Ref<HF::I_LConnection> m_connection;
};

/// One object of the catalogue.
class ScriptNode : public QObject
{
    Q_OBJECT

public:
    ScriptNode(ScriptDatabases& owner, const rc::Ref<HF::LDatabaseObject_Impl>& object);
    Q_INVOKABLE QString kind() const { return m_object->get_ObjectTypeName(); }
    Q_INVOKABLE QString name() const { return m_object->get_Name(); }
    /// By their English names.
    Q_INVOKABLE QJSValue properties();
    /// By number; also those that cost a query.
    Q_INVOKABLE QJSValue property(int id);
    Q_INVOKABLE QJSValue children(const QString& kind);

private:
    QJSValue ToScript(const HF::LVariant& value);

    QPointer<ScriptDatabases> m_owner;
    rc::Ref<HF::LDatabaseObject_Impl> m_object;
};

} // namespace orbis
