// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "hf/database.h"
#include "hf/dump.h"
#include "hf/encoded_text.h"
#include "nub/orbsql/duckdb_database.h"

#include <QIODevice>

#include <memory>
#include <mutex>
#include <optional>

namespace HF {

class LValue;

/// What a table's rows are read by.
struct HF_EXPORT LRowsQuery
{
    QString Sql; ///< its columns are those to be written
    /// One more column at the end is not written: rows that differ in it do not
    /// share a statement.
    bool LastColumnSeparates = false;
};

/// What stands around the rows of an INSERT statement.
struct HF_EXPORT LInsertWords
{
    QString Head = QStringLiteral("INSERT INTO ");
    QString Tail; ///< in front of the semicolon
};

/// Writes tables to one SQL text. This base writes the rows; the driver decides
/// what else the file holds. Holds its tables strongly.
class HF_EXPORT LTask_DumpTablesToSQL : public LTask
{
public:
    using LiteralRows = nub::smart_ptr<nub::orbsql::I_LiteralRows>;

    LTask_DumpTablesToSQL(const RcList<I_LTable>& tables, const QString& path, ELDumpData data,
                          const QString& encoding, const LSQLDumpOptions& options, LDumpProgress progress,
                          const QList<QList<QString>>& fields);
    ~LTask_DumpTablesToSQL() override;

    /// Writes to this open device instead of the path. Before run().
    void put_Output(std::unique_ptr<QIODevice> output) { m_output = std::move(output); }
    /// Other options than those of the page. Before run().
    void put_Options(const LSQLDumpOptions& options) { Options = options; }
    /// The device or the encoding failed, and the text is not whole, although
    /// the task goes on. Empty while all is well. Any thread.
    QString get_OutputError() const;
    /// Tables and rows that will be written; 0 until it is known. Any thread.
    long get_TableCount() const { return m_tableCount.load(); }
    long get_RowCount() const { return m_rowCount.load(); }

protected:
    /// Opens the output; marks the task failed when that fails.
    bool OpenOutput();
    /// Writes out what is left; notes a failure.
    void CloseOutput();
    LEncodedWriter& Output() { return *m_writer; }
    /// Notes a failure of the device for get_OutputError.
    void CheckOutput();
    void put_Counts(long tables, long rows);

    /// Writes the rows of a table under a name, in a transaction when that is
    /// asked for. Ends early when cancelled; an engine's failure fails the task.
    void DumpTableRecords(const rc::Ref<I_LTable>& table, const QString& name, const QList<QString>& fields,
                          LEncodedWriter& stream, const std::function<void(long, long)>& progress);

    virtual LiteralRows OpenRows(const QString& query, const std::function<bool(char32_t)>& canWrite) = 0;
    virtual QString FormatBlobValue(const rc::Ref<LValue>& value) = 0;
    virtual LRowsQuery MakeRowsQuery(const rc::Ref<I_LTable>& table, const QList<QString>& fields);
    virtual LInsertWords MakeInsertWords(const rc::Ref<I_LTable>& table);
    /// The table's name, or another, as a statement writes it: with its schema.
    QString QualifiedTable(const rc::Ref<I_LTable>& table, const QString& name) const;

    RcList<I_LTable> Tables;
    QList<QString> TableNames;
    QList<QList<QString>> FieldLists;
    const QString Path;
    const QString Encoding;
    const ELDumpData Data;
    LSQLDumpOptions Options;
    const LDumpProgress Progress;

private:
    class RowWriter;
    std::unique_ptr<QIODevice> m_output;
    std::unique_ptr<LEncodedWriter> m_writer;
    mutable std::mutex m_outputMutex;
    QString m_outputError;
    std::atomic<long> m_tableCount{0};
    std::atomic<long> m_rowCount{0};
};

} // namespace HF
