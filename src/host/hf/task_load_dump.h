// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/dump.h"
#include "hf/statement_splitter.h"

#include <QIODevice>
#include <QList>

#include <memory>
#include <mutex>

namespace HF {

/// A statement of a dump that failed.
struct HF_EXPORT LLoadError
{
    qint64 Line = 0;   ///< of the statement in the file, from 1; 0 for the file as a whole
    QString Statement; ///< its beginning
    QString Text;
};

/// Loads an SQL text into a database, statement by statement, on whichever
/// thread runs it. What runs sees the statements before it; nothing is taken
/// back but a transaction of the text that did not come to its end.
class HF_EXPORT LTask_LoadDumpSQL : public LTask
{
public:
    /// `target` is a database or an object of one. With `multipleStatements`
    /// statements go to execution in groups.
    LTask_LoadDumpSQL(const rc::Ref<LTreeItem>& target, const QString& path, const QString& encoding,
                      bool multipleStatements, bool stopOnError, LLoadProgress progress);
    ~LTask_LoadDumpSQL() override;

    void Cancel() override;
    /// Takes the text from this open device instead of the path. Before run().
    void put_Input(std::unique_ptr<QIODevice> input) { m_input = std::move(input); }

    /// Other options than those of the page. Before run().
    void put_Options(bool multipleStatements, bool stopOnError);
    /// The first failures, at most MaxErrors of them. Any thread.
    QList<LLoadError> get_Errors() const;
    qint64 get_ErrorCount() const { return m_errorCount.load(); }
    /// Statements that ran.
    qint64 get_StatementCount() const { return m_statementCount.load(); }

    static constexpr int MaxErrors = 1000;

protected:
    void Perform() override;

private:
    void Load(class LEncodedReader& reader);
    bool Add(LStatementText&& statement, const QList<qint64>& badLines);
    bool RunGroup();
    bool RunOne(const LStatementText& statement);
    bool TakeFailure(const LStatementText& statement, const QString& error, qint64 firstLine);
    bool Refuse(qint64 line, const QString& statement, const QString& text);
    void EndTransaction(bool atEnd);
    void Tell();

    const rc::Ref<LTreeItem> m_target;
    const QString m_path;
    const QString m_encoding;
    bool m_multiple;
    bool m_stopOnError;
    const LLoadProgress m_progress;
    std::unique_ptr<QIODevice> m_input;
    std::mutex m_queryMutex; ///< between Cancel and the end of the run
    rc::Ptr<I_LSqlQuery> m_query;

    QList<LStatementText> m_group;
    qsizetype m_groupSize = 0;
    QList<qint64> m_badLines;
    qint64 m_transactionLine = 0; ///< of the transaction that the text has begun; 0: none
    bool m_skipping = false;      ///< to the end of a transaction that has failed
    unsigned long m_bytesDone = 0;
    unsigned long m_bytesTotal = 0;

    mutable std::mutex m_errorsMutex;
    QList<LLoadError> m_errors;
    std::atomic<qint64> m_errorCount{0};
    std::atomic<qint64> m_statementCount{0};
};

} // namespace HF
