// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/engine.h"

/// DuckDB as the host sees it: field types, quoting, words, statement
/// templates, models. One instance, without state of a database. Any thread.
class orbDuckDB_Engine final : public HF::LDatabaseEngine
{
public:
    /// Built on first use; lives until the process ends.
    static const orbDuckDB_Engine& Instance();

    QStringList GetAggregateFunctions() const override;
    QString GetBindPlaceholder(int index) const override;
    int GetCapabilities() const override { return 222856; }
    QString GetDefaultFieldType() const override { return QStringLiteral("VarChar"); }
    /// Cached by the database until its default schemas change.
    QStringList GetSearchPath(const rc::Ptr<HF::I_LDatabase>& database) const override;
    HF::LLazy<HF::LSQLFunctions, false> GetFunctions(const rc::Ptr<HF::I_LConnection>& connection) const override;
    QString GetIntegerFieldType() const override { return QStringLiteral("Integer"); }
    HF::LLazy<HF::LDatabaseKeywords, false> GetKeywords(const rc::Ptr<HF::I_LConnection>& connection) const override;
    QStringList GetStatementKeywords(bool sorted) const override;
    QStringList GetFollowingKeywords(int keyword) const override;
    int GetQueryCapabilities() const override { return 2228258; }
    QList<HF::LSqlTemplate> GetSqlTemplates() const override;
    /// Outside a transaction each statement is one of its own, with a number of its own.
    QString GetTransactionProbe() const override { return QStringLiteral("SELECT txid_current()"); }
    bool IsValidName(const QString& name) const override { return !name.isEmpty(); }
    /// Never runs the keyword query itself: until the words are there, the answer
    /// is a lazy that reads them when forced.
    HF::LLazy<bool, false> IsNeedQuote(const QString& name,
                                       const rc::Ptr<HF::I_LConnection>& connection) const override;
    HF::I_LDatabaseModel* GetModel(HF::ELObjectType type) const override;

private:
    orbDuckDB_Engine();
};
