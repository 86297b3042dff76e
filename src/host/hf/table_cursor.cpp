// SPDX-License-Identifier: GPL-3.0-or-later
// The window of a table cursor: reading, position, order, filter, count.
#include "hf/table_cursor_base.h"

#include "hf/database.h"
#include "hf/engine.h"
#include "hf/log.h"
#include "hf/record_number_field.h"
#include "hf/schema_item_list.h"
#include "hf/sql_text.h"

namespace HF {

LTableCursor::LTableCursor(const rc::Ref<I_LSchemaObject>& source, int mode)
    : m_source(source), m_sourceType(source->get_ObjectType()), m_database(source->get_Database()), m_mode(mode)
{
    StoreName(source->get_Name());
    if (const rc::Ptr<LTreeItem> parent = source->get_ParentObject())
        m_schemaName = parent->get_Name();
}

LTableCursor::~LTableCursor() = default;

rc::Ptr<I_LDatabase> LTableCursor::get_Database() const
{
    return m_database.lock();
}

rc::Ptr<I_LConnection> LTableCursor::get_Connection() const
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    return database ? database->get_Connection() : nullptr;
}

const LDatabaseEngine* LTableCursor::get_DatabaseEngine() const
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    return database ? database->get_DatabaseEngine() : nullptr;
}

void LTableCursor::SetSourceDatabase(const rc::Ref<I_LDatabase>& database)
{
    m_database = database;
}

rc::Ptr<I_LSchemaObject> LTableCursor::get_Source() const
{
    if (rc::Ptr<I_LSchemaObject> source = m_source.lock())
        return source;
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database || database->get_IsClosing())
        return nullptr;
    const rc::Ptr<I_LSchemaObject> schema = database->get_ChildObject(TYPE_SCHEMA, m_schemaName).Force();
    const rc::Ptr<I_LSchemaObject> source =
        schema ? schema->get_ChildObject(m_sourceType, get_Name()).Force() : rc::Ptr<I_LSchemaObject>();
    m_source = source;
    return source;
}

rc::Ptr<I_LTable> LTableCursor::get_Table() const
{
    return rc::cast<I_LTable>(get_Source());
}

bool LTableCursor::SourceIs(int type) const
{
    const rc::Ptr<I_LSchemaObject> source = get_Source();
    return source && source->get_ObjectType() == type;
}

rc::Ptr<I_LField> LTableCursor::get_Field(const QString& name) const
{
    const LDatabaseEngine* engine = get_DatabaseEngine();
    const bool sensitive = engine && engine->GetCaseSensitivity(nullptr) == CASE_SENSITIVE;
    for (const rc::Ref<I_LField>& field : Fields)
        if (field->get_Name().compare(name, sensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0)
            return field;
    return nullptr;
}

void LTableCursor::put_ShowRecordNumber(bool on)
{
    if (on && !RecordNumberField)
        RecordNumberField = rc::make<LRecordNumberField>(rc::Ptr<I_LSchemaObject>(this), Position);
    ShowRecordNumber = on;
}

bool LTableCursor::Fail(const QString& error)
{
    m_lastError = error;
    return false;
}

// Position

LLazy<bool, true> LTableCursor::put_Position(unsigned long position)
{
    *Position = position;
    CheckBuffer();
    return true;
}

bool LTableCursor::FirstRecord() const
{
    *Position = 0;
    const_cast<LTableCursor*>(this)->CheckBuffer();
    return IsRowLoaded(*Position);
}

bool LTableCursor::NextRecord() const
{
    ++*Position;
    const_cast<LTableCursor*>(this)->CheckBuffer();
    return IsRowLoaded(*Position);
}

bool LTableCursor::IsRowLoaded(unsigned long row) const
{
    if (row >= FirstAddedRow)
        return row - FirstAddedRow < static_cast<unsigned long>(m_added);
    return row >= *FirstRow && row - *FirstRow < static_cast<unsigned long>(RowKeys.size());
}

bool LTableCursor::EndIsKnown() const
{
    return !m_windowText.isEmpty() && static_cast<unsigned long>(RowKeys.size()) < m_windowSize
           && (!RowKeys.isEmpty() || *FirstRow == 0);
}

void LTableCursor::CheckBuffer()
{
    const unsigned long row = *Position;
    if (UpdateBlocked || row >= FirstAddedRow || IsRowLoaded(row))
        return;
    const unsigned long end = *FirstRow + static_cast<unsigned long>(RowKeys.size());
    if (row >= end && EndIsKnown() && row >= *FirstRow)
        return;
    // Whoever goes backward will want what stands before.
    const bool backward = row < *FirstRow;
    ReadWindow(backward && row >= m_windowSize ? row - m_windowSize + 1 : backward ? 0 : row);
}

void LTableCursor::ClearBuffer()
{
    RowKeys.clear();
    AllMarked = false;
    Marks.clear();
}

// Reading

rc::Ptr<LWindowRequest> LTableCursor::RequestWindow(unsigned long row)
{
    unsigned long first = row > m_windowSize / 2 ? row - m_windowSize / 2 : 0;
    if (m_count)
        first = std::min(first, *m_count > m_windowSize ? *m_count - m_windowSize : 0);
    return RequestRows(first);
}

rc::Ptr<LWindowRequest> LTableCursor::RequestRows(unsigned long firstRow)
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database || !get_Source())
        return nullptr;
    RcList<I_LSqlValue> binds;
    const QString text = CurrentQuery(firstRow, binds);
    return rc::make<LWindowRequest>(rc::Ref<I_LDatabase>(database), text, binds, firstRow, m_generation);
}

bool LTableCursor::ShowWindow(const rc::Ref<LWindowRequest>& window)
{
    if (!window->get_Rows())
        return Fail(window->get_Error());
    if (window->get_Generation() != m_generation)
        return Fail(QString());
    m_windowText = window->get_Text();
    StashEdits();
    TakeRows(rc::Ref<I_LCursor>(window->get_Rows()), window->get_FirstRow() + 1);
    RowsShown();
    return true;
}

void LTableCursor::RowsShown()
{
    m_lastError.clear();
    RestoreEdits();
    if (EndIsKnown()) {
        m_count = *FirstRow + static_cast<unsigned long>(RowKeys.size());
        CountEstimated = false;
    }
}

bool LTableCursor::ReadWindow(unsigned long firstRow)
{
    if (!get_Source())
        return false;
    for (int attempt = 0; attempt < 2; ++attempt) {
        RcList<I_LSqlValue> binds;
        const QString text = CurrentQuery(firstRow, binds);
        StashEdits();
        const bool read = FetchRows(text, binds, firstRow + 1);
        if (read)
            m_windowText = text;
        else {
            RestoreEdits();
            return false;
        }
        if (!RowKeys.isEmpty() || firstRow == 0)
            break;
        // Rows have gone meanwhile: the last ones are shown instead.
        RestoreEdits();
        if (!UpdateRecordCount())
            return false;
        firstRow = *m_count > m_windowSize ? *m_count - m_windowSize : 0;
    }
    RowsShown();
    return true;
}

bool LTableCursor::RefreshWindow()
{
    return ReadWindow(*FirstRow);
}

// Order and filter

bool LTableCursor::SortByField(const QString& name, bool descending)
{
    return SortByFields({{name, descending}});
}

void LTableCursor::SetSorting(const QList<LSortField>& fields)
{
    m_sorting = fields;
    Invalidate();
}

bool LTableCursor::SortByFields(const QList<LSortField>& fields)
{
    const QList<LSortField> old = m_sorting;
    SetSorting(fields);
    if (UpdateBlocked || ReadWindow(0))
        return true;
    m_sorting = old;
    Invalidate();
    return false;
}

bool LTableCursor::SetFilter(const QString& expression, const RcList<I_LSqlValue>& binds)
{
    if (!IsSingleExpression(expression))
        return Fail(QObject::tr("The filter is not one expression: \"%1\"").arg(expression));
    m_filter = expression.trimmed();
    m_filterBinds = m_filter.isEmpty() ? RcList<I_LSqlValue>() : binds;
    m_count.reset();
    CountEstimated = true;
    Invalidate();
    return true;
}

bool LTableCursor::put_Filter(const QString& expression, const RcList<I_LSqlValue>& binds)
{
    const QString oldFilter = m_filter;
    const RcList<I_LSqlValue> oldBinds = m_filterBinds;
    const std::optional<unsigned long> oldCount = m_count;
    if (!SetFilter(expression, binds))
        return false;
    if (UpdateBlocked || ReadWindow(0))
        return true;
    m_filter = oldFilter;
    m_filterBinds = oldBinds;
    m_count = oldCount;
    CountEstimated = !m_count;
    Invalidate();
    return false;
}

// Counting

LLazy<unsigned long, false> LTableCursor::get_RecordCount() const
{
    if (m_count)
        return *m_count;
    const unsigned long seen = *FirstRow + static_cast<unsigned long>(RowKeys.size());
    const bool whole = m_filter.isEmpty() && m_restriction.isEmpty();
    return std::max(seen, whole ? EstimateCount().value_or(0) : 0);
}

rc::Ptr<LCountRequest> LTableCursor::RequestCount()
{
    const rc::Ptr<I_LDatabase> database = get_Database();
    if (!database || !get_Source())
        return nullptr;
    RcList<I_LSqlValue> binds;
    const QString text = QLatin1String("SELECT count(*)") + FromClause() + RestrictionClause(binds);
    return rc::make<LCountRequest>(rc::Ref<I_LDatabase>(database), text, binds, m_generation);
}

bool LTableCursor::ShowCount(const rc::Ref<LCountRequest>& count)
{
    if (!count->get_Count() || count->get_Generation() != m_generation)
        return Fail(count->get_Error());
    m_count = count->get_Count();
    CountEstimated = false;
    CountWanted = false;
    if (m_filter.isEmpty() && m_restriction.isEmpty())
        PublishCount(*m_count);
    NotifyPropertyChanged(PROP_RECORD_COUNT);
    return true;
}

bool LTableCursor::UpdateRecordCount()
{
    const rc::Ptr<LCountRequest> request = RequestCount();
    if (!request)
        return false;
    request->Run();
    if (!request->get_Count())
        LogError(request->get_Error());
    return ShowCount(rc::Ref<LCountRequest>(request));
}

void LTableCursor::CountChanged(qint64 added, bool exact)
{
    if (m_count)
        m_count = static_cast<unsigned long>(std::max<qint64>(0, qint64(*m_count) + added));
    // Whether the filter shows what was written, only the engine knows.
    CountEstimated = CountEstimated || !exact;
    CountWanted = CountWanted || !exact;
}

} // namespace HF
