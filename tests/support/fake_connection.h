// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/recents.h"
#include "hf/schema_item_list.h"

#include <stdexcept>

namespace support {

/// A database that is only an object.
class FakeDatabase : public HF::LDatabase
{
public:
    FakeDatabase(const rc::Ref<HF::I_LConnection>& connection, const QString& path) : LDatabase(connection, path) {}

    bool get_IsLocal() const override { return true; }
    HF::LLazy<bool, true> get_IsReadOnly() const override { return false; }
    HF::LLazy<bool, true> Open() override { return true; }
    HF::LLazy<bool, true> Close() override { return true; }
    HF::LLazy<void, true> Flush() override { return {}; }
    HF::LLazy<bool, true> ThrowOut() override { return true; }
    rc::Ref<HF::I_LSqlQuery> MakeSqlQuery() override { throw std::logic_error("no engine here"); }

protected:
    HF::LLazy<QList<HF::LIdent>, false> FetchIdents() override { return {}; }
    HF::LLazy<QList<HF::LIdent>, false> FetchSystemIdents() override { return {}; }
};

/// A connection without an engine: says what the test told it and keeps what it
/// was asked to create.
class FakeConnection : public HF::I_LConnection
{
public:
    bool fileBased = true;
    bool createWorks = true;
    QStringList extensions{QStringLiteral("duckdb"), QStringLiteral("db")};
    HF::LConnectionParameters parameters;
    QList<std::pair<QString, QHash<QString, QVariant>>> created;

    const HF::LDatabaseEngine& get_Engine() const override { throw std::logic_error("no engine here"); }
    HF::LLazy<bool, false> get_IsConnected() const override { return true; }
    int get_Capabilities() const override { return 0; }
    rc::Ref<HF::I_LConnectionHandler> get_ConnectionHandler() const override { throw std::logic_error("no handler"); }
    const HF::LConnectionParameters& get_ConnectionParameters() const override { return parameters; }
    QStringList get_FileExtensions() const override { return extensions; }
    bool get_IsFileBased() const override { return fileBased; }
    bool get_IsLocal() const override { return true; }
    QString get_LiteralQuote() const override { return QStringLiteral("'"); }
    rc::Ptr<HF::LRecentsList> get_RecentDatabases() const override { return nullptr; }
    HF::LLazy<int, false> get_Version() const override { return 0; }
    rc::Ptr<HF::I_LConnectionFactory> get_Factory() const override { return nullptr; }
    RcList<HF::I_LDatabase> get_Databases() const override { return {}; }
    rc::Ptr<HF::I_LDatabase> get_ActiveDatabase() const override { return nullptr; }
    void put_ActiveDatabase(const rc::Ptr<HF::I_LDatabase>&) override {}
    HF::LLazy<rc::Ptr<HF::I_LDatabase>, true> CreateDatabase(const QString& name,
                                                             const QHash<QString, QVariant>& options) override
    {
        created.append({name, options});
        rc::Ptr<HF::I_LDatabase> database;
        if (createWorks)
            database = rc::make<FakeDatabase>(rc::Ref<HF::I_LConnection>(*this), name);
        return database;
    }
    bool CanOpenPath(const QString&) const override { return false; }
    HF::LLazy<rc::Ptr<HF::I_LDatabase>, false> FindDatabase(const QString&) const override { return {}; }
    HF::LLazy<rc::Ptr<HF::I_LDatabase>, true> OpenDatabase(const QString&) override { return {}; }
    void Close() override {}
};

} // namespace support
