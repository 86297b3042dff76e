// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "catalog/database.h"
#include "engine/kernel_text.h"
#include "hf/log.h"
#include "hf/values.h"
#include "support/engine_connection.h"
#include "support/own_settings.h"

namespace support {

/// Databases of the real engine, with settings of the test's own.
class DatabasePlace : public OwnSettings
{
protected:
    using Engine = orbDuckDB_Database::Engine;
    using EngineLazy = orbDuckDB_Database::EngineLazy;

    void SetUp() override
    {
        OwnSettings::SetUp();
        HF::SetErrorLogSink([this](const QString& text) { errors.append(text); });
        HF::SetQueryLogSink([this](const HF::LQueryLogEntry& entry) { queries.append(entry); });
    }
    void TearDown() override
    {
        if (m_database)
            m_database->Close().Force();
        connection->DeleteAllChildren(); // also those that never opened
        HF::SetErrorLogSink({});
        HF::SetQueryLogSink({});
    }

    static Engine MakeEngine(const QString& location)
    {
        Engine engine = nub::orbsql::CreateDuckDBDatabase(KernelText::ToLocation(location));
        engine->Create();
        return engine;
    }
    rc::Ref<orbDuckDB_Database> MakeDatabase(const Engine& engine, const QString& path, int storageKind = 0)
    {
        return MakeDatabase(engine, EngineLazy(engine), path, storageKind);
    }
    rc::Ref<orbDuckDB_Database> MakeDatabase(const Engine& engine, const EngineLazy& handle, const QString& path,
                                             int storageKind = 0)
    {
        const auto database =
            rc::make<orbDuckDB_Database>(rc::Ref<HF::I_LConnection>(connection), engine, handle, storageKind, path);
        connection->AddChildBack(database);
        return database;
    }
    /// The database of the test, in memory.
    orbDuckDB_Database& Database()
    {
        if (!m_database)
            m_database = MakeDatabase(MakeEngine(QStringLiteral(":memory:")), QStringLiteral(":memory:"), 1);
        return *m_database;
    }
    QList<HF::LQueryResult> Run(const QString& text, int flags = 0, const RcList<HF::I_LSqlValue>& binds = {})
    {
        return Database().SqlQuery(text, flags, binds, 1, 2, 1);
    }
    /// The cursor of a query that has to give rows.
    rc::Ptr<HF::I_LCursor> Select(const QString& text, const RcList<HF::I_LSqlValue>& binds = {})
    {
        const QList<HF::LQueryResult> results = Run(text, 0, binds);
        EXPECT_TRUE(HF::IsQuerySuccess(results)) << HF::GetQueryErrors(results).toStdString();
        EXPECT_TRUE(results.last().Cursor);
        if (results.last().Cursor)
            results.last().Cursor->FirstRecord();
        return results.last().Cursor;
    }
    /// First column of all rows, joined by blanks; a null is NULL.
    QString Column(const QString& text, const RcList<HF::I_LSqlValue>& binds = {})
    {
        const rc::Ptr<HF::I_LCursor> cursor = Select(text, binds);
        QStringList cells;
        for (bool more = cursor && cursor->FirstRecord(); more; more = cursor->NextRecord()) {
            const auto field = cursor->get_Field(0);
            cells << (field->get_IsNull() ? QStringLiteral("NULL") : field->get_String());
        }
        return cells.join(u' ');
    }

    rc::Ref<EngineConnection> connection = rc::make<EngineConnection>();
    QStringList errors;
    QList<HF::LQueryLogEntry> queries;

private:
    rc::Ptr<orbDuckDB_Database> m_database;
};

} // namespace support

inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
