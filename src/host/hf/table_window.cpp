// SPDX-License-Identifier: GPL-3.0-or-later
#include "hf/table_window.h"

#include "hf/cursor.h"
#include "hf/database.h"
#include "hf/log.h"

namespace HF {

namespace {

/// The cursor of a statement that has to give one; null with the reason.
rc::Ptr<I_LCursor> RunForRows(I_LSqlQuery& query, const QString& text, const RcList<I_LSqlValue>& binds, int flags,
                              QString& error)
{
    const QList<LQueryResult> results = query.Execute(text, flags | QUERY_SILENT_ERROR, binds);
    if (!IsQuerySuccess(results)) {
        error = GetQueryErrors(results).trimmed();
        if (error.isEmpty())
            error = QObject::tr("The query did not run.");
        return nullptr;
    }
    rc::Ptr<I_LCursor> rows = results.isEmpty() ? nullptr : results.last().Cursor;
    if (!rows)
        error = QObject::tr("The query gave no rows.");
    else if (!rows->get_Connection()) { // lost when reading failed; the log told why
        rows.reset();
        error = QObject::tr("The rows could not be read to their end.");
    }
    return rows;
}

rc::Ref<I_LSqlQuery> InterruptibleQuery(const rc::Ref<I_LDatabase>& database)
{
    const rc::Ref<I_LSqlQuery> query = database->MakeSqlQuery();
    query->SetInterruptible(true);
    return query;
}

} // namespace

LWindowRequest::LWindowRequest(const rc::Ref<I_LDatabase>& database, const QString& text,
                               const RcList<I_LSqlValue>& binds, unsigned long firstRow, unsigned long generation)
    : m_query(InterruptibleQuery(database)), m_text(text), m_binds(binds), m_firstRow(firstRow),
      m_generation(generation)
{
}

void LWindowRequest::Run()
{
    if (m_cancelled.load()) {
        m_error = QObject::tr("Cancelled.");
        return;
    }
    m_rows = RunForRows(*m_query, m_text, m_binds, QUERY_DEFAULT, m_error);
    if (m_cancelled.load() && m_rows) { // what was cut off looks like fewer rows
        m_rows.reset();
        m_error = QObject::tr("Cancelled.");
    }
}

void LWindowRequest::Cancel()
{
    m_cancelled.store(true);
    m_query->Interrupt();
}

LCountRequest::LCountRequest(const rc::Ref<I_LDatabase>& database, const QString& text,
                             const RcList<I_LSqlValue>& binds, unsigned long generation)
    : m_query(InterruptibleQuery(database)), m_text(text), m_binds(binds), m_generation(generation)
{
}

void LCountRequest::Run()
{
    if (m_cancelled.load()) {
        m_error = QObject::tr("Cancelled.");
        return;
    }
    const rc::Ptr<I_LCursor> rows = RunForRows(*m_query, m_text, m_binds, QUERY_BACKGROUND, m_error);
    if (!rows || !rows->FirstRecord())
        return;
    bool isNumber = false;
    const rc::Ptr<I_LField> field = rows->get_Field(0);
    const qulonglong count = field ? field->get_String().toULongLong(&isNumber) : 0;
    if (isNumber)
        m_count = count;
}

void LCountRequest::Cancel()
{
    m_cancelled.store(true);
    m_query->Interrupt();
}

} // namespace HF
