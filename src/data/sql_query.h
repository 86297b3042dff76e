// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "data/statement.h"
#include "hf/database.h"

#include <QElapsedTimer>

#include <atomic>

/// The one road of SQL text to a database: converts binds, walks the results of
/// a text, makes cursors, writes the query log.
class orbDuckDB_SqlQuery : public HF::I_LSqlQuery
{
public:
    using Session = nub::smart_ptr<nub::orbsql::I_DuckDBDatabase>;

    /// A null session answers every run with a default result. The icon and name
    /// of connection and database are those of now.
    orbDuckDB_SqlQuery(const rc::Ptr<HF::I_LConnection>& connection, const rc::Ref<HF::I_LDatabase>& database,
                       Session session);
    ~orbDuckDB_SqlQuery() override;

    const HF::LDatabaseEngine& get_Engine() const override;
    void Interrupt() override;
    void SetInterruptible(bool on) override { m_interruptible.store(on); }
    QList<HF::LQueryResult> Execute(const QString& text, int flags, const RcList<HF::I_LSqlValue>& binds) override;
    /// A text without content stores no statement and keeps an older one.
    HF::LQueryResult Prepare(const QString& text, int flags) override;
    rc::Ptr<rc::RefCounted> HoldSession() override;

private:
    using KernelResult = nub::smart_ptr<nub::orbsql::I_Result>;

    bool IsSessionOpen() const;
    /// On the main thread lets events run until no other thread uses the session,
    /// and keeps them out as long as `turn` lives; elsewhere the kernel waits. False
    /// when the session is closed or the query was interrupted meanwhile.
    bool WaitForTurn(nub::smart_ptr<nub::I_Counted>& turn);
    HF::LQueryResult RunStatement(const QString& text, int flags, const RcList<HF::I_LSqlValue>& binds);
    void RunChain(QList<HF::LQueryResult>& results, const QString& text, int flags,
                  const RcList<HF::I_LSqlValue>& binds);
    void TakeCursor(HF::LQueryResult& result, const QString& text, nub::orbsql::I_Result& kernelResult) const;
    void ReportFailure(HF::LQueryResult& result, const QString& error, int flags, const QString& text,
                       const QElapsedTimer& timer) const;
    void Log(const QString& text, const HF::LQueryResult& result, int flags, const QElapsedTimer& timer) const;

    rc::Weak<HF::I_LConnection> m_connection;
    rc::Weak<HF::I_LDatabase> m_database;
    Session m_session;
    rc::Ptr<orbDuckDB_Statement> m_statement;
    QString m_connectionIcon;
    QString m_connectionName;
    QString m_databaseIcon;
    QString m_databaseName;
    std::atomic<bool> m_interrupted{false};
    std::atomic<bool> m_interruptible{false};
};
