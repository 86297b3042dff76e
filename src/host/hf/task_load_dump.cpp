// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/task_load_dump.h"

#include "hf/encoded_text.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace HF {

namespace {

constexpr qsizetype GroupCharacters = 1 << 16; ///< what the engine parses at once it also keeps at once
constexpr qsizetype GroupStatements = 200;
constexpr qsizetype LongInsert = 1 << 13; ///< from here on company gains nothing, and one INSERT runs unprepared
constexpr qsizetype ShownCharacters = 2000;
constexpr int Flags = QUERY_NO_LOG | QUERY_SILENT_ERROR | QUERY_BACKGROUND;

enum class Control { None, Begin, End };

Control ControlOf(QStringView statement)
{
    qsizetype length = 0;
    while (length < statement.size() && statement.at(length).isLetter())
        ++length;
    const QStringView word = statement.left(length);
    const auto is = [word](QLatin1String name) { return word.compare(name, Qt::CaseInsensitive) == 0; };
    if (is(QLatin1String("BEGIN")) || is(QLatin1String("START")))
        return Control::Begin;
    if (is(QLatin1String("COMMIT")) || is(QLatin1String("END")) || is(QLatin1String("ROLLBACK"))
        || is(QLatin1String("ABORT")))
        return Control::End;
    return Control::None;
}

/// The engine makes several statements of some, which would upset the count, and an
/// unknown PRAGMA keeps the statements beside it from running.
bool MustRunAlone(const QString& statement)
{
    return statement.contains(QLatin1String("PIVOT"), Qt::CaseInsensitive)
        || statement.startsWith(QLatin1String("IMPORT"), Qt::CaseInsensitive)
        || statement.startsWith(QLatin1String("PRAGMA"), Qt::CaseInsensitive);
}

rc::Ptr<I_LDatabase> DatabaseOf(const rc::Ref<LTreeItem>& target)
{
    if (rc::Ptr<I_LDatabase> database = rc::cast<I_LDatabase>(target))
        return database;
    const auto object = rc::cast<LDatabaseObject_Impl>(target);
    return object ? object->get_Database() : nullptr;
}

/// The engine counts the lines of what it was given.
QString WithLinesOfFile(QString error, qint64 firstLine)
{
    static const QRegularExpression pattern(QStringLiteral("\\nLINE (\\d+):"));
    const QRegularExpressionMatch match = pattern.match(error);
    if (match.hasMatch())
        error.replace(match.capturedStart(1), match.capturedLength(1),
                      QString::number(match.captured(1).toLongLong() + firstLine - 1));
    return error;
}

} // namespace

LTask_LoadDumpSQL::LTask_LoadDumpSQL(const rc::Ref<LTreeItem>& target, const QString& path, const QString& encoding,
                                     bool multipleStatements, bool stopOnError, LLoadProgress progress)
    : m_target(target), m_path(path), m_encoding(encoding), m_multiple(multipleStatements),
      m_stopOnError(stopOnError), m_progress(std::move(progress))
{
}

LTask_LoadDumpSQL::~LTask_LoadDumpSQL() = default;

void LTask_LoadDumpSQL::put_Options(bool multipleStatements, bool stopOnError)
{
    m_multiple = multipleStatements;
    m_stopOnError = stopOnError;
}

void LTask_LoadDumpSQL::Cancel()
{
    LTask::Cancel();
    const std::lock_guard guard(m_queryMutex);
    if (m_query && IsCancelled())
        m_query->Interrupt();
}

QList<LLoadError> LTask_LoadDumpSQL::get_Errors() const
{
    const std::lock_guard guard(m_errorsMutex);
    return m_errors;
}

void LTask_LoadDumpSQL::Perform()
{
    const rc::Ptr<I_LDatabase> database = DatabaseOf(m_target);
    if (!database) {
        Fail(QObject::tr("There is no database to load into"));
        return;
    }
    if (!m_input) {
        auto file = std::make_unique<QFile>(m_path);
        if (!file->open(QIODevice::ReadOnly)) {
            Fail(QObject::tr("Cannot open \"%1\": %2").arg(m_path, file->errorString()));
            return;
        }
        m_input = std::move(file);
    }
    {
        const std::lock_guard guard(m_queryMutex);
        m_query = database->MakeSqlQuery();
        m_query->SetInterruptible(true);
    }
    LEncodedReader reader(std::move(m_input), m_encoding);
    m_bytesTotal = static_cast<unsigned long>(reader.get_Size());
    Load(reader);
    EndTransaction(get_State() == TASK_RUNNING);
    {
        const std::lock_guard guard(m_queryMutex);
        m_query = nullptr;
    }
    database->Flush().Force();
}

void LTask_LoadDumpSQL::Load(LEncodedReader& reader)
{
    LStatementSplitter splitter;
    QString block;
    bool goesOn = true;
    const auto takeAll = [&] {
        while (goesOn && !IsCancelled()) {
            std::optional<LStatementText> statement = splitter.Next();
            if (!statement)
                break;
            goesOn = Add(std::move(*statement), m_badLines);
        }
    };
    while (goesOn && !IsCancelled() && reader.Read(block)) {
        m_badLines += reader.get_BadLines();
        splitter.Feed(block);
        takeAll();
        m_bytesDone = static_cast<unsigned long>(reader.get_Position());
        Tell();
    }
    if (goesOn && !IsCancelled() && !reader.get_Error().isEmpty()) {
        Fail(reader.get_Error());
        goesOn = false;
    }
    splitter.Finish();
    takeAll();
    if (goesOn && !IsCancelled())
        goesOn = RunGroup();
    // Bytes that belong to no statement spoil the text all the same.
    if (goesOn && !IsCancelled() && !m_badLines.isEmpty())
        Refuse(m_badLines.first(), QString(), QObject::tr("bytes that are no text in this encoding"));
    Tell();
}

void LTask_LoadDumpSQL::Tell()
{
    if (m_progress)
        m_progress(m_bytesDone, m_bytesTotal, static_cast<unsigned long>(m_statementCount.load()));
}

/// Takes one more statement; false when the load ends here.
bool LTask_LoadDumpSQL::Add(LStatementText&& statement, const QList<qint64>& badLines)
{
    QString reason;
    for (const qint64 line : badLines)
        if (line <= statement.EndLine) {
            reason = line == statement.Line ? QObject::tr("bytes that are no text in this encoding")
                                            : QObject::tr("line %1: bytes that are no text in this encoding").arg(line);
            break;
        }
    if (!reason.isEmpty())
        m_badLines.removeIf([&](qint64 line) { return line <= statement.EndLine; });
    else if (!statement.IsComplete)
        reason = QObject::tr("the text breaks off in the middle of this statement");
    if (!reason.isEmpty())
        return RunGroup() && Refuse(statement.Line, statement.Text, reason);

    const bool isLong = statement.Text.size() >= LongInsert
        && statement.Text.startsWith(QLatin1String("INSERT"), Qt::CaseInsensitive);
    const bool alone = !m_multiple || isLong || ControlOf(statement.Text) != Control::None || MustRunAlone(statement.Text);
    if (alone)
        return RunGroup() && RunOne(statement);
    m_groupSize += statement.Text.size();
    m_group.append(std::move(statement));
    return m_groupSize < GroupCharacters && m_group.size() < GroupStatements ? true : RunGroup();
}

bool LTask_LoadDumpSQL::RunOne(const LStatementText& statement)
{
    if (IsCancelled())
        return false;
    const Control control = ControlOf(statement.Text);
    if (m_skipping && control != Control::End)
        return TakeFailure(statement, QString(), statement.Line);
    const QList<LQueryResult> results = m_query->Execute(statement.Text, Flags, {});
    if (IsCancelled())
        return false;
    if (control == Control::End) {
        m_skipping = false;
        m_transactionLine = 0;
    }
    if (!IsQuerySuccess(results))
        return TakeFailure(statement, GetQueryErrors(results), statement.Line);
    ++m_statementCount;
    if (control == Control::Begin)
        m_transactionLine = statement.Line;
    return true;
}

/// Runs what has been gathered in one go, and again from behind each failure.
bool LTask_LoadDumpSQL::RunGroup()
{
    QList<LStatementText> group;
    group.swap(m_group);
    m_groupSize = 0;
    bool goesOn = true;
    while (goesOn && !group.isEmpty() && !IsCancelled()) {
        if (m_skipping || group.size() == 1) {
            goesOn = RunOne(group.takeFirst());
            continue;
        }
        QString text;
        for (const LStatementText& statement : group) {
            text += statement.Text;
            // What stands last may be a line comment.
            text += QLatin1String("\n;\n");
        }
        const QList<LQueryResult> results = m_query->Execute(text, Flags, {});
        if (IsCancelled())
            return false;
        if (IsQuerySuccess(results)) {
            m_statementCount += group.size();
            break;
        }
        const qsizetype done = results.size() - 1;
        if (done == 0 && results.last().Error.startsWith(QLatin1String("Parser Error"))) {
            // One that does not parse keeps the whole text from running.
            goesOn = RunOne(group.takeFirst());
            continue;
        }
        m_statementCount += done;
        group.remove(0, std::min(done, group.size() - 1));
        goesOn = TakeFailure(group.takeFirst(), results.last().Error, 0);
    }
    if (goesOn)
        Tell();
    return goesOn;
}

/// A statement failed, or was skipped when the text is empty; false when that ends the load.
bool LTask_LoadDumpSQL::TakeFailure(const LStatementText& statement, const QString& error, qint64 firstLine)
{
    if (error.isEmpty() && m_skipping) {
        ++m_errorCount;
        return !m_stopOnError;
    }
    if (m_transactionLine && error.contains(QLatin1String("Current transaction is aborted"))) {
        m_skipping = true;
        ++m_errorCount;
        return !m_stopOnError;
    }
    if (error.isEmpty())
        return Refuse(statement.Line, statement.Text, QObject::tr("the statement did not run"));
    return Refuse(statement.Line, statement.Text, firstLine ? WithLinesOfFile(error, firstLine) : error);
}

bool LTask_LoadDumpSQL::Refuse(qint64 line, const QString& statement, const QString& text)
{
    ++m_errorCount;
    {
        const std::lock_guard guard(m_errorsMutex);
        if (m_errors.size() < MaxErrors)
            m_errors.append({line, statement.left(ShownCharacters), text});
    }
    if (m_stopOnError)
        Fail(line ? QObject::tr("line %1: %2").arg(line).arg(text) : text);
    return !m_stopOnError;
}

/// A transaction that the text leaves open does not stay with the session.
void LTask_LoadDumpSQL::EndTransaction(bool atEnd)
{
    if (!m_transactionLine)
        return;
    m_query->Execute(QStringLiteral("ROLLBACK"), Flags, {});
    if (atEnd)
        Refuse(m_transactionLine, QString(),
               QObject::tr("the transaction that begins here does not come to its end, and was taken back"));
    m_transactionLine = 0;
}

} // namespace HF
