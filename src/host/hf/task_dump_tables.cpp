// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/task_dump_tables.h"

#include "hf/sql_text.h"
#include "hf/values.h"

#include <QFile>

#include <cstdlib>
#include <limits>

namespace HF {

LTask_DumpTablesToSQL::LTask_DumpTablesToSQL(const RcList<I_LTable>& tables, const QString& path, ELDumpData data,
                                             const QString& encoding, const LSQLDumpOptions& options,
                                             LDumpProgress progress, const QList<QList<QString>>& fields)
    : Tables(tables), FieldLists(fields), Path(path), Encoding(encoding), Data(data), Options(options),
      Progress(std::move(progress))
{
}

LTask_DumpTablesToSQL::~LTask_DumpTablesToSQL() = default;

bool LTask_DumpTablesToSQL::OpenOutput()
{
    if (!m_output) {
        auto file = std::make_unique<QFile>(Path);
        if (!file->open(QIODevice::WriteOnly | QIODevice::Truncate)) {
            Fail(QObject::tr("Cannot write \"%1\": %2").arg(Path, file->errorString()));
            return false;
        }
        m_output = std::move(file);
    }
    m_writer = std::make_unique<LEncodedWriter>(std::move(m_output), Encoding);
    return true;
}

void LTask_DumpTablesToSQL::CloseOutput()
{
    if (!m_writer)
        return;
    m_writer->Close();
    CheckOutput();
    m_writer.reset();
}

void LTask_DumpTablesToSQL::CheckOutput()
{
    const QString error = m_writer->get_Error();
    if (error.isEmpty())
        return;
    const std::lock_guard guard(m_outputMutex);
    m_outputError = error;
}

QString LTask_DumpTablesToSQL::get_OutputError() const
{
    const std::lock_guard guard(m_outputMutex);
    return m_outputError;
}

void LTask_DumpTablesToSQL::put_Counts(long tables, long rows)
{
    m_tableCount.store(tables);
    m_rowCount.store(rows);
}

QString LTask_DumpTablesToSQL::QualifiedTable(const rc::Ref<I_LTable>& table, const QString& name) const
{
    const QString schema = table->GetBoolOr(PROP_TEMPORARY, false) ? QString() : table->GetStringOr(PROP_SCHEMA_NAME, {});
    const QString quoted = QuoteName(name, rc::Ptr<const LTreeItem>(table));
    return schema.isEmpty() ? quoted : QuoteName(schema, rc::Ptr<const LTreeItem>(table)) + u'.' + quoted;
}

LRowsQuery LTask_DumpTablesToSQL::MakeRowsQuery(const rc::Ref<I_LTable>& table, const QList<QString>& fields)
{
    return {QLatin1String("SELECT ") + JoinIdentifiers(fields, rc::Ptr<const LTreeItem>(table))
                + QLatin1String(" FROM ") + table->get_NameForQuery(true),
            false};
}

LInsertWords LTask_DumpTablesToSQL::MakeInsertWords(const rc::Ref<I_LTable>&)
{
    LInsertWords words;
    if (Options.Replace)
        words.Head = QStringLiteral("INSERT OR REPLACE INTO ");
    return words;
}

/// Makes statements of rows, with all limits and the transaction around them.
class LTask_DumpTablesToSQL::RowWriter
{
public:
    RowWriter(LEncodedWriter& stream, const LSQLDumpOptions& options, const QString& head, const QString& tail)
        : m_stream(stream), m_options(options), m_head(head.toStdString()), m_tail(tail.toStdString() + ";\n"),
          m_limitRows(options.MultiRowInsert ? Limit(options.InsertLimitRows) : 1),
          m_limitBytes(options.MultiRowInsert ? Limit(options.InsertLimitData) : Limit(0))
    {
        if (m_limitBytes != Limit(0))
            m_limitBytes *= 1024;
    }

    /// The row's cells go here, between the brackets.
    std::string& BeginRow()
    {
        if (m_rows == 0 && m_written == 0 && m_options.Transaction)
            m_text += "BEGIN TRANSACTION;\n\n";
        if (m_rows == 0)
            m_text += m_head;
        else
            m_text += ",\n";
        m_rowStart = m_text.size();
        m_text += '(';
        return m_text;
    }

    void EndRow()
    {
        m_text += ')';
        ++m_rows;
        ++m_written;
        m_bytes += m_text.size() - m_rowStart;
        if (m_rows >= m_limitRows || m_bytes >= m_limitBytes)
            EndStatement();
        else if (m_text.size() >= FlushAbove)
            Flush();
    }

    void EndStatement()
    {
        if (m_rows == 0)
            return;
        m_text += m_tail;
        m_rows = 0;
        m_bytes = 0;
        if (m_text.size() >= FlushAbove)
            Flush();
    }

    /// What was begun is left open when the rows did not come to their end.
    void Finish(bool whole)
    {
        if (whole) {
            EndStatement();
            if (m_written)
                m_text += m_options.Transaction ? "\nCOMMIT;\n\n" : "\n";
        }
        Flush();
    }

    long get_Written() const { return m_written; }

private:
    static constexpr std::size_t FlushAbove = 128 * 1024;

    static std::size_t Limit(int number)
    {
        return number > 0 ? static_cast<std::size_t>(number) : std::numeric_limits<std::size_t>::max();
    }

    void Flush()
    {
        m_stream.WriteUtf8(m_text);
        m_text.clear();
    }

    LEncodedWriter& m_stream;
    const LSQLDumpOptions& m_options;
    const std::string m_head;
    const std::string m_tail;
    const std::size_t m_limitRows;
    std::size_t m_limitBytes;
    std::string m_text;
    std::size_t m_rowStart = 0;
    std::size_t m_rows = 0;  ///< of the open statement
    std::size_t m_bytes = 0; ///< of its rows
    long m_written = 0;
};

void LTask_DumpTablesToSQL::DumpTableRecords(const rc::Ref<I_LTable>& table, const QString& name,
                                             const QList<QString>& fields, LEncodedWriter& stream,
                                             const std::function<void(long, long)>& progress)
{
    if (fields.isEmpty())
        return;
    const auto canWrite = stream.get_CanWrite();
    long total = -1;
    if (progress) {
        const LiteralRows count =
            OpenRows(QLatin1String("SELECT count(*) FROM ") + table->get_NameForQuery(true), {});
        std::string text;
        if (count->NextChunk() && count->get_RowCount())
            count->AppendCells(text, 0, 0, 1);
        total = std::strtol(text.c_str(), nullptr, 10);
    }
    const LRowsQuery query = MakeRowsQuery(table, fields);
    const LiteralRows rows = OpenRows(query.Sql, canWrite);
    const int columns = rows->get_ColumnCount() - (query.LastColumnSeparates ? 1 : 0);
    QList<int> bytes;
    for (int i = 0; i < columns; ++i)
        if (rows->IsBytes(i))
            bytes.append(i);

    const LInsertWords words = MakeInsertWords(table);
    const QString head = words.Head + QualifiedTable(table, name) + QLatin1String("( ")
        + JoinIdentifiers(fields, rc::Ptr<const LTreeItem>(table)) + QLatin1String(" ) VALUES")
        + (Options.MultiRowInsert ? u'\n' : u' ');
    RowWriter writer(stream, Options, head, words.Tail);
    std::string separator, last;
    bool whole = true;
    while (whole && rows->NextChunk()) {
        for (std::size_t row = 0, count = rows->get_RowCount(); row < count; ++row) {
            if (query.LastColumnSeparates) {
                separator.clear();
                rows->AppendCells(separator, row, columns, 1);
                if (separator != last)
                    writer.EndStatement();
                last = separator;
            }
            std::string& text = writer.BeginRow();
            int from = 0;
            for (const int column : bytes) {
                rows->AppendCells(text, row, from, column - from);
                text += column > from ? ", " : "";
                const auto cell = rows->GetBytes(column, row);
                const auto size = static_cast<qsizetype>(cell ? cell->size() : 0);
                const auto value = cell ? rc::make<LValueByteArray>(QByteArray(cell->data(), size), false)
                                        : rc::make<LValueByteArray>(QByteArray(), true);
                const QString literal = FormatBlobValue(rc::Ref<LValue>(value));
                nub::AppendUtf16(text, reinterpret_cast<const char16_t*>(literal.utf16()),
                                 static_cast<std::size_t>(literal.size()));
                from = column + 1;
                text += from < columns ? ", " : "";
            }
            rows->AppendCells(text, row, from, columns - from);
            writer.EndRow();
        }
        CheckOutput();
        if (progress)
            progress(writer.get_Written(), total);
        whole = !IsCancelled();
    }
    writer.Finish(whole);
}

} // namespace HF
