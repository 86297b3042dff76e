// SPDX-License-Identifier: GPL-3.0-or-later
#include "data/cursor.h"

#include "data/cell_reader.h"
#include "engine/engine.h"
#include "engine/kernel_text.h"
#include "hf/database.h"
#include "hf/log.h"

namespace {

/// The type text as the field types know it: the engine spells the arguments of
/// these types out, which would hide the type.
QString PlainTypeText(const QString& text)
{
    static const QStringList words = {QStringLiteral("ENUM"), QStringLiteral("STRUCT"), QStringLiteral("MAP"),
                                      QStringLiteral("UNION")};
    const qsizetype bracket = text.indexOf(u'(');
    if (bracket > 0 && words.contains(text.left(bracket)))
        return text.left(bracket);
    return text;
}

} // namespace

rc::Ref<orbDuckDB_Cursor> orbDuckDB_Cursor::Make(const QString& queryText,
                                                 const rc::Ptr<HF::I_LConnection>& connection,
                                                 nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor)
{
    rc::Ref<orbDuckDB_Cursor> cursor(new orbDuckDB_Cursor(queryText, connection, std::move(kernelCursor)),
                                     rc::impl::Adopt{});
    cursor->Read();
    return cursor;
}

rc::Ref<orbDuckDB_Cursor> orbDuckDB_Cursor::Make(const QString& queryText,
                                                 const rc::Ptr<HF::I_LConnection>& connection,
                                                 const rc::Ref<HF::I_LDatabase>& source,
                                                 nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor)
{
    rc::Ref<orbDuckDB_Cursor> cursor(new orbDuckDB_Cursor(queryText, connection, source, std::move(kernelCursor)),
                                     rc::impl::Adopt{});
    cursor->Read();
    return cursor;
}

orbDuckDB_Cursor::orbDuckDB_Cursor(const QString& queryText, const rc::Ptr<HF::I_LConnection>& connection,
                                   nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor)
    : LCursor(queryText, connection), m_kernelCursor(std::move(kernelCursor))
{
}

orbDuckDB_Cursor::orbDuckDB_Cursor(const QString& queryText, const rc::Ptr<HF::I_LConnection>& connection,
                                   const rc::Ref<HF::I_LDatabase>& source,
                                   nub::smart_ptr<nub::orbsql::I_Cursor> kernelCursor)
    : orbDuckDB_Cursor(queryText, connection, std::move(kernelCursor))
{
    SetSourceDatabase(source);
    put_ParentObject(source);
}

orbDuckDB_Cursor::~orbDuckDB_Cursor() = default;

void orbDuckDB_Cursor::Read()
{
    if (!m_kernelCursor)
        return;
    try {
        BuildColumns();
        ReadRows();
    } catch (const nub::xException& failure) {
        Connection.reset();
        HF::LogError(KernelText::ToQString(failure.get_Message()));
    }
}

void orbDuckDB_Cursor::BuildColumns()
{
    const int count = m_kernelCursor->get_ColumnCount();
    for (int i = 0; i < count; ++i) {
        const nub::String name = m_kernelCursor->get_ColumnName(i);
        if (name.empty())
            continue;
        const auto column = rc::make<orbDuckDB_Field>(rc::Ptr<HF::I_LSchemaObject>(this), KernelText::ToQString(name));
        column->SetCursorMode(m_position, true);
        column->SetEngineType(PlainTypeText(KernelText::ToQString(m_kernelCursor->get_ColumnTypeName(i))));
        m_columns.append(column);
    }
}

void orbDuckDB_Cursor::ReadRows()
{
    // Cells go by place in the list: behind a column without a name they land
    // one column to the left.
    std::vector<CellReader> readers;
    readers.reserve(static_cast<std::size_t>(m_columns.size()));
    for (const rc::Ref<orbDuckDB_Field>& column : m_columns)
        readers.emplace_back(*column);
    nub::orbsql::I_Cursor& rows = *m_kernelCursor;
    const int count = static_cast<int>(readers.size());
    while (rows.NextRow()) {
        ++m_recordCount;
        for (int i = 0; i < count; ++i)
            readers[static_cast<std::size_t>(i)].Append(rows.PeekValue(i));
    }
}

rc::Ptr<HF::I_LField> orbDuckDB_Cursor::get_Field(int index) const
{
    return index >= 0 && index < m_columns.size() ? rc::Ptr<HF::I_LField>(m_columns.at(index)) : nullptr;
}

rc::Ptr<HF::I_LField> orbDuckDB_Cursor::get_Field(const QString& name) const
{
    const bool sensitive = orbDuckDB_Engine::Instance().GetCaseSensitivity(nullptr) == HF::CASE_SENSITIVE;
    for (const rc::Ref<orbDuckDB_Field>& column : m_columns)
        if (column->get_Name().compare(name, sensitive ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0)
            return column;
    return nullptr;
}

HF::LLazy<bool, true> orbDuckDB_Cursor::put_Position(unsigned long position)
{
    *m_position = position;
    return true;
}

bool orbDuckDB_Cursor::FirstRecord() const
{
    *m_position = 0;
    return m_recordCount > 0;
}

bool orbDuckDB_Cursor::NextRecord() const
{
    return ++*m_position < m_recordCount;
}

void orbDuckDB_Cursor::DiscardChanges()
{
    for (const rc::Ref<orbDuckDB_Field>& column : m_columns)
        column->DiscardPending();
}

bool orbDuckDB_Cursor::get_IsDirty() const
{
    for (const rc::Ref<orbDuckDB_Field>& column : m_columns)
        if (!column->Pending().isEmpty())
            return true;
    return false;
}
